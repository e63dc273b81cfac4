// Parts of the page that need no browser: the data layout, areas and edges, colours, numbers.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { deflateSync } from 'node:zlib';
import { DataFault, decodeBlock, valueOfLevel } from '../../viewer/src/data/decode.js';
import { readHeader } from '../../viewer/src/data/header.js';
import { numberText, ticks } from '../../viewer/src/math/numbers.js';
import { freezeCrossings } from '../../viewer/src/math/profile.js';
import { areaHistogram, nearestNode, nodeAreas, nodeNormal, nodeNormals, onSameWall, surfaceEdges } from '../../viewer/src/math/surface.js';
import { MAP_NAMES, colourAt } from '../../viewer/src/view/colours.js';
import { KEYS } from '../../viewer/src/ui/keys.js';
import { bitsOf, encodeBlock, quantise } from '../../viewer/tools/lib/encode.mjs';
import { HEADER, sampleData } from './support/sample.mjs';

/** Repeatable whole numbers below 2^32. */
function* numbers(seed) {
    for (let state = seed; ; ) {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        yield state;
    }
}

const drawn = (NumberArray, count, seed) => {
    const source = numbers(seed);
    return NumberArray.from({ length: count }, () => source.next().value >>> (32 - 8 * NumberArray.BYTES_PER_ELEMENT));
};

test('blocks come back as they were written', async () => {
    const cases = [
        drawn(Uint16Array, 1000, 1), drawn(Uint32Array, 1000, 2), new Uint16Array([0, 65535, 0, 32767, 32768, 1]),
        new Uint32Array([0, 4294967295, 2147483647, 2147483648, 0]), new Uint16Array([7]), bitsOf([-1.5, 0, 3.25e-30, -0]),
    ];
    for (const written of cases) {
        assert.deepEqual(await decodeBlock(encodeBlock(written), 'b', written.constructor, written.length), written);
    }
});

test('a block against another comes back as it was written', async () => {
    for (const NumberArray of [Uint16Array, Uint32Array]) {
        const before = drawn(NumberArray, 500, 3), now = drawn(NumberArray, 500, 4);
        assert.deepEqual(await decodeBlock(encodeBlock(now, before), 'b', NumberArray, 500, before), now);
    }
});

test('the layout of a block is the documented one', async () => {
    // 5, 4, 4, 300: differences 5, -1, 0, 296, folded 10, 1, 0, 592; low bytes, then high bytes.
    const text = deflateSync(Uint8Array.from([10, 1, 0, 80, 0, 0, 0, 2])).toString('base64');
    assert.deepEqual(await decodeBlock(text, 'b', Uint16Array, 4), Uint16Array.from([5, 4, 4, 300]));
});

test('damaged blocks are faults that name the block', async () => {
    const text = encodeBlock(drawn(Uint16Array, 100, 5));
    const zeros = deflateSync(new Uint8Array(1e6)).toString('base64');
    for (const [bad, count] of [['%%%', 100], [text.slice(0, 80), 100], [text, 99], [text, 101], ['', 100], [zeros, 100]]) {
        await assert.rejects(decodeBlock(bad, 'item-1-0', Uint16Array, count), (fault) => fault instanceof DataFault && /item-1-0/.test(fault.message));
    }
});

test('levels keep values within half a step and statuses apart', () => {
    const values = [-3, 4, 0.12345, NaN, NaN], range = { min: -3, max: 4 };
    const levels = quantise(values, range.min, range.max, (i) => (i === 4 ? 1 : 0));
    assert.deepEqual([...levels.slice(3)], [65535, 65534]);
    for (let i = 0; i < 3; ++i) assert.ok(Math.abs(valueOfLevel(levels[i], range) - values[i]) <= 0.5 * 7 / 65527 * 1.000001);
    assert.equal(valueOfLevel(levels[0], range), -3);
    assert.equal(valueOfLevel(levels[1], range), 4);
    assert.ok(Number.isNaN(valueOfLevel(levels[3], range)));
    assert.deepEqual([...quantise([2, 2], 2, 2)], [0, 0]);
});

/** Unit cube of 12 triangles, corners numbered x + 2y + 4z; the triangles also as the page keeps them. */
function cube() {
    const corners = Array.from({ length: 8 }, (_, i) => [i & 1, i >> 1 & 1, i >> 2 & 1]);
    const quads = [[0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5]];
    const triangles = quads.flatMap(([a, b, c, d]) => [[a, b, c], [a, c, d]]);
    return { header: { nodes: 8, triangles: 12 }, point: (n) => corners[n], corners: (t) => triangles[t], triangles: [0, 1, 2].flatMap((k) => triangles.map((corner) => corner[k])) };
}

test('the normal of a node is the mean over its triangles', () => {
    // At corner 1, two triangles of x = 1, one of y = 0 and one of z = 0 meet; at corner 7, two of each face.
    for (const [node, expected] of [[0, [-1, -1, -1]], [7, [1, 1, 1]], [1, [2, -1, -1]]]) {
        nodeNormal(cube(), node).forEach((x, c) => assert.ok(Math.abs(x - expected[c] / Math.hypot(...expected)) < 1e-12));
    }
});

test('areas of nodes add up to the surface', () => {
    const total = nodeAreas(cube()).reduce((sum, area) => sum + area, 0);
    assert.ok(Math.abs(total - 6) < 1e-12);
});

test('sharp edges are those of the cube, not its diagonals', () => {
    const { all, sharp } = surfaceEdges(cube());
    assert.equal(all.length / 2, 18);
    assert.equal(sharp.length / 2, 12);
    for (let e = 0; e < 12; ++e) assert.ok([1, 2, 4].includes(sharp[2 * e] ^ sharp[2 * e + 1]));
});

test('an edge of one or of three triangles is sharp', () => {
    const points = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [1, 1, 0], [0.5, 0.5, 0]];
    const triangles = [[0, 1, 2], [1, 3, 2], [1, 4, 2]];
    const { sharp } = surfaceEdges({ header: { nodes: 5, triangles: 3 }, point: (n) => points[n], corners: (t) => triangles[t] });
    assert.equal(sharp.length / 2, 7);
});

test('the histogram shares out all of the surface', () => {
    const areas = Float64Array.from([1, 2, 3, 4, 5, 5]), item = { min: 0, max: 10 };
    const levels = quantise([0, 2.6, 5, 9.9, 10, NaN], 0, 10);
    const shares = areaHistogram(levels, areas, item, { min: 2.5, max: 9.95 }, 2);
    assert.deepEqual(shares, { bins: [25, 20], below: 5, above: 25, missing: 25 });
    assert.equal(areaHistogram(null, areas, item, item, 2).missing, 100);
    assert.deepEqual(areaHistogram(quantise([2, 2], 2, 2), [1, 1], { min: 2, max: 2 }, { min: 2, max: 2 }, 4).bins, [100, 0, 0, 0]);
});

test('the nearest of several nodes is found', () => {
    assert.deepEqual(nearestNode(cube(), Uint32Array.from([0, 3, 7]), [1, 1, 0.25]), { index: 1, distance: 0.25 });
    assert.deepEqual(nearestNode(cube(), Uint32Array.from([0, 3, 7]), [1, 1, 0.25], (node) => node === 0).index, 0);
    assert.equal(nearestNode(cube(), Uint32Array.from([0, 3, 7]), [1, 1, 0.25], () => false).index, -1);
});

test('the normals of all nodes are those of each', () => {
    const model = cube(), normals = nodeNormals(model);
    for (let node = 0; node < 8; ++node) {
        nodeNormal(model, node).forEach((x, c) => assert.ok(Math.abs(normals[3 * node + c] - x) < 1e-12));
    }
});

test('the same wall has its normal within 30 degrees and its thickness within 25 %', () => {
    const at = (degrees) => [Math.cos(degrees * Math.PI / 180), Math.sin(degrees * Math.PI / 180), 0];
    const normals = Float64Array.from([...at(0), ...at(29), ...at(31), ...at(0), ...at(0), ...at(0)]);
    const walls = [2, 2, 2, 2.49, 2.51, NaN];
    const seen = (node) => onSameWall(normals, (n) => walls[n], 0, node);
    assert.deepEqual([1, 2, 3, 4, 5].map(seen), [true, false, true, false, false]);
});

test('freeze crossings are linear between points, from both sides', () => {
    const points = [[0, 50], [1, 150], [2, 200], [4, 100]];
    assert.deepEqual(freezeCrossings(points, 130), { here: 0.8, far: 3.4 });
    assert.deepEqual(freezeCrossings(points, 50), { here: 0, far: 4 });
    assert.deepEqual(freezeCrossings(points, 201), { here: null, far: null });
    assert.equal(freezeCrossings([[0, 50], [1, NaN]], 130), null);
    assert.equal(freezeCrossings(points, null), null);
    assert.equal(freezeCrossings([], 130), null);
});

/** Relative luminance of sRGB bytes (WCAG 2). */
function luminance(rgb) {
    const [r, g, b] = rgb.map((byte) => byte / 255).map((v) => (v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4));
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

test('every colour map grows lighter from end to end', () => {
    for (const name of MAP_NAMES) {
        const lights = Array.from({ length: 65 }, (_, i) => luminance(colourAt(name, i / 64)));
        lights.slice(1).forEach((light, i) => assert.ok(light > lights[i], `${name} at ${i}`));
        assert.ok(lights.at(-1) / lights[0] > 8, name);
    }
});

test('texts stand out from what is behind them in both themes', () => {
    const style = readFileSync(new URL('../../viewer/src/style.css', import.meta.url), 'utf8');
    const themes = [...style.matchAll(/color-scheme: (light|dark);([^}]*)}/g)];
    assert.equal(themes.length, 2);
    for (const [, theme, body] of themes) {
        const colour = Object.fromEntries([...body.matchAll(/--([a-z0-9-]+): #([0-9a-f]{6})\b/g)].map(([, name, hex]) => [name, luminance(hex.match(/../g).map((pair) => parseInt(pair, 16)))]));
        const contrast = (a, b) => (Math.max(colour[a], colour[b]) + 0.05) / (Math.min(colour[a], colour[b]) + 0.05);
        for (const [text, least] of [['text', 10], ['quiet', 6], ['accent', 4.5], ['limit', 4.5], ['line-1', 4.5], ['line-2', 4.5]]) {
            assert.ok(contrast(text, 'panel') >= least, `${theme} ${text} ${contrast(text, 'panel')}`);
        }
        assert.ok(contrast('quiet', 'page') >= 4.5, theme);
    }
});

test('numbers read well', () => {
    assert.deepEqual([0, 1.23456789, -2.5, 123456.7, 1e7, 0.00012, NaN].map(numberText), ['0', '1.2346', '−2.5', '123460', '1.000e+7', '1.200e−4', '–']);
    assert.deepEqual(ticks(0, 100, 5), [0, 20, 40, 60, 80, 100]);
    assert.deepEqual(ticks(-0.3, 0.3, 4), [-0.2, 0, 0.2]);
    assert.deepEqual(ticks(5, 5), [5]);
});

test('no key has two meanings', () => {
    const keys = KEYS.flatMap(([names]) => names);
    assert.equal(new Set(keys).size, keys.length);
});

test('every rule of the header is checked', () => {
    const good = JSON.parse(sampleData.match(HEADER)[2]);
    assert.equal(readHeader(JSON.stringify(good)).items.length, 20);
    const changes = [
        ['format', 'other'], ['version', 2], ['nodes', -1], ['triangles', 1.5], ['times', []], ['times', ['a']], ['time_axis', null],
        ['length_unit', 3], ['title', undefined], ['statuses', []], ['items', []], ['items', [{ ...good.items[0], min: 2, max: 1 }]],
        ['items', [{ ...good.items[0], blocks: ['x'] }]], ['items', [null]], ['profiles', undefined], ['profiles', { ...good.profiles, samples: 0 }],
        ['freeze_temperature', 'cold'], ['curves', [{ name: 'a', unit: '%', values: [1] }]], ['regions', [{ x: 1, y: 2, z: null, time: 1, label: 1 }]],
        ['facts', [{ name: 'a', value: 1 }]], ['notes', 'stale'], ['notes', [1]],
    ];
    for (const [name, value] of changes) {
        assert.throws(() => readHeader(JSON.stringify({ ...good, [name]: value })), DataFault, `${name} ${JSON.stringify(value)}`);
    }
    assert.throws(() => readHeader('{'), /JSON/);
    assert.throws(() => readHeader('null'), DataFault);
});
