/** A number as text, five digits at most: the values are stored in steps of 1/65527 of their range. */
export function numberText(value) {
    if (!Number.isFinite(value)) return '–';
    const size = Math.abs(value);
    if (size !== 0 && (size >= 1e6 || size < 1e-3)) return value.toExponential(3).replace('-', '−').replace('e-', 'e−');
    return String(Number(value.toPrecision(5))).replace('-', '−');
}

/** Round numbers that divide [low, high] into about `count` steps. */
export function ticks(low, high, count = 5) {
    if (!(high > low)) return [low];
    const rough = (high - low) / count;
    const power = 10 ** Math.floor(Math.log10(rough));
    const step = power * [1, 2, 5, 10].find((factor) => factor * power >= rough * 0.999);
    const first = Math.ceil(low / step - 1e-9), last = Math.floor(high / step + 1e-9);
    return Array.from({ length: last - first + 1 }, (_, i) => Number(((first + i) * step).toPrecision(12)));
}
