import { MAX_LEVEL, valueOfLevel } from '../data/decode.js';
import { itemLabel, timeLabel, timeText, withUnit } from '../data/model.js';
import { numberText } from '../math/numbers.js';
import { freezeCrossings } from '../math/profile.js';
import { areaHistogram } from '../math/surface.js';
import { cssColour } from '../view/colours.js';
import { drawBars, drawLines, svgElement } from './chart.js';

const BINS = 40;
/** Lines that differ in colour and in dashes. */
const LINE_STYLES = ['stroke: var(--line-1)', 'stroke: var(--line-2); stroke-dasharray: 7 4', 'stroke: var(--line-3); stroke-dasharray: 2 3'];

function cell(text, tag = 'td') {
    const element = document.createElement(tag);
    element.textContent = text;
    return element;
}

/** Text of a level: the value, or the name of its status. */
export function levelText(level, item, statuses) {
    if (level === undefined) return statuses[0];
    return level > MAX_LEVEL ? statuses[65535 - level] ?? statuses[0] : numberText(valueOfLevel(level, item));
}

/** What is to be known of the results before they are looked at; hidden when nothing is. */
export function fillNotes(box, header) {
    const notes = header.notes ?? [];
    box.replaceChildren(...notes.map((note) => cell(`${note}.`, 'p')));
    box.hidden = notes.length === 0;
}

/** Run facts as a list of names and values. */
export function fillFacts(list, header) {
    const { nodes, triangles } = header;
    const shown = [...header.facts, { name: 'Surface shown', value: `${nodes.toLocaleString('en')} nodes, ${triangles.toLocaleString('en')} triangles` }];
    list.replaceChildren(...shown.flatMap(({ name, value }) => [cell(name, 'dt'), cell(value, 'dd')]));
}

/** Rows of the last-freezing regions; the button of a row calls `onFly` with its index. */
export function fillRegions(table, header, onFly) {
    const { length_unit: length, time_axis: axis } = header;
    const heads = ['', axis.unit ? withUnit('Freezes at', axis.unit) : `Freezes at ${axis.name.toLowerCase()}`, ...['x', 'y', 'z'].map((name) => withUnit(name, length)), 'Node'];
    table.tHead.rows[0].replaceChildren(...heads.map((text) => cell(text, 'th')));
    table.tBodies[0].replaceChildren(...header.regions.slice(0, 10).map((region, i) => {
        const row = document.createElement('tr');
        const button = cell(String(i + 1), 'button');
        button.type = 'button';
        button.setAttribute('aria-label', `Fly to region ${i + 1}`);
        row.addEventListener('click', () => onFly(i));
        const fly = cell('', 'td');
        fly.append(button);
        const time = region.time === null ? 'never frozen' : numberText(region.time);
        const place = [region.x, region.y, region.z].map((value) => cell(value.toFixed(2)));
        row.append(fly, cell(time), ...place, cell(region.label === null ? '–' : String(region.label)));
        return row;
    }));
}

const shareText = (value) => (Number.isFinite(value) ? value.toFixed(1) : '–');

/** Lines of the frozen shares over time, with the names of the lines below. */
export function drawCurves(svg, key, model, time) {
    const { curves, times } = model.header;
    const series = curves.map((curve, i) => ({ points: times.map((at, t) => [at, curve.values[t] ?? NaN]), style: LINE_STYLES[i % 3] }));
    const unit = curves[0]?.unit ?? '%';
    const now = curves.map((curve) => `${curve.name}: ${shareText(curve.values[time])} ${curve.unit}`);
    drawLines(svg, {
        series, xLabel: timeLabel(model.header), yLabel: withUnit('Frozen share', unit), yRange: unit === '%' ? [0, 100] : undefined,
        atX: { value: times[time] }, label: `Frozen share over time; now ${now.join(', ')}`,
    });
    key.replaceChildren(...curves.map((_, i) => keyEntry(LINE_STYLES[i % 3], now[i])));
}

/** A short piece of a line and its name. */
function keyEntry(style, text) {
    const entry = document.createElement('li');
    const sample = svgElement('svg', { viewBox: '0 0 28 8', class: 'sample', 'aria-hidden': 'true' });
    sample.append(svgElement('path', { d: 'M0 4H28', class: 'line', style }));
    entry.append(sample, text);
    return entry;
}

/** Share of the surface by value, and in words what lies outside the range. */
export function drawHistogram(svg, note, { levels, areas, item, range, mapName, bands }) {
    const shares = areaHistogram(levels, areas, item, range, BINS);
    drawBars(svg, {
        bins: shares.bins, range: [range.min, range.max], colourOf: (i) => cssColour(mapName, (i + 0.5) / BINS, bands),
        xLabel: itemLabel(item), yLabel: 'Share of surface [%]', label: `Share of the surface by ${itemLabel(item)}`,
    });
    const said = [['below the range', shares.below], ['above the range', shares.above], ['without a value', shares.missing]]
        .filter(([, share]) => share > 0).map(([name, share]) => `${share < 0.01 ? '< 0.01' : share.toFixed(2)} % ${name}`);
    note.textContent = said.length ? `Of the surface, ${said.join(', ')}.` : 'All of the surface has a value within the range.';
}

/** Values of an item at a node over time. */
export function drawHistory(svg, model, item, levelsOfTimes, node, time) {
    const { times } = model.header;
    const points = times.map((at, t) => [at, levelsOfTimes[t] ? valueOfLevel(levelsOfTimes[t][node], item) : NaN]);
    drawLines(svg, {
        series: [{ points, style: LINE_STYLES[0] }], xLabel: timeLabel(model.header), yLabel: itemLabel(item),
        xRange: times.length > 1 ? [times[0], times.at(-1)] : undefined, yRange: item.max > item.min ? [item.min, item.max] : undefined,
        atX: { value: times[time] }, label: `${itemLabel(item)} at the node over time`,
    });
}

/** The frozen skins of a profile: shaded, with their ends marked and their thickness in words. */
function frozenSkins(points, freeze, length) {
    const crossings = freezeCrossings(points, freeze);
    if (!crossings) return { bands: [], marks: [], text: '' };
    const begin = points[0][0], end = points.at(-1)[0], { here, far } = crossings;
    const thickness = (value) => `${Number(value.toPrecision(3))} ${length}`;
    if (here === null) return { bands: [{ from: begin, to: end, title: 'frozen through' }], marks: [], text: 'Frozen through.' };
    const skins = [{ from: begin, to: here, at: here }, { from: far, to: end, at: far }].filter(({ from, to }) => to > from);
    return {
        bands: skins.map(({ from, to }) => ({ from, to, title: `frozen, ${thickness(to - from)}` })),
        marks: skins.map(({ from, to, at }) => ({ x: at, y: freeze, text: thickness(to - from) })),
        text: `Frozen layer ${thickness(here - begin)} on this side, ${thickness(end - far)} on the far side; molten core ${thickness(far - here)}.`,
    };
}

/** Temperature over depth at all times, the shown one in front, with the freeze temperature; says what is frozen. */
export function drawProfile(svg, model, profiles, levelsOfTimes, index, time) {
    const { range, starts, depths } = profiles;
    const { freeze_temperature: freeze, length_unit: length } = model.header;
    const lineAt = (t) => Array.from({ length: starts[index + 1] - starts[index] }, (_, i) => {
        const sample = starts[index] + i;
        return [depths[sample], levelsOfTimes[t] ? valueOfLevel(levelsOfTimes[t][sample], range) : NaN];
    });
    const order = levelsOfTimes.map((_, t) => t).filter((t) => t !== time).concat(time);
    const series = order.map((t) => ({
        points: lineAt(t), title: timeText(model.header, t),
        style: t === time ? 'stroke: var(--line-1); stroke-width: 2.6' : 'stroke: var(--faint-line); stroke-width: 1.2',
    }));
    const { bands, marks, text } = frozenSkins(lineAt(time), freeze, length);
    drawLines(svg, {
        series, bands, marks, xLabel: withUnit('Depth below the surface', length), yLabel: withUnit(range.name, range.unit),
        atY: freeze === null ? null : { value: freeze, text: `freeze temperature ${numberText(freeze)} ${range.unit}` },
        label: `${range.name} over depth at all times; the shown time in front. ${text}`,
    });
    return text;
}
