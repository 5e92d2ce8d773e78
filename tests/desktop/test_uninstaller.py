"""The uninstaller from the menu to the Trash, and back from the history."""

import os
import unittest
from pathlib import Path
from urllib.parse import unquote

from accessibility import STATE_CHECKED
from reviewing import FILES_LEFT, HISTORY, STATE_ENABLED, UninstallerCase
from screen import center
from waiting import wait_for


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
            self.restore(name)
        self.assertEqual((self.support / "drawing").read_text(), "x" * 1000)
        self.review()
        self.assertEqual(self.names(), [self.entry.name, self.preferences.name, "Sketchbook"])

    def darkest(self, cell):
        """The least sum of red, green and blue in the cell's text, beside its icon."""
        left, top, right, bottom = cell.place()
        picture = self.screen.settled_picture((left + 24, top, right, bottom))
        return min(sum(picture.colour(x, y)) for x in range(left + 24, right) for y in range(top, bottom))

    def restore(self, name):
        """Puts an item back to where the Trash's own record says that it was."""
        trash = self.desktop.data / "Trash"
        lines = (trash / f"info/{name}.trashinfo").read_text().splitlines()
        path = next(unquote(line[5:]) for line in lines if line.startswith("Path="))
        (trash / "files" / name).rename(Path(path))

    def test_previews_a_row_and_closes_without_a_trace(self):
        self.review()
        self.screen.click(*center(self.row(self.preferences)[5].place()))
        self.wait_for_active(self.preferences.name)
        # There is no room beside the window: the panel stands above its middle.
        middles = [center(self.windows(title)[0].box()) for title in (self.preferences.name, "Sketchbook")]
        for first, second in zip(*middles, strict=True):
            self.assertAlmostEqual(first, second, delta=20)
        self.screen.press_key("Escape")
        wait_for("the preview to go", lambda: not self.windows(self.preferences.name))
        self.wait_for_active("Sketchbook")
        self.screen.press_key("Return")
        self.wait_for_active(self.preferences.name)
        self.screen.close_window(self.windows("Sketchbook")[0])
        wait_for("both windows to go", lambda: not self.screen.windows_of(self.tray.pid))
        self.assertTrue(self.preferences.exists())
        self.assertNotIn("UninstalledApplications", self.tray.settings())
        self.assertTrue(self.tray.is_running())


class WithoutMouse(UninstallerCase):
    def test_the_keyboard_alone_sorts_ticks_and_deletes(self):
        self.review()
        self.screen.press_key("Menu")
        wait_for("the menu", self.tray.popups)
        for key in ("Up", "Right", "Up", "Return"):  # the last entry of "Sort By": the largest first
            self.screen.press_key(key)
        wait_for("the order", lambda: self.names() == ["Sketchbook", self.entry.name, self.preferences.name])
        self.screen.press_key("Home", "Control_L")
        self.screen.press_key("space")
        self.wait_for_label("1 file selected (1 KB)")
        self.screen.press_key("Tab")
        self.screen.press_key("Return")
        self.wait_for_active("Harbor Tray")  # the alert
        self.screen.press_key("Return")
        self.wait_for_label("All selected files have been successfully deleted.")
        self.assertEqual(self.trashed, ["Sketchbook"])
        self.wait_for_active("Sketchbook")
        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))

    def test_a_screen_reader_reads_ticks_presses_and_deletes(self):
        self.review()
        row = self.row(self.preferences)
        self.assertEqual(
            [cell.role() for cell in row], ["check box", "cell", "cell", "cell", "push button", "push button"]
        )
        name = self.preferences.name
        self.assertEqual([row[column].text() for column in (0, 4, 5)], [f"{act} {name}" for act in ("Select", "Reveal", "Preview")])
        row[0].press()
        wait_for("the tick", lambda: row[0].has_state(STATE_CHECKED))
        self.wait_for_label("1 file selected (8 bytes)")
        row[5].press()
        self.wait_for_active(name)
        self.screen.press_key("Escape")
        wait_for("the preview to go", lambda: not self.windows(name))
        self.node("Sketchbook", "push button", "Delete").press()
        self.assertEqual(self.outcome(), "Successful")
        self.wait_for_label("All selected files have been successfully deleted.")
        wait_for("the row to be disabled", lambda: not self.row(self.preferences)[0].has_state(STATE_ENABLED))
        self.assertTrue(self.row(self.entry)[0].has_state(STATE_ENABLED))


class Nested(UninstallerCase):
    """A folder whose contents are listed as well."""

    def install(self):
        super().install()
        self.folder = self.desktop.config / "sketchbook"
        self.brushes = self.folder / "sketchbook.brushes"
        self.layout = self.folder / "sketchbook.layout"
        self.folder.mkdir(parents=True)
        self.brushes.write_text("x" * 300)
        self.layout.write_text("x" * 200)
        # A folder that is kept elsewhere, with a link in its place.
        self.kept = self.desktop.home / "kept"
        self.kept.mkdir()
        (self.kept / "sketchbook.themes").write_text("x" * 50)
        self.link = self.desktop.config / "sketchbook-themes"
        self.link.symlink_to(self.kept)
        self.through = self.link / "sketchbook.themes"

    def ticked(self, title="Sketchbook"):
        paths = (self.folder, self.brushes, self.layout, self.link, self.through)
        return [path.name for path in paths if self.is_ticked(path, title)]

    def test_ticks_what_goes_with_a_folder_and_says_so(self):
        self.review()
        self.tick(self.folder)
        self.wait_for_label("3 files selected (500 bytes)")
        self.assertEqual(self.ticked(), [self.folder.name, self.brushes.name, self.layout.name])
        for path in (self.brushes, self.layout):
            self.assertEqual(self.row(path)[0].description(), "Goes with sketchbook")
            self.assertTrue(self.row(path)[0].has_state(STATE_ENABLED))
        self.assertEqual(self.row(self.folder)[0].description(), "")
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertEqual(self.trashed, ["sketchbook"])
        inside = self.desktop.data / "Trash/files/sketchbook"
        self.assertEqual(sorted(item.name for item in inside.iterdir()), [self.brushes.name, self.layout.name])
        for path in (self.folder, self.brushes, self.layout):
            wait_for("the row to be disabled", lambda: not self.row(path)[0].has_state(STATE_ENABLED))

        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))
        self.tray.choose(*HISTORY, "Sketchbook")
        title = wait_for("the window of the history", self.history_title)
        self.assertEqual(self.ticked(title), [self.folder.name, self.brushes.name, self.layout.name])

    def test_keeps_what_is_cleared_and_the_folder_around_it(self):
        self.review()
        self.tick(self.folder)
        self.tick(self.brushes)
        self.wait_for_label("1 file selected (200 bytes)")
        self.assertEqual(self.ticked(), [self.layout.name])
        self.assertEqual(self.row(self.layout)[0].description(), "")
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertEqual(self.trashed, [self.layout.name])
        self.assertEqual(self.brushes.read_text(), "x" * 300)

    def test_a_link_goes_alone(self):
        self.review()
        self.tick(self.link)
        wait_for("the summary", lambda: self.selection().startswith("1 file selected ("))
        self.assertEqual(self.ticked(), [self.link.name])
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertEqual(self.trashed, [self.link.name])
        self.assertEqual([item.name for item in self.kept.iterdir()], [self.through.name])

    def test_the_keyboard_ticks_and_clears_all_rows_and_the_table_stays_where_it_is(self):
        self.review()
        names = self.names()
        self.screen.press_key("Home", "Control_L")
        self.screen.press_key("a", "Control_L")
        self.screen.press_key("space")
        wait_for("all ticks", lambda: self.selection().startswith(f"{len(names)} files selected ("))
        self.screen.press_key("space")
        self.wait_for_label("0 files selected (Zero KB)")
        self.assertEqual(self.names(), names)

    def test_an_open_history_shows_its_record_whatever_is_deleted_meanwhile(self):
        self.review()
        self.tick(self.preferences)
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))
        self.tray.choose(*HISTORY, "Sketchbook")
        title = wait_for("the window of the history", self.history_title)
        names = self.names(title)
        self.review()  # finds one row less
        self.assertEqual(len(self.names()), len(names) - 1)
        self.tick(self.brushes)
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertEqual(self.names(title), names)
        self.tray.choose(*HISTORY, "Sketchbook")
        self.wait_for_active(title)
        wait_for("the row to be disabled", lambda: not self.row(self.brushes, title)[0].has_state(STATE_ENABLED))
        self.screen.click(*center(self.row(self.layout, title)[5].place()))
        self.wait_for_active(self.layout.name)


class WithoutPermission(UninstallerCase):
    def start(self):
        """The folder of the preferences cannot be written to, nor may the superuser pass over that."""
        folder = self.preferences.parent
        folder.chmod(0o500)
        self.addCleanup(folder.chmod, 0o700)
        arguments = ()
        if os.getuid() == 0:
            arguments, self.tray.path = ("--bounding-set=-all", "--inh-caps=-all", self.tray.path), "setpriv"
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
