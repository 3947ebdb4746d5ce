// Every byte of a file with what it means: a hex dump on the left, cut where
// the elements are, and the tree of the elements on the right.
import { columns } from './table.mjs';
import { visible } from './visible.mjs';

const PER_LINE = 8;
const shades = ['cyan', 'green', 'yellow', 'magenta', 'blue'];

export function showBytes(bytes, { nodes, faults }, colors) {
  const context = { bytes, colors, leaves: { count: 0 },
    waiting: [...faults].sort((a, b) => a.offset - b.offset) };
  const rows = nodes.flatMap((node) => nodeRows(node, 0, context));
  return columns(rows);
}

function nodeRows(node, depth, context) {
  if (node.children) {
    const name = '  '.repeat(depth) + context.colors.bold(visible(titleOf(node)));
    return [['', '', name], ...node.children.flatMap((child) => nodeRows(child, depth + 1, context))];
  }
  return leafRows(node, depth, context);
}

// A group is known by its first name, if it has one.
export function titleOf({ name, children = [] }) {
  const own = children.find((child) => child.name === 'name' || child.name === 'index');
  return own?.text === undefined ? name : `${name} ${own.text}`;
}

// The faults before an offset; they are in its order, and so are the leaves.
function takeUpTo(end, waiting) {
  const count = waiting.findIndex(({ offset }) => offset >= end);
  return waiting.splice(0, count === -1 ? waiting.length : count);
}

function leafRows({ name, start, end, text }, depth, { bytes, waiting, colors, leaves }) {
  const paint = colors[shades[leaves.count++ % shades.length]];
  const lines = [];
  for (let at = start; at < end || at === start; at += PER_LINE) {
    const part = bytes.subarray(at, Math.min(at + PER_LINE, end));
    lines.push([colors.dim(at.toString(16).padStart(6, '0')),
      paint([...part].map((byte) => byte.toString(16).padStart(2, '0')).join(' '))]);
  }
  const marks = takeUpTo(Math.max(end, start + 1), waiting)
    .map(({ message }) => colors.red(`  <- ${visible(message)}`)).join('');
  const meaning = `${'  '.repeat(depth)}${name}${text === undefined ? '' : `: ${paint(visible(text))}`}${marks}`;
  return lines.map((line, i) => [...line, i === 0 ? meaning : '']);
}
