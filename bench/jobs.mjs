// All jobs: those on one block, on a blob and on bytes.
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import zlib from 'node:zlib';
import * as brindle from '../lib/index.mjs';
import {
  ADDON, blockJobs, buildBlock, checkedParseFloors, forEachOf, messagesOf, valueOf,
} from './block_jobs.mjs';
import * as workloads from './workloads.mjs';

function parseBlobJob(blob, messages) {
  return {
    [ADDON]: () => brindle.parseConfigBlob(blob),
    ...checkedParseFloors(brindle.parseConfigBlob(blob)),
    ...forEachOf(messages[0], ({ contender }) => {
      const own = messages.map((all) =>
        all.find((entry) => entry.contender === contender).message);
      return () => own.map(contender.decode);
    }),
  };
}

// What a program without blocks might do: a checksum of each text, a digest of
// the identities and checksums in a fixed order.
function hashTexts(texts) {
  const summaries = texts.map((text) => {
    const { uuid, instance } = JSON.parse(text);
    return `${uuid} ${instance} ${zlib.crc32(text)}`;
  });
  return createHash('sha256').update(summaries.sort().join('\n')).digest();
}

function hashBlobJob(blob, texts) {
  assert.equal(valueOf(brindle.calcNgConfigHash(blob)).length, 32);
  return {
    [ADDON]: () => brindle.calcNgConfigHash(blob),
    // From Node.js 20.15 on.
    ...zlib.crc32 && { 'JSON, zlib.crc32, sha256': () => hashTexts(texts) },
    'node:crypto sha256 of the bytes':
      () => createHash('sha256').update(blob).digest(),
  };
}

function blobJobs() {
  const blocks = Array.from({ length: workloads.BLOCKS_PER_BLOB },
    (_, number) => buildBlock(workloads.typical(number)));
  const blob = workloads.joinBlocks(blocks);
  const messages = valueOf(brindle.parseConfigBlob(blob)).map(messagesOf);
  const texts = messages.map(([{ message }]) => message);
  return {
    parse: () => parseBlobJob(blob, messages),
    hash: () => hashBlobJob(blob, texts),
  };
}

function crc32Job(size) {
  const bytes = Buffer.alloc(size, 'configuration');
  if (zlib.crc32) assert.equal(brindle.crc32(bytes), ~zlib.crc32(bytes) >>> 0);
  return {
    [ADDON]: () => brindle.crc32(bytes),
    ...zlib.crc32 && { 'zlib.crc32': () => zlib.crc32(bytes) },
  };
}

const checksumJobs = () => ({
  '64 B': () => crc32Job(64),
  '64 KiB': () => crc32Job(1 << 16),
  '1 MiB': () => crc32Job(1 << 20),
});

// By workload a function that prepares its jobs (see blockJobs).
export const jobs = {
  typical: () => blockJobs('typical'),
  small: () => blockJobs('small'),
  fields100: () => blockJobs('fields100'),
  arrays: () => blockJobs('arrays'),
  blob: blobJobs,
  crc32: checksumJobs,
};
