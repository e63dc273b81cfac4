// The page that the program makes of the ribbed cover: opened and used as a person would.
import assert from 'node:assert/strict';
import { cpSync, mkdirSync, readFileSync, rmSync, statSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { openPage, ready, startBrowser } from './support/browser.mjs';
import { makeReport, programPath, projectIn, runProgram, tableRows } from './support/report.mjs';
import { makeFolder } from './support/sample.mjs';

const TIMES = [0.25, 0.5, 1, 2, 3, 4.5, 5.5, 6.4];
const skip = programPath() || process.env.QNL_BROWSER === 'required' ? false : 'the program is not built: name it in FROZENLAYER';

describe('the page of the ribbed cover', { skip }, () => {
    const { folder, remove } = makeFolder();
    const pictures = process.env.QNL_SCREENSHOTS ?? folder;
    let browser, page, faults, requests;
    const text = (id) => page.locator(`#${id}`).textContent();
    const settled = () => page.evaluate(async () => { await (await window.qnlViewer).shown; });

    /** Rows of the program's table of one output time. */
    const rowsAt = (time) => tableRows(readFileSync(join(folder, `table_${String(time + 1).padStart(4, '0')}.csv`), 'utf8'));

    /** The value that the page shows for the picked node is that of the table, to the digits shown. */
    async function checkValue(item, time) {
        await page.waitForFunction((name) => document.getElementById('node-text').textContent.includes(`${name}: `), item);
        const [, label, shown] = (await text('node-text')).match(/^Node (\d+) at .* mm\. .*: (\S+)$/);
        const expected = Number(rowsAt(time).find((row) => row['Node label'] === label)[item]);
        const { min, max } = await page.evaluate(async () => { const { min, max } = (await window.qnlViewer).item; return { min, max }; });
        const slack = 0.51 * (max - min) / 65527 + 5e-5 * Math.abs(expected);
        assert.ok(Math.abs(expected - Number(shown.replace('−', '-'))) <= slack, `${item} of node ${label}: ${expected}, shown ${shown}`);
    }

    /** Colour (0 to 255) at the middle of the picture's part that shows a node. */
    const colourAtNode = (label) => page.evaluate(async (wanted) => {
        const { model, viewport } = await window.qnlViewer;
        const at = viewport.pixelsOf(model.point((await model.labels()).indexOf(wanted)));
        viewport.draw();
        const gl = viewport.renderer.getContext(), bytes = new Uint8Array(4);
        const ratio = viewport.renderer.getPixelRatio();
        gl.readPixels(at[0] * ratio, gl.drawingBufferHeight - at[1] * ratio, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, bytes);
        return [...bytes];
    }, label);

    before(async () => {
        browser = await startBrowser();
        ({ page, faults, requests } = await openPage(browser.context, makeReport(folder)));
        runProgram('export', projectIn(folder), '--to', 'csv', '--out', join(folder, 'table'));
        mkdirSync(pictures, { recursive: true });
        await ready(page);
    });
    after(async () => { await browser?.close(); remove(); });

    test('opens with the facts of the run, at a time when something is to be seen', async () => {
        assert.equal(await text('title'), 'cover');
        assert.match(await text('subtitle'), /cover\.hdf.*130 °C/);
        assert.equal(await text('time-text'), 'Time 2 s  (4 of 8)');
        assert.equal(await text('legend-name'), 'Frozen ratio [%]');
        assert.deepEqual(await page.locator('#legend-statuses li').allTextContents(), ['no result']);
        const facts = await text('facts');
        for (const fact of ['Mesh', 'Material', 'Freeze temperature', 'Times', 'frozenlayer 1.']) assert.ok(facts.includes(fact), fact);
        assert.ok(await page.locator('#notes').isHidden());
    });

    test('says above the part that results are missing', async () => {
        const partial = join(folder, 'partial');
        cpSync(projectIn(folder), partial, { recursive: true });
        rmSync(join(partial, 'Analysis/Run1/cover1_003.fzr'));
        runProgram('view', partial, '--out', join(folder, 'partial.html'));
        const opened = await openPage(browser.context, join(folder, 'partial.html'));
        await ready(opened.page);
        const notes = opened.page.locator('#notes');
        assert.ok(await notes.isVisible());
        assert.match(await notes.textContent(), /^1 of 8 output times has no result here \(cover1_003\.k4f\)/);
        await opened.page.close();
    });

    test('switches the item', async () => {
        await page.selectOption('#item', { label: 'Maximum temperature [°C]' });
        await settled();
        assert.equal(await text('legend-name'), 'Maximum temperature [°C]');
        assert.ok(Number(await page.inputValue('#range-max')) > 150);
    });

    test('moves the slider: hot at first, cold at last, the range stays', async () => {
        const range = await page.inputValue('#range-max');
        await page.locator('#time').fill('0');
        await settled();
        assert.equal(await text('time-text'), 'Time 0.25 s  (1 of 8)');
        const early = await colourAtNode(5338);
        await page.locator('#time').fill('7');
        await settled();
        assert.equal(await text('time-text'), 'Time 6.4 s  (8 of 8)');
        const late = await colourAtNode(5338);
        assert.ok(early[0] - late[0] > 40, `hot ${early}, cold ${late}`);
        assert.equal(await page.inputValue('#range-max'), range);
    });

    test('picks the node that is clicked, with its profile', async () => {
        const box = await page.locator('#canvas').boundingBox();
        const [x, y] = await page.evaluate(async () => {
            const { model, viewport } = await window.qnlViewer;
            return viewport.pixelsOf(model.point((await model.labels()).indexOf(5338)));
        });
        await page.mouse.click(box.x + x, box.y + y);
        await page.waitForFunction(() => document.querySelector('#profile path.line'));
        assert.match(await text('node-text'), /^Node 5338 at x 40\.000, y 0\.000, z 6\.686 mm\. Maximum temperature \[°C\]: \d+/);
        assert.equal(await page.locator('#profile path.line').count(), TIMES.length);
        assert.match(await page.locator('#profile text.limit').textContent(), /freeze temperature 130 °C/);
        assert.match(await text('profile-text'), /node \d+/i);
    });

    test('shows shares, distribution and ten last-freezing regions', async () => {
        assert.deepEqual((await page.locator('#curves-key li').allTextContents()).map((line) => line.replace(/[\d.]+ %/, 'N %')),
            ['of the volume: N %', 'of the surface: N %']);
        assert.ok(await page.locator('#histogram rect').count() > 5);
        assert.equal(await page.locator('#regions tbody tr').count(), 10);
    });

    test('offers every column of the tables, with units', async () => {
        const offered = await page.locator('#item option').allTextContents();
        const columns = Object.keys(rowsAt(0)[0]).filter((name) => !/^(Node label|[xyz] \[mm\]|Status|TimeValue)$/.test(name));
        assert.equal(columns.length, 17);
        // Names in files have no "/".
        const shown = columns.map((name) => (name.endsWith(']') ? name.replace('cm per s', 'cm/s') : `${name} [–]`));
        assert.deepEqual(offered, [...shown, 'Time to freeze [s]', 'Wall thickness [mm]']);
    });

    test('tells the values of the tables at the picked node, at other times and of other items', async () => {
        await checkValue('Maximum temperature [°C]', 7);
        for (const time of [0, 4]) {
            await page.locator('#time').fill(String(time));
            await settled();
            await checkValue('Maximum temperature [°C]', time);
        }
        await page.locator('#canvas').focus();
        for (const key of ['ArrowRight', 'i', 'i']) await page.keyboard.press(key);
        await settled();
        await checkValue('Average temperature [°C]', 5);
    });

    test('shows the longest name whole, with its unit', async () => {
        const { needs, has, label } = await page.evaluate(async () => {
            const app = await window.qnlViewer, select = document.getElementById('item'), free = select.cloneNode(true);
            await app.showItem(app.model.header.items.findIndex(({ name }) => name === 'Sink-mark displacement, total'));
            await app.shown;
            free.style.maxWidth = 'none';
            select.after(free);
            const needs = free.offsetWidth;
            free.remove();
            const chart = document.getElementById('history').getBoundingClientRect();
            const label = [...document.querySelectorAll('#history text.name')].at(-1).getBoundingClientRect();
            return { needs, has: select.offsetWidth, label: [label.top - chart.top, chart.bottom - label.bottom] };
        });
        assert.ok(has >= needs, `${has} of ${needs} pixels`);
        assert.ok(Math.min(...label) >= 0, `room beside the label of the axis: ${label}`);
    });

    test('carries the temperatures over depth that the probe tells', async () => {
        const { label, depths, temperatures, step } = await page.evaluate(async () => {
            const { model } = await window.qnlViewer, profiles = await model.profiles(), labels = await model.labels();
            const begin = profiles.starts[700], end = profiles.starts[701], { min, max } = profiles.range, step = (max - min) / 65527;
            const levels = await Promise.all(model.header.times.map((_, t) => profiles.series.at(t)));
            return {
                label: labels[profiles.nodes[700]], depths: [...profiles.depths.slice(begin, end)], step,
                temperatures: levels.map((all) => [...all.slice(begin, end)].map((level) => min + level * step)),
            };
        });
        const rows = tableRows(runProgram('probe', projectIn(folder), '--node', String(label)));
        let compared = 0;
        TIMES.forEach((time, t) => depths.forEach((depth, i) => {
            const there = rows.filter((row) => Number(row['Time [s]']) === time && Math.abs(Number(row['Depth [mm]']) - depth) < 1e-5);
            assert.ok(there.length > 0, `no row at ${depth} mm`);
            // Faces that meet at one depth stand in rows of their own, and in the page as their mean.
            if (there.length > 1) return;
            assert.ok(Math.abs(Number(there[0]['Temperature [°C]']) - temperatures[t][i]) <= step, `node ${label}, ${time} s, ${depth} mm`);
            ++compared;
        }));
        assert.ok(compared >= 2 * TIMES.length, `${compared} samples`);
    });

    test('shows every last-freezing region from a side from which it is seen', async () => {
        await page.emulateMedia({ reducedMotion: 'reduce' });
        const regions = await page.evaluate(async () => (await window.qnlViewer).model.header.regions);
        for (let i = 0; i < 10; ++i) {
            await page.keyboard.press(String((i + 1) % 10));
            await page.waitForFunction((start) => document.getElementById('marks').textContent.startsWith(start), `Region ${i + 1}, node ${regions[i].label}: `);
            const away = await page.evaluate(async (region) => {
                const { viewport, model } = await window.qnlViewer, point = [region.x, region.y, region.z];
                viewport.draw();
                const found = viewport.nodeAt(...viewport.pixelsOf(point));
                return found < 0 ? Infinity : Math.hypot(...model.point(found).map((c, k) => c - point[k]));
            }, regions[i]);
            assert.ok(away < 1.5, `region ${i + 1} is hidden: what is seen there is ${away} mm away`);
        }
    });

    test('fits the window, with large and small text, light and dark', async () => {
        await page.keyboard.press('Escape');
        await page.selectOption('#item', { label: 'Time to freeze [s]' });
        await settled();
        await page.locator('#canvas').focus();
        await page.keyboard.press('v');
        for (const [width, height, keys] of [[1280, 800, 'tdtd'], [1920, 1080, 'td']]) for (const key of keys) {
            await page.setViewportSize({ width, height });
            await page.keyboard.press(key);
            const { part, cut, wider, look } = await page.evaluate(async () => {
                // A change of size is answered at the end of the next frame.
                for (let frame = 0; frame < 3; ++frame) await new Promise(requestAnimationFrame);
                const { viewport, model } = await window.qnlViewer, { clientWidth, clientHeight } = viewport.canvas;
                const legend = document.getElementById('legend'), { bottom } = legend.getBoundingClientRect();
                const pixels = Array.from({ length: model.header.nodes }, (_, n) => viewport.pixelsOf(model.point(n)));
                const [x, y] = [0, 1].map((c) => pixels.map((at) => at[c]));
                const isCut = (element) => {
                    const box = element.getBoundingClientRect();
                    return box.left < 0 || box.right > innerWidth || box.bottom > (legend.contains(element) ? bottom : innerHeight);
                };
                return {
                    part: [Math.min(...x) - legend.offsetLeft - legend.offsetWidth, clientWidth - Math.max(...x), Math.min(...y), clientHeight - Math.max(...y)],
                    cut: [...document.querySelectorAll('#legend, .scale, #legend input, #legend-statuses li, #timebar > *, #toolbar > *, header > *')].filter(isCut).map((e) => e.id || e.textContent),
                    wider: document.documentElement.scrollWidth > innerWidth, look: `${document.documentElement.dataset.theme}${document.documentElement.dataset.large ?? 0}`,
                };
            });
            await page.screenshot({ path: join(pictures, `report-${width}-${look}.png`) });
            assert.ok(Math.min(...part) >= 0, `${width} ${look}: the part is cut off or covered, ${part}`);
            assert.ok(Math.min(...part) < 100, `${width} ${look}: the part is small, ${part}`);
            assert.deepEqual([cut, wider], [[], false], `${width} ${look}`);
        }
    });

    test('gives a screenshot, without a fault or a request', async () => {
        const picture = join(pictures, 'report.png');
        await page.screenshot({ path: picture });
        assert.ok(statSync(picture).size > 50000);
        assert.deepEqual([faults, requests], [[], []]);
    });
});
