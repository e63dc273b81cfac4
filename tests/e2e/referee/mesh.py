"""The solid mesh: boundary faces, boxes, sizes, node classes, normals and smoothing."""

import math
from dataclasses import dataclass, field

import h5py
import numpy as np

LOCAL_FACES = {
    10: ((0, 2, 1), (0, 1, 3), (1, 2, 3), (0, 3, 2)),
    12: ((0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)),
    13: ((0, 2, 1), (3, 4, 5), (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5)),
    14: ((0, 3, 2, 1), (0, 1, 4), (1, 2, 4), (2, 3, 4), (3, 0, 4)),
}
CORNERS = {10: 4, 12: 8, 13: 6, 14: 5}
TURNED = {10: (0, 1, 3, 2), 12: (4, 5, 6, 7, 0, 1, 2, 3), 13: (3, 4, 5, 0, 1, 2), 14: (0, 3, 2, 1, 4)}
NORMAL_GRID = 2.0**34


def dot(a, b):
    return (a[..., 0] * b[..., 0] + a[..., 1] * b[..., 1]) + a[..., 2] * b[..., 2]


def cross(a, b):
    return np.stack(
        (
            a[..., 1] * b[..., 2] - a[..., 2] * b[..., 1],
            a[..., 2] * b[..., 0] - a[..., 0] * b[..., 2],
            a[..., 0] * b[..., 1] - a[..., 1] * b[..., 0],
        ),
        axis=-1,
    )


def length(a):
    return np.sqrt(dot(a, a))


def running_sum(values):
    """Sum from left to right."""
    return float(np.cumsum(values)[-1]) if len(values) else 0.0


def corner_mean(points, corners, counts):
    """Mean of the corner values (last axis optional), summed in corner order."""
    total = points[corners[:, 0]].copy()
    for k in range(1, corners.shape[1]):
        has = counts > k
        total[has] += points[corners[has, k]]
    divisor = counts.astype(points.dtype)
    return total / (divisor if points.ndim == 1 else divisor[:, None])


def face_triangles(faces, counts):
    """(rows, triangles): the triangles of each face, by face; quads are split through their smallest node."""
    quad = counts == 4
    first = np.where(quad, np.argmin(np.where(faces > 0, faces, np.iinfo(np.int64).max), axis=1), 0)
    rows = np.arange(len(faces))

    def corner(step):
        return faces[rows, np.where(quad, (first + step) % 4, np.minimum(step, 2))]

    one = np.stack((corner(0), corner(1), corner(2)), axis=1)
    two = np.stack((corner(0), corner(2), corner(3)), axis=1)
    both = np.stack((one, two), axis=1)
    keep = np.stack((np.ones(len(faces), bool), quad), axis=1)
    return np.repeat(rows, keep.sum(axis=1)), both[keep]


def tetra_volume(p0, p1, p2, p3):
    return dot(cross(p1 - p0, p2 - p0), p3 - p0) / 6.0


@dataclass
class Mesh:
    points: np.ndarray  # (n + 1, 3)
    labels: np.ndarray  # (n + 1,)
    uses_labels: bool
    cell_types: np.ndarray  # (c + 1,)
    cells: np.ndarray  # (c + 1, 8), 0 beyond the corner count
    cell_counts: np.ndarray
    regions: np.ndarray
    single_precision: bool
    given_tolerance: float | None
    faces: np.ndarray = field(init=False)
    face_counts: np.ndarray = field(init=False)
    face_owner: np.ndarray = field(init=False)

    def __post_init__(self):
        self._turn_negative_cells()
        self._find_boundary()
        self._measure()
        self._classify()
        self._find_neighbours()

    @property
    def node_count(self):
        return len(self.points) - 1

    @property
    def cell_count(self):
        return len(self.cells) - 1

    @property
    def face_count(self):
        return len(self.faces) - 1

    def _faces_of(self, kind, cells):
        """Faces of the given cells of one type: (cell row, local face, corners padded with 0)."""
        for local, corners in enumerate(LOCAL_FACES[kind]):
            padded = np.zeros((len(cells), 4), np.int64)
            padded[:, : len(corners)] = self.cells[cells][:, list(corners)]
            yield local, padded, len(corners)

    def cell_tetras(self):
        """(cell ids, (m, 4, 3) corner points): the tetras that make up each cell, by cell type."""
        owners, points = [], []
        for kind in LOCAL_FACES:
            cells = np.flatnonzero(self.cell_types == kind)
            if not len(cells):
                continue
            if kind == 10:
                owners.append(cells)
                points.append(self.points[self.cells[cells, :4]])
                continue
            middle = corner_mean(self.points, self.cells[cells], self.cell_counts[cells])
            for _, padded, count in self._faces_of(kind, cells):
                rows, triangles = face_triangles(padded, np.full(len(cells), count))
                owners.append(cells[rows])
                points.append(np.concatenate((middle[rows][:, None, :], self.points[triangles]), axis=1))
        return np.concatenate(owners), np.concatenate(points)

    def cell_volumes(self):
        volumes = np.zeros(self.cell_count + 1)
        owners, corners = self.cell_tetras()
        np.add.at(volumes, owners, tetra_volume(*(corners[:, k] for k in range(4))))
        return volumes

    def _turn_negative_cells(self):
        negative = self.cell_volumes() < 0.0
        for kind, order in TURNED.items():
            rows = np.flatnonzero(negative & (self.cell_types == kind))
            self.cells[rows, : len(order)] = self.cells[rows][:, list(order)]
        self.volumes = self.cell_volumes()

    def _find_boundary(self):
        owner, local, corners, counts = [], [], [], []
        for kind in LOCAL_FACES:
            cells = np.flatnonzero(self.cell_types == kind)
            for number, padded, count in self._faces_of(kind, cells):
                owner.append(cells)
                local.append(np.full(len(cells), number))
                corners.append(padded)
                counts.append(np.full(len(cells), count))
        owner, local, corners, counts = (np.concatenate(x) for x in (owner, local, corners, counts))
        order = np.lexsort((local, owner))
        owner, corners, counts = owner[order], corners[order], counts[order]
        _, inverse, shared = np.unique(np.sort(corners, axis=1), axis=0, return_inverse=True, return_counts=True)
        single = shared[inverse.ravel()] == 1
        self.faces = np.concatenate((np.zeros((1, 4), np.int64), corners[single]))
        self.face_counts = np.concatenate(([0], counts[single]))
        self.face_owner = np.concatenate(([0], owner[single]))

    def _boxes(self, corners, counts):
        low = self.points[corners[:, 0]].copy()
        high = low.copy()
        for k in range(1, corners.shape[1]):
            has = counts > k
            low[has] = np.minimum(low[has], self.points[corners[has, k]])
            high[has] = np.maximum(high[has], self.points[corners[has, k]])
        return low, high

    def _measure(self):
        self.face_low, self.face_high = self._boxes(self.faces, self.face_counts)
        self.cell_low, self.cell_high = self._boxes(self.cells, self.cell_counts)
        # Reference points by pass-element id: faces first, then cells.
        self.middles = np.concatenate(
            ((self.face_low + self.face_high) / 2.0, ((self.cell_low + self.cell_high) / 2.0)[1:])
        )
        self.box_low = self.points[1:].min(axis=0)
        self.box_high = self.points[1:].max(axis=0)
        self.edges = self._boundary_edges()
        ends = self.points[self.edges]
        self.size = running_sum(length(ends[:, 1] - ends[:, 0])) / len(self.edges)
        self.near = (1e-6 if self.single_precision else 1e-8) * self.size
        self.tolerance = self.given_tolerance if self.given_tolerance is not None else self._modulus()

    def _boundary_edges(self):
        pairs = []
        for count in (3, 4):
            faces = self.faces[self.face_counts == count]
            for k in range(count):
                pairs.append(np.sort(faces[:, [k, (k + 1) % count]], axis=1))
        return np.unique(np.concatenate(pairs), axis=0)

    def _modulus(self):
        volume = running_sum(self.volumes[1:][self.regions[1:] == 0])
        rows, triangles = face_triangles(self.faces[1:], self.face_counts[1:])
        p = self.points[triangles]
        areas = np.zeros(self.face_count)
        np.add.at(areas, rows, length(cross(p[:, 1] - p[:, 0], p[:, 2] - p[:, 0])) / 2.0)
        return volume / running_sum(areas[self.regions[self.face_owner[1:]] == 0])

    def _classify(self):
        touched = {}
        for region in (0, 2):
            touched[region] = np.zeros(self.node_count + 1, bool)
            touched[region][self.cells[self.regions == region].ravel()] = True
        self.node_class = np.where(touched[0], 1, np.where(touched[2], -1, 0))
        self.is_boundary = np.zeros(self.node_count + 1, bool)
        self.is_boundary[self.faces.ravel()] = True
        self.is_boundary[0] = self.node_class[0] = 0
        self.local_of = np.zeros(int(self.labels.max()) + 1, np.int64)
        self.local_of[self.labels[1:]] = np.arange(1, self.node_count + 1)
        listed = np.concatenate([f[:c] for f, c in zip(self.faces[1:], self.face_counts[1:])])
        _, first = np.unique(listed, return_index=True)
        self.surface_nodes = listed[np.sort(first)]

    def _find_neighbours(self):
        both = np.concatenate((self.edges, self.edges[:, ::-1]))
        both = both[np.lexsort((both[:, 1], both[:, 0]))]
        nodes, start, degree = np.unique(both[:, 0], return_index=True, return_counts=True)
        order = np.argsort(-degree, kind="stable")
        self.ring_nodes, self.ring_degree = nodes[order], degree[order]
        start = start[order]
        self.ring_ranks = []
        for rank in range(int(degree.max())):
            rows = int(np.count_nonzero(self.ring_degree > rank))
            self.ring_ranks.append(both[start[:rows] + rank, 1])

    def smooth(self, values, sweeps):
        """Every boundary node becomes the mean of itself and its edge neighbours, in place."""
        for _ in range(sweeps):
            total = values[self.ring_nodes].copy()
            for ranked in self.ring_ranks:
                total[: len(ranked)] += values[ranked]
            values[self.ring_nodes] = total / (1.0 + self.ring_degree)

    def normals(self):
        """Outward unit normals (n + 1, 3) on a grid of 2^-34; 0 off the boundary."""
        nodes, parts, order = [], [], []
        face_ids = np.arange(self.face_count + 1)
        for count in (3, 4):
            ids = face_ids[self.face_counts == count]
            for k in range(count):
                here = self.points[self.faces[ids, k]]
                after = self.points[self.faces[ids, (k + 1) % count]] - here
                before = self.points[self.faces[ids, (k - 1) % count]] - here
                normal = cross(after, before)
                size = length(normal)
                keep = size > 0.0
                # The C library's function: vectorised ones may differ in the last bit.
                angle = np.array(list(map(math.atan2, size[keep], dot(after[keep], before[keep]))))
                nodes.append(self.faces[ids[keep], k])
                parts.append(angle[:, None] * (normal[keep] / size[keep, None]))
                order.append(ids[keep] * 4 + k)
        nodes, parts, order = np.concatenate(nodes), np.concatenate(parts), np.concatenate(order)
        sequence = np.argsort(order)
        total = np.zeros_like(self.points)
        np.add.at(total, nodes[sequence], parts[sequence])
        size = length(total)
        keep = size >= 1e-30
        result = np.zeros_like(total)
        result[keep] = np.rint(total[keep] / size[keep, None] * NORMAL_GRID) / NORMAL_GRID
        return result


def _joined_pieces(root, node_ids):
    """(kept point rows, corner list of each cell as 1-based nodes) of all pieces.

    Points of equal label are one node, standing where the label first appears.
    """
    point_counts, cell_counts = root["NumberOfPoints"][()], root["NumberOfCells"][()]
    id_counts = root["NumberOfConnectivityIds"][()]
    offsets, connectivity = root["Offsets"][()], root["Connectivity"][()]
    if len(point_counts) == 1:
        kept = node_of = np.arange(point_counts[0])
    else:
        _, first, inverse = np.unique(node_ids, return_index=True, return_inverse=True)
        kept = np.sort(first)
        node_of = np.searchsorted(kept, first)[inverse]
    corners, point_base, id_base, offset_base = [], 0, 0, 0
    for points, cells, ids in zip(point_counts, cell_counts, id_counts):
        here = offsets[offset_base : offset_base + cells + 1]
        nodes = node_of[connectivity[id_base : id_base + ids] + point_base] + 1
        corners += np.split(nodes, here[1:-1])
        point_base, id_base, offset_base = point_base + points, id_base + ids, offset_base + cells + 1
    return kept, corners


def read_mesh(path):
    with h5py.File(path, "r") as file:
        root = file["VTKHDF"]
        raw = root["Points"][()]
        types = root["Types"][()].astype(np.int64)
        node_ids = root["PointData/NodeId"][()] if "PointData/NodeId" in root else None
        regions = root["CellData/Region"][()] if "CellData/Region" in root else np.zeros(len(types), np.int64)
        tolerance = float(root["FieldData/GeomTolerance"][0]) if "FieldData/GeomTolerance" in root else None
        kept, corners = _joined_pieces(root, node_ids)
    counts = np.array([len(c) for c in corners])
    cells = np.zeros((len(types) + 1, 8), np.int64)
    for row, nodes in enumerate(corners, 1):
        cells[row, : len(nodes)] = nodes
    points = np.concatenate((np.zeros((1, 3)), raw[kept].astype(np.float64)))
    labels = np.arange(len(points)) if node_ids is None else np.concatenate(([0], node_ids[kept])).astype(np.int64)
    return Mesh(
        points=points,
        labels=labels,
        uses_labels=node_ids is not None,
        cell_types=np.concatenate(([0], types)),
        cells=cells,
        cell_counts=np.concatenate(([0], counts)),
        regions=np.concatenate(([-9], regions)),
        single_precision=raw.dtype == np.float32,
        given_tolerance=tolerance,
    )
