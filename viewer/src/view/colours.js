// Colour maps whose lightness rises evenly, so that they read without telling hues apart and in grey print.

/** Control points: lightness (0 to 1), chroma and hue (degrees) in the OKLab colour space. */
const MAPS = {
    'Violet to yellow': [[0.34, 0.14, 298], [0.48, 0.13, 266], [0.62, 0.1, 215], [0.78, 0.15, 153], [0.93, 0.18, 106]],
    'Plum to yellow': [[0.32, 0.11, 295], [0.46, 0.17, 335], [0.61, 0.19, 20], [0.78, 0.16, 58], [0.94, 0.12, 102]],
};

export const MAP_NAMES = Object.keys(MAPS);
export const MAP_SIZE = 256;

/** Linear part of OKLab to linear sRGB (B. Ottosson, 2020). */
function linearRgb(lightness, a, b) {
    const l = (lightness + 0.3963377774 * a + 0.2158037573 * b) ** 3;
    const m = (lightness - 0.1055613458 * a - 0.0638541728 * b) ** 3;
    const s = (lightness - 0.0894841775 * a - 1.291485548 * b) ** 3;
    return [
        4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
        -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
        -0.0041960863 * l - 0.7034186147 * m + 1.707614701 * s,
    ];
}

function encoded(linear) {
    const value = Math.min(Math.max(linear, 0), 1);
    return Math.round(255 * (value <= 0.0031308 ? 12.92 * value : 1.055 * value ** (1 / 2.4) - 0.055));
}

/** Red, green, blue (0 to 255) of a map at 0 ... 1. */
export function colourAt(name, position) {
    const points = MAPS[name].map(([l, c, h]) => [l, c * Math.cos(h * Math.PI / 180), c * Math.sin(h * Math.PI / 180)]);
    const place = Math.min(Math.max(position, 0), 1) * (points.length - 1);
    const i = Math.min(Math.floor(place), points.length - 2), part = place - i;
    const lab = points[i].map((value, k) => value + part * (points[i + 1][k] - value));
    return linearRgb(...lab).map(encoded);
}

/** RGBA bytes of a map, MAP_SIZE colours. */
export function colourTable(name) {
    const table = new Uint8Array(4 * MAP_SIZE);
    for (let i = 0; i < MAP_SIZE; ++i) table.set([...colourAt(name, i / (MAP_SIZE - 1)), 255], 4 * i);
    return table;
}

/** CSS colour at 0 ... 1, in steps when `bands` is above 0. */
export function cssColour(name, position, bands) {
    const place = bands > 0 ? (Math.min(Math.floor(position * bands), bands - 1) + 0.5) / bands : position;
    return `rgb(${colourAt(name, place).join(' ')})`;
}
