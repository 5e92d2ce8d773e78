"""What the desktop tests share. The program is named by HARBOR_TRAY, the folder for evidence by HARBOR_EVIDENCE."""

import os
import plistlib
import time
import unittest
from pathlib import Path

from desktop import Desktop, OtherProgram
from program import HarborTray
from screen import center
from waiting import wait_for

QUIET = {"StartMessageAlertSuppression": True}
RECORDING = {**QUIET, "ClipboardEnabled": True}
PANEL_BOX = (640, 0, 1280, 30)  # the half of the panel without the task bar


def with_history(*texts, **values):
    """Settings with these texts in the history, newest first."""
    return {**RECORDING, "ClipboardContent": plistlib.dumps(list(texts), fmt=plistlib.FMT_BINARY), **values}


def let_ticks_pass():
    """Time for the clipboard tools to do what they must not do: more than two ticks of either."""
    time.sleep(2.2)


class DesktopCase(unittest.TestCase):
    """Each test has a desktop of its own; what it looked like is kept when the test fails."""

    maxDiff = None
    settings = QUIET
    desktop_options = {}
    starts_program = True

    def setUp(self):
        self.desktop = Desktop(**self.desktop_options)
        self.addCleanup(self.desktop.close)
        self.screen = self.desktop.screen
        self.tray = HarborTray(self.desktop, os.environ["HARBOR_TRAY"])
        try:
            if self.settings:
                self.tray.write_settings(self.settings)
            if self.starts_program:
                self.start()
        except BaseException:
            self._keep_evidence()
            raise

    def _callTestMethod(self, method):
        try:
            method()
        except BaseException:
            self._keep_evidence()
            raise

    def _keep_evidence(self):
        folder = os.environ.get("HARBOR_EVIDENCE")
        if folder:
            self.desktop.keep_evidence(Path(folder) / self.id())

    def start(self):
        """Starts the program and remembers where its icon appears on the panel."""
        before = self.screen.settled_picture(PANEL_BOX)
        self.tray.start()
        self.icon = wait_for("the icon on the panel", lambda: before.difference(self.screen.picture(PANEL_BOX)))

    def click_icon(self, button=1):
        """Clicks the icon on the panel and waits for the menu."""
        self.screen.click(*center(self.icon), button)
        return self.tray.wait_for_popup()

    def notes(self, name="Notes"):
        """Another program, in front, to copy from."""
        return OtherProgram(self.desktop, name)

    def copy_and_record(self, program, *texts):
        """Copies texts one after another, each as soon as the one before stands in the history."""
        for text in texts:
            program.copy(text)
            wait_for(f"{text!r} in the history", lambda newest=text: self.tray.history()[:1] == [newest])

    def menu_entry(self, *labels):
        return self.tray.menu().entry(*labels)

    def wait_for_entry(self, what, test, *labels):
        """Waits until an entry, read afresh each time, passes the test, and returns it."""
        found = []

        def passes():
            found[:] = [self.menu_entry(*labels)]
            return test(found[0])

        wait_for(what, passes)
        return found[0]
