import { numberText, ticks } from '../math/numbers.js';

const WIDTH = 400, HEIGHT = 220;
const FRAME = { left: 58, right: 388, top: 12, bottom: 176 };
const LONGEST_Y_LABEL = 184;

/** SVG element with attributes and, where given, a text. */
export function svgElement(name, attributes, text) {
    const element = document.createElementNS('http://www.w3.org/2000/svg', name);
    for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, value);
    if (text !== undefined) element.textContent = text;
    return element;
}

/** Range of numbers, widened when it is a single one. */
function rangeOf(values) {
    let low = Infinity, high = -Infinity;
    for (const value of values) if (Number.isFinite(value)) { low = Math.min(low, value); high = Math.max(high, value); }
    if (!(low <= high)) return [0, 1];
    const pad = high > low ? 0 : Math.abs(high) * 0.05 || 1;
    return [low - pad, high + pad];
}

/** Axes, ticks and labels; gives back the functions from values to places. */
function drawFrame(svg, { xRange, yRange, xLabel, yLabel }) {
    const { left, right, top, bottom } = FRAME;
    const x = (value) => left + (right - left) * (value - xRange[0]) / (xRange[1] - xRange[0]);
    const y = (value) => bottom - (bottom - top) * (value - yRange[0]) / (yRange[1] - yRange[0]);
    for (const tick of ticks(...yRange, 5)) {
        svg.append(svgElement('line', { class: 'grid', x1: left, x2: right, y1: y(tick), y2: y(tick) }));
        svg.append(svgElement('text', { class: 'tick', x: left - 6, y: y(tick) + 4, 'text-anchor': 'end' }, numberText(tick)));
    }
    for (const tick of ticks(...xRange, 6)) {
        svg.append(svgElement('line', { class: 'grid', x1: x(tick), x2: x(tick), y1: bottom, y2: bottom + 4 }));
        svg.append(svgElement('text', { class: 'tick', x: x(tick), y: bottom + 18, 'text-anchor': 'middle' }, numberText(tick)));
    }
    svg.append(svgElement('path', { class: 'axis', d: `M${left} ${top}V${bottom}H${right}` }));
    svg.append(svgElement('text', { class: 'name', x: (left + right) / 2, y: HEIGHT - 6, 'text-anchor': 'middle' }, xLabel));
    const middle = (top + bottom) / 2;
    const name = svgElement('text', { class: 'name', x: 12, y: middle, 'text-anchor': 'middle', transform: `rotate(-90 12 ${middle})` }, yLabel);
    svg.append(name);
    if (name.getComputedTextLength() > LONGEST_Y_LABEL) {
        name.setAttribute('textLength', LONGEST_Y_LABEL);
        name.setAttribute('lengthAdjust', 'spacingAndGlyphs');
    }
    return { x, y };
}

/** Path through points; a value that is not a number interrupts it. */
function pathOf(points, x, y) {
    let path = '', open = false;
    for (const [a, b] of points) {
        const known = Number.isFinite(a) && Number.isFinite(b);
        if (known) path += `${open ? 'L' : 'M'}${x(a).toFixed(1)} ${y(b).toFixed(1)}`;
        open = known;
    }
    return path;
}

function emptied(svg, label) {
    svg.setAttribute('viewBox', `0 0 ${WIDTH} ${HEIGHT}`);
    svg.setAttribute('role', 'img');
    svg.setAttribute('aria-label', label);
    svg.replaceChildren();
}

/**
 * Draws lines.
 * @param chart `series` of {points: [x, y][], style, title (optional)}, axis labels, optional ranges,
 *        `atX`, `atY`: marked places on the axes as {value, text}; `bands`: shaded stretches of the x axis as
 *        {from, to, title}; `marks`: points as {x, y, text}
 */
export function drawLines(svg, { series, xLabel, yLabel, label, xRange, yRange, atX = null, atY = null, bands = [], marks = [] }) {
    emptied(svg, label);
    const all = series.flatMap(({ points }) => points);
    const reached = all.filter(([, b]) => Number.isFinite(b)).map(([, b]) => b).concat(atY ? [atY.value] : []);
    const { x, y } = drawFrame(svg, {
        xRange: xRange ?? rangeOf(all.map(([a]) => a)), yRange: yRange ?? rangeOf(reached), xLabel, yLabel,
    });
    for (const { from, to, title } of bands) {
        const band = svgElement('rect', { class: 'band', x: x(from), width: Math.max(x(to) - x(from), 0), y: FRAME.top, height: FRAME.bottom - FRAME.top });
        band.append(svgElement('title', {}, title));
        svg.append(band);
    }
    if (atX) svg.append(svgElement('line', { class: 'now', x1: x(atX.value), x2: x(atX.value), y1: FRAME.top, y2: FRAME.bottom }));
    for (const { points, style, title } of series) {
        const line = svgElement('path', { class: 'line', d: pathOf(points, x, y), style });
        if (title) line.append(svgElement('title', {}, title));
        svg.append(line);
        const known = points.filter(([, b]) => Number.isFinite(b));
        if (known.length === 1) svg.append(svgElement('circle', { cx: x(known[0][0]), cy: y(known[0][1]), r: 3, class: 'dot' }));
    }
    if (atY) {
        svg.append(svgElement('line', { class: 'limit', x1: FRAME.left, x2: FRAME.right, y1: y(atY.value), y2: y(atY.value) }));
        svg.append(svgElement('text', { class: 'limit', x: (FRAME.left + FRAME.right) / 2, y: y(atY.value) - 5, 'text-anchor': 'middle' }, atY.text));
    }
    for (const mark of marks) {
        const right = x(mark.x) > (FRAME.left + FRAME.right) / 2;
        svg.append(svgElement('circle', { class: 'crossing', cx: x(mark.x), cy: y(mark.y), r: 4.5 }));
        svg.append(svgElement('text', { class: 'crossing', x: x(mark.x) + (right ? -8 : 8), y: y(mark.y) + 17, 'text-anchor': right ? 'end' : 'start' }, mark.text));
    }
}

/** Draws a histogram: `bins` over `range`, coloured by `colourOf(bin)`. */
export function drawBars(svg, { bins, range, colourOf, xLabel, yLabel, label }) {
    emptied(svg, label);
    const [low, high] = range[1] > range[0] ? range : rangeOf(range);
    const { x, y } = drawFrame(svg, { xRange: [low, high], yRange: [0, Math.max(...bins, 1e-9) * 1.05], xLabel, yLabel });
    const width = (FRAME.right - FRAME.left) / bins.length;
    bins.forEach((share, i) => {
        if (share <= 0) return;
        svg.append(svgElement('rect', {
            class: 'bar', x: (x(low) + i * width + 0.5).toFixed(2), width: Math.max(width - 1, 0.5).toFixed(2),
            y: y(share).toFixed(2), height: (FRAME.bottom - y(share)).toFixed(2), fill: colourOf(i),
        }));
    });
}
