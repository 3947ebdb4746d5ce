// Blocks and BlockSpecs as JSON, which "build" reads again.
import { fromJSON, specFromBlock, toJSON } from '../lib/index.mjs';
import { scalars } from '../lib/json_values.cjs';
import { DEEPEST } from '../lib/limits.cjs';
import { Failure, REFUSED } from './failure.mjs';


// The document of a file: that of its block, or an array of those of a blob.
// Undefined if a part of it cannot be parsed.
export function documentOf({ kind, blocks }) {
  if (blocks.some(({ dto }) => dto === undefined)) return undefined;
  const documents = blocks.map(({ dto }) => toJSON(dto));
  return kind === 'blob' ? documents : documents[0];
}

// The BlockSpecs in a document: of a block, of a blob, or as it is written.
export const specsOf = (document) => Array.isArray(document) ? document.map(specOf) : [specOf(document)];

function specOf(document) {
  if (!isRecord(document)) throw new Failure('neither a BlockSpec nor a block as JSON', REFUSED);
  if ('rawBytes' in document) return specFromBlock(fromJSON(document));
  checkDepth(document);
  return convertSpec(document, 'fromJSON');
}

// What is nested deeper cannot be built, and might never end.
function checkDepth(document) {
  let schemas = [document];
  for (let level = 1; schemas.length !== 0; level++) {
    if (level > DEEPEST) throw new Failure(`schemas nest at most ${DEEPEST} levels deep`, REFUSED);
    schemas = schemas.flatMap(({ fields }) => Array.isArray(fields) ? fields : [])
      .map((field) => field?.nested).filter(isRecord);
  }
}

export const specToJSON = (spec) => convertSpec(spec, 'toJSON');

// With values as in JSON, or as `buildBlock` takes them. Whatever is not as it
// should be stays as it is: the native module says what is wrong with it.
function convertSpec(spec, way) {
  const convertAll = (list) => Array.isArray(list) ? list.map((field) => convertField(field, way)) : list;
  return {
    ...spec,
    ...('fields' in spec && { fields: convertAll(spec.fields) }),
    ...('metaFields' in spec && { metaFields: convertAll(spec.metaFields) }),
  };
}

function convertField(field, way) {
  if (typeof field !== 'object' || field === null) return field;
  const { nested, value } = field;
  return {
    ...field,
    ...(isRecord(nested) && { nested: convertSpec(nested, way) }),
    ...(value != null && { value: convertValue(value, field, way, field.name) }),
  };
}

const isRecord = (value) => typeof value === 'object' && value !== null && !Array.isArray(value);

function convertValue(value, field, way, path) {
  if (!field.repeated) return convertOne(value, field, way, path);
  if (!Array.isArray(value)) return value;
  return value.map((item, i) => convertOne(item, field, way, `${path}[${i}]`));
}

function convertOne(value, { type, nested }, way, path) {
  if (Object.hasOwn(scalars, type)) return scalars[type][way](value, path);
  if (!isRecord(value) || !isRecord(nested)) return value;
  return Object.fromEntries(Object.entries(value).map(([name, item]) => {
    const field = nested.fields?.find?.((one) => one?.name === name);
    return [name, field === undefined || item === null ? item
      : convertValue(item, field, way, `${path}.${name}`)];
  }));
}
