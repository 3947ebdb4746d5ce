// What the figures are expected to show.
import { readFileSync } from 'node:fs';
import { countOf } from './counts.mjs';

// The floor that is built the way the module works, for each direction.
const PARSE_FLOOR = 'floor: bulk, meta as JSON';
const BUILD_FLOOR = 'floor: arrays in bulk';

const against = (workload, job, rival, limit) => ({ workload, job, rival, limit });

const timed = [
  against('typical', 'parse', PARSE_FLOOR, 1.15),
  against('typical', 'parse', 'node:v8', 1.0),
  against('typical', 'parse', 'avsc', 0.25),
  against('typical', 'parse', 'protobufjs', 0.05),
  against('blob', 'parse', 'node:v8', 0.95),
  against('blob', 'parse', 'msgpackr', 1.2),
  against('arrays', 'parse', 'node:v8', 0.7),
  against('typical', 'build', BUILD_FLOOR, 1.15),
  against('typical', 'build', 'avsc', 0.25),
  against('typical', 'build', 'protobufjs', 0.05),
  against('typical', 'validate', 'JSON', 0.15),
  against('typical', 'edit', 'JSON', 0.4),
  against('blob', 'hash', 'JSON, zlib.crc32, sha256', 0.15),
  against('crc32', '64 B', 'zlib.crc32', 1.0),
  against('crc32', '64 KiB', 'zlib.crc32', 1.0),
  against('crc32', '1 MiB', 'zlib.crc32', 1.0),
];

// `results` has an entry for each function that was timed.
export function timedGoals(results) {
  return timed.flatMap(({ workload, job, rival, limit }) => {
    const result = results.find((one) =>
      one.workload === workload && one.job === job && one.name === rival);
    if (result === undefined) return [];  // was not timed this time
    const goal = `${workload} ${job} / ${rival}`;
    return [{ goal, limit, measured: 1 / result.ratio }];
  });
}

export async function countedGoals() {
  const baseline = JSON.parse(
    readFileSync(new URL('baseline.json', import.meta.url), 'utf8'));
  const growth =
    await countOf('unpack', 'fields100') / await countOf('unpack', 'fields25');
  const read = await countOf('read', 'typical');
  return [
    { goal: 'instructions of unpack: 100 fields / 25 fields', limit: 4.4,
      measured: growth },
    { goal: `instructions of reading typical: ${read} / ` +
      `${baseline.read.typical} at ${baseline.commit}`, limit: 0.4,
      measured: read / baseline.read.typical },
  ];
}
