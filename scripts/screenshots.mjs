// Takes the pictures in docs/ of what "brindle show" makes of the examples.
import { copyFileSync, mkdtempSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { escape } from '../cli/html/escape.mjs';
import { needDebianPackages, root, runQuietly } from './setup.mjs';

// The block that docs/format.md explains byte by byte.
const lamp = {
  metaName: 'lamp',
  hasCrc: true,
  fields: [
    { name: 'level', type: 'int16', value: -1 },
    { name: 'mode', type: 'enum', value: 1, enumOptions: [{ key: 'off', code: 0 }, { key: 'on', code: 1 }] },
  ],
  metaFields: [{ name: '__instance', type: 'uint8', value: 2 }],
};

export async function takeScreenshots() {
  needDebianPackages('chromium', 'pngquant');
  runQuietly(process.execPath, ['examples/demo.mjs']);
  // Only now can it find the browser.
  const { withPage } = await import('../tests/support/chromium.mjs');
  const folder = mkdtempSync(join(tmpdir(), 'brindle-screenshots-'));
  try {
    const html = makePage(folder);
    await withPage({ width: 1200, height: 800 }, async (page) => {
      await page.open(pathToFileURL(html).href);
      await page.hover(`[...document.querySelectorAll('td')]
        .find(({ textContent }) => textContent === 'targetCelsius')`);
      await save(page, 'docs/show-html.png');
    });
    const terminal = makeTerminal(folder);
    await withPage({ width: 560, height: 944 }, async (page) => {
      await page.open(pathToFileURL(terminal).href);
      await save(page, 'docs/show-bytes.png');
    });
  } finally {
    rmSync(folder, { recursive: true });
  }
}

const brindle = (folder, ...args) => runQuietly(process.execPath,
  [join(root, 'cli/brindle.mjs'), ...args], { cwd: folder });

function makePage(folder) {
  copyFileSync(join(root, 'examples/out/configuration.bin'), join(folder, 'configuration.bin'));
  brindle(folder, 'show', '--html', 'page.html', 'configuration.bin');
  return join(folder, 'page.html');
}

function makeTerminal(folder) {
  writeFileSync(join(folder, 'lamp.json'), JSON.stringify(lamp));
  brindle(folder, 'build', 'lamp.json', '-o', 'lamp.bin');
  const output = brindle(folder, 'show', '--bytes', '--color', 'always', 'lamp.bin');
  const file = join(folder, 'terminal.html');
  writeFileSync(file, terminalPage('brindle show --bytes lamp.bin', output));
  return file;
}

async function save({ call }, name) {
  const { data } = await call('Page.captureScreenshot');
  const file = join(root, name);
  writeFileSync(file, Buffer.from(data, 'base64'));
  runQuietly('pngquant', ['--force', '--strip', '--speed', '1', '--output', file, file]);
  console.log(`${name}: ${statSync(file).size} bytes`);
}

// As a terminal shows it: the command, its output, and the next prompt.
function terminalPage(command, output) {
  const parts = output.trimEnd().split(/\x1b\[(\d+)m(.*?)\x1b\[0m/);
  const lines = parts.map((part, i) => i % 3 === 1 ? `<span class=c${part}>`
    : i % 3 === 2 ? `${inLines(part)}</span>` : inLines(part));
  return `<!DOCTYPE html><meta charset="utf-8"><style>${terminalStyle}</style>` +
    `<pre><b>$</b> ${command}\n${lines.join('')}\n<b>$</b> <i> </i></pre>`;
}

const inLines = (text) => text.split('\n').map(escape).join('\n');

const terminalStyle = `
  body { margin: 0; background: #14181f; }
  pre { margin: 16px 20px; color: #d5dae2; font: 14px/19px 'DejaVu Sans Mono', monospace; }
  .c1 { font-weight: bold; } .c2 { color: #79818d; } .c31 { color: #ff7b72; }
  .c32 { color: #8ddb8c; } .c33 { color: #e8c468; } .c34 { color: #7cb7ff; }
  .c35 { color: #dba6f0; } .c36 { color: #6fd3dc; } i { background: #d5dae2; }`;
