"""Compares result files with the expected values and names the worst entity."""

import numpy as np

from .evaluation import ITEMS
from .result_file import read_result

HEAD_CODE, HEAD_STAMP = 1004, 802218888


def _text(value):
    return value.decode() if isinstance(value, bytes) else value


def steps_apart(a, b):
    """Distance of two float32 arrays in representable steps."""

    def ordered(x):
        raw = np.asarray(x, np.float32).view(np.int32).astype(np.int64)
        return np.where(raw < 0, -(raw & 0x7FFFFFFF), raw)

    return np.abs(ordered(a) - ordered(b))


def compare_values(name, expected, written, labels):
    expected, written = np.asarray(expected, np.float32), np.asarray(written, np.float32)
    if len(expected) != len(written):
        return [f"{name}: {len(expected)} values expected, {len(written)} written"]
    wrong = ~((expected == written) | (np.isnan(expected) & np.isnan(written)))
    if not wrong.any():
        return []
    apart = np.where(wrong, steps_apart(expected, written), -1)
    worst = int(np.argmax(apart))
    return [
        f"{name}: {int(wrong.sum())} of {len(wrong)} values differ, worst at node {labels[worst]}:"
        f" expected {expected[worst]!r}, written {written[worst]!r} ({apart[worst]} steps)"
    ]


def _compare_fixed(file, run, expected):
    words = run.words
    wanted = {
        "head": {
            "code": HEAD_CODE,
            "stamp": HEAD_STAMP,
            "mesh": words.shown_path("Mesh", run.mesh_name),
            "material": words.shown_path("Material", run.material_name),
            "project": ".pro",
            "flag": int(words.corrected),
            "item_count": expected.item_count,
        },
        "producer": {"program": "QNL3DFrozenLayer", "major": 1000, "minor": 1000, "patch": 1000},
        "time": {"index": 0, "value": np.float32(0.01), "unit": "--"},
        "root": {
            "format": "qnl-result",
            "format_version": 1,
            "result_version": 1,
            "max_node": len(expected.labels),
            "max_element": 0,
        },
    }
    problems = []
    for group, values in wanted.items():
        written = getattr(file, group)
        for name, value in values.items():
            if name not in written or _text(written[name]) != value:
                problems.append(f"{group}/{name}: expected {value!r}, written {written.get(name)!r}")
    return problems


def compare_file(run, expected):
    """Differences between one expected output time and the file written for it, as sentences."""
    file = read_result(expected.path)
    if file is None:
        return [f"{expected.path}: not written"]
    problems = _compare_fixed(file, run, expected)
    if file.node_ids is None or not np.array_equal(file.node_ids[1:], expected.labels):
        return problems + [f"node_ids differ: {len(expected.labels)} expected, {file.node_ids}"]
    if sorted(file.items) != sorted(expected.items):
        return problems + [f"items {sorted(expected.items)} expected, {sorted(file.items)} written"]
    for item in ITEMS:
        if item.number not in expected.items:
            continue
        found = file.attributes[item.number]
        for name, value in (("name", item.name), ("unit", item.unit), ("data_type", 1)):
            if _text(found[name]) != value:
                problems.append(f"item {item.number} {name}: expected {value!r}, written {found[name]!r}")
        for name, value in (("max", expected.maxima), ("min", expected.minima)):
            problems += compare_values(f"{item.name} {name}", [value[item.number]], [found[name]], [0])
        wanted = expected.items[item.number]
        problems += compare_values(item.name, wanted, file.items[item.number][1:], expected.labels)
    return problems
