"""The pages that the menu's last items open, and the date of the next request for a rating."""

import datetime
import unittest
from pathlib import Path

from case import QUIET, DesktopCase
from waiting import wait_for

KEY = "ReviewPromptNextDate"
LINKS = {
    "Harbor Tray Help": "help",
    "Privacy Policy": "privacy",
    "Rate on App Store": "store",
    "Visit Tidewell": "home",
}
BROWSER = """[Desktop Entry]
Type=Application
Name=Browser
Exec={script} %u
MimeType=x-scheme-handler/http;x-scheme-handler/https;x-scheme-handler/macappstore;
"""


def configured_addresses():
    """NAME = ADDRESS of resources/links.conf, read by ourselves."""

    lines = (Path(__file__).resolve().parents[2] / "resources/links.conf").read_text().splitlines()
    return dict(line.split(" = ", 1) for line in lines if not line.startswith("#"))


class Links(DesktopCase):
    starts_program = False

    def test_open_in_the_users_browser(self):
        opened = self.desktop.home / "opened"
        script = self.desktop.home / "browser"
        script.write_text(f'#!/bin/sh\necho "$1" >>"{opened}"\n')
        script.chmod(0o755)
        (self.desktop.data / "applications/browser.desktop").write_text(BROWSER.format(script=script))
        schemes = "".join(f"x-scheme-handler/{name}=browser.desktop\n" for name in ("http", "https", "macappstore"))
        (self.desktop.config / "mimeapps.list").write_text(f"[Default Applications]\n{schemes}")
        self.start()
        expected = []
        for label, name in LINKS.items():
            expected.append(configured_addresses()[name])
            self.tray.choose(label)
            wait_for(f"the page of {label}", lambda: opened.exists() and opened.read_text().split() == expected)

    def test_that_nothing_opens_leave_the_program_alone(self):
        self.start()
        for label in LINKS:
            self.tray.choose(label)
        self.assertTrue(self.menu_entry("Preferences").enabled)
        self.assertTrue(self.tray.is_running())


def days_ahead(date):
    return (date - datetime.datetime.utcnow()).total_seconds() / 86400


class FirstRequest(DesktopCase):
    def test_is_put_a_week_ahead_when_the_menu_first_closes(self):
        self.click_icon()
        self.assertNotIn(KEY, self.tray.settings())
        self.tray.close_popups()
        wait_for("the date", lambda: KEY in self.tray.settings())
        self.assertAlmostEqual(days_ahead(self.tray.settings()[KEY]), 7, delta=0.02)


class DueRequest(DesktopCase):
    settings = {**QUIET, KEY: datetime.datetime(2001, 1, 1)}

    def test_moves_the_date_two_weeks_ahead_when_the_menu_closes(self):
        self.click_icon()
        self.assertEqual(self.tray.settings()[KEY], datetime.datetime(2001, 1, 1))
        self.tray.close_popups()
        wait_for("the new date", lambda: self.tray.settings()[KEY].year > 2001)
        self.assertAlmostEqual(days_ahead(self.tray.settings()[KEY]), 14, delta=0.02)


if __name__ == "__main__":
    unittest.main()
