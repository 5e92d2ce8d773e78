"""Free Disk Space in the places where a Linux desktop keeps things, beside a program that is using some of them."""

import fcntl
import json
import os
import socket
import subprocess

from cleanup_case import DISK, CleanupCase

TRASH = ".local/share/Trash/"
# Category: the files that have to go, and beside each other those that stay.
PLACES = {
    "Application Caches": (
        ["caches/viewer/page", "caches/deep/er/picture", ".var/app/org.example.App/cache/a", "snap/app/common/.cache/b"],
        ["caches/writer/LOCK", "caches/writer/table", "caches/notes/autosave-1", ".var/app/org.example.App/data/c"],
    ),
    "Application Logs": (
        [".local/state/app/app.log", ".local/state/app/app.log.1.gz", ".xsession-errors.old"],
        [".local/state/app/app.db", ".local/state/app/000003.log", ".xsession-errors"],
    ),
    "Partial Downloads": (
        ["Transfers/a.part", "Transfers/deep/b.crdownload", "Transfers/c.opdownload", "Transfers/d.download"],
        ["Transfers/e.zip", "Documents/f.part"],
    ),
    "Downloads Folder": (["Transfers/e.zip", "Transfers/deep"], ["Documents/f.part"]),
    "Crash Reporter Files": (
        [".mozilla/firefox/Crash Reports/pending/1.dmp", ".mozilla/firefox/Crash Reports/submitted/bp-2.txt"],
        [".mozilla/firefox/Crash Reports/InstallTime", ".mozilla/firefox/a.default/places.sqlite"],
    ),
    "Mail Downloads": (["caches/evolution/tmp/letter.pdf"], ["caches/evolution/mail/letter"]),
    "Trash Can": (
        [TRASH + "files/old", TRASH + "info/old.trashinfo", TRASH + "files/folder", TRASH + "info/folder.trashinfo"],
        [".local/share/app/data"],
    ),
}


class LinuxPlaces(CleanupCase):
    def setUp(self):
        super().setUp()
        self.desktop.environment["XDG_CACHE_HOME"] = str(self.home / "caches")
        self.choose_downloads("$HOME/Transfers")
        for go, stay in PLACES.values():
            for item in go + stay:
                self.write(item + "/part" if item.endswith(("/folder", "/deep")) else item)

    def choose_downloads(self, folder):
        (self.desktop.config / "user-dirs.dirs").write_text(f'XDG_DOWNLOAD_DIR="{folder}"\n')

    def use_a_cache(self):
        """A program with a locked database, a socket and a pipe in its cache."""
        folder = self.home / "caches/writer"
        lock = open(folder / "LOCK", "w")
        self.addCleanup(lock.close)
        holder = subprocess.Popen(["sleep", "300"], pass_fds=(lock.fileno(),))
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        fcntl.flock(lock, fcntl.LOCK_EX)
        os.mkfifo(self.home / "caches/pipe")
        server = socket.socket(socket.AF_UNIX)
        self.addCleanup(server.close)
        os.chdir(self.home / "caches")
        server.bind("socket")
        os.chdir("/")

    def measured(self):
        answer = self.desktop.run(self.tray.path, "--measure", "--json")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return {row["category"]: (row["bytes"], row["items"]) for row in json.loads(answer.stdout)}

    def gone_items(self, category):
        """What goes, with the folders that have nothing left in them."""
        extra = {"Application Caches": ["caches/viewer", "caches/deep"]}
        return PLACES[category][0] + extra.get(category, [])

    def test_each_item_takes_them_and_leaves_what_is_in_use(self):
        self.use_a_cache()
        self.start()
        for number, category in enumerate(PLACES):
            with self.subTest(category):
                before = self.facts()
                self.tray.choose("Free Disk Space", category)
                if number == 0:
                    self.grant()
                self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
                result = self.wait_for_alert("Cleanup Successful")
                self.assertTrue([text for text in result.texts("label") if text.startswith(DISK[category][1])])
                self.press(result, "OK")
                self.assert_only_gone(before, [item for item in self.gone_items(category) if item in before])

    def test_measuring_agrees_with_the_standard_tools(self):
        self.use_a_cache()
        measured = self.measured()
        for category, (go, _) in PLACES.items():
            size, count = 0, 0
            for path in (str(self.home / item) for item in go):
                listing = self.desktop.run("find", path, "-type", "f", "-printf", "%s\n").stdout.split()
                size += sum(map(int, listing))
                count += len(self.desktop.run("find", path, "-print0").stdout.split("\0")) - 1
            if category == "Downloads Folder":
                for item in PLACES["Partial Downloads"][0]:
                    if not item.startswith("Transfers/deep/"):
                        size += os.lstat(self.home / item).st_size
                        count += 1
            self.assertEqual(measured[category], (size, count), category)

    def test_a_download_folder_that_is_the_home_folder_is_none(self):
        self.choose_downloads("$HOME/")
        self.start()
        before = self.facts()
        for number, category in enumerate(("Downloads Folder", "Partial Downloads")):
            self.tray.choose("Free Disk Space", category)
            if number == 0:
                self.grant()
            self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
            self.answer_alert("No data found to delete!", "", "OK")
        self.assertEqual(self.facts(), before)
