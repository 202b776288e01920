"""The test programs of a copy of the checkout: what builds, runs and ends them."""

import dataclasses
import os
import re
import resource
import shutil
import subprocess
import sys
import time

BYTES_OF_MEMORY = 4 << 30
SECONDS_MORE = 60
TIMES_LONGER = 4


@dataclasses.dataclass
class Program:
    """A test program, the folder of its tests, the processes it is run in, its arguments, and the
    time that takes without a change."""

    preset: str
    name: str
    tests: str
    processes: int
    arguments: tuple = ()
    seconds: float = 0.0

    def command(self, copy):
        if self.preset == "native":
            return [f"./{self.name}"]
        return [copy / "scripts/run-windows", f"./{self.name}.exe", *self.arguments]


# What is quick to build comes first.
QUICK_PROGRAMS = [
    Program("mingw-x64", "larkspan_reader_tests", "tests/readers", 1),
    Program("mingw-x64", "larkspan_unit_tests", "tests/unit", 2),
    Program("native", "larkspan_reader_tests", "tests/readers", 1),
]
SLOW_PROGRAMS = [Program("mingw-x64", "larkspan_system_tests", "tests/system", 3)] + [
    Program("mingw-x64", "larkspan_torture", "tests/torture", 1,
            (sweep, "--subject=archive", "--sample=1"))
    for sweep in ("faults", "files")
]


def build(copy, program):
    command = ["cmake", "--build", copy / "build" / program.preset, "--target", program.name]
    return subprocess.run(command, cwd=copy, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          check=False).returncode == 0


def tell_wine_server(copy, option):
    script = f'root={copy}; . scripts/wine-environment; "$larkspan_wineserver" {option}'
    subprocess.run(["bash", "-c", script], cwd=copy, check=False, stderr=subprocess.DEVNULL)


def start_server(copy):
    """Keeps the server of all Windows programs up while a change is built."""
    tell_wine_server(copy, "--persistent=300")


def end_programs(copy):
    """Ends all that runs in the copy's Wine prefix, and clears away what it left behind."""
    tell_wine_server(copy, "-k")
    for folder in (copy / "build/wine/drive_c/users").glob("**/Temp/larkspan*"):
        shutil.rmtree(folder, ignore_errors=True)
    start_server(copy)


def limit_memory():
    """For programs without a sanitizer, which maps far more than it uses."""
    resource.setrlimit(resource.RLIMIT_DATA, (BYTES_OF_MEMORY, BYTES_OF_MEMORY))


def start_processes(copy, program, count, test_filter):
    processes = []
    for index in range(count):
        environment = {**os.environ, "GTEST_TOTAL_SHARDS": str(count),
                       "GTEST_SHARD_INDEX": str(index), "GTEST_FAIL_FAST": "1",
                       "GTEST_BRIEF": "1", "GTEST_FILTER": test_filter}
        processes.append(subprocess.Popen(
            program.command(copy), cwd=copy / "build" / program.preset / "bin", env=environment,
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=None if program.preset == "native" else limit_memory))
    return processes


def wait_for_all(processes, deadline):
    """"passed", or how they failed; returns as soon as one fails, or when time is up."""
    while True:
        codes = [process.poll() for process in processes]
        if any(code not in (None, 0) for code in codes):
            return "failed"
        if all(code == 0 for code in codes):
            return "passed"
        if time.monotonic() > deadline:
            return "timeout"
        time.sleep(0.05)


def run_tests(copy, program, test_filter="*"):
    count = program.processes if test_filter == "*" else 1
    limit = TIMES_LONGER * program.seconds + SECONDS_MORE if program.seconds else 900
    processes = start_processes(copy, program, count, test_filter)
    ending = wait_for_all(processes, time.monotonic() + limit)
    if ending != "passed":
        if ending == "timeout" or program in SLOW_PROGRAMS or count > 1:
            end_programs(copy)
        for process in processes:
            process.kill()
            process.wait()
    return ending


def near_tests(copy, program, path):
    """A filter of the program's test suites in files that name or include the changed file; empty
    when there are none."""
    include = f'#include "{path.with_suffix(".h")}"'
    suites = set()
    for test in (copy / program.tests).glob("**/*Test.*"):
        text = test.read_text(encoding="utf-8")
        if test.name.startswith(path.stem) or include in text:
            suites.update(re.findall(r"^TEST(?:_F|_P)?\((\w+)", text, re.MULTILINE))
    return ":".join(f"*{suite}.*" for suite in sorted(suites))


def runs_for(copy, programs, path):
    """Programs with the filters of their tests, in the order in which they are run."""
    for program in programs:
        test_filter = near_tests(copy, program, path)
        if test_filter:
            yield program, test_filter
    for program in programs:
        yield program, "*"


def run_unchanged(copy, programs):
    for program in programs:
        if not build(copy, program):
            sys.exit("mutate: the code does not build without a change")
        start = time.monotonic()
        if run_tests(copy, program) != "passed":
            sys.exit(f"mutate: {program.name} fails without a change")
        program.seconds = time.monotonic() - start
        print(f"{program.preset} {program.name}: {program.seconds:.0f} s", flush=True)
