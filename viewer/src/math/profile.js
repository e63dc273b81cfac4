/**
 * The frozen layers of a wall from its temperature over depth, linear between points.
 * @param points [depth, temperature][] by ascending depth
 * @returns `here` and `far`, the depths at which the temperature first reaches the limit from either side; both
 *          null where all is frozen, the ends where nothing is; null when a value is missing
 */
export function freezeCrossings(points, limit) {
    if (points.length === 0 || limit === null || points.some(([, value]) => !Number.isFinite(value))) return null;
    const isMolten = ([, value]) => value >= limit;
    const first = points.findIndex(isMolten), last = points.findLastIndex(isMolten);
    if (first < 0) return { here: null, far: null };
    return { here: between(points[first - 1], points[first], limit), far: between(points[last + 1], points[last], limit) };
}

function between(frozen, molten, limit) {
    if (!frozen) return molten[0];
    return frozen[0] + (limit - frozen[1]) / (molten[1] - frozen[1]) * (molten[0] - frozen[0]);
}
