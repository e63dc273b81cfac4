import { DataFault } from './decode.js';

const isCount = (value, least) => Number.isInteger(value) && value >= least && value < 2 ** 28;
const isText = (value) => typeof value === 'string';
const isRange = (value) => Number.isFinite(value.min) && Number.isFinite(value.max) && value.min <= value.max;
const isBlockList = (value, count) =>
    Array.isArray(value) && value.length === count && value.every((name) => name === null || isText(name));

function isItem(item, times) {
    return isCount(item.id, 0) && isText(item.name) && isText(item.unit) && isRange(item)
        && isBlockList(item.blocks, item.steady ? 1 : times);
}

function areProfiles(profiles, times) {
    return isCount(profiles.nodes, 1) && isCount(profiles.samples, 1) && isRange(profiles)
        && isText(profiles.name) && isText(profiles.unit) && isText(profiles.source ?? '') && isBlockList(profiles.blocks, times);
}

const isRegion = (region) => [region.x, region.y, region.z].every(Number.isFinite)
    && (region.time === null || Number.isFinite(region.time))
    && (region.label === null || Number.isInteger(region.label));

/** What a header must fulfil, in the words of the message when it does not. */
const RULES = [
    ['nodes and triangles', (h) => isCount(h.nodes, 3) && isCount(h.triangles, 1)],
    ['times', (h) => Array.isArray(h.times) && h.times.length > 0 && h.times.every(Number.isFinite)],
    ['time_axis', (h) => isText(h.time_axis?.name) && isText(h.time_axis?.unit)],
    ['length_unit and title', (h) => isText(h.length_unit) && isText(h.title)],
    ['statuses', (h) => Array.isArray(h.statuses) && h.statuses.length > 0 && h.statuses.length <= 8
        && h.statuses.every(isText)],
    ['items', (h) => Array.isArray(h.items) && h.items.length > 0 && h.items.every((i) => isItem(i, h.times.length))],
    ['profiles', (h) => h.profiles === null || areProfiles(h.profiles, h.times.length)],
    ['freeze_temperature', (h) => h.freeze_temperature === null || Number.isFinite(h.freeze_temperature)],
    ['curves', (h) => Array.isArray(h.curves) && h.curves.every((c) => isText(c.name) && isText(c.unit)
        && Array.isArray(c.values) && c.values.length === h.times.length)],
    ['regions', (h) => Array.isArray(h.regions) && h.regions.every(isRegion)],
    ['facts', (h) => Array.isArray(h.facts) && h.facts.every((f) => isText(f.name) && isText(f.value))],
    ['notes', (h) => h.notes === undefined || (Array.isArray(h.notes) && h.notes.every(isText))],
];

/** The header as an object; raises DataFault with the first rule that it breaks. */
export function readHeader(text) {
    let header;
    try {
        header = JSON.parse(text);
    } catch {
        throw new DataFault('The header of the results is not readable (JSON).');
    }
    if (header?.format !== 'frozenlayer-view') throw new DataFault('The header is not one of frozen-layer results.');
    if (header.version !== 1) throw new DataFault(`The results have layout version ${header.version}; this page reads version 1.`);
    for (const [name, holds] of RULES) {
        let fulfilled = false;
        try { fulfilled = holds(header); } catch { fulfilled = false; }
        if (!fulfilled) throw new DataFault(`The header's entry for ${name} is missing or wrong.`);
    }
    return header;
}
