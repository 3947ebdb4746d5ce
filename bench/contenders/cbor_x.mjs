import { Encoder } from 'cbor-x';

const encoder = new Encoder({ useRecords: false, mapsAsObjects: true });

export const cborX = {
  name: 'cbor-x',
  plain: false,
  encode: (information) => encoder.encode(information),
  decode: (message) => encoder.decode(message),
};
