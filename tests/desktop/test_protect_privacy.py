"""Protect Privacy as its users go through it: questions, result, and what is left at home."""

import os
import re
import sqlite3

from cleanup_case import (
    CHROME,
    DATABASES,
    PLACES,
    PRIVACY,
    PROFILES,
    QUARANTINE,
    SAFER,
    SAFER_AFTER_LOGOUT,
    CleanupCase,
    write_database,
)
from program import read_clipboard


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

    def other_tables(self, database):
        """What the tables hold that a cleanup does not name, with the statements that made all of them."""
        connection = sqlite3.connect(self.home / database)
        self.addCleanup(connection.close)
        cleaned = re.compile('INSERT INTO "?(moz_places|moz_historyvisits)"? ')
        return [line for line in connection.iterdump() if not cleaned.match(line)]

    def test_leaves_a_database_that_is_locked_or_corrupt_as_it_was(self):
        self.install_entries()
        self.fill_home()
        locked, corrupt = (self.home / database for database in DATABASES["Firefox"])
        write_database(corrupt, PLACES + "PRAGMA journal_mode = DELETE;")
        corrupt.write_bytes(corrupt.read_bytes()[:100] + b"no page of a database " * 1000)
        connection = sqlite3.connect(locked, isolation_level=None)
        self.addCleanup(connection.close)
        connection.execute("BEGIN EXCLUSIVE")
        contents = [database.read_bytes() for database in (locked, corrupt)]
        self.start()
        before = self.facts()
        self.tray.choose("Protect Privacy", "Firefox")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.answer_alert("Cleanup successful", SAFER, "OK")
        self.assertEqual([database.read_bytes() for database in (locked, corrupt)], contents)
        self.assert_only_gone(before, PRIVACY["Firefox"][-1])
        connection.execute("ROLLBACK")
        connection.close()
        self.assertEqual(self.query(DATABASES["Firefox"][0], "PRAGMA integrity_check"), ["ok"])
        self.assertEqual(self.query(DATABASES["Firefox"][0], "SELECT count(*) FROM moz_historyvisits"), ["4"])

    def test_keeps_the_places_that_bookmarks_need(self):
        other = PROFILES + "c3.default-esr/places.sqlite"
        self.install_entries()
        self.fill_home()
        self.start()
        self.tray.choose("Protect Privacy", "Firefox")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup successful"), "OK")
        for database in DATABASES["Firefox"]:
            self.assertEqual(self.query(database, "PRAGMA integrity_check"), ["ok"])
            self.assertEqual(self.other_tables(database), self.other_tables(other))
            self.assertEqual(self.query(database, "SELECT count(*) FROM moz_historyvisits"), ["0"])
            self.assertEqual(
                self.query(database, "SELECT url FROM moz_places ORDER BY id"),
                ["https://kept.example/", "https://kept.example/too"],
            )
            self.assertEqual(self.query(database, "SELECT count(*) FROM moz_bookmarks"), ["4"])
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
