"""Depth profiles of many nodes at once and their reductions.

A profile is a set of (rows, columns) arrays, padded at the right; `count` tells how many columns of
each row are real. Reductions walk the columns from left to right.
"""

import math
from dataclasses import dataclass

import numpy as np

from .mesh import dot


@dataclass
class Profile:
    depth: np.ndarray
    ids: np.ndarray
    count: np.ndarray

    def __post_init__(self):
        self.width = self.depth.shape[1]
        self.rows = np.arange(len(self.count))

    def has(self, column):
        return self.count > column

    def span(self):
        return self.depth[self.rows, self.count - 1] - self.depth[:, 0]

    def from_first(self, column):
        return self.depth[:, column] - self.depth[:, 0]

    def segments(self):
        """(column, rows that have the segment [column, column + 1], its length)."""
        for column in range(self.width - 1):
            yield column, self.has(column + 1), self.depth[:, column + 1] - self.depth[:, column]


def depth_axis(direction):
    """Third axis of the ray frame: the direction, or exactly +-z when it is nearly along z."""
    axis = direction.copy()
    sideways = direction[:, 1] * direction[:, 1] + direction[:, 0] * direction[:, 0]
    along = sideways < 1e-5
    axis[along] = (0.0, 0.0, 1.0)
    axis[along & (np.abs(direction[:, 2] + 1.0) <= 0.01)] = (0.0, 0.0, -1.0)
    return axis


def sort_elements(depth, ids, count, near):
    """Depths ascending; ids ascending within runs of depths that follow each other by no more than `near`."""
    columns = np.arange(depth.shape[1])
    depth = np.where(columns < count[:, None], depth, np.inf)
    order = np.argsort(depth, axis=1, kind="stable")
    depth = np.take_along_axis(depth, order, axis=1)
    ids = np.take_along_axis(ids, order, axis=1)
    with np.errstate(invalid="ignore"):
        new_run = np.diff(depth, axis=1) > near
    run = np.concatenate((np.zeros((len(depth), 1), np.int64), np.cumsum(new_run, axis=1)), axis=1)
    run = np.where(columns < count[:, None], run, depth.shape[1] + 1)
    order = np.lexsort((ids, run), axis=1)
    return Profile(np.where(np.isfinite(depth), depth, 0.0), np.take_along_axis(ids, order, axis=1), count)


def build_elements(mesh, lists, direction):
    """Sorted pass elements of every row; `lists` holds at least two ids per row."""
    count = np.array([len(x) for x in lists], np.int64)
    ids = np.zeros((len(lists), int(count.max()) if len(lists) else 1), np.int64)
    for row, found in enumerate(lists):
        ids[row, : len(found)] = found
    depth = dot(depth_axis(direction)[:, None, :], mesh.middles[ids])
    return sort_elements(depth, ids, count, mesh.near)


def merge_samples(mesh, elements, temperature):
    """Samples (profile, mean temperatures): elements of one depth are merged, a far wall face ends the ray."""
    rows, width = elements.depth.shape
    same = (mesh.box_high[2] - mesh.box_low[2]) / 1e8
    depth, values = np.zeros((rows, width)), np.zeros((rows, width))
    ids, found = np.zeros((rows, width), np.int64), np.zeros(rows, np.int64)
    total, members = temperature[:, 0].copy(), np.ones(rows)
    open_ray = np.ones(rows, bool)

    def append(which, column, value):
        depth[which, found[which]] = elements.depth[which, column]
        values[which, found[which]] = value[which]
        ids[which, found[which]] = elements.ids[which, column]
        found[which] += 1

    for j in range(1, width):
        active = open_ray & elements.has(j)
        joined = active & (elements.depth[:, j] - elements.depth[:, j - 1] < same)
        parted = active & ~joined
        append(np.flatnonzero(parted), j - 1, total / members)
        total = np.where(joined, total + temperature[:, j], np.where(parted, temperature[:, j], total))
        members = np.where(joined, members + 1.0, np.where(parted, 1.0, members))
        wall = parted & (elements.from_first(j) > mesh.tolerance) & (elements.ids[:, j] <= mesh.face_count)
        append(np.flatnonzero(wall), j, temperature[:, j])
        open_ray &= ~wall
        last = active & ~wall & (elements.count == j + 1)
        append(np.flatnonzero(last & joined), j - 1, total / members)
        append(np.flatnonzero(last & parted), j, temperature[:, j])
    return Profile(depth, ids, found), values


def frozen_length(a, b, delta, limit):
    below_a, below_b = a < limit, b < limit
    part = np.abs((np.minimum(a, b) - limit) / (b - a)) * delta
    return np.where(below_a & below_b, delta, np.where(below_a ^ below_b, part, 0.0))


def hot_length(a, b, delta, limit):
    part = np.abs((np.maximum(a, b) - limit) / (b - a)) * delta
    crossing = ((a < limit) & (b >= limit)) | ((b < limit) & (a >= limit))
    return np.where((a > limit) & (b > limit), delta, np.where(crossing, part, 0.0))


def polymer_length(a, b, delta):
    return np.where((a < -0.1) & (b < -0.1), delta, np.where((a < -0.1) ^ (b < -0.1), delta / 2.0, 0.0))


def smaller(a, b):
    return np.where(a < b, a, b)


def frozen_ratio(samples, temperature, window, freeze):
    frozen = np.zeros(len(samples.count))
    for j, has, delta in samples.segments():
        part = frozen_length(temperature[:, j], temperature[:, j + 1], delta, freeze)
        frozen = np.where(has, frozen + part, frozen)
    span = smaller(samples.span(), window)
    ratio = 100.0 * smaller(frozen, window) / span
    return np.where((samples.count < 2) | (span <= 1e-10), 100.0, ratio)


def frozen_ratio_in_polymer(samples, temperature, gas, window, freeze):
    frozen, polymer = np.zeros(len(samples.count)), np.zeros(len(samples.count))
    for j, has, delta in samples.segments():
        a, b = gas[:, j] < -0.1, gas[:, j + 1] < -0.1
        any_polymer = has & (a | b)
        polymer = np.where(any_polymer, polymer + np.where(a & b, delta, delta / 2.0), polymer)
        part = frozen_length(temperature[:, j], temperature[:, j + 1], delta, freeze)
        frozen = np.where(any_polymer, frozen + part, frozen)
    ratio = smaller(frozen, window) / smaller(polymer, window)
    whole = (samples.count < 2) | (smaller(polymer, window) <= 1e-10) | (ratio > 1.0)
    return np.where(whole, 100.0, 100.0 * ratio)


def skin_ratio(elements, gas, window):
    skin = np.zeros(len(elements.count))
    for j, has, delta in elements.segments():
        skin = np.where(has, skin + polymer_length(gas[:, j], gas[:, j + 1], delta), skin)
    span = smaller(elements.span(), window)
    return np.where(span <= 1e-10, 100.0, 100.0 * smaller(skin, window) / span)


def skin_thickness(elements, gas):
    skin, walking = np.zeros(len(elements.count)), np.ones(len(elements.count), bool)
    for j, has, delta in elements.segments():
        skin = np.where(has & walking, skin + polymer_length(gas[:, j], gas[:, j + 1], delta), skin)
        walking &= ~(has & (gas[:, j + 1] > 0.1))
    return skin


def in_window(profile, column, window):
    return profile.has(column) & (profile.from_first(column) < window)


def window_maximum(profile, values, window, start):
    """(largest value, column of the last point) in the window."""
    best = np.full(len(profile.count), start)
    last = np.zeros(len(profile.count), np.int64)
    for j in range(profile.width):
        inside = in_window(profile, j, window)
        best = np.where(inside & (values[:, j] >= best), values[:, j], best)
        last = np.where(inside, j, last)
    return best, last


def centre_value(samples, values, last):
    first = samples.depth[:, 0]
    middle = first + (samples.depth[samples.rows, last] - first) / 2.0
    result, open_search = np.zeros(len(first)), samples.count > 1
    for i in range(samples.width - 1):
        low, high = samples.depth[:, i], samples.depth[:, i + 1]
        here = open_search & (i <= last) & samples.has(i + 1) & (low <= middle) & (middle <= high)
        a, b = values[:, i], values[:, i + 1]
        between = a + (b - a) * (middle - low) / ((high - middle) + (middle - low))
        result = np.where(here, between, result)
        open_search &= ~here
    return np.where(samples.count > 1, result, values[:, 0])


def sample_weight(samples, column):
    depth = samples.depth
    if column == 0:
        return (depth[:, min(1, samples.width - 1)] - depth[:, 0]) / 2.0
    to_last = (depth[:, column] - depth[:, column - 1]) / 2.0
    if column + 1 == samples.width:
        return to_last
    return np.where(samples.has(column + 1), (depth[:, column + 1] - depth[:, column - 1]) / 2.0, to_last)


def window_average(samples, values, window, weights=None, tiny=1e-16):
    top, bottom = np.zeros(len(samples.count)), np.zeros(len(samples.count))
    for j in range(samples.width):
        inside = in_window(samples, j, window)
        weight = sample_weight(samples, j)
        if weights is not None:
            weight = weight * weights[:, j]
        top = np.where(inside, top + weight * values[:, j], top)
        bottom = np.where(inside, bottom + weight, bottom)
    return np.where(samples.count > 1, np.where(bottom <= tiny, top, top / bottom), values[:, 0])


def mean_of_nonzero(elements, values, window):
    total, number = np.zeros(len(elements.count)), np.zeros(len(elements.count))
    for j in range(elements.width):
        counted = in_window(elements, j, window) & (np.abs(values[:, j]) > 1e-8)
        total = np.where(counted, total + values[:, j], total)
        number = np.where(counted, number + 1.0, number)
    return np.where(number > 0.0, total / number, total)


def packing_index(elements, temperature, density, material, tolerance, window, gas=None):
    span = smaller(elements.span(), 5.0 * tolerance)
    limit = material.freeze_temperature - 20.0
    hot, mass = np.zeros(len(span)), np.zeros(len(span))
    walking = np.ones(len(span), bool)
    for j, has, delta in elements.segments():
        counted = walking & has & (elements.from_first(j + 1) < window)
        part = hot_length(temperature[:, j], temperature[:, j + 1], delta, limit)
        hot = np.where(counted, hot + part, hot)
        mass = np.where(counted, mass + part * (density[:, j] + density[:, j + 1]) / 2.0, mass)
        if gas is not None:
            walking &= ~(counted & (gas[:, j + 1] > 0.1))
    freeze = material.freeze_density
    return np.where(span < 1e-8, 0.0, (freeze * hot - mass) / (freeze * span))


def sink_depth(elements, shrinkage, tolerance):
    cap = min(2.0 * tolerance, 4.0)
    total = np.zeros(len(elements.count))
    for j, has, delta in elements.segments():
        part = (shrinkage[:, j] + shrinkage[:, j + 1]) / 2.0 * 0.01
        for row in np.flatnonzero(has & (elements.from_first(j + 1) < cap) & (part > 0.0)):
            left = max(1.0 - float(part[row]), 0.0)
            total[row] += (1.0 - math.pow(left, 1.0 / 3.0)) * delta[row]
    return total


def shrink_location(elements, shrinkage, tolerance, max_value):
    reach = 5.0 * tolerance
    span = smaller(elements.span(), reach)
    level = min(max(0.33 * max_value, 0.0), 1.0)
    most = np.full(len(span), -1e8)
    for j in range(elements.width):
        inside = in_window(elements, j, reach)
        most = np.where(inside & (shrinkage[:, j] > most), shrinkage[:, j], most)
    high, low = np.full(len(span), -1e8), np.full(len(span), 1e8)
    for j, has, _ in elements.segments():
        counted = has & (elements.from_first(j) < reach) & (shrinkage[:, j] >= 0.95 * most)
        middle = (elements.depth[:, j] + elements.depth[:, j + 1]) / 2.0
        high = np.where(counted & (middle > high), middle, high)
        low = np.where(counted & (middle < low), middle, low)
    first = elements.depth[:, 0]
    result = np.where((high - first) / span <= 0.35, 0.3, 0.0)
    result = np.where((elements.span() > reach) & ((low - first) / span <= 0.2), 0.3, result)
    result = np.where((low - first) / span > 0.35, result, 0.3)
    return np.where(level >= most, 0.0, result)


def flake_intensity(elements, fibre, face_count, direction, tolerance):
    rows = len(elements.count)
    is_cell = elements.ids > face_count
    deepest = np.zeros(rows)
    for j in range(elements.width):
        near = elements.has(j) & is_cell[:, j] & (elements.from_first(j) < tolerance)
        deepest = np.where(near, elements.from_first(j), deepest)
    previous = elements.depth[:, 0].copy()
    length, tensor = np.zeros(rows), np.zeros((6, rows))
    walking, number = np.ones(rows, bool), np.zeros(rows)
    for j in range(elements.width):
        counted = walking & elements.has(j) & is_cell[:, j]
        delta = elements.depth[:, j] - previous
        cell = np.where(counted, elements.ids[:, j] - face_count, 0)
        length = np.where(counted, length + delta, length)
        tensor = np.where(counted, tensor + delta * fibre[:, cell], tensor)
        previous = np.where(counted, elements.depth[:, j], previous)
        number += counted
        walking &= ~(counted & (elements.from_first(j) >= deepest / 2.0))
    xx, yy, zz, xy, xz, yz = tensor / (length + 1e-20)
    x, y, z = direction.T
    straight = (xx * (x * x) + yy * (y * y)) + zz * (z * z)
    return np.where(number > 0, straight + 2.0 * ((xy * x * y + xz * x * z) + yz * y * z), 0.0)
