"""An application to uninstall, and the review window as a user reads and handles it."""

import plistlib

from accessibility import STATE_CHECKED
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
        self.install()
        self.start()

    def install(self):
        """Makes the application and the files that belong to it."""
        library = self.desktop.home / "Library"
        self.entry = self.desktop.data / f"applications/{IDENTIFIER}.desktop"
        self.preferences = library / f"Preferences/{IDENTIFIER}.plist"
        self.support = library / "Application Support/Sketchbook"
        for folder in (self.preferences.parent, self.support):
            folder.mkdir(parents=True)
        self.entry.write_text(ENTRY)
        self.preferences.write_text("<plist/>")
        (self.support / "drawing").write_text("x" * 1000)

    def windows(self, title):
        return [window for window in self.screen.windows_of(self.tray.pid) if window.title() == title]

    def uninstall(self, title="Sketchbook"):
        """Chooses "Uninstall" and gives the grants that are asked for, until the window is there."""
        self.tray.choose(UNINSTALL[0], title, UNINSTALL[2])
        given = []

        def is_there():
            if self.windows(title):
                return True
            panel = self.tray.dialog()
            wish = panel and self.label_texts(panel)
            button = panel and panel.find("push button", "Open")
            if wish not in given and button and button.has_state(STATE_ENABLED):
                given.append(wish)
                button.press()
            return False

        wait_for("the window", is_there)

    def review(self, title="Sketchbook"):
        """Opens the window and waits for the end of the search."""
        self.uninstall(title)
        self.wait_for_active(title)
        wait_for("the end of the search", lambda: self.button_state("Delete", title))

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

    def button_state(self, text, title="Sketchbook"):
        button = self.node(title, "push button", text)
        return button is not None and button.has_state(STATE_ENABLED)

    def cells(self, title="Sketchbook"):
        table = self.node(title, "table", "Related files")
        return [cell for cell in table.children() if not cell.role().endswith("header")] if table else []

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

    def history_title(self):
        """The title of the window of the history, once its rows are there; else None."""
        titles = [window.title() for window in self.screen.windows_of(self.tray.pid)]
        return next((title for title in titles if title.startswith("Sketchbook [") and self.cells(title)), None)

    def wait_for_label(self, text, title="Sketchbook"):
        wait_for(f"{text!r}", lambda: self.node(title, "label", text))

    @staticmethod
    def label_texts(window):
        return [node.text() for node in window.descendants() if node.role() == "label"]

    def record(self):
        return plistlib.loads(self.tray.settings()["UninstalledApplications"])

    def tick(self, path):
        """Clicks a row's box with the mouse."""
        box = self.row(path)[0]
        was_ticked = box.has_state(STATE_CHECKED)
        left, top, _, bottom = wait_for("the place of the box", box.place)
        self.screen.click(left + 10, (top + bottom) // 2)
        wait_for("the box to change", lambda: box.has_state(STATE_CHECKED) != was_ticked)

    def is_ticked(self, path, title="Sketchbook"):
        return self.row(path, title)[0].has_state(STATE_CHECKED)

    def selection(self):
        [text] = [text for text in self.label_texts(self.window_node("Sketchbook")) if "elected (" in text]
        return text

    def wait_for_summary(self, start):
        wait_for(f"the summary {start!r}", lambda: self.selection().startswith(start))

    def press_delete(self):
        self.screen.click(*center(self.node("Sketchbook", "push button", "Delete").place()))

    def outcome(self, title="Sketchbook"):
        """The title of the alert, which is then put away."""
        labels = self.label_texts(self.tray.wait_for_dialog())
        self.tray.answer("OK")
        self.wait_for_active(title)
        return labels[0]

    @property
    def trashed(self):
        folder = self.desktop.data / "Trash/files"
        return sorted(item.name for item in folder.iterdir()) if folder.exists() else []
