// brindle show: as text, as JSON, byte by byte, as a page.
import { showBytes } from '../bytes.mjs';
import { documentOf } from '../documents.mjs';
import { Failure, FINE, REFUSED, USAGE } from '../failure.mjs';
import { writeFile } from '../files.mjs';
import { page } from '../html.mjs';
import { readBytes } from '../input.mjs';
import { inspect } from '../inspect.mjs';
import { reportFaults } from '../report.mjs';
import { print, unlessFailing } from '../streams.mjs';
import { showText } from '../text.mjs';

const writers = {
  text: ({ file, found, colors }) => showText(file, found, colors).forEach((line) => print(line)),
  json: ({ found }) => printDocument(found, 2),
  ndjson: ({ found }) => printDocument(found),
  bytes: ({ bytes, found, colors }) => showBytes(bytes, found, colors).forEach((line) => print(line)),
  html: ({ file, bytes, found, options }) => writeFile(options.html, page(file, bytes, found)),
};

// What cannot be parsed has no document; its fault is reported all the same.
function printDocument(found, indent) {
  const document = documentOf(found);
  if (document !== undefined) print(JSON.stringify(document, null, indent));
}

export default function show(files, options, colors) {
  if (files.length === 0) throw new Failure('show needs a file');
  const write = writers[chosenFormat(files, options)];
  const codes = files.map((file, i) => {
    const bytes = unlessFailing(() => readBytes(file, options));
    if (bytes === undefined) return USAGE;
    if (i > 0 && write === writers.text) print();
    const found = inspect(bytes);
    write({ file, bytes, found, options, colors });
    reportFaults(file, found, colors);
    return found.faults.length === 0 ? FINE : REFUSED;
  });
  return Math.max(...codes);
}

function chosenFormat(files, options) {
  const given = ['json', 'ndjson', 'bytes', 'html'].filter((name) => options[name] !== undefined);
  if (given.length > 1) throw new Failure(`only one of --${given.join(' and --')}`);
  const [format = 'text'] = given;
  if (files.length === 1 || !['json', 'html'].includes(format)) return format;
  throw new Failure(`--${format} takes one file${format === 'json' ? '; --ndjson takes many' : ''}`);
}
