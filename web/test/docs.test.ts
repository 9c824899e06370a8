/// <reference types="vite/client" />
import ts from 'typescript';
import { describe, expect, it } from 'vitest';
import {
  decodeCameraPose,
  decodeFloat,
  decodeIndices,
  decodeMatrix,
  decodePose,
  decodeVectors,
} from '../src/client/decode.js';
import guide from '../../docs/page-guide.md?raw';
import protocol from '../../docs/protocol.md?raw';

const blocks = (text: string, language: string) =>
  [...text.matchAll(new RegExp('```' + language + '\n(.*?)```', 'gs'))].map((match) => match[1]!);

describe('the documents', () => {
  it('show TypeScript that compiles', () => {
    const snippets = new Map(blocks(guide, 'ts').map((code, i) => [`/snippet${i}.ts`, code]));
    expect(snippets.size).toBeGreaterThan(2);
    const options: ts.CompilerOptions = {
      strict: true,
      noEmit: true,
      skipLibCheck: true,
      target: ts.ScriptTarget.ES2022,
      module: ts.ModuleKind.ES2022,
      moduleResolution: ts.ModuleResolutionKind.Bundler,
      lib: ['lib.es2022.d.ts', 'lib.dom.d.ts', 'lib.dom.iterable.d.ts'],
      types: [],
      paths: { kestrin: [new URL('../src/client/index.ts', import.meta.url).pathname] },
    };
    const host = ts.createCompilerHost(options);
    const { fileExists, readFile, getSourceFile } = host;
    host.fileExists = (file) => snippets.has(file) || fileExists(file);
    host.readFile = (file) => snippets.get(file) ?? readFile(file);
    host.getSourceFile = (file, version) =>
      snippets.has(file) ? ts.createSourceFile(file, snippets.get(file)!, version) : getSourceFile(file, version);
    const program = ts.createProgram([...snippets.keys()], options, host);
    const faults = ts
      .getPreEmitDiagnostics(program)
      .map((fault) => ts.flattenDiagnosticMessageText(fault.messageText, ' '));
    expect(faults).toEqual([]);
  }, 60_000);

  it('show payloads that mean what they say', () => {
    const examples = [...protocol.matchAll(/^\| .* \| `([A-Za-z0-9+/]+=*)` \|$/gm)].map((match) => atob(match[1]!));
    const decoders = [decodeCameraPose, decodePose, decodeMatrix, decodeFloat, decodeVectors, decodeIndices];
    expect(decoders.map((decode, i) => decode(examples[i]!))).toMatchObject([
      { position: [0, 0, 0], orientation: [0, 0, 0, 1], timestamp: 1.5 },
      { position: [1, 2, 3], orientation: [0, 0, 0, 1] },
      [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],
      0.5,
      [
        [1, 2, 3],
        [4, 5, 6],
      ],
      [0, 1, -1],
    ]);
    const texts = [...protocol.matchAll(/`(W3si|eyJl)([A-Za-z0-9+/]+=*)`/g)].map((match) =>
      JSON.parse(atob(match[1]! + match[2]!)),
    );
    expect(texts).toEqual([
      [{ eventName: 'sdkQRScannerResult', data: { text: 'kestrin' } }],
      { eventName: 'onResumeAREngine' },
    ]);
  });
});
