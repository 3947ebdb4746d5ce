// brindle edit: other values in a block, which is then built again, so that
// lengths, checksums and the trailer follow.
import { buildBlock, joinBlocks, specFromBlock, unwrap } from '../../lib/index.mjs';
import { assign } from '../assign.mjs';
import { Failure, FINE } from '../failure.mjs';
import { writeBytes } from '../files.mjs';
import { chooseBlock, loadBlocks } from '../load.mjs';
import { refusing } from '../refusing.mjs';

export default function edit([file, ...others], options) {
  if (file === undefined || others.length !== 0) throw new Failure('edit takes one file');
  if (options.set === undefined) throw new Failure('edit needs --set PATH=VALUE');
  const found = loadBlocks(file, options);
  const index = chooseBlock(found, file, options.block);
  const edited = structuredClone(found.blocks[index]);
  for (const assignment of options.set) assign(edited, assignment);
  const block = refusing(file, () => unwrap(buildBlock(specFromBlock(edited))));
  const blocks = found.blocks.map(({ rawBytes }, i) => i === index ? block : rawBytes);
  writeBytes(options.output, found.kind === 'blob' ? refusing(file, () => joinBlocks(blocks)) : block);
  return FINE;
}
