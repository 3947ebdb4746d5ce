// brindle schema: the BlockSpec of a block.
import { specFromBlock } from '../../lib/index.mjs';
import { specToJSON } from '../documents.mjs';
import { Failure, FINE } from '../failure.mjs';
import { chooseBlock, loadBlocks } from '../load.mjs';
import { refusing } from '../refusing.mjs';
import { print } from '../streams.mjs';

export default function schema([file, ...others], options) {
  if (file === undefined || others.length !== 0) throw new Failure('schema takes one file');
  const found = loadBlocks(file, options);
  const block = found.blocks[chooseBlock(found, file, options.block)];
  print(JSON.stringify(specToJSON(refusing(file, () => specFromBlock(block))), null, 2));
  return FINE;
}
