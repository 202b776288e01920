"""Starts the programs of the bench, and tells what they take."""

import os
import pathlib
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = ROOT / "build/mingw-x64-release/bin/bench"
LIMIT = 3600  # Seconds until a run is given up.


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def command_line(program, *arguments):
    """As a Windows program starts another one: the program beside it, arguments in quotes."""
    quoted = [f'"{argument}"' if " " in argument else argument for argument in map(str, arguments)]
    return " ".join([f'"{windows_path(PROGRAMS / program)}"', *quoted])


def _environment(workload):
    words = " ".join(f"{name}={number}" for name, number in workload.items())
    return {**os.environ, "LARKSPAN_WORKLOAD": words}


def start(program, *arguments, workload, is_read=False):
    """A process that is not waited for; its output goes nowhere, if it is not to be read."""
    return subprocess.Popen([ROOT / "scripts/run-windows", program, *map(str, arguments)],
                            cwd=PROGRAMS, env=_environment(workload), stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE if is_read else subprocess.DEVNULL,
                            text=True)


def milliseconds(line, workload):
    """From the start of a program to its good end, told by a Windows program that starts it."""
    run = subprocess.run([ROOT / "scripts/run-windows", "larkspan_floor.exe", "time", line],
                         cwd=PROGRAMS, env=_environment(workload), stdin=subprocess.DEVNULL,
                         capture_output=True, text=True, timeout=LIMIT)
    if run.returncode != 0:
        raise SystemExit(f"bench: {line} failed: {run.stderr.strip()}")
    # What the program itself prints stands before.
    return int(run.stdout.split()[-1]) / 1000


class _Processes:
    """What is looked at of the processes of an export into a folder."""

    def __init__(self):
        self.supervisor = 0
        self.worker = 0

    def look(self):
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                arguments = (folder / "cmdline").read_bytes()
                if self._is_one(arguments):
                    self._take(folder, arguments)
            except (FileNotFoundError, ProcessLookupError):
                continue  # It has ended meanwhile.

    def look_until(self, is_done):
        end = time.monotonic() + LIMIT
        while not is_done():
            if time.monotonic() > end:
                raise TimeoutError("a run whose memory is measured does not end")
            self.look()
            time.sleep(0.02)

    def _take_peak(self, arguments, peak):
        if b"\0-l\0" in arguments:
            self.worker = max(self.worker, peak)
        else:
            self.supervisor = max(self.supervisor, peak)


def _bytes_of(folder, name):
    """A number of /proc that is told in KB; 0 of a process that has ended."""
    for line in (folder / "status").read_text().splitlines():
        if line.startswith(f"{name}:"):
            return int(line.split()[1]) * 1024
    return 0


class PeakMemory(_Processes):
    """The most memory, in bytes, that the processes of an export into a folder had."""

    def __init__(self, folder):
        super().__init__()
        self.argument = f"\0{windows_path(folder)}\0".encode()
        self.processes = set()

    def _is_one(self, arguments):
        return b"larkspan.exe" in arguments and self.argument in arguments

    def _take(self, folder, arguments):
        self.processes.add(int(folder.name))
        self._take_peak(arguments, _bytes_of(folder, "VmHWM"))


class CrewMemory(_Processes):
    """The same with the console program, whose workers are at work below the folder too."""

    def __init__(self, folder):
        super().__init__()
        self.argument = f"\0{windows_path(folder)}".encode()
        self.console = 0
        self.together = 0
        self._now = 0

    def look(self):
        self._now = 0
        super().look()
        self.together = max(self.together, self._now)

    def _is_one(self, arguments):
        return self.argument + b"\0" in arguments or self.argument + b"\\" in arguments

    def _take(self, folder, arguments):
        self._now += _bytes_of(folder, "VmRSS")
        peak = _bytes_of(folder, "VmHWM")
        if b"larkspan-console.exe" in arguments:
            self.console = max(self.console, peak)
        else:
            self._take_peak(arguments, peak)
