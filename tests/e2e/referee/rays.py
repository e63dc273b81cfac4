"""Brute-force ray search: every face and every cell is tested. For small meshes."""

import numpy as np

from .mesh import cross, dot, face_triangles, length, tetra_volume

PARALLEL = 1e-6


class RaySearch:
    def __init__(self, mesh):
        self.mesh = mesh
        self.shortest = 1e-4 * mesh.size
        self._prepare_tetras()
        self._prepare_triangles()

    def _prepare_tetras(self):
        self.tetra_owner, corners = self.mesh.cell_tetras()
        negative = tetra_volume(*(corners[:, k] for k in range(4))) < 0.0
        corners[negative] = corners[negative][:, [0, 1, 3, 2]]
        normals, bases = [], []
        usable = np.ones(len(corners), bool)
        for a, b, c in ((0, 2, 1), (0, 1, 3), (1, 2, 3), (0, 3, 2)):
            normal = cross(corners[:, b] - corners[:, a], corners[:, c] - corners[:, a])
            size = length(normal)
            usable &= size > 0.0
            normals.append(normal / np.where(size > 0.0, size, 1.0)[:, None])
            bases.append(corners[:, a])
        self.tetra_owner = self.tetra_owner[usable]
        self.plane_normals = np.stack(normals, axis=1)[usable]
        self.plane_points = np.stack(bases, axis=1)[usable]

    def _prepare_triangles(self):
        rows, triangles = face_triangles(self.mesh.faces[1:], self.mesh.face_counts[1:])
        points = self.mesh.points[triangles]
        normal = cross(points[:, 1] - points[:, 0], points[:, 2] - points[:, 0])
        size = length(normal)
        keep = size > 0.0
        self.triangle_face = rows[keep] + 1
        self.triangle_points = points[keep]
        self.triangle_normal = normal[keep] / size[keep, None]

    def _touched(self, origin, direction):
        """Parameter intervals (owner, begin, end) on which the ray lies in the widened tetras."""
        outside = dot(self.plane_normals, origin - self.plane_points) - self.mesh.near
        slope = self.plane_normals @ direction
        begin = np.full(len(outside), -np.inf)
        end = np.full(len(outside), np.inf)
        never = np.any((slope == 0.0) & (outside > 0.0), axis=1)
        with np.errstate(divide="ignore", invalid="ignore"):
            at = -outside / slope
        for k in range(4):
            end = np.where(slope[:, k] > 0.0, np.minimum(end, at[:, k]), end)
            begin = np.where(slope[:, k] < 0.0, np.maximum(begin, at[:, k]), begin)
        keep = ~never & (begin <= end)
        return self.tetra_owner[keep], begin[keep], end[keep]

    def _inside_end(self, begin, end):
        """End of the connected union that contains 0; None when nothing does."""
        order = np.argsort(begin, kind="stable")
        low = high = None
        for a, b in zip(begin[order], end[order]):
            if high is not None and a <= high + self.mesh.near:
                high = max(high, b)
                continue
            if high is not None and low <= 0.0 <= high:
                return high
            low, high = a, b
        return high if high is not None and low <= 0.0 <= high else None

    def _passed_cells(self, owners, begin, end, stop):
        begin, end = np.maximum(begin, 0.0), np.minimum(end, stop)
        keep = end > begin
        passed = []
        for cell in np.unique(owners[keep]):
            mine = keep & (owners == cell)
            total, reach = 0.0, -np.inf
            for a, b in sorted(zip(begin[mine], end[mine])):
                total += max(0.0, b - max(a, reach))
                reach = max(reach, b)
            if total > self.shortest:
                passed.append(int(cell))
        return passed

    def _within(self, points):
        """Are the points (one per triangle, in its plane) inside the triangle widened by the tolerance?"""
        inside = np.ones(len(points), bool)
        for k in range(3):
            a, b = self.triangle_points[:, k], self.triangle_points[:, (k + 1) % 3]
            outward = cross(b - a, self.triangle_normal)
            inside &= dot(outward, points - a) <= self.mesh.near * length(outward)
        return inside

    def _passed_faces(self, origin, direction, stop):
        distance = dot(self.triangle_normal, origin - self.triangle_points[:, 0])
        foot = origin - distance[:, None] * self.triangle_normal
        holds_origin = (np.abs(distance) <= self.mesh.near) & self._within(foot)
        slope = self.triangle_normal @ direction
        steep = np.abs(slope) > PARALLEL
        at = np.where(steep, -distance / np.where(steep, slope, 1.0), np.inf)
        reached = steep & (at > self.mesh.near) & (at <= stop + self.mesh.near)
        hit = origin + np.where(reached, at, 0.0)[:, None] * direction
        crossed = reached & self._within(hit)
        return np.unique(self.triangle_face[holds_origin | crossed])

    def search(self, origin, direction):
        """(pass-element ids ascending, length of the ray inside the solid)."""
        owners, begin, end = self._touched(origin, direction)
        stop = self._inside_end(begin, end)
        if stop is None:
            return [], 0.0
        cells = self._passed_cells(owners, begin, end, stop)
        if not cells:
            return [], 0.0
        faces = self._passed_faces(origin, direction, stop)
        return [int(f) for f in faces] + [self.mesh.face_count + c for c in cells], stop
