// Messages of codecs that need a description: its length, the description as
// JSON, the values.
const LENGTH_SIZE = 4;

export function seal(description, values) {
  const text = Buffer.from(JSON.stringify(description));
  const length = Buffer.alloc(LENGTH_SIZE);
  length.writeUInt32LE(text.length);
  return Buffer.concat([length, text, values]);
}

export function open(message) {
  const end = LENGTH_SIZE + message.readUInt32LE();
  return {
    description: JSON.parse(message.toString('utf8', LENGTH_SIZE, end)),
    values: message.subarray(end),
  };
}
