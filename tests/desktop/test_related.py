"""The related files of an application on the command line."""

import json
import os

from reviewing import UninstallerCase


class Related(UninstallerCase):
    def start(self):
        """Not at all: the command needs no program that runs, and no display."""
        self.environment = {key: value for key, value in self.desktop.environment.items() if key != "DISPLAY"}

    def facts(self):
        return sorted(
            (str(path), path.lstat().st_size, path.lstat().st_mtime_ns) for path in self.desktop.home.rglob("*")
        )

    def test_lists_them_as_the_review_does_and_changes_nothing(self):
        before = self.facts()
        answer = self.desktop.run(self.tray.path, "--related", str(self.entry), "--json", env=self.environment)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertEqual(
            json.loads(answer.stdout),
            [
                {"path": str(self.entry), "bytes": os.path.getsize(self.entry), "isFolder": False},
                {"path": str(self.preferences), "bytes": 8, "isFolder": False},
                {"path": str(self.support), "bytes": 1000, "isFolder": True},
            ],
        )
        table = self.desktop.run(self.tray.path, "--related", str(self.entry), env=self.environment).stdout
        items = [line.split(maxsplit=3)[3] for line in table.splitlines()[1:]]
        self.assertEqual(items, [str(self.entry), str(self.preferences), f"{self.support}/"])
        self.assertEqual(self.facts(), before)
