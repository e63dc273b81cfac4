// Writes a page with made-up results, the reference for writers of the data layout in docs/viewer-data.md.
//   node tools/make_sample.mjs OUT.html [--size MM] [--times N]
import { readFileSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { bitsOf, blockElement, encodeBlock, headerElement, quantise } from './lib/encode.mjs';
import { FREEZE, makeItems, temperature } from './lib/sample_fields.mjs';
import { makePart } from './lib/sample_part.mjs';

const STATUSES = ['no result', 'never frozen'];
const PROFILE_LIMIT = 2000, PROFILE_SAMPLES = 13, REGION_LIMIT = 10;

/** Blocks of the page in the order in which they are written. */
class Blocks {
    elements = [];

    add(name, numbers, base = null) {
        this.elements.push(blockElement(name, encodeBlock(numbers, base)));
        return name;
    }
}

function rangeOf(arrays) {
    let min = Infinity, max = -Infinity;
    for (const values of arrays) for (const value of values) {
        if (value < min) min = value;
        if (value > max) max = value;
    }
    return min <= max ? { min, max } : { min: 0, max: 0 };
}

/** Adds one block per time; every block but the first is written against the levels of the time before. */
function addSeries(blocks, name, levelsOfTimes) {
    return levelsOfTimes.map((levels, t) => blocks.add(`${name}-${t}`, levels, levelsOfTimes[t - 1] ?? null));
}

function addItem(blocks, { id, name, unit, values }, times, hasResult) {
    const { min, max } = rangeOf(values);
    const statusOf = (n) => (id === 101 && hasResult(n) ? 1 : 0);
    const steady = values.length === 1 && times.length > 1;
    const note = name === 'Freeze_Time' ? 'time at which the middle of the wall is below the freeze temperature' : '';
    const levels = values.map((list) => quantise(list, min, max, statusOf));
    return { id, name, unit, note, min, max, steady, blocks: addSeries(blocks, `item-${id}`, levels) };
}

/** Nodes taken at equal steps: with the nodes ordered in space they are spread over the part. */
function spreadNodes(count, hasResult) {
    const step = Math.max(1, count / PROFILE_LIMIT);
    const chosen = Array.from({ length: Math.min(count, PROFILE_LIMIT) }, (_, i) => Math.floor(i * step));
    return chosen.filter(hasResult);
}

function addProfiles(blocks, part, walls, times, hasResult) {
    const nodes = spreadNodes(part.nodes, hasResult);
    const zetas = Array.from({ length: PROFILE_SAMPLES }, (_, i) => (i + 0.5) / PROFILE_SAMPLES);
    const temperatures = times.map((time) => nodes.flatMap((n) => zetas.map((zeta) => temperature(walls[n], zeta, time))));
    const { min, max } = rangeOf(temperatures);
    blocks.add('profile-nodes', Uint32Array.from(nodes));
    blocks.add('profile-counts', Uint32Array.from(nodes, () => PROFILE_SAMPLES));
    blocks.add('profile-depths', bitsOf(nodes.flatMap((n) => zetas.map((zeta) => zeta * walls[n].thickness))));
    const levels = temperatures.map((list) => quantise(list, min, max));
    return {
        nodes: nodes.length, samples: nodes.length * PROFILE_SAMPLES, name: 'Temperature', unit: '°C', min, max,
        blocks: addSeries(blocks, 'profile', levels),
    };
}

/** The places that freeze last, at least 12 mm apart; a place that never freezes comes first. */
function lastFreezing(part, walls) {
    const order = Array.from({ length: part.nodes }, (_, n) => n)
        .sort((a, b) => (walls[b].freezeTime || 1e9) - (walls[a].freezeTime || 1e9)
            || walls[b].thickness - walls[a].thickness);
    const at = (n) => [0, 1, 2].map((c) => part.positions[c * part.nodes + n]);
    const regions = [];
    for (const n of order) {
        const [x, y, z] = at(n);
        if (regions.length === REGION_LIMIT) break;
        if (regions.some((r) => Math.hypot(r.x - x, r.y - y, r.z - z) < 12)) continue;
        const time = Number.isFinite(walls[n].freezeTime) ? walls[n].freezeTime : null;
        regions.push({ x, y, z, time, label: n + 1001 });
    }
    return regions;
}

/** Shares in percent at each time, from the frozen ratio of the nodes. */
function shareCurves(items) {
    const frozen = items.find((item) => item.name === 'Frozen_Ratio').values;
    const mean = (values, valueOf) => {
        const known = values.filter((value) => !Number.isNaN(value));
        return known.reduce((sum, value) => sum + valueOf(value), 0) / known.length;
    };
    return [
        { name: 'of the volume', unit: '%', values: frozen.map((values) => mean(values, (value) => value)) },
        { name: 'of the surface', unit: '%', values: frozen.map((values) => mean(values, (value) => (value >= 100 ? 100 : 0))) },
    ];
}

const factsOf = (times) => [
    { name: 'Mesh', value: 'sample_cover.hdf' },
    { name: 'Material', value: 'Generic ABS (made up)' },
    { name: 'Freeze temperature', value: `${FREEZE} °C` },
    { name: 'Times', value: `${times.length} output times, ${times[0]} to ${times.at(-1)} s` },
    { name: 'Program', value: 'frozenlayer 1.0.0 (synthetic sample)' },
];

export function makeSample({ size, timeCount }) {
    const part = makePart(size);
    const times = Array.from({ length: timeCount }, (_, i) => Math.round((0.25 + 11.75 * i / Math.max(1, timeCount - 1)) * 100) / 100);
    const { items, walls, hasResult } = makeItems(part, times);
    const blocks = new Blocks();
    blocks.add('positions', bitsOf(part.positions));
    blocks.add('triangles', part.triangles);
    blocks.add('labels', Uint32Array.from({ length: part.nodes }, (_, n) => n + 1001));
    const header = {
        format: 'frozenlayer-view', version: 1, title: 'Sample cover', length_unit: 'mm',
        nodes: part.nodes, triangles: part.count,
        time_axis: { name: 'Time', unit: 's' }, times, statuses: STATUSES,
        items: items.map((item) => addItem(blocks, item, times, hasResult)),
        profiles: addProfiles(blocks, part, walls, times, hasResult), freeze_temperature: FREEZE,
        curves: shareCurves(items), regions: lastFreezing(part, walls), facts: factsOf(times),
    };
    return headerElement(header) + blocks.elements.join('');
}

/** Puts the data where the template has its placeholder. */
export function pageWith(data) {
    const template = readFileSync(fileURLToPath(new URL('../dist/viewer.html', import.meta.url)), 'utf8');
    const [before, after] = template.split('<!--DATA-->');
    return before + data + after;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const { values, positionals } = parseArgs({
        allowPositionals: true,
        options: { size: { type: 'string', default: '4' }, times: { type: 'string', default: '20' } },
    });
    const page = pageWith(makeSample({ size: Number(values.size), timeCount: Number(values.times) }));
    writeFileSync(positionals[0], page);
    console.log(`${positionals[0]}: ${(Buffer.byteLength(page) / 1e6).toFixed(2)} MB`);
}
