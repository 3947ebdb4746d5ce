// brindle hash: configuration hashes in the format of sha256sum.
import { calcNgConfigHash, joinBlocks, unwrap } from '../../lib/index.mjs';
import { Failure, FINE, REFUSED } from '../failure.mjs';
import { readBytes, readText } from '../input.mjs';
import { isBlob } from '../inspect.mjs';
import { Progress } from '../progress.mjs';
import { refusing } from '../refusing.mjs';
import { print, unlessFailing } from '../streams.mjs';
import { visible } from '../visible.mjs';

export default function hash(files, options, colors) {
  if (options.check !== undefined) {
    if (files.length !== 0) throw new Failure('with --check the list names the files');
    return checkList(options, colors);
  }
  if (files.length === 0) throw new Failure('hash needs a file');
  const progress = new Progress(files.length);
  for (const file of files) {
    print(lineOf(hashOf(file, options), file));
    progress.step();
  }
  progress.end();
  return FINE;
}

// A single block counts as a blob of one.
function hashOf(file, options) {
  const bytes = readBytes(file, options);
  return refusing(file, () => unwrap(calcNgConfigHash(isBlob(bytes) ? bytes : joinBlocks([bytes]))))
    .toString('hex');
}

// A line that begins with a backslash has a name with escapes in it.
const signs = { '\\': '\\\\', '\n': '\\n', '\r': '\\r' };
const unescaped = { n: '\n', r: '\r' };
const lineOf = (digest, file) => /[\n\r\\]/.test(file)
  ? `\\${digest}  ${file.replace(/[\n\r\\]/g, (sign) => signs[sign])}` : `${digest}  ${file}`;

function parseLine(line, list, number) {
  const [, escaped, digest, file] = /^(\\?)([\da-f]{64}) [ *](.+)$/s.exec(line) ?? [];
  if (file === undefined) throw new Failure(`${list}: line ${number} is none of "hash"`);
  return { digest, file: escaped ? file.replace(/\\(.)/g, (_, sign) => unescaped[sign] ?? sign) : file };
}

function checkList({ check: list, ...options }, colors) {
  const lines = readText(list).split(/\r?\n/).filter(Boolean);
  const results = lines.map((line, i) => {
    const { digest, file } = parseLine(line, list, i + 1);
    // A file that cannot be hashed does not keep the others from being checked.
    const isSame = digest === unlessFailing(() => hashOf(file, options));
    print(`${visible(file)}: ${isSame ? colors.green('OK') : colors.red('FAILED')}`);
    return isSame;
  });
  return results.every(Boolean) ? FINE : REFUSED;
}
