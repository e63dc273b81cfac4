// The page that the program makes of the ribbed cover: opened and used as a person would.
import assert from 'node:assert/strict';
import { statSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { openPage, ready, startBrowser } from './support/browser.mjs';
import { makeReport, programPath } from './support/report.mjs';
import { makeFolder } from './support/sample.mjs';

const skip = programPath() ? false : 'the program is not built: name it in FROZENLAYER';

describe('the page of the ribbed cover', { skip }, () => {
    const { folder, remove } = makeFolder();
    let browser, page, faults, requests;
    const text = (id) => page.locator(`#${id}`).textContent();
    const settled = () => page.evaluate(async () => { await (await window.qnlViewer).shown; });

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
        assert.equal(await page.locator('#profile path.line').count(), 8);
        assert.match(await page.locator('#profile text.limit').textContent(), /freeze temperature 130 °C/);
        assert.match(await text('profile-text'), /node \d+/i);
    });

    test('shows shares, distribution and ten last-freezing regions', async () => {
        assert.deepEqual((await page.locator('#curves-key li').allTextContents()).map((line) => line.replace(/[\d.]+ %/, 'N %')),
            ['of the volume N %', 'of the surface N %']);
        assert.ok(await page.locator('#histogram rect').count() > 5);
        assert.equal(await page.locator('#regions tbody tr').count(), 10);
    });

    test('gives a screenshot, without a fault or a request', async () => {
        const picture = join(process.env.QNL_SCREENSHOTS ?? folder, 'report.png');
        await page.screenshot({ path: picture });
        assert.ok(statSync(picture).size > 50000);
        assert.deepEqual([faults, requests], [[], []]);
    });
});
