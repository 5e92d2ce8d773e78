"""An application that has left something in every place where the uninstaller looks."""

import plistlib
import unittest
from pathlib import Path

from own_root import enter_own_root
from reviewing import FILES_LEFT, HISTORY, IDENTIFIER, STATE_ENABLED, UninstallerCase
from waiting import wait_for

APPLICATION = "/Applications/Sketchbook.app"
# In the order of the search. What begins with "~" lies in the home folder, what ends with "/" is a folder.
PLACES = (
    f"{APPLICATION}/",
    f"/private/var/db/receipts/{IDENTIFIER}.bom",
    f"~/Library/Preferences/{IDENTIFIER}.plist",
    f"~/Library/Preferences/ByHost/{IDENTIFIER}.0F1E.plist",
    f"~/Library/Application Support/com.apple.sharedfilelist/{IDENTIFIER}.sfl2",
    f"~/Library/Cookies/{IDENTIFIER}.binarycookies",
    "~/Library/Application Support/com.apple.sharedfilelist/com.apple.LSSharedFileList.ApplicationRecentDocuments/"
    f"{IDENTIFIER.lower()}.sfl2",
    "~/Library/Logs/DiagnosticReports/Sketchbook_2026-02-03.crash",
    "~/Library/Sketchbook/Sketchbook Brushes/",
    f"~/Library/WebKit/{IDENTIFIER}/",
    f"~/Library/Containers/{IDENTIFIER}/",
    "/Library/Logs/DiagnosticReports/Sketchbook_2026-02-03.diag",
    "~/Library/Application Support/Sketchbook/",
    f"/private/var/folders/zz/zyxvpxvq/C/{IDENTIFIER}/",
    f"/private/var/folders/zz/zyxvpxvq/T/{IDENTIFIER}.lock",
    f"/private/var/db/BootCaches/69B2/app.{IDENTIFIER}.playlist",
    "~/.sketchbook",
    f"~/Library/Application Scripts/{IDENTIFIER}/",
    f"~/Library/Caches/{IDENTIFIER}/",
    f"~/Library/Caches/CloudKit/{IDENTIFIER}/",
    f"~/Library/Caches/com.apple.nsurlsessiond/Downloads/{IDENTIFIER}/",
    f"~/Library/Caches/com.apple.helpd/Generated/{IDENTIFIER}.help",
    f"~/Library/Saved Application State/{IDENTIFIER}.savedState/",
    f"~/Library/Application Support/CloudDocs/session/containers/{IDENTIFIER}.plist",
    f"~/Library/LaunchAgents/{IDENTIFIER}.agent.plist",
    f"~/Library/Group Containers/group.{IDENTIFIER}/",
    "~/.config/sketchbook/",
)
KEPT = ("~/.sketchbook", f"/private/var/db/receipts/{IDENTIFIER}.bom")
TOO_MANY = "Warning! Too many files detected in this scan!"


class EveryPlace(UninstallerCase):
    def setUp(self):
        self.addCleanup(enter_own_root("/Applications", "/Library", "/private"))
        super().setUp()

    def install(self):
        for place in PLACES:
            path = self.path_of(place)
            if place.endswith("/"):
                path.mkdir(parents=True)
                path = path / "contents"
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(place)
        information = {"CFBundleName": "Sketchbook", "CFBundleIdentifier": IDENTIFIER}
        contents = Path(APPLICATION) / "Contents"
        contents.mkdir()
        (contents / "Info.plist").write_bytes(plistlib.dumps(information))

    def path_of(self, place):
        return Path(place.replace("~", str(self.desktop.home), 1))

    def present(self):
        return [place for place in PLACES if self.path_of(place).exists()]

    def review(self):
        """The warning about so many files comes when the search has ended."""
        self.uninstall()
        wait_for("the warning", lambda: TOO_MANY in self.label_texts(self.tray.wait_for_dialog()))
        self.tray.answer("I Understand")
        self.wait_for_active("Sketchbook")
        self.assertEqual(self.paths("Sketchbook"), [self.path_of(place) for place in PLACES])

    def paths(self, title):
        cells = self.cells(title)
        return [
            Path(folder.text()) / name.text() for name, folder in zip(cells[1::6], cells[2::6], strict=True)
        ]

    def restore_everything(self):
        """By the desktop's own service for the Trash."""
        service = Path("/usr/share/dbus-1/services/org.gtk.vfs.Daemon.service").read_text()
        [command] = [line[5:] for line in service.splitlines() if line.startswith("Exec=")]
        self.desktop.spawn(command, "--no-fuse", log="gvfsd")
        wait_for("the service", lambda: self.desktop.bus.name_has_owner("org.gtk.vfs.Daemon"))
        trashed = self.desktop.run("gio", "trash", "--list").stdout.splitlines()
        for line in trashed:
            restored = self.desktop.run("gio", "trash", "--restore", line.split("\t")[0])
            self.assertEqual(restored.returncode, 0, restored.stderr)

    def test_is_found_deleted_in_part_restored_and_found_again(self):
        self.review()
        self.screen.press_key("a", "Control_L")
        self.screen.press_key("space")
        self.wait_for_summary(f"{len(PLACES)} files selected (")
        for place in KEPT:
            self.tick(self.path_of(place))
        self.wait_for_summary(f"{len(PLACES) - len(KEPT)} files selected (")
        self.press_delete()
        self.assertEqual(self.outcome(), "Successful")
        self.assertCountEqual(self.present(), KEPT)
        self.assertNotIn("Sketchbook", self.menu_entry("Uninstall Applications").labels())
        self.screen.press_key("Escape")
        wait_for("the window to go", lambda: not self.windows("Sketchbook"))

        self.tray.choose(*HISTORY, "Sketchbook")
        wait_for("the warning", lambda: TOO_MANY in self.label_texts(self.tray.wait_for_dialog()))
        self.tray.answer("I Understand")
        title = wait_for("the window of the history", self.history_title)
        self.wait_for_label(FILES_LEFT, title)
        self.assertEqual(self.paths(title), [self.path_of(place) for place in PLACES])
        enabled = [cell.has_state(STATE_ENABLED) for cell in self.cells(title)[1::6]]
        self.assertEqual(enabled, [place in KEPT for place in PLACES])
        self.screen.close_window(self.windows(title)[0])
        wait_for("the window to go", lambda: not self.windows(title))

        self.restore_everything()
        self.assertEqual(self.present(), list(PLACES))
        self.tray.choose("Uninstall Applications", "Reload Apps")
        self.review()


if __name__ == "__main__":
    unittest.main()
