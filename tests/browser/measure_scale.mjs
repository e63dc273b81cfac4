// Measures the page at full scale: 100,000 triangles, 20 items, 20 times; file size and time to the first picture.
//   node measure_scale.mjs [RUNS]
import { statSync, writeFileSync } from 'node:fs';
import { cpus, loadavg } from 'node:os';
import { join } from 'node:path';
import { makeSample, pageWith } from '../../viewer/tools/make_sample.mjs';
import { openPage, ready, startBrowser } from './support/browser.mjs';
import { makeFolder } from './support/sample.mjs';

const LIMITS = { megabytes: 30, seconds: 3 };
const runs = Number(process.argv[2] ?? 5);
const { folder, remove } = makeFolder();
const path = join(folder, 'large.html');
writeFileSync(path, pageWith(makeSample({ size: 1.19, timeCount: 20 })));
const megabytes = statSync(path).size / 1e6;

async function measure() {
    const { context, close } = await startBrowser();
    try {
        const { page } = await openPage(context, path);
        await ready(page);
        return await page.evaluate(async () => {
            const app = await window.qnlViewer;
            const took = async (what) => { const from = performance.now(); await what(); app.viewport.draw(); app.viewport.renderer.getContext().finish(); return performance.now() - from; };
            return {
                firstPicture: performance.getEntriesByName('first-picture')[0].startTime,
                anotherItem: await took(() => app.show(3, 19)), nextTime: await took(() => app.show(3, 18)),
                pick: await took(() => app.pick(app.viewport.nodeAt(700, 350))), fly: await took(() => app.flyToRegion(0)), size: app.model.header,
            };
        });
    } finally {
        await close();
    }
}

const results = [];
for (let i = 0; i < runs; ++i) results.push(await measure());
remove();
const { size } = results[0];
const line = (name) => results.map((result) => result[name].toFixed(0)).join(', ');
console.log(`${size.triangles} triangles, ${size.nodes} nodes, ${size.items.length} items, ${size.times.length} times: ${megabytes.toFixed(1)} MB`);
console.log(`${cpus().length} processors, load ${loadavg()[0].toFixed(1)} (above their number, the times say little)`);
console.log(`first picture, ms from opening: ${line('firstPicture')}`);
console.log(`another item at the last time, ms: ${line('anotherItem')}`);
console.log(`the time before, ms: ${line('nextTime')}`);
console.log(`pick a node, ms: ${line('pick')}`);
console.log(`find a free sight of a region, ms: ${line('fly')}`);
const slowest = Math.max(...results.map(({ firstPicture }) => firstPicture)) / 1000;
if (megabytes > LIMITS.megabytes || slowest > LIMITS.seconds) {
    console.log(`beyond the limits of ${LIMITS.megabytes} MB and ${LIMITS.seconds} s`);
    process.exitCode = 1;
}
