// Writer's half of the data layout (docs/viewer-data.md): numbers to compressed base64 blocks.
import { deflateSync } from 'node:zlib';

/** Largest level of a quantised value; the levels above it name statuses. */
export const MAX_LEVEL = 65527;

/** Level that stands for the status at this place in the header's list of statuses. */
export const statusLevel = (status) => 65535 - status;

/**
 * Quantises values over [min, max] to levels 0 ... MAX_LEVEL.
 * @param {ArrayLike<number>} values a NaN becomes status 0, "no result"
 * @param {(index: number) => number} [statusOf] status of a value that is not a number
 */
export function quantise(values, min, max, statusOf = () => 0) {
    const levels = new Uint16Array(values.length);
    const scale = max > min ? MAX_LEVEL / (max - min) : 0;
    for (let i = 0; i < values.length; ++i) {
        const level = Math.round((values[i] - min) * scale);
        levels[i] = Number.isFinite(values[i]) ? Math.min(Math.max(level, 0), MAX_LEVEL)
            : statusLevel(statusOf(i));
    }
    return levels;
}

/**
 * Signed differences modulo 2^bits from number to number, folded so that small ones of either sign are
 * small (0, -1, 1, -2, ... become 0, 1, 2, 3, ...), low bytes first, then the next bytes: long runs for
 * the compressor.
 */
export function differencePlanes(numbers, base = null) {
    const { length, BYTES_PER_ELEMENT: width } = numbers;
    const planes = new Uint8Array(length * width);
    const unused = 32 - 8 * width;
    let before = 0;
    for (let i = 0; i < length; ++i) {
        const value = base ? numbers[i] - base[i] : numbers[i];
        const difference = (value - before) << unused >> unused;
        const folded = (difference << 1) ^ (difference >> 31);
        for (let k = 0; k < width; ++k) planes[k * length + i] = folded >>> (8 * k);
        before = value;
    }
    return planes;
}

/** Uint16Array or Uint32Array to the base64 text of one block; `base`: the levels of the time before. */
export function encodeBlock(numbers, base = null) {
    return deflateSync(differencePlanes(numbers, base), { level: 6 }).toString('base64');
}

/** Single-precision bit patterns, as unsigned integers. */
export const bitsOf = (values) => new Uint32Array(Float32Array.from(values).buffer);

/** One block of the page. */
export const blockElement = (name, text) =>
    `<script type="application/octet-stream" id="qnl-block-${name}">${text}</script>\n`;

/** The header of the page; "<" is written as an escape so that no text can end the element. */
export const headerElement = (header) =>
    `<script type="application/json" id="qnl-header">${JSON.stringify(header).replaceAll('<', '\\u003c')}</script>\n`;
