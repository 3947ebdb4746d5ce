// Numbers of 64 bits travel as text, as JSON knows no BigInt.
export const json = {
  name: 'JSON',
  plain: true,
  encode: (information) => JSON.stringify(information),
  decode: (text) => JSON.parse(text),
};
