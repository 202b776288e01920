#!/usr/bin/env python3
"""Makes the folder of the fleet's package and its ZIP. scripts/packaging/pack-fleet calls it.

Usage: assemble_fleet.py VERSION EPOCH DIST FOLDER
DIST is what was compiled. The packages that it needs to run are those of fleet/node_modules.
"""

import json
import pathlib
import re
import shutil
import sys

from archive import write_sums, write_zip
from pages import write_pages

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = ("docs/fleet.md",)

# Nothing of it runs: types and maps for those who write programs. Packages within a package come by
# themselves.
NOT_RUN = re.compile(r"\.(?:d\.[cm]?ts|map)$|^node_modules$")
# What is optional is made for one system each, and only makes things faster.
NOT_NEEDED = ("dev", "optional", "devOptional")
TERMS = re.compile(r"^(?:licen[cs]e|copying)", re.IGNORECASE)
TERMS_IN_README = re.compile(r"^#+ *licen[cs]e\b.*", re.IGNORECASE | re.MULTILINE | re.DOTALL)

MIT_TERMS = """Permission is hereby granted, free of charge, to any person obtaining a copy of this software and
associated documentation files (the "Software"), to deal in the Software without restriction,
including without limitation the rights to use, copy, modify, merge, publish, distribute,
sublicense, and/or sell copies of the Software, and to permit persons to whom the Software is
furnished to do so, subject to the following conditions:

The above copyright notice and this permission notice shall be included in all copies or
substantial portions of the Software.

THE SOFTWARE IS PROVIDED "AS IS", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR IMPLIED, INCLUDING BUT
NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY, FITNESS FOR A PARTICULAR PURPOSE AND
NONINFRINGEMENT. IN NO EVENT SHALL THE AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES
OR OTHER LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, ARISING FROM, OUT OF OR IN
CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE SOFTWARE."""

PREFACE = """larkspan-fleet runs with these packages of others. Each chapter begins with the name, the version and
the licence that the package names, and has the text that came with it.
"""


def not_run(_, names):
    return [name for name in names if NOT_RUN.search(name)]


def copy_packages(folder):
    """Fetches nothing: scripts/setup did."""
    fleet = ROOT / "fleet"
    lock = json.loads((fleet / "package-lock.json").read_text(encoding="utf-8"))
    for name, told in lock["packages"].items():
        if not name or any(told.get(word) for word in NOT_NEEDED):
            continue
        about = json.loads((fleet / name / "package.json").read_text(encoding="utf-8"))
        if about["version"] != told["version"]:
            raise SystemExit(f"package-fleet: fleet/{name} is not the one of the lock: call scripts/setup")
        shutil.copytree(fleet / name, folder / name, ignore=not_run)


def packages_of(modules):
    """The folders of all packages, those within packages too."""
    for path in sorted(modules.rglob("package.json")):
        above = path.parent.parent
        if above.name.startswith("@"):
            above = above.parent
        if above.name == "node_modules":
            yield path.parent


def terms_of(package):
    files = sorted(path for path in package.iterdir() if path.is_file() and TERMS.match(path.name))
    if files:
        return "\n".join(path.read_text(encoding="utf-8") for path in files)
    for path in sorted(package.glob("[Rr][Ee][Aa][Dd][Mm][Ee]*")):
        match = TERMS_IN_README.search(path.read_text(encoding="utf-8"))
        if match:
            return match[0]
    return terms_by_name(package)


def terms_by_name(package):
    """Some packages name their licence and bring no text."""
    told = json.loads((package / "package.json").read_text(encoding="utf-8"))
    author = told.get("author", "")
    author = author.get("name", "") if isinstance(author, dict) else author
    if told.get("license") != "MIT" or not author:
        raise SystemExit(f"package-fleet: no terms in {package.name}")
    return f"The package, by {author}, brings no text of its terms. Those of MIT are:\n\n{MIT_TERMS}"


def write_notices(path, modules):
    chapters = [PREFACE]
    for package in packages_of(modules):
        about = json.loads((package / "package.json").read_text(encoding="utf-8"))
        line = f"{about['name']} {about['version']}, {about['license']}"
        rule = "=" * len(line)
        chapters.append(f"{rule}\n{line}\n{rule}\n\n{terms_of(package).strip()}\n")
    path.write_text("\n".join(chapters).replace("\r\n", "\n"), encoding="utf-8")


def write_package_json(path):
    """What a machine needs to know; the rest is for those who build."""
    about = json.loads((ROOT / "fleet/package.json").read_text(encoding="utf-8"))
    kept = ("name", "version", "description", "license", "private", "type", "bin", "engines",
            "dependencies")
    path.write_text(json.dumps({key: about[key] for key in kept}, indent=2) + "\n", encoding="utf-8")


def copy_for_windows(folder):
    for path in sorted((ROOT / "fleet/windows").glob("*.*")):
        if path.suffix in (".cmd", ".txt"):
            text = path.read_text(encoding="utf-8")
            (folder / path.name).write_text(text, encoding="utf-8", newline="\r\n")


def main(version, epoch, dist, out):
    name = f"larkspan-fleet-{version}"
    folder = pathlib.Path(out) / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    shutil.copytree(pathlib.Path(dist) / "src", folder / "dist/src", ignore=not_run)
    copy_packages(folder)
    write_notices(folder / "THIRD-PARTY.txt", folder / "node_modules")
    write_package_json(folder / "package.json")
    copy_for_windows(folder)
    write_pages(ROOT, folder, PAGES)
    write_sums(folder)
    write_zip(folder, folder.with_name(f"{name}.zip"), int(epoch))


main(*sys.argv[1:])
