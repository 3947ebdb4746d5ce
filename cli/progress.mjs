// How far a run over many files is, on a terminal, once it takes long.
import { writeSync } from 'node:fs';
import { isatty } from 'node:tty';

const ERRORS = 2;
const PATIENCE_MS = 1000;

export class Progress {
  constructor(total) {
    Object.assign(this, { total, done: 0, started: Date.now(), shown: false });
  }

  step() {
    this.done++;
    if (!isatty(ERRORS) || Date.now() - this.started < PATIENCE_MS) return;
    this.shown = true;
    writeSync(ERRORS, `\r${this.done} of ${this.total} files\x1b[K`);
  }

  end() {
    if (this.shown) writeSync(ERRORS, '\r\x1b[K');
  }
}
