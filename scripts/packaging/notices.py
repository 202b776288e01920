"""The third-party notices: Debian's copyright files as they are, and the licences they point to."""

import pathlib
import re

COMMON_LICENCES = pathlib.Path("/usr/share/common-licenses")

PREFACE = """The programs of this release hold code of others. Each file here is what Debian's copyright file of
the package says, unchanged; it tells of the whole source package, of which the programs hold a part.
Where it points to a text below /usr/share/common-licenses, that text is in licenses.

"""


def write_notices(folder, components):
    folder.mkdir()
    for component in components:
        (folder / f"{component.name}.txt").write_bytes(component.copyright.read_bytes())
    (folder / "README.txt").write_text(PREFACE + _table(components), encoding="utf-8")
    _write_licences(folder / "licenses", components)


def _table(components):
    lines = []
    for component in components:
        programs = " and ".join(component.programs)
        lines.append(f"{component.name}.txt: version {component.version}, of Debian's source package "
                     f"{component.source}; in {programs}\n")
    return "".join(lines)


def _write_licences(folder, components):
    folder.mkdir()
    for name in sorted(_named_licences(components)):
        (folder / f"{name}.txt").write_bytes((COMMON_LICENCES / name).read_bytes())


def _named_licences(components):
    names = set()
    for component in components:
        text = component.copyright.read_text(encoding="utf-8")
        names.update(name.rstrip(".") for name in
                     re.findall(r"/usr/share/common-licenses/([\w.-]+)", text))
    return names
