// A tour of all that brindle does with configuration blocks: build, validate,
// parse, edit, join, hash, and refuse what is damaged. Run it with
// "npm run demo".
import { mkdirSync, writeFileSync } from 'node:fs';
import { join, relative } from 'node:path';
import { fileURLToPath } from 'node:url';
import {
  abiVersion, buildBlock, calcNgConfigHash, crc32, joinBlocks, packMetaBlock,
  parseConfigBlob, parseMetaBlock, specFromBlock, unwrap, validateBlock,
} from '../lib/index.mjs';
import { formatValue, hex32, printBlock, printTable } from './print.mjs';
import { readSpec } from './read_spec.mjs';

const examples = fileURLToPath(new URL('.', import.meta.url));
const outFolder = join(examples, 'out');

console.log(`brindle ${abiVersion()}`);

const blocks = ['thermostat', 'network_interface', 'sensor_array'].map(buildExample);
blocks[0] = editThermostat(blocks[0]);
blocks[1] = editNetwork(blocks[1]);
const blob = showBlob(blocks);
showHash(blocks, blob);
showRefusal(blocks, blob);
saveFiles(blocks, blob);

// ---- Steps -----------------------------------------------------------------

function buildExample(name) {
  const file = `${name}.json`;
  heading(`Build and read back: ${file}`);
  const bytes = unwrap(buildBlock(readSpec(join(examples, file))));
  const { size, version } = unwrap(validateBlock(bytes));
  const block = unwrap(parseMetaBlock(bytes));
  console.log(`  Built ${size} bytes in format version ${version}. Parsed again they hold:\n`);
  printBlock(block);
  return { name, bytes, block };
}

function editThermostat({ name, bytes, block }) {
  heading('Edit: nobody home until the new year');
  const values = { mode: 3, targetCelsius: 16.5, awayUntilUnixSeconds: 1798761600n };
  const edited = unwrap(packMetaBlock({ ...block, values }));
  return showEdit(block, Object.keys(values), { name, bytes: edited }, bytes);
}

// Repacking writes no CRC-16 trailer, so a block with one is built anew.
function editNetwork({ name, bytes, block }) {
  heading('Edit: another network, in a block with a CRC-16 trailer');
  const values = { ...block.values, vlan: 42, mtu: 9000 };
  const edited = unwrap(buildBlock(specFromBlock({ ...block, values })));
  return showEdit(block, ['vlan', 'mtu'], { name, bytes: edited }, bytes);
}

function showEdit(before, names, edited, bytes) {
  const after = unwrap(parseMetaBlock(edited.bytes));
  const changed = before.meta.fields.filter((field) => names.includes(field.name));
  printTable([
    ...changed.map((field) => changeRow(field, before.values, after.values)),
    ['size', `${bytes.length} bytes`, '->', `${edited.bytes.length} bytes`],
    ['crc32', hex32(crc32(bytes)), '->', hex32(crc32(edited.bytes))],
  ]);
  return { ...edited, block: after };
}

function showBlob(blocks) {
  heading('Join: one blob for the whole configuration');
  const blob = joinBlocks(blocks.map(({ bytes }) => bytes));
  const parsed = unwrap(parseConfigBlob(blob));
  console.log(`  ${blob.length} bytes: each block after its length in 16 bits, little-endian.\n`);
  printTable(parsed.map(({ meta, instance, raw }, i) =>
    [`block ${i}`, meta.name, `instance ${instance}`, `${raw.size} bytes`]));
  return blob;
}

function showHash(blocks, blob) {
  heading('Hash: the same for the same blocks, in any order');
  const reversed = joinBlocks(blocks.map(({ bytes }) => bytes).reverse());
  const flipped = flipByte(blob, blob.length - 1);
  printTable([
    ['as joined', hashOf(blob)],
    ['reversed', hashOf(reversed)],
    ['last byte flipped', hashOf(flipped)],
  ]);
  if (hashOf(blob) !== hashOf(reversed)) fail('the hash depends on the order of the blocks');
}

function showRefusal([first], blob) {
  heading('Damage: one flipped byte in the schema of block 1');
  // Two length prefixes and the 17 header bytes lie before the schema's name.
  const position = 2 + first.bytes.length + 2 + 17;
  console.log('  The core itself writes the reason to standard output:\n');
  const { ok, error } = parseConfigBlob(flipByte(blob, position));
  if (ok) fail('the damaged blob was accepted');
  console.log('\n  The caller gets:\n');
  printTable(Object.entries(error).map(([key, value]) => [key, `${value}`]));
}

function saveFiles(blocks, blob) {
  heading('Save');
  mkdirSync(outFolder, { recursive: true });
  for (const { name, bytes } of [...blocks, { name: 'configuration', bytes: blob }]) {
    const file = join(outFolder, `${name}.bin`);
    writeFileSync(file, bytes);
    console.log(`  wrote ${relative(process.cwd(), file)}`);
  }
}

// ---- Helpers ---------------------------------------------------------------

function hashOf(blob) {
  return unwrap(calcNgConfigHash(blob)).toString('hex');
}

function flipByte(bytes, position) {
  const flipped = Buffer.from(bytes);
  flipped[position] ^= 0xff;
  return flipped;
}

function changeRow(field, before, after) {
  const show = (values) => formatValue(field, values[field.name]);
  return [field.name, show(before), '->', show(after)];
}

function heading(text) {
  console.log(`\n${text}\n${'-'.repeat(text.length)}\n`);
}

function fail(message) {
  console.error(`\ndemo: ${message}`);
  process.exit(1);
}
