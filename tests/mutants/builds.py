"""Builds a copy of the project that holds all mutants of its sources at once."""

import concurrent.futures
import dataclasses
import hashlib
import json
import os
import pathlib
import pickle
import re
import shlex
import shutil
import subprocess
import sys

import places

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
NUMBERS_PER_FILE = 4000  # a mutant's number is its line's, counted from its file's first number


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str  # from the root on
    number: int
    place: places.Place
    code: str  # its line
    key: str   # says what was changed in which text, whatever changes elsewhere

    def __str__(self):
        return f"{self.path}:{self.place.line}: {self.place.what}: {self.code}"


@dataclasses.dataclass(frozen=True)
class Target:
    name: str
    sources: tuple           # folders of src/ whose sources are changed, from the root on
    excluded: tuple          # but not these
    preset: str
    parser_options: tuple    # what clang must be told to read it
    test_folders: tuple      # whose programs are asked


def windows_parser_options():
    """clang reads the other system's headers, all but those that are the other compiler's own."""
    listed = subprocess.run(["x86_64-w64-mingw32-g++-posix", "-xc++", "-E", "-v", "/dev/null"],
                            capture_output=True, text=True, check=True).stderr
    folders = re.search(r"search starts here:\n(.*?)End of search list", listed, re.S)[1].split()
    folders = [str(pathlib.Path(folder).resolve()) for folder in folders]
    folders = [folder for folder in folders if not re.search(r"/lib/gcc/.*/include(-fixed)?$", folder)]
    own = max(pathlib.Path("/usr/lib/llvm-14/lib/clang").iterdir())
    return ("--target=x86_64-w64-mingw32", "-nostdlibinc", "-nostdinc++", f"-resource-dir={own}",
            *(option for folder in folders for option in ("-isystem", folder)))


def _sha(data):
    return hashlib.sha256(data).hexdigest()[:16]


def _stored(path, default):
    return json.loads(path.read_text(encoding="utf-8")) if path.exists() else default


def _write_if_changed(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_bytes() != content:
        path.write_bytes(content)


def _apply(content, edits):
    """Edits lie inside one another or apart."""
    edits = sorted(edits, key=lambda edit: (edit.start, -edit.end))
    pieces = []

    def emit(position, end, index):
        while index < len(edits) and edits[index].start < end:
            edit = edits[index]
            pieces.append(content[position:edit.start])
            pieces.append(edit.before.encode())
            index += 1
            length = len(pieces)
            inner_end, index = emit(edit.start, edit.end, index)
            if not edit.kept:
                del pieces[length:]
            pieces.append(edit.after.encode())
            position = inner_end
        pieces.append(content[position:end])
        return end, index

    emit(0, len(content), 0)
    return b"".join(pieces)


class Build:
    def __init__(self, target, folder):
        self.target = target
        self.folder = folder            # of everything about this target
        self.tree = folder / "tree"     # the changed project
        # Where a build of the project has it: compiled tests are the same there and here, and found in a cache.
        self.binaries = self.tree / "build" / target.preset
        self.sources = sorted(path.relative_to(ROOT).as_posix() for name in target.sources
                              for path in (ROOT / name).rglob("*")
                              if path.suffix in (".cpp", ".h") and
                              not path.relative_to(ROOT).as_posix().startswith(target.excluded))
        self.contents = {path: (ROOT / path).read_bytes() for path in self.sources}
        self.refused_path = folder / "refused.json"
        self.refused = {tuple(entry) for entry in _stored(self.refused_path, [])}
        numbers_path = folder / "numbers.json"
        self.first_numbers = _stored(numbers_path, {})
        for path in self.sources:
            self.first_numbers.setdefault(path, NUMBERS_PER_FILE * len(self.first_numbers))
        folder.mkdir(parents=True, exist_ok=True)
        numbers_path.write_text(json.dumps(self.first_numbers), encoding="utf-8")
        self.table_size = NUMBERS_PER_FILE * (len(self.first_numbers) + 1)

    # The copy

    def copy_project(self):
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                                capture_output=True, text=True, check=True).stdout.split("\0")
        kept = {path for path in listed if path and (ROOT / path).is_file() and not (ROOT / path).is_symlink()}
        copied = {path for path in self.tree.rglob("*")
                  if path.is_file() and not path.is_relative_to(self.tree / "build")}
        for path in copied - {self.tree / path for path in kept}:
            path.unlink()
        for path in kept - set(self.sources):
            content = (ROOT / path).read_bytes()
            if path == "src/CMakeLists.txt":
                content += f"""
target_sources(cordelbox_core PRIVATE "{HERE}/chosen.cpp")
target_compile_options(cordelbox_core PRIVATE -w -O1 -g0 -D_GLIBCXX_ASSERTIONS)
""".encode()
            _write_if_changed(self.tree / path, content)
            (self.tree / path).chmod((ROOT / path).stat().st_mode)
        for path in self.sources:
            if not (self.tree / path).exists():
                _write_if_changed(self.tree / path, self.contents[path])

    def configure(self):
        environment = os.environ | ({"CMAKE_CXX_COMPILER_LAUNCHER": "ccache"} if shutil.which("ccache") else {})
        # Each source by itself, so that the compiler's database names it.
        subprocess.run(["cmake", "--preset", self.target.preset, "-DCORDELBOX_LIBRARY_AT_ONCE=OFF"],
                       cwd=self.tree, env=environment, check=True, stdout=subprocess.DEVNULL)

    # The places

    def find_places(self, jobs):
        """All places, by path. What was found before in the same texts is found again without reading them."""
        commands = json.loads((self.binaries / "compile_commands.json").read_text(encoding="utf-8"))
        state = _sha(b"".join(path.encode() + content for path, content in sorted(self.contents.items())) +
                     (HERE / "places.py").read_bytes())
        cache = self.folder / "places.pickle"
        if cache.exists():
            known = pickle.loads(cache.read_bytes())
            if known[0] == state:
                return known[1]
        wanted = {ROOT / path for path in self.sources}
        tasks = {}
        for command in commands:
            path = command["file"].replace(str(self.tree), str(ROOT), 1)
            if not path.startswith(str(ROOT / "src")):
                continue
            words = [word.replace(str(self.tree), str(ROOT), 1) for word in shlex.split(command["command"])]
            options = [word for word in words if word.startswith(("-I", "-D", "-std"))]
            for index, word in enumerate(words):
                if word == "-isystem":
                    options += words[index:index + 2]
            tasks[path] = [*self.target.parser_options, *options]
        found = {}
        with concurrent.futures.ProcessPoolExecutor(jobs) as pool:
            for part in pool.map(places.find, tasks.keys(), tasks.values(), [wanted] * len(tasks)):
                for path, some in part.items():
                    found.setdefault(path.relative_to(ROOT).as_posix(), set()).update(some)
        cache.write_bytes(pickle.dumps((state, found)))
        return found

    def _refusal(self, path, place):
        return path, _sha(self.contents[path]), place.line, place.column, place.what

    def _chosen(self, found):
        """The first place of each line that compiles: by path and line."""
        chosen = {}
        for path, some in found.items():
            for place in sorted(some, key=lambda place: (place.line, *place.order(), place.what)):
                if self._refusal(path, place) not in self.refused:
                    chosen.setdefault(path, {}).setdefault(place.line, place)
        return chosen

    # The build

    def _write_sources(self, chosen):
        for path in self.sources:
            edits = set()
            for line, place in chosen.get(path, {}).items():
                number = str(self.first_numbers[path] + line)
                edits |= {dataclasses.replace(edit, before=edit.before.replace("NUMBER", number))
                          for edit in place.edits}
            content = _apply(self.contents[path], edits)
            if edits:  # and no warnings of a header in the tests that include it
                pragma = "#pragma GCC system_header\n" if path.endswith(".h") else ""
                content = f'{pragma}#include "{HERE}/chosen.h"\n#line 1\n'.encode() + content
            _write_if_changed(self.tree / path, content)

    def _refuse(self, log, chosen):
        """Takes back what the compiler complains of. False when that is nothing of what was changed."""
        taken = set()
        blocks = re.split(r"(?m)^(?=[^\n:]+:\d+:\d+: (?:fatal )?error:)", log)[1:]
        for block in blocks:
            for path, line in re.findall(r"(?m)^([^\n:]+):(\d+):", block):
                path = pathlib.Path(path)
                path = path if path.is_absolute() else self.binaries / path
                path = path.resolve()
                if not path.is_relative_to(self.tree):
                    continue
                relative = path.relative_to(self.tree).as_posix()
                places_there = chosen.get(relative, {})
                hit = [place for place in places_there.values() if self._touches(relative, place, int(line))]
                if hit:
                    taken |= {self._refusal(relative, place) for place in hit}
                    break
            else:
                taken |= self._constants_of(block, chosen)
        self.refused |= taken
        self.refused_path.write_text(json.dumps(sorted(self.refused)), encoding="utf-8")
        return bool(taken)

    def _constants_of(self, block, chosen):
        """What the complaint's first line needs as a constant, and a place elsewhere makes a variable."""
        path, line = re.match(r"([^\n:]+):(\d+):", block).groups()
        path = (self.binaries / path).resolve()
        lines = path.read_text(encoding="utf-8").splitlines() if path.is_relative_to(self.tree) else []
        if path.is_relative_to(self.tree / "src"):
            lines = (ROOT / path.relative_to(self.tree)).read_text(encoding="utf-8").splitlines()
        if int(line) > len(lines):
            return set()
        words = set(re.findall(r"\w+", lines[int(line) - 1]))
        return {self._refusal(relative, place) for relative, by_line in chosen.items() for place in by_line.values()
                if not all(edit.kept for edit in place.edits) and words & self._declared(relative, place)}

    def _declared(self, path, place):
        """The names of the constants that a place makes variables."""
        rests = (self.contents[path][edit.end:] for edit in place.edits if not edit.kept)
        return {word for rest in rests for word in re.findall(r"\w+", re.split(rb"[={(;[]", rest)[0].decode())[-1:]}

    def _touches(self, path, place, line):
        content = self.contents[path]
        return place.line == line or any(content.count(b"\n", 0, edit.start) + 1 == line for edit in place.edits)

    def make(self, jobs):
        """Builds, and gives the mutants that are in the build."""
        self.copy_project()
        self.configure()
        found = self.find_places(jobs)
        while True:
            chosen = self._chosen(found)
            self._write_sources(chosen)
            run = subprocess.run(["ninja", "-C", self.binaries, "-k", "0", "-j", str(jobs),
                                  *(f"tests/{folder}/all" for folder in self.target.test_folders)],
                                 capture_output=True, text=True)
            if run.returncode == 0:
                break
            if not self._refuse(run.stdout, chosen):
                sys.exit(run.stdout[-20000:] + f"\nmutants: {self.binaries} does not build")
        mutants = []
        for path, by_line in sorted(chosen.items()):
            lines = self.contents[path].decode("utf-8").splitlines()
            for line, place in sorted(by_line.items()):
                text = f"{path} {_sha(self.contents[path])} {line} {place.column} {place.what}"
                mutants.append(Mutant(path, self.first_numbers[path] + line, place, lines[line - 1].strip(),
                                      _sha(text.encode())))
        return mutants
