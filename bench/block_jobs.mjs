// The jobs on one block: for each a set of functions that do the same, to be
// timed against each other. What they answer is compared here, before anything
// is timed.
import assert from 'node:assert/strict';
import * as brindle from '../lib/index.mjs';
import { contenders } from './contenders/all.mjs';
import { buildFloors, parseFloors } from './floor.mjs';
import {
  assertHolds, assertSame, informationOf, inPlainTypes,
} from './information.mjs';
import * as workloads from './workloads.mjs';

export const ADDON = 'brindle';

const EDITS = {
  typical: {
    location: 'roof', fanSpeedRpm: 3100, enabled: false, state: 4,
    calibration: [0.5, 0.25],
  },
  fields100: {
    register0000: 1, register0010: 2, register0020: 3, register0030: 4,
    register0040: 5,
  },
};

export const specs = {
  typical: workloads.typical(),
  small: workloads.small(),
  fields25: workloads.manyFields(25),
  fields100: workloads.manyFields(100),
  arrays: workloads.largeArrays(),
};

export function valueOf(result) {
  assert.ok(result.ok, result.error?.message);
  return result.value;
}
export const buildBlock = (spec) => valueOf(brindle.buildBlock(spec));

// One function for each contender, by name.
export const forEachOf = (list, makeWork) =>
  Object.fromEntries(list.map((entry) => [entry.contender.name, makeWork(entry)]));

// What each contender has instead of a block that says `parsed`.
export function messagesOf(parsed) {
  return contenders.map((contender) => {
    const information = contender.plain
      ? inPlainTypes(informationOf(parsed)) : informationOf(parsed);
    const message = contender.encode(information);
    assertSame(contender.decode(message), information, contender.name);
    return { contender, information, message };
  });
}

export function checkedParseFloors(result) {
  const floors = parseFloors(result);
  for (const [name, work] of Object.entries(floors)) {
    assert.deepEqual(work(), result, name);
  }
  return floors;
}

function parseJob(block, messages) {
  return {
    [ADDON]: () => brindle.parseMetaBlock(block),
    ...checkedParseFloors(brindle.parseMetaBlock(block)),
    ...forEachOf(messages,
      ({ contender, message }) => () => contender.decode(message)),
  };
}

// Which properties `build` reads of a BlockSpec, sorted: whether a value is
// converted before or after the next one is read makes no difference here.
function readsOf(spec, build) {
  const reads = [];
  const watch = (value) => {
    if (Array.isArray(value)) return value.map(watch);
    if (value === null || typeof value !== 'object') return value;
    return new Proxy(value, { get(target, key) {
      reads.push(key);
      return watch(target[key]);
    } });
  };
  build(watch(spec));
  return reads.sort();
}

function buildJob(spec, block, messages) {
  const floors = buildFloors(spec, block.length);
  const reads = readsOf(spec, brindle.buildBlock);
  for (const [name, work] of Object.entries(floors)) {
    assert.deepEqual(readsOf(spec, work), reads, name);
    assert.equal(valueOf(work()).length, block.length);
  }
  return {
    [ADDON]: () => brindle.buildBlock(spec),
    ...floors,
    ...forEachOf(messages,
      ({ contender, information }) => () => contender.encode(information)),
  };
}

// The others have no way to check a message but to decode it.
function validateJob(block, messages) {
  assert.equal(valueOf(brindle.validateBlock(block)).size, block.length);
  return {
    [ADDON]: () => brindle.validateBlock(block),
    ...forEachOf(messages,
      ({ contender, message }) => () => contender.decode(message)),
  };
}

function editJob(block, messages, values) {
  const edit = () => brindle.packMetaBlock({ rawBytes: block, values });
  const editMessage = ({ contender, message }) => () => {
    const information = contender.decode(message);
    Object.assign(information.values, values);
    return contender.encode(information);
  };
  const wanted = { ...valueOf(brindle.parseMetaBlock(block)).values, ...values };
  const edited = valueOf(brindle.parseMetaBlock(valueOf(edit())));
  assert.deepEqual(edited.values, wanted);
  for (const entry of messages) {
    const { contender } = entry;
    const information = contender.decode(editMessage(entry)());
    assertSame(information.values,
      contender.plain ? inPlainTypes(wanted) : wanted, contender.name);
  }
  return { [ADDON]: edit, ...forEachOf(messages, editMessage) };
}

// By job a function that gives what is to be timed.
export function blockJobs(workload) {
  const spec = specs[workload];
  const block = buildBlock(spec);
  const parsed = valueOf(brindle.parseMetaBlock(block));
  assertHolds(parsed, spec);
  const messages = messagesOf(parsed);
  const edits = EDITS[workload];
  return {
    parse: () => parseJob(block, messages),
    build: () => buildJob(spec, block, messages),
    ...edits && { edit: () => editJob(block, messages, edits) },
    validate: () => validateJob(block, messages),
  };
}
