import { MAX_LEVEL, valueOfLevel } from '../data/decode.js';

/** A third of the area of the triangles around each node. */
export function nodeAreas(model) {
    const areas = new Float64Array(model.header.nodes);
    for (let t = 0; t < model.header.triangles; ++t) {
        const third = Math.hypot(...areaVector(model, t)) / 6;
        for (const node of model.corners(t)) areas[node] += third;
    }
    return areas;
}

/**
 * Shares of the surface in percent by value.
 * @returns `bins` over [low, high], `below`, `above` and `missing`, which together make 100
 */
export function areaHistogram(levels, areas, item, { min: low, max: high }, count) {
    const shares = { bins: new Array(count).fill(0), below: 0, above: 0, missing: 0 };
    const total = areas.reduce((sum, area) => sum + area, 0);
    for (let n = 0; n < areas.length; ++n) {
        const share = total > 0 ? 100 * areas[n] / total : 0;
        const value = levels && levels[n] <= MAX_LEVEL ? valueOfLevel(levels[n], item) : NaN;
        if (Number.isNaN(value)) shares.missing += share;
        else if (value < low) shares.below += share;
        else if (value > high) shares.above += share;
        else shares.bins[Math.min(count - 1, Math.floor(count * (value - low) / (high - low)) || 0)] += share;
    }
    return shares;
}

/**
 * Edges of the surface as node pairs: `sharp` ones (faces that meet at more than 30 degrees, or an edge
 * that does not belong to two triangles) and `all` of them.
 */
export function surfaceEdges(model) {
    const { nodes, triangles } = model.header;
    const owners = new Map();
    const normals = triangleNormals(model);
    const smooth = Math.cos(Math.PI / 6);
    for (let t = 0; t < triangles; ++t) {
        const c = model.corners(t);
        for (let k = 0; k < 3; ++k) {
            const a = c[k], b = c[(k + 1) % 3];
            const key = a < b ? a * nodes + b : b * nodes + a;
            const other = owners.get(key);
            // A finished edge is kept as ~triangle when sharp and NaN when smooth.
            if (other === undefined) owners.set(key, t);
            else if (other >= 0) owners.set(key, dot3(normals, other, t) < smooth ? ~t : NaN);
            else owners.set(key, ~t);
        }
    }
    const all = [], sharp = [];
    for (const [key, owner] of owners) {
        const pair = [Math.floor(key / nodes), key % nodes];
        all.push(...pair);
        if (!Number.isNaN(owner)) sharp.push(...pair);
    }
    return { all: Uint32Array.from(all), sharp: Uint32Array.from(sharp) };
}

const dot3 = (vectors, i, j) => vectors[3 * i] * vectors[3 * j] + vectors[3 * i + 1] * vectors[3 * j + 1]
    + vectors[3 * i + 2] * vectors[3 * j + 2];

/** Twice the area of a triangle along its outward normal. */
function areaVector(model, triangle) {
    const [a, b, c] = model.corners(triangle).map((node) => model.point(node));
    const u = [b[0] - a[0], b[1] - a[1], b[2] - a[2]], v = [c[0] - a[0], c[1] - a[1], c[2] - a[2]];
    return [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]];
}

function unit(vector) {
    const length = Math.hypot(...vector) || 1;
    return vector.map((x) => x / length);
}

function triangleNormals(model) {
    const normals = new Float64Array(3 * model.header.triangles);
    for (let t = 0; t < model.header.triangles; ++t) normals.set(unit(areaVector(model, t)), 3 * t);
    return normals;
}

/** Outward normal at a node, the mean over its triangles by area. */
export function nodeNormal(model, node) {
    const { triangles } = model.header, sum = [0, 0, 0];
    for (let i = 0; i < 3 * triangles; ++i) {
        if (model.triangles[i] === node) areaVector(model, i % triangles).forEach((x, c) => { sum[c] += x; });
    }
    return unit(sum);
}

/** Outward normals of all nodes, the mean over their triangles by area, three numbers a node. */
export function nodeNormals(model) {
    const sums = new Float64Array(3 * model.header.nodes);
    for (let t = 0; t < model.header.triangles; ++t) {
        const vector = areaVector(model, t);
        for (const node of model.corners(t)) for (let c = 0; c < 3; ++c) sums[3 * node + c] += vector[c];
    }
    for (let n = 0; n < model.header.nodes; ++n) sums.set(unit(sums.subarray(3 * n, 3 * n + 3)), 3 * n);
    return sums;
}

const SAME_DIRECTION = Math.cos(Math.PI / 6), SAME_WALL = 0.25;

/**
 * Whether two nodes see the same wall: normals within 30 degrees, walls within 25 % of that of `node`.
 * @param wallOf wall thickness of a node, NaN where there is none
 */
export function onSameWall(normals, wallOf, node, other) {
    const wall = wallOf(node);
    return dot3(normals, node, other) >= SAME_DIRECTION && Math.abs(wallOf(other) - wall) <= SAME_WALL * wall;
}

/** Index of the node among `candidates` nearest to a point of those that `accepts` takes, and its distance; -1 for none. */
export function nearestNode(model, candidates, [x, y, z], accepts = () => true) {
    let best = -1, least = Infinity;
    candidates.forEach((node, i) => {
        if (!accepts(node)) return;
        const [a, b, c] = model.point(node);
        const squared = (a - x) ** 2 + (b - y) ** 2 + (c - z) ** 2;
        if (squared < least) { least = squared; best = i; }
    });
    return { index: best, distance: Math.sqrt(least) };
}
