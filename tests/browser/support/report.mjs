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

/** Evaluates a copy of the example in `folder` and gives back the path of its page. */
export function makeReport(folder) {
    const project = join(folder, 'ribbed-cover'), report = join(folder, 'ribbed-cover.html');
    cpSync(inProject('examples/ribbed-cover'), project, { recursive: true });
    execFileSync(programPath(), ['run', project, '--view', report], { stdio: ['ignore', 'ignore', 'pipe'] });
    return report;
}
