"""Small meshes with results in the formats of other programs, written as text."""
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
