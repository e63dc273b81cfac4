"""Deterministic tetra meshes of a cylinder about z and of a ball, whose boundary nodes lie on the curved surface."""

import itertools

import h5py
import numpy as np

# The six ways from the lowest to the highest corner of a cube along the axes.
WAYS = tuple(itertools.permutations(range(3)))


class Draft:
    def __init__(self, jiggle, seed):
        self.jiggle, self.random = jiggle, np.random.default_rng(seed)
        self.points, self.cells = [], []

    def add(self, place, moved):
        """A node, moved by up to `jiggle` mm along each axis that `moved` names."""
        shift = self.jiggle * self.random.uniform(-1.0, 1.0, 3)
        self.points.append(np.asarray(place) + shift * np.asarray(moved))
        return len(self.points) - 1

    def finish(self):
        """Points, and tetras of positive volume."""
        points, cells = np.array(self.points), np.array(self.cells)
        a, b, c, d = (points[cells[:, k]] for k in range(4))
        inverted = np.einsum("ij,ij->i", np.cross(b - a, c - a), d - a) < 0.0
        cells[np.ix_(inverted, [2, 3])] = cells[np.ix_(inverted, [3, 2])]
        return points, cells


def ring_triangles(along):
    """Triangles between the nodes of a disc: ring k has 6 k nodes, the rings stand one behind the other."""
    start = np.concatenate(([0, 1], 1 + np.cumsum(6 * np.arange(1, along + 1))))
    triangles = []
    for k, sector in itertools.product(range(1, along + 1), range(6)):
        outer = [start[k] + (sector * k + q) % (6 * k) for q in range(k + 1)]
        inner = [start[k - 1] + (sector * (k - 1) + q) % max(1, 6 * (k - 1)) for q in range(k)]
        triangles += [(outer[q], outer[q + 1], inner[q]) for q in range(k)]
        triangles += [(inner[q], outer[q + 1], inner[q + 1]) for q in range(k - 1)]
    return triangles


def cylinder(radius, along, layers, jiggle=0.0, seed=3):
    """`along` cells along the radius, `layers` of the same height; inner nodes moved by up to `jiggle` cells."""
    h = radius / along
    draft = Draft(jiggle * h, seed)
    for layer, k in itertools.product(range(layers + 1), range(along + 1)):
        for phi in 2.0 * np.pi * np.arange(max(1, 6 * k)) / max(1, 6 * k):
            inside, between = k < along, 0 < layer < layers
            draft.add((k * h * np.cos(phi), k * h * np.sin(phi), layer * h), (inside, inside, between))
    per_layer = len(draft.points) // (layers + 1)
    for layer, triangle in itertools.product(range(layers), ring_triangles(along)):
        a = [int(node) + layer * per_layer for node in sorted(triangle)]
        b = [node + per_layer for node in a]
        draft.cells += [(*a[: k + 1], *b[k:]) for k in range(3)]
    return draft.finish()


def icosahedron():
    g = (1.0 + np.sqrt(5.0)) / 2.0
    corners = [np.roll((0.0, a, b * g), turn) for a, b in itertools.product((1, -1), (1, -1)) for turn in range(3)]
    near = [
        three
        for three in itertools.combinations(range(12), 3)
        if all(np.linalg.norm(corners[p] - corners[q]) < 2.1 for p, q in itertools.combinations(three, 2))
    ]
    return np.array(corners), near


def ball(radius, along, jiggle=0.0, seed=3):
    """The twenty tetras of an icosahedron, each cut into tetras; the shells are moved onto spheres."""
    draft = Draft(jiggle * radius / along, seed)
    corners, faces = icosahedron()
    known = {}

    def node(place, shell):
        key = tuple(np.round(place * 1e6).astype(int))
        if key not in known:
            size = np.linalg.norm(place)
            spot = place * (radius * shell / along / size) if shell > 0 else np.zeros(3)
            known[key] = draft.add(spot, [shell < along] * 3)
        return known[key]

    for face in faces:
        i, j, k = corners[list(face)] / along
        places = ((x, y, z) for x in range(along) for y in range(x + 1) for z in range(y + 1))
        for place, way in itertools.product(places, WAYS):
            path = np.array([place] * 4)
            for step, axis in enumerate(way):
                path[step + 1 :, axis] += 1
            if (path[:, 0] >= path[:, 1]).all() and (path[:, 1] >= path[:, 2]).all():
                draft.cells.append([node(a * i + b * (j - i) + c * (k - j), a) for a, b, c in path])
    return draft.finish()


def write_tetras(path, points, cells):
    with h5py.File(path, "w") as file:
        grid = file.create_group("VTKHDF")
        grid.attrs["Version"] = np.array([1, 0], np.int32)
        grid.attrs["Type"] = np.bytes_("UnstructuredGrid")
        grid["NumberOfPoints"], grid["NumberOfCells"] = [len(points)], [len(cells)]
        grid["NumberOfConnectivityIds"] = [cells.size]
        grid["Points"], grid["Connectivity"] = points, cells.ravel()
        grid["Offsets"] = np.arange(0, cells.size + 1, 4)
        grid["Types"] = np.full(len(cells), 10, np.uint8)
        grid["CellData/Region"] = np.zeros(len(cells), np.int32)


def modulus(points, cells):
    """Volume by surface area, mm."""
    a, b, c, d = (points[cells[:, k]] for k in range(4))
    volume = np.einsum("ij,ij->i", np.cross(b - a, c - a), d - a).sum() / 6.0
    faces = np.sort(np.concatenate([cells[:, f] for f in ((0, 1, 2), (0, 1, 3), (0, 2, 3), (1, 2, 3))]), axis=1)
    unique, counts = np.unique(faces, axis=0, return_counts=True)
    p, q, r = (points[unique[counts == 1][:, k]] for k in range(3))
    return volume / (np.linalg.norm(np.cross(q - p, r - p), axis=1).sum() / 2.0)
