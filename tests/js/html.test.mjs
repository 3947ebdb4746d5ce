import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium, withPage } from '../support/chromium.mjs';
import brindle, { assert, test, valueOf } from './module.mjs';

const command = fileURLToPath(new URL('../../cli/brindle.mjs', import.meta.url));
const options = { skip: chromium ? false : 'chromium is not installed' };

// Opens the page of a file in a browser.
async function open(bytes, use, name = 'block.bin') {
  const folder = mkdtempSync(join(tmpdir(), 'brindle-html-'));
  try {
    const html = join(folder, 'page.html');
    writeFileSync(join(folder, name), bytes);
    const { stderr } = spawnSync(process.execPath, [command, 'show', '--html', html, name],
      { cwd: folder, encoding: 'utf8' });
    await withPage({ width: 1200, height: 300 }, async (page) => {
      await page.open(pathToFileURL(html).href);
      await use(page, stderr);
    });
  } finally {
    rmSync(folder, { recursive: true });
  }
}

const texts = ({ evaluate }, selector) => evaluate(
  `[...document.querySelectorAll(${JSON.stringify(selector)})].map((one) => one.textContent.trim())`);
const lit = async (page) => ({
  values: await texts(page, 'tr.lit td:first-child'),
  elements: await texts(page, 'p.lit'),
  bytes: await texts(page, 'pre .lit'),
});
const find = (selector, text) => `[...document.querySelectorAll(${JSON.stringify(selector)})]
  .findLast((one) => one.textContent.trim() === ${JSON.stringify(text)})`;

const nested = { metaName: 'n', fields: [{ name: 'low', type: 'int16' }, { name: 'high', type: 'int16' }] };
const block = () => valueOf(brindle.buildBlock({
  metaName: 'sensor',
  metaFields: [{ name: 'bus', type: 'uint8', value: 0xab }],
  fields: [{ name: 'level', type: 'float', value: 16.5 },
    { name: 'ranges', type: 'datamap', repeated: true, nested,
      value: [{ low: -1, high: 1 }, { high: 64 }] }],
}));

test('a value and its bytes light up together', options, () => open(block(), async (page) => {
  const level = { values: ['level'], elements: ['index level', 'value 16.5'], bytes: ['00', '00 00 84 41'] };
  await page.hover(find('td', 'level'));
  assert.deepEqual(await lit(page), level);
  await page.hover(find('.tree strong', 'value level'));
  assert.deepEqual(await lit(page), level);
  await page.hover(find('pre *', '00 00 84 41'));
  assert.deepEqual(await lit(page), { ...level, elements: ['value 16.5'], bytes: ['00 00 84 41'] });
  await page.hover(find('td', 'bus'));
  assert.deepEqual(await lit(page), { values: ['bus'], elements: ['value 171'], bytes: ['ab'] });
  await page.hover(find('td', 'ranges[1].high'));
  assert.deepEqual((await lit(page)).bytes, ['01', '80 01']);
  await page.hover('document.querySelector("h1")');
  assert.deepEqual(await lit(page), { values: [], elements: [], bytes: [] });
}));

test('the keyboard does it too, and both halves follow', options, () => open(block(), async (page) => {
  const press = (key) => page.call('Input.dispatchKeyEvent', { type: 'keyDown', key });
  await page.evaluate('document.querySelector("pre [tabindex]").focus()');
  await press('ArrowRight');
  assert.deepEqual((await lit(page)).elements, ['version 10']);
  await page.evaluate(`${find('td a', 'ranges[1].high')}.focus()`);
  assert.deepEqual((await lit(page)).bytes, ['01', '80 01']);
  const isInSight = (selector) => page.evaluate(`(() => {
    const { top, bottom } = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
    return top > 0 && bottom < innerHeight;
  })()`);
  assert.equal(await isInSight('pre .lit'), true);
  await page.hover(find('pre *', '4d 48 43 53'));
  assert.equal(await isInSight('p.lit'), true);
}));

test('a fault is listed and marked in both halves', options, () => {
  const bytes = block();
  bytes[bytes.indexOf(0xab) - 2] = 99;  // the type of a constant, which then has no elements
  return open(bytes, async (page, stderr) => {
    const [fault] = await texts(page, 'header li');
    assert.equal(stderr.split('\n')[0], `block.bin: ${fault}`);
    await page.hover('document.querySelector("header a")');
    const { elements, bytes } = await lit(page);
    assert.equal(bytes.length, 1);
    assert.deepEqual([elements, bytes], [await texts(page, '.tree p.bad'), await texts(page, 'pre .bad')]);
  });
});

test('names and texts of a file do no harm', options, () => {
  const evil = '</script></title><img src=x onerror="owned=1">\'\u202e\u0007';
  const shown = evil.replace('\u202e', '\\u202e').replace('\u0007', '\\u0007');
  const bytes = valueOf(brindle.buildBlock({ metaName: evil, fields: [
    { name: evil, type: 'string', value: evil },
    { name: 'mode', type: 'enum', value: 0, enumOptions: [{ key: evil, code: 0 }] }] }));
  return open(bytes, async (page) => {
    assert.equal(await page.evaluate('document.querySelector("img")'), null);
    assert.deepEqual((await texts(page, 'td')).filter((_, i) => i % 3 !== 1),
      [shown, JSON.stringify(evil).replace('\u202e', '\\u202e'), 'mode', `0 (${shown})`]);
    // Even if something were to get through.
    assert.equal(await page.evaluate(`{
      const script = document.createElement('script');
      script.textContent = 'owned = 1';
      document.body.append(script);
      typeof owned;
    }`), 'undefined');
  }, '<b>.bin');
});
