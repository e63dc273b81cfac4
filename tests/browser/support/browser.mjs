// A headless Chromium of the system with software graphics, a fresh profile and an eye on faults and requests.
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';

const require = createRequire(new URL('../../../viewer/package.json', import.meta.url));
const { chromium } = require('playwright-core');

const FLAGS = ['--no-sandbox', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync'];

function chromiumPath() {
    const found = [process.env.CHROMIUM, '/usr/bin/chromium', '/usr/bin/chromium-browser'].find((path) => path && existsSync(path));
    if (!found) throw new Error('No Chromium found: install the package chromium, or name its program in CHROMIUM');
    return found;
}

/** Starts the browser; `close` ends it and removes its profile. */
export async function startBrowser({ width = 1600, height = 900, colorScheme = 'light' } = {}) {
    const profile = mkdtempSync(join(tmpdir(), 'qnl-viewer-'));
    const context = await chromium.launchPersistentContext(profile, {
        executablePath: chromiumPath(), headless: true, args: FLAGS, viewport: { width, height }, colorScheme,
    });
    const close = async () => {
        await context.close();
        rmSync(profile, { recursive: true, force: true });
    };
    return { context, close };
}

/** Opens a file; `faults` collects console errors and exceptions, `requests` whatever else the page asks for. */
export async function openPage(context, file) {
    const page = await context.newPage();
    const url = pathToFileURL(file).href;
    const faults = [], requests = [];
    page.on('console', (message) => { if (message.type() === 'error') faults.push(message.text()); });
    page.on('pageerror', (error) => faults.push(String(error)));
    page.on('request', (request) => { if (request.url() !== url && !request.url().startsWith('data:')) requests.push(request.url()); });
    await page.goto(url);
    return { page, faults, requests };
}

/** Waits until the page is ready for use. */
export const ready = (page) => page.evaluate(async () => { await window.qnlViewer; });
