"""Which stage is evaluated, and the readers that fill the node arrays of one output time."""

import os

import numpy as np

from .ascii_text import ScanFailed, TextStream
from .result_file import read_result

NO_GAS = -100.0
SLOWEST = 1e-8
GAS_CODES = (1, 6, 7, 8)
LOGGED_CODES = (1, 4, 6, 7, 8, 9)
RUNNER_TEMPERATURE = 1000.0
FIBRE_ITEMS = (4, 5, 6, 9, 11, 10)  # by slot xx, yy, zz, xy, xz, yz
WARP_COUNTS = (14, 17, 26, 29)
STAGES = ((".k4f", ".fzr"), (".k4p", ".pzr"), (".k4c", ".czr"), (".k4hc", ".hczr"), (".k4w", ".wzr"))


def cut_extension(path):
    return path[: path.rindex(".")]


def indexed(path, index):
    stem = cut_extension(path)
    zeros = "_00" if index < 10 else "_0" if index < 100 else "_"
    return f"{stem}{zeros}{index}{path[len(stem):]}"


def log_is_complete(folder):
    """Is the list of intermediate output times there, with its end mark?"""
    path = os.path.join(folder, "QNLIntermediateOutputTime.log")
    if not os.path.exists(path):
        return False
    with open(path, encoding="latin-1") as file:
        return any("[EOF]" in line for line in file)


def find(path):
    """The file as this system knows it, or None."""
    path = path.replace("\\", "/")
    return path if os.path.isfile(path) else None


class StageSelection:
    """Flags and result path that follow from the name of the stage file."""

    def __init__(self, input_path, code, run_folder):
        found = {pattern: pattern in input_path for pattern, _ in STAGES}
        complete = log_is_complete(run_folder)
        self.has_flow = found[".k4f"] or found[".k4p"]
        self.has_cool = found[".k4c"] or found[".k4hc"]
        self.has_warp = found[".k4w"]
        self.has_times = complete and ((found[".k4f"] and code in LOGGED_CODES) or found[".k4p"])
        stem = cut_extension(input_path)
        self.result_path = stem + "".join(ext for pattern, ext in STAGES if found[pattern])
        self.has_fibre = not self.has_cool and complete and found[".k4f"] and find(stem + ".k4o") is not None


class NodeInput:
    """The node, fibre, warp and thickness arrays that the readers fill."""

    def __init__(self, mesh, selection, code, corrected):
        self.mesh, self.selection, self.code, self.corrected = mesh, selection, code, corrected
        self.clear()

    def clear(self):
        nodes, cells = self.mesh.node_count, self.mesh.cell_count
        self.data = np.zeros((6, nodes + 1))
        self.vector = np.zeros((3, nodes + 1), np.float32)
        self.fibre = np.zeros((6, cells + 1))
        self.max_value = -1e8
        self.displacement = np.zeros((3, nodes + 1))
        self.thickness = None
        self.gas_in = self.has_cooling_time = self.gas_in_cool = False

    def _stored(self, ids):
        """(entry rows, node indices) of the ids whose values are taken."""
        top = len(self.mesh.local_of) - 1
        rows = np.flatnonzero((ids >= 1) & (ids <= top))
        local = self.mesh.local_of[ids[rows]]
        keep = local > 0
        if not self.corrected:
            keep &= self.mesh.node_class[local] == 1
        return rows[keep], local[keep]

    def load(self, path):
        """Reads one output time; False when the stage file cannot be opened."""
        if self.selection.has_fibre:
            self._read_fibre(cut_extension(path) + ".k4o")
        if self.selection.has_cool:
            if not self._read(path, self._read_cool, self._read_cool_text):
                return False
        elif not self.selection.has_warp:
            if not self._read(path, self._read_flow, self._read_flow_text):
                return False
        if self.selection.has_warp:
            return self._read(path, self._read_warp, self._read_warp_text)
        return True

    def _read(self, path, binary, text):
        found = find(path)
        if found is None:
            return False
        result = read_result(found)
        if result is not None:
            binary(result)
            return True
        try:
            text(TextStream(found))
        except ScanFailed:
            pass  # what was read so far stays
        return True

    def _read_fibre(self, path):
        found = find(path)
        result = read_result(found) if found else None
        if result is None:
            return
        top = min(result.max_element, self.mesh.cell_count)
        for slot, number in enumerate(FIBRE_ITEMS):
            values = result.item(number)
            self.fibre[slot, 1 : top + 1] = 0.0 if values is None else values[1 : top + 1]

    def _read_flow(self, result):
        if self.code in GAS_CODES:
            self.gas_in = True
        if 16 in result.items:
            self.has_cooling_time = True
        times = self.selection.has_times

        def item(number, wanted=True, fill=0.0):
            values = result.item(number) if wanted else None
            return np.full(result.max_node + 1, fill, np.float32) if values is None else values

        u, v, w = item(11), item(12), item(13)
        shrinkage, gas = item(14), item(9, self.gas_in, -1.0)
        rows, local = self._stored(np.arange(result.max_node + 1))
        self.data[0, local] = item(6)[rows]
        self.data[1, local] = shrinkage[rows]
        if times:
            self._raise_maximum(shrinkage[rows])
            self.data[5, local] = item(17)[rows]
        self._store_gas(local, gas[rows].astype(np.float64))
        square = ((u * u + v * v) + w * w)[rows].astype(np.float64)
        self.data[3, local] = np.where(square > SLOWEST, np.sqrt(square), SLOWEST)
        self.data[4, local] = item(16, self.has_cooling_time)[rows]
        if self.selection.has_flow:
            for k, component in enumerate((u, v, w)):
                self.vector[k, local] = component[rows]

    def _store_gas(self, local, gas):
        self.data[2, local] = np.where(gas == -1.0, NO_GAS, gas)

    def _raise_maximum(self, values):
        for value in values:
            if value > self.max_value:
                self.max_value = float(value)

    def _read_flow_text(self, stream):
        for marker, code, count in self._sections(stream, 4, ("[RESULTS EOF]",)):
            for _ in range(count):
                self._flow_record(stream, code)

    def _sections(self, stream, header_lines, markers):
        """Walks the flow and cool layouts; yields (marker, header code, record count) at data sections."""
        code = count = 0
        line = stream.line()
        while line is not None:
            if "[HEADER]" in line:
                code = stream.integer()
                stream.number()
                stream.skip_blanks()
                for _ in range(header_lines):
                    line = stream.line() or line
                count = stream.integer()
            if "[TIME STEPS]" in line:
                steps = stream.integer()
                stream.skip_blanks()
                for _ in range(steps):
                    line = stream.line() or line
            for marker in markers:
                if marker in line:
                    yield marker, code, count
            line = stream.line()

    def _text_node(self, identifier):
        _, local = self._stored(np.array([identifier]))
        return int(local[0]) if len(local) else None

    def _is_special(self, node):
        return not self.corrected and self.mesh.node_class[node] == -1

    def _flow_record(self, stream, code):
        identifier = stream.integer()
        column = [0.0] + [stream.number() for _ in range(14)]
        gas = -1.0
        if code == 1012:
            self.gas_in = True
            gas = stream.number()
        node = self._text_node(identifier)
        if node is None:
            return
        self.data[0, node] = column[3]
        self.data[2, node] = NO_GAS if gas == -1.0 else gas
        if self.selection.has_times:
            self.data[1, node] = self.data[2, node] = column[9]
            self.gas_in = True
            self.max_value = max(self.max_value, column[9])
        u, v, w = column[6:9]
        square = (u * u + v * v) + w * w
        self.data[3, node] = np.sqrt(square) if square > SLOWEST else SLOWEST
        if self.selection.has_flow:
            self.vector[:, node] = np.array((u, v, w)).astype(np.float32)
        if self._is_special(node):
            self.data[0, node], self.data[2, node] = RUNNER_TEMPERATURE, NO_GAS

    def _read_cool(self, result):
        top = result.max_node
        zeros = np.zeros(top + 1, np.float32)
        values = [result.item(number) for number in (1, 2, 16)]
        gas_given = values[2] is not None
        temperature, cooling, gas = (zeros if v is None else v for v in values)
        ids = np.arange(top + 1) if result.node_ids is None else result.node_ids
        rows, local = self._stored(ids)
        self.data[0, local] = temperature[rows]
        self.data[4, local] = cooling[rows]
        self._store_gas(local, gas[rows].astype(np.float64))
        self.gas_in_cool = bool(gas_given and np.any(gas[1:] == -1.0))

    def _read_cool_text(self, stream):
        for _, _, count in self._sections(stream, 4, ("[PART VOLUME DATA]",)):
            for _ in range(3):
                stream.line()
            for _ in range(count):
                identifier = stream.integer()
                temperature, cooling, _ = (stream.number() for _ in range(3))
                node = self._text_node(identifier)
                if node is None:
                    continue
                self.data[0, node], self.data[4, node] = temperature, cooling
                if self._is_special(node):
                    self.data[0, node] = RUNNER_TEMPERATURE

    def _read_warp(self, result):
        top = min(result.max_node, len(self.mesh.local_of) - 1)
        local = self.mesh.local_of[1 : top + 1]
        self.displacement[:] = 0.0
        for k, number in enumerate((1, 2, 3)):
            values = result.item(number)
            self.displacement[k, local] = 0.0 if values is None else values[1 : top + 1]
        shrinkage = result.item(7)
        shrinkage = np.zeros(top + 1, np.float32) if shrinkage is None else shrinkage
        self.data[1, local] = shrinkage[1 : top + 1]
        self._raise_maximum(shrinkage[1 : top + 1])

    def _read_warp_text(self, stream):
        count = width = 0
        line = stream.line()
        while line is not None:
            if "[HEADER]" in line:
                for _ in range(5):
                    line = stream.line() or line
                count, _, _, width, _ = (stream.integer() for _ in range(5))
            if "[RESULTS EOW]" in line and width in WARP_COUNTS:
                for _ in range(count):
                    identifier = stream.integer()
                    column = [stream.number() for _ in range(width)]
                    if 1 <= identifier <= self.mesh.node_count:
                        self.data[1, identifier] = column[6]
                        self.max_value = max(self.max_value, column[6])
            line = stream.line()

    def read_thickness(self, result):
        """Item 1 where positive, else item 2 where positive, else 0; part nodes only unless corrected."""
        self.thickness = np.zeros(self.mesh.node_count + 1, np.float32)
        rows, local = self._stored(np.arange(result.max_node + 1))
        for number in (2, 1):
            values = result.item(number)
            if values is not None:
                positive = values[rows] > 0.0
                self.thickness[local[positive]] = values[rows[positive]]
