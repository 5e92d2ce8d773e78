"""The uninstaller from the menu to the Trash, and back from the history."""

import os
import subprocess
import plistlib
import unittest
from pathlib import Path
from urllib.parse import unquote

from case import QUIET, DesktopCase
from screen import center
from waiting import wait_for

IDENTIFIER = "org.example.Sketchbook"
UNINSTALL = ("Uninstall Applications", "Sketchbook", "Uninstall")
HISTORY = ("Uninstall Applications", "Uninstallation History")
FILES_LEFT = "Please review each file before deleting. Files already deleted have been disabled."
STATE_ENABLED = 8
ENTRY = """[Desktop Entry]
Type=Application
Name=Sketchbook
Exec=/usr/bin/true
"""


class UninstallerCase(DesktopCase):
    starts_program = False
    settings = QUIET

    def setUp(self):
        super().setUp()
        library = self.desktop.home / "Library"
        self.entry = self.desktop.data / f"applications/{IDENTIFIER}.desktop"
        self.preferences = library / f"Preferences/{IDENTIFIER}.plist"
        self.support = library / "Application Support/Sketchbook"
        for folder in (self.preferences.parent, self.support):
            folder.mkdir(parents=True)
        self.entry.write_text(ENTRY)
        self.preferences.write_text("<plist/>")
        (self.support / "drawing").write_text("x" * 1000)
        self.start()

    def windows(self, title):
        return [window for window in self.screen.windows_of(self.tray.pid) if window.title() == title]

    def review(self):
        """Chooses "Uninstall", gives the grant when it is asked for, and waits for the end of the search."""
        self.tray.choose(*UNINSTALL)
        wait_for("the grant or the window", lambda: self.tray.dialog() or self.windows("Sketchbook"))
        if self.tray.dialog():
            self.tray.answer("Open")
        self.wait_for_active("Sketchbook")
        wait_for("the end of the search", lambda: self.button_state("Delete"))

    def wait_for_active(self, title):
        def is_active():
            active = self.screen.active_window()
            return active and active.pid() == self.tray.pid and active.title() == title

        wait_for(f"the window {title!r} to be active", is_active)

    def window_node(self, title):
        for application in self.tray.accessibility.root.children():
            for window in application.children():
                if window.text() == title:
                    return window
        return None

    def node(self, title, role, text):
        """An element of the window with that title."""
        window = self.window_node(title)
        return window.find(role, text) if window else None

    def button_state(self, text):
        button = self.node("Sketchbook", "push button", text)
        return button is not None and button.has_state(STATE_ENABLED)

    def cells(self, title="Sketchbook"):
        table = self.node(title, "table", "Related files")
        return [cell for cell in table.children() if cell.role() == "cell"] if table else []

    def names(self, title="Sketchbook"):
        return [cell.text() for cell in self.cells(title)[1::6]]

    def row(self, path, title="Sketchbook"):
        """The cells of the row of that path."""
        cells = self.cells(title)
        for first in range(0, len(cells), 6):
            row = cells[first : first + 6]
            if row[1].text() == path.name and row[2].text() == str(path.parent):
                return row
        raise AssertionError(f"no row of {path} among {self.names(title)}")

    def wait_for_label(self, text, title="Sketchbook"):
        wait_for(f"{text!r}", lambda: self.node(title, "label", text))

    @staticmethod
    def label_texts(window):
        return [node.text() for node in window.descendants() if node.role() == "label"]

    def record(self):
        return plistlib.loads(self.tray.settings()["UninstalledApplications"])

    def tick(self, path):
        """Clicks a row's box with the mouse."""
        left, top, _, bottom = wait_for("the place of the box", lambda: self.row(path)[0].place())
        self.screen.click(left + 10, (top + bottom) // 2)

    def selection(self):
        [text] = [text for text in self.label_texts(self.window_node("Sketchbook")) if "elected (" in text]
        return text

    def press_delete(self):
        self.screen.click(*center(self.node("Sketchbook", "push button", "Delete").place()))

    def outcome(self):
        """The title of the alert, which is then put away."""
        labels = self.label_texts(self.tray.wait_for_dialog())
        self.tray.answer("OK")
        return labels[0]

    @property
    def trashed(self):
        folder = self.desktop.data / "Trash/files"
        return sorted(item.name for item in folder.iterdir()) if folder.exists() else []


class RoundTrip(UninstallerCase):
    def test_deletes_what_is_ticked_and_finds_again_what_is_restored(self):
        self.review()
        self.assertEqual(self.names(), [self.entry.name, self.preferences.name, "Sketchbook"])
        self.wait_for_label("No Files Selected (Zero KB)")
        self.tick(self.preferences)
        self.wait_for_label("1 file selected (8 bytes)")
        # The keyboard goes on from the row that the mouse chose.
        self.screen.press_key("Down")
        self.screen.press_key("space")
        wait_for("the second tick", lambda: self.selection().startswith("2 files selected ("))
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertEqual(self.trashed, ["Sketchbook", self.preferences.name])
        self.assertFalse(self.preferences.exists() or self.support.exists())
        self.assertTrue(self.entry.exists())
        self.assertFalse(self.button_state("Delete"))
        self.wait_for_label("All selected files have been successfully deleted.")
        [record] = self.record()
        self.assertEqual([item["isSelected"] for item in record["appRelatedData"]], [False, True, True])

        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))
        self.tray.choose(*HISTORY, "Sketchbook")
        title = wait_for("the window of the history", self.history_title)
        self.wait_for_label(FILES_LEFT, title)
        self.assertGreater(self.darkest(self.row(self.preferences, title)[1]), 250, "grey: it is disabled")
        self.assertLess(self.darkest(self.row(self.entry, title)[1]), 150, "black: it is still there")
        self.screen.close_window(self.windows(title)[0])
        wait_for("the window to go", lambda: not self.windows(title))

        for name in self.trashed:
            restored = self.desktop.run("gio", "trash", "--restore", f"trash:///{name}")
            if restored.returncode != 0:  # without a trash service: from the record of the Trash itself
                self.restore(name)
        self.assertEqual((self.support / "drawing").read_text(), "x" * 1000)
        self.review()
        self.assertEqual(self.names(), [self.entry.name, self.preferences.name, "Sketchbook"])

    def darkest(self, cell):
        """The least sum of red, green and blue in the cell's text, beside its icon."""
        left, top, right, bottom = cell.place()
        picture = self.screen.settled_picture((left + 24, top, right, bottom))
        return min(sum(picture.colour(x, y)) for x in range(left + 24, right) for y in range(top, bottom))

    def history_title(self):
        titles = [window.title() for window in self.screen.windows_of(self.tray.pid)]
        return next((title for title in titles if title.startswith("Sketchbook") and self.cells(title)), None)

    def restore(self, name):
        trash = self.desktop.data / "Trash"
        lines = (trash / f"info/{name}.trashinfo").read_text().splitlines()
        path = next(unquote(line[5:]) for line in lines if line.startswith("Path="))
        (trash / "files" / name).rename(Path(path))

    def test_previews_a_row_and_closes_without_a_trace(self):
        self.review()
        self.screen.click(*center(self.row(self.preferences)[5].place()))
        wait_for("the preview", lambda: self.windows(self.preferences.name))
        self.wait_for_active(self.preferences.name)
        self.screen.press_key("Escape")
        wait_for("the preview to go", lambda: not self.windows(self.preferences.name))
        self.screen.close_window(self.windows("Sketchbook")[0])
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))
        self.assertTrue(self.preferences.exists())
        self.assertNotIn("UninstalledApplications", self.tray.settings())
        self.assertTrue(self.tray.is_running())


class WithoutPermission(UninstallerCase):
    def start(self):
        """The folder of the preferences cannot be written to; for the superuser only a read-only mount does that."""
        folder = self.preferences.parent
        if os.getuid() == 0:
            wrapper = self.desktop.home / "start"
            wrapper.write_text(
                f"#!/bin/sh\nset -e\nmount --bind '{folder}' '{folder}'\nmount --make-private '{folder}'\n"
                f"mount -o remount,ro,bind '{folder}'\nexec '{self.tray.path}' \"$@\"\n"
            )
            wrapper.chmod(0o755)
            # In a changed root the root folder is no mount whose propagation could be changed.
            own = ["--mount"]
            if subprocess.run(["unshare", *own, "true"], stderr=subprocess.DEVNULL).returncode != 0:
                own += ["--propagation", "unchanged"]
            arguments, self.tray.path = ((*own, str(wrapper)), "unshare")
        else:
            folder.chmod(0o500)
            self.addCleanup(folder.chmod, 0o700)
            arguments = ()
        self.tray.start(*arguments)

    def test_tells_that_nothing_was_deleted(self):
        self.review()
        self.tick(self.preferences)
        self.wait_for_label("1 file selected (8 bytes)")
        self.press_delete()
        self.assertEqual(self.outcome(), "Unsuccessful")
        self.wait_for_label("No selected files could be deleted. Please manually delete them yourself.")
        self.assertEqual(self.trashed, [])
        self.assertTrue(self.preferences.exists())

    def test_tells_that_some_were_not_deleted(self):
        self.review()
        self.tick(self.preferences)
        self.tick(self.support)
        wait_for("both ticks", lambda: self.selection().startswith("2 files selected ("))
        self.press_delete()
        self.assertEqual(self.outcome(), "Warning")
        self.wait_for_label("Some selected files could not be deleted. Please delete the remaining ones yourself.")
        self.assertEqual(self.trashed, ["Sketchbook"])
        self.assertTrue(self.preferences.exists())


if __name__ == "__main__":
    unittest.main()
