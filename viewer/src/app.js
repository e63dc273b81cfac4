import { MAX_LEVEL, valueOfLevel } from './data/decode.js';
import { itemLabel, timeText } from './data/model.js';
import { numberText } from './math/numbers.js';
import { nearestNode, nodeAreas, nodeNormal, nodeNormals, onSameWall } from './math/surface.js';
import { MAP_NAMES } from './view/colours.js';
import { Overlay } from './view/overlay.js';
import { PartView } from './view/part.js';
import { Viewport } from './view/viewport.js';
import { Legend } from './ui/legend.js';
import { drawCurves, drawHistogram, drawHistory, drawProfile, fillFacts, fillNotes, fillRegions, levelText } from './ui/panels.js';
import { fillKeyList } from './ui/keys.js';

const BAND_COUNT = 12;
/** Wall thickness, steady. */
const WALL_ITEM = 102;
const byId = (id) => document.getElementById(id);

/** What the page shows and how it changes: one object, asked by mouse, keys and controls alike. */
export class App {
    constructor(model, onFault) {
        this.model = model;
        this.onFault = onFault;
        this.state = { item: 0, time: 0, node: -1, region: -1, mapName: MAP_NAMES[0], bands: 0, playing: false };
        this.ranges = model.header.items.map(({ min, max }) => ({ min, max }));
        this.part = new PartView(model, this.state.mapName);
        this.overlay = new Overlay(byId('marks'), byId('axes'));
        this.legend = new Legend(byId, (range) => this.showRange(range));
        this.shown = Promise.resolve();
    }

    get item() { return this.model.header.items[this.state.item]; }
    get range() { return this.ranges[this.state.item]; }

    /** First picture: the mesh and the first item. */
    async start() {
        this.state.time = this.firstTime();
        this.fillControls();
        const levels = await this.model.levels(0, this.state.time);
        this.applyLevels(levels);
        this.viewport = new Viewport(byId('canvas'), byId('legend'), this.part, (viewport) => this.overlay.place(viewport));
        byId('waiting').hidden = true;
    }

    /** The time at which about half is frozen, where the results tell; it says more than the first or last. */
    firstTime() {
        const values = this.model.header.curves[0]?.values ?? [];
        const away = values.map((value) => Math.abs(value - 50));
        return Math.max(away.indexOf(Math.min(...away)), 0);
    }

    /** What the first picture does not need. */
    finish() {
        this.part.addLines();
        this.areas = nodeAreas(this.model);
        this.viewport.onClick((x, y) => this.pick(this.viewport.nodeAt(x, y)));
        const { header } = this.model;
        byId('curves-panel').hidden = header.curves.length === 0;
        byId('regions-panel').hidden = header.regions.length === 0;
        fillRegions(byId('regions'), header, (index) => this.flyToRegion(index));
        fillFacts(byId('facts'), header);
        fillKeyList(byId('key-list'));
        this.drawPanels();
        this.viewport.requestDraw();
    }

    fillControls() {
        const { header } = this.model;
        document.title = `${header.title} – frozen layer`;
        byId('title').textContent = header.title;
        byId('subtitle').textContent = header.facts.slice(0, 3).map(({ name, value }) => `${name}: ${value}`).join('   ·   ');
        fillNotes(byId('notes'), header);
        byId('item').replaceChildren(...header.items.map((item, i) => new Option(itemLabel(item), i)));
        byId('map').replaceChildren(...MAP_NAMES.map((name) => new Option(name)));
        byId('time').max = header.times.length - 1;
        byId('time').value = String(this.state.time);
        byId('play').disabled = header.times.length < 2;
        this.showTimeText();
    }

    /** Shows an item at a time. Calls that follow before the levels are there replace each other. */
    show(item, time) {
        Object.assign(this.state, { item, time });
        byId('item').selectedIndex = item;
        byId('time').value = String(time);
        this.showTimeText();
        this.shown = this.model.levels(item, time).then((levels) => {
            if (this.state.item !== item || this.state.time !== time) return;
            this.applyLevels(levels);
            this.viewport.requestDraw();
            this.drawPanels();
        }).catch(this.onFault);
        return this.shown;
    }

    applyLevels(levels) {
        this.levels = levels;
        this.part.showLevels(levels);
        this.legend.showItem(this.item);
        this.applyColours();
        const { statuses, nodes } = this.model.header;
        const counts = statuses.map(() => 0);
        for (const level of levels ?? []) if (level > MAX_LEVEL && 65535 - level < counts.length) ++counts[65535 - level];
        if (!levels) counts[0] = nodes;
        this.legend.showStatuses(statuses, counts);
    }

    applyColours() {
        const { mapName, bands } = this.state;
        const isFull = this.range.min === this.item.min && this.range.max === this.item.max;
        this.part.showRange(this.item, this.range);
        this.part.showColours(mapName, bands);
        this.legend.showRange(this.range, isFull);
        this.legend.showColours(mapName, bands);
    }

    showTimeText() {
        const text = timeText(this.model.header, this.state.time);
        byId('time-text').textContent = `${text}  (${this.state.time + 1} of ${this.model.header.times.length})`;
        byId('time').setAttribute('aria-valuetext', text);
    }

    showItem(item) { return this.show(item, this.state.time); }

    showTime(time) {
        return this.show(this.state.item, Math.min(Math.max(time, 0), this.model.header.times.length - 1));
    }

    stepTime(step) { return this.showTime(this.state.time + step); }

    stepItem(step) {
        const count = this.model.header.items.length;
        return this.showItem((this.state.item + step + count) % count);
    }

    /** Range of the colours of this item; null: its range over all times. A range without extent is refused. */
    showRange(range) {
        const { min, max } = range ?? this.item;
        if (Number.isFinite(min) && Number.isFinite(max) && (min < max || range === null)) {
            this.ranges[this.state.item] = { min, max };
        }
        this.applyColours();
        this.drawPanels();
        this.viewport.requestDraw();
    }

    showMap(mapName) {
        this.state.mapName = mapName;
        byId('map').value = mapName;
        this.applyColours();
        this.drawPanels();
        this.viewport.requestDraw();
    }

    stepColours() { this.showMap(MAP_NAMES[(MAP_NAMES.indexOf(this.state.mapName) + 1) % MAP_NAMES.length]); }

    /** Turns one of the page's switches over. */
    toggle(name) {
        const { dataset } = document.documentElement;
        const switches = {
            bands: () => { this.state.bands = this.state.bands ? 0 : BAND_COUNT; byId('bands').checked = this.state.bands > 0; this.showMap(this.state.mapName); },
            mesh: () => { const { meshLines } = this.part; meshLines.visible = !meshLines.visible; byId('mesh').checked = meshLines.visible; },
            dark: () => { dataset.theme = dataset.theme === 'dark' ? 'light' : 'dark'; this.showTheme(); },
            large: () => { dataset.large = dataset.large === '1' ? '0' : '1'; byId('large').setAttribute('aria-pressed', String(dataset.large === '1')); },
        };
        switches[name]();
        this.viewport?.requestDraw();
    }

    showTheme() {
        byId('dark').setAttribute('aria-pressed', String(document.documentElement.dataset.theme === 'dark'));
    }

    togglePlay() {
        if (this.model.header.times.length < 2) return;
        this.state.playing = !this.state.playing;
        byId('play').textContent = this.state.playing ? 'Pause' : 'Play';
        byId('play').setAttribute('aria-pressed', String(this.state.playing));
        clearTimeout(this.timer);
        if (this.state.playing) this.playOn();
    }

    /** One step of the animation; the next begins when this one is on the screen and its time has passed. */
    async playOn() {
        const began = performance.now();
        await this.show(this.state.item, (this.state.time + 1) % this.model.header.times.length);
        if (!this.state.playing) return;
        const rest = Number(byId('speed').value) - (performance.now() - began);
        this.timer = setTimeout(() => this.playOn(), Math.max(rest, 0));
    }

    /** Picks a node by index, as that of a last-freezing region where one is given; -1 forgets it. */
    pick(node, region = -1) {
        Object.assign(this.state, { node, region });
        this.overlay.mark('region', null);
        return this.showNode().catch(this.onFault);
    }

    async pickLabel(label) {
        const labels = await this.model.labels();
        const node = labels.indexOf(label);
        if (node >= 0) {
            this.viewport.flyTo(this.model.point(node), nodeNormal(this.model, node));
            return this.pick(node);
        }
        await this.pick(-1);
        byId('node-text').textContent = `There is no node with label ${label} on the surface shown.`;
        return undefined;
    }

    focusLabel() {
        byId('label').focus();
        byId('label').select();
    }

    async showNode() {
        const { node, item, time } = this.state;
        byId('node-detail').hidden = node < 0;
        if (node < 0) {
            this.overlay.mark('node', null);
            this.overlay.mark('profile', null);
            byId('label').value = '';
            byId('node-text').textContent = 'Click on the part, or enter the label of a node on its surface.';
            this.viewport.requestDraw();
            return;
        }
        const labels = await this.model.labels();
        const levels = await Promise.all(this.model.header.times.map((_, t) => this.model.levels(item, t)));
        if (this.state.node !== node || this.state.item !== item || this.state.time !== time) return;
        const { header } = this.model;
        const value = levelText(levels[time]?.[node], this.item, header.statuses);
        const [x, y, z] = this.model.point(node).map((c) => c.toFixed(3));
        byId('label').value = String(labels[node]);
        byId('node-text').textContent = `Node ${labels[node]} at x ${x}, y ${y}, z ${z} ${header.length_unit}. ${itemLabel(this.item)}: ${value}`;
        const region = this.state.region < 0 ? '' : `Region ${this.state.region + 1}, node `;
        this.overlay.mark('node', this.model.point(node), `${region}${labels[node]}: ${value}${/\d$/.test(value) ? ` ${this.item.unit}` : ''}`);
        byId('history').toggleAttribute('hidden', this.item.steady);
        drawHistory(byId('history'), this.model, this.item, levels, node, time);
        await this.showProfile(node, labels);
        this.fillValues();
        this.viewport.requestDraw();
    }

    async showProfile(node, labels) {
        const profiles = await this.model.profiles();
        byId('profile-part').hidden = !profiles;
        if (!profiles) return;
        const { index, distance } = await this.nearestProfile(profiles, node);
        byId('profile').toggleAttribute('hidden', index < 0);
        if (index < 0) {
            byId('profile-text').textContent = 'No node on this wall carries a profile; frozenlayer probe prints that of any node.';
            this.overlay.mark('profile', null);
            return;
        }
        const at = profiles.nodes[index], { time } = this.state;
        const levels = await Promise.all(this.model.header.times.map((_, t) => profiles.series.at(t)));
        const where = distance > 0 ? `Node ${labels[at]}, ${numberText(distance)} ${this.model.header.length_unit} away, the nearest that carries a profile.` : `At node ${labels[at]} itself.`;
        if (this.state.node !== node || this.state.time !== time) return;
        this.overlay.mark('profile', distance > 0 ? this.model.point(at) : null, '', 'small');
        const skins = drawProfile(byId('profile'), this.model, profiles, levels, index, time);
        byId('profile-text').textContent = `${where} ${skins} ${profiles.range.source ?? ''}`.replace(/ +/g, ' ').trim();
    }

    /** The profile of a node itself, or of the nearest node on the same wall; index -1 for none. */
    async nearestProfile(profiles, node) {
        const own = profiles.nodes.indexOf(node);
        if (own >= 0) return { index: own, distance: 0 };
        const item = this.model.header.items.findIndex(({ id }) => id === WALL_ITEM);
        const levels = item < 0 ? null : await this.model.levels(item, 0);
        if (!levels) return nearestNode(this.model, profiles.nodes, this.model.point(node));
        this.normals ??= nodeNormals(this.model);
        const wallOf = (n) => valueOfLevel(levels[n], this.model.header.items[item]);
        return nearestNode(this.model, profiles.nodes, this.model.point(node),
            (other) => onSameWall(this.normals, wallOf, node, other));
    }

    /** Values of all items at the picked node, while their list is open. */
    async fillValues() {
        const { node, time } = this.state;
        if (!byId('all-values').open || node < 0) return;
        const { items, statuses } = this.model.header;
        const rows = [];
        for (let i = 0; i < items.length; ++i) {
            const levels = await this.model.levels(i, time);
            const row = document.createElement('tr');
            row.insertCell().textContent = itemLabel(items[i]);
            row.insertCell().textContent = levelText(levels?.[node], items[i], statuses);
            rows.push(row);
        }
        if (this.state.node === node && this.state.time === time) byId('node-values').replaceChildren(...rows);
    }

    /** Brings a last-freezing region into view and picks its node, where it has one. */
    async flyToRegion(index) {
        const region = this.model.header.regions[index];
        if (!region) return;
        const point = [region.x, region.y, region.z];
        const node = (await this.model.labels()).indexOf(region.label);
        this.viewport.flyTo(point, node < 0 ? null : nodeNormal(this.model, node));
        await this.pick(node, index);
        if (node < 0) this.overlay.mark('region', point, `Region ${index + 1}`);
    }

    drawPanels() {
        if (!this.areas) return;
        const { time, mapName, bands } = this.state;
        drawCurves(byId('curves'), byId('curves-key'), this.model, time);
        drawHistogram(byId('histogram'), byId('histogram-text'), { levels: this.levels, areas: this.areas, item: this.item, range: this.range, mapName, bands });
        if (this.state.node >= 0) this.showNode().catch(this.onFault);
    }

    showKeys() { byId('key-dialog').showModal(); }
}
