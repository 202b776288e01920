"""The program against the floor: both do the same work in turn, some rounds long."""

import dataclasses
import filecmp
import shutil
import typing

from figures import Figure, print_table, ratios
from programs import command_line, milliseconds, windows_path


@dataclasses.dataclass(frozen=True)
class Row:
    name: str
    workload: dict
    goal: str
    program: typing.Callable  # The command line for a folder.
    floor: typing.Callable
    same: tuple = ()  # What both must have written alike, below their folders.
    prepare: typing.Callable = None  # Puts something into the folder before.
    check: typing.Callable = None  # Of the program's folder, that the work was done.
    is_work_kept: bool = False  # Only read, so that one folder serves all rounds.


def export(folder):
    return command_line("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive")


def floor(kind, *arguments):
    return lambda folder: command_line("larkspan_floor.exe", kind, windows_path(folder), *arguments)


def scan(folder):
    return command_line("larkspan.exe", "-s", "<Local>", "-scan", "-o", windows_path(folder))


STARTS = 20


def worker_starts(folder):
    worker = command_line("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-l",
                          "00000001")
    return command_line("larkspan_floor.exe", "start", STARTS).strip() + f" {quoted(worker)}"


def runtime_starts(_):
    return command_line("larkspan_floor.exe", "start", STARTS) + \
        f" {quoted(command_line('larkspan_floor.exe', 'runtime'))}"


def quoted(line):
    return '"' + line.replace('"', '\\"') + '"'


def put_finished_list(folder):
    """A worker that goes on behind the only note of its list has nothing to do."""
    (folder / "idtable.txt").write_text("00000001\r\n")


def put_export(workload):
    def put(folder):
        milliseconds(export(folder), workload)
    return put


def check_crashes(count):
    def check(folder):
        log = (folder / "log.txt").read_text()
        if log.count("Major: Incomplete run detected") != count:
            raise SystemExit(f"bench: not {count} crashes: {log}")
    return check


def verify(folder):
    return command_line("larkspan-console.exe", "verify", windows_path(folder))


NOTES = ("data", "unidindex.txt")


def rows(part):
    """`part` divides how much there is to do."""
    small = {"notes": 10000 // part, "chunkBytes": 2048}
    return [
        Row(f"{small['notes']:,} notes of one chunk of 2 KB", small, "1.05",
            export, floor("notes", 0), NOTES),
        Row(f"{500 // part} notes of twenty chunks of 32 KB",
            {"notes": 500 // part, "chunks": 20, "chunkBytes": 32768}, "1.05",
            export, floor("notes", 0), NOTES),
        Row(f"one note of {8000 // part:,} chunks of 64 KB",
            {"notes": 1, "chunks": 8000 // part, "chunkBytes": 65535}, "1.05",
            export, floor("notes", 0), NOTES),
        Row(f"5 views of {100000 // part:,} entries in 4 columns",
            {"views": 5, "entries": 100000 // part, "columns": 4}, "1.25",
            export, floor("views"), ("views",)),
        Row(f"10 views of {10000 // part:,} entries in 20 columns",
            {"views": 10, "entries": 10000 // part, "columns": 20}, "1.25",
            export, floor("views"), ("views",)),
        Row(f"1 view of {100000 // part:,} entries in 4 columns, printed in memory",
            {"views": 1, "entries": 100000 // part, "columns": 4}, "",
            export, floor("views-in-memory"), ("views",)),
        Row(f"scan of {20000 // part:,} lines", {"databases": 20000 // part}, "1.25",
            scan, floor("listing"), ("scan.txt",)),
        Row(f"scan of {1000000 // part:,} lines", {"databases": 1000000 // part}, "1.25",
            scan, floor("listing"), ("scan.txt",)),
        Row(f"scan of {1000000 // part:,} lines, against one write of the system each",
            {"databases": 1000000 // part}, "",
            scan, floor("listing-by-system"), ("scan.txt",)),
        Row("20 crashes, each to the next note",
            {"notes": 20, "crashes": 1, "chunkBytes": 2048}, "",
            export, floor("crashes"), check=check_crashes(20)),
        Row(f"{STARTS} starts of a worker that has nothing to do", {}, "",
            worker_starts, runtime_starts, prepare=put_finished_list),
        Row(f"`verify` of {small['notes']:,} notes of 2 KB", small, "",
            verify, floor("read"), prepare=put_export(small), is_work_kept=True),
    ]


class Rounds:
    """What both took, round for round. Who is first changes from round to round."""

    def __init__(self, row, folder):
        self.row = row
        self.folders = {"program": folder / "program", "floor": folder / "floor"}
        self.taken = {"program": [], "floor": []}

    def run(self, count):
        for number in range(count):
            for side in sorted(self.folders, reverse=number % 2 == 0):
                self._run_side(side)
            self._compare()
        self._remove()

    def _run_side(self, side):
        folder = self.folders["program" if self.row.is_work_kept else side]
        if not (self.row.is_work_kept and folder.exists()):
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir(parents=True)
            if self.row.prepare:
                self.row.prepare(folder)
        line = (self.row.program if side == "program" else self.row.floor)(folder)
        self.taken[side].append(milliseconds(line, self.row.workload))

    def _compare(self):
        for name in self.row.same:
            compare(self.folders["program"] / name, self.folders["floor"] / name)
        if self.row.check:
            self.row.check(self.folders["program"])

    def _remove(self):
        for folder in self.folders.values():
            shutil.rmtree(folder, ignore_errors=True)


def compare(one, other):
    """The figures mean nothing where the two did not do the same."""
    if one.is_file():
        if not filecmp.cmp(one, other, shallow=False):
            raise SystemExit(f"bench: {one.name} differs from the floor's")
        return
    names = sorted(path.name for path in one.iterdir())
    if not names or names != sorted(path.name for path in other.iterdir()):
        raise SystemExit(f"bench: {one.name} has other files than the floor's")
    for name in names:
        compare(one / name, other / name)


def measure(folder, part, count, wanted):
    chosen = [row for row in rows(part)
              if not wanted or any(word in row.name for word in wanted)]
    if not chosen:
        raise SystemExit(f"bench: no row has {' or '.join(sorted(wanted))} in its name")
    lines = []
    for row in chosen:
        rounds = Rounds(row, folder)
        rounds.run(count)
        taken = rounds.taken
        lines.append([row.name, Figure.of(taken["program"]).text(0),
                      Figure.of(taken["floor"]).text(0),
                      ratios(taken["program"], taken["floor"]).text(2), row.goal])
    print_table(["work", "program, ms", "floor, ms", "ratio", "goal"], lines)
