// Small sample page for the tests, and what was written into it.
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { makeSample, pageWith } from '../../../viewer/tools/make_sample.mjs';

export const SIZE = 6, TIME_COUNT = 5;
export const sampleData = makeSample({ size: SIZE, timeCount: TIME_COUNT });

/** Folder for pages and pictures of one test file. */
export function makeFolder() {
    const folder = mkdtempSync(join(tmpdir(), 'qnl-page-'));
    return { folder, remove: () => rmSync(folder, { recursive: true, force: true }) };
}

/** Writes a page with the sample's data, changed by `edit`. */
export function writePage(folder, name, edit = (data) => data) {
    const path = join(folder, name);
    writeFileSync(path, pageWith(edit(sampleData)));
    return path;
}

export const HEADER = /(<script type="application\/json" id="qnl-header">)(.*?)(<\/script>)/s;

/** Data with a changed header. */
export const withHeader = (change) => (data) => data.replace(HEADER, (_, open, json, end) => {
    const header = JSON.parse(json);
    change(header);
    return open + JSON.stringify(header).replaceAll('<', '\\u003c') + end;
});

/** Data with another text in a block. */
export const withBlock = (name, text) => (data) =>
    data.replace(new RegExp(`(id="qnl-block-${name}">)[^<]*`), (_, open) => open + text);
