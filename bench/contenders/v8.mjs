import { deserialize, serialize } from 'node:v8';

export const v8 = {
  name: 'node:v8',
  plain: false,
  encode: serialize,
  decode: deserialize,
};
