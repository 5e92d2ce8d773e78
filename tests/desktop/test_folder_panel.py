"""The panel in which a user grants a folder to a cleanup."""

from case import wait_for
from cleanup_case import DISK, CleanupCase


class FolderPanel(CleanupCase):
    def open_panel(self):
        self.fill_home()
        self.start()
        self.before = self.facts()
        self.tray.choose("Free Disk Space", "Application Caches")
        return self.wait_for_panel()

    def assert_refused(self):
        self.answer_alert("Cleanup failed", "Please grant access for the cleanup to succeed", "OK")
        self.assertEqual(self.facts(), self.before)
        self.assertEqual(self.grants(), [])

    def go_to(self, folder):
        self.desktop.run("xdotool", "key", "ctrl+a")
        self.desktop.run("xdotool", "type", "--delay", "20", str(folder))

    def test_says_above_everything_what_to_choose(self):
        panel = self.open_panel()
        message = panel.find(
            "label",
            'Please choose your home folder "home" in this panel and click the "Open" button.\n'
            "(The button will be enabled when you have selected the correct folder.)",
        )
        place, files = message.place(), panel.find("tree", "Files").place()
        self.assertLess(place[3], files[1])
        for node in panel.descendants():
            if node.role() in ("push button", "text", "combo box") and node.place():
                self.assertGreaterEqual(node.place()[1], place[3], node.text())

    def test_refuses_when_cancelled(self):
        self.press(self.open_panel(), "Cancel")
        self.assert_refused()

    def test_refuses_on_escape(self):
        self.open_panel()
        self.screen.press_key("Escape")
        self.assert_refused()

    def test_refuses_when_closed(self):
        self.open_panel()
        self.screen.close_window(self.screen.active_window())
        self.assert_refused()

    def test_opens_the_right_folder_only(self):
        panel = self.open_panel()
        wait_for("the home folder to be offered", lambda: self.is_offered(panel))
        for wrong in (self.home / "Library", self.home.parent, self.home / "Library/Caches", "/"):
            self.go_to(wrong)
            wait_for(f"{wrong} not to be offered", lambda: not self.is_offered(panel))
        self.go_to(self.home)
        wait_for("the home folder to be offered again", lambda: self.is_offered(panel))
        self.press(panel, "Open")
        self.press(self.wait_for_alert("Confirm Cleanup"), "Cancel")

    def test_is_modal(self):
        notes = self.notes()
        panel = self.open_panel()
        notes.activate()
        self.assertNotEqual(self.active_title(), "Select Folder")
        self.tray.choose("Free Disk Space", "Trash Can")
        wait_for("the panel in front", lambda: self.active_title() == "Select Folder")
        self.assertEqual(self.tray.dialog().path, panel.path)
        self.assertEqual(len(self.screen.windows_of(self.tray.pid)), 1)
        notes.kill()
        self.press(panel, "Cancel")
        self.assert_refused()

    def test_is_remembered_after_a_restart(self):
        self.open_panel()
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Cancel")
        self.assertEqual(self.facts(), self.before)
        self.assertEqual([grant["url"] for grant in self.grants()], [{"relative": self.home.as_uri() + "/"}])
        self.tray.stop()
        self.tray.start()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assert_only_gone(self.before, DISK["Application Caches"][-1])

    def test_leaves_no_trace_of_the_folders_that_were_shown(self):
        self.press(self.open_panel(), "Cancel")
        self.assert_refused()
        self.tray.stop()
        self.assertEqual(list(self.desktop.config.glob("QtProject*")), [])
