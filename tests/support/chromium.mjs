// A headless Chromium, spoken to over its pipe: messages are JSON ended by a 0.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { delimiter, join } from 'node:path';

export const chromium = process.env.PATH.split(delimiter)
  .map((folder) => join(folder, 'chromium')).find(existsSync);

// Calls `use` with a page that can open a file, and ends the browser after it.
export async function withPage(size, use) {
  const profile = mkdtempSync(join(tmpdir(), 'brindle-chromium-'));
  const browser = spawn(chromium, ['--headless', '--no-sandbox', '--remote-debugging-pipe',
    `--user-data-dir=${profile}`, '--hide-scrollbars', '--disable-gpu'],
  // What is loaded into this process for a sanitizer is not made for that one.
  { env: { ...process.env, LD_PRELOAD: '' },
    stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe'], timeout: 60000 });
  const send = connect(browser.stdio);
  try {
    return await use(await newPage(send, size));
  } finally {
    send('Browser.close');
    await once(browser, 'close');
    rmSync(profile, { recursive: true, force: true, maxRetries: 5 });
  }
}

function connect([, , , input, output]) {
  const waiting = [];  // for the answer with that id
  let text = '';
  output.setEncoding('utf8').on('data', (data) => {
    const messages = (text + data).split('\0');
    text = messages.pop();
    for (const message of messages.map((one) => JSON.parse(one))) {
      waiting[message.id]?.(message);
    }
  });
  return (method, params = {}, sessionId = undefined) => new Promise((resolve, reject) => {
    const answer = ({ result, error }) => error ? reject(Error(error.message)) : resolve(result);
    const id = waiting.push(answer) - 1;
    input.write(`${JSON.stringify({ id, method, params, sessionId })}\0`);
  });
}

async function newPage(send, { width, height }) {
  const { targetId } = await send('Target.createTarget', { url: 'about:blank' });
  const { sessionId } = await send('Target.attachToTarget', { targetId, flatten: true });
  const call = (method, params) => send(method, params, sessionId);
  await call('Emulation.setDeviceMetricsOverride',
    { width, height, deviceScaleFactor: 1, mobile: false });
  // The value of an expression, which may be a promise.
  const evaluate = async (expression) => {
    const { result, exceptionDetails } = await call('Runtime.evaluate',
      { expression, returnByValue: true, awaitPromise: true });
    if (exceptionDetails) throw Error(exceptionDetails.exception.description);
    return result.value;
  };
  return {
    call,
    evaluate,
    async open(url) {
      const { errorText } = await call('Page.navigate', { url });
      if (errorText) throw Error(errorText);
      const isThere = `location.href === ${JSON.stringify(url)} && document.readyState === 'complete'`;
      while (!await evaluate(isThere));
    },
    // Moves the pointer to an element, given as an expression.
    async hover(element) {
      const [x, y] = await evaluate(`(() => {
        const element = ${element};
        element.scrollIntoView({ block: 'nearest' });
        const { left, top, height } = element.getClientRects()[0];
        return [left + 2, top + height / 2];
      })()`);
      await call('Input.dispatchMouseEvent', { type: 'mouseMoved', x, y });
    },
  };
}
