"""One run: every output time of a stage, with the state that the classic mode carries along."""

import os
import struct
from dataclasses import dataclass

import numpy as np

from . import profile as p
from .material import read_material
from .mesh import corner_mean, dot, length, read_mesh, running_sum
from .result_file import read_result
from .stage_files import NodeInput, StageSelection, cut_extension, find, indexed

NORMAL_SWEEPS, SHOWN_SWEEPS, REFERENCE_SWEEPS = 6, 2, 200
GAS_KEEPING_CODE = 8
SELECTABLE = 1.0  # a node is written when its centre temperature is above this


@dataclass(frozen=True)
class Item:
    number: int
    name: str
    unit: str
    array: str
    wanted: object


def _times(run):
    return not run.selection.has_cool and run.selection.has_times


def _gas(run):
    return not run.selection.has_cool and run.input.gas_in


def _flow(run):
    return not run.selection.has_cool and run.selection.has_flow


def _always(_):
    return True


ITEMS = (
    Item(1, "Frozen_Ratio", "--", "frozen_ratio", _always),
    Item(2, "Max_Temperature", "oC", "max_temperature", _always),
    Item(3, "Center_Temperature", "oC", "center_temperature", _always),
    Item(4, "Average_Temperature", "oC", "average_temperature", _always),
    Item(5, "Bulk_Temperature", "oC", "bulk_temperature", lambda run: not run.selection.has_cool),
    Item(6, "Skin_Ratio", "--", "skin_ratio", _gas),
    Item(7, "Mold_Temperature_Diff", "oC", "mold_temperature_diff", lambda run: run.selection.has_cool),
    Item(8, "Max_CoolingTime", "oC", "max_cooling_time", lambda run: run.selection.has_cool),
    Item(9, "Skin_Thickness", "mm", "skin_thickness", _gas),
    Item(
        10,
        "Fill_MaxCoolingTime",
        "oC",
        "max_cooling_time",
        lambda run: not run.selection.has_cool and run.input.has_cooling_time,
    ),
    Item(11, "PackingIndex", "--", "packing_index", _times),
    Item(12, "SinkMarkDisplacement_Totoal", "mm", "sink_total", _times),
    Item(13, "SinkMarkDisplacement_u", "mm", "normal_x", _times),
    Item(14, "SinkMarkDisplacement_v", "mm", "normal_y", _times),
    Item(15, "SinkMarkDisplacement_w", "mm", "normal_z", _times),
    Item(16, "Max_VolumeShrinkage", "%", "max_shrinkage", _flow),
    Item(17, "Average_Velocity_u", "cm/s", "velocity_u", _flow),
    Item(18, "Average_Velocity_v", "cm/s", "velocity_v", _flow),
    Item(19, "Average_Velocity_w", "cm/s", "velocity_w", _flow),
    Item(
        20,
        "Flake_ColorIntensity",
        "--",
        "flake_intensity",
        lambda run: not run.selection.has_cool and run.has_flake,
    ),
)
SHRINKAGE_ITEM = 16


@dataclass
class ExpectedTime:
    """What one result file must hold."""

    path: str
    labels: np.ndarray
    items: dict  # number -> float32 values of the labels, in order
    maxima: dict
    minima: dict
    item_count: int
    sink_vectors: np.ndarray | None = None


@dataclass
class RunWords:
    input_path: str
    project: str
    name: str
    code: int
    run: str
    times: int = 0
    corrected: bool = False
    log_level: int = 0
    five_words: bool = False
    project_text: str = ""  # how results name the project folder, when not as in `project`

    def shown_path(self, folder, name):
        return f"{self.project_text or self.project}\\{folder}\\{name}"


def read_search(path):
    """Pass-element lists by list position (0-based), as stored."""
    with open(path, "rb") as file:
        raw = file.read()
    words = struct.unpack(f"<{len(raw) // 4}i", raw)
    assert words[0] == 1001, "search file version"
    lists, at = [], 2
    for _ in range(words[1]):
        lists.append(words[at + 1 : at + 1 + words[at]])
        at += 1 + words[at]
    assert at == len(words), "search file length"
    return lists


def run_file_names(path):
    """(mesh name, material name) of a run file."""
    with open(path, encoding="latin-1") as file:
        lines = file.read().splitlines()
    names = []
    for section in ("[MESH]", "[MATERIAL]"):
        at = next(k for k, line in enumerate(lines) if section in line)
        value = lines[at + 2].split("=", 1)[-1]
        names.append(value[1:] if value.startswith(" ") else value)
    return names


class Run:
    def __init__(self, words):
        self.words = words
        folder = os.path.join(words.project, "Analysis", "Run" + words.run)
        run_file = os.path.join(folder, words.name + words.run + ".run")
        self.mesh_name, self.material_name = run_file_names(run_file)
        self.selection = StageSelection(words.input_path, words.code, folder)
        self.material = read_material(os.path.join(words.project, "Material", self.material_name))
        self.mesh_path = os.path.join(words.project, "Mesh", self.mesh_name)
        self.mesh = read_mesh(self.mesh_path)
        self.selection.has_fibre = self.selection.has_fibre and self.material.flake
        self.has_flake = self.selection.has_fibre
        self.input = NodeInput(self.mesh, self.selection, words.code, words.corrected)
        self.window = 3.0 * self.mesh.tolerance if words.corrected else 0.0
        self.search_normals = None
        self._start_anew()

    def _start_anew(self):
        self.normals = None
        self.kept = []
        self.maxima = {item.number: -1000.0 for item in ITEMS}
        self.minima = {item.number: 1000.0 for item in ITEMS}

    @property
    def search_path(self):
        smoothed = self.words.corrected and self.selection.has_times
        return cut_extension(self.mesh_path) + ("_s.sur" if smoothed else ".sur")

    def evaluate(self):
        """Expected result files, in the order of the output times; times that cannot be read are left out."""
        self.lists = read_search(self.search_path)
        expected = []
        for index in range(self.words.times + 1):
            source, target = self.words.input_path, self.selection.result_path
            if index > 0:
                source, target = indexed(source, index), indexed(target, index)
            if self.words.corrected:
                self.input.clear()
                self._start_anew()
            if self.input.load(source):
                expected.append(self._one_time(target))
        return expected

    def _one_time(self, target):
        self._extend()
        if self.input.gas_in:
            self._read_thickness()
        self._prepare_normals()
        self._evaluate_nodes()
        self._clear_special()
        if self.selection.has_flow:
            self._thin_velocities()
        self._smooth_results()
        self._sink_marks()
        return self._output(target)

    def _extend(self):
        mesh = self.mesh
        faces = [corner_mean(d, mesh.faces[1:], mesh.face_counts[1:]) for d in self.input.data]
        cells = [corner_mean(d, mesh.cells[1:], mesh.cell_counts[1:]) for d in self.input.data]
        self.fields = [np.concatenate(([0.0], f, c)) for f, c in zip(faces, cells)]
        vectors = [corner_mean(v, mesh.cells[1:], mesh.cell_counts[1:]) for v in self.input.vector]
        none = np.zeros(mesh.face_count + 1)
        self.vectors = [np.concatenate((none, v.astype(np.float64))) for v in vectors]

    def _read_thickness(self):
        found = find(cut_extension(self.mesh_path) + ".thk")
        result = read_result(found) if found else None
        if result is not None:
            self.input.read_thickness(result)

    def _prepare_normals(self):
        if self.normals is None:
            self.normals = np.ascontiguousarray(self.mesh.normals().T)
        if self.selection.has_times:
            for component in self.normals:
                self.mesh.smooth(component, NORMAL_SWEEPS)
        if self.search_normals is None:
            self.search_normals = self.normals.copy()

    def _evaluate_nodes(self):
        mesh = self.mesh
        inward = -self.normals[:, mesh.surface_nodes].T
        size = length(inward)
        long_enough = np.array([len(x) >= 2 for x in self.lists])
        rows = np.flatnonzero((size >= 1e-20) & long_enough)
        self.evaluated = mesh.surface_nodes[rows]
        slots = np.zeros((16, len(mesh.surface_nodes)))
        if len(rows):
            direction = inward[rows] / size[rows, None]
            with np.errstate(all="ignore"):
                slots[:, rows] = self._slots([self.lists[r] for r in rows], direction)
        self._store_slots(slots)

    def _slots(self, lists, direction):
        elements = p.build_elements(self.mesh, lists, direction)
        samples, temperature = p.merge_samples(self.mesh, elements, self.fields[0][elements.ids])
        windows = self._windows(len(lists))
        slots = np.zeros((16, len(lists)))
        self._temperature_slots(slots, samples, temperature, windows)
        self._shrinkage_slots(slots, elements, windows)
        if self.selection.has_cool:
            self._cool_slots(slots, elements, samples, temperature)
        else:
            self._melt_slots(slots, elements, samples, temperature, windows, direction)
        if self.selection.has_flow:
            shrinkage = self.fields[1][elements.ids]
            slots[11] = p.window_maximum(elements, shrinkage, self.window, -100.0)[0]
            for k in range(3):
                slots[12 + k] = p.mean_of_nonzero(elements, self.vectors[k][elements.ids], self.window)
        return slots

    def _windows(self, rows):
        """Depth window that the reading reductions of each node find.

        It is 0 until a setting reduction has run. With cool and warp together the cooling time is the
        only setter and comes last: with one thread, only the first node finds 0.
        """
        full = 3.0 * self.mesh.tolerance
        windows = np.full(rows, full)
        if self.selection.has_warp:
            windows[0] = self.window
            if not self.selection.has_cool:
                windows[:] = self.window
                return windows
        self.window = full
        return windows

    def _temperature_slots(self, slots, samples, temperature, windows):
        slots[1], last = p.window_maximum(samples, temperature, windows, -100.0)
        slots[2] = p.centre_value(samples, temperature, last)
        slots[3] = p.window_average(samples, temperature, windows)
        if not self.selection.has_warp:
            slots[0] = p.frozen_ratio(samples, temperature, self.window, self.material.freeze_temperature)

    def _shrinkage_slots(self, slots, elements, windows):
        shrinkage = self.fields[1][elements.ids]
        tolerance = self.mesh.tolerance
        if self.selection.has_warp:
            slots[0] = p.shrink_location(elements, shrinkage, tolerance, self.input.max_value)
        if self.selection.has_times:
            slots[9] = self._packing(elements, windows)
            slots[10] = p.sink_depth(elements, shrinkage, tolerance)

    def _packing(self, elements, windows, gas=None):
        temperature, density = self.fields[0][elements.ids], self.fields[5][elements.ids]
        return p.packing_index(elements, temperature, density, self.material, self.mesh.tolerance, windows, gas)

    def _melt_slots(self, slots, elements, samples, temperature, windows, direction):
        slots[4] = p.window_average(samples, temperature, windows, self.fields[3][samples.ids], 1e-30)
        if self.input.gas_in:
            gas, sample_gas = self.fields[2][elements.ids], self.fields[2][samples.ids]
            window = 3.0 * self.mesh.tolerance
            slots[5] = p.skin_ratio(elements, gas, window)
            slots[6] = p.skin_thickness(elements, gas)
            if self.words.code != GAS_KEEPING_CODE:
                freeze = self.material.freeze_temperature
                slots[0] = p.frozen_ratio_in_polymer(samples, temperature, sample_gas, window, freeze)
                if self.selection.has_times:
                    slots[9] = self._packing(elements, windows, gas)
        if self.input.has_cooling_time:
            slots[7] = p.window_maximum(elements, self.fields[4][elements.ids], self.window, 0.0)[0]
        if self.has_flake:
            slots[15] = p.flake_intensity(
                elements, self.input.fibre, self.mesh.face_count, direction, self.mesh.tolerance
            )
            if self.words.log_level > 1:
                slots[3] = slots[15]

    def _cool_slots(self, slots, elements, samples, temperature):
        window = 3.0 * self.mesh.tolerance
        if self.input.gas_in_cool:
            gas = self.fields[2][samples.ids]
            freeze = self.material.freeze_temperature
            slots[0] = p.frozen_ratio_in_polymer(samples, temperature, gas, window, freeze)
        slots[6] = np.abs(temperature[samples.rows, samples.count - 1] - temperature[:, 0])
        slots[7] = p.window_maximum(elements, self.fields[4][elements.ids], window, 0.0)[0]

    def _store_slots(self, slots):
        nodes = self.mesh.surface_nodes

        def put(name, values):
            array = np.zeros(self.mesh.node_count + 1)
            array[nodes] = values
            setattr(self, name, array)

        put("frozen_ratio", slots[0])
        put("max_temperature", slots[1])
        put("center_temperature", slots[2])
        put("average_temperature", slots[3])
        put("bulk_temperature", slots[4])
        put("skin_ratio", slots[5])
        put("mold_temperature_diff", slots[6])
        put("skin_thickness", self._capped(slots[6], nodes))
        put("max_cooling_time", slots[7])
        put("packing_index", slots[9])
        put("sink_work", slots[10])
        put("sink_total", slots[10])
        put("max_shrinkage", slots[11])
        for k, name in enumerate(("velocity_u", "velocity_v", "velocity_w")):
            put(name, slots[12 + k])
        put("flake_intensity", slots[15])

    def _capped(self, skin, nodes):
        if self.input.thickness is None:
            return skin
        wall = self.input.thickness[nodes].astype(np.float64)
        return np.where(wall <= skin, wall, skin)

    def _clear_special(self):
        special = self.mesh.surface_nodes[self.mesh.node_class[self.mesh.surface_nodes] == -1]
        for name in ("sink_work", "sink_total", "packing_index", "max_shrinkage", "flake_intensity"):
            getattr(self, name)[special] = 0.0

    def _box_reach(self):
        mesh = self.mesh
        extent = mesh.face_high[1:] - mesh.face_low[1:]
        square = (extent[:, 0] ** 2 + extent[:, 1] ** 2) + extent[:, 2] ** 2
        mean = running_sum(np.sqrt(square + 1e-30)) / mesh.face_count
        longest = float((mesh.box_high - mesh.box_low).max())
        return longest * 3.0 / 100.0 if mean > longest / 100.0 else 3.0 * mean

    def _thin_velocities(self):
        mesh, reach = self.mesh, self._box_reach()
        velocities = (self.velocity_u, self.velocity_v, self.velocity_w)
        normals = self.normals.T
        kept = np.array(self.kept, np.int64)
        grid = {}
        bin_size = 1.01 * (reach + 1e-4)
        for position in kept:
            self._add_to_grid(grid, int(position), bin_size)
        for position, node in enumerate(mesh.surface_nodes):
            around = self._near_in_grid(grid, mesh.points[node], bin_size)
            if self._suppressed(node, around, reach, normals):
                for component in velocities:
                    component[node] = 0.0
            else:
                self.kept.append(position)
                self._add_to_grid(grid, position, bin_size)

    def _add_to_grid(self, grid, position, size):
        point = self.mesh.points[self.mesh.surface_nodes[position]]
        grid.setdefault(tuple(int(x) for x in np.floor(point / size)), []).append(position)

    @staticmethod
    def _near_in_grid(grid, point, size):
        x, y, z = (int(c) for c in np.floor(point / size))
        found = []
        for i in (x - 1, x, x + 1):
            for j in (y - 1, y, y + 1):
                for k in (z - 1, z, z + 1):
                    found += grid.get((i, j, k), ())
        return found

    def _suppressed(self, node, positions, reach, normals):
        if not positions:
            return False
        others = self.mesh.surface_nodes[positions]
        here, there = self.mesh.points[node], self.mesh.points[others]
        overlap = np.all((here - reach <= there + 0.0001) & (here + reach >= there - 0.0001), axis=1)
        return bool(np.any(overlap & (dot(normals[node], normals[others]) > -1e-30)))

    def _smooth_results(self):
        smooth = self.mesh.smooth
        selection = self.selection
        names = ["frozen_ratio", "max_temperature", "center_temperature", "average_temperature"]
        if selection.has_cool:
            names += ["mold_temperature_diff", "max_cooling_time"]
        else:
            names += ["bulk_temperature", "skin_ratio", "skin_thickness", "max_cooling_time", "flake_intensity"]
        if selection.has_times:
            smooth(self.sink_work, REFERENCE_SWEEPS)
            names += ["sink_total", "packing_index"]
        if selection.has_flow:
            names.append("max_shrinkage")
        for name in names:
            smooth(getattr(self, name), SHOWN_SWEEPS)

    def _sink_marks(self):
        if self.selection.has_warp:
            self._warp_displacement()
        elif self.selection.has_times:
            self.sink_total -= self.sink_work
            self.sink_total[self.sink_total < 0.0] = 0.0
        if self.selection.has_times:
            size = length(self.normals.T)
            size = np.where(size < 1e-30, 1e-30, size)
            depth = np.where(self.sink_total < 0.0, 0.0, self.sink_total)
            self.normals = -depth * (self.normals / size)

    def _warp_displacement(self):
        nodes, ratio = self.mesh.surface_nodes, self.frozen_ratio
        toward = -self.normals[:, nodes].T
        unit = toward / (length(toward) + 1e-20)[:, None]
        reference = np.zeros(self.mesh.node_count + 1)
        reference[nodes] = dot(unit, self.input.displacement[:, nodes].T)
        own = reference.copy()
        reference[nodes[ratio[nodes] > 0.1]] = 0.0
        fixed = nodes[ratio[nodes] <= 0.1]
        for _ in range(200):
            self.mesh.smooth(reference, 2)
            reference[fixed] = own[fixed]
        own[fixed] = reference[fixed] = 0.0
        self.frozen_ratio = own - reference

    def _source(self, item):
        if item.array.startswith("normal_"):
            return self.normals["xyz".index(item.array[-1])]
        return getattr(self, item.array)

    def _output_nodes(self):
        if not self.words.corrected:
            return np.flatnonzero(self.center_temperature > SELECTABLE)
        return np.sort(self.evaluated[self.mesh.node_class[self.evaluated] == 1])

    def _output(self, target):
        shown = [item for item in ITEMS if item.wanted(self)]
        for item in shown:
            values = self._source(item)[1:]
            finite = values[~np.isnan(values)]
            if len(finite):
                self.maxima[item.number] = max(self.maxima[item.number], float(finite.max()))
                self.minima[item.number] = min(self.minima[item.number], float(finite.min()))
        if abs(self.maxima[SHRINKAGE_ITEM]) < 1e-6 and abs(self.minima[SHRINKAGE_ITEM]) < 1e-6:
            shown = [item for item in shown if item.number != SHRINKAGE_ITEM]
        nodes = self._output_nodes()
        with np.errstate(over="ignore"):
            items = {item.number: self._source(item)[nodes].astype(np.float32) for item in shown}
        return ExpectedTime(
            path=target,
            labels=self.mesh.labels[nodes],
            items=items,
            maxima={k: np.float32(self.maxima[k]) for k in items},
            minima={k: np.float32(self.minima[k]) for k in items},
            item_count=len(items),
            sink_vectors=self.normals.copy() if self.selection.has_times else None,
        )
