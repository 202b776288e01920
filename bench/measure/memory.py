"""How much memory a note costs: the peak of two runs, of which one has many more notes."""

import contextlib
import os
import shutil
import signal

from figures import print_table
from programs import PeakMemory, start, windows_path

EXPORTED = 50  # Notes after which the run of a long list is ended.


def _peaks_of_beginning(folder, notes):
    """Supervisor and first worker, from their start until some notes are exported."""
    run = start("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive",
                workload={"notes": notes, "chunkBytes": 2048})
    memory = PeakMemory(folder)
    data = folder / "data"
    memory.look_until(lambda: data.is_dir() and len(os.listdir(data)) >= EXPORTED)
    memory.look()
    for process in sorted(memory.processes):  # The supervisor, which is older, is first.
        with contextlib.suppress(ProcessLookupError):  # A short run has ended by itself.
            os.kill(process, signal.SIGKILL)
    run.wait()
    return {"supervisor": memory.supervisor, "first worker": memory.worker}


def _peaks_of_end(folder, notes):
    """A worker that goes on near the end of the list."""
    (folder / "data").mkdir(exist_ok=True)
    (folder / "idtable.txt").write_text("".join(f"{n:08X}\r\n" for n in range(1, notes + 1)))
    behind = notes - EXPORTED
    run = start("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive", "-l",
                f"{behind:08X}", workload={"notes": notes, "chunkBytes": 2048})
    memory = PeakMemory(folder)
    memory.look_until(lambda: run.poll() is not None)
    if not (folder / "data" / f"{notes:08X}.dxl").exists():
        raise SystemExit("bench: the worker whose memory is measured did not come to its end")
    return {"worker that goes on": memory.worker}


def _peaks(folder, notes):
    peaks = {}
    for part in (_peaks_of_beginning, _peaks_of_end):
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        peaks.update(part(folder, notes))
    shutil.rmtree(folder)
    return peaks


def _peaks_of_run(folder, notes):
    """Supervisor and worker of a whole export."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    run = start("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive",
                workload={"notes": notes, "chunkBytes": 2048})
    memory = PeakMemory(folder)
    memory.look_until(lambda: run.poll() is not None)
    if len(os.listdir(folder / "data")) != notes:
        raise SystemExit("bench: the export whose memory is measured is not whole")
    shutil.rmtree(folder)
    return {"supervisor": memory.supervisor, "worker": memory.worker}


def print_peaks(head, few, many, of_few, of_many):
    lines = [[process, f"{of_few[process] / 1024:,.0f}", f"{of_many[process] / 1024:,.0f}",
              f"{(of_many[process] - of_few[process]) / (many - few):.2f}", "16"]
             for process in of_few]
    print_table([head, f"peak at {few:,} notes, KB", f"at {many:,} notes, KB",
                 "bytes a note", "goal"], lines)


def measure(folder, few, many):
    """Of one run each. Whole exports have as many notes as the fewer, and a tenth of them."""
    tenth = few // 10
    print_peaks("whole exports", tenth, few,
                _peaks_of_run(folder / f"memory-of-{tenth}", tenth),
                _peaks_of_run(folder / f"memory-of-{few}", few))
    print_peaks("long lists", few, many, _peaks(folder / f"memory-{few}", few),
                _peaks(folder / f"memory-{many}", many))
