import { Vector3 } from 'three';

/** Directions of the named views, from the part to the eye. */
export const EYES = { x: [1, 0, 0], y: [0, -1, 0], z: [0, 0, 1], start: [-0.55, -0.95, 0.95] };
export const STEEPEST = 1.56;   // radians above or below the horizon

const HEIGHTS = [-1.1, -0.6, -0.1, 0.4, 0.9, 1.4], AROUND = 16;

/** Azimuth, height (radians) and length of a vector. */
export function polarOf({ x, y, z }) {
    const flat = Math.hypot(x, y);
    return { azimuth: flat > 0 ? Math.atan2(y, x) : -Math.PI / 2, height: Math.atan2(z, flat), length: Math.hypot(flat, z) };
}

export function vectorOf({ azimuth, height, length }) {
    const steep = Math.min(Math.max(height, -STEEPEST), STEEPEST), flat = Math.cos(steep);
    return new Vector3(Math.cos(azimuth) * flat, Math.sin(azimuth) * flat, Math.sin(steep)).multiplyScalar(length);
}

/** Directions (azimuth and height) all around, `eye` itself first, then those beside it before those behind. */
export function directionsBeside(eye) {
    const cosine = (direction) => vectorOf({ ...direction, length: 1 }).dot(vectorOf({ ...eye, length: 1 }));
    const around = HEIGHTS.flatMap((height) => Array.from({ length: AROUND }, (_, i) => ({ azimuth: 2 * Math.PI * i / AROUND, height })));
    const ranked = around.map((direction) => ({ direction, near: cosine(direction) })).sort((one, other) => other.near - one.near);
    return [eye, ...ranked.map(({ direction }) => direction)];
}
