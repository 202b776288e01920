"""How much sooner several workers export one database: beside the same export by one worker alone,
without the console. Where the library waits, and where it does not."""

import shutil

from figures import Figure, print_table, ratios
from programs import command_line, milliseconds, windows_path

COUNTS = (1, 2, 4, 8)
# The notes begin behind the first of all IDs, since a list that begins with it is not shared.
FIRST_NOTE = 16


def _alone(folder):
    return command_line("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive")


def _shared(folder, workers):
    return command_line("larkspan-console.exe", "export", "--quiet", "--path", "bench.nsf", "--out",
                        windows_path(folder), "--workers", workers)


def _files(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*")
            if path.is_file() and path.name not in ("outcome.json", "audit.txt")}


def _compare(alone, shared):
    if _files(alone) != _files(shared):
        raise SystemExit("bench: several workers did not leave what one leaves")


def _round(folder, workload, reverse):
    """Milliseconds of one worker alone, then of each number of workers."""
    alone = folder / "alone"
    times = {}
    for count in sorted((0, *COUNTS), reverse=reverse):
        path = folder / f"workers-{count}" if count else alone
        shutil.rmtree(path, ignore_errors=True)
        if count == 0:
            path.mkdir(parents=True)
        times[count] = milliseconds(_shared(path, count) if count else _alone(path), workload)
    for count in COUNTS:
        _compare(alone, folder / f"workers-{count}")
    shutil.rmtree(folder)
    return times


def measure(folder, notes, wait, rounds):
    workload = {"notes": notes, "firstNote": FIRST_NOTE, "chunkBytes": 2048, "wait": wait}
    taken = [_round(folder / "workers", workload, number % 2 == 0) for number in range(rounds)]
    alone = [times[0] for times in taken]
    lines = []
    for count in COUNTS:
        shared = [times[count] for times in taken]
        lines.append([str(count), Figure.of(shared).text(0), Figure.of(alone).text(0),
                      ratios(alone, shared).text(2)])
    told = f", {wait} ms of waiting in each" if wait else ", without waiting"
    print_table([f"workers, {notes:,} notes{told}", "ms", "`larkspan.exe` alone, ms",
                 "times as fast"], lines)
