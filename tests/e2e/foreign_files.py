"""Small meshes with results in the formats of other programs, written as text."""
import struct

import numpy

from small_project import run

READERS_ARE_BUILT_IN = (
    "reads no foreign files" not in run("import", "none.vtu", "--out", "none", "--freeze-temperature", 130).stderr
)
TETRA, HEXA, WEDGE, PYRAMID, QUADRATIC_TETRA, POLYHEDRON, TRIANGLE = 10, 12, 13, 14, 24, 42, 5


def box(size=(12.0, 8.0, 2.0), cells=(6, 4, 4)):
    """Points and hexahedra of a box from the origin."""
    nx, ny = cells[0] + 1, cells[1] + 1
    axes = [numpy.linspace(0.0, s, n + 1) for s, n in zip(size, cells)]
    points = numpy.array([(x, y, z) for z in axes[2] for y in axes[1] for x in axes[0]])
    hexas = []
    for k in range(cells[2]):
        for j in range(cells[1]):
            for i in range(cells[0]):
                base = i + nx * (j + ny * k)
                ring = [base, base + 1, base + 1 + nx, base + nx]
                hexas.append((HEXA, ring + [n + nx * ny for n in ring]))
    return points, hexas


def array_text(name, values):
    values = numpy.asarray(values)
    kind = {"f": "Float", "i": "Int", "u": "UInt"}[values.dtype.kind] + str(8 * values.dtype.itemsize)
    components = values.shape[1] if values.ndim > 1 else 1
    numbers = " ".join(repr(v) if v == v else "nan" for v in values.ravel().tolist())
    return (
        f'<DataArray type="{kind}" Name="{name}" NumberOfComponents="{components}" format="ascii">'
        f"{numbers}</DataArray>\n"
    )


def write_vtu(path, points, cells, point_data=None, cell_data=None, seconds=None):
    """`cells`: (VTK type, point indices) each; arrays keep their number type."""
    field = (
        ""
        if seconds is None
        else (
            f'<FieldData><DataArray type="Float64" Name="TimeValue" NumberOfTuples="1" format="ascii">{seconds!r}'
            "</DataArray></FieldData>\n"
        )
    )
    offsets = numpy.cumsum([len(nodes) for _, nodes in cells])
    path.write_text(
        '<VTKFile type="UnstructuredGrid" version="1.0" byte_order="LittleEndian" header_type="UInt64">'
        f"<UnstructuredGrid>\n{field}"
        f'<Piece NumberOfPoints="{len(points)}" NumberOfCells="{len(cells)}">\n'
        "<PointData>" + "".join(array_text(*item) for item in (point_data or {}).items()) + "</PointData>\n"
        "<CellData>" + "".join(array_text(*item) for item in (cell_data or {}).items()) + "</CellData>\n"
        "<Points>"
        + array_text("Points", points)
        + "</Points>\n<Cells>"
        + array_text("connectivity", numpy.concatenate([numpy.asarray(nodes, dtype="i8") for _, nodes in cells]))
        + array_text("offsets", offsets.astype("i8"))
        + array_text("types", numpy.array([kind for kind, _ in cells], dtype="u1"))
        + "</Cells>\n</Piece></UnstructuredGrid></VTKFile>\n"
    )


def write_pvd(path, members):
    """`members`: (seconds, file name) each."""
    path.write_text(
        '<VTKFile type="Collection" version="0.1"><Collection>\n'
        + "".join(f'<DataSet timestep="{seconds!r}" group="" part="0" file="{name}"/>\n' for seconds, name in members)
        + "</Collection></VTKFile>\n"
    )


def numbers(values):
    return "\n".join(repr(v) for v in numpy.asarray(values, dtype="f8").ravel().tolist()) + "\n"


def write_legacy(path, points, cells, point_data=None, cell_data=None):
    """The legacy text layout, one scalar array after the other."""
    text = (
        f"# vtk DataFile Version 3.0\nbox\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS {len(points)} double\n"
        + numbers(points)
        + f"CELLS {len(cells)} {sum(len(nodes) + 1 for _, nodes in cells)}\n"
        + "".join(f"{len(nodes)} {' '.join(map(str, nodes))}\n" for _, nodes in cells)
        + f"CELL_TYPES {len(cells)}\n"
        + "".join(f"{kind}\n" for kind, _ in cells)
    )
    for place, count, arrays in (("POINT_DATA", len(points), point_data), ("CELL_DATA", len(cells), cell_data)):
        if arrays:
            text += f"{place} {count}\n"
            for name, values in arrays.items():
                text += f"SCALARS {name} double 1\nLOOKUP_TABLE default\n" + numbers(values)
    path.write_text(text)


def write_ensight(path, points, hexas, times, values):
    """A case of hexahedra in the gold text layout; `values`: one array of the points for each time."""
    path.write_text(
        f"FORMAT\ntype: ensight gold\nGEOMETRY\nmodel: {path.stem}.geo\nVARIABLE\n"
        f"scalar per node: 1 temperature {path.stem}.t**\nTIME\ntime set: 1\nnumber of steps: {len(times)}\n"
        f"filename start number: 0\nfilename increment: 1\ntime values: {' '.join(map(str, times))}\n"
    )
    path.with_suffix(".geo").write_text(
        "box\nbox\nnode id assign\nelement id assign\npart\n         1\nsolid\ncoordinates\n"
        f"{len(points):10d}\n"
        + "".join(f"{v:12.5e}\n" for v in points.T.ravel())
        + f"hexa8\n{len(hexas):10d}\n"
        + "".join("".join(f"{n + 1:10d}" for n in nodes) + "\n" for _, nodes in hexas)
    )
    for index, array in enumerate(values):
        path.with_suffix(f".t{index:02d}").write_text(
            "temperature\npart\n         1\ncoordinates\n" + "".join(f"{v:12.5e}\n" for v in array)
        )


FRD_TYPES = {HEXA: 1, WEDGE: 2, TETRA: 3}


def write_frd(path, points, cells, times, temperatures, binary=False):
    """Results of CalculiX; node numbers are the index from 11."""
    head = lambda block, count, form: f"    {block}C{count:30d}{form:38d}\n".encode()
    out = [b"    1C\n", head(2, len(points), 3 if binary else 1)]
    for label, point in enumerate(points, 11):
        out.append(
            struct.pack("<i3d", label, *point)
            if binary
            else (f" -1{label:10d}" + "".join(f"{v:12.5E}" for v in point) + "\n").encode()
        )
    out += [b"" if binary else b" -3\n", head(3, len(cells), 2 if binary else 1)]
    for number, (kind, nodes) in enumerate(cells, 1):
        labels = [int(node) + 11 for node in nodes]
        out.append(
            struct.pack(f"<{4 + len(labels)}i", number, FRD_TYPES[kind], 0, 1, *labels)
            if binary
            else f" -1{number:10d}{FRD_TYPES[kind]:5d}    0    1\n -2".encode()
            + "".join(f"{label:10d}" for label in labels).encode()
            + b"\n"
        )
    out.append(b"" if binary else b" -3\n")
    for step, (seconds, values) in enumerate(zip(times, temperatures), 1):
        out.append(f"    1PSTEP\n  100CL  {100 + step}{seconds:12.9f}{len(points):12d}{'':20} 1{step:5d}".encode())
        out.append(
            f"{'':10}{2 if binary else 1:2d}\n -4  NDTEMP      1    1\n -5  T           1    1    0    0\n".encode()
        )
        for label, value in enumerate(values, 11):
            out.append(struct.pack("<if", label, value) if binary else f" -1{label:10d}{value:12.5E}\n".encode())
        out.append(b"" if binary else b" -3\n")
    path.write_bytes(b"".join(out) + b" 9999\n")


def write_inp(path, points, cells, sets=None):
    """A mesh in the layout of Abaqus; node numbers are the index from 1. `sets`: names of sets with cells."""
    names = {TETRA: "C3D4", HEXA: "C3D8", WEDGE: "C3D6", PYRAMID: "C3D5"}
    text = "*NODE\n" + "".join(f"{n}, {x!r}, {y!r}, {z!r}\n" for n, (x, y, z) in enumerate(points.tolist(), 1))
    for number, (kind, nodes) in enumerate(cells, 1):
        text += f"*ELEMENT, TYPE={names[kind]}\n{number}, {', '.join(str(node + 1) for node in nodes)}\n"
    for name, members in (sets or {}).items():
        text += f"*ELSET, ELSET={name}\n" + "".join(f"{cell + 1},\n" for cell in members)
    path.write_text(text)


def write_msh(path, points, cells, groups, names):
    """A Gmsh mesh in the text form 2.2; `groups`: the physical group of each cell."""
    types = {TETRA: 4, HEXA: 5, WEDGE: 6, PYRAMID: 7}
    path.write_text(
        "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n"
        f"$PhysicalNames\n{len(names)}\n"
        + "".join(f'3 {number} "{name}"\n' for number, name in names.items())
        + f"$EndPhysicalNames\n$Nodes\n{len(points)}\n"
        + "".join(f"{n} {x!r} {y!r} {z!r}\n" for n, (x, y, z) in enumerate(points.tolist(), 1))
        + f"$EndNodes\n$Elements\n{len(cells)}\n"
        + "".join(
            f"{number} {types[kind]} 2 {group} {group} {' '.join(str(node + 1) for node in nodes)}\n"
            for number, ((kind, nodes), group) in enumerate(zip(cells, groups), 1)
        )
        + "$EndElements\n"
    )


def write_table(path, columns):
    """Comma-separated values: `columns` by name."""
    lines = [",".join(columns)] + [
        ",".join(repr(v) for v in row) for row in zip(*(c.tolist() for c in columns.values()))
    ]
    path.write_text("\n".join(lines) + "\n")


def foam_file(path, kind, body):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(f"FoamFile\n{{\n version 2.0;\n format ascii;\n class {kind};\n object {path.name};\n}}\n{body}")


def write_openfoam(folder, points, hexas, times, cell_values, walls="type zeroGradient;"):
    """A case of hexahedra with T on the cells, and on the walls as told; gives its .foam file."""
    local = [(0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)]
    owners = {}
    for cell, (_, nodes) in enumerate(hexas):
        for face in local:
            corners = [nodes[c] for c in face]
            owners.setdefault(frozenset(corners), []).append((cell, corners))
    inner = sorted((found[0][0], found[1][0], found[0][1]) for found in owners.values() if len(found) == 2)
    outer = sorted((found[0][0], found[0][1]) for found in owners.values() if len(found) == 1)
    faces = [corners for *_, corners in inner] + [corners for _, corners in outer]
    mesh = folder / "constant/polyMesh"
    listed = lambda rows: f"{len(rows)}\n(\n" + "\n".join(rows) + "\n)\n"
    foam_file(mesh / "points", "vectorField", listed([f"({x!r} {y!r} {z!r})" for x, y, z in points.tolist()]))
    foam_file(mesh / "faces", "faceList", listed([f"4({' '.join(map(str, corners))})" for corners in faces]))
    foam_file(mesh / "owner", "labelList", listed([str(row[0]) for row in inner + outer]))
    foam_file(mesh / "neighbour", "labelList", listed([str(row[1]) for row in inner]))
    foam_file(
        mesh / "boundary",
        "polyBoundaryMesh",
        f"1\n(\nwalls {{ type wall; nFaces {len(outer)}; startFace {len(inner)}; }}\n)\n",
    )
    for seconds, values in zip(times, cell_values):
        foam_file(
            folder / f"{seconds:g}" / "T",
            "volScalarField",
            "dimensions [0 0 0 1 0 0 0];\ninternalField nonuniform List<scalar>\n"
            + listed([repr(v) for v in values.tolist()]).rstrip()
            + ";\n"
            f"boundaryField {{ walls {{ {walls} }} }}\n",
        )
    foam_file(
        folder / "system/controlDict",
        "dictionary",
        "application laplacianFoam;\nstartTime 0;\n"
        f"endTime {times[-1]:g};\ndeltaT 1;\nwriteControl timeStep;\nwriteInterval 1;\n",
    )
    (folder / "case.foam").write_text("")
    return folder / "case.foam"


def write_cooling_case(folder, size, cells, seconds, diffusivity):
    """An OpenFOAM case to be solved by blockMesh and laplacianFoam: a box, mm, of 503.15 K whose two faces z = 0 and
    z = size[2] are held at 323.15 K, written every second; diffusivity in m2/s. Gives its .foam file."""
    x, y, z = size
    corners = " ".join(f"({a} {b} {c})" for c in (0, z) for a, b in ((0, 0), (x, 0), (x, y), (0, y)))
    foam_file(
        folder / "system/blockMeshDict",
        "dictionary",
        f"scale 0.001;\nvertices ({corners});\n"
        f"blocks (hex (0 1 2 3 4 5 6 7) ({cells[0]} {cells[1]} {cells[2]}) simpleGrading (1 1 1));\nedges ();\n"
        "boundary ( cold { type wall; faces ((0 3 2 1)(4 5 6 7)); }\n"
        "rim { type wall; faces ((0 4 7 3)(1 2 6 5)(0 1 5 4)(3 7 6 2)); } );\nmergePatchPairs ();\n",
    )
    foam_file(
        folder / "system/controlDict",
        "dictionary",
        f"application laplacianFoam;\nstartFrom startTime;\nstartTime 0;\nstopAt endTime;\nendTime {seconds};\n"
        "deltaT 0.02;\nwriteControl runTime;\nwriteInterval 1;\nwriteFormat ascii;\nwritePrecision 10;\n",
    )
    foam_file(
        folder / "system/fvSchemes",
        "dictionary",
        "ddtSchemes { default Euler; }\ngradSchemes { default Gauss linear; }\ndivSchemes { default none; }\n"
        "laplacianSchemes { default Gauss linear corrected; }\ninterpolationSchemes { default linear; }\n"
        "snGradSchemes { default corrected; }\n",
    )
    foam_file(
        folder / "system/fvSolution",
        "dictionary",
        "solvers { T { solver PCG; preconditioner DIC; tolerance 1e-10; relTol 0; } }\n"
        "SIMPLE { nNonOrthogonalCorrectors 0; }\n",
    )
    foam_file(folder / "constant/transportProperties", "dictionary", f"DT DT [0 2 -1 0 0 0 0] {diffusivity};\n")
    foam_file(
        folder / "0/T",
        "volScalarField",
        "dimensions [0 0 0 1 0 0 0];\ninternalField uniform 503.15;\n"
        "boundaryField { cold { type fixedValue; value uniform 323.15; } rim { type zeroGradient; } }\n",
    )
    (folder / "case.foam").write_text("")
    return folder / "case.foam"
