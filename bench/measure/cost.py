"""What a note costs when many are there already: the last notes of a long list, in a folder that
has the files of all the others."""

import shutil

from figures import Figure, print_table, ratios
from programs import command_line, milliseconds, windows_path


def _program(folder, behind):
    return command_line("larkspan.exe", "-p", "bench.nsf", "-o", windows_path(folder), "-archive",
                        "-l", f"{behind:08X}")


def _floor(folder, behind):
    return command_line("larkspan_floor.exe", "notes-worker", windows_path(folder), behind)


def _fill(folder, notes, last):
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "data").mkdir(parents=True)
    for note in range(1, notes - last + 1):
        (folder / "data" / f"{note:08X}.dxl").touch()
    (folder / "idtable.txt").write_text("".join(f"{n:08X}\r\n" for n in range(1, notes + 1)))


def _cost(side, folder, notes, last):
    """Milliseconds a note, without the start and the reading of the list."""
    workload = {"notes": notes, "chunkBytes": 2048}
    nothing = milliseconds(side(folder, notes), workload)
    everything = milliseconds(side(folder, notes - last), workload)
    for note in range(notes - last + 1, notes + 1):
        (folder / "data" / f"{note:08X}.dxl").unlink()
    return (everything - nothing) / last


def measure(folder, few, many, last, rounds):
    sides = {"program": _program, "floor": _floor}
    folders = {notes: folder / f"cost-{notes}" for notes in (few, many)}
    for notes in folders:
        _fill(folders[notes], notes, last)
    costs = {(side, notes): [] for side in sides for notes in folders}
    for number in range(rounds):
        for side, notes in sorted(costs, reverse=number % 2 == 0):
            costs[side, notes].append(_cost(sides[side], folders[notes], notes, last))
    for path in folders.values():
        shutil.rmtree(path)
    lines = [[side, Figure.of(costs[side, few]).text(3), Figure.of(costs[side, many]).text(3),
              ratios(costs[side, many], costs[side, few]).text(2)] for side in sides]
    lines.append(["program to floor"] +
                 [ratios(costs["program", notes], costs["floor", notes]).text(2)
                  for notes in folders] + [""])
    print_table([f"the last {last:,} notes", f"of {few:,}, ms a note", f"of {many:,}, ms a note",
                 "grows by"], lines)
