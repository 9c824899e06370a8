import { describe, expect, it } from 'vitest';
import {
  decodeCameraPose,
  decodeFloat,
  decodeIndices,
  decodeJson,
  decodeMatrix,
  decodePose,
  decodeVectors,
  PayloadError,
} from '../src/client/decode.js';
import { floats } from './support.js';

const identity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1];
const identityText = 'AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAAAAAAAAAAAAAAAAAACAPw==';
const identityPose = { position: [0, 0, 0], orientation: [0, 0, 0, 1] };

describe('the bytes on the wire', () => {
  it.each([
    ['float', decodeFloat, 'AACAPw==', 1],
    ['float', decodeFloat, 'AAAAPw==', 0.5],
    ['identity matrix', decodeMatrix, identityText, identity],
    [
      'matrix with a translation in column 3',
      decodeMatrix,
      'AACAPwAAAAAAAAAAAAAAAAAAAAAAAIA/AAAAAAAAAAAAAAAAAAAAAAAAgD8AAAAAAACAPwAAAEAAAEBAAACAPw==',
      [...identity.slice(0, 12), 1, 2, 3, 1],
    ],
    ['pose', decodePose, 'AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPw==', identityPose],
    ['pose', decodePose, 'AACAPwAAAEAAAEBAAAAAAAAAAAAAAAAAAACAPw==', { ...identityPose, position: [1, 2, 3] }],
    [
      'timed pose',
      decodeCameraPose,
      'AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAACAPwAAwD8=',
      { ...identityPose, timestamp: 1.5 },
    ],
    [
      'vectors',
      decodeVectors,
      'AACAPwAAAEAAAEBAAACAQAAAoEAAAMBA',
      [
        [1, 2, 3],
        [4, 5, 6],
      ],
    ],
    ['no vectors', decodeVectors, '', []],
    ['indices', decodeIndices, 'AAAAAAEAAAD/////', [0, 1, -1]],
    ['indices', decodeIndices, 'BwAAAP7///8=', [7, -2]],
    ['JSON', decodeJson, 'eyJhIjoi5bGxIn0=', { a: '山' }],
  ] as [string, (payload: string) => unknown, string, unknown][])('%s', (_, decode, text, expected) => {
    expect(decode(atob(text))).toEqual(expected);
  });

  it.each([
    ['a short float', decodeFloat, '\0\0\0'],
    ['an empty matrix', decodeMatrix, ''],
    ['a pose instead of a matrix', decodeMatrix, '\0'.repeat(28)],
    ['a matrix with a byte too many', decodeMatrix, '\0'.repeat(65)],
    ['a timed pose instead of a pose', decodePose, floats(0, 0, 0, 0, 0, 0, 1, 5)],
    ['a pose that is not a number', decodePose, floats(0, NaN, 0, 0, 0, 0, 1)],
    ['a pose without a rotation', decodePose, floats(1, 2, 3, 0, 0, 0, 0)],
    ['half a vector', decodeVectors, '\0'.repeat(18)],
    ['half an index', decodeIndices, '\0\0'],
    ['text that was never bytes', decodeFloat, '\u0100\0\0\0'],
    ['nothing', decodeFloat, undefined],
    ['JSON cut off', decodeJson, '{"a":'],
    ['broken UTF-8', decodeJson, '"\xff"'],
  ] as [string, (payload: string) => unknown, string][])('refuses %s', (_, decode, payload) => {
    expect(() => decode(payload)).toThrow(PayloadError);
  });
});

it('makes a unit quaternion of one that is not', () => {
  const { orientation } = decodePose(floats(0, 0, 0, 0, 3, 0, 4));
  expect(orientation).toEqual([0, 0.6, 0, 0.8]);
});
