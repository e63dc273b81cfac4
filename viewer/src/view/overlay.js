import { Vector3 } from 'three';

/** Marks above the picture: places with a short text, and the directions of the axes. */
export class Overlay {
    constructor(element, axes) {
        this.element = element;
        this.axes = axes;
        this.marks = new Map();
    }

    /** Sets, moves or (point null) removes a mark. */
    mark(name, point, text = '', kind = '') {
        let mark = this.marks.get(name);
        if (!point) {
            mark?.element.remove();
            this.marks.delete(name);
            return;
        }
        if (!mark) {
            mark = { element: document.createElement('div'), text: document.createElement('span') };
            mark.element.append(mark.text);
            this.element.append(mark.element);
            this.marks.set(name, mark);
        }
        mark.point = point;
        mark.element.className = `mark ${kind}`;
        mark.text.textContent = text;
    }

    place(viewport) {
        const { clientWidth } = this.element;
        for (const { element, text, point } of this.marks.values()) {
            const at = viewport.pixelsOf(point);
            element.hidden = !at;
            if (!at) continue;
            element.classList.toggle('left', at[0] + text.offsetLeft + text.offsetWidth > clientWidth && at[0] > clientWidth / 2);
            element.style.transform = `translate(${at[0].toFixed(1)}px, ${at[1].toFixed(1)}px)`;
        }
        this.placeAxes(viewport);
    }

    placeAxes(viewport) {
        const inverse = viewport.camera.quaternion.clone().invert();
        for (const [name, direction] of [['x', [1, 0, 0]], ['y', [0, 1, 0]], ['z', [0, 0, 1]]]) {
            const seen = new Vector3(...direction).applyQuaternion(inverse);
            const line = this.axes.querySelector(`line.${name}`), text = this.axes.querySelector(`text.${name}`);
            line.setAttribute('x2', (26 * seen.x).toFixed(1));
            line.setAttribute('y2', (-26 * seen.y).toFixed(1));
            text.setAttribute('x', (35 * seen.x).toFixed(1));
            text.setAttribute('y', (-35 * seen.y).toFixed(1));
        }
    }
}
