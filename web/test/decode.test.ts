import { expect, it } from 'vitest';
import { decodeFloat, decodeJson, decodePose, decodeVectors, PayloadError } from '../src/client/decode.js';
import { floats } from './support.js';

it.each([
  ['a short float', decodeFloat, '\0\0\0'],
  ['a timed pose instead of a pose', decodePose, floats(0, 0, 0, 0, 0, 0, 1, 5)],
  ['a pose that is not a number', decodePose, floats(0, NaN, 0, 0, 0, 0, 1)],
  ['a pose without a rotation', decodePose, floats(1, 2, 3, 0, 0, 0, 0)],
  ['half a vector', decodeVectors, '\0'.repeat(18)],
  ['nothing', decodeFloat, undefined],
  ['broken UTF-8', decodeJson, '"\xff"'],
] as [string, (payload: string) => unknown, string][])('refuses %s', (_, decode, payload) => {
  expect(() => decode(payload)).toThrow(PayloadError);
});

it('makes a unit quaternion of one that is not', () => {
  const { orientation } = decodePose(floats(0, 0, 0, 0, 3, 0, 4));
  expect(orientation).toEqual([0, 0.6, 0, 0.8]);
});
