// The picture of the README: the page of the ribbed cover, a node picked, its profile in view.
//   node picture.mjs OUT.png
import { openPage, ready, startBrowser } from './support/browser.mjs';
import { makeReport, programPath } from './support/report.mjs';
import { makeFolder } from './support/sample.mjs';

const LABEL = 5338; // in the middle of the front wall

if (!programPath()) throw new Error('The program is not built: build the preset "release" or name it in FROZENLAYER');
const { folder, remove } = makeFolder();
const { context, close } = await startBrowser({ width: 1500, height: 900 });
try {
    const { page, faults, requests } = await openPage(context, makeReport(folder));
    await ready(page);
    await page.evaluate(async (wanted) => {
        const app = await window.qnlViewer;
        await app.pick((await app.model.labels()).indexOf(wanted));
    }, LABEL);
    await page.waitForTimeout(1500);
    await page.screenshot({ path: process.argv[2] });
    if (faults.length + requests.length > 0) throw new Error([...faults, ...requests].join('\n'));
} finally {
    await close();
    remove();
}
