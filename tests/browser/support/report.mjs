// The page that the program makes of examples/ribbed-cover.
import { execFileSync } from 'node:child_process';
import { cpSync, existsSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const inProject = (path) => fileURLToPath(new URL(`../../../${path}`, import.meta.url));

/** The program under test: the one that FROZENLAYER names, else that of the release build; null when not built. */
export function programPath() {
    const path = process.env.FROZENLAYER || inProject('build/release/apps/frozenlayer/frozenlayer');
    return existsSync(path) ? path : null;
}

/** Standard output of the program. */
export const runProgram = (...words) => execFileSync(programPath(), words, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'] });

/** Where `makeReport` puts the copy of the example. */
export const projectIn = (folder) => join(folder, 'ribbed-cover');

/** Evaluates a copy of the example in `folder` and gives back the path of its page. */
export function makeReport(folder) {
    const project = projectIn(folder), report = join(folder, 'ribbed-cover.html');
    cpSync(inProject('examples/ribbed-cover'), project, { recursive: true });
    runProgram('run', project, '--view', report);
    return report;
}

/** Rows of comma-separated text as objects by column name; a quoted name may hold commas. */
export function tableRows(text) {
    const [heads, ...rows] = text.trim().split(/\r?\n/);
    const names = [...heads.matchAll(/"([^"]*)"|[^,]+/g)].map(([plain, quoted]) => quoted ?? plain);
    return rows.map((row) => Object.fromEntries(row.split(',').map((value, i) => [names[i], value])));
}
