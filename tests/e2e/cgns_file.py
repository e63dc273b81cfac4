"""Writes CGNS files as the public file mapping to HDF5 lays them out: every node is a group with the attributes
"name", "label" and "type", its data are a dataset " data" with the dimensions in reverse order, and the children of a
node are kept in the order in which they were made."""
import h5py
import numpy

TYPES = {"f4": "R4", "f8": "R8", "i4": "I4", "i8": "I8", "i1": "C1"}
ELEMENT_TYPES = {4: 10, 5: 12, 6: 14, 8: 17}  # corners -> TETRA_4, PYRA_5, PENTA_6, HEXA_8


def text_data(text):
    return numpy.frombuffer(text.encode(), dtype="i1")


class Node:
    def __init__(self, group):
        self.group = group

    def describe(self, name, label, kind):
        for key, value, length in (("name", name, 33), ("label", label, 33), ("type", kind, 3)):
            self.group.attrs.create(key, numpy.bytes_(value), dtype=f"S{length}")

    def add(self, name, label, data=None):
        child = Node(self.group.create_group(name, track_order=True))
        kind = "MT" if data is None else TYPES[data.dtype.str[1:]]
        child.describe(name, label, kind)
        child.group.attrs.create("flags", numpy.array([1], dtype="i4"))
        if data is not None:
            child.group.create_dataset(" data", data=data)
        return child


def write_cgns(path, points, cells, times, name, values):
    """`cells`: (kind, corners) each, kept in runs of equal numbers of corners; `values`: one array of the points for
    each time, called `name`."""
    with h5py.File(path, "w", libver=("earliest", "v108"), track_order=True) as file:
        root = Node(file["/"])
        root.describe("HDF5 MotherNode", "Root Node of HDF5 File", "MT")
        file.create_dataset(" format", data=text_data("IEEE_LITTLE_32\0"))
        file.create_dataset(" hdf5version", data=text_data("HDF5 Version 1.10.8".ljust(33, "\0")))
        root.add("CGNSLibraryVersion", "CGNSLibraryVersion_t", numpy.array([3.1], dtype="f4"))
        base = root.add("Base", "CGNSBase_t", numpy.array([3, 3], dtype="i4"))
        zone = base.add("Zone", "Zone_t", numpy.array([[len(points)], [len(cells)], [0]], dtype="i4"))
        zone.add("ZoneType", "ZoneType_t", text_data("Unstructured"))
        grid = zone.add("GridCoordinates", "GridCoordinates_t")
        for axis in range(3):
            grid.add("Coordinate" + "XYZ"[axis], "DataArray_t", numpy.ascontiguousarray(points[:, axis]))
        write_elements(zone, [nodes for _, nodes in cells])
        write_solutions(base, zone, times, name, values)


def write_elements(zone, cells):
    first = 0
    for end in [i for i in range(1, len(cells) + 1) if i == len(cells) or len(cells[i]) != len(cells[i - 1])]:
        kind = ELEMENT_TYPES[len(cells[first])]
        section = zone.add(f"Elements{first + 1}", "Elements_t", numpy.array([kind, 0], dtype="i4"))
        section.add("ElementRange", "IndexRange_t", numpy.array([first + 1, end], dtype="i4"))
        section.add(
            "ElementConnectivity", "DataArray_t", numpy.concatenate(cells[first:end]).astype("i4") + numpy.int32(1)
        )
        first = end


def write_solutions(base, zone, times, name, values):
    base.add("BaseIterativeData", "BaseIterativeData_t", numpy.array([len(times)], dtype="i4")).add(
        "TimeValues", "DataArray_t", numpy.array(times, dtype="f8")
    )
    names = [f"Solution{index}" for index in range(len(times))]
    zone.add("ZoneIterativeData", "ZoneIterativeData_t").add(
        "FlowSolutionPointers", "DataArray_t", numpy.stack([text_data(solution.ljust(32)) for solution in names])
    )
    for solution, array in zip(names, values):
        node = zone.add(solution, "FlowSolution_t")
        node.add("GridLocation", "GridLocation_t", text_data("Vertex"))
        node.add(name, "DataArray_t", numpy.asarray(array))
