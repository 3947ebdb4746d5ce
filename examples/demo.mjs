// A tour of all that brindle does with configuration blocks: build, validate,
// parse, edit, join, hash, and refuse what is damaged. Run it with
// "npm run demo".
import { mkdirSync, writeFileSync } from 'node:fs';
import { join, relative } from 'node:path';
import { fileURLToPath } from 'node:url';
import {
  abiVersion, buildBlock, calcNgConfigHash, crc32,
  packMetaBlock, parseConfigBlob, parseMetaBlock, validateBlock,
} from '../lib/index.mjs';
import { formatValue, hex32, printBlock, printTable } from './print.mjs';
import { readSpec } from './read_spec.mjs';

const examples = fileURLToPath(new URL('.', import.meta.url));
const outFolder = join(examples, 'out');

console.log(`brindle ${abiVersion()}`);

const blocks = ['thermostat', 'network_interface', 'sensor_array'].map(buildExample);
blocks[0] = editThermostat(blocks[0]);
const blob = showBlob(blocks);
showHash(blocks, blob);
showRefusal(blocks, blob);
saveFiles(blocks, blob);

// ---- Steps -----------------------------------------------------------------

function buildExample(name) {
  const file = `${name}.json`;
  heading(`Build and read back: ${file}`);
  const bytes = unwrap(buildBlock(readSpec(join(examples, file))), `building ${file}`);
  const { size, version } = unwrap(validateBlock(bytes), `validating ${file}`);
  const block = unwrap(parseMetaBlock(bytes), `parsing ${file}`);
  console.log(`  Built ${size} bytes in format version ${version}. Parsed again they hold:\n`);
  printBlock(block);
  return { name, bytes, block };
}

// Repacking writes no CRC-16 trailer, so only a block without one can be
// edited this way; the others are built anew.
function editThermostat({ name, bytes, block }) {
  heading('Edit: nobody home until the new year');
  const values = { mode: 3, targetCelsius: 16.5, awayUntilUnixSeconds: 1798761600n };
  const editedBytes = unwrap(packMetaBlock({ ...block, values }), 'repacking the thermostat');
  const edited = unwrap(parseMetaBlock(editedBytes), 'parsing the edited thermostat');
  const changed = block.meta.fields.filter((field) => field.name in values);
  printTable([
    ...changed.map((field) => changeRow(field, block.values, edited.values)),
    ['size', `${bytes.length} bytes`, '->', `${editedBytes.length} bytes`],
    ['crc32', hex32(crc32(bytes)), '->', hex32(crc32(editedBytes))],
  ]);
  return { name, bytes: editedBytes, block: edited };
}

function showBlob(blocks) {
  heading('Join: one blob for the whole configuration');
  const blob = joinBlocks(blocks);
  const parsed = unwrap(parseConfigBlob(blob), 'parsing the blob');
  console.log(`  ${blob.length} bytes: each block after its length in 16 bits, little-endian.\n`);
  printTable(parsed.map(({ meta, instance, raw }, i) =>
    [`block ${i}`, meta.name, `instance ${instance}`, `${raw.size} bytes`]));
  return blob;
}

function showHash(blocks, blob) {
  heading('Hash: the same for the same blocks, in any order');
  const reversed = joinBlocks([...blocks].reverse());
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

function joinBlocks(blocks) {
  return Buffer.concat(blocks.flatMap(({ bytes }) => {
    const length = Buffer.alloc(2);
    length.writeUInt16LE(bytes.length);
    return [length, bytes];
  }));
}

function hashOf(blob) {
  return unwrap(calcNgConfigHash(blob), 'hashing the blob').toString('hex');
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

// The value of a successful result; anything else ends the demo.
function unwrap(result, step) {
  if (result.ok) return result.value;
  return fail(`${step} failed: ${result.error.code}: ${result.error.message}`);
}

function fail(message) {
  console.error(`\ndemo: ${message}`);
  process.exit(1);
}
