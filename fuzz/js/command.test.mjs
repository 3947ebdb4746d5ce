// What the command is made of: documents lead back to the same bytes, and of
// damaged files everything is said that is known.
import { showBytes } from '../../cli/bytes.mjs';
import { documentOf, specsOf } from '../../cli/documents.mjs';
import { page } from '../../cli/html.mjs';
import { inspect } from '../../cli/inspect.mjs';
import { palette } from '../../cli/streams.mjs';
import { showText } from '../../cli/text.mjs';
import { readSpec } from '../../examples/read_spec.mjs';
import { buildBlock, joinBlocks, parseConfigBlob, parseMetaBlock, unwrap } from '../../lib/index.mjs';
import { blockSpec, identifiedSpec } from './arbitraries.mjs';
import { mutated, mutations, repaired } from './mutate.mjs';
import { assert, fc, property } from './support.mjs';

const build = (spec) => unwrap(buildBlock(spec));
const isReadable = ({ faults, blocks }) => faults.length === 0 && blocks.every(({ dto }) => dto);

property('the document of a file builds the same bytes', 1000,
  fc.array(blockSpec, { minLength: 1, maxLength: 3 }), fc.boolean(), (specs, isBlob) => {
    const blocks = specs.map(build).filter((block) => block.length >= 32);
    if (blocks.length === 0) return;
    const bytes = isBlob ? joinBlocks(blocks) : blocks[0];
    const found = inspect(bytes);
    if (!isReadable(found)) return;
    const built = specsOf(JSON.parse(JSON.stringify(documentOf(found)))).map(build);
    assert.ok((isBlob ? joinBlocks(built) : built[0]).equals(bytes));
  });

// Every byte belongs to one element.
function assertOwned(bytes, nodes) {
  const leaves = (node) => node.children ? node.children.flatMap(leaves) : [node];
  const end = nodes.flatMap(leaves).reduce((at, leaf) => {
    assert.equal(leaf.start, at);
    return leaf.end;
  }, 0);
  assert.equal(end, bytes.length);
}

// A file is refused if and only if a block or a record of it cannot be read.
function assertFaults(bytes, { kind, blocks, faults }) {
  const parsed = (kind === 'blob' ? parseConfigBlob : parseMetaBlock)(bytes);
  if (!parsed.ok) return assert.notEqual(faults.length, 0);
  for (const { dto, read, faults } of blocks) {
    const { length } = Object.keys(dto.values);
    if (faults.length !== 0) assert.equal(length, 0, faults[0].message);
    else assert.equal(length, new Set(read.record.map(([name]) => name)).size);
  }
}

// Whatever there is can be shown in every way, each fault in the text of bytes.
function assertShown(bytes, found) {
  const colors = palette('never');
  const lines = [...showText('file', found, colors), page('file', bytes, found)];
  assert.ok(lines.every((line) => typeof line === 'string'));
  const shown = showBytes(bytes, found, colors).join('\n');
  for (const { message, offset } of found.faults) {
    assert.ok(shown.includes(message) || offset === bytes.length, message);
  }
}

const examples = ['thermostat', 'network_interface', 'sensor_array'].map((name) =>
  build(readSpec(new URL(`../../examples/${name}.json`, import.meta.url))));

property('a damaged example is shown with its faults', 500, mutations, (list) => {
  const bytes = mutated(joinBlocks(examples), list);
  const found = inspect(bytes);
  assertOwned(bytes, found.nodes);
  assertFaults(bytes, found);
  assertShown(bytes, found);
});

property('a damaged file is shown with a fault, or can be read', 500,
  fc.array(identifiedSpec, { minLength: 1, maxLength: 3 }), mutations, fc.boolean(), fc.boolean(),
  (specs, list, isBlob, repair) => {
    const blocks = specs.map(build);
    const damaged = mutated(isBlob ? joinBlocks(blocks) : blocks[0], list);
    const bytes = repair && !isBlob ? repaired(damaged).data : damaged;
    const found = inspect(bytes);
    assertOwned(bytes, found.nodes);
    assertFaults(bytes, found);
    assertShown(bytes, found);
    for (const { offset } of found.faults) assert.ok(offset >= 0 && offset <= bytes.length);
  });
