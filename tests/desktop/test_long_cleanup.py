"""Cleanups that take long, and cleanups that are ended in the middle."""

import os
import signal

from case import wait_for
from cleanup_case import DATABASES, PRIVACY, QUARANTINE, SAFER, CleanupCase


class LongCleanup(CleanupCase):
    def hold_databases(self):
        """Deleting takes as long as this command, which the cleanup waits for: until the file that is returned goes."""
        gate = self.desktop.folder / "gate"
        gate.touch()
        command = self.home / "bin/sqlite3"
        command.parent.mkdir()
        command.write_text(f"#!/bin/sh\nwhile [ -e '{gate}' ]; do sleep 0.1; done\nexec /usr/bin/sqlite3 \"$@\"\n")
        command.chmod(0o755)
        self.desktop.environment["PATH"] = f"{command.parent}:{self.desktop.environment['PATH']}"
        return gate

    def progress(self):
        """What the progress window says, line by line."""
        for application in self.tray.accessibility.root.children():
            for window in application.children():
                texts = window.texts("label")
                if any(text.startswith("Cleaning up: ") for text in texts):
                    return texts
        return None

    def test_counts_what_is_gone_so_far(self):
        self.fill_home()
        (self.home / QUARANTINE).unlink()  # so that Firefox is the first to wait for a database
        gate = self.hold_databases()
        self.start()
        before = self.facts()
        items = PRIVACY["Safari"][-1] + PRIVACY["Google Chrome"][-1]
        gone = [path for path in before if any(path == item or path.startswith(item + "/") for item in items)]
        self.tray.choose("Protect Privacy", "Clear All")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        _, counts = wait_for("the progress of Firefox", lambda: self.lines_about("Firefox"))
        self.assertRegex(counts, f"^{len(gone)} items, [0-9]+ (bytes|KB) so far$")
        self.assertEqual([path for path in gone if os.path.lexists(self.home / path)], [])
        gate.unlink()
        self.press(self.wait_for_alert("Cleanup successful. Logout Required."), "OK")

    def lines_about(self, target):
        lines = self.progress()
        return lines if lines and lines[0] == f"Cleaning up: {target}" else None

    def test_shows_its_progress_and_keeps_answering(self):
        self.fill_home()
        gate = self.hold_databases()
        self.start()
        before = self.facts()
        self.tray.choose("Protect Privacy", "Finder")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        window = wait_for("the progress window", lambda: self.screen.windows_of(self.tray.pid))[0]
        self.assertEqual(window.title(), "Harbor Tray")
        self.assertIn("Protect Privacy", self.tray.menu().labels())
        self.tray.choose("Free Disk Space", "Delete All")
        self.screen.close_window(window)
        self.assertIn("Protect Privacy", self.tray.menu().labels())
        self.assertEqual(self.screen.windows_of(self.tray.pid), [window])
        self.assertEqual(self.facts(), before)
        gate.unlink()
        self.answer_alert("Cleanup successful", SAFER, "OK")
        wait_for("no window", lambda: not self.screen.windows_of(self.tray.pid))
        self.assert_only_gone(before, [], DATABASES["Finder"])

    def test_that_is_killed_has_touched_nothing_else(self):
        self.fill_home()
        caches = self.home / "Library/Caches"
        for folder in range(300):
            (caches / f"many{folder}").mkdir()
            for number in range(150):
                # A link has a size and takes no block to write.
                (caches / f"many{folder}/{number}").symlink_to("nowhere")
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.grant()
        dialog = self.wait_for_alert("Confirm Cleanup")
        entries = len(os.listdir(caches))
        dialog.find("push button", "Clear").press()
        while len(os.listdir(caches)) == entries:
            self.assertTrue(self.tray.is_running())
        self.tray.stop(signal.SIGKILL)
        self.assertTrue(os.listdir(caches), "the cleanup had ended before it was killed")

        def outside(facts):
            return {path: fact for path, fact in facts.items() if not path.startswith("Library/Caches")}

        self.assertEqual(outside(self.facts()), outside(before))
        self.tray.start()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assertEqual(os.listdir(caches), [])
        self.assertEqual(outside(self.facts()), outside(before))
