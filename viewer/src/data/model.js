import { numberText } from '../math/numbers.js';
import { DataFault, decodeBlock } from './decode.js';
import { readHeader } from './header.js';

/** Text of a data element of the page, which is emptied: each is decoded once. */
function takeText(id, missing) {
    const element = document.getElementById(id);
    if (!element) throw new DataFault(missing);
    const text = element.textContent;
    element.textContent = '';
    return text;
}

async function takeBlock(name, NumberArray, count, base = null) {
    const text = takeText(`qnl-block-${name}`, `Block "${name}" is missing.`);
    return decodeBlock(text, name, NumberArray, count, base);
}

/** A quantity at every time: blocks that are decoded when first asked for, each on top of the time before. */
class Series {
    constructor(blocks, count) {
        this.blocks = blocks;
        this.count = count;
        this.levels = blocks.map(() => null);
    }

    /** Levels at a time; null when the series has no block for it. */
    at(time) {
        this.levels[time] ??= this.decode(time);
        return this.levels[time];
    }

    async decode(time) {
        if (this.blocks[time] === null) return null;
        const base = time > 0 ? await this.at(time - 1) : null;
        return takeBlock(this.blocks[time], Uint16Array, this.count, base);
    }
}

/** The results that the page carries. Node indices start at 0; labels are those of the mesh. */
export class Model {
    static async load() {
        const model = new Model();
        const text = takeText('qnl-header', 'This page carries no results. It is the empty template that "frozenlayer view" fills.');
        const header = readHeader(text);
        const { nodes, triangles } = header;
        model.header = header;
        model.positions = new Float32Array((await takeBlock('positions', Uint32Array, 3 * nodes)).buffer);
        model.triangles = await takeBlock('triangles', Uint32Array, 3 * triangles);
        if (!model.positions.every(Number.isFinite)) throw new DataFault('A coordinate is not a number.');
        if (model.triangles.some((node) => node >= nodes)) throw new DataFault('A triangle refers to a node that does not exist.');
        model.items = header.items.map((item) => new Series(item.blocks, nodes));
        return model;
    }

    /** Levels of an item at a time (Uint16Array), null where the item has no result at that time. */
    levels(item, time) {
        return this.items[item].at(this.header.items[item].steady ? 0 : time);
    }

    labels() {
        this.labelsPromise ??= takeBlock('labels', Uint32Array, this.header.nodes);
        return this.labelsPromise;
    }

    profiles() {
        this.profilesPromise ??= this.loadProfiles();
        return this.profilesPromise;
    }

    async loadProfiles() {
        const { profiles } = this.header;
        if (!profiles) return null;
        const nodes = await takeBlock('profile-nodes', Uint32Array, profiles.nodes);
        const counts = await takeBlock('profile-counts', Uint32Array, profiles.nodes);
        const starts = new Uint32Array(profiles.nodes + 1);
        counts.forEach((count, i) => { starts[i + 1] = starts[i] + count; });
        if (counts.reduce((sum, count) => sum + count, 0) !== profiles.samples || nodes.some((n) => n >= this.header.nodes)) {
            throw new DataFault('The profiles do not fit their header.');
        }
        const depths = new Float32Array((await takeBlock('profile-depths', Uint32Array, profiles.samples)).buffer);
        return { nodes, starts, depths, series: new Series(profiles.blocks, profiles.samples), range: profiles };
    }

    point(node) {
        const { nodes } = this.header;
        return [this.positions[node], this.positions[nodes + node], this.positions[2 * nodes + node]];
    }

    corners(triangle) {
        const { triangles } = this.header;
        return [this.triangles[triangle], this.triangles[triangles + triangle], this.triangles[2 * triangles + triangle]];
    }
}

/** Name and unit of a label; a quantity without unit says so. */
export const withUnit = (name, unit) => `${name} [${unit || '–'}]`;
/** "Time [s]"; the name alone where the axis is an index. */
export const timeLabel = ({ time_axis: axis }) => (axis.unit ? withUnit(axis.name, axis.unit) : axis.name);
/** "Time 2 s", "Output index 3". */
export const timeText = ({ times, time_axis: axis }, t) => `${axis.name} ${numberText(times[t])} ${axis.unit}`.trim();
export const itemLabel = (item) => withUnit(item.name.replaceAll('_', ' '), item.unit);
