"""Whole projects with random fields (fixed seeds): mesh, material, run file, log and stage files."""

import os

import numpy as np

from .stage_files import indexed
from .write_mesh import write_mesh
from .write_results import write_binary, write_cool_text, write_flow_text, write_warp_text

PVT = """[pvt]
b1m = 0.00126
b2m = 9e-07
b3m = 85000000.0
b4m = 0.0046
b1s = 0.00116
b2s = 5.2e-07
b3s = 135000000.0
b4s = 0.0038
b5 = 396.15
b6 = 2.3e-07
b7 = 0.0001
b8 = 0.07
b9 = 1.6e-08
"""
MATERIALS = {
    "pvt": f'kind = "thermoplastic"\ntype_code = 0\nfreeze_temperature = 130.0\n{PVT}',
    "dense": 'kind = "thermoplastic"\nfreeze_temperature = 117.3\ndensity = 0.97\n',
    "flake": 'kind = "thermoplastic"\ntype_code = 6\nfreeze_temperature = 130.0\ndensity = 0.91\n',
    "thermoset": 'kind = "thermoset"\n',
}


class Fields:
    """Random values of one output time, dense by label."""

    def __init__(self, labels, case, index):
        count = int(labels.max())
        random = np.random.default_rng(1000 * case.seed + index)
        self.temperature = random.uniform(40.0, 240.0, count)
        self.velocity = random.uniform(-20.0, 20.0, (3, count)) * (random.random(count) < 0.7)
        self.velocity[:, random.random(count) < 0.1] *= 1e-6
        self.shrinkage = random.uniform(-0.1, 1.0, count) ** case.shrinkage_power * case.shrinkage
        self.density = random.uniform(0.7, 0.95, count)
        self.cooling_time = random.uniform(0.0, 15.0, count) - 5.0 * (random.random(count) < 0.1)
        self.gas = random.choice([-1.0, 0.0, 0.05, 1.0], count, p=[0.6, 0.1, 0.1, 0.2])
        self.displacement = random.uniform(-0.4, 0.4, (3, count))
        self.other = random.uniform(0.0, 1.0, (29, count))
        if case.still_shrinkage:
            self.shrinkage[:] = 0.0
        if case.stray_shrinkage:
            self.shrinkage[np.setdiff1d(np.arange(1, count + 1), labels) - 1] = case.stray_shrinkage
        if case.negative_cooling:
            self.cooling_time -= 40.0


def write_project(case, folder):
    """Writes the project of a case; gives (project folder, stage file)."""
    project = os.path.join(folder, case.folder, "project") if case.folder else os.path.join(folder, "project")
    run_folder = os.path.join(project, "Analysis", "Run" + case.run)
    for sub in ("Mesh", "Material"):
        os.makedirs(os.path.join(project, sub))
    os.makedirs(run_folder)
    labels = write_mesh(os.path.join(project, "Mesh", "block.hdf"), case.block)
    with open(os.path.join(project, "Material", "stuff.toml"), "w") as file:
        file.write('name = "test"\n' + MATERIALS[case.material])
    with open(os.path.join(run_folder, f"part{case.run}.run"), "w") as file:
        file.write("[MESH]\nMeshCount = 1\nMesh1 = block.hdf\n")
        file.write("[MATERIAL]\nMaterialCount = 1\nMaterial1 = stuff.toml\n")
    if case.log is not None:
        with open(os.path.join(run_folder, "QNLIntermediateOutputTime.log"), "w") as file:
            file.write("1 0.5\n" + case.log)
    stage = os.path.join(run_folder, f"part{case.run}{case.stage}")
    for index in range(case.times + 1):
        if index in case.missing:
            continue
        path = stage if index == 0 else indexed(stage, index)
        if case.stage != ".k4o":
            _write_stage(path, case, labels, Fields(labels, case, index), index)
        if case.fibre:
            _write_fibre(path[: path.rindex(".")] + ".k4o", case, index)
    return project, stage


def _write_fibre(path, case, index):
    random = np.random.default_rng(77 + case.seed + index)
    cells = 6 * int(np.prod(case.block.bricks)) + 40
    items = {number: random.uniform(-0.3, 1.0, cells) for number in (4, 5, 6, 9, 10, 11)}
    write_binary(path, items, max_node=0, max_element=cells, data_type=2)


def _write_stage(path, case, labels, fields, index):
    # A folder named after another stage makes its reader take this file: the widest set of items serves both.
    kind = "cool" if case.reader == "cool" else "warp" if case.reader == "warp" else "flow"
    if case.text:
        _TEXT_WRITERS[kind](path, case, np.sort(labels), fields)
    else:
        _BINARY_WRITERS[kind](path, case, labels, fields, index)


def _flow_binary(path, case, _, f, index):
    items = {6: f.temperature, 11: f.velocity[0], 12: f.velocity[1], 13: f.velocity[2]}
    items.update({14: f.shrinkage, 17: f.density})
    if case.gas_item:
        items[9] = f.gas
    if case.cooling_item and index in case.cooling_item:
        items[16] = f.cooling_time
    _write_dense(path, case, items, index)


def _write_dense(path, case, items, index):
    """Dense by label; later files end early where the case says so, or hold more labels than the mesh has."""
    count = len(next(iter(items.values())))
    if case.shorter and index > 0:
        items = {number: values[: count * 6 // 10] for number, values in items.items()}
    elif case.longer:
        items = {number: np.concatenate((values, np.full(9, 500.0))) for number, values in items.items()}
    write_binary(path, items, max_node=len(next(iter(items.values()))))


def _cool_binary(path, case, labels, f, index):
    items = {1: f.temperature, 2: f.cooling_time}
    if case.warp_items:
        items.update({3: f.other[0], 7: f.shrinkage})
    if case.gas_item:
        items[16] = np.abs(f.gas) if case.gas_never else f.gas
    if case.id_map:
        chosen = np.random.default_rng(5 + index).permutation(labels)[: len(labels) * 9 // 10]
        items = {number: values[chosen - 1] for number, values in items.items()}
        write_binary(path, items, max_node=len(chosen), node_ids=chosen)
    else:
        _write_dense(path, case, items, index)


def _warp_binary(path, case, _, f, index):
    items = {k + 1: f.displacement[k] for k in range(3)}
    items[7] = f.shrinkage
    _write_dense(path, case, items, index)


def _flow_text(path, case, labels, f):
    rows = labels - 1
    columns = f.other[:14, rows].T.copy()
    columns[:, 2] = f.temperature[rows]
    columns[:, 5:8] = f.velocity[:, rows].T
    columns[:, 8] = f.shrinkage[rows]
    gas = f.gas[rows] if case.header_code == 1012 else None
    write_flow_text(path, labels, columns, case.header_code, gas)


def _cool_text(path, case, labels, f):
    rows = labels - 1
    write_cool_text(path, labels, np.stack((f.temperature[rows], f.cooling_time[rows], f.other[0, rows]), axis=1))


def _warp_text(path, case, labels, f):
    columns = f.other[: case.warp_columns, labels - 1].T.copy()
    columns[:, 6] = f.shrinkage[labels - 1]
    write_warp_text(path, labels, columns)


_BINARY_WRITERS = {"flow": _flow_binary, "cool": _cool_binary, "warp": _warp_binary}
_TEXT_WRITERS = {"flow": _flow_text, "cool": _cool_text, "warp": _warp_text}
