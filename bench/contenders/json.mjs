// Numbers of 64 bits travel as text, as JSON knows no BigInt.
export const json = {
  name: 'JSON',
  bigints: false,
  encode: (information) => JSON.stringify(information),
  decode: (text) => JSON.parse(text),
};
