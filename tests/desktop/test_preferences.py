"""The preferences window, and the way from its switch to the next login."""

import shlex
import unittest
from pathlib import Path

from accessibility import STATE_CHECKED
from case import QUIET, DesktopCase
from waiting import wait_for

LAUNCHER = "com.tidewell.LauncherApplication"
PROGRAM = "com.tidewell.HarborTray"
STATE_ENABLED = 8


class PreferencesCase(DesktopCase):
    def open_preferences(self):
        self.tray.choose("Preferences")
        return self.wait_for_window()

    def windows(self):
        return [window for window in self.screen.windows_of(self.tray.pid) if window.title() == "Preferences"]

    def wait_for_window(self):
        wait_for("the window", self.windows)
        wait_for("the window to be active", self.is_active)
        return self.windows()[0]

    def is_active(self):
        active = self.screen.active_window()
        return active and active.pid() == self.tray.pid

    def node(self, role, text):
        for application in self.tray.accessibility.root.children():
            found = application.find(role, text)
            if found:
                return found
        return None

    def switch(self):
        return wait_for("the switch", lambda: self.node("check box", "Launch at Login"))

    def button(self):
        return wait_for("the button", lambda: self.node("push button", "Reset Warnings"))

    @property
    def entry(self):
        return self.desktop.config / "autostart" / f"{LAUNCHER}.desktop"

    def launches(self):
        return self.tray.settings().get("LaunchAtLoginEnabled", False)


class Window(PreferencesCase):
    settings = {**QUIET, "FocusTintAlertSuppression": True}

    def test_is_one_of_fixed_size_that_fits_a_small_screen(self):
        window = self.open_preferences()
        left, top, right, bottom = window.box()
        self.assertLess(right - left, 1024)
        self.assertLess(bottom - top, 700)
        hints = window.property("WM_NORMAL_HINTS")
        self.assertEqual(tuple(hints[5:7]), tuple(hints[7:9]), "the least size is the largest")
        other = self.notes()
        other.activate()
        self.tray.choose("Preferences")
        wait_for("the window to be in front again", self.is_active)
        self.assertEqual(len(self.windows()), 1)

    def test_is_used_with_the_keyboard_alone(self):
        self.open_preferences()
        self.assertFalse(self.switch().has_state(STATE_CHECKED))
        self.screen.press_key("space")
        wait_for("the setting", self.launches)
        wait_for("the tick", lambda: self.switch().has_state(STATE_CHECKED))
        wait_for("the entry", self.entry.exists)
        self.screen.press_key("space")
        wait_for("the setting to go", lambda: not self.launches())
        wait_for("the entry to go", lambda: not self.entry.exists())

        self.screen.press_key("Tab")
        self.screen.press_key("space")
        wait_for("the reset", lambda: self.tray.settings()["FocusTintAlertSuppression"] is False)
        self.assertIs(self.tray.settings()["StartMessageAlertSuppression"], False)
        wait_for("the button to be disabled", lambda: not self.button().has_state(STATE_ENABLED))

        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows())
        self.assertTrue(self.tray.is_running())
        self.open_preferences()
        self.assertTrue(self.button().has_state(STATE_ENABLED))

    def test_is_used_with_the_mouse(self):
        self.open_preferences()
        left, top, right, bottom = wait_for("the place of the switch", lambda: self.switch().place())
        self.screen.click((left + right) // 2, (top + bottom) // 2)
        wait_for("the setting", self.launches)

    def test_is_used_by_a_screen_reader(self):
        self.open_preferences()
        self.switch().press()
        wait_for("the setting", self.launches)
        wait_for("the tick", lambda: self.switch().has_state(STATE_CHECKED))

    def test_draws_the_switch(self):
        self.open_preferences()
        left, top, right, bottom = wait_for("the place of the switch", lambda: self.switch().place())

        def greens():
            picture = self.screen.settled_picture((left, top, right, bottom))
            colours = [picture.colour(x, y) for x in range(left, right) for y in range(top, bottom)]
            return sum(1 for red, green, blue in colours if green > red + 60 and green > blue + 40)

        self.assertLess(greens(), 20)
        self.screen.press_key("space")
        wait_for("the setting", self.launches)
        wait_for("the green of a switch that is on", lambda: greens() > 200)


class Login(PreferencesCase):
    def log_in_again(self):
        """Ends the program and runs what the autostart entry says, as a desktop does."""
        self.tray.stop()
        wait_for("the program to go", lambda: not self.desktop.bus.name_has_owner(PROGRAM))
        lines = dict(line.split("=", 1) for line in self.entry.read_text().splitlines() if "=" in line)
        self.assertTrue(Path(lines["TryExec"]).exists())
        return self.desktop.spawn(*shlex.split(lines["Exec"]), log="launcher")

    def test_starts_the_program_once_and_the_helper_goes(self):
        self.open_preferences()
        self.screen.press_key("space")
        wait_for("the entry", self.entry.exists)
        self.desktop.spawn("dbus-monitor", "interface='com.tidewell.DistributedNotification'", log="monitor")
        wait_for("the monitor", lambda: self.desktop.log_of("monitor"))
        launcher = self.log_in_again()
        wait_for("the program", lambda: self.desktop.bus.name_has_owner(PROGRAM))
        self.assertEqual(launcher.wait(timeout=60), 0)
        wait_for("the program's word to the helper", lambda: "member=killLauncher" in self.desktop.log_of("monitor"))
        self.assertIn(f'string "{PROGRAM}"', self.desktop.log_of("monitor"))
        self.assertFalse(self.desktop.bus.name_has_owner(LAUNCHER))
        self.assertTrue(self.desktop.bus.name_has_owner(PROGRAM))

        again = self.desktop.spawn(*launcher.args, log="launcher")
        self.assertEqual(again.wait(timeout=60), 0)
        self.assertEqual(self.tray.popups(), [], "nothing was started a second time")


if __name__ == "__main__":
    unittest.main()
