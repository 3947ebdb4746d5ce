'use strict';

// In the order of their codes in a packed schema.
const fieldTypes = [
  'int8', 'int16', 'int32', 'int64', 'uint8', 'uint16', 'uint32', 'uint64',
  'float', 'string', 'enum', 'bool', 'datamap',
];

module.exports = fieldTypes;
