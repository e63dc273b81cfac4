"""The scratch copy of the project, its build, and the syntax trees of its files."""
import json
import os
import pathlib
import re
import shlex
import subprocess

from clang.cindex import Diagnostic, Index, TranslationUnit

RUNTIME = pathlib.Path(__file__).with_name("runtime.h")
LEFT_OUT = {"build", "out", "node_modules", "__pycache__"}
SOURCE_SUFFIXES = {".cpp", ".cc", ".cxx"}
SUFFIXES = SOURCE_SUFFIXES | {".h", ".hpp"}
OPENMP = "-D_OPENMP=201511"


class ProjectError(Exception):
    """What the user has to put right."""


def project_files(root):
    for folder, folders, files in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in LEFT_OUT and not name.startswith("."))
        for name in sorted(files):
            yield pathlib.Path(folder, name).relative_to(root)


class Project:
    def __init__(self, root, scratch, jobs):
        self.root = root
        self.tree = scratch / "tree"
        self.build_folder = scratch / "build"
        self.jobs = jobs
        self._index = Index.create()

    def copy(self, changed):
        """Brings the copy up to date; `changed` gives the text of some files. What has not changed keeps its time,
        so that it is not built again."""
        wanted = set()
        for path in project_files(self.root):
            wanted.add(path)
            content = changed[path] if path in changed else (self.root / path).read_bytes()
            target = self.tree / path
            if not target.exists() or target.read_bytes() != content:
                target.parent.mkdir(parents=True, exist_ok=True)
                target.write_bytes(content)
        for path in set(project_files(self.tree)) - wanted:
            (self.tree / path).unlink()

    def configure(self, arguments, flags):
        query = self.build_folder / ".cmake/api/v1/query/codemodel-v2"
        query.parent.mkdir(parents=True, exist_ok=True)
        query.touch()
        command = [
            "cmake",
            "-S",
            self.tree,
            "-B",
            self.build_folder,
            "-G",
            "Ninja",
            "-DCMAKE_BUILD_TYPE=None",
            "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
            f"-DCMAKE_CXX_FLAGS={flags} -w -include {shlex.quote(str(RUNTIME))}",
            *arguments,
        ]
        done = subprocess.run(command, capture_output=True, text=True)
        if done.returncode != 0:
            raise ProjectError("CMake could not configure the scratch copy:\n" + done.stdout + done.stderr)
        commands = json.loads((self.build_folder / "compile_commands.json").read_text(encoding="utf-8"))
        self._commands = {pathlib.Path(command["file"]): command for command in commands}

    def executables(self):
        """Name of each executable target of the project and its path."""
        reply = self.build_folder / ".cmake/api/v1/reply"
        index = json.loads(max(reply.glob("index-*.json")).read_text(encoding="utf-8"))
        model = json.loads((reply / index["reply"]["codemodel-v2"]["jsonFile"]).read_text(encoding="utf-8"))
        targets = {}
        for entry in model["configurations"][0]["targets"]:
            target = json.loads((reply / entry["jsonFile"]).read_text(encoding="utf-8"))
            if target["type"] == "EXECUTABLE":
                targets[target["name"]] = self.build_folder / target["artifacts"][0]["path"]
        return targets

    def build(self, targets):
        """None when all is built, else what the compiler said."""
        command = ["cmake", "--build", self.build_folder, "-j", str(self.jobs), "--target", *targets, "--", "-k", "0"]
        done = subprocess.run(command, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"})
        return None if done.returncode == 0 else done.stdout + done.stderr

    def sources(self):
        """Source files of the build, relative to the project."""
        return sorted(path.relative_to(self.tree) for path in self._commands if self.tree in path.parents)

    def syntax_tree(self, path):
        """Of the original, as if it were compiled in the copy."""
        arguments = shlex.split(self._commands[self.tree / path]["command"])
        start = next(i for i, argument in enumerate(arguments) if argument.startswith("-"))
        arguments = [a.replace(str(self.tree), str(self.root)) for a in arguments[start:]]
        arguments = arguments[: arguments.index("-o")]
        # The tree of a parallel region is opaque, that of its text is not.
        arguments = [OPENMP if argument == "-fopenmp" else argument for argument in arguments]
        unit = self._index.parse(
            str(self.root / path), args=arguments, options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD
        )
        faults = [str(d) for d in unit.diagnostics if d.severity >= Diagnostic.Error]
        if faults:
            raise ProjectError(f"libclang does not understand {path}:\n" + "\n".join(faults[:5]))
        return unit


PLACE = re.compile(r"^(?:In file included from |\s+from )?([^\s:]+):(\d+):(\d+):?\s*(.*)$")


def compiler_faults(output, build_folder):
    """Errors in what the compiler said: (message, [(path, line, column), ...]), the place of the error first, then
    those of its notes, then those through which it came there."""
    faults, before = [], []
    for line in output.splitlines():
        match = PLACE.match(line)
        if not match:
            continue
        place = (pathlib.Path(os.path.realpath(build_folder / match[1])), int(match[2]), int(match[3]))
        if match[4].startswith(("error:", "fatal error:")):
            faults.append((match[4], [place], before))
            before = []
        elif match[4].startswith("note:") and faults:
            faults[-1][1].append(place)
        else:
            before.append(place)
    return [(message, places + through) for message, places, through in faults]
