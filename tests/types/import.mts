// Compiled, never run: what the default import gives is typed like the named ones.
import brindle, { abiVersion } from 'brindle';

type Same<A, B> =
  (<T>() => T extends A ? 1 : 2) extends (<T>() => T extends B ? 1 : 2) ? true : false;

// The declared names are those that the package exports.
const exported: Same<keyof typeof brindle, 'abiVersion' | 'crc32' | 'validateBlock'
  | 'parseMetaBlock' | 'parseConfigBlob' | 'packMetaBlock' | 'buildBlock' | 'calcNgConfigHash'
  | 'unwrap' | 'BrindleError' | 'specFromBlock' | 'joinBlocks' | 'toJSON' | 'fromJSON'> = true;
const version: Same<typeof brindle.abiVersion, typeof abiVersion> = exported;
// @ts-expect-error: there is no default within the default
brindle.default;
export { version };
