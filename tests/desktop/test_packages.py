"""The review of an application that came with a package."""

import unittest
from pathlib import Path

from reviewing import STATE_ENABLED, UninstallerCase
from screen import center
from waiting import wait_for

TITLE = "File Manager PCManFM"
ENTRY = Path("/usr/share/applications/pcmanfm.desktop")
CENTRE = """[Desktop Entry]
Type=Application
Name=Software
Exec={program} %U
MimeType=x-scheme-handler/appstream;
"""


class PackageOwned(UninstallerCase):
    def install(self):
        self.own = self.desktop.config / "pcmanfm"
        self.own.mkdir(parents=True)
        (self.own / "pcmanfm.conf").write_text("x" * 100)
        self.asked = self.desktop.home / "asked"
        program = self.desktop.home / "centre"
        program.write_text(
            f"#!/bin/sh\nprintf %s \"$*\" > '{self.asked}.new' && mv '{self.asked}.new' '{self.asked}'\n"
        )
        program.chmod(0o755)
        applications = self.desktop.data / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "org.example.Centre.desktop").write_text(CENTRE.format(program=program))
        (self.desktop.config / "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/appstream=org.example.Centre.desktop\n"
        )

    def wait_for_summary(self, start):
        def texts():
            return self.label_texts(self.window_node(TITLE))

        wait_for(f"the summary {start!r}", lambda: any(text.startswith(start) for text in texts()))

    def test_lists_its_files_selects_none_of_them_and_opens_the_software_centre(self):
        self.review(TITLE)
        names = self.names(TITLE)
        self.assertEqual((names[0], names[-1]), (ENTRY.name, "pcmanfm"))
        self.assertIn(self.own.name, names)
        [notice] = [text for text in self.label_texts(self.window_node(TITLE)) if "came with" in text]
        self.assertIn('"File Manager PCManFM" came with the package "pcmanfm".', notice)
        owned, own = self.row(ENTRY, TITLE)[0], self.row(self.own, TITLE)[0]
        self.assertFalse(owned.has_state(STATE_ENABLED))
        self.assertTrue(own.has_state(STATE_ENABLED))

        # With the mouse, and with the keyboard over all rows: only what is the user's own gets ticked.
        left, top, _, bottom = owned.place()
        self.screen.click(left + 10, (top + bottom) // 2)
        left, top, _, bottom = own.place()
        self.screen.click(left + 10, (top + bottom) // 2)
        self.wait_for_summary("2 files selected (")  # the folder and what is listed in it
        self.screen.press_key("space")
        self.wait_for_summary("0 files selected (")
        self.screen.press_key("a", "Control_L")
        self.screen.press_key("space")
        self.wait_for_summary(f"{len(names) - 2} file")  # neither the entry nor the program
        self.screen.click(*center(self.node(TITLE, "push button", "Delete").place()))
        self.assertEqual(self.outcome(TITLE), "Successful")
        self.assertIn("pcmanfm", self.trashed)
        self.assertFalse(self.own.exists())
        self.assertTrue(ENTRY.exists() and Path("/usr/bin/pcmanfm").exists())

        self.screen.click(*center(self.node(TITLE, "push button", "Open Software Centre").place()))
        wait_for("the software centre", self.asked.exists)
        self.assertEqual(self.asked.read_text(), "appstream://pcmanfm.desktop")


if __name__ == "__main__":
    unittest.main()
