// brindle check: one line for each file.
import { Failure, FINE, REFUSED, USAGE } from '../failure.mjs';
import { readBytes } from '../input.mjs';
import { describeFault, inspect } from '../inspect.mjs';
import { Progress } from '../progress.mjs';
import { print, unlessFailing } from '../streams.mjs';
import { plural } from '../text.mjs';
import { visible } from '../visible.mjs';

const formats = {
  text({ file, kind, size, blocks, fault, line, colors }) {
    if (fault === undefined) {
      const content = kind === 'blob' ? `blob of ${plural(blocks, 'block')}` : 'block';
      return `${visible(file)}: ${colors.green('ok')}, ${content}, ${size} bytes`;
    }
    const why = visible(`${describeFault(fault)}${line ? ` (${line})` : ''}`);
    return `${visible(file)}: ${colors.red('refused')}, ${why}`;
  },
  json: ({ file, kind, size, blocks, fault, line }) =>
    JSON.stringify({ file, ok: fault === undefined, kind, size, blocks, fault, line }),
  // Messages of a workflow end with the line.
  github: ({ file, fault }) => fault === undefined ? undefined :
    `::error file=${escape(file, true)}::${escape(visible(describeFault(fault)))}`,
};

const escape = (text, isProperty) => [['%', '%25'], ['\r', '%0D'], ['\n', '%0A'],
  ...(isProperty ? [[':', '%3A'], [',', '%2C']] : [])]
  .reduce((escaped, [from, to]) => escaped.replaceAll(from, to), text);

export default function check(files, options, colors) {
  if (files.length === 0) throw new Failure('check needs a file');
  const format = formats[options.format ?? 'text'];
  const progress = new Progress(files.length);
  const codes = files.map((file) => {
    const code = checkOne(file, format, options, colors);
    progress.step();
    return code;
  });
  progress.end();
  return Math.max(...codes);
}

// A file that cannot be read does not keep the others from being checked.
function checkOne(file, format, options, colors) {
  const bytes = unlessFailing(() => readBytes(file, options));
  if (bytes === undefined) return USAGE;
  const { kind, blocks, faults: [fault], lines: [line] } = inspect(bytes);
  const text = format({ file, kind, size: bytes.length, blocks: blocks.length, fault, line, colors });
  if (text !== undefined) print(text);
  return fault === undefined ? FINE : REFUSED;
}
