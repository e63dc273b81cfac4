// The picture of a results page: a node picked, its profile in view.
//   node tests/browser/picture.mjs REPORT.html OUT.png [ITEM NAME [NODE LABEL]]
import { openPage, ready, startBrowser } from './support/browser.mjs';

const [report, out, item, label] = process.argv.slice(2);
const { context, close } = await startBrowser({ width: 1500, height: 900 });
try {
    const { page, faults, requests } = await openPage(context, report);
    await ready(page);
    if (item) await page.selectOption('#item', { label: item });
    if (label) {
        await page.evaluate(async (wanted) => {
            const app = await window.qnlViewer;
            await app.pick((await app.model.labels()).indexOf(wanted));
        }, Number(label));
        await page.waitForFunction(() => document.querySelector('#profile path.line'));
    }
    await page.evaluate(async () => { await (await window.qnlViewer).shown; });
    await page.waitForTimeout(1500);
    await page.screenshot({ path: out });
    if (faults.length + requests.length > 0) throw new Error([...faults, ...requests].join('\n'));
} finally {
    await close();
}
