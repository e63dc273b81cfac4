// Reader's half of the data layout (docs/viewer-data.md): base64 blocks to numbers.

/** Largest level of a quantised value; level 65535 - k stands for status k. */
export const MAX_LEVEL = 65527;

/** What is wrong with the data of the page, in words for its reader. */
export class DataFault extends Error {}

function bytesOfBase64(text, name) {
    let binary;
    try {
        binary = atob(text);
    } catch {
        throw new DataFault(`Block "${name}" is not base64 text.`);
    }
    const bytes = new Uint8Array(binary.length);
    for (let i = 0; i < binary.length; ++i) bytes[i] = binary.charCodeAt(i);
    return bytes;
}

/** Inflates to exactly `length` bytes; more or fewer is a fault, found before more is stored. */
async function inflate(bytes, length, name) {
    const wrong = () => new DataFault(`Block "${name}" is damaged or does not hold ${length} bytes.`);
    const reader = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate')).getReader();
    const result = new Uint8Array(length);
    let filled = 0;
    for (;;) {
        const { done, value } = await reader.read().catch(() => { throw wrong(); });
        if (done) break;
        if (filled + value.length > length) throw wrong();
        result.set(value, filled);
        filled += value.length;
    }
    if (filled !== length) throw wrong();
    return result;
}

/** Undoes byte planes, folding and differences; `base`: numbers that the differences were taken from. */
export function numbersOfPlanes(planes, NumberArray, base = null) {
    const width = NumberArray.BYTES_PER_ELEMENT;
    const length = planes.length / width;
    const numbers = new NumberArray(length);
    let sum = 0;
    for (let i = 0; i < length; ++i) {
        let folded = planes[i];
        for (let k = 1; k < width; ++k) folded |= planes[k * length + i] << (8 * k);
        sum = (sum + ((folded >>> 1) ^ -(folded & 1))) | 0;
        numbers[i] = base ? sum + base[i] : sum;
    }
    return numbers;
}

/** Numbers of one block from its base64 text. */
export async function decodeBlock(text, name, NumberArray, count, base = null) {
    const bytes = bytesOfBase64(text, name);
    const planes = await inflate(bytes, count * NumberArray.BYTES_PER_ELEMENT, name);
    return numbersOfPlanes(planes, NumberArray, base);
}

/** Values of levels over [min, max]; NaN for a status. */
export function valueOfLevel(level, { min, max }) {
    return level > MAX_LEVEL ? NaN : min + (max - min) * (level / MAX_LEVEL);
}
