// Each contender does the add-on's job its own way: `encode` makes one message
// of all the information in a block, its description included, and `decode`
// answers that information again. `plain`: whether it knows neither BigInts,
// which then go in and come out as text, nor bytes.
import { avro } from './avsc.mjs';
import { cborX } from './cbor_x.mjs';
import { json } from './json.mjs';
import { msgpackr } from './msgpackr.mjs';
import { protobufjs } from './protobufjs.mjs';
import { v8 } from './v8.mjs';

export const contenders = [json, v8, msgpackr, cborX, avro, protobufjs];
