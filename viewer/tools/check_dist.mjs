// Rebuilds dist/ from the sources and the lock file in an empty folder and compares it byte by byte.
//   node tools/check_dist.mjs
import { execFileSync } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = join(dirname(fileURLToPath(import.meta.url)), '..');
const copy = mkdtempSync(join(tmpdir(), 'qnl-viewer-dist-'));
const run = (program, words) => execFileSync(program, words, { cwd: copy, stdio: ['ignore', 'ignore', 'inherit'], shell: process.platform === 'win32' });

let differing = 0;
try {
    for (const name of ['package.json', 'package-lock.json', 'src', 'tools']) cpSync(join(root, name), join(copy, name), { recursive: true });
    run('npm', ['ci', '--no-audit', '--no-fund', '--loglevel=error']);
    run('node', ['tools/build.mjs']);
    for (const name of ['viewer.html', 'LICENSES.txt']) {
        const same = readFileSync(join(root, 'dist', name)).equals(readFileSync(join(copy, 'dist', name)));
        console.log(`dist/${name}: ${same ? 'same bytes' : 'DIFFERS from what its sources give; run "npm run build"'}`);
        differing += same ? 0 : 1;
    }
} finally {
    rmSync(copy, { recursive: true, force: true });
}
process.exitCode = differing > 0 ? 1 : 0;
