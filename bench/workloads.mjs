// What is measured: BlockSpecs with values, alike on every run.

const STATES = ['off', 'starting', 'running', 'degraded', 'stopped'];
const MODES = ['auto', 'manual', 'scheduled'];

const options = (names) => names.map((key, code) => ({ key, code }));
const enumField = (name, names, value) =>
  ({ name, type: 'enum', enumOptions: options(names), value });
const range = (count, valueOf) => Array.from({ length: count }, (_, i) => valueOf(i));
const hex = (number, digits) => number.toString(16).padStart(digits, '0');

// Who a block is: the constants that parsing and hashing look for.
const identity = (number) => [
  { name: '__uuid', type: 'string', value: `4f1c2b7a-0000-4000-8000-${hex(number, 12)}` },
  { name: '__instance', type: 'uint16', value: number % 16 },
];

const endpoint = {
  metaName: 'endpoint',
  fields: [
    { name: 'host', type: 'string' },
    { name: 'port', type: 'uint16' },
    { name: 'secure', type: 'bool' },
    { name: 'retryMillis', type: 'uint32', repeated: true },
  ],
};

// About 1 KB: 25 fields of all 13 types, a thousand of which fill a blob.
export const typical = (number = 0) => ({
  metaName: 'ventilationUnit',
  fields: [
    { name: 'serialNumber', type: 'string', value: `VU-2026-${hex(number, 6)}` },
    { name: 'location', type: 'string', value: 'north wing, second floor, plant room 2.14' },
    { name: 'offsetCelsius', type: 'int8', value: -3 },
    { name: 'trimSteps', type: 'int16', value: -1200 + number % 100 },
    { name: 'positionMicrometres', type: 'int32', value: 1_250_000 + number },
    { name: 'commissionedNanos', type: 'int64', value: 1_790_000_000_000_000_000n },
    { name: 'fanCount', type: 'uint8', value: 4 },
    { name: 'fanSpeedRpm', type: 'uint16', value: 2850 },
    { name: 'operatingSeconds', type: 'uint32', value: 98_765_432 },
    { name: 'energyMilliwattHours', type: 'uint64', value: 12_345_678_901_234n },
    { name: 'setpointCelsius', type: 'float', value: 21.5 },
    { name: 'enabled', type: 'bool', value: true },
    enumField('state', STATES, 2),
    enumField('mode', MODES, 0),
    { name: 'controller', type: 'datamap', nested: endpoint,
      value: { host: '10.20.0.14', port: 4840, secure: true, retryMillis: [100, 500, 2500] } },
    { name: 'speedCurve', type: 'uint16', repeated: true, value: range(16, (i) => 600 + 150 * i) },
    { name: 'calibration', type: 'float', repeated: true, value: range(12, (i) => i / 4 - 1) },
    { name: 'schedule', type: 'uint8', repeated: true, value: range(48, (i) => (i > 11 && i < 44 ? 100 : 40)) },
    { name: 'alarmTexts', type: 'string', repeated: true, value: ['filter clogged', 'motor overheated', 'belt worn', 'door open'] },
    { name: 'drift', type: 'int32', repeated: true, value: range(6, (i) => (i - 3) * 1000) },
  ],
  metaFields: [
    ...identity(number),
    { name: 'vendor', type: 'string', value: 'north works' },
    { name: 'firmware', type: 'uint32', repeated: true, value: [4, 12, 7] },
    { name: 'maxSpeedRpm', type: 'uint16', value: 3200 },
  ],
});

// As little as a useful block holds.
export const small = () => ({
  metaName: 'relay',
  fields: [
    { name: 'closed', type: 'bool', value: true },
    { name: 'delayMillis', type: 'uint16', value: 250 },
    { name: 'label', type: 'string', value: 'pump 2' },
  ],
  metaFields: [{ name: '__instance', type: 'uint8', value: 3 }],
});

// `count` plain fields, at most 100: as many as a schema may have.
export const manyFields = (count) => ({
  metaName: 'registers',
  fields: range(count, (i) => ({ name: `register${hex(i, 4)}`, type: 'uint32', value: i * 2654435761 % 65536 })),
});

// Four arrays of 4096 numbers.
export const largeArrays = () => ({
  metaName: 'waveform',
  fields: [
    { name: 'gain', type: 'uint8', repeated: true, value: range(4096, (i) => i % 256) },
    { name: 'samples', type: 'int16', repeated: true, value: range(4096, (i) => (i * 37) % 4000 - 2000) },
    { name: 'ticks', type: 'uint32', repeated: true, value: range(4096, (i) => (i * 91) % 16000) },
    { name: 'levels', type: 'float', repeated: true, value: range(4096, (i) => (i - 2048) / 64) },
  ],
});

// Blocks joined to a configuration blob: each after its length in 16 bits.
export function joinBlocks(blocks) {
  return Buffer.concat(blocks.flatMap((block) => {
    const length = Buffer.alloc(2);
    length.writeUInt16LE(block.length);
    return [length, block];
  }));
}

// How many typical blocks the 1 MiB blob holds.
export const BLOCKS_PER_BLOB = 1000;
