"""The cleanups as their users go through them: folder panel, confirmation, result, and what is left at home."""

import json
import os
import plistlib
import signal
import sqlite3
import stat

from accessibility import STATE_CHECKED
from case import DesktopCase, OtherProgram, wait_for
from program import read_clipboard

STATE_ENABLED = 8
NOTE = (
    "\n\nNOTE: This operation may take anywhere between a few seconds to a few minutes depending on the amount of "
    "unneeded data to be cleaned up. Please wait."
)
SAFER = "Your system is safer now!"
SAFER_AFTER_LOGOUT = SAFER + " However, please logout of your session once after you click OK."
BROWSER = " browsing history, cookies, autocomplete history, all open tabs and windows, favicons etc. from your system."

RECENTS = "Library/Application Support/com.apple.sharedfilelist/com.apple.LSSharedFileList.ApplicationRecentDocuments/"
CHROME = "Library/Application Support/Google/Chrome/"
PROFILES = "Library/Application Support/Firefox/Profiles/"
PREVIEW = "Library/Containers/com.apple.Preview/Data/Library/"
QUICKTIME = "Library/Containers/com.apple.QuickTimePlayerX/Data/Library/"
MAIL = "Library/Containers/com.apple.mail/Data/Library/Mail Downloads/"
XCODE = "Library/Developer/Xcode/"
QUARANTINE = "Library/Preferences/com.apple.LaunchServices.QuarantineEventsV2"

# Target: what the confirmation names, the result's title and message, and the items that have to go.
PRIVACY = {
    "Finder": ("Click the Clear button in order to erase all of your Download History.", "successful", SAFER, []),
    "Safari": (
        "Click the Clear button in order to erase Safari" + BROWSER,
        "successful",
        SAFER,
        [
            *("Library/Safari/History.db" + end for end in ("", "-lock", "-shm", "-wal")),
            "Library/Safari/RecentlyClosedTabs.plist",
            "Library/SafariSafeBrowsing/lists",
            "Library/Cookies/Cookies.binarycookies",
            "Library/Cookies/cookies.BinaryCookies_tmp",
            "Library/Cookies/com.apple.Safari.SearchHelper.binarycookies",
            "Library/Saved Application State/com.apple.Safari.savedState",
            "Library/Caches/com.apple.Safari",
        ],
    ),
    "Google Chrome": (
        "Click the Clear button in order to erase Google Chrome" + BROWSER,
        "successful",
        SAFER,
        [
            *(
                CHROME + "Default/" + name
                for name in (
                    *("History", "History Provider Cache", "History-journal", "Cookies", "Cookies-journal"),
                    *("Favicons", "Favicons-journal", "Current Tabs", "Last Session", "Top Sites"),
                    *("Top Sites-journal", "Web Data", "Web Data-journal"),
                )
            ),
            "Library/Saved Application State/com.google.Chrome.savedState",
            "Library/Caches/Google/Chrome",
        ],
    ),
    "Firefox": (
        "Click the Clear button in order to erase Firefox" + BROWSER,
        "successful",
        SAFER,
        [
            *(
                f"{PROFILES}{profile}/{name}"
                for profile in ("a1.default", "b2.default-release")
                for name in ("cookies.sqlite", "formhistory.sqlite", "sessionstore.jsonlz4", "favicons.sqlite")
            ),
            "Library/Saved Application State/org.mozilla.firefox.savedState",
            "Library/Caches/Mozilla/updates/Applications/Firefox",
        ],
    ),
    "Mail": (
        "Click the Clear button in order to erase Apple Mail downloads and caches.",
        "successful",
        SAFER,
        [MAIL + "letter"],
    ),
    "Preview": (
        "Click the Clear button in order to erase all private Preview data from your system.",
        "Successful. Logout Required.",
        SAFER_AFTER_LOGOUT,
        [
            RECENTS + "com.apple.preview.sfl2",
            "Library/Preferences/com.apple.Preview.LSSharedFileList.plist",
            PREVIEW + "Caches/page",
            PREVIEW + "Logs/log",
            PREVIEW + "Saved Application State/com.apple.Preview.savedState/window",
        ],
    ),
    "QuickTime Player": (
        "Click the Clear button in order to erase all private QuickTime Player data from your system.",
        "Successful. Logout Required.",
        SAFER_AFTER_LOGOUT,
        [
            RECENTS + "com.apple.quicktimeplayerx.sfl2",
            QUICKTIME + "Caches/film",
            QUICKTIME + "Logs/log",
            QUICKTIME + "Saved Application State/com.apple.QuickTimePlayerX.savedState/window",
        ],
    ),
}
# The databases of which rows have to go, by target.
DATABASES = {
    "Finder": [QUARANTINE],
    "Firefox": [PROFILES + "a1.default/places.sqlite", PROFILES + "b2.default-release/places.sqlite"],
}

# Category: what the confirmation names, the noun of the result, and the items that have to go.
DISK = {
    "Application Caches": (
        "unwanted caches from your system",
        "Application caches",
        ["Library/Caches/com.apple.Safari", "Library/Caches/Google", "Library/Caches/Mozilla", "Library/Caches/link"],
    ),
    "Application Logs": (
        "unwanted logs from your system",
        "Application logs",
        ["Library/Logs/a", "Library/Logs/b.log"],
    ),
    "Partial Downloads": (
        "partial downloads from your Downloads folder",
        "Partial downloads",
        ["Downloads/film.download", "Downloads/deep/er/song.download"],
    ),
    "Downloads Folder": (
        "Downloads from your system",
        "Downloads",
        ["Downloads/film.download", "Downloads/deep", "Downloads/letter.pdf", "Downloads/.download"],
    ),
    "Xcode Developer Builds": (
        "Xcode Developer Builds from your system",
        "Xcode developer builds",
        [XCODE + "DerivedData/build"],
    ),
    "Xcode Developer Archives": (
        "Xcode Developer Archives from your system",
        "Xcode developer archives",
        [XCODE + "Archives/archive"],
    ),
    "Xcode Developer Products": (
        "Xcode Developer Products from your system",
        "Xcode developer products",
        [XCODE + "Products/product"],
    ),
    "Xcode Developer Logs": (
        "Xcode Developer Logs from your system",
        "Xcode developer logs",
        [XCODE + "iOS Device Logs/log"],
    ),
    "Crash Reporter Files": (
        "Application Crash data from your system",
        "Application crash data",
        ["Library/Application Support/CrashReporter/crash"],
    ),
    "Mail Downloads": ("Mail downloads from your system", "Mail downloads", [MAIL + "letter"]),
    "iOS Software Updates": (
        "old iOS software updates from your system",
        "Old iPod, iPad and iPhone software updates",
        [f"Library/iTunes/{device} Software Updates/update" for device in ("iPhone", "iPad", "iPod")],
    ),
    "Trash Can": (
        None,
        "Trash",
        [".Trash/old", ".Trash/.hidden", "Library/Mobile Documents/com~apple~CloudDocs/.Trash/old"],
    ),
}
NOT_IN_DELETE_ALL = ("Partial Downloads", "Crash Reporter Files", "Downloads Folder")

# Some of the items are folders.
FILES_IN_FOLDERS = [
    "Library/Caches/com.apple.Safari/some/file",
    "Library/Caches/Google/Chrome/some/file",
    "Library/Logs/a/some/file",
    "Downloads/film.download/part",
    XCODE + "DerivedData/build/part",
    ".Trash/old/some/file",
]

# What lies beside and is nobody's to remove.
KEPT = [
    "Documents/letter.txt",
    "Library/Safari/Bookmarks.plist",
    "Library/Cookies/my Cookies.binarycookies",
    "Library/Preferences/com.apple.Preview.plist",
    "Library/Saved Application State/com.example.Notes.savedState/window",
    CHROME + "Default/Bookmarks",
    CHROME + "Profile 1/History",
    PROFILES + "c3.default-esr/cookies.sqlite",
    PROFILES + "b2.default-release/key4.db",
    "Library/Containers/com.apple.mail/Data/Library/Mail Sent/letter",
    "Library/Developer/Xcode/UserData/theme",
    "Library/Mobile Documents/com~apple~CloudDocs/letter",
]

PLACES = """
CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url LONGVARCHAR, title LONGVARCHAR, rev_host LONGVARCHAR,
  visit_count INTEGER DEFAULT 0, hidden INTEGER DEFAULT 0 NOT NULL, frecency INTEGER DEFAULT -1 NOT NULL, guid TEXT,
  foreign_count INTEGER DEFAULT 0 NOT NULL, url_hash INTEGER DEFAULT 0 NOT NULL);
CREATE TABLE moz_historyvisits (id INTEGER PRIMARY KEY, from_visit INTEGER, place_id INTEGER, visit_date INTEGER,
  visit_type INTEGER, session INTEGER);
CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, type INTEGER, fk INTEGER DEFAULT NULL, parent INTEGER,
  position INTEGER, title LONGVARCHAR, guid TEXT);
CREATE UNIQUE INDEX moz_places_guid_uniqueindex ON moz_places (guid);
INSERT INTO moz_places (id, url, guid) VALUES (1, 'https://kept.example/', 'a'), (2, 'https://seen.example/', 'b'),
  (3, 'https://kept.example/too', 'c');
INSERT INTO moz_historyvisits (place_id) VALUES (1), (2), (2), (3);
INSERT INTO moz_bookmarks (type, fk, title) VALUES (2, NULL, 'menu'), (1, 1, 'one'), (1, 3, 'three'), (1, 3, 'again');
"""
QUARANTINE_EVENTS = """
CREATE TABLE LSQuarantineEvent (LSQuarantineEventIdentifier TEXT PRIMARY KEY NOT NULL, LSQuarantineTimeStamp REAL,
  LSQuarantineAgentName TEXT, LSQuarantineDataURLString TEXT);
INSERT INTO LSQuarantineEvent VALUES ('1', 2.5, 'Browser', 'https://seen.example/file.zip');
"""
CHROME_HISTORY = """
CREATE TABLE urls (id INTEGER PRIMARY KEY AUTOINCREMENT, url LONGVARCHAR, title LONGVARCHAR, visit_count INTEGER);
CREATE TABLE visits (id INTEGER PRIMARY KEY, url INTEGER NOT NULL, visit_time INTEGER NOT NULL);
INSERT INTO urls (url) VALUES ('https://seen.example/');
"""


def write_database(path, statements):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.unlink(missing_ok=True)
    connection = sqlite3.connect(path)
    connection.executescript(statements)
    connection.close()


class CleanupCase(DesktopCase):
    """A home folder with something in every place that a cleanup knows, and with much that none may touch."""

    starts_program = False

    def setUp(self):
        super().setUp()
        # Whatever is installed on the machine is not installed here.
        self.desktop.environment["XDG_DATA_DIRS"] = str(self.desktop.folder / "share")
        self.home = self.desktop.home

    def fill_home(self):
        """Puts everything in its place that is not there."""
        for database in DATABASES["Firefox"] + [PROFILES + "c3.default-esr/places.sqlite"]:
            write_database(self.home / database, PLACES)
        for profile in ("Default", "Profile 1"):
            if not (self.home / CHROME / profile / "History").exists():
                write_database(self.home / CHROME / profile / "History", CHROME_HISTORY)
        write_database(self.home / QUARANTINE, QUARANTINE_EVENTS)
        link = self.home / "Library/Caches/link"
        if not link.is_symlink():
            link.parent.mkdir(parents=True, exist_ok=True)
            link.symlink_to(self.home / "Documents")
        for item in FILES_IN_FOLDERS + KEPT:
            self.write(item)
        for table in (PRIVACY, DISK):
            for *_, items in table.values():
                for item in items:
                    self.write(item)

    def write(self, item):
        path = self.home / item
        if not os.path.lexists(path):
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(f"what {item} says\n")

    def facts(self):
        """Every path of the home folder but the desktop's own, with type, size, time and where it leads."""
        found = {}
        for folder, folders, files in os.walk(self.home):
            if folder == str(self.home):
                folders[:] = [name for name in folders if name not in (".config", ".cache")]
            for name in folders + files:
                path = os.path.join(folder, name)
                status = os.lstat(path)
                link = os.readlink(path) if stat.S_ISLNK(status.st_mode) else None
                size = 0 if stat.S_ISDIR(status.st_mode) else status.st_size
                found[os.path.relpath(path, self.home)] = (status.st_mode, size, status.st_mtime_ns, link)
        return found

    def assert_only_gone(self, before, items, databases=()):
        """These items are gone with everything in them; nothing else came, went or changed."""
        gone = {path for path in before if any(path == item or path.startswith(item + "/") for item in items)}
        self.assertEqual(sorted(item for item in items if item not in before), [], "the test lacks what has to go")
        after = self.facts()
        self.assertEqual(sorted(after), sorted(set(before) - gone))
        changed = {path for path in after if after[path] != before[path]}
        touched = {os.path.dirname(path) for path in [*items, *databases]} | set(databases)
        self.assertEqual(sorted(changed - touched), [])

    def wait_for_alert(self, title):
        def found():
            dialog = self.tray.dialog()
            return dialog if dialog and (title in dialog.texts("label") or dialog.text() == title) else None

        return wait_for(f"the alert {title!r}", found)

    def press(self, dialog, button):
        """Presses a button and waits until this dialog, though perhaps not the next one, has gone."""
        wait_for(f"the button {button!r}", lambda: dialog.find("push button", button)).press()

        def gone():
            shown = self.tray.dialog()
            return shown is None or shown.path != dialog.path

        wait_for("the alert to go", gone)

    def answer_alert(self, title, message, button):
        dialog = self.wait_for_alert(title)
        texts = dialog.texts("label")
        if message:
            self.assertIn(message, texts)
        else:
            self.assertEqual([text for text in texts if text not in ("", title)], [])
        self.press(dialog, button)

    def wait_for_panel(self):
        panel = self.wait_for_alert("Select Folder")
        wait_for("the panel to be in front", lambda: self.active_title() == "Select Folder")
        return panel

    def active_title(self):
        active = self.screen.active_window()
        return active.title() if active and active.pid() == self.tray.pid else None

    def is_offered(self, panel):
        return panel.find("push button", "Open").has_state(STATE_ENABLED)

    def grant(self):
        panel = self.wait_for_panel()
        wait_for("the Open button", lambda: self.is_offered(panel))
        self.press(panel, "Open")

    def grants(self):
        stored = self.tray.settings().get("HTUserApprovedFolderBookmarks")
        return plistlib.loads(stored) if stored else []

    def query(self, database, statement):
        answer = self.desktop.run("sqlite3", str(self.home / database), statement)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        return answer.stdout.split()

    def install_browser(self, name, identifier):
        """A running program that is taken for the browser, with the desktop entry that belongs to it."""
        browser = OtherProgram(self.desktop, name)
        browser.entry = browser.entry.rename(browser.entry.with_name(identifier + ".desktop"))
        return browser


class ProtectPrivacy(CleanupCase):
    def install_entries(self):
        for identifier in ("google-chrome", "firefox"):
            (self.desktop.data / "applications" / f"{identifier}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={identifier}\nExec={identifier} %u\n"
            )

    def test_erases_what_each_target_names_and_nothing_else(self):
        self.install_entries()
        self.fill_home()
        self.start()
        for number, (target, (confirmation, result, message, items)) in enumerate(PRIVACY.items()):
            with self.subTest(target):
                self.fill_home()
                before = self.facts()
                self.tray.choose("Protect Privacy", target)
                if number == 0:
                    self.grant()
                self.answer_alert("Confirm Cleanup", confirmation, "Clear")
                self.answer_alert(f"Cleanup {result}", message, "OK")
                self.assert_only_gone(before, items, DATABASES.get(target, []))
        self.assertEqual(len(self.grants()), 1)

    def test_clear_all_erases_every_target(self):
        self.fill_home()
        notes = self.notes()
        self.start()
        notes.copy("secret")
        before = self.facts()
        self.tray.choose("Protect Privacy", "Clear All")
        self.grant()
        self.answer_alert(
            "Confirm Cleanup", "Click the Clear button in order to erase all of your private data.", "Clear"
        )
        self.answer_alert("Cleanup successful. Logout Required.", SAFER_AFTER_LOGOUT, "OK")
        items = [item for *_, items in PRIVACY.values() for item in items]
        self.assert_only_gone(before, items, DATABASES["Finder"] + DATABASES["Firefox"])
        self.assertIsNone(read_clipboard(self.desktop))

    def test_keeps_the_places_that_bookmarks_need(self):
        self.install_entries()
        self.fill_home()
        self.start()
        self.tray.choose("Protect Privacy", "Firefox")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup successful"), "OK")
        for database in DATABASES["Firefox"]:
            self.assertEqual(self.query(database, "PRAGMA integrity_check"), ["ok"])
            self.assertEqual(self.query(database, "SELECT count(*) FROM moz_historyvisits"), ["0"])
            self.assertEqual(
                self.query(database, "SELECT url FROM moz_places ORDER BY id"),
                ["https://kept.example/", "https://kept.example/too"],
            )
            self.assertEqual(self.query(database, "SELECT count(*) FROM moz_bookmarks"), ["4"])
        other = PROFILES + "c3.default-esr/places.sqlite"
        self.assertEqual(self.query(other, "SELECT count(*) FROM moz_historyvisits"), ["4"])
        self.assertEqual(self.query(CHROME + "Profile 1/History", "SELECT count(*) FROM urls"), ["1"])

    def test_forgets_the_downloads(self):
        self.fill_home()
        self.start()
        self.tray.choose("Protect Privacy", "Finder")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup successful"), "OK")
        self.assertEqual(self.query(QUARANTINE, "SELECT count(*) FROM LSQuarantineEvent"), ["0"])

    def test_empties_the_clipboard_without_a_question(self):
        notes = self.notes()
        self.start()
        notes.copy("secret")
        self.assertEqual(read_clipboard(self.desktop), "secret")
        self.tray.choose("Protect Privacy", "Clipboard")
        self.answer_alert("Cleanup successful", SAFER, "OK")
        self.assertIsNone(read_clipboard(self.desktop))
        self.assertFalse(notes.owns_clipboard())
        self.tray.stop()
        self.assertIsNone(read_clipboard(self.desktop))
        self.assertEqual(self.grants(), [])

    def test_offers_a_browser_only_where_it_is_installed(self):
        self.start()
        labels = [label for label in self.menu_entry("Protect Privacy").labels() if label != "-"]
        self.assertEqual(labels, ["Clear All", "Clipboard", *PRIVACY])
        for label in labels:
            absent = label in ("Google Chrome", "Firefox")
            self.assertEqual(self.menu_entry("Protect Privacy", label).enabled, not absent, label)
        self.install_entries()
        for browser in ("Google Chrome", "Firefox"):
            self.wait_for_entry(f"{browser} to be offered", lambda entry: entry.enabled, "Protect Privacy", browser)

    def test_does_not_clean_a_browser_that_runs(self):
        self.fill_home()
        firefox = self.install_browser("Firefox", "firefox")
        chrome = self.install_browser("Google-Chrome", "google-chrome")
        self.start()
        before = self.facts()
        first_of_all = ("Clear All", "Google Chrome")
        for target, name in (("Firefox", "Firefox"), ("Google Chrome", "Google Chrome"), first_of_all):
            self.tray.choose("Protect Privacy", target)
            meant = "" if name == "Firefox" else "\n\nThe program that is running: Google-Chrome"
            self.answer_alert(f"{name} is Running", f"Please quit {name} and try again.{meant}", "OK")
        chrome.kill()
        self.tray.choose("Protect Privacy", "Clear All")
        self.answer_alert("Firefox is Running", "Please quit Firefox and try again.", "OK")
        self.assertEqual(self.facts(), before)
        self.assertEqual(self.grants(), [])
        firefox.kill()
        self.tray.choose("Protect Privacy", "Firefox")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup successful"), "OK")
        self.assert_only_gone(before, PRIVACY["Firefox"][-1], DATABASES["Firefox"])

    def test_takes_chromium_for_google_chrome_where_that_is_not_installed(self):
        gone = [".config/chromium/Profile 1/History", ".config/chromium/Profile 1/History-journal"]
        kept = [".config/chromium/Profile 1/Bookmarks", ".config/chromium/Profile 1/Login Data"]
        for item in gone + kept:
            self.write(item)
        chromium = self.install_browser("Chromium", "chromium")
        self.start()
        self.tray.choose("Protect Privacy", "Google Chrome")
        self.answer_alert(
            "Google Chrome is Running",
            "Please quit Google Chrome and try again.\n\nThe program that is running: Chromium",
            "OK",
        )
        chromium.kill()
        self.tray.choose("Protect Privacy", "Google Chrome")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.answer_alert("Cleanup successful", SAFER, "OK")
        self.assertEqual([item for item in gone + kept if (self.home / item).exists()], kept)

    def test_erases_what_programs_of_the_linux_desktop_keep(self):
        profile = ".mozilla/firefox/a1.default-esr"
        write_database(self.home / profile / "places.sqlite", PLACES)
        profiles = self.home / ".mozilla/firefox/profiles.ini"
        profiles.write_text("[Profile0]\nName=esr\nIsRelative=1\nPath=a1.default-esr\n")
        player = self.home / ".config/vlc/vlc-qt-interface.conf"
        player.parent.mkdir()
        player.write_text("[MainWindow]\nx=1\n[RecentsMRL]\nlist=file:///film.mkv\n")
        gone = [f"{profile}/cookies.sqlite", f"{profile}/cookies.sqlite-wal", ".local/share/recently-used.xbel"]
        kept = [f"{profile}/{name}" for name in ("times.json", "key4.db", "logins.json")]
        for item in gone + kept:
            self.write(item)
        download = self.home / "Downloads/letter.pdf"
        self.write("Downloads/letter.pdf")
        os.setxattr(download, "user.xdg.origin.url", b"https://seen.example/letter.pdf")
        self.start()
        self.tray.choose("Protect Privacy", "Clear All")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.answer_alert("Cleanup successful. Logout Required.", SAFER_AFTER_LOGOUT, "OK")
        self.assertEqual([item for item in gone + kept if (self.home / item).exists()], kept)
        self.assertEqual(self.query(f"{profile}/places.sqlite", "SELECT count(*) FROM moz_historyvisits"), ["0"])
        self.assertEqual(self.query(f"{profile}/places.sqlite", "SELECT count(*) FROM moz_bookmarks"), ["4"])
        self.assertEqual(player.read_text(), "[MainWindow]\nx=1\n[RecentsMRL]\n")
        self.assertEqual(os.listxattr(download), [])
        self.assertEqual(download.read_text(), "what Downloads/letter.pdf says\n")


class FreeDiskSpace(CleanupCase):
    def confirmation(self, category):
        what = DISK[category][0]
        sentence = f"in order to erase {what}." if what else "in order to empty your Trash."
        return f"Click the Clear button {sentence}{NOTE}"

    def test_empties_what_each_category_names_and_nothing_else(self):
        self.fill_home()
        self.start()
        for number, (category, (_, noun, items)) in enumerate(DISK.items()):
            with self.subTest(category):
                self.fill_home()
                before = self.facts()
                self.tray.choose("Free Disk Space", category)
                if number == 0:
                    self.grant()
                self.answer_alert("Confirm Cleanup", self.confirmation(category), "Clear")
                result = self.wait_for_alert("Cleanup Successful")
                message = next(text for text in result.texts("label") if text.startswith(noun))
                self.assertRegex(
                    message, f"^{noun} with a total size of [0-9,.]+ (bytes|KB|MB) have been successfully cleaned up!$"
                )
                self.press(result, "OK")
                self.assert_only_gone(before, items)
        self.assertEqual(len(self.grants()), 1)

    def delete_all(self, tick):
        self.fill_home()
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Delete All")
        self.grant()
        dialog = self.wait_for_alert("Confirm Cleanup")
        self.assertIn(
            "Click the Clear button in order to erase unneeded data from your system." + NOTE, dialog.texts("label")
        )
        box = dialog.find("check box", "Delete contents of Downloads folder")
        self.assertFalse(box.has_state(STATE_CHECKED))
        if tick:
            self.tray.tick("Delete contents of Downloads folder")
        self.press(dialog, "OK")
        result = self.wait_for_alert("Cleanup Successful")
        message = next(text for text in result.texts("label") if text.startswith("Unneeded data"))
        self.assertRegex(
            message, r"^Unneeded data with a total size of [0-9,.]+ (bytes|KB|MB) has been successfully cleaned up!$"
        )
        self.press(result, "OK")
        categories = [name for name in DISK if name not in NOT_IN_DELETE_ALL] + ["Downloads Folder"] * tick
        self.assert_only_gone(before, [item for name in categories for item in DISK[name][-1]])

    def test_delete_all_leaves_the_downloads(self):
        self.delete_all(tick=False)

    def test_delete_all_takes_the_downloads_when_told_to(self):
        self.delete_all(tick=True)

    def test_says_when_there_was_nothing(self):
        (self.home / "Library/Caches").mkdir(parents=True)
        self.start()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.answer_alert("No data found to delete!", "", "OK")
        self.tray.choose("Free Disk Space", "Delete All")
        self.press(self.wait_for_alert("Confirm Cleanup"), "OK")
        self.answer_alert("No data found to delete!", "", "OK")

    def test_leaves_a_protected_trash(self):
        self.fill_home()
        command = self.home / "bin/csrutil"
        command.parent.mkdir()
        command.write_text("#!/bin/sh\necho 'System Integrity Protection status: enabled.'\n")
        command.chmod(0o755)
        self.desktop.environment["PATH"] = f"{command.parent}:{self.desktop.environment['PATH']}"
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Trash Can")
        self.answer_alert(
            "'Trash Can' Cannot Be Cleaned Up!",
            "The 'Trash Can' cannot be cleaned up because System Integrity Protection (SIP) is enabled on your system.",
            "OK",
        )
        self.assertEqual(self.facts(), before)
        self.tray.choose("Free Disk Space", "Delete All")
        self.answer_alert(
            "All Selections Except the Trash Can Will Be Cleaned Up!",
            "The Trash Can will not be cleaned up because System Integrity Protection (SIP) is enabled on your system.",
            "OK",
        )
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "OK")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        categories = [name for name in DISK if name not in (*NOT_IN_DELETE_ALL, "Trash Can")]
        self.assert_only_gone(before, [item for name in categories for item in DISK[name][-1]])

    def test_measures_as_the_standard_tools_do(self):
        self.fill_home()
        before = self.facts()
        without_display = {key: value for key, value in self.desktop.environment.items() if key != "DISPLAY"}
        answer = self.desktop.run(self.tray.path, "--measure", "--json", env=without_display)
        self.assertEqual(answer.returncode, 0, answer.stderr)
        measured = {row["category"]: row for row in json.loads(answer.stdout)}
        self.assertEqual(list(measured), list(DISK))
        for category, (*_, items) in DISK.items():
            size, count = 0, 0
            for path in (str(self.home / item) for item in items):
                size += int(self.desktop.run("du", "-sbl", path).stdout.split()[0])
                if os.path.isdir(path) and not os.path.islink(path):
                    size -= os.lstat(path).st_size  # a folder to remove counts what lies in it
                count += len(self.desktop.run("find", path, "-print0").stdout.split("\0")) - 1
            self.assertEqual((measured[category]["bytes"], measured[category]["items"]), (size, count), category)
        table = self.desktop.run(self.tray.path, "--measure", env=without_display).stdout
        for category in DISK:
            self.assertIn(category, table)
        self.assertEqual(self.facts(), before)


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


class LongCleanup(CleanupCase):
    def test_shows_its_progress_and_keeps_answering(self):
        self.fill_home()
        # Deleting takes as long as this command, which the cleanup waits for.
        gate = self.desktop.folder / "gate"
        gate.touch()
        command = self.home / "bin/sqlite3"
        command.parent.mkdir()
        command.write_text(f"#!/bin/sh\nwhile [ -e '{gate}' ]; do sleep 0.1; done\nexec /usr/bin/sqlite3 \"$@\"\n")
        command.chmod(0o755)
        self.desktop.environment["PATH"] = f"{command.parent}:{self.desktop.environment['PATH']}"
        self.start()
        before = self.facts()
        self.tray.choose("Protect Privacy", "Finder")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        window = wait_for("the progress window", lambda: self.screen.windows_of(self.tray.pid))[0]
        self.assertEqual(window.title(), "Harbor Tray")
        self.assertIn("Protect Privacy", self.tray.menu().labels())
        self.tray.choose("Free Disk Space", "Delete All")
        self.screen.close_window(window)
        self.assertIn("Protect Privacy", self.tray.menu().labels())
        self.assertEqual(self.screen.windows_of(self.tray.pid), [window])
        self.assertEqual(self.facts(), before)
        gate.unlink()
        self.answer_alert("Cleanup successful", SAFER, "OK")
        wait_for("no window", lambda: not self.screen.windows_of(self.tray.pid))
        self.assert_only_gone(before, [], DATABASES["Finder"])

    def test_that_is_killed_has_touched_nothing_else(self):
        self.fill_home()
        caches = self.home / "Library/Caches"
        for folder in range(300):
            (caches / f"many{folder}").mkdir()
            for number in range(300):
                (caches / f"many{folder}/{number}").touch()
        self.start()
        before = self.facts()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.grant()
        dialog = self.wait_for_alert("Confirm Cleanup")
        entries = len(os.listdir(caches))
        dialog.find("push button", "Clear").press()
        while len(os.listdir(caches)) == entries:
            self.assertTrue(self.tray.is_running())
        self.tray.stop(signal.SIGKILL)
        self.assertTrue(os.listdir(caches), "the cleanup had ended before it was killed")

        def outside(facts):
            return {path: fact for path, fact in facts.items() if not path.startswith("Library/Caches")}

        self.assertEqual(outside(self.facts()), outside(before))
        self.tray.start()
        self.tray.choose("Free Disk Space", "Application Caches")
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup Successful"), "OK")
        self.assertEqual(os.listdir(caches), [])
        self.assertEqual(outside(self.facts()), outside(before))
