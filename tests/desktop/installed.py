"""Uses the installed package as its user does: from the menu entry under a panel, then by a login. packaging/try-package runs it."""

import os
import signal
import unittest
from pathlib import Path

from accessibility import STATE_CHECKED
from case import PANEL_BOX, QUIET, DesktopCase
from waiting import pid_on_bus, wait_for

ENTRY = "/usr/share/applications/com.tidewell.HarborTray.desktop"
PROGRAM = "com.tidewell.HarborTray"
LAUNCHER = "harbor-tray-launcher"


def processes(name):
    """The processes of this user that run a program of that name."""
    found = []
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            if Path(os.readlink(folder / "exe")).name == name:
                found.append(int(folder.name))
        except OSError:
            continue
    return found


class Started:
    """The program as somebody else started it."""

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        return None if Path(f"/proc/{self.pid}").exists() else 0


class Installed(DesktopCase):
    starts_program = False
    settings = QUIET

    def take(self, name):
        folder = Path(os.environ["HARBOR_EVIDENCE"])
        folder.mkdir(parents=True, exist_ok=True)
        self.screen.settled_picture().save(folder / f"{name}.png")

    def adopt(self):
        """Takes the program that has been started for the one under test."""

        def owner():
            return self.desktop.bus.name_has_owner(PROGRAM) and pid_on_bus(self.desktop.bus, PROGRAM)

        self.tray.process = Started(wait_for("the program on the bus", owner))
        self.tray.wait_for_icon()
        wait_for("one program", lambda: processes("harbor-tray") == [self.tray.pid])

    def quit(self):
        self.tray.choose("Quit")
        wait_for("the program to end", lambda: not processes("harbor-tray"))

    def switch(self):
        for application in self.tray.accessibility.root.children():
            if found := application.find("check box", "Launch at Login"):
                return found
        return None

    def test_starts_from_its_menu_entry_and_at_login(self):
        before = self.screen.settled_picture(PANEL_BOX)
        self.desktop.spawn("dex", ENTRY)
        self.adopt()
        self.icon = wait_for("the icon on the panel", lambda: before.difference(self.screen.picture(PANEL_BOX)))
        self.click_icon()
        self.take("from-the-menu-entry")
        self.tray.close_popups()

        self.tray.choose("Preferences")
        switch = wait_for("the switch", self.switch)
        switch.press()
        wait_for("the tick", lambda: switch.has_state(STATE_CHECKED))
        self.take("launch-at-login")
        self.assertEqual([entry.name for entry in (self.desktop.config / "autostart").iterdir()],
                         ["com.tidewell.LauncherApplication.desktop"])
        self.quit()

        self.desktop.spawn("dex", "--autostart", "--environment", "XFCE", log="login")
        self.adopt()
        wait_for("the helper to go", lambda: not processes(LAUNCHER))
        self.assertEqual(processes("harbor-tray"), [self.tray.pid])
        self.take("after-login")
        os.kill(self.tray.pid, signal.SIGTERM)
        wait_for("the program to end", lambda: not processes("harbor-tray"))


if __name__ == "__main__":
    unittest.main()
