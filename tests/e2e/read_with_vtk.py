"""Reads files with the readers of VTK and stores what they give as numpy archives: OUT FILE...

Runs in python3 with python3-vtk9, or in pvpython, where collections and file series are opened by ParaView's
own readers. OUT receives <name>.npz for a file of one time, and <name>-<k>.npz with its time for time k of a
list.
"""
import json
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

import numpy
from vtkmodules.util.numpy_support import vtk_to_numpy
from vtkmodules.vtkCommonCore import vtkVersion
from vtkmodules.vtkIOHDF import vtkHDFReader
from vtkmodules.vtkIOXML import vtkXMLPolyDataReader, vtkXMLUnstructuredGridReader

try:
    from paraview import servermanager, simple
except ImportError:
    simple = None

READERS = {".vtp": vtkXMLPolyDataReader, ".vtu": vtkXMLUnstructuredGridReader, ".hdf": vtkHDFReader}


def read_file(path):
    reader = READERS[path.suffix]()
    reader.SetFileName(str(path))
    errors = []
    reader.AddObserver("ErrorEvent", lambda caller, event: errors.append(event))
    reader.Update()
    if errors or reader.GetOutput() is None:
        sys.exit(f"{path}: the reader failed")
    return reader.GetOutput()


def entries_of(path):
    """(time, path) of each file of a list, without ParaView."""
    if path.suffix == ".pvd":
        found = ElementTree.parse(path).getroot().find("Collection")
        return [(float(entry.get("timestep")), path.parent / entry.get("file")) for entry in found]
    return [(entry["time"], path.parent / entry["name"]) for entry in json.loads(path.read_text())["files"]]


def read_list(path):
    """(time, data) of each file of a list."""
    if simple is None:
        for time, name in entries_of(path):
            yield time, read_file(name)
        return
    reader = simple.OpenDataFile(str(path))
    for time in reader.TimestepValues:
        reader.UpdatePipeline(time)
        data = servermanager.Fetch(reader)
        yield time, data.GetBlock(0) if data.IsA("vtkMultiBlockDataSet") else data


def arrays_of(attributes, prefix):
    """Names by key, arrays by key."""
    names, arrays = {}, {}
    for i in range(attributes.GetNumberOfArrays()):
        key = f"{prefix}{i}"
        names[key] = attributes.GetArrayName(i)
        arrays[key] = vtk_to_numpy(attributes.GetArray(i))
    return names, arrays


def store(data, path, **more):
    cells = data.GetPolys() if data.IsA("vtkPolyData") else data.GetCells()
    names, arrays = {}, {}
    for attributes, prefix in ((data.GetPointData(), "point"), (data.GetFieldData(), "field")):
        for known, new in zip((names, arrays), arrays_of(attributes, prefix)):
            known.update(new)
    numpy.savez(
        path,
        names=json.dumps(names),
        kind=data.GetClassName(),
        points=vtk_to_numpy(data.GetPoints().GetData()),
        cells=data.GetNumberOfCells(),
        connectivity=vtk_to_numpy(cells.GetConnectivityArray()),
        offsets=vtk_to_numpy(cells.GetOffsetsArray()),
        **more,
        **arrays,
    )


def main():
    out = pathlib.Path(sys.argv[1])
    print(f"VTK {vtkVersion.GetVTKVersion()}{'' if simple is None else ' in ParaView'}")
    for path in map(pathlib.Path, sys.argv[2:]):
        if path.suffix in READERS:
            store(read_file(path), out / f"{path.name}.npz")
            continue
        for k, (time, data) in enumerate(read_list(path)):
            store(data, out / f"{path.name}-{k}.npz", time=time)


if __name__ == "__main__":
    main()
