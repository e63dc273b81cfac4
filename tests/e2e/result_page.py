"""Reads the data of a results page as docs/viewer-data.md describes them, apart from the page's own reader."""
import base64
import json
import re
import zlib

import numpy

MAX_LEVEL = 65527


class ResultPage:
    def __init__(self, path):
        self.text = path.read_text(encoding="utf-8")
        self.header = json.loads(
            re.search(r'<script type="application/json" id="qnl-header">(.*?)</script>', self.text, re.S).group(1)
        )
        pattern = r'<script type="application/octet-stream" id="qnl-block-([A-Za-z0-9-]+)">([A-Za-z0-9+/=]*)</script>'
        self.blocks = dict(re.findall(pattern, self.text))

    def block(self, name, kind, count, base=None):
        raw = zlib.decompress(base64.b64decode(self.blocks[name], validate=True))
        width = numpy.dtype(kind).itemsize
        assert len(raw) == width * count, name
        planes = numpy.frombuffer(raw, dtype="u1").reshape(width, count).astype("u8")
        folded = sum(planes[k] << numpy.uint64(8 * k) for k in range(width)).astype("i8")
        differences = (folded >> 1) ^ -(folded & 1)
        numbers = numpy.cumsum(differences)
        if base is not None:
            numbers = numbers + base.astype("i8")
        return (numbers % 2 ** (8 * width)).astype(kind)

    def series(self, blocks, count):
        """Levels by time; None for a time without result."""
        levels, before = [], None
        for name in blocks:
            before = None if name is None else self.block(name, "u2", count, before)
            levels.append(before)
        return levels

    def item(self, name):
        return next(item for item in self.header["items"] if item["name"] == name)

    def values(self, entry, count):
        """By time: values with NaN where the level is a status, and the status or -1."""
        found = []
        for levels in self.series(entry["blocks"], count):
            if levels is None:
                found.append(None)
                continue
            numbers = entry["min"] + (entry["max"] - entry["min"]) * levels.astype("f8") / MAX_LEVEL
            missing = levels > MAX_LEVEL
            numbers[missing] = numpy.nan
            found.append((numbers, numpy.where(missing, 65535 - levels.astype("i4"), -1)))
        return found

    def item_values(self, entry):
        return self.values(entry, self.header["nodes"])

    def positions(self):
        n = self.header["nodes"]
        return self.block("positions", "u4", 3 * n).view("f4").reshape(3, n).T

    def triangles(self):
        n = self.header["triangles"]
        return self.block("triangles", "u4", 3 * n).reshape(3, n).T

    def labels(self):
        return self.block("labels", "u4", self.header["nodes"])
