"""Free Disk Space as its users go through it: questions, result, and what is left at home."""

import json
import os
import shutil

from accessibility import STATE_CHECKED
from cleanup_case import DISK, NOTE, NOT_IN_DELETE_ALL, CleanupCase


class FreeDiskSpace(CleanupCase):
    def confirmation(self, category):
        what = DISK[category][0]
        sentence = f"in order to erase {what}." if what else "in order to empty your Trash."
        return f"Click the Clear button {sentence}{NOTE}"

    def test_empties_what_each_category_names_and_nothing_else(self):
        self.fill_home()
        self.start()
        for number, (category, (_, noun, items)) in enumerate(DISK.items()):
            with self.subTest(category):
                self.fill_home()
                before = self.facts()
                self.tray.choose("Free Disk Space", category)
                if number == 0:
                    self.grant()
                self.answer_alert("Confirm Cleanup", self.confirmation(category), "Clear")
                result = self.wait_for_alert("Cleanup Successful")
                message = next(text for text in result.texts("label") if text.startswith(noun))
                self.assertRegex(
                    message, f"^{noun} with a total size of [0-9,.]+ (bytes|KB|MB) have been successfully cleaned up!$"
                )
                self.press(result, "OK")
                self.assert_only_gone(before, items)
        self.assertEqual(len(self.grants()), 1)

    def delete_all(self, tick):
        self.fill_home()
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Delete All")
        self.grant()
        dialog = self.wait_for_alert("Confirm Cleanup")
        self.assertIn(
            "Click the Clear button in order to erase unneeded data from your system." + NOTE, dialog.texts("label")
        )
        box = dialog.find("check box", "Delete contents of Downloads folder")
        self.assertFalse(box.has_state(STATE_CHECKED))
        if tick:
            self.tray.tick("Delete contents of Downloads folder")
        self.press(dialog, "OK")
        result = self.wait_for_alert("Cleanup Successful")
        message = next(text for text in result.texts("label") if text.startswith("Unneeded data"))
        self.assertRegex(
            message, r"^Unneeded data with a total size of [0-9,.]+ (bytes|KB|MB) has been successfully cleaned up!$"
        )
        self.press(result, "OK")
        categories = [name for name in DISK if name not in NOT_IN_DELETE_ALL] + ["Downloads Folder"] * tick
        self.assert_only_gone(before, [item for name in categories for item in DISK[name][-1]])

    def test_delete_all_leaves_the_downloads(self):
        self.delete_all(tick=False)

    def test_delete_all_takes_the_downloads_when_told_to(self):
        self.delete_all(tick=True)

    def test_says_when_there_was_nothing(self):
        (self.home / "Library/Caches").mkdir(parents=True)
        self.start()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.answer_alert("No data found to delete!", "", "OK")
        self.tray.choose("Free Disk Space", "Delete All")
        self.press(self.wait_for_alert("Confirm Cleanup"), "OK")
        self.answer_alert("No data found to delete!", "", "OK")

    def test_leaves_a_protected_trash(self):
        self.fill_home()
        command = self.home / "bin/csrutil"
        command.parent.mkdir()
        command.write_text("#!/bin/sh\necho 'System Integrity Protection status: enabled.'\n")
        command.chmod(0o755)
        self.desktop.environment["PATH"] = f"{command.parent}:{self.desktop.environment['PATH']}"
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Trash Can")
        self.answer_alert(
            "'Trash Can' Cannot Be Cleaned Up!",
            "The 'Trash Can' cannot be cleaned up because System Integrity Protection (SIP) is enabled on your system.",
            "OK",
        )
        self.assertEqual(self.facts(), before)
        self.tray.choose("Free Disk Space", "Delete All")
        self.answer_alert(
            "All Selections Except the Trash Can Will Be Cleaned Up!",
            "The Trash Can will not be cleaned up because System Integrity Protection (SIP) is enabled on your system.",
            "OK",
        )
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "OK")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        categories = [name for name in DISK if name not in (*NOT_IN_DELETE_ALL, "Trash Can")]
        self.assert_only_gone(before, [item for name in categories for item in DISK[name][-1]])

    def test_measures_and_empties_branches_far_down_in_one_go(self):
        self.fill_home()
        downloads = self.home / "Downloads"
        shutil.rmtree(downloads)
        downloads.mkdir()
        for project in range(8):
            level = downloads / f"project {project}"
            for number in range(18):
                level /= f"level {number}"
                level.mkdir(parents=True)
                for side in range(7 if number % 3 == 0 else 0):
                    (level / f"side {side}").mkdir()
                    (level / f"side {side}/file").write_text("x" * 1000)
        items = [str(path) for path in downloads.rglob("*")]
        self.assertEqual(len(items), 824)
        size = sum(os.lstat(path).st_size for path in items)
        size -= sum(os.lstat(path).st_size for path in downloads.iterdir())  # only what lies in them counts
        before = self.facts()
        answer = self.desktop.run(self.tray.path, "--measure", "--json")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        row = next(row for row in json.loads(answer.stdout) if row["category"] == "Downloads Folder")
        self.assertEqual((row["bytes"], row["items"]), (size, 824))
        self.start()
        self.tray.choose("Free Disk Space", "Downloads Folder")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assertEqual(list(downloads.iterdir()), [])
        self.assert_only_gone(before, [f"Downloads/project {project}" for project in range(8)])

    def test_measures_as_the_standard_tools_do(self):
        self.fill_home()
        before = self.facts()
        without_display = {key: value for key, value in self.desktop.environment.items() if key != "DISPLAY"}
        answer = self.desktop.run(self.tray.path, "--measure", "--json", env=without_display)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        measured = {row["category"]: row for row in json.loads(answer.stdout)}
        self.assertEqual(list(measured), list(DISK))
        for category, (*_, items) in DISK.items():
            size, count = 0, 0
            for path in (str(self.home / item) for item in items):
                size += int(self.desktop.run("du", "-sbl", path).stdout.split()[0])
                if os.path.isdir(path) and not os.path.islink(path):
                    size -= os.lstat(path).st_size  # a folder to remove counts what lies in it
                count += len(self.desktop.run("find", path, "-print0").stdout.split("\0")) - 1
            self.assertEqual((measured[category]["bytes"], measured[category]["items"]), (size, count), category)
        table = self.desktop.run(self.tray.path, "--measure", env=without_display).stdout
        for category in DISK:
            self.assertIn(category, table)
        self.assertEqual(self.facts(), before)
