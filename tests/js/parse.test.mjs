import { bytes, packet, schemaBytes } from './encode.mjs';
import brindle, { assert, assertRefused, test, valueOf } from './module.mjs';

const { crc32, packMetaBlock, parseConfigBlob, parseMetaBlock, validateBlock } = brindle;
const name = 'n'.repeat(32);
const parse = (fields, ...payload) =>
  valueOf(parseMetaBlock(bytes(schemaBytes({ name, fields }), ...payload)));

test('what is wrong with a block is named', () => {
  const small = schemaBytes({ name: 'n'.repeat(14) });
  const damaged = (at) => schemaBytes({ name }).map((byte, i) => i === at ? byte ^ 1 : byte);
  const corrupted = ['CORRUPTED_META', 'Meta::unpack returned null'];
  const magic = ['INVALID_MAGIC', 'magic does not match META_MAGIC'];
  const short = ['TRUNCATED', 'block smaller than minimum header size'];
  const large = ['BLOCK_TOO_LARGE', 'block exceeds MAX_META_BLOCK_BYTES (65536)'];
  const rows = [
    [small, short, short], [Buffer.alloc(65537), large, [large[0], 'block exceeds size cap']],
    ...[0, 3].map((at) => [damaged(at), magic, corrupted]), [damaged(4), corrupted, corrupted]];
  for (const [data, validated, parsed] of rows) {
    assertRefused(validateBlock(data), ...validated);
    assertRefused(parseMetaBlock(data), ...parsed);
  }
  for (const read of [validateBlock, parseMetaBlock]) valueOf(read(bytes(small, 0)));
});

test('a block may have 65536 bytes', () => {
  const rawBytes = schemaBytes({ name, fields: [{ name: 's', type: 9 }] });
  const spec = (value) => ({ metaName: name, fields: [{ name: 's', type: 'string', value }] });
  const writers = { built: (s) => brindle.buildBlock(spec(s)),
    repacked: (s) => packMetaBlock({ rawBytes, values: { s } }) };
  // 9 bytes before the text: 5 before the record's body, 1 of the field's ID,
  // 3 of the text's length.
  const longest = 'x'.repeat(65536 - rawBytes.length - 9);
  for (const [how, write] of Object.entries(writers)) {
    const block = valueOf(write(longest));
    assert.equal(valueOf(validateBlock(block)).size, 65536);
    assert.equal(valueOf(parseMetaBlock(block)).values.s, longest);
    const refusal = `${how} block exceeds MAX_META_BLOCK_BYTES (65536)`;
    assertRefused(write(`${longest}x`), 'BLOCK_TOO_LARGE', refusal);
  }
});

test('a record holds what its packet holds, or nothing', () => {
  const fields = [{ name: 'f', type: 4 }, { name: 'b', type: 11 }];
  const rows = [['{}'], ['{}', 'garbage'], ['{}', packet()], ['{}', packet(0, 5, 2, 6)],
    ['{}', packet(0, 5, 1)], ['{"f":5}', packet(0, 5), 9],
    ['{"b":true,"f":5}', packet(1, 2, 0, 5)], ['{"f":6,"b":false}', packet(0, 5, 1, 0, 0, 6)]];
  const answer = (payload) => JSON.stringify(parse(fields, ...payload).values);
  for (const [values, ...payload] of rows) assert.equal(answer(payload), values);
});

test('any name becomes an own property, a later one in its place', () => {
  const keys = ['9', '__proto__', 'constructor', '\ufffd'];
  const names = [...keys.slice(0, 3), [0xff]];
  const options = [['9', 5], ...names.map((key, code) => [key, code])];
  const fields = names.map((name) => ({ name, type: 10, options }));
  const { metaValues } = parse(fields.map((f) => ({ ...f, flags: 1, constant: [1] })));
  const { meta, values } = parse(fields, packet(3, 0, 2, 1, 1, 2, 0, 3));
  const { enumMapping } = meta.fields[0];
  assert.deepEqual(meta.fields.map(({ name }) => name), keys);
  for (const object of [values, metaValues, enumMapping]) {
    assert.equal(Object.getPrototypeOf(object), Object.prototype);
    assert.deepEqual(Object.keys(object).sort(), keys);
  }
  assert.deepEqual(Object.values(enumMapping), [0, 1, 2, 3]);
  assert.equal(parse([{ name: '', type: 13 }]).meta.fields[0].type, 'unknown');
});

// 64 bytes, a whole number of any element.
const block = schemaBytes({ name: 'n'.repeat(47) });
const view = (Type) => new Type(Uint8Array.from(block).buffer);
const shared = (data) => Buffer.from(new SharedArrayBuffer(data.length)).fill(data);
const detached = Buffer.from(Uint8Array.from(block).buffer);
structuredClone(detached.buffer, { transfer: [detached.buffer] });
const others = [undefined, null, 9, '123456789', {}, [1], () => {}, new ArrayBuffer(64),
  Object.create(Buffer.prototype), new Proxy(Buffer.alloc(64), {})];

test('crc32 is CRC-32/JAMCRC of a real Buffer, else 0', () => {
  const digits = Buffer.from('123456789');
  for (const data of [digits, shared(digits)]) assert.equal(crc32(data), 0x340bc6d9);
  for (const data of [bytes(), detached]) assert.equal(crc32(data), 0xffffffff);
  const views = [Uint8Array, Float64Array, DataView].map(view);
  for (const other of [...others, ...views]) assert.equal(crc32(other), 0);
});

for (const name of ['validateBlock', 'parseMetaBlock', 'parseConfigBlob', 'calcNgConfigHash']) {
  test(`${name} refuses what is no view of bytes`, () => {
    const refuses = (message, ...data) =>
      assertRefused(brindle[name](...data), 'INVALID_ARGUMENT', message);
    for (const other of others) refuses(`${name} expects a Buffer`, other);
    refuses(`${name} expects a Buffer`);
    refuses('failed to copy-in buffer', view(DataView));
  });
}

test('any view but a DataView counts with all its bytes', () => {
  for (const data of [...[Int8Array, Uint16Array, BigUint64Array].map(view), shared(block)]) {
    assert.equal(JSON.stringify(valueOf(validateBlock(data))), '{"size":64,"version":10}');
    assert.deepEqual(valueOf(packMetaBlock({ rawBytes: data })), block);
  }
  for (const data of [bytes(), detached]) {
    assert.deepEqual(valueOf(parseConfigBlob(data)), []);
    assert.deepEqual(valueOf(packMetaBlock({ rawBytes: data })), bytes());
  }
});
