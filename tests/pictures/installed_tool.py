"""cordelctl with documents of its own, in a folder that goes again."""

import os
import pathlib
import shutil
import subprocess
import tempfile

SOURCES = pathlib.Path(__file__).resolve().parents[2]


class InstalledTool:
    def __init__(self, program):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="cordelctl-pictures-"))
        install = self.folder / "install"
        install.mkdir()
        self.program = shutil.copy(program, install)
        shutil.copytree(SOURCES / "samples" / "Cordelbox", install / "Cordelbox")
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.folder / "user"), CORDELCTL_HISTORY="0")
        self.run("init")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def run(self, *arguments, statuses=(0,)):
        """Runs a command, which must end with one of the statuses, and returns what it prints."""
        words = [self.program, *map(str, arguments)]
        ended = subprocess.run(words, env=self.environment, capture_output=True, text=True, check=False)
        if ended.returncode not in statuses:
            raise SystemExit(f"cordelctl {arguments[0]} ended with {ended.returncode}: {ended.stderr}")
        return ended.stdout

    def user_document(self, name):
        return next((self.folder / "user").rglob(name))

    def page(self):
        file = self.folder / "page.html"
        self.run("report", file)
        return file
