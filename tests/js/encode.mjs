// The block format once more, written for brevity and apart from the library:
// what the tests expect comes from here or from bytes spelled out.

// Each part is a byte, a text (as UTF-8) or a list of bytes.
export const bytes = (...parts) =>
  Buffer.concat(parts.map((part) => Buffer.from(typeof part === 'number' ? [part] : part)));

// Little-endian.
export const le = (value, width) =>
  bytes([...Array(width).keys()].map((i) => Math.floor(value / 256 ** i)));

// Reflected, bit by bit, without final inversion.
export function crc(data, register, polynomial) {
  for (const byte of data) {
    register ^= byte;
    for (let i = 0; i < 8; i++) register = register >>> 1 ^ (register & 1 ? polynomial : 0);
  }
  return register >>> 0;
}
export const jamcrc = (data) => crc(data, 0xffffffff, 0xedb88320);

// A field has a name, a type's code and perhaps flags, options (as [name,
// code]), a nested schema, and a constant as it is packed, with its checksum if
// that is not the one of these bytes.
const schemaCrc = ({ name = '', flags = 0, fields = [] }) => jamcrc(bytes(name, flags,
  ...fields.flatMap((f) => [f.name, f.type, f.flags ?? 0, ...(f.options ?? []).flat(),
    f.nested ? le(schemaCrc(f.nested), 4) : '', f.constant ? le(f.constantCrc ?? jamcrc(f.constant), 4) : ''])));
const sized = (part) => bytes(le(bytes(part).length, 4), part);
const descriptor = ({ name, type, flags = 0, options, nested, constant }) => bytes(
  sized(name), type, flags, options ? le(options.length, 4) : '',
  ...(options ?? []).flatMap(([key, code]) => [sized(key), code]),
  type === 12 ? sized(schemaBytes(nested)) : '', constant ?? '');

export function schemaBytes(schema) {
  const { name = '', flags = 0, fields = [] } = schema;
  const body = bytes(name, ...fields.map(descriptor));
  const block = bytes('MHCS', 10, flags, le(body.length, 2),
    le(schemaCrc(schema), 4), le(fields.length, 4), name.length, body);
  return flags & 1 ? bytes(block, le(crc(block, 0xffff, 0xa001), 2)) : block;
}

// A record, with a body of less than 128 bytes.
export const packet = (...body) => bytes(10, 0, bytes(...body).length, ...body);

// Blocks as they lie in a blob.
export const blob = (...blocks) => bytes(...blocks.flatMap((b) => [le(b.length, 2), b]));
