import { MAP_SIZE, colourAt, cssColour } from '../view/colours.js';
import { numberText, ticks } from '../math/numbers.js';
import { itemLabel } from '../data/model.js';

/** Colour bar with its unit, the editable ends of the range and the meaning of the grey shades. */
export class Legend {
    constructor(byId, onRange) {
        this.parts = {
            name: byId('legend-name'), note: byId('legend-note'), bar: byId('legend-bar'), ticks: byId('legend-ticks'),
            max: byId('range-max'), min: byId('range-min'), reset: byId('range-reset'), statuses: byId('legend-statuses'),
        };
        const edited = () => onRange({ min: this.parts.min.valueAsNumber, max: this.parts.max.valueAsNumber });
        this.parts.min.addEventListener('change', edited);
        this.parts.max.addEventListener('change', edited);
        this.parts.reset.addEventListener('click', () => onRange(null));
    }

    showItem(item) {
        this.parts.name.textContent = itemLabel(item);
        this.parts.note.textContent = item.note ?? '';
        this.parts.note.hidden = !item.note;
        const unit = item.unit || 'no unit';
        this.parts.max.setAttribute('aria-label', `Largest value of the colours, ${unit}`);
        this.parts.min.setAttribute('aria-label', `Smallest value of the colours, ${unit}`);
    }

    showRange(range, isFull) {
        for (const end of ['min', 'max']) {
            const input = this.parts[end];
            input.value = String(Number(range[end].toPrecision(5)));
            input.step = 'any';
        }
        this.parts.reset.disabled = isFull;
        this.parts.ticks.replaceChildren(...ticks(range.min, range.max, 6).map((value) => {
            const tick = document.createElement('span');
            tick.textContent = numberText(value);
            const place = range.max > range.min ? (value - range.min) / (range.max - range.min) : 0.5;
            tick.style.bottom = `${100 * place}%`;
            return tick;
        }));
    }

    showColours(mapName, bands) {
        const count = bands > 0 ? bands : 32;
        const stops = Array.from({ length: count }, (_, i) => {
            const colour = bands > 0 ? cssColour(mapName, (i + 0.5) / count, bands)
                : `rgb(${colourAt(mapName, i / (count - 1)).join(' ')})`;
            return bands > 0 ? `${colour} ${100 * i / count}% ${100 * (i + 1) / count}%` : colour;
        });
        this.parts.bar.style.background = `linear-gradient(to top, ${stops.join(', ')})`;
        this.parts.bar.dataset.steps = String(bands || MAP_SIZE);
    }

    /** Lists the statuses that the picture shows; `counts`: nodes of each. */
    showStatuses(names, counts) {
        this.parts.statuses.replaceChildren(...names.flatMap((name, status) => {
            if (!counts[status]) return [];
            const line = document.createElement('li');
            const swatch = document.createElement('span');
            swatch.className = status === 0 ? 'swatch' : 'swatch hatched';
            line.append(swatch, name);
            return [line];
        }));
    }
}
