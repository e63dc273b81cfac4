/** What the keys do, in the order of the list that the page shows: [keys, shown as, what, action]. */
export const KEYS = [
    [[' '], 'Space', 'play or pause', (app) => app.togglePlay()],
    [['ArrowLeft'], '←', 'time before', (app) => app.stepTime(-1)],
    [['ArrowRight'], '→', 'next time', (app) => app.stepTime(1)],
    [['Home'], 'Home', 'first time', (app) => app.showTime(0)],
    [['End'], 'End', 'last time', (app) => app.showTime(Infinity)],
    [['i'], 'i', 'next item', (app) => app.stepItem(1)],
    [['I'], 'Shift + i', 'item before', (app) => app.stepItem(-1)],
    [['r'], 'r', 'reset the range of the colours', (app) => app.showRange(null)],
    [['c'], 'c', 'next colour map', (app) => app.stepColours()],
    [['b'], 'b', 'colours in bands', (app) => app.toggle('bands')],
    [['m'], 'm', 'mesh lines', (app) => app.toggle('mesh')],
    [['f'], 'f', 'whole part', (app) => app.viewport.lookFrom(null)],
    [['v'], 'v', 'first view', (app) => app.viewport.lookFrom('start')],
    [['x', 'y', 'z'], 'x, y, z', 'look along an axis', (app, key) => app.viewport.lookFrom(key)],
    [['Shift+ArrowLeft'], 'Shift + ←', 'turn left', (app) => app.viewport.turn(-0.15, 0)],
    [['Shift+ArrowRight'], 'Shift + →', 'turn right', (app) => app.viewport.turn(0.15, 0)],
    [['Shift+ArrowUp'], 'Shift + ↑', 'turn up', (app) => app.viewport.turn(0, 0.15)],
    [['Shift+ArrowDown'], 'Shift + ↓', 'turn down', (app) => app.viewport.turn(0, -0.15)],
    [['+', '='], '+', 'closer', (app) => app.viewport.zoom(0.85)],
    [['-'], '−', 'farther', (app) => app.viewport.zoom(1 / 0.85)],
    [[...'1234567890'], '1 … 9, 0', 'fly to a last-freezing region', (app, key) => app.flyToRegion((Number(key) + 9) % 10)],
    [['n'], 'n', 'enter a node label', (app) => app.focusLabel()],
    [['Escape'], 'Esc', 'forget the node and the marks', (app) => app.pick(-1)],
    [['d'], 'd', 'dark or light', (app) => app.toggle('dark')],
    [['t'], 't', 'large text', (app) => app.toggle('large')],
    [['?'], '?', 'this list', (app) => app.showKeys()],
];

const ACTIONS = new Map(KEYS.flatMap(([keys, , , action]) => keys.map((key) => [key, action])));
const TYPED = 'input:not([type=checkbox]):not([type=range]), select, textarea';

/** Whether the element with the focus uses the key itself. */
function isTaken(element, key) {
    if (!(element instanceof Element)) return false;
    if (element.closest('dialog[open]') || element.matches(TYPED)) return true;
    if (key === ' ' || key === 'Enter') return element.matches('button, summary, input');
    return element.matches('input[type=range]') && /^(Shift\+)?(Arrow|Home|End)/.test(key);
}

export function listenToKeys(app) {
    document.addEventListener('keydown', (event) => {
        if (event.ctrlKey || event.metaKey || event.altKey) return;
        const key = event.shiftKey && event.key.startsWith('Arrow') ? `Shift+${event.key}` : event.key;
        const action = ACTIONS.get(key);
        if (!action || isTaken(event.target, key)) return;
        event.preventDefault();
        action(app, key);
    });
}

export function fillKeyList(list) {
    for (const [, shown, what] of KEYS) {
        const term = document.createElement('dt'), text = document.createElement('dd');
        const key = document.createElement('kbd');
        key.textContent = shown;
        term.append(key);
        text.textContent = what;
        list.append(term, text);
    }
}
