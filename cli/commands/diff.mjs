// brindle diff: blocks that came, went, changed or moved.
import { compare } from '../compare.mjs';
import { Failure, FINE, REFUSED } from '../failure.mjs';
import { loadBlocks } from '../load.mjs';
import { print } from '../streams.mjs';
import { columns } from '../table.mjs';
import { visible } from '../visible.mjs';

export default function diff(files, options, colors) {
  if (files.length !== 2) throw new Failure('diff takes two files');
  const [before, after] = files.map((file) => loadBlocks(file, options).blocks);
  const differences = compare(before, after);
  const lines = options.json ? [JSON.stringify(asJson(differences), null, 2)]
    : asText(differences, colors);
  lines.forEach((line) => print(line));
  const { added, removed, changed, moved } = differences;
  return added.length + removed.length + changed.length === 0 && !moved ? FINE : REFUSED;
}

const identity = ({ index, block: { uuid, instance, meta } }) =>
  ({ index, name: meta.name, uuid, instance });

const asJson = ({ added, removed, changed, moved }) => ({
  removed: removed.map(identity),
  added: added.map(identity),
  changed: changed.map(({ before, after, schema, values }) =>
    ({ ...identity(after), indexBefore: before.index, schema, values })),
  moved,
});

function asText({ added, removed, changed, moved }, colors) {
  return [
    ...removed.map((found) => colors.red(`- ${titleOf(found)}: removed`)),
    ...added.map((found) => colors.green(`+ ${titleOf(found)}: added`)),
    ...changed.flatMap((change) => changeLines(change, colors)),
    ...(moved ? [colors.yellow('blocks in another order')] : []),
  ];
}

const SAME = '    only the order of values, constants of nested schemas, or bytes that mean nothing';

function titleOf({ index, block: { meta, uuid, instance } }) {
  const id = uuid === undefined ? '' : ` ${uuid}/${instance ?? '-'}`;
  return visible(`block ${index} ${meta.name}${id}`);
}

// Bytes can differ where parsing answers the same schema and values.
function changeLines({ after, schema, values }, colors) {
  const lines = [
    ...schema.map((line) => visible(`    schema  ${line}`)),
    ...columns(values.map(({ path, before, after }) =>
      [visible(path), `${colors.red(visible(before))} -> ${colors.green(visible(after))}`]), '    '),
  ];
  return [`~ ${titleOf(after)}`, ...(lines.length === 0 ? [SAME] : lines)];
}
