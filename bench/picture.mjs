// Draws what the others take for the jobs of one block, in times of what the
// module takes, as an SVG: on a logarithmic scale, to the right of the line at 1
// the module is faster.
import { percent } from './table.mjs';

const WORKLOAD = 'typical';
const JOBS = ['parse', 'build', 'edit', 'validate'];
const ROW = 18;
const BAR = 12;
const LEFT = 170;
const TOP = 64;
const DECADE = 125;
const TICKS = [0.1, 1, 10, 100, 1000];

const x = (times) => LEFT + DECADE * (Math.log10(times) + 1);
const WIDTH = x(1000) + 60;

const figure = (times) => `${Number(times.toPrecision(times < 1 ? 2 : 3))}`;
const isRival = ({ name }) => name !== 'brindle' && !name.startsWith('floor');

export function picture(results, machine, date) {
  const groups = JOBS.map((job) => results.filter((one) =>
    one.workload === WORKLOAD && one.job === job && isRival(one)));
  const heights = groups.map(({ length }) => (length + 1) * ROW);
  const bottom = TOP + heights.reduce((sum, height) => sum + height, 0);
  let top = TOP;
  const bars = groups.map((group, i) => {
    const drawn = drawGroup(JOBS[i], group, top);
    top += heights[i];
    return drawn;
  });
  return svg(bottom + 30, [
    text(12, 22, 'title', `One block of about 1 KB: time in times of what brindle takes`),
    text(12, 40, 'note', `${machine}; ${date}; npm run bench -- --picture FILE`),
    ...TICKS.map((tick) => drawTick(tick, bottom)),
    ...bars,
  ].join('\n'));
}

function drawGroup(job, group, top) {
  const rows = group.map((one, i) => drawBar(one, top + i * ROW));
  return [text(12, top + BAR, 'job', job), ...rows].join('\n');
}

// From the line at 1 to the ratio, with the spread in its tooltip.
function drawBar({ name, ratio: times, spread }, y) {
  const from = Math.min(x(1), x(times));
  const width = Math.abs(x(times) - x(1)).toFixed(1);
  return [
    text(LEFT - 8, y + BAR - 2, 'rival', name),
    `<rect class="${times < 1 ? 'faster' : 'slower'}" x="${from.toFixed(1)}" y="${y}" ` +
      `width="${width}" height="${BAR}"><title>${name}: ${figure(times)}, ± ${percent(spread)}` +
      '</title></rect>',
    text(Math.max(x(1), x(times)) + 5, y + BAR - 2, 'figure', figure(times)),
  ].join('\n');
}

function drawTick(times, bottom) {
  const at = x(times).toFixed(1);
  return `<line class="${times === 1 ? 'one' : 'tick'}" x1="${at}" x2="${at}" ` +
    `y1="${TOP - 8}" y2="${bottom}"/>\n${text(x(times), bottom + 16, 'scale', `${times}×`)}`;
}

const text = (left, y, kind, content) =>
  `<text class="${kind}" x="${left.toFixed(1)}" y="${y}">${content}</text>`;

const svg = (height, content) => `<svg xmlns="http://www.w3.org/2000/svg" \
viewBox="0 0 ${WIDTH} ${height}" width="${WIDTH}" height="${height}" role="img">
<title>How long others take for the jobs of brindle</title>
<style>
svg { background: #fff; font: 12px system-ui, sans-serif; }
text { fill: #24292f; } .title { font-size: 15px; font-weight: 600; }
.job { font-weight: 600; } .note, .scale, .figure { fill: #57606a; font-size: 11px; }
.rival { text-anchor: end; } .scale { text-anchor: middle; }
.tick { stroke: #d0d7de; } .one { stroke: #24292f; }
.slower { fill: #2f6fde; } .faster { fill: #d9822b; }
@media (prefers-color-scheme: dark) {
  svg { background: #0d1117; } text { fill: #e6edf3; }
  .note, .scale, .figure { fill: #9198a1; }
  .tick { stroke: #30363d; } .one { stroke: #e6edf3; }
}
</style>
${content}
</svg>
`;
