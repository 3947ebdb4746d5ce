// Valid BlockSpecs against a model: every byte that is built, every property
// that is parsed, every edit, blobs and their hash.
import { createHash } from 'node:crypto';
import { blob, bytes, jamcrc, le } from '../../tests/js/encode.mjs';
import { assertRefused, valueOf } from '../../tests/js/module.mjs';
import { blockSpec, editedSpec, identifiedSpec } from './arbitraries.mjs';
import { isReadableRecord, isReadableSchema, packetBytes, schemaBytes } from './format.mjs';
import { blockDTO, edited, identityOf, recordOf, schemaOf } from './model.mjs';
import { assert, assertSame, brindle, fc, property } from './support.mjs';

const { buildBlock, calcNgConfigHash, packMetaBlock, parseConfigBlob, parseMetaBlock,
  validateBlock } = brindle;

// The block of a BlockSpec and what it means, all from the model.
function expected(spec) {
  const schema = schemaOf(spec);
  const record = recordOf(schema, spec);
  const block = bytes(schemaBytes(schema), packetBytes(schema, record));
  return { schema, record, block, readable: isReadableSchema(schema) };
}

function assertParsed({ schema, record, block, readable }) {
  const parsed = parseMetaBlock(block);
  if (block.length < 32) {
    assertRefused(parsed, 'TRUNCATED', 'block smaller than minimum header size');
  } else if (!readable) {
    assertRefused(parsed, 'CORRUPTED_META', 'Meta::unpack returned null');
  } else {
    assertSame(parsed, { ok: true, value: blockDTO(schema, record, block) });
    assertSame(validateBlock(block), { ok: true, value: { size: block.length, version: 10 } });
    return true;
  }
  assert.equal(validateBlock(block).ok, false);
  return false;
}

property('a block is built byte for byte, and parses to what was given', 150, blockSpec, (spec) => {
  const model = expected(spec);
  assert.equal(valueOf(buildBlock(spec)).toString('hex'), model.block.toString('hex'));
  assertParsed(model);
  assert.equal(brindle.crc32(model.block), jamcrc(model.block));
});

property('edits replace what they name, and nothing else', 80, editedSpec, ([spec, edits]) => {
  const { schema, record, block, readable } = expected(spec);
  if (block.length < 32 || !readable) return;
  const dto = valueOf(parseMetaBlock(block));
  assertSame(packMetaBlock({ rawBytes: block }), { ok: true, value: block });
  // Repacked without a trailer, and with an empty record for an unreadable one.
  const stored = isReadableRecord(schema, record) ? record : new Map();
  const repacked = (record) => bytes(schemaBytes(schema, false), packetBytes(schema, record));
  assertSame(packMetaBlock(dto), { ok: true, value: repacked(stored) });
  if (!schema.hasCrc && stored === record) assertSame(repacked(stored), block);
  const constants = Object.fromEntries(spec.metaFields.map(({ name }) => [name, {}]));
  const result = edited(schema, stored, edits);
  const after = repacked(result);
  const values = { ...constants, unknown_: 1, ...edits };
  assertSame(packMetaBlock({ ...dto, values }), { ok: true, value: after });
  if (!schema.hasCrc) assertParsed({ schema, record: result, block: after, readable });
});

// Turns some values into constants, records too, which no BlockSpec can.
function withConstants({ schema, record }, picks) {
  const isPicked = ({ name }, i) => record.has(name) && picks[i % picks.length];
  const fields = schema.fields.map((field, i) => isPicked(field, i) ?
    { ...field, isMeta: true, constant: record.get(field.name) } : field);
  const constants = new Set(fields.filter(({ isMeta }) => isMeta).map(({ name }) => name));
  const rest = [...record].filter(([name]) => !constants.has(name));
  return { schema: { ...schema, fields }, record: new Map(rest) };
}

property('blocks of another writer are read, and written again as they are', 80, blockSpec,
  fc.array(fc.boolean(), { minLength: 4, maxLength: 4 }), fc.boolean(), fc.boolean(),
  (spec, picks, reversed, trailer) => {
    const { schema, record } = withConstants(expected(spec), picks);
    const order = reversed ? new Map([...record].reverse()) : record;
    const bytesOf = (trailer) => bytes(schemaBytes(schema), packetBytes(schema, order, trailer));
    const block = bytesOf(trailer);
    const model = { schema, record: order, block, readable: isReadableSchema(schema) };
    if (!assertParsed(model) || schema.hasCrc || !isReadableRecord(schema, record)) return;
    const repacked = packMetaBlock({ rawBytes: block, values: {} });
    assertSame(repacked, { ok: true, value: bytesOf(false) });
  });

function hashOf(models) {
  const summaries = models.map(({ schema, block }) => {
    const { uuidRawBytes, instance } = identityOf(schema);
    return bytes(uuidRawBytes, le(instance, 2), le(block.length, 4), le(jamcrc(block), 4));
  });
  const sorted = summaries.sort((a, b) => a.compare(b, 0, 16, 0, 16));
  return createHash('sha256').update(bytes(...sorted)).digest();
}

property('a blob is its blocks, and its hash does not depend on their order', 30,
  fc.array(identifiedSpec, { maxLength: 5 }), fc.nat(), (specs, at) => {
    const models = specs.map(expected)
      .filter(({ block, readable }) => readable && block.length >= 32);
    const blocks = models.map(({ block }) => block);
    assertSame(parseConfigBlob(blob(...blocks)),
      { ok: true, value: blocks.map((block) => valueOf(parseMetaBlock(block))) });
    const shuffled = [...models.slice(at % 5), ...models.slice(0, at % 5).reverse()];
    for (const order of [models, shuffled]) {
      const data = blob(...order.map(({ block }) => block));
      assertSame(valueOf(calcNgConfigHash(data)), hashOf(order));
    }
    assertSame(hashOf(models), hashOf(shuffled));
  });
