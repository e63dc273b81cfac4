import {
    BufferAttribute, BufferGeometry, DataTexture, DoubleSide, LineBasicMaterial, LineSegments, LinearFilter, Mesh,
    ShaderMaterial,
} from 'three';
import { MAX_LEVEL } from '../data/decode.js';
import { surfaceEdges } from '../math/surface.js';
import { MAP_SIZE, colourTable } from './colours.js';

const VERTEX = `
attribute vec3 sampled;
varying vec3 vSampled;
varying vec3 vView;
void main() {
    vSampled = sampled;
    vec4 view = modelViewMatrix * vec4(position, 1.0);
    vView = view.xyz;
    gl_Position = projectionMatrix * view;
}`;

// The value is carried as value * known, so that triangles at the edge of missing results do not mix in a number.
const FRAGMENT = `
uniform sampler2D map;
uniform vec2 place;
uniform float bands;
varying vec3 vSampled;
varying vec3 vView;
vec3 colourOf(float value) {
    float at = clamp(value * place.x + place.y, 0.0, 1.0);
    if (bands > 0.0) at = (min(floor(at * bands), bands - 1.0) + 0.5) / bands;
    return texture2D(map, vec2(at * ${((MAP_SIZE - 1) / MAP_SIZE).toFixed(8)} + ${(0.5 / MAP_SIZE).toFixed(8)}, 0.5)).rgb;
}
vec3 missing(float hatched) {
    float stripe = step(5.0, mod(gl_FragCoord.x + gl_FragCoord.y, 10.0));
    return mix(vec3(0.62), vec3(0.36), hatched * stripe);
}
void main() {
    vec3 normal = normalize(cross(dFdx(vView), dFdy(vView)));
    float light = 0.74 + 0.22 * abs(normal.z) + 0.08 * dot(normal, vec3(-0.35, 0.8, 0.2));
    bool known = vSampled.y > 0.5;
    vec3 colour = known ? colourOf(vSampled.x / vSampled.y) : missing(step(0.5, vSampled.z / (1.0 - vSampled.y)));
    gl_FragColor = vec4(colour * light, 1.0);
}`;

function mapTexture(name) {
    const texture = new DataTexture(colourTable(name), MAP_SIZE, 1);
    texture.minFilter = LinearFilter;
    texture.magFilter = LinearFilter;
    texture.needsUpdate = true;
    return texture;
}

function interleaved(values, count) {
    const result = new values.constructor(3 * count);
    for (let c = 0; c < 3; ++c) for (let i = 0; i < count; ++i) result[3 * i + c] = values[c * count + i];
    return result;
}

/** The moulded part's surface, coloured by one item at one time. */
export class PartView {
    constructor(model, mapName) {
        this.model = model;
        const { nodes, triangles } = model.header;
        this.geometry = new BufferGeometry();
        this.geometry.setAttribute('position', new BufferAttribute(interleaved(model.positions, nodes), 3));
        this.geometry.setAttribute('sampled', new BufferAttribute(new Float32Array(3 * nodes), 3));
        this.geometry.setIndex(new BufferAttribute(interleaved(model.triangles, triangles), 1));
        this.geometry.computeBoundingSphere();
        this.material = new ShaderMaterial({
            vertexShader: VERTEX, fragmentShader: FRAGMENT, side: DoubleSide,
            uniforms: { map: { value: mapTexture(mapName) }, place: { value: [1, 0] }, bands: { value: 0 } },
            polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1,
        });
        this.mesh = new Mesh(this.geometry, this.material);
    }

    /** Shows levels (0 ... MAX_LEVEL, statuses above); null shows "no result" everywhere. */
    showLevels(levels) {
        const attribute = this.geometry.getAttribute('sampled');
        const { array } = attribute;
        for (let n = 0; n < this.model.header.nodes; ++n) {
            const level = levels ? levels[n] : 65535;
            const known = level <= MAX_LEVEL;
            array[3 * n] = known ? level / MAX_LEVEL : 0;
            array[3 * n + 1] = known ? 1 : 0;
            array[3 * n + 2] = !known && level !== 65535 ? 1 : 0;
        }
        attribute.needsUpdate = true;
    }

    /** Range of the colours, in the item's unit. */
    showRange(item, { min, max }) {
        const span = max > min ? max - min : 1;
        this.material.uniforms.place.value = [(item.max - item.min) / span, (item.min - min) / span];
    }

    showColours(mapName, bands) {
        this.material.uniforms.map.value.dispose();
        this.material.uniforms.map.value = mapTexture(mapName);
        this.material.uniforms.bands.value = bands;
    }

    /** Adds the lines along sharp edges, and those of the mesh, which stay hidden until asked for. */
    addLines() {
        const { all, sharp } = surfaceEdges(this.model);
        const lines = (pairs, opacity) => {
            const geometry = new BufferGeometry();
            geometry.setAttribute('position', this.geometry.getAttribute('position'));
            geometry.setIndex(new BufferAttribute(pairs, 1));
            return new LineSegments(geometry, new LineBasicMaterial({ color: 0x10151b, transparent: true, opacity }));
        };
        this.sharpLines = lines(sharp, 0.55);
        this.meshLines = lines(all, 0.28);
        this.meshLines.visible = false;
        this.mesh.add(this.sharpLines, this.meshLines);
    }
}
