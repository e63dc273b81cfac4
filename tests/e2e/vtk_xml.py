"""Reads XML files of polygons, polylines and grids with raw appended arrays, apart from any library."""
import re
import xml.etree.ElementTree as ElementTree

import numpy

TYPES = {"Float32": "<f4", "Float64": "<f8", "Int32": "<i4", "Int64": "<i8", "UInt8": "u1"}


class VtkFile:
    def __init__(self, path):
        data = path.read_bytes()
        head, mark, rest = data.partition(b'<AppendedData encoding="raw">\n_')
        assert mark, path
        self.appended = rest[: rest.rindex(b"\n</AppendedData>")]
        root = ElementTree.fromstring(head + b"</VTKFile>")
        assert (root.get("byte_order"), root.get("header_type")) == ("LittleEndian", "UInt64")
        self.kind = root.get("type")
        piece = root.find(f"{self.kind}/Piece")
        self.counts = {key: int(value) for key, value in piece.attrib.items()}
        self.numbers = {array.get("Name"): float(array.text) for array in root.find(f"{self.kind}/FieldData")}
        self.points = self.array(piece.find("Points/DataArray"))
        self.arrays = {array.get("Name"): self.array(array) for array in piece.find("PointData")}
        for name in ("Polys", "Lines", "Cells"):
            if piece.find(name) is not None:
                self.cells = {array.get("Name"): self.array(array) for array in piece.find(name)}

    def array(self, element):
        offset = int(element.get("offset"))
        count = int.from_bytes(self.appended[offset : offset + 8], "little")
        values = numpy.frombuffer(self.appended[offset + 8 : offset + 8 + count], dtype=TYPES[element.get("type")])
        components = int(element.get("NumberOfComponents"))
        return values.reshape(-1, components) if components > 1 else values


def read_collection(path):
    """(time, file name) of each entry."""
    root = ElementTree.parse(path).getroot()
    assert root.get("type") == "Collection"
    return [(float(entry.get("timestep")), entry.get("file")) for entry in root.find("Collection")]


def base_name(label):
    """A label without its unit."""
    return re.sub(r" \[.*\]$", "", label)
