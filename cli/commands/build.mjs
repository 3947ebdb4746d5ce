// brindle build: blocks of JSON.
import { buildBlock, joinBlocks, unwrap } from '../../lib/index.mjs';
import { specsOf } from '../documents.mjs';
import { Failure, FINE } from '../failure.mjs';
import { writeBytes } from '../files.mjs';
import { readText } from '../input.mjs';
import { refusing } from '../refusing.mjs';

export default function build(files, options) {
  if (files.length === 0) throw new Failure('build needs a file');
  const documents = files.map(readDocument);
  const blocks = documents.flatMap(({ file, document }) => refusing(file, () =>
    specsOf(document).map((spec) => unwrap(buildBlock(spec)))));
  const isBlob = options.blob || documents.some(({ document }) => Array.isArray(document));
  if (!isBlob && blocks.length !== 1) throw new Failure('several blocks make a blob: use --blob');
  writeBytes(options.output, isBlob ? refusing('the blob', () => joinBlocks(blocks)) : blocks[0]);
  return FINE;
}

function readDocument(file) {
  try {
    return { file, document: JSON.parse(readText(file)) };
  } catch (error) {
    if (!(error instanceof SyntaxError)) throw error;
    throw new Failure(`${file}: ${error.message}`, 1);
  }
}
