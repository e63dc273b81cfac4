import { DataFault } from './data/decode.js';
import { Model } from './data/model.js';
import { App } from './app.js';
import { listenToKeys } from './ui/keys.js';

const byId = (id) => document.getElementById(id);

function showFault(fault) {
    byId('waiting').hidden = true;
    byId('fault').hidden = false;
    byId('fault').textContent = fault instanceof DataFault ? fault.message : `The page cannot go on: ${fault?.message ?? fault}`;
}

function connectControls(app) {
    byId('item').addEventListener('change', (event) => app.showItem(event.target.selectedIndex));
    byId('map').addEventListener('change', (event) => app.showMap(event.target.value));
    byId('time').addEventListener('input', (event) => app.showTime(Number(event.target.value)));
    byId('play').addEventListener('click', () => app.togglePlay());
    byId('keys').addEventListener('click', () => app.showKeys());
    byId('forget').addEventListener('click', () => app.pick(-1));
    byId('all-values').addEventListener('toggle', () => app.fillValues());
    for (const name of ['bands', 'mesh']) byId(name).addEventListener('change', () => app.toggle(name));
    for (const name of ['dark', 'large']) byId(name).addEventListener('click', () => app.toggle(name));
    for (const button of document.querySelectorAll('[data-view]')) {
        button.addEventListener('click', () => app.viewport.lookFrom(button.dataset.view));
    }
    byId('label-form').addEventListener('submit', (event) => {
        event.preventDefault();
        app.pickLabel(byId('label').valueAsNumber);
    });
    listenToKeys(app);
}

async function start() {
    if (typeof DecompressionStream === 'undefined') {
        throw new DataFault('This browser cannot unpack the results (DecompressionStream is missing). A newer one is needed.');
    }
    const app = new App(await Model.load(), showFault);
    await app.start();
    app.showTheme();
    await new Promise((drawn) => { requestAnimationFrame(() => setTimeout(drawn)); });
    performance.mark('first-picture');
    app.finish();
    connectControls(app);
    return app;
}

/** For tests: the app once it is ready. */
window.qnlViewer = start();
window.qnlViewer.catch(showFault);
