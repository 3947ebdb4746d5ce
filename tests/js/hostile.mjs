// What is thrown is no Error, and throws in turn when it is looked at.
function fail() {
  throw new Proxy({}, { get: fail, getPrototypeOf: fail });
}

// The object, with one property that cannot be read.
export const bomb = (key, object = {}) =>
  Object.defineProperty(object, key, { get: fail, enumerable: true });

const { proxy: revoked, revoke } = Proxy.revocable({}, {});
revoke();

// Objects whose properties cannot be listed.
export const unlistable = [revoked, new Proxy({}, { ownKeys: fail })];
