// brindle blob: join, split, list.
import { mkdirSync } from 'node:fs';
import { join as pathOf } from 'node:path';
import { joinBlocks } from '../../lib/index.mjs';
import { hex } from '../byte_map.mjs';
import { Failure, FINE } from '../failure.mjs';
import { writeBytes, writeFile } from '../files.mjs';
import { reasonOf } from '../input.mjs';
import { loadBlocks } from '../load.mjs';
import { refusing } from '../refusing.mjs';
import { print } from '../streams.mjs';
import { columns } from '../table.mjs';
import { visible } from '../visible.mjs';

const actions = { join, split, list };

export default function blob([action, ...files], options) {
  if (!Object.hasOwn(actions, action ?? '')) throw new Failure('blob is followed by join, split or list');
  if (files.length === 0) throw new Failure(`blob ${action} needs a file`);
  if (action !== 'join' && files.length !== 1) throw new Failure(`blob ${action} takes one file`);
  actions[action](files, options);
  return FINE;
}

// Of blocks and blobs, in the order of the files.
function join(files, options) {
  const blocks = files.flatMap((file) => loadBlocks(file, options).blocks);
  const bytes = refusing('the blob', () => joinBlocks(blocks.map(({ rawBytes }) => rawBytes)));
  writeBytes(options.output, bytes);
}

function split([file], options) {
  const folder = options.output ?? '.';
  try {
    mkdirSync(folder, { recursive: true });
  } catch (error) {
    throw new Failure(`${folder}: ${reasonOf(error)}`);
  }
  loadBlocks(file, options).blocks.forEach(({ meta, rawBytes }, index) => {
    const name = pathOf(folder, `${index}-${meta.name.replace(/[^\w-]+/g, '_').slice(0, 60)}.bin`);
    writeFile(name, rawBytes);
    print(name);
  });
}

function list([file], options) {
  let offset = 0;
  const rows = loadBlocks(file, options).blocks.map(({ meta, uuid, instance, raw }, index) => {
    const row = { index, offset, size: raw.size, crc32: raw.crc32, uuid, instance, name: meta.name };
    offset += raw.size + 2;
    return row;
  });
  if (options.json) return print(JSON.stringify(rows, null, 2));
  const header = ['index', 'offset', 'size', 'crc32', 'uuid', 'instance', 'name'];
  return columns([header, ...rows.map((row) => [`${row.index}`, `${row.offset}`, `${row.size}`,
    hex(row.crc32, 8), row.uuid ?? 'none', `${row.instance ?? 'none'}`, visible(row.name)])])
    .forEach((line) => print(line));
}
