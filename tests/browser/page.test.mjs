// The page in a browser: what it shows, how it is used, what it says about bad data.
import assert from 'node:assert/strict';
import { copyFileSync, mkdirSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { colourAt } from '../../viewer/src/view/colours.js';
import { makeItems } from '../../viewer/tools/lib/sample_fields.mjs';
import { makePart } from '../../viewer/tools/lib/sample_part.mjs';
import { openPage, ready, startBrowser } from './support/browser.mjs';
import { SIZE, TIME_COUNT, makeFolder, withBlock, withHeader, writePage } from './support/sample.mjs';

const { folder, remove } = makeFolder();
const pictures = process.env.QNL_SCREENSHOTS;
let browser;

before(async () => { browser = await startBrowser(); });
after(async () => { await browser.close(); remove(); });

async function picture(page, name) {
    if (!pictures) return;
    mkdirSync(pictures, { recursive: true });
    await page.screenshot({ path: join(pictures, `${name}.png`) });
}

/** Share of the canvas that the part covers, and the mean colour there. */
const paintedPixels = (page) => page.evaluate(async () => {
    const { viewport, part } = await window.qnlViewer;
    part.sharpLines.visible = false;
    viewport.draw();
    const gl = viewport.renderer.getContext();
    const bytes = new Uint8Array(4 * gl.drawingBufferWidth * gl.drawingBufferHeight);
    gl.readPixels(0, 0, gl.drawingBufferWidth, gl.drawingBufferHeight, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
    part.sharpLines.visible = true;
    const sum = [0, 0, 0];
    let count = 0;
    for (let i = 0; i < bytes.length; i += 4) {
        if (bytes[i + 3] < 255) continue;
        ++count;
        for (let c = 0; c < 3; ++c) sum[c] += bytes[i + c];
    }
    return { share: 4 * count / bytes.length, colour: sum.map((value) => value / Math.max(count, 1)) };
});

const text = (page, id) => page.locator(`#${id}`).textContent();
const settled = (page) => page.evaluate(async () => { await (await window.qnlViewer).shown; });

describe('a page with results', () => {
    let page, faults, requests;

    before(async () => {
        ({ page, faults, requests } = await openPage(browser.context, writePage(folder, 'report.html')));
        await ready(page);
    });
    after(async () => { await page.close(); });

    test('shows the part and asks the network for nothing', async () => {
        const { share } = await paintedPixels(page);
        assert.ok(share > 0.15 && share < 0.8, `the part covers ${share} of the picture`);
        assert.equal(await page.locator('#waiting').isVisible(), false);
        assert.equal(await page.locator('#fault').isVisible(), false);
        assert.deepEqual([faults, requests], [[], []]);
        await picture(page, 'first');
    });

    test('forbids itself every request', async () => {
        const refused = await page.evaluate(() => fetch('https://example.invalid/').then(() => 'sent', () => 'refused'));
        assert.equal(refused, 'refused');
        assert.match(faults.join(), /Content Security Policy/);
        faults.length = 0;
        requests.length = 0;
    });

    test('decodes an item only when it is asked for', async () => {
        const lengthOf = (name) => page.evaluate((id) => document.getElementById(id).textContent.length, `qnl-block-${name}`);
        assert.ok(await lengthOf('item-7-0') > 0);
        await page.evaluate(async () => { await (await window.qnlViewer).showItem(6); });
        assert.equal(await lengthOf('item-7-0'), 0);
        await page.evaluate(async () => { await (await window.qnlViewer).showItem(0); });
    });

    test('carries every value within half a step', async () => {
        const part = makePart(SIZE);
        const times = await page.evaluate(async () => (await window.qnlViewer).model.header.times);
        const { items } = makeItems(part, times);
        for (let i = 0; i < items.length; ++i) for (let t = 0; t < TIME_COUNT; ++t) {
            const { levels, min, max } = await page.evaluate(async ([item, time]) => {
                const { model } = await window.qnlViewer;
                const { min, max } = model.header.items[item];
                return { levels: [...await model.levels(item, time)], min, max };
            }, [i, t]);
            const values = items[i].values[Math.min(t, items[i].values.length - 1)];
            const step = (max - min) / 65527;
            levels.forEach((level, n) => {
                if (Number.isNaN(values[n])) assert.ok(level > 65527);
                else assert.ok(Math.abs(min + step * level - values[n]) <= 0.501 * step + 1e-12, `${items[i].name} at ${t}, node ${n}`);
            });
        }
    });

    test('switches the item by list and by key', async () => {
        await page.selectOption('#item', { label: 'Center Temperature [°C]' });
        await settled(page);
        assert.equal(await text(page, 'legend-name'), 'Center Temperature [°C]');
        await page.locator('#canvas').focus();
        await page.keyboard.press('i');
        await settled(page);
        assert.equal(await text(page, 'legend-name'), 'Average Temperature [°C]');
        await page.keyboard.press('I');
        await page.keyboard.press('I');
        await settled(page);
        assert.equal(await text(page, 'legend-name'), 'Max Temperature [°C]');
    });

    test('moves through time by slider and by keys, with the same range', async () => {
        const range = await page.inputValue('#range-max');
        await page.locator('#time').fill('3');
        await settled(page);
        assert.match(await text(page, 'time-text'), /^Time 9\.06 s {2}\(4 of 5\)$/);
        const late = (await paintedPixels(page)).colour;
        await page.locator('#canvas').focus();
        await page.keyboard.press('Home');
        await settled(page);
        assert.match(await text(page, 'time-text'), /^Time 0\.25 s {2}\(1 of 5\)$/);
        const early = (await paintedPixels(page)).colour;
        assert.ok(early[0] - late[0] > 40, `hot ${early}, cold ${late}`);
        await page.keyboard.press('ArrowRight');
        await settled(page);
        assert.match(await text(page, 'time-text'), /\(2 of 5\)$/);
        assert.equal(await page.inputValue('#range-max'), range);
    });

    test('plays and pauses', async () => {
        await page.selectOption('#speed', '125');
        await page.locator('#canvas').focus();
        await page.keyboard.press(' ');
        assert.equal(await text(page, 'play'), 'Pause');
        const seen = await page.evaluate(async () => {
            const app = await window.qnlViewer, times = new Set();
            for (let i = 0; i < 100 && times.size < 5; ++i) {
                times.add(app.state.time);
                await new Promise((later) => { setTimeout(later, 50); });
            }
            return times.size;
        });
        assert.equal(seen, 5);
        await page.locator('#play').click();
        assert.equal(await text(page, 'play'), 'Play');
        await settled(page);
        const before = await page.inputValue('#time');
        await page.waitForTimeout(500);
        assert.equal(await page.inputValue('#time'), before);
    });

    test('colours by the edited range and resets it', async () => {
        const fullRange = await page.inputValue('#range-max');
        const top = colourAt('Violet to yellow', 1), bottom = colourAt('Violet to yellow', 0);
        const nearest = async () => {
            const { colour } = await paintedPixels(page);
            const away = (other) => Math.hypot(...other.map((value, c) => value / Math.hypot(...other) - colour[c] / Math.hypot(...colour)));
            return away(top) < 0.08 ? 'top' : away(bottom) < 0.08 ? 'bottom' : 'between';
        };
        await page.fill('#range-min', '-20');
        await page.fill('#range-max', '-10');
        await page.locator('#range-max').press('Enter');
        assert.equal(await nearest(), 'top');
        assert.match(await text(page, 'histogram-text'), /above the range/);
        await page.fill('#range-max', '900');
        await page.fill('#range-min', '800');
        await page.locator('#range-min').press('Enter');
        assert.equal(await nearest(), 'bottom');
        await page.fill('#range-max', '700');
        await page.locator('#range-max').press('Enter');
        assert.equal(await page.inputValue('#range-max'), '900');
        await page.locator('#range-reset').click();
        assert.equal(await page.inputValue('#range-max'), fullRange);
        assert.equal(await page.locator('#range-reset').isDisabled(), true);
    });

    test('picks a node and shows its values, history and profile', async () => {
        const box = await page.locator('#canvas').boundingBox();
        const at = { x: box.width * 0.5, y: box.height * 0.65 };
        await page.keyboard.press('v');
        await page.waitForTimeout(900);
        await page.mouse.click(box.x + at.x, box.y + at.y);
        await page.waitForFunction(() => !document.getElementById('node-detail').hidden && document.querySelector('#profile path.line'));
        const found = await page.evaluate(async ({ x, y }) => {
            const app = await window.qnlViewer, { model, viewport, state } = app;
            const [px, py] = viewport.pixelsOf(model.point(state.node));
            return { away: Math.hypot(px - x, py - y), label: (await model.labels())[state.node], node: state.node };
        }, at);
        assert.ok(found.away < 40, `the node is ${found.away} pixels from the click`);
        assert.equal(found.label, found.node + 1001);
        assert.match(await text(page, 'node-text'), new RegExp(`^Node ${found.label} at x .* mm\\. Max Temperature \\[°C\\]: [\\d.]+$`));
        assert.equal(await page.locator('#profile path.line').count(), TIME_COUNT);
        assert.match(await page.locator('#profile text.limit').textContent(), /freeze temperature 131 °C/);
        assert.match(await text(page, 'profile-text'), /^(At node \d+ itself|Node \d+, [\d.]+ mm away)/);
        assert.equal(await page.locator('#history path.line').count(), 1);
        await page.locator('#all-values summary').click();
        await page.waitForFunction(() => document.querySelectorAll('#node-values tr').length === 20);
        await picture(page, 'picked');
    });

    test('forgets the node beside the part, and finds one by its label', async () => {
        const box = await page.locator('#canvas').boundingBox();
        await page.mouse.click(box.x + box.width - 10, box.y + 10);
        await page.waitForFunction(() => document.getElementById('node-detail').hidden);
        await page.locator('#canvas').focus();
        await page.keyboard.press('n');
        await page.keyboard.type('1234');
        await page.keyboard.press('Enter');
        await page.waitForFunction(() => document.getElementById('node-text').textContent.startsWith('Node 1234 at'));
        await page.fill('#label', '5');
        await page.locator('#label').press('Enter');
        await page.waitForFunction(() => document.getElementById('node-text').textContent === 'There is no node with label 5 on the surface shown.');
    });

    test('names the grey shades that it shows', async () => {
        await page.selectOption('#item', { label: 'Freeze Time [s]' });
        await settled(page);
        assert.deepEqual(await page.locator('#legend-statuses li').allTextContents(), ['no result', 'never frozen']);
    });

    test('flies to a last-freezing region', async () => {
        assert.equal(await page.locator('#regions tbody tr').count(), 10);
        await page.locator('#regions tbody tr').nth(4).click();
        const away = await page.evaluate(async () => {
            const { viewport, model } = await window.qnlViewer, { x, y, z } = model.header.regions[4];
            const distance = () => { const { target } = viewport.controls; return Math.hypot(target.x - x, target.y - y, target.z - z); };
            const until = performance.now() + 10000;
            while (distance() > 1e-6 && performance.now() < until) await new Promise(requestAnimationFrame);
            return distance();
        });
        assert.ok(away < 1e-6, `${away} mm`);
        assert.match(await text(page, 'marks'), /Region 5/);
    });

    test('turns dark and light, large and small, banded and meshed', async () => {
        const behind = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
        const light = await behind();
        await page.locator('#dark').click();
        assert.notEqual(await behind(), light);
        assert.equal(await page.getAttribute('#dark', 'aria-pressed'), 'true');
        await page.locator('#canvas').focus();
        for (const key of ['v', 't', 'b', 'm', 'c']) await page.keyboard.press(key);
        assert.equal(await page.evaluate(() => getComputedStyle(document.documentElement).fontSize), '21px');
        assert.deepEqual([await page.isChecked('#bands'), await page.isChecked('#mesh')], [true, true]);
        assert.equal(await page.inputValue('#map'), 'Plum to yellow');
        await page.waitForTimeout(900);
        await picture(page, 'dark');
        for (const key of ['d', 't', 'b', 'm', 'c']) await page.keyboard.press(key);
        assert.equal(await behind(), light);
    });

    test('lists its keys', async () => {
        await page.keyboard.press('?');
        assert.equal(await page.locator('#key-dialog').isVisible(), true);
        assert.ok(await page.locator('#key-list dt').count() > 20);
        await page.keyboard.press('Escape');
        assert.equal(await page.locator('#key-dialog').isVisible(), false);
    });

    test('labels every control and shows the focus', async () => {
        const nameless = await page.evaluate(() => [...document.querySelectorAll('button, input, select, canvas')]
            .filter((e) => !(e.getAttribute('aria-label') || e.labels?.[0]?.textContent.trim() || (e.matches('button') && e.textContent.trim())))
            .map((e) => e.id));
        assert.deepEqual(nameless, []);
        await page.locator('#large').focus();
        await page.keyboard.press('Tab');
        const focus = await page.evaluate(() => [document.activeElement.id, getComputedStyle(document.activeElement).outlineStyle]);
        assert.deepEqual(focus, ['dark', 'solid']);
    });

    test('did all of this without a fault or a request', () => {
        assert.deepEqual([faults, requests], [[], []]);
    });
});

test('opens dark where the system is dark', async () => {
    const dark = await startBrowser({ colorScheme: 'dark' });
    try {
        const { page } = await openPage(dark.context, join(folder, 'report.html'));
        await ready(page);
        assert.equal(await page.getAttribute('#dark', 'aria-pressed'), 'true');
    } finally {
        await dark.close();
    }
});

test('a single time of an item without unit, profile, curves and regions is shown', async () => {
    const edit = withHeader((header) => {
        header.times = [3];
        header.time_axis = { name: 'Output index', unit: '' };
        header.items = [{ ...header.items[10], blocks: header.items[10].blocks.slice(0, 1) }, { ...header.items[0], blocks: [null] }];
        Object.assign(header, { profiles: null, curves: [], regions: [], freeze_temperature: null, title: '</script><b>x' });
    });
    const { page, faults } = await openPage(browser.context, writePage(folder, 'single.html', edit));
    await ready(page);
    assert.equal(await text(page, 'legend-name'), 'PackingIndex [–]');
    assert.equal(await text(page, 'title'), '</script><b>x');
    assert.match(await text(page, 'time-text'), /^Output index 3 {2}\(1 of 1\)$/);
    assert.equal(await page.locator('#play').isDisabled(), true);
    assert.equal(await page.locator('#regions-panel').isVisible(), false);
    await page.evaluate(async () => { const app = await window.qnlViewer; await app.pick(5); await app.showItem(1); });
    assert.deepEqual(await page.locator('#legend-statuses li').allTextContents(), ['no result']);
    assert.match(await text(page, 'histogram-text'), /100\.00 % without a value/);
    await page.waitForFunction(() => /Frozen Ratio \[%\]: no result$/.test(document.getElementById('node-text').textContent));
    assert.deepEqual(faults, []);
    await page.close();
});

const BAD_DATA = [
    ['no data', () => '', /carries no results/],
    ['a header that is not JSON', (data) => data.replace('{"format"', '{format'), /JSON/],
    ['a newer layout', withHeader((header) => { header.version = 2; }), /version 2/],
    ['a block that is missing', (data) => data.replace('qnl-block-triangles', 'other'), /"triangles" is missing/],
    ['a block that is not base64', withBlock('positions', '???'), /"positions" is not base64/],
    ['a block of another length', withHeader((header) => { header.nodes += 1; }), /"positions" is damaged or does not hold/],
    ['fewer nodes than the triangles use', async (data) => {
        const { bitsOf, encodeBlock } = await import('../../viewer/tools/lib/encode.mjs');
        return withHeader((header) => { header.nodes = 3; })(withBlock('positions', encodeBlock(bitsOf([0, 1, 0, 0, 0, 1, 0, 0, 0])))(data));
    }, /refers to a node that does not exist/],
    ['coordinates that are no numbers', async (data) => {
        const { encodeBlock } = await import('../../viewer/tools/lib/encode.mjs');
        const { nodes } = makePart(SIZE);
        return withBlock('positions', encodeBlock(new Uint32Array(3 * nodes).fill(0x7fc00000)))(data);
    }, /coordinate is not a number/],
];

for (const [what, edit, message] of BAD_DATA) {
    test(`says so when it finds ${what}`, async () => {
        const { sampleData } = await import('./support/sample.mjs');
        const data = await edit(sampleData);
        const { page, faults } = await openPage(browser.context, writePage(folder, 'bad.html', () => data));
        await page.waitForFunction(() => !document.getElementById('fault').hidden);
        assert.match(await text(page, 'fault'), message);
        assert.equal(await page.locator('#waiting').isVisible(), false);
        assert.deepEqual(faults, []);
        await page.close();
    });
}

test('says so when an item asked for later is damaged, and goes on', async () => {
    const { page } = await openPage(browser.context, writePage(folder, 'later.html', withBlock('item-5-0', 'AAAA')));
    await ready(page);
    await page.evaluate(async () => { await (await window.qnlViewer).showItem(4); });
    assert.match(await text(page, 'fault'), /"item-5-0" is damaged/);
    await page.evaluate(async () => { await (await window.qnlViewer).showItem(1); });
    assert.equal(await text(page, 'legend-name'), 'Max Temperature [°C]');
    await page.close();
});

test('the empty template says what it is', async () => {
    const path = join(folder, 'template.html');
    copyFileSync(fileURLToPath(new URL('../../viewer/dist/viewer.html', import.meta.url)), path);
    const { page } = await openPage(browser.context, path);
    await page.waitForFunction(() => !document.getElementById('fault').hidden);
    assert.match(await text(page, 'fault'), /empty template/);
    await page.close();
});

for (const [what, script, message] of [
    ['WebGL', "HTMLCanvasElement.prototype.getContext = () => null", /WebGL 2 is missing/],
    ['DecompressionStream', 'delete window.DecompressionStream', /DecompressionStream is missing/],
]) {
    test(`says so where the browser has no ${what}`, async () => {
        const edit = (data) => `<script>${script}</script>${data}`;
        const { page, faults } = await openPage(browser.context, writePage(folder, 'lacking.html', edit));
        await page.waitForFunction(() => !document.getElementById('fault').hidden);
        assert.match(await text(page, 'fault'), message);
        assert.deepEqual(faults, []);
        await page.close();
    });
}
