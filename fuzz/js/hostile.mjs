// Values and objects made to break whoever reads them. Cases hold their names
// only: such values cannot be printed, and many are used up by one look.
import { bomb, unlistable } from '../../tests/js/hostile.mjs';
import { brindle, fc } from './support.mjs';

const bytes = () => Uint8Array.from({ length: 64 }, (_, i) => i);
const canResize = 'resize' in ArrayBuffer.prototype;  // not in Node.js 18
const resizable = (size) =>
  new ArrayBuffer(size, canResize ? { maxByteLength: 2 * size } : undefined);
const revoked = (target) => {
  const { proxy, revoke } = Proxy.revocable(target, {});
  revoke();
  return proxy;
};
// The bytes of the memory, which loses them unless it has none.
const takenOver = (memory) =>
  new Uint8Array(memory.byteLength === 0 ? 0 : structuredClone(memory, { transfer: [memory] }));
const detached = (view) => {
  takenOver(view.buffer);
  return view;
};
const outOfBounds = () => {
  const view = new Uint8Array(resizable(64), 40);
  view.buffer.resize?.(8);
  return view;
};
const cyclic = (object) => {
  const list = [object];
  list.push(list);
  const properties = { self: object, nested: object, fields: list, type: 'datamap',
    metaName: 'cyclic', name: 'cyclic', value: object, values: object };
  for (const [key, value] of Object.entries(properties)) {
    Object.defineProperty(object, key, { value, enumerable: true });
  }
  return object;
};
const withPrototype = (object, prototype) => Object.setPrototypeOf(object, prototype);

const readKeys = ['metaName', 'fields', 'metaFields', 'rawBytes', 'values', 'name', 'type', 'value',
  'length', 'key', 'code', 'toString', 'then'];
const throwing = new Proxy({}, {
  get() { throw bomb('message', Error()); },
  ownKeys() { throw null; },
});
// Answers another of its kind to everything.
const maze = () => new Proxy(() => {}, {
  get: maze, has: () => true, apply: maze,
  ownKeys: () => ['prototype', ...Array(200).keys()].map(String),
  getOwnPropertyDescriptor: () => ({ value: 1, enumerable: true, configurable: true }),
});

// Its prototypes never end. Never listed: the engine goes through 100,000.
const endless = () => new Proxy({}, { getPrototypeOf: endless });

const makers = {
  undefined: () => undefined, null: () => null, zero: () => -0, nan: () => NaN,
  big: () => 2n ** 64n, symbol: () => Symbol('s'), wellKnownSymbol: () => Symbol.toPrimitive,
  loneSurrogate: () => '\ud800', nul: () => '\0', format: () => '%s%n%d',
  longText: () => 'x'.repeat(70000),
  holes: () => [, 1, , 2], endless: () => Array(2 ** 32 - 1), nested: () => [{}, [null], [[]]],
  cyclicObject: () => cyclic({}), cyclicArray: () => cyclic([]),
  cyclicFunction: () => cyclic(() => {}), class: () => class { static metaName = ''; },
  generator: () => (function* () {})(), promise: () => Promise.resolve(),
  date: () => new Date(NaN), map: () => new Map([['name', 'n']]), regexp: () => /n/g,
  boxed: () => Object('boxed'), global: () => globalThis,
  frozen: () => Object.freeze({ name: 'n' }),
  error: () => bomb('message', Error()), unlistable: () => unlistable[1],
  getters: () => readKeys.reduce((object, key) => bomb(key, object), {}),
  throwing: () => throwing, maze, revokedObject: () => revoked({}),
  revokedArray: () => revoked([]), revokedFunction: () => revoked(() => {}),
  proxiedArray: () => new Proxy([1], {}), arrayOfBombs: () => bomb(1, [{}]),
  subclass: () => new (class extends Array {})(3),
  // Memory, and views of it.
  arrayBuffer: () => new ArrayBuffer(64), buffer: () => Buffer.from(bytes()),
  float64: () => new Float64Array(bytes().buffer), dataView: () => new DataView(bytes().buffer),
  tracking: () => new Uint8Array(resizable(64)), outOfBounds,
  shared: () => new Uint8Array(new SharedArrayBuffer(64)),
  wasm: () => new Uint8Array(new WebAssembly.Memory({ initial: 1 }).buffer, 8, 64),
  detachedMemory: () => detached(bytes()).buffer,
  detachedBuffer: () => detached(Buffer.from(bytes().buffer)),
  detachedView: () => detached(new DataView(new ArrayBuffer(64))),
  fakeBuffer: () => Object.create(Buffer.prototype),
  proxiedBuffer: () => new Proxy(Buffer.alloc(64), {}),
  orphan: () => withPrototype(Buffer.from(bytes()), null),
  mazeBuffer: () => withPrototype(bytes(), endless()),
  revokedPrototype: () => withPrototype(bytes(), revoked({})),
  cutOff: () => withPrototype(Buffer.from(bytes()), throwing),
  lyingLength: () => Object.defineProperty(bytes(), 'length', { value: 2 ** 40 }),
};

export const hostile = fc.oneof(
  { weight: 3, arbitrary: fc.constantFrom(...Object.keys(makers)).map((name) => ({ name })) },
  fc.anything({ withBigInt: true, withBoxedValues: true, withDate: true, withMap: true,
    withSet: true, withNullPrototype: true, withSparseArray: true,
    withTypedArray: true }).map((value) => ({ value })));
export const make = ({ name, value }) => name === undefined ? value : makers[name]();

// Calls every native export with any value, any receiver, nothing, and as a
// constructor. They are those without a name of their own; the helpers throw.
export function callAll(value, assertAnswer = () => {}) {
  for (const [name, call] of Object.entries(brindle)) {
    if (typeof call !== 'function' || call.name !== '') continue;
    Reflect.construct(call, [value]);
    for (const answer of [call(value), Reflect.apply(call, value, [value, value]), call()]) {
      assertAnswer(name, answer);
    }
  }
}

// Calls within calls until the stack ends.
const dive = () => brindle.buildBlock({ metaName: '', get fields() { return dive(); } });

// What happens while the library reads the property `key` of `owner`; an action
// may give another value for it.
const actions = {
  throw: (_, { odd }) => { throw make(odd); },
  replace: (_, { odd }) => ({ value: make(odd) }),
  detach: (_, { memory }) => void takenOver(memory).fill(0xee),
  shrinkMemory: (_, { memory }) => void (memory.resizable && memory.resize(8)),
  growMemory: (_, { memory }) => void (memory.resizable && memory.resize(memory.maxByteLength)),
  shrink: ({ owner }) => void (owner.length = 0),
  grow: ({ owner }, { odd }) => void (Array.isArray(owner) && owner.push(make(odd), {}, null)),
  deleteAll: ({ owner }) => Object.keys(owner).forEach((key) => Reflect.deleteProperty(owner, key)),
  recurse: (_, world) => void (world.depth++ < 2 && callAll(world.root)),
  overflow: () => void dive(),
  gc: () => globalThis.gc?.({ type: 'minor' }),
};

const event = fc.record({ at: fc.nat(60), odd: hostile,
  action: fc.constantFrom(...Object.keys(actions)) }, { noNullPrototype: true });
export const plot = fc.array(event, { minLength: 1, maxLength: 4 });

// A copy of the value whose every property is a getter, and whose objects are
// proxies if asked; `plotted` says at which read what happens. `world` holds
// the memory that the actions attack, and gets the copy as `root`.
export function sabotaged(value, plotted, proxied, world) {
  let reads = 0;
  const onRead = (owner, inner) => {
    const due = plotted.find(({ at }) => at === reads);
    reads++;
    const other = due && actions[due.action]({ owner }, Object.assign(world, { odd: due.odd }));
    return other === undefined ? inner : other.value;
  };
  const trapped = (copy) => new Proxy(copy, Object.fromEntries(
    ['get', 'has', 'ownKeys', 'getOwnPropertyDescriptor', 'getPrototypeOf'].map((trap) =>
      [trap, (...args) => onRead(copy) ?? Reflect[trap](...args)])));
  const copyOf = (original) => {
    const isTree = typeof original === 'object' && original !== null;
    if (!isTree || ArrayBuffer.isView(original)) return original;
    const copy = Array.isArray(original) ? [] : {};
    for (const [key, item] of Object.entries(original)) {
      const inner = copyOf(item);
      const get = () => onRead(copy, inner);
      Object.defineProperty(copy, key, { get, enumerable: true, configurable: true });
    }
    return proxied && !Array.isArray(copy) ? trapped(copy) : copy;
  };
  return Object.assign(world, { depth: 0, root: copyOf(value) }).root;
}

// Memory that a plot can take away or resize, with a copy of the block in it.
export function attackable(block) {
  const memory = resizable(block.length);
  new Uint8Array(memory).set(block);
  return memory;
}
