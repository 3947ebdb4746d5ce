// The bytes of a section, each element of them in a tag of its own.
import { anchor, tagOf } from './sections.mjs';
import { sectionTitle } from './meanings.mjs';

const PER_LINE = 16;
const digits = Array.from({ length: 256 }, (_, byte) => byte.toString(16).padStart(2, '0'));

export function dump(bytes, section) {
  const { node: { start, end }, leaves, isOpen } = section;
  const linked = anchored(section);
  const elements = leaves.map((leaf, i) => {
    const tag = tagOf(leaf);
    const id = linked.has(leaf) ? ` id=${anchor(leaf)}` : '';
    const bad = section.faults.has(leaf) ? ' class=bad' : '';
    return `<${tag}${id}${bad}${i === 0 ? ' tabindex=0' : ''}>${hexOf(bytes, leaf)}</${tag}>`;
  });
  return `<details data-start=${start}${isOpen ? ' open' : ''}><summary>${sectionTitle(section)}</summary>` +
    `<div><pre>${offsets(start, end)}</pre>` +
    `<pre>${'   '.repeat(start % PER_LINE)}${elements.join('')}</pre></div></details>`;
}

// What is linked to: the first elements of values, and faulty ones.
function anchored({ leaves, ranges, values, faults }) {
  const first = [...values.values()].map((node) => leaves[ranges.get(node).first]);
  return new Set([...first, ...faults.keys()]);
}

function hexOf(bytes, { start, end }) {
  let text = '';
  for (let at = start; at < end; at++) {
    text += digits[bytes[at]] + ((at + 1) % PER_LINE === 0 ? '\n' : ' ');
  }
  return text;
}

function offsets(start, end) {
  const lines = [];
  for (let at = start - start % PER_LINE; at < end; at += PER_LINE) {
    lines.push(at.toString(16).padStart(6, '0'));
  }
  return lines.join('\n');
}
