// Compiled, never run: what `require` gives is typed like the named imports.
import brindle = require('brindle');

const built = brindle.buildBlock({ metaName: 'm', fields: [{ name: 'on', type: 'bool' }] });
// @ts-expect-error: may have been refused
built.value;
if (built.ok) brindle.crc32(built.value).toFixed();

export const code: brindle.ErrorCode = 'INTERNAL';
// @ts-expect-error: no such function
brindle.unpackMetaBlock;
// @ts-expect-error: there is no default beside the functions
brindle.default;
// @ts-expect-error: the helpers of the declarations stay private
export type Helper = brindle.CheckedSpec;
