// Measures ways to encode the items of the full-scale sample, in MB of base64 text (docs/viewer-data.md).
import { deflateSync } from 'node:zlib';
import { quantise } from './lib/encode.mjs';
import { makeItems } from './lib/sample_fields.mjs';
import { makePart } from './lib/sample_part.mjs';

const alongNodes = (levels) => levels.map((level, i) => level - (i > 0 ? levels[i - 1] : 0));
const againstTime = (levels, before) => levels.map((level, i) => level - (before ? before[i] : 0));
const folded = (levels) => levels.map((level) => { const signed = (level << 16) >> 16; return (signed << 1) ^ (signed >> 15); });
const bytes = (levels) => new Uint8Array(levels.buffer);
const planes = (levels) => Uint8Array.from({ length: 2 * levels.length }, (_, i) =>
    (i < levels.length ? levels[i] & 255 : levels[i - levels.length] >> 8));

const WAYS = {
    'levels as they are': (levels) => bytes(levels),
    'byte planes': (levels) => planes(levels),
    'differences along nodes, planes': (levels) => planes(alongNodes(levels)),
    'against the time before, planes': (levels, before) => planes(againstTime(levels, before)),
    'against the time before, folded, planes': (levels, before) => planes(folded(againstTime(levels, before))),
    'against the time before, differences along nodes, planes': (levels, before) => planes(alongNodes(againstTime(levels, before))),
    'the same, folded': (levels, before) => planes(folded(alongNodes(againstTime(levels, before)))),
};

function levelsOf({ values }) {
    const known = values.flatMap((list) => [...list].filter((value) => !Number.isNaN(value)));
    const min = known.reduce((a, b) => Math.min(a, b)), max = known.reduce((a, b) => Math.max(a, b));
    return values.map((list) => quantise(list, min, max));
}

for (const order of ['morton', 'shuffled']) {
    const part = makePart(1.19, order);
    const series = makeItems(part, Array.from({ length: 20 }, (_, i) => 0.5 * (i + 1))).items.map(levelsOf);
    console.log(`nodes ${order}, ${part.count} triangles`);
    for (const [name, encode] of Object.entries(WAYS)) {
        let sum = 0;
        for (const levels of series) levels.forEach((list, t) => { sum += deflateSync(encode(list, levels[t - 1]), { level: 6 }).length; });
        console.log(`  ${name}: ${(sum * 4 / 3 / 1e6).toFixed(1)}`);
    }
}
