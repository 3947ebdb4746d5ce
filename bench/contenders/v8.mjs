import { deserialize, serialize } from 'node:v8';

export const v8 = {
  name: 'node:v8',
  bigints: true,
  encode: serialize,
  decode: deserialize,
};
