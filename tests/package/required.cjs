'use strict';

// Loads the package by `require`: here, a second time in the same process, and
// in a thread.

const { Worker, isMainThread } = require('node:worker_threads');
const exercise = require('./exercise.cjs');

exercise(require('brindle'));

if (isMainThread) {
  const first = require('brindle');
  for (const file of Object.keys(require.cache)) {
    if (/[\\/]brindle[\\/]/.test(file)) delete require.cache[file];
  }
  const second = require('brindle');
  if (second.buildBlock === first.buildBlock) throw new Error('not loaded a second time');
  exercise(second);
  new Worker(__filename).on('exit', (code) => {
    if (code !== 0) throw new Error(`the thread ended with ${code}`);
    console.log('required');
  });
}
