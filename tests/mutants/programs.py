"""The test programs of a build: which mutants each single test reaches, and what becomes of a mutant."""

import collections
import dataclasses
import json
import os
import pathlib
import pickle
import queue
import re
import shutil
import subprocess
import threading

HERE = pathlib.Path(__file__).resolve().parent

# How long a run may do nothing, and how long it may compute: so many seconds, and this many times what its tests took.
PATIENCE = 10.0
MOST = 3.0
FACTOR = 8.0
# All mutants are tried with few tests each first; then what is left, but for those that are known to survive, with the
# other fast ones, then with the slow ones.
FEW_SECONDS = 0.25     # of the processor, of the few
NEAREST = 4            # among the few, those that reach the fewest mutants, whatever they cost up to
NEAR_SECONDS = 1.5
SLOW_SECONDS = 0.25    # of one test that is slow
FIRST_SECONDS = 0.06   # of the tests that are run at once; then four times as many
FILTER_LENGTH = 60000  # characters of a command line


@dataclasses.dataclass(frozen=True)
class Test:
    program: str  # its path below the build's folder of tests
    name: str
    code_page: str  # "" where there is only one


@dataclasses.dataclass
class Reach:
    """What a test did without a mutant."""
    seconds: float      # until it ended
    computed: float     # of the processor
    numbers: frozenset  # the mutants that it passed


@dataclasses.dataclass(frozen=True)
class Verdict:
    caught: bool
    by: str  # the test that failed; for a survivor, how many reach it


class Worker:
    """A process that runs test programs, in folders of its own."""

    def __init__(self, build, number, code_page=""):
        self.folder = build.folder / f"worker{number}"
        self.table = self.folder / "reached"
        self.table_size = build.table_size
        self.build = build
        self.environment = {"CORDELBOX_MUTANT": "0"}
        command = [HERE / "worker"]
        environment = dict(os.environ)
        if code_page:
            command = [HERE.parent / "windows" / "run_under_wine", code_page, *command]
            environment["CORDELBOX_WINDOWS_BUILD"] = str(self.folder)
        else:
            environment["LD_PRELOAD"] = str(build.folder / "no_flush.so")
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)
        self.code_page = code_page

    def close(self):
        self.process.stdin.close()
        self.process.wait()

    def run(self, program, arguments, patience, most, **environment):
        path = self.folder / "tests" / program
        request = {"command": [str(path), *arguments], "folder": str(path.parent), "environment": environment,
                   "patience": patience, "most": most}
        print(json.dumps(request), file=self.process.stdin, flush=True)
        for line in self.process.stdout:
            if line.startswith("{"):
                return json.loads(line)
        raise RuntimeError("mutants: a worker has ended")

    def record(self, test):
        self.table.write_bytes(bytes(self.table_size))
        # Wine's drive Z: is the root.
        table = "Z:" + str(self.table).replace("/", "\\") if self.code_page else str(self.table)
        answer = self.run(test.program, [f"--gtest_filter={test.name}"], 120, 600, CORDELBOX_MUTANTS_REACHED=table)
        reached = self.table.read_bytes()
        numbers = frozenset(number for number in range(1, len(reached)) if reached[number])
        good = answer["status"] == 0 and not answer["hung"] and "[  SKIPPED ]" not in answer["output"]
        return Reach(answer["seconds"], answer["computed"], numbers) if good else None


def failed_test(output):
    failed = re.findall(r"^\[  FAILED  \] ([^\s,]+)", output, re.M)
    begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.M)
    return failed[0] if failed else begun[-1] if begun else "the start of the program"


class Programs:
    def __init__(self, build, jobs, code_pages=("",)):
        self.build = build
        self.jobs = jobs
        self.code_pages = code_pages
        self.reaches = {}
        self.by_number = collections.defaultdict(list)
        self.killers = collections.defaultdict(collections.Counter)  # by file: the tests that noticed something
        self.lock = threading.Lock()

    def prepare(self):
        """Gives each worker the test programs, since these keep their documents beside themselves."""
        listed = subprocess.run(["ctest", "--test-dir", self.build.binaries, "--show-only=json-v1"],
                                capture_output=True, text=True, check=True).stdout
        tests_folder = self.build.binaries / "tests"
        self.paths = []
        for test in json.loads(listed)["tests"]:
            for word in test.get("command", []):
                path = pathlib.Path(word)
                if path.is_relative_to(tests_folder) and path.is_file() and b"gtest_list_tests" in path.read_bytes():
                    self.paths.append(path.relative_to(tests_folder))
        for number in range(self.jobs):
            folder = self.build.folder / f"worker{number}"
            shutil.rmtree(folder / "tests", ignore_errors=True)
            for path in self.paths:
                shutil.copytree((tests_folder / path).parent, folder / "tests" / path.parent, symlinks=True,
                                dirs_exist_ok=True, ignore=shutil.ignore_patterns("run", "CMakeFiles"))
            if self.code_pages != ("",):
                shutil.copytree(self.build.binaries / "bin", folder / "bin", dirs_exist_ok=True)
        if self.code_pages == ("",):
            subprocess.run(["cc", "-shared", "-fPIC", "-o", self.build.folder / "no_flush.so", HERE / "no_flush.c"],
                           check=True)

    def _in_parallel(self, tasks, work, code_page):
        """Calls work(worker, task) for each task, on all workers."""
        waiting = queue.SimpleQueue()
        for task in tasks:
            waiting.put(task)
        failures = []

        def serve(number):
            worker = Worker(self.build, number, code_page)
            try:
                while not failures:
                    work(worker, waiting.get_nowait())
            except queue.Empty:
                pass
            except Exception as failure:  # told by the caller's thread
                failures.append(failure)
            finally:
                worker.close()

        threads = [threading.Thread(target=serve, args=(number,)) for number in range(min(self.jobs, len(tasks)))]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        if failures:
            raise failures[0]

    def record(self, state):
        """Runs every test alone and notes what it reaches, unless that was done in the same state of the project."""
        kept = self.build.folder / "reached.pickle"
        known = pickle.loads(kept.read_bytes()) if kept.exists() else (None, None)
        if known[0] == state:
            self.reaches = known[1]
        else:
            self._record()
            kept.write_bytes(pickle.dumps((state, self.reaches)))
        for test, reach in self.reaches.items():
            for number in reach.numbers if reach is not None else ():
                self.by_number[number].append(test)

    def _record(self):
        for code_page in self.code_pages:
            tests = []

            def list_tests(worker, program):
                output = worker.run(program, ["--gtest_list_tests"], 120, 60)["output"]
                suite = ""
                for line in output.splitlines():
                    line = line.split("#")[0].rstrip()
                    if line.endswith("."):
                        suite = line
                    elif line.startswith("  ") and suite:
                        tests.append(Test(program, suite + line.strip(), code_page))

            self._in_parallel([str(path) for path in self.paths], list_tests, code_page)

            def record(worker, test):
                self.reaches[test] = worker.record(test)

            self._in_parallel(tests, record, code_page)

    def _tests_of(self, mutant, code_page):
        """The tests that reach a mutant: the few to begin with, the other fast ones, the slow ones."""
        tests = [test for test in self.by_number[mutant.number] if test.code_page == code_page]
        # A test that passes little is mostly about what it passes.
        tests.sort(key=lambda test: self.reaches[test].computed * len(self.reaches[test].numbers))
        near = [test for test in sorted(tests, key=lambda test: len(self.reaches[test].numbers))
                if self.reaches[test].computed < NEAR_SECONDS][:NEAREST]
        few, fast, slow, seconds = near, [], [], 0.0
        for test in tests:
            if test in near:
                continue
            computed = self.reaches[test].computed
            if computed >= SLOW_SECONDS:
                slow.append(test)
            elif seconds + computed < FEW_SECONDS:
                few.append(test)
                seconds += computed
            else:
                fast.append(test)
        return few, fast, slow

    def _rounds(self, mutant, code_page, speed):
        """The tests that are run at once: first those that noticed others in the mutant's file, then ever more."""
        tests = self._tests_of(mutant, code_page)
        with self.lock:
            noticed = self.killers[mutant.path].copy()
        everywhere = set().union(*tests[:2])
        proven = sorted((test for test in everywhere if noticed[test]), key=lambda test: -noticed[test])[:12]
        if proven and speed == 0:
            yield proven
        known = set(proven) if speed == 0 else set()
        some, seconds, limit = [], 0.0, FIRST_SECONDS
        for test in tests[speed]:
            if test in known:
                continue
            some.append(test)
            seconds += self.reaches[test].computed
            if seconds >= limit:
                yield some
                some, seconds, limit = [], 0.0, limit * 4
        if some:
            yield some

    def _runs(self, tests):
        """Parts of a round that are one process each."""
        by_program = collections.defaultdict(list)
        for test in tests:
            by_program[test.program].append(test)
        for program, some in by_program.items():
            part, length = [], 0
            for test in some:
                part.append(test)
                length += len(test.name) + 1
                if length > FILTER_LENGTH:
                    yield program, part
                    part, length = [], 0
            if part:
                yield program, part

    def _judge(self, worker, mutant, speed):
        for tests in self._rounds(mutant, worker.code_page, speed):
            for program, part in self._runs(tests):
                took = sum(self.reaches[test].seconds for test in part)
                computed = sum(self.reaches[test].computed for test in part)
                answer = worker.run(program, ["--gtest_fail_fast", "--gtest_brief=0",
                                              "--gtest_filter=" + ":".join(test.name for test in part)],
                                    PATIENCE + FACTOR * took, MOST + FACTOR * computed,
                                    CORDELBOX_MUTANT=str(mutant.number))
                if answer["hung"] or answer["status"] != 0:
                    name = failed_test(answer["output"])
                    with self.lock:
                        for test in part:
                            if test.name == name and not answer["hung"]:
                                self.killers[mutant.path][test] += 1
                    return Verdict(True, name + (" does not end" if answer["hung"] else ""))
        return self._survival(mutant)

    def _survival(self, mutant):
        reaching = len(self.by_number[mutant.number])
        return Verdict(False, f"{reaching} tests reach it" if reaching else "no test reaches it")

    def judge(self, mutants, listed, report):
        """Calls report(mutant, verdict) for each mutant. Those that are listed are tried with few tests only."""
        left = list(mutants)
        passes = [(code_page, speed) for speed in range(3) for code_page in self.code_pages]
        for number, (code_page, speed) in enumerate(passes, 1):
            survivors = []

            def judge(worker, mutant):
                if speed > 0 and mutant in listed:
                    verdict = self._survival(mutant)
                else:
                    verdict = self._judge(worker, mutant, speed)
                with self.lock:
                    if verdict.caught or number == len(passes):
                        report(mutant, verdict)
                    else:
                        survivors.append(mutant)

            self._in_parallel(left, judge, code_page)
            left = survivors
            (self.build.folder / f"left{number}").write_text("".join(f"{mutant}\n" for mutant in left), encoding="utf-8")
