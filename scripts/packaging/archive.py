"""The sums and the ZIP of a release: the same bytes for the same files, whoever packs them when."""

import hashlib
import time
import zipfile

SUMS = "SHA256SUMS"


def names_of(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*")
                  if path.is_file())


def write_sums(folder):
    lines = [f"{hashlib.sha256((folder / name).read_bytes()).hexdigest()}  {name}\n"
             for name in names_of(folder)]
    (folder / SUMS).write_text("".join(lines), encoding="utf-8")


def write_zip(folder, path, epoch):
    """Names in order, no times, owners or rights but those said here."""
    moment = time.gmtime(epoch)[:6]
    with zipfile.ZipFile(path, "w") as archive:
        for name in names_of(folder):
            entry = zipfile.ZipInfo(name, moment)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = 0o100644 << 16
            archive.writestr(entry, (folder / name).read_bytes(), compresslevel=9)
