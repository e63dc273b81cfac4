// Made-up results of the sample part: a slab that cools from melt to wall temperature, slower where it is thick.

const MELT = 235, MOULD = 45, DIFFUSIVITY = 0.085;  // degC, degC, mm2/s
export const FREEZE = 131;                          // degC
const GATE = [80, 50];

/** Repeatable noise in [-1, 1] that differs from node to node, as results on a mesh do. */
function noise(n, salt) {
    let h = Math.imul(n + 1, 0x9e3779b1) ^ Math.imul(salt + 7, 0x85ebca6b);
    h = Math.imul(h ^ (h >>> 15), 0x2c1b3c6d);
    return ((h ^ (h >>> 12)) >>> 0) / 2147483648 - 1;
}

/** Smooth bump of height 1 around (x, y). */
const bump = (p, x, y, radius) => Math.exp(-((p[0] - x) ** 2 + (p[1] - y) ** 2) / radius ** 2);

/** Wall thickness in mm at a point of the flat part, and the time at which the melt arrived. */
export function wallAt(p) {
    const thickness = 2 + 3.4 * bump(p, 125, 63, 9) + 0.7 * bump(p, 45.7, 49.7, 6) + 0.6 * bump(p, 115.7, 49.7, 6)
        + 0.15 * Math.sin(p[0] / 23) * Math.cos(p[1] / 17);
    return { thickness, arrival: Math.hypot(p[0] - GATE[0], p[1] - GATE[1]) / 110 };
}

const TERMS = [1, 3, 5, 7, 9, 11, 13, 15];

/** Factors of the terms of the series at `time` seconds after filling began. */
const decays = (wall, time) => TERMS.map((k) => 4 / (k * Math.PI)
    * Math.exp(-DIFFUSIVITY * (k * Math.PI / wall.thickness) ** 2 * (Math.max(time - wall.arrival, 0) + 0.02)));

/** Values of the terms at relative depth `zeta` (0 to 1) of a wall. */
const waves = (zeta) => TERMS.map((k) => Math.sin(k * Math.PI * zeta));

function seriesSum(decay, wave) {
    let sum = 0;
    for (let i = 0; i < decay.length; ++i) sum += decay[i] * wave[i];
    return MOULD + (MELT - MOULD) * Math.min(Math.max(sum, 0), 1);
}

/** Temperature at relative depth `zeta` (0 to 1) of a wall, `time` seconds after filling began. */
export const temperature = (wall, zeta, time) => seriesSum(decays(wall, time), waves(zeta));

const STEPS = 12;
const STEP_WAVES = Array.from({ length: STEPS + 1 }, (_, i) => waves((i + 0.5) / (2 * STEPS)));
const MIDDLE_WAVE = waves(0.5);

/** Mean and middle temperature of a wall and its frozen share in percent. */
function acrossWall(wall, time) {
    const decay = decays(wall, time);
    let sum = 0, frozen = 0;
    let value = seriesSum(decay, STEP_WAVES[0]);
    for (let i = 0; i < STEPS; ++i) {
        const next = seriesSum(decay, STEP_WAVES[i + 1]);
        frozen += value >= FREEZE ? 0 : next <= FREEZE ? 1 : (FREEZE - value) / (next - value);
        sum += value;
        value = next;
    }
    const middle = seriesSum(decay, MIDDLE_WAVE);
    return { middle, mean: sum / STEPS, frozen: middle < FREEZE ? 100 : Math.min(100, 100 * frozen / STEPS) };
}

/** Time in s at which the middle of a wall freezes, NaN when it is later than `end`. */
export function freezeTime(wall, end) {
    let low = 0, high = 4 * end;
    for (let i = 0; i < 40; ++i) {
        const middle = (low + high) / 2;
        if (temperature(wall, 0.5, middle) > FREEZE) low = middle; else high = middle;
    }
    return high > end ? NaN : high;
}

/** Items of the sample: id, name, unit and value from what is known of the node at a time. */
const ITEMS = [
    [1, 'Frozen_Ratio', '%', (s) => s.frozen],
    [2, 'Max_Temperature', '°C', (s) => s.middle + 1.5 + 0.2 * s.noise],
    [3, 'Center_Temperature', '°C', (s) => s.middle + 0.2 * s.noise],
    [4, 'Average_Temperature', '°C', (s) => s.mean + 0.15 * s.noise],
    [5, 'Bulk_Temperature', '°C', (s) => 0.7 * s.mean + 0.3 * s.middle + 0.25 * s.noise],
    [6, 'Skin_Ratio', '%', (s) => 0.6 * s.frozen + 2 * Math.sin(s.p[0] / 9)],
    [7, 'Mold_Temperature_Diff', '°C', (s) => 6 * Math.sin(s.p[0] / 31) * Math.cos(s.p[1] / 23) * Math.exp(-s.time / 20)],
    [8, 'Max_CoolingTime', 's', (s) => 2.3 * s.wall.thickness ** 2 + 0.02 * s.time],
    [9, 'Skin_Thickness', 'mm', (s) => 0.0042 * s.frozen * s.wall.thickness],
    [10, 'Fill_MaxCoolingTime', 's', (s) => 2.1 * s.wall.thickness ** 2 + 0.015 * s.time],
    [11, 'PackingIndex', '', (s) => 1 - s.frozen / 110 + 0.01 * s.noise],
    [12, 'SinkMarkDisplacement_Totoal', 'mm', (s) => s.sink],
    [13, 'SinkMarkDisplacement_u', 'mm', (s) => 0.15 * s.sink * Math.sin(s.p[0] / 40)],
    [14, 'SinkMarkDisplacement_v', 'mm', (s) => 0.15 * s.sink * Math.cos(s.p[1] / 35)],
    [15, 'SinkMarkDisplacement_w', 'mm', (s) => -0.97 * s.sink],
    [16, 'Max_VolumeShrinkage', '%', (s) => 1.5 + 0.045 * (s.middle - 45) + 0.03 * s.noise],
    [17, 'Average_Velocity_u', 'cm/s', (s) => s.speed * (s.p[0] - GATE[0]) / 80 + 0.02 * s.noise],
    [18, 'Average_Velocity_v', 'cm/s', (s) => s.speed * (s.p[1] - GATE[1]) / 80 + 0.02 * s.noise],
    [19, 'Average_Velocity_w', 'cm/s', (s) => 0.1 * s.speed * Math.sin(s.p[2]) + 0.01 * s.noise],
    [101, 'Freeze_Time', 's', (s) => s.freezeTime],
];

/** What the items are computed from, for every node at one time. */
function statesAt(part, walls, time, timeIndex) {
    return walls.map((wall, n) => {
        const across = acrossWall(wall, time);
        return {
            ...across, wall, time, p: part.flat.subarray(3 * n, 3 * n + 3),
            noise: 0.8 * noise(n, 0) + 0.2 * noise(n, timeIndex + 1),
            speed: 30 * Math.exp(-time / 1.6), sink: 0.02 * (wall.thickness - 1.6) * across.frozen / 100,
            freezeTime: wall.freezeTime,
        };
    });
}

/** The runner side of the gate carries no result in the sample. */
const hasResult = (p) => Math.hypot(p[0] - GATE[0], p[1] - GATE[1]) > 3.2;

/**
 * All items at all times.
 * @returns array of {id, name, unit, values: Float32Array per time}; NaN where there is no value
 */
export function makeItems(part, times) {
    const walls = Array.from({ length: part.nodes }, (_, n) => {
        const wall = wallAt(part.flat.subarray(3 * n, 3 * n + 3));
        return { ...wall, freezeTime: freezeTime(wall, times[times.length - 1]) };
    });
    const items = ITEMS.map(([id, name, unit]) => ({ id, name, unit, values: [] }));
    times.forEach((time, t) => {
        const states = statesAt(part, walls, time, t);
        ITEMS.forEach(([id, , , valueOf], k) => {
            if (id > 100 && t > 0) return;
            items[k].values.push(Float32Array.from(states, (s) => (hasResult(s.p) ? valueOf(s) : NaN)));
        });
    });
    return { items, walls, hasResult: (n) => hasResult(part.flat.subarray(3 * n, 3 * n + 3)) };
}
