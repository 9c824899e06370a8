// Bundles the client module and the pages into dist/. Nothing is fetched at run time.
import { build } from 'esbuild';
import { copyFile, mkdir, rm, writeFile } from 'node:fs/promises';

const common = { bundle: true, target: 'es2022', logLevel: 'warning', minify: true, sourcemap: true };

/** A page is a classic script, so that it also opens from a file: address. */
async function page(name) {
  await mkdir(`dist/${name}`, { recursive: true });
  await copyFile(`src/${name}/index.html`, `dist/${name}/index.html`);
  await build({ ...common, entryPoints: [`src/${name}/main.ts`], format: 'iife', outfile: `dist/${name}/${name}.js` });
}

async function client() {
  const outfile = 'dist/client/kestrin.js';
  await build({ ...common, entryPoints: ['src/client/index.ts'], format: 'esm', minify: false, outfile });
  await writeFile('dist/client/kestrin.d.ts', "export * from './types/index.js';\n");
}

await rm('dist', { recursive: true, force: true });
await Promise.all([client(), page('demo'), page('align'), page('witness')]);
