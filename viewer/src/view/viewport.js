import { Box3, PerspectiveCamera, Raycaster, Scene, Vector2, Vector3, WebGLRenderer } from 'three';
import { DataFault } from '../data/decode.js';
import { OrbitControls } from 'three/examples/jsm/controls/OrbitControls.js';
import { EYES, STEEPEST, directionsBeside, polarOf, vectorOf } from './directions.js';

const CLICK_SLACK = 4;   // pixels that the pointer may move in a click
const FLIGHT = 600;      // ms
const RIM = 1.08;        // room around the part in the first picture
const SLANT = 0.55;      // least cosine between a surface flown to and the line of sight

function rendererOn(canvas) {
    const context = canvas.getContext('webgl2', { antialias: true, alpha: true });
    if (!context) throw new DataFault('This browser shows no 3-D graphics (WebGL 2 is missing or switched off).');
    return new WebGLRenderer({ canvas, context });
}

/** Canvas, camera and their handling; draws only when something has changed. */
export class Viewport {
    /** @param legend what covers the left of the picture  @param onDraw called after each drawing, to place what lies above it */
    constructor(canvas, legend, part, onDraw) {
        this.canvas = canvas;
        this.legend = legend;
        this.part = part;
        this.onDraw = onDraw;
        this.renderer = rendererOn(canvas);
        this.scene = new Scene();
        this.scene.add(part.mesh);
        this.points = part.geometry.getAttribute('position');
        const box = new Box3().setFromBufferAttribute(this.points);
        this.centre = box.getCenter(new Vector3());
        this.radius = Math.max(box.getSize(new Vector3()).length() / 2, 1e-6);
        this.camera = new PerspectiveCamera(32, 1, this.radius / 200, this.radius * 60);
        this.camera.up.set(0, 0, 1);
        this.controls = new OrbitControls(this.camera, canvas);
        this.controls.addEventListener('change', () => this.requestDraw());
        this.controls.addEventListener('start', () => { this.whole = null; });
        this.controls.minDistance = this.radius / 60;
        this.controls.maxDistance = this.radius * 25;
        new ResizeObserver(() => this.resize()).observe(canvas.parentElement);
        this.whole = polarOf(new Vector3(...EYES.start));
        this.resize();
    }

    resize() {
        const { clientWidth: width, clientHeight: height } = this.canvas.parentElement;
        this.renderer.setPixelRatio(Math.min(window.devicePixelRatio, 2));
        this.renderer.setSize(width, Math.max(height, 1), false);
        this.camera.aspect = width / Math.max(height, 1);
        const covered = this.legend.offsetLeft + this.legend.offsetWidth;
        this.margin = width > 2 * covered ? covered : 0;
        this.camera.setViewOffset(width, Math.max(height, 1), -this.margin / 2, 0, width, Math.max(height, 1));
        if (this.whole) this.showWhole(this.whole, false);
        this.draw();
    }

    requestDraw() {
        this.drawRequest ??= requestAnimationFrame(() => this.draw());
    }

    draw() {
        cancelAnimationFrame(this.drawRequest);
        this.drawRequest = undefined;
        this.renderer.render(this.scene, this.camera);
        this.onDraw(this);
    }

    /** Whole part from one of the named directions, or from where the camera is. */
    lookFrom(name) {
        this.showWhole(name ? polarOf(new Vector3(...EYES[name])) : this.offset(), true);
    }

    /** Whole part from a direction; it stays whole when the picture changes its size, until the view is moved. */
    showWhole(eye, animated) {
        this.moveTo(this.centre.clone(), { ...eye, length: this.fittingLength(eye) }, animated);
        this.whole = eye;
    }

    /** Distance from which the part just fills what the legend leaves of the picture. */
    fittingLength(eye) {
        const back = vectorOf({ ...eye, length: 1 });
        const right = new Vector3(0, 0, 1).cross(back).normalize(), up = back.clone().cross(right);
        const { clientWidth: width, clientHeight: height } = this.canvas;
        const tall = Math.tan(this.camera.fov * Math.PI / 360) / RIM, wide = tall * Math.max(width - this.margin, 1) / Math.max(height, 1);
        const point = new Vector3();
        let length = this.controls.minDistance;
        for (let i = 0; i < this.points.count; ++i) {
            point.fromBufferAttribute(this.points, i).sub(this.centre);
            length = Math.max(length, point.dot(back) + Math.max(Math.abs(point.dot(right)) / wide, Math.abs(point.dot(up)) / tall));
        }
        return length;
    }

    /** Brings a point to the middle of the picture and comes closer, on a side from which nothing hides it. */
    flyTo(place, normal = null) {
        const target = new Vector3(...place), { length, ...eye } = this.offset();
        const closer = Math.min(length, this.radius);
        this.moveTo(target, { ...this.openEye(target, normal && new Vector3(...normal), eye, closer), length: closer }, true);
    }

    /** The direction nearest to `eye` from which the surface at a point is seen; `eye` when there is none. */
    openEye(target, normal, eye, length) {
        const caster = new Raycaster();
        caster.far = length;
        return directionsBeside(eye).find((candidate) => {
            const way = vectorOf({ ...candidate, length: 1 });
            if (normal && way.dot(normal) < SLANT) return false;
            caster.set(target.clone().addScaledVector(way, this.radius * 1e-3), way);
            return caster.intersectObject(this.part.mesh, false).length === 0;
        }) ?? eye;
    }

    /** Moves the camera to `offset` (polar) from `target`, at once or in a short flight. */
    moveTo(target, offset, animated) {
        this.whole = null;
        const still = !animated || matchMedia('(prefers-reduced-motion: reduce)').matches;
        const from = { target: this.controls.target.clone(), offset: this.offset() };
        const around = Math.atan2(Math.sin(offset.azimuth - from.offset.azimuth), Math.cos(offset.azimuth - from.offset.azimuth));
        const began = performance.now();
        cancelAnimationFrame(this.flight);
        const step = () => {
            const part = still ? 1 : Math.min((performance.now() - began) / FLIGHT, 1);
            const eased = part * part * (3 - 2 * part);
            this.controls.target.lerpVectors(from.target, target, eased);
            this.camera.position.copy(this.controls.target).add(vectorOf({
                azimuth: from.offset.azimuth + eased * around,
                height: from.offset.height + eased * (offset.height - from.offset.height),
                length: from.offset.length + eased * (offset.length - from.offset.length),
            }));
            this.controls.update();
            this.requestDraw();
            if (part < 1) this.flight = requestAnimationFrame(step);
        };
        step();
    }

    /** Where the camera is, seen from the point that it looks at. */
    offset() {
        return polarOf(this.camera.position.clone().sub(this.controls.target));
    }

    /** Turns the view by angles in radians. */
    turn(around, up) {
        const { azimuth, height, length } = this.offset();
        const raised = Math.min(Math.max(height + up, -STEEPEST), STEEPEST);
        this.moveTo(this.controls.target.clone(), { azimuth: azimuth + around, height: raised, length }, false);
    }

    zoom(factor) {
        const offset = this.offset();
        this.moveTo(this.controls.target.clone(), { ...offset, length: offset.length * factor }, false);
    }

    /** Calls back with canvas pixels when the canvas is clicked, not when it is dragged. */
    onClick(callback) {
        let down = null;
        this.canvas.addEventListener('pointerdown', (event) => { down = [event.clientX, event.clientY]; });
        this.canvas.addEventListener('pointerup', (event) => {
            const still = down && Math.hypot(event.clientX - down[0], event.clientY - down[1]) <= CLICK_SLACK;
            const box = this.canvas.getBoundingClientRect();
            if (still && event.button === 0) callback(event.clientX - box.left, event.clientY - box.top);
            down = null;
        });
    }

    /** Node nearest to where the line of sight through a pixel meets the part; -1 beside the part. */
    nodeAt(x, y) {
        const { clientWidth: width, clientHeight: height } = this.canvas;
        const caster = new Raycaster();
        caster.setFromCamera(new Vector2(2 * x / width - 1, 1 - 2 * y / height), this.camera);
        const [hit] = caster.intersectObject(this.part.mesh, false);
        if (!hit) return -1;
        const distance = (node) => hit.point.distanceTo(new Vector3(...this.part.model.point(node)));
        return [hit.face.a, hit.face.b, hit.face.c].reduce((best, node) => (distance(node) < distance(best) ? node : best));
    }

    /** Canvas pixels of a point; null behind the camera. */
    pixelsOf([x, y, z]) {
        const place = new Vector3(x, y, z).project(this.camera);
        if (place.z > 1) return null;
        return [(place.x + 1) / 2 * this.canvas.clientWidth, (1 - place.y) / 2 * this.canvas.clientHeight];
    }
}
