// Runs the transcripts in tests/transcripts, one after the other in a folder of
// its own: a line that begins with "$ " is a command, the lines behind it what
// it prints on both outputs, and "[n]" its exit code unless that is 0. With
// BRINDLE_UPDATE=1 what comes out is written there instead: look at the diff.
import { spawnSync } from 'node:child_process';
import {
  chmodSync, cpSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, symlinkSync,
  writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { delimiter, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { assert, test } from './module.mjs';

const here = (path) => fileURLToPath(new URL(path, import.meta.url));
const transcripts = here('../transcripts');

const damage = 'const [file, offset, hex] = process.argv.slice(1);' +
  'const bytes = fs.readFileSync(file);' +
  'bytes.write(hex, Number(offset), "hex"); fs.writeFileSync(file, bytes);';

// A folder with the examples, and `brindle` and `damage` on the path.
function workplace(t) {
  const folder = mkdtempSync(join(tmpdir(), 'brindle-cli-'));
  t.after(() => rmSync(folder, { recursive: true }));
  cpSync(here('../../examples'), folder, { recursive: true,
    filter: (file) => !file.includes('examples/') || file.endsWith('.json') });
  const bin = join(folder, '.bin');
  mkdirSync(bin);
  const command = (name, script) => {
    writeFileSync(join(bin, name), `#!/bin/sh\n${script}\n`);
    chmodSync(join(bin, name), 0o755);
  };
  command('brindle', `exec "${process.execPath}" "${here('../../cli/brindle.mjs')}" "$@"`);
  // damage FILE OFFSET HEX: other bytes in a file
  command('damage', `exec "${process.execPath}" -e '${damage}' "$@"`);
  // What sanitizers load first is not made for a shell.
  const { LD_PRELOAD, PATH, ...env } = process.env;
  return { cwd: folder, encoding: 'utf8',
    env: { ...env, PATH: `${bin}${delimiter}${PATH}`, NO_COLOR: '', FORCE_COLOR: '' } };
}

function perform(line, options) {
  const { stdout, status } = spawnSync('bash', ['-c', `exec 2>&1 </dev/null\n${line}`], options);
  return `$ ${line}\n${stdout}${status === 0 ? '' : `[${status}]\n`}`;
}

const isThere = (program) => !spawnSync(program, ['--version']).error;
const skip = !(process.platform === 'linux' && isThere('bash') && isThere('script')) &&
  'needs Linux with bash and script';

// What README.md shows of the command, in a folder with the examples it names.
test('the commands in the README print what stands there', { skip }, (t) => {
  const options = workplace(t);
  spawnSync(process.execPath, [here('../../examples/demo.mjs')]);
  symlinkSync(here('../../examples'), join(options.cwd, 'examples'));
  const shown = readFileSync(here('../../README.md'), 'utf8').match(/^ {4}\$ npx brindle [^]*?\n\n/m)[0];
  const lines = shown.trim().split('\n').map((line) => line.slice(line.startsWith('    ') ? 4 : 0));
  const actual = lines.filter((line) => line.startsWith('$ '))
    .map((line) => perform(line.slice(2).replace('npx ', ''), options)).join('');
  assert.equal(actual.replaceAll(/^\[1\]\n/gm, ''), `${lines.join('\n').replaceAll('$ npx ', '$ ')}\n`);
});

for (const name of readdirSync(transcripts).sort()) {
  test(`the transcript ${name} is what happens`, { skip }, (t) => {
    const options = workplace(t);
    const file = join(transcripts, name);
    const expected = readFileSync(file, 'utf8');
    const commands = [...expected.matchAll(/^\$ (.*)$/gm)].map(([, line]) => line);
    const actual = commands.map((line) => perform(line, options)).join('');
    if (process.env.BRINDLE_UPDATE === '1') writeFileSync(file, actual);
    else assert.equal(actual, expected);
  });
}
