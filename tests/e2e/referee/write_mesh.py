"""Small solid meshes on a bent grid of bricks, each brick cut into cells of a chosen kind."""

import itertools
from dataclasses import dataclass

import h5py
import numpy as np

CORNERS = ((0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1))
SIDES = ((0, 1, 2, 3), (7, 6, 5, 4), (4, 5, 1, 0), (5, 6, 2, 1), (6, 7, 3, 2), (7, 4, 0, 3))
TOP = 1
PART, RUNNER, SPECIAL = 0, 1, 2


@dataclass(frozen=True)
class Block:
    """A plate of bricks, with a runner of two bricks at its low x end when asked for."""

    kind: str = "hexa"  # hexa, wedge, tetra, pyramid or mixed
    bricks: tuple = (5, 4, 3)
    size: tuple = (7.0, 5.0, 1.8)
    bend: float = 0.0  # random shift of the grid points, as a part of the brick size
    runner: bool = True
    labels: bool = True
    single_precision: bool = False
    tolerance: float | None = None
    tilted: bool = False  # turned in space, so that layers coincide in depth up to rounding only
    shape: str = "full"  # full, step, hole or corners (bricks that meet along one edge only)
    pieces: int = 1
    turned: float = 0.2  # part of the cells that are given inside out
    seed: int = 1


def _is_there(block, place):
    (nx, ny, nz), (i, j, k) = block.bricks, place
    return {
        "full": True,
        "step": k < nz // 2 or i < nx // 2,
        "hole": (i, j) != (nx // 2, ny // 2),
        "corners": (i < nx // 2) == (j < ny // 2) or k == 0,
    }[block.shape]


class Draft:
    def __init__(self, block):
        self.block = block
        self.random = np.random.default_rng(block.seed)
        self.numbers, self.points, self.cells = {}, [], []
        self.step = np.array(block.size) / np.array(block.bricks)

    def grid_point(self, place):
        if place not in self.numbers:
            shift = self.block.bend * (self.random.random(3) - 0.5)
            self.numbers[place] = self.add_point((np.array(place) + shift) * self.step)
        return self.numbers[place]

    def add_point(self, point):
        self.points.append(point)
        return len(self.points) - 1

    def add_brick(self, place, kind, region):
        corners = [self.grid_point(tuple(np.add(place, c))) for c in CORNERS]
        for cell_type, nodes in getattr(self, "_" + kind)(corners, place):
            self.cells.append((cell_type, nodes, region))

    def _hexa(self, c, _):
        return [(12, c)]

    def _wedge(self, c, _):
        return [(13, [c[k] for k in (0, 1, 3, 4, 5, 7)]), (13, [c[k] for k in (1, 2, 3, 5, 6, 7)])]

    def _tetra(self, c, _):
        cells = []
        for axes in itertools.permutations(range(3)):
            place, path = np.zeros(3, int), [c[0]]
            for axis in axes:
                place[axis] = 1
                path.append(c[CORNERS.index(tuple(place))])
            cells.append((10, path))
        return cells

    def _pyramid(self, c, place):
        middle = self.add_point(np.mean([self.points[k] for k in c], axis=0))
        cells = []
        for side, corners in enumerate(SIDES):
            base = [c[k] for k in corners]
            if side == TOP and place[2] == self.block.bricks[2] - 1 and self.block.kind == "mixed":
                cells.append((10, [base[0], base[1], base[2], middle]))
                cells.append((10, [base[0], base[2], base[3], middle]))
            else:
                cells.append((14, base + [middle]))
        return cells

    def kind_at(self, i):
        return ("hexa", "pyramid", "wedge")[i % 3] if self.block.kind == "mixed" else self.block.kind


def tilt(points):
    """The points turned by fixed angles about z and x."""
    c, s = np.cos(0.7), np.sin(0.7)
    about_z = np.array(((c, -s, 0.0), (s, c, 0.0), (0.0, 0.0, 1.0)))
    c, s = np.cos(-0.4), np.sin(-0.4)
    about_x = np.array(((1.0, 0.0, 0.0), (0.0, c, -s), (0.0, s, c)))
    return points @ (about_x @ about_z).T


TURNS = {10: (1, 0, 2, 3), 12: (4, 5, 6, 7, 0, 1, 2, 3), 13: (3, 4, 5, 0, 1, 2), 14: (0, 3, 2, 1, 4)}


def write_mesh(path, block):
    draft = Draft(block)
    nx, ny, nz = block.bricks
    for place in itertools.product(range(nx), range(ny), range(nz)):
        if _is_there(block, place):
            draft.add_brick(place, draft.kind_at(place[0]), PART)
    if block.runner:
        for k in range(nz):
            draft.add_brick((-1, ny // 2, k), draft.kind_at(0 if block.kind == "mixed" else -1), RUNNER)
            draft.add_brick((-2, ny // 2, k), draft.kind_at(0 if block.kind == "mixed" else -2), SPECIAL)
    cells = [draft.cells[k] for k in draft.random.permutation(len(draft.cells))]
    cells = [
        (kind, [nodes[k] for k in TURNS[kind]] if draft.random.random() < block.turned else nodes, region)
        for kind, nodes, region in cells
    ]
    count = len(draft.points)
    labels = draft.random.permutation(count + count // 3)[:count] + 1 if block.labels else None
    points = np.array(draft.points)
    _write(path, block, tilt(points) if block.tilted else points, labels, cells)
    return labels if labels is not None else np.arange(1, count + 1)


def _in_pieces(block, points, labels, cells):
    """Points, labels, cells and the counts of each piece; points on the seams are given by each piece."""
    parts = [cells[k :: block.pieces] for k in range(block.pieces)]
    if block.pieces == 1:
        return points, labels, parts
    kept, moved = [], []
    for part in parts:
        used = sorted({node for _, nodes, _ in part for node in nodes}, key=lambda node: (node * 7) % len(points))
        place = {node: at for at, node in enumerate(used)}
        kept.append(used)
        moved.append([(kind, [place[node] for node in nodes], region) for kind, nodes, region in part])
    order = np.concatenate(kept)
    return points[order], labels[order], moved


def _write(path, block, points, labels, cells):
    points, labels, parts = _in_pieces(block, points, labels, cells)
    cells = [cell for part in parts for cell in part]
    part_points = [1 + max(node for _, nodes, _ in part for node in nodes) for part in parts]
    part_points = part_points if block.pieces > 1 else [len(points)]
    part_sizes = [np.array([len(nodes) for _, nodes, _ in part]) for part in parts]
    with h5py.File(path, "w") as file:
        root = file.create_group("VTKHDF")
        root.attrs["Version"] = np.array([1, 0], np.int32)
        root.attrs["Type"] = np.bytes_("UnstructuredGrid")
        root["NumberOfPoints"] = np.array(part_points)
        root["NumberOfCells"] = np.array([len(part) for part in parts])
        root["NumberOfConnectivityIds"] = np.array([sizes.sum() for sizes in part_sizes])
        root["Points"] = points.astype(np.float32 if block.single_precision else np.float64)
        root["Types"] = np.array([kind for kind, _, _ in cells], np.uint8)
        root["Offsets"] = np.concatenate([np.concatenate(([0], np.cumsum(sizes))) for sizes in part_sizes])
        root["Connectivity"] = np.concatenate([nodes for _, nodes, _ in cells])
        root["CellData/Region"] = np.array([region for _, _, region in cells], np.int32)
        if labels is not None:
            root["PointData/NodeId"] = labels.astype(np.int32)
        if block.tolerance is not None:
            root["FieldData/GeomTolerance"] = np.array([block.tolerance])
