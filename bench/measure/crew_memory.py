"""What several workers cost beside the time that they save: the memory and the handles of the
console program and of its workers, at few notes and at many."""

import os
import shutil

from figures import print_table
from memory import print_peaks
from programs import CrewMemory, command_line, start, windows_path
from workers import FIRST_NOTE

WORKERS = 4
_CONSOLE = f"console with {WORKERS} workers"
_WORKER = f"one of {WORKERS} workers"


class _Run:
    """An export by so many workers, with its peaks. Whole, or ended where its parts are joined: of a
    long list that takes an hour under Wine, which for each name looks through the whole folder."""

    def __init__(self, folder, notes, workers, is_whole):
        shutil.rmtree(folder, ignore_errors=True)
        line = command_line("larkspan-console.exe", "export", "--quiet", "--path", "bench.nsf",
                            "--out", windows_path(folder), "--workers", workers)
        until = "" if is_whole else windows_path(folder / "joined")
        run = start("larkspan_floor.exe", "handles", line, until, is_read=True,
                    workload={"notes": notes, "firstNote": FIRST_NOTE, "chunkBytes": 2048})
        self.memory = CrewMemory(folder)
        self.memory.look_until(lambda: run.poll() is not None)
        if run.returncode != 0 or _count_notes(folder) != notes:
            raise SystemExit("bench: the export whose memory is measured is not whole")
        handles = [int(number) for number in run.stdout.read().split()[-2:]]
        self.handles = dict(zip((_CONSOLE, _WORKER), handles))
        shutil.rmtree(folder)

    def peaks(self):
        return {_CONSOLE: self.memory.console, _WORKER: self.memory.worker}


def _count_notes(folder):
    """Wherever they lie."""
    return sum(name.endswith(".dxl") for path, _, names in os.walk(folder) for name in names
               if path.endswith("/data"))


def _print_flatness(head, folder, few, many, is_whole):
    runs = [_Run(folder / f"crew-{notes}", notes, WORKERS, is_whole) for notes in (few, many)]
    print_peaks(head, few, many, *(run.peaks() for run in runs))
    of_few, of_many = (run.handles for run in runs)
    print_table([head, f"most handles at {few:,} notes", f"at {many:,} notes"],
                [[f"{process}, handles", str(of_few[process]), str(of_many[process])]
                 for process in of_few])


def _print_costs(folder, notes):
    lines = []
    for workers in (1, WORKERS):
        memory = _Run(folder / f"crew-{notes}", notes, workers, True).memory
        peaks = (memory.console, memory.supervisor, memory.worker, memory.together)
        lines.append([f"exported by {workers}",
                      *(f"{peak / 1024:,.0f}" if peak else "none" for peak in peaks)])
    print_table([f"{notes:,} notes", "peak of the console, KB", "supervisor, KB", "one worker, KB",
                 "all at once, KB"], lines)


def measure(folder, few, many):
    """Of one run each. Whole exports have as many notes as the fewer, and a tenth of them."""
    tenth = few // 10
    _print_flatness("whole exports", folder, tenth, few, True)
    _print_flatness("long lists, until their parts are joined", folder, few, many, False)
    _print_costs(folder, few)
