import { spawnSync } from 'node:child_process';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { assert, test } from './module.mjs';

const here = (path) => fileURLToPath(new URL(path, import.meta.url));
const folder = process.env.BRINDLE_TEST_MODULE
  ? dirname(process.env.BRINDLE_TEST_MODULE) : here('../../build/Release');
const skip = process.platform !== 'linux';  // the module is made for Linux only

test('nothing gets lost in silence wherever memory runs out', { skip }, (t) => {
  const child = spawnSync(process.execPath,
    [here('every_failure.mjs'), join(folder, 'brindle_failing.node')],
    { encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe', 'pipe'], timeout: 300000, maxBuffer: 1e8 });
  assert.equal(child.status, 0, child.stderr.replace(/^\[brindle\].*\n/gm, ''));
  const { stderr, counts } = JSON.parse(child.output[3]);
  assert.equal(child.stderr, stderr);
  for (const line of ['get field', 'create field value', 'emplace field (i8)']) {
    assert.ok(child.stdout.includes(`Failed to ${line}\n`), line);
  }
  for (const [name, ...points] of counts) t.diagnostic(`${name}: ${points} failures met`);
});
