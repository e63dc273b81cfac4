"""Reads the older text layouts the way C streams do: whole lines and scanned numbers in turn."""

import re

INTEGER = re.compile(r"[+-]?\d+")
NUMBER = re.compile(r"[+-]?(\d+\.?\d*([eE][+-]?\d+)?|\.\d+([eE][+-]?\d+)?)")
LINE_LIMIT = 1023


class ScanFailed(Exception):
    pass


class TextStream:
    def __init__(self, path):
        with open(path, encoding="latin-1", newline="") as file:
            self.text = file.read()
        self.at = 0

    def line(self):
        """Next line with its end, at most 1023 characters; None at the end."""
        if self.at >= len(self.text):
            return None
        end = self.text.find("\n", self.at)
        end = len(self.text) if end < 0 else end + 1
        end = min(end, self.at + LINE_LIMIT)
        found = self.text[self.at : end]
        self.at = end
        return found

    def skip_blanks(self):
        while self.at < len(self.text) and self.text[self.at].isspace():
            self.at += 1

    def _scan(self, pattern):
        self.skip_blanks()
        found = pattern.match(self.text, self.at)
        if not found:
            raise ScanFailed
        self.at = found.end()
        return found.group()

    def integer(self):
        return int(self._scan(INTEGER))

    def number(self):
        return float(self._scan(NUMBER))
