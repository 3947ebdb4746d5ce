// Interleaved timing: every function runs once in a round, in an order that
// rotates, so that whatever slows the machine down for a while slows all down.
const now = () => process.hrtime.bigint();

function elapsedMs(work, times) {
  const start = now();
  for (let i = 0; i < times; ++i) work();
  return Number(now() - start) / 1e6;
}

// How often `work` runs in `sliceMs`; at least once. Warms it up on the way.
function calibrate(work, sliceMs) {
  let times = 1;
  for (;;) {
    const took = elapsedMs(work, times);
    if (took >= sliceMs) return Math.max(1, Math.round(times * sliceMs / took));
    times *= 2;
  }
}

function quantile(samples, part) {
  const sorted = [...samples].sort((a, b) => a - b);
  return sorted[Math.round((sorted.length - 1) * part)];
}
const medianOf = (samples) => quantile(samples, 0.5);

// Half of what the middle half of the samples extends over, as a part of their
// median.
const spreadOf = (samples) =>
  (quantile(samples, 0.75) - quantile(samples, 0.25)) / 2 / medianOf(samples);

// `ratio` is to the first function: the median of the ratios in each round.
const summarize = ({ name, samples }, _, [first]) => ({
  name,
  median: medianOf(samples),
  spread: spreadOf(samples),
  ratio: medianOf(samples.map((sample, round) => sample / first.samples[round])),
});

// Times the functions of `works`, an object, against each other, in
// microseconds. Rounds that take long are fewer: `limitMs` bounds the whole, but
// never below 5.
export function race(works, { rounds, sliceMs, limitMs }) {
  globalThis.gc();  // what earlier jobs left would make collections dearer
  const lanes = Object.entries(works).map(([name, work]) =>
    ({ name, work, times: calibrate(work, sliceMs), samples: [] }));
  const runRound = (round) => {
    for (let i = 0; i < lanes.length; ++i) {
      const { work, times, samples } = lanes[(i + round) % lanes.length];
      samples.push(1000 * elapsedMs(work, times) / times);
    }
  };
  const firstMs = elapsedMs(() => runRound(0), 1);
  const affordable = Math.max(5, Math.floor(limitMs / firstMs));
  for (let i = 1; i < Math.min(rounds, affordable); ++i) runRound(i);
  return lanes.map(summarize);
}
