"""The fibre probe: orientation through the thickness at listed nodes, as the text of its CSV file."""

import re

import numpy as np

from .evaluation import NORMAL_SWEEPS, Run
from .mesh import dot, length
from .profile import build_elements, depth_axis
from .rays import RaySearch

HEIGHTS = 100
HALF_WIDTH = 0.0001
OFFSET = 1e-8
BLOCK_HEAD = "\n\n Height,  Axx,     Ayy,     Azz,     Axy,     Axz,      Ayz   \n"


def listed_ids(path):
    """Identifiers between the list marks; lines without a number are left out."""
    ids, inside = [], False
    with open(path) as file:
        for line in file:
            if "<List>" in line:
                inside = True
            elif "</List>" in line:
                inside = False
            elif inside:
                found = re.match(r"\s*([+-]?\d+)", line)
                if found:
                    ids.append(int(found.group(1)))
    return ids


class Probe:
    def __init__(self, words, sweeps_before=0):
        """`sweeps_before`: sweeps that earlier output times of the run have put on the normals."""
        self.run = Run(words)
        self.mesh = self.run.mesh
        self.search = RaySearch(self.mesh)
        self.normals = np.ascontiguousarray(self.mesh.normals().T)
        sweeps = sweeps_before + (NORMAL_SWEEPS if self.run.selection.has_times else 0)
        for component in self.normals:
            self.mesh.smooth(component, sweeps)
        self.boxes_low = np.concatenate((self.mesh.face_low, self.mesh.cell_low[1:]))
        self.boxes_high = np.concatenate((self.mesh.face_high, self.mesh.cell_high[1:]))

    def text(self, fibre_path, ids):
        self.run.input._read_fibre(fibre_path)
        return "".join(f"\n\n\nID, {i}\n" + self._block(i) for i in ids)

    def _block(self, identifier):
        node = self.mesh.local_of[identifier] if 0 < identifier < len(self.mesh.local_of) else 0
        direction = -self.normals[:, node]
        size = length(direction)
        if size < 1e-20:
            return ""
        direction = direction / size
        origin = self.mesh.points[node]
        ids = self.search.search(origin, direction)[0]
        if len(ids) < 2:
            return ""
        elements = build_elements(self.mesh, [ids], direction[None, :])
        first, last = elements.depth[0, 0], elements.depth[0, elements.count[0] - 1]
        return BLOCK_HEAD + self._rows(origin, direction, first, last - first)

    def _rows(self, origin, direction, first, height):
        axis = depth_axis(direction[None, :])[0]
        seen, rows = set(), []
        for k in range(HEIGHTS + 1):
            at = k * height / HEIGHTS
            element = self._element_at(origin + at * direction + OFFSET)
            if element in seen:
                continue
            seen.add(element)
            if element > self.mesh.face_count:
                depth = dot(axis, self.mesh.middles[element]) - first
                tensor = self.run.input.fibre[:, element - self.mesh.face_count]
                rows.append(",  ".join("%6.4f" % v for v in (depth, *tensor)) + "\n")
            else:
                rows.append("%6.4f,  -, surface\n" % at)
        return "".join(rows)

    def _element_at(self, point):
        low, high = point - HALF_WIDTH, point + HALF_WIDTH
        near = np.all((self.boxes_low <= high) & (self.boxes_high >= low), axis=1)
        near[0] = False
        best, best_distance, distance = -1, 1e30, 0.0
        for element in np.flatnonzero(near):
            if element > self.mesh.face_count:
                offset = point - self.mesh.middles[element]
                distance = dot(offset, offset)
            if best_distance > distance:
                best, best_distance = int(element), distance
        return best
