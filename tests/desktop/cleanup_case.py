"""A home folder with something in every place that a cleanup knows, and what the tests of the cleanups share."""

import os
import plistlib
import sqlite3
import stat
from pathlib import Path

from case import DesktopCase, OtherProgram, wait_for

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

PLACES = (Path(__file__).parent / "places.sql").read_text() + """
INSERT INTO moz_origins (id, prefix, host, frecency) VALUES (1, 'https://', 'kept.example', 5),
  (2, 'https://', 'seen.example', 5);
INSERT INTO moz_places (id, url, guid, origin_id) VALUES (1, 'https://kept.example/', 'a', 1),
  (2, 'https://seen.example/', 'b', 2), (3, 'https://kept.example/too', 'c', 1);
INSERT INTO moz_historyvisits (place_id) VALUES (1), (2), (2), (3);
INSERT INTO moz_bookmarks (type, fk, title) VALUES (2, NULL, 'menu'), (1, 1, 'one'), (1, 3, 'three'), (1, 3, 'again');
INSERT INTO moz_keywords (keyword, place_id) VALUES ('k', 1);
INSERT INTO moz_anno_attributes (id, name) VALUES (1, 'note');
INSERT INTO moz_annos (place_id, anno_attribute_id, content) VALUES (1, 1, 'of the first');
INSERT INTO moz_inputhistory VALUES (3, 'typed', 2);
INSERT INTO moz_meta VALUES ('sync/bookmarks/syncId', 'x');
INSERT INTO moz_places_metadata (place_id, created_at) VALUES (3, 7);
PRAGMA journal_mode = WAL;
"""
QUARANTINE_EVENTS = """
CREATE TABLE LSQuarantineEvent (LSQuarantineEventIdentifier TEXT PRIMARY KEY NOT NULL, LSQuarantineTimeStamp REAL,
  LSQuarantineAgentBundleIdentifier TEXT, LSQuarantineAgentName TEXT, LSQuarantineDataURLString TEXT,
  LSQuarantineSenderName TEXT, LSQuarantineSenderAddress TEXT, LSQuarantineTypeNumber INTEGER,
  LSQuarantineOriginTitle TEXT, LSQuarantineOriginURLString TEXT, LSQuarantineOriginAlias BLOB);
CREATE INDEX LSQuarantineTimeStampIndex ON LSQuarantineEvent (LSQuarantineTimeStamp);
INSERT INTO LSQuarantineEvent (LSQuarantineEventIdentifier, LSQuarantineTimeStamp, LSQuarantineAgentName,
  LSQuarantineDataURLString) VALUES ('1', 2.5, 'Browser', 'https://seen.example/file.zip');
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
        # The caches of the panel and its like are not the program's: outside the home folder there are none for it.
        self.desktop.environment["XDG_CACHE_HOME"] = str(self.desktop.folder / "cache")
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
