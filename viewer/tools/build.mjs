// Makes dist/: the page without data (viewer.html) and the notices of what it contains (LICENSES.txt).
//   node tools/build.mjs [OUTPUT_FOLDER]
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { build } from 'esbuild';

const root = join(dirname(fileURLToPath(import.meta.url)), '..');
const read = (...path) => readFileSync(join(root, ...path), 'utf8').replaceAll('\r\n', '\n');

async function bundled(entry, options = {}) {
    const result = await build({
        entryPoints: [join(root, 'src', entry)], absWorkingDir: root, bundle: true, minify: true, write: false,
        target: 'es2022', charset: 'ascii', logLevel: 'warning', ...options,
    });
    return result.outputFiles[0].text.trim();
}

/** Replaces the one place where `mark` stands. */
function filled(text, mark, content) {
    const parts = text.split(mark);
    if (parts.length !== 2) throw new Error(`"${mark}" stands ${parts.length - 1} times in the template, not once`);
    return parts.join(content);
}

async function makePage() {
    const script = await bundled('main.js', { format: 'iife', legalComments: 'inline' });
    const style = await bundled('style.css');
    if (/<\/script|<!--/i.test(script)) throw new Error('The bundle holds a text that would end its script element');
    if (!script.includes('SPDX-License-Identifier: MIT')) throw new Error('The legal comment is missing from the bundle');
    return filled(filled(read('src', 'template.html'), '/*STYLE*/', style), '/*SCRIPT*/', script);
}

function makeNotices() {
    const { version } = JSON.parse(read('node_modules', 'three', 'package.json'));
    return `viewer.html contains the following software.\n\nthree.js ${version}\n\n${read('node_modules', 'three', 'LICENSE').trim()}\n`;
}

const output = process.argv[2] ?? join(root, 'dist');
mkdirSync(output, { recursive: true });
const page = await makePage();
if (page.split('<!--DATA-->').length !== 2) throw new Error('The page must hold the place for the data exactly once');
writeFileSync(join(output, 'viewer.html'), page);
writeFileSync(join(output, 'LICENSES.txt'), makeNotices());
console.log(`${join(output, 'viewer.html')}: ${(page.length / 1024).toFixed(0)} KiB`);
