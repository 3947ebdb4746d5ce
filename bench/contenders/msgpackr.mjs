import { Packr } from 'msgpackr';

const packr = new Packr({ useRecords: false, int64AsType: 'bigint' });

export const msgpackr = {
  name: 'msgpackr',
  plain: false,
  encode: (information) => packr.pack(information),
  decode: (message) => packr.unpack(message),
};
