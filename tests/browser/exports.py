"""Exports and reports made by the real programs, for what looks at their pages."""

import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PATIENCE = 300


class Programs:
    """larkspan.exe and larkspan-console.exe of a build, beside the stand-in library."""

    def __init__(self, folder):
        self.folder = folder

    def run(self, program, *arguments):
        """The exit code, what it wrote to standard output, and to standard error."""
        ended = subprocess.run(
            [f"{ROOT}/scripts/run-windows", f"./{program}", *arguments], cwd=self.folder,
            stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE, check=False)
        return (ended.returncode, ended.stdout.decode().replace("\r", ""),
                ended.stderr.decode().replace("\r", ""))

    def export(self, database, out, notes_ini=f"{ROOT}/standin/samples/notes.ini"):
        """An archive of a database, in a folder that is made for it."""
        os.makedirs(out)
        self.run("larkspan.exe", "=" + windows(notes_ini), "-p", database, "-o", windows(out),
                 "-archive")

    def console_export(self, database, out):
        """The same through the console, which keeps a record of the run; its exit code."""
        return self.run("larkspan-console.exe", "export", "--quiet", "--notes-ini",
                        windows(f"{ROOT}/standin/samples/notes.ini"), "--path", database, "--out",
                        windows(out))[0]

    def report(self, out, page):
        """The exit code of the report, once its page is there."""
        code, _, complaint = self.run("larkspan-console.exe", "report", windows(out), "--html",
                                      windows(page))
        if not os.path.exists(page):
            raise RuntimeError(f"no page: exit code {code}, {complaint}")
        return code


def windows(path):
    """A path of this system as the Windows programs know it."""
    return "Z:" + os.path.abspath(path)
