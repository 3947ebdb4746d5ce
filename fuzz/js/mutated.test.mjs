// Damaged blocks and blobs: the exports agree about what can be read, say where
// it cannot, and what was read can be written again.
import { createHash } from 'node:crypto';
import { blob, bytes, jamcrc, le } from '../../tests/js/encode.mjs';
import { valueOf } from '../../tests/js/module.mjs';
import { blockSpec, identifiedSpec } from './arbitraries.mjs';
import { mutated, mutations, repaired } from './mutate.mjs';
import { assert, assertEnvelope, assertSame, brindle, fc, property } from './support.mjs';

const { buildBlock, calcNgConfigHash, crc32, packMetaBlock, parseConfigBlob, parseMetaBlock,
  validateBlock } = brindle;

// Whatever the function does, the bytes stay as they are.
function untouched(data, call) {
  const before = bytes(data);
  const result = call(data);
  assert.ok(before.equals(data));
  return result;
}
const answerOf = (call, data) => untouched(data, () => assertEnvelope(call(data), data.length));

function hashOf(dtos) {
  const summaries = dtos.map(({ uuidRawBytes, instance, raw, rawBytes }) => {
    assert.equal(raw.crc32, jamcrc(rawBytes));
    return bytes(uuidRawBytes, le(instance, 2), le(raw.size, 4), le(raw.crc32, 4));
  }).sort((a, b) => a.compare(b, 0, 16, 0, 16));
  return createHash('sha256').update(bytes(...summaries)).digest();
}

// What parseConfigBlob answers, by way of parseMetaBlock.
function parsedBlob(data) {
  const value = [];
  const refuse = (code, message, offset) => ({ ok: false,
    error: { code, message, blockIndex: value.length, ...(offset && { offset }) } });
  for (let at = 0; at < data.length;) {
    if (data.length - at < 2) return refuse('TRUNCATED', 'trailing bytes after last block', at);
    const size = data.readUInt16LE(at);
    if (size === 0) return refuse('CORRUPTED_META', 'block size is zero', at);
    if (size < 32) return refuse('TRUNCATED', 'block smaller than MIN_META_BLOCK_BYTES (32)', at);
    const block = data.subarray(at + 2, at + 2 + size);
    if (block.length < size) return refuse('TRUNCATED', 'block extends past end of blob', at);
    const parsed = parseMetaBlock(block);
    if (!parsed.ok) return refuse('CORRUPTED_META', 'Meta::unpack failed', at + 2);
    value.push(parsed.value);
    at += 2 + size;
  }
  return { ok: true, value };
}

function assertBlob(data) {
  const expected = parsedBlob(data);
  assertSame(answerOf(parseConfigBlob, data), expected);
  const hash = answerOf(calcNgConfigHash, data);
  const hashable = expected.ok &&
    expected.value.every(({ uuid, instance }) => uuid !== undefined && instance !== undefined);
  assert.equal(hash.ok, hashable, hash.error?.message);
  if (hashable) assertSame(hash.value, hashOf(expected.value));
}

const codeFor = { INVALID_MAGIC: 'CORRUPTED_META' };

function assertAgreement(block) {
  const checked = answerOf(validateBlock, block);
  const parsed = answerOf(parseMetaBlock, block);
  assert.equal(untouched(block, crc32), jamcrc(block));
  if (checked.ok) {
    assertSame(checked.value, { size: block.length, version: 10 });
    assert.ok(parsed.ok && parsed.value.rawBytes.equals(block));
  } else {
    const { code } = checked.error;
    assert.equal(parsed.error?.code, codeFor[code] ?? code);
  }
  return parsed;
}

// Texts that come from JavaScript end before U+0000, those in bytes need not.
function cut(value) {
  if (typeof value === 'string') return value.split('\0')[0];
  if (Array.isArray(value)) return value.map(cut);
  if (typeof value !== 'object') return value;
  return Object.fromEntries(Object.entries(value).map(([key, item]) => [key, cut(item)]));
}

// What packMetaBlock does not restore: the trailer, records with a constant in
// them, and edits of fields whose name is not what it seems in JavaScript.
const isConstant = ({ fields }, key) => fields.find(({ name }) => name === key).isMeta;
const isFinal = ({ meta, values, rawBytes }) =>
  rawBytes[5] & 1 || Object.keys(values).some((key) => isConstant(meta, key));
const isOddlyNamed = ({ meta }) => /\ufffd|\\u0000/.test(JSON.stringify(meta));

// What was read is written again, edited to itself as a whole, in one value and
// not at all.
function assertRepacks(dto) {
  const { values, rawBytes } = dto;
  const [first] = Object.entries(values);
  for (const edits of [{}, first === undefined ? {} : Object.fromEntries([first]), values]) {
    const result = untouched(rawBytes, () => packMetaBlock({ rawBytes, values: edits }));
    assertEnvelope(result);
    if (isFinal(dto) || Object.keys(edits).length !== 0 && isOddlyNamed(dto)) continue;
    assert.ok(result.ok, result.error?.message);
    // Unread bytes are left out, and what remains can be too short for a block.
    if (result.value.length < 32) continue;
    const after = valueOf(parseMetaBlock(result.value)).values;
    if (Object.keys(edits).length === 0) assertSame(after, values);
    else assertSame(cut(after), cut(values));
  }
}

// Whether a byte belongs to the bodySize of a header.
const isBodySize = (block, at) => [6, 7].some((distance) => at >= distance &&
  block.toString('latin1', at - distance, at - distance + 4) === 'MHCS');

// Nothing is read whose checksum is not that of its schema. Only bodySize is
// not compared with the fields; the trailer's place depends on it.
function assertChecksums(block) {
  const { data, followed } = repaired(block);
  if (!followed) return;
  assert.ok(data.subarray(8, 12).equals(block.subarray(8, 12)));
  const size = data.readUInt16LE(6) + (data[5] & 1 ? 19 : 17);
  if (data.readUInt16LE(6) !== block.readUInt16LE(6)) return;
  for (let i = 0; i < size; i++) {
    assert.ok(data[i] === block[i] || isBodySize(block, i), `byte ${i}`);
  }
}

const build = (spec) => valueOf(buildBlock(spec));

property('damaged blocks are read by all exports or by none', 300,
  blockSpec, mutations, fc.boolean(), (spec, list, repair) => {
    const data = mutated(build(spec), list);
    const block = repair ? repaired(data).data : data;
    const parsed = assertAgreement(block);
    if (block.length < 65536) assertBlob(blob(block));
    if (!parsed.ok) return;
    assertChecksums(block);
    assertRepacks(parsed.value);
  });

property('damage to a blob is found where it is', 100,
  fc.array(identifiedSpec, { maxLength: 4 }), mutations,
  (specs, list) => assertBlob(mutated(blob(...specs.map(build)), list)));
