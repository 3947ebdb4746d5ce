// What the bytes of a section mean: its values in a table, then the tree of all
// its elements.
import { titleOf } from '../bytes.mjs';
import { factsOf } from '../facts.mjs';
import { rowsOf, showValue, typeName } from '../values.mjs';
import { escape } from './escape.mjs';
import { anchor, PLAIN, tagOf } from './sections.mjs';

export function meanings(section) {
  const { block, isOpen, isTreeOpen } = section;
  return `<details${isOpen ? ' open' : ''}><summary>${sectionTitle(section)}</summary>` +
    `${block ? facts(block) + valueTable(section) : ''}` +
    `<details class=tree${isTreeOpen ? ' open' : ''}><summary>all elements</summary>` +
    `${element(section.node, section)}</details></details>`;
}

export function sectionTitle({ node, block }) {
  const title = block?.dto ? `${node.name}: ${block.dto.meta.name}` : node.name;
  const { size, offset } = block ?? { size: node.end - node.start, offset: node.start };
  return `${escape(title)} <small>${size} bytes at ${offset}</small>`;
}

function facts({ dto }) {
  if (dto === undefined) return '<p class=bad>This block cannot be read.';
  return `<dl>${factsOf(dto).map(([name, text]) =>
    `<div><dt>${name}<dd>${escape(text)}</div>`).join('')}</dl>`;
}

function valueTable(section) {
  const { block: { dto }, values } = section;
  const rows = dto ? rowsOf(dto) : [...values.keys()].map((path) => ({ path }));
  if (rows.length === 0) return '';
  return '<table><thead><tr><th>field<th>type<th>value<tbody>' +
    `${rows.map((row) => valueRow(row, section)).join('\n')}</table>`;
}

function valueRow({ path, field, value }, { leaves, ranges, values, faults }) {
  const node = values.get(path);
  const name = escape(path);
  const type = field ? typeName(field) : '';
  const { text, kind } = cell(field, value, node);
  const constant = field?.isMeta ? ' <small>constant</small>' : '';
  if (node === undefined) return `<tr><td>${name}<td>${type}<td class=${kind}>${escape(text)}${constant}`;
  const { first, count } = ranges.get(node);
  const own = leaves.slice(first, first + count);
  const bad = own.some((leaf) => faults.has(leaf)) ? ' class=bad' : '';
  return `<tr${bad} data-at=${first},${count}><td><a href="#${anchor(own[0])}">${name}</a>` +
    `<td>${type}<td class=${kind}>${escape(text)}${constant}`;
}

// A value that the native module does not answer may be among the elements.
function cell(field, value, node) {
  if (value !== undefined) return { text: showValue(field, value), kind: 'value' };
  if (node === undefined) return { text: 'absent', kind: 'absent' };
  const texts = node.children.filter(({ name }) => name === 'value').map(({ text }) => text);
  return { text: texts.join(', '), kind: 'value' };
}

function element(node, section) {
  if (node.children) {
    const children = node.children.map((child) => element(child, section));
    return `<div><strong>${escape(titleOf(node))}</strong>${children.join('\n')}</div>`;
  }
  const faults = section.faults.get(node) ?? [];
  const bad = faults.length === 0 ? '' : ' class=bad';
  const marks = faults.map(({ message }) => ` <mark>${escape(message)}</mark>`).join('');
  const focus = node === section.leaves[0] ? ' tabindex=0' : '';
  return `<p${bad}${focus}>${escape(node.name)} ${textOf(node)}${marks}`;
}

// Most elements are plain, and take no tag here: a large file has very many.
function textOf(node) {
  const text = escape(node.text ?? '');
  const tag = tagOf(node);
  return tag === PLAIN ? text : `<${tag}>${text}</${tag}>`;
}
