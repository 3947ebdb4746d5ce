import { readFileSync } from 'node:fs';
import { bytes, jamcrc } from './encode.mjs';
import brindle, { assert, test, valueOf } from './module.mjs';

const vector = readFileSync(new URL('../vectors/rich.hex', import.meta.url), 'utf8');
const block = Buffer.from(vector.replace(/#.*|\s/g, ''), 'hex');

const uuid = '00010203-0405-0607-0809-0A0B0C0D0E0F';
const enumMapping = { off: 0, on: 1, auto: 7 };

const define = (name, type, value, repeated = false) => ({ name, type, value, repeated });

// Each type twice: single, and repeated in a field with an "s" after its name.
const rows = [
  ['i8', 'int8', -1, [-128, 127]], ['i16', 'int16', -2, [-1, 32767]],
  ['i32', 'int32', -2147483648, [64]], ['i64', 'int64', -(2n ** 63n), []],
  ['u8', 'uint8', 255, [0, 128, 255]], ['u16', 'uint16', 300, []],
  ['u32', 'uint32', 2147483648, [127, 128]], ['u64', 'uint64', 2n ** 63n, [2n ** 32n]],
  ['f', 'float', 1.5, [0.5, -2]], ['s', 'string', 'h\u00e9', ['', 'ab']],
  ['e', 'enum', 7, [0, 1, 7]], ['b', 'bool', true, [true, false]],
  ['r', 'datamap', { x: -3, on: false }, [{ x: 1 }, { on: true, x: 0 }]],
];
const fields = [...rows.map(([name, type, value]) => define(name, type, value)),
  ...rows.map(([name, type, , list]) => define(`${name}s`, type, list, true))];
const metaFields = [define('__uuid', 'string', uuid), define('__instance', 'uint16', 300),
  define('descriptor_uuid', 'string', 'D'), define('modes', 'enum', [7, 0], true)];

// Options are for enums, and without effect on the others.
const enumOptions = Object.entries(enumMapping).map(([key, code]) => ({ key, code }));
const nested = { metaName: 'pt', fields: [define('x', 'int16'), define('on', 'bool')] };
const toSpec = (f) => ({ ...f, enumOptions, nested: f.type === 'datamap' ? nested : null });
const toDTO = (field) => ({
  name: field.name, type: field.type, repeated: field.repeated,
  isMeta: metaFields.includes(field), ...(field.type === 'enum' && { enumMapping }),
  ...(field.type === 'datamap' && { nested: { name: 'pt', fields: nested.fields.map(toDTO) } }) });
const toValues = (list) => Object.fromEntries(list.map(({ name, value }) => [name, value]));

test('a block with every type is built byte for byte, and parsed in order', () => {
  const built = valueOf(brindle.buildBlock({ metaName: 'rich', hasCrc: true,
    fields: fields.map(toSpec), metaFields: metaFields.map(toSpec) }));
  assert.equal(built.toString('hex'), block.toString('hex'));
  const expected = { uuid: uuid.toLowerCase(), uuidRawBytes: bytes([...Array(16).keys()]),
    instance: 300, descriptorUuid: 'D',
    meta: { name: 'rich', fields: [...fields, ...metaFields].map(toDTO) },
    values: toValues(fields), metaValues: toValues(metaFields),
    raw: { size: block.length, crc32: jamcrc(block) }, rawBytes: block };
  const text = (dto) => JSON.stringify(dto, (_, v) => typeof v === 'bigint' ? `${v}n` : v);
  assert.equal(text(valueOf(brindle.parseMetaBlock(block))), text(expected));
});
