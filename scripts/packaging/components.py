"""What others wrote and the programs of a release hold: where it came from, and under which terms.

scripts/setup records version and copyright file of what it builds or copies into the prefix. What
comes with the cross compiler is a package of the system.
"""

import dataclasses
import pathlib
import subprocess

PREFIXES = {"x64": "x86_64-w64-mingw32", "x86": "i686-w64-mingw32"}
COMPILER_NAMES = {"x64": "x86-64", "x86": "i686"}
EXPORTER = "larkspan.exe"
CONSOLE = "larkspan-console.exe"


@dataclasses.dataclass(frozen=True)
class Component:
    name: str
    version: str  # Of the package that was used, as Debian counts.
    source: str  # Debian's source package.
    source_version: str
    licence: str  # An SPDX expression; none where the terms are many.
    headers_only: bool
    programs: tuple
    copyright: pathlib.Path


def _from_prefix(root, name, source, recorded, **rest):
    """Of scripts/setup's own prefix, which must be the same for both word sizes."""
    folders = [root / "build/prefix" / prefix / "share/doc" / recorded
               for prefix in PREFIXES.values()]
    version = _the_same(name, [(folder / "version").read_text().strip() for folder in folders])
    _the_same(name, [(folder / "copyright").read_bytes() for folder in folders])
    return Component(name, version, source, version, copyright=folders[0] / "copyright", **rest)


def _from_system(name, source, package, **rest):
    packages = [package.format(word) for word in COMPILER_NAMES.values()]
    copyrights = [pathlib.Path(f"/usr/share/doc/{package}/copyright") for package in packages]
    versions = _the_same(name, [_installed_versions(package) for package in packages])
    _the_same(name, [path.read_bytes() for path in copyrights])
    return Component(name, versions[0], source, versions[1], copyright=copyrights[0], **rest)


def _installed_versions(package):
    """Of a package, and of the source that it was built from."""
    told = subprocess.run(["dpkg-query", "-W", "-f=${Version} ${source:Version}", package],
                          check=True, capture_output=True, text=True).stdout
    return tuple(told.split())


def _the_same(name, values):
    if len(set(values)) != 1:
        raise SystemExit(f"package: {name} is not the same for both word sizes")
    return values[0]


def components(root):
    return [
        _from_prefix(root, "tinyxml2", "tinyxml2", "tinyxml2", licence="Zlib",
                     headers_only=False, programs=(EXPORTER,)),
        _from_prefix(root, "expat", "expat", "expat", licence="MIT",
                     headers_only=False, programs=(CONSOLE,)),
        _from_prefix(root, "CLI11", "cli11", "libcli11-dev", licence="BSD-3-Clause",
                     headers_only=True, programs=(CONSOLE,)),
        _from_prefix(root, "nlohmann-json", "nlohmann-json3", "nlohmann-json3-dev", licence="MIT",
                     headers_only=True, programs=(CONSOLE,)),
        _from_system("gcc-runtime", "gcc-mingw-w64", "g++-mingw-w64-{}-posix",
                     licence="GPL-3.0-or-later WITH GCC-exception-3.1",
                     headers_only=False, programs=(EXPORTER, CONSOLE)),
        _from_system("mingw-w64", "mingw-w64", "mingw-w64-{}-dev", licence="",
                     headers_only=False, programs=(EXPORTER, CONSOLE)),
    ]
