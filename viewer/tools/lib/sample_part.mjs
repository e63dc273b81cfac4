// A made-up moulded cover: tray with rim, ribs and a thick boss, as boundary triangles of a hexa grid.

const LENGTH = 160, WIDTH = 100, HEIGHT = 28, WALL = 2;
const RIBS_X = [45, 80, 115];
const BOSS = { x: [118, 132], y: [56, 70], top: 20 };

/** Lines of the grid: the planes where the part changes, and steps of about `size` between them. */
function gridLines(planes, size) {
    const sorted = [...new Set(planes)].sort((a, b) => a - b);
    const lines = [sorted[0]];
    for (let i = 1; i < sorted.length; ++i) {
        const count = Math.max(1, Math.round((sorted[i] - sorted[i - 1]) / size));
        for (let k = 1; k <= count; ++k) lines.push(sorted[i - 1] + (sorted[i] - sorted[i - 1]) * k / count);
    }
    return lines;
}

function isSolid(x, y, z) {
    const inBoss = x > BOSS.x[0] && x < BOSS.x[1] && y > BOSS.y[0] && y < BOSS.y[1] && z < BOSS.top;
    const inFloor = z < WALL && !(x > 20 && x < 34 && y > 30 && y < 70);
    const inRim = x < WALL || x > LENGTH - WALL || y < WALL || y > WIDTH - WALL;
    const inRib = z < 14 && (RIBS_X.some((rib) => x > rib && x < rib + 1.5) || (y > 49 && y < 50.5));
    return inBoss || inFloor || inRim || inRib;
}

/** Grid corners of the six faces of a cell, outward. */
const FACES = [
    { step: [-1, 0, 0], corners: [[0, 0, 0], [0, 0, 1], [0, 1, 1], [0, 1, 0]] },
    { step: [1, 0, 0], corners: [[1, 0, 0], [1, 1, 0], [1, 1, 1], [1, 0, 1]] },
    { step: [0, -1, 0], corners: [[0, 0, 0], [1, 0, 0], [1, 0, 1], [0, 0, 1]] },
    { step: [0, 1, 0], corners: [[0, 1, 0], [0, 1, 1], [1, 1, 1], [1, 1, 0]] },
    { step: [0, 0, -1], corners: [[0, 0, 0], [0, 1, 0], [1, 1, 0], [1, 0, 0]] },
    { step: [0, 0, 1], corners: [[0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1]] },
];

/** Bends the box-shaped part: rounded plan, crowned floor. */
function shape(x, y, z) {
    const u = 2 * x / LENGTH - 1, v = 2 * y / WIDTH - 1;
    return [
        LENGTH / 2 * u * Math.sqrt(1 - 0.22 * v * v),
        WIDTH / 2 * v * Math.sqrt(1 - 0.22 * u * u),
        z + 7 * (1 - u * u) * (1 - 0.5 * v * v),
    ];
}

/** Bits of the three cell numbers interleaved: neighbours in space stay neighbours in the file. */
function mortonKey(i, j, k) {
    let key = 0, place = 1;
    for (let bit = 0; bit < 10; ++bit) {
        key += place * ((i >> bit & 1) + 2 * (j >> bit & 1) + 4 * (k >> bit & 1));
        place *= 8;
    }
    return key;
}

/** The same random order every time. */
function shuffle(list) {
    let state = 12345;
    for (let i = list.length - 1; i > 0; --i) {
        state = (Math.imul(state, 1103515245) + 12345) >>> 0;
        const j = Math.floor(state / 4294967296 * (i + 1));
        [list[i], list[j]] = [list[j], list[i]];
    }
}

function boundaryQuads(lines) {
    const [nx, ny, nz] = lines.map((line) => line.length - 1);
    const middle = (line, i) => (line[i] + line[i + 1]) / 2;
    const solid = (i, j, k) => i >= 0 && j >= 0 && k >= 0 && i < nx && j < ny && k < nz
        && isSolid(middle(lines[0], i), middle(lines[1], j), middle(lines[2], k));
    const quads = [];
    for (let k = 0; k < nz; ++k) for (let j = 0; j < ny; ++j) for (let i = 0; i < nx; ++i) {
        if (!solid(i, j, k)) continue;
        for (const { step, corners } of FACES) {
            if (solid(i + step[0], j + step[1], k + step[2])) continue;
            quads.push(corners.map(([a, b, c]) => [i + a, j + b, k + c]));
        }
    }
    return quads;
}

/**
 * @param {number} size edge length in mm
 * @param {'morton' | 'shuffled'} order of the nodes
 * @returns surface of the part: `positions` by component (all x, all y, all z), `triangles` by corner,
 *          `flat` the coordinates before bending (x, y, z of each node in turn)
 */
export function makePart(size, order = 'morton') {
    const lines = [
        gridLines([0, WALL, 20, 34, ...RIBS_X.flatMap((rib) => [rib, rib + 1.5]), ...BOSS.x, LENGTH - WALL, LENGTH], size),
        gridLines([0, WALL, 30, 49, 50.5, ...BOSS.y, 70, WIDTH - WALL, WIDTH], size),
        gridLines([0, WALL, 14, BOSS.top, HEIGHT], size),
    ];
    const quads = boundaryQuads(lines);
    const corners = new Map();
    for (const corner of quads.flat()) corners.set(corner.join(), corner);
    const sorted = [...corners.values()];
    if (order === 'shuffled') shuffle(sorted);
    else sorted.sort((a, b) => mortonKey(...a) - mortonKey(...b));
    const indexOf = new Map(sorted.map((corner, index) => [corner.join(), index]));
    return assemble(lines, quads, sorted, indexOf);
}

function assemble(lines, quads, corners, indexOf) {
    const nodes = corners.length;
    const positions = new Float32Array(3 * nodes), flat = new Float32Array(3 * nodes);
    corners.forEach(([i, j, k], n) => {
        const at = [lines[0][i], lines[1][j], lines[2][k]];
        flat.set(at, 3 * n);
        shape(...at).forEach((value, c) => { positions[c * nodes + n] = value; });
    });
    const faces = quads.map((quad) => quad.map((corner) => indexOf.get(corner.join())));
    faces.sort((a, b) => Math.min(...a) - Math.min(...b));
    const count = 2 * faces.length;
    const triangles = new Uint32Array(3 * count);
    faces.forEach((q, f) => [[q[0], q[1], q[2]], [q[0], q[2], q[3]]].forEach((triangle, half) =>
        triangle.forEach((node, c) => { triangles[c * count + 2 * f + half] = node; })));
    return { nodes, count, positions, triangles, flat };
}
