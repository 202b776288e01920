#!/usr/bin/env python3
"""Makes the folder of a release and its ZIP of what is built. scripts/package calls it.

Usage: assemble.py VERSION EPOCH FOLDER    EPOCH: the time in the ZIP, in seconds since 1970
"""

import pathlib
import shutil
import sys

from archive import write_sums, write_zip
from components import CONSOLE, EXPORTER, components
from notices import write_notices
from pages import write_pages
from sbom import write_sbom

ROOT = pathlib.Path(__file__).resolve().parents[2]
PRESETS = {"x64": "mingw-x64-release", "x86": "mingw-x86-release"}
PROGRAMS = [f"{word}/{name}" for word in PRESETS for name in (EXPORTER, CONSOLE)]


def copy_programs(folder):
    for program in PROGRAMS:
        word, name = program.split("/")
        (folder / word).mkdir(exist_ok=True)
        shutil.copyfile(ROOT / "build" / PRESETS[word] / "bin" / name, folder / program)


def main(version, epoch, out):
    epoch = int(epoch)
    name = f"larkspan-{version}-windows"
    folder = pathlib.Path(out) / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    parts = components(ROOT)
    copy_programs(folder)
    write_pages(ROOT, folder)
    write_notices(folder / "third-party", parts)
    write_sbom(folder / "larkspan.spdx.json", folder, PROGRAMS, parts, version, epoch)
    write_sums(folder)
    write_zip(folder, pathlib.Path(out) / f"{name}.zip", epoch)


main(*sys.argv[1:])
