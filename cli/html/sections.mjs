// What the page shows, a section for each block: its elements numbered in the
// order of the bytes, as all parts of the page refer to them by number.

// { node, block, leaves, ranges, values, faults }: `ranges` has the first leaf
// and the number of leaves of each node, `values` the node of each value by its
// path, and `faults` those of a leaf. There is no `block` for what is none.
export function sectionsOf(bytes, { kind, blocks, nodes, faults }) {
  const roots = kind === 'blob' ? nodes
    : [{ name: 'block', start: 0, end: bytes.length, children: nodes }];
  const sections = roots.map((node, i) => newSection(node, blocks[i]));
  for (const fault of faults) placeFault(fault, sections);
  return sections;
}

function newSection(node, block) {
  const section = { node, block, leaves: [], ranges: new Map(), values: new Map(), faults: new Map() };
  number(node, section);
  for (const group of node.children ?? []) findValues(group, '', section.values);
  return section;
}

function number(node, section) {
  const first = section.leaves.length;
  if (node.children) node.children.forEach((child) => number(child, section));
  else section.leaves.push(node);
  section.ranges.set(node, { first, count: section.leaves.length - first });
}

// Those of a record, and the constants of the schema.
function findValues({ name, children = [] }, prefix, values) {
  for (const child of children) {
    if (name === 'record' && child.name === 'value') addValue(child, child, prefix, values);
    const constant = child.children?.find((one) => one.name === 'constant');
    if (name === 'schema' && constant) addValue(child, constant, '', values);
  }
}

// Records in it are followed to their fields, as in the rows of values.
function addValue(named, node, prefix, values) {
  const path = prefix + nameOf(named);
  const records = node.children.filter(({ name }) => name === 'record');
  const isArray = node.children.some(({ name }) => name === 'count');
  if (node.children.length !== 0) values.set(path, node);  // else it could not be read
  records.forEach((record, i) => findValues(record, `${path}${isArray ? `[${i}]` : ''}.`, values));
}

function nameOf({ name, children }) {
  const texts = Object.fromEntries(children.map((child) => [child.name, child.text]));
  return name === 'field' ? JSON.parse(texts.name) : texts.index ?? '';
}

// One at the end of a block stands in its last element.
function placeFault(fault, sections) {
  const section = sections[fault.blockIndex] ??
    sections.findLast(({ node }) => node.start <= fault.offset);
  const leaf = section?.leaves.findLast(({ start }) => start <= fault.offset);
  if (leaf) section.faults.set(leaf, [...section.faults.get(leaf) ?? [], fault]);
}

// The id of the bytes of a leaf.
export const anchor = ({ start }) => `x${start.toString(16)}`;

// The tag of an element in both halves of the page, which gives it a colour.
const tags = { value: 'b', name: 'em', entry: 'em', 'not understood': 's', unused: 's' };
export const PLAIN = 'i';
export const tagOf = ({ name }) => tags[name] ?? PLAIN;
