"""Protect Privacy as its users go through it: questions, result, and what is left at home."""

import os
import re
import shutil
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
            program = firefox if name == "Firefox" else chrome
            meant = f"Please quit {name} and try again.\n\n{program.name} ({program.path})"
            self.answer_alert(f"{name} is Running", meant, "OK")
        chrome.kill()
        self.tray.choose("Protect Privacy", "Clear All")
        meant = f"Please quit Firefox and try again.\n\nFirefox ({firefox.path})"
        self.answer_alert("Firefox is Running", meant, "OK")
        self.assertEqual(self.facts(), before)
        self.assertEqual(self.grants(), [])
        firefox.kill()
        self.tray.choose("Protect Privacy", "Firefox")
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert("Cleanup successful"), "OK")
        self.assert_only_gone(before, PRIVACY["Firefox"][-1], DATABASES["Firefox"])

    def test_takes_chromium_for_google_chrome_where_that_is_not_installed(self):
        gone = [".config/chromium/Default/History", ".config/chromium/Default/History-journal"]
        kept = [".config/chromium/Default/Bookmarks", ".config/chromium/Default/Login Data"]
        kept += [".config/chromium/Profile 1/History", ".config/chromium/Profile 1/Cookies"]
        for item in gone + kept:
            self.write(item)
        chromium = self.install_browser("Chromium", "chromium")
        self.start()
        self.tray.choose("Protect Privacy", "Google Chrome")
        self.answer_alert(
            "Google Chrome is Running",
            f"Please quit Google Chrome and try again.\n\nChromium ({chromium.path})",
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
        self.assertEqual(self.query(f"{profile}/places.sqlite", "SELECT count(*) FROM moz_inputhistory"), ["0"])
        self.assertEqual(self.query(f"{profile}/places.sqlite", "SELECT host FROM moz_origins"), ["kept.example"])
        self.assertEqual(self.query(f"{profile}/places.sqlite", "SELECT place_id FROM moz_annos"), ["1"])
        self.assertEqual(self.query(f"{profile}/places.sqlite", "PRAGMA integrity_check"), ["ok"])
        self.assertEqual(player.read_text(), "[MainWindow]\nx=1\n[RecentsMRL]\n")
        self.assertEqual(os.listxattr(download), [])
        self.assertEqual(download.read_text(), "what Downloads/letter.pdf says\n")

    def clean(self, target, result):
        self.tray.choose("Protect Privacy", target)
        self.grant()
        self.press(self.wait_for_alert("Confirm Cleanup"), "Clear")
        self.press(self.wait_for_alert(result), "OK")

    def still_there(self, items):
        return [item for item in items if (self.home / item).exists()]

    def test_follows_no_link_out_of_a_sandbox(self):
        kept = [".local/share/okular/docdata/1.letter.pdf.xml", ".local/share/okular/bookmarks.xml"]
        gone = [".var/app/org.gnome.Evince/cache/evince/page"]
        for item in kept + gone:
            self.write(item)
        sandbox = self.home / ".var/app/org.kde.okular"
        sandbox.mkdir(parents=True)
        (sandbox / "cache").symlink_to(self.home / ".local/share")
        self.start()
        self.clean("Preview", "Cleanup Successful. Logout Required.")
        self.assertEqual(self.still_there(kept + gone), kept)

    def test_believes_no_list_of_profiles_about_what_is_outside_its_sandbox(self):
        self.install_entries()
        mail = ".thunderbird/x.default"
        files = ("times.json", "cookies.sqlite", "formhistory.sqlite", "favicons.sqlite", "sessionstore-backups/a")
        kept = [f"{mail}/{name}" for name in files]
        folder = ".var/app/org.mozilla.firefox/.mozilla/firefox"
        gone = [f"{folder}/honest/cookies.sqlite"]
        for item in [*kept, *gone, f"{folder}/honest/times.json"]:
            self.write(item)
        (self.home / folder / "linked").symlink_to(self.home / mail)
        paths = [(0, self.home / mail), (1, "linked"), (1, "../../../../../" + mail), (1, "honest")]
        rows = (f"[Profile{n}]\nIsRelative={kind}\nPath={path}\n" for n, (kind, path) in enumerate(paths))
        (self.home / folder / "profiles.ini").write_text("".join(rows))
        self.start()
        self.clean("Firefox", "Cleanup successful")
        self.assertEqual(self.still_there(kept + gone), kept)

    def test_a_database_of_a_sandbox_starts_no_program(self):
        self.install_entries()
        folder = self.home / ".var/app/org.mozilla.firefox/.mozilla/firefox"
        started = self.desktop.folder / "started"
        code = f"SELECT edit('x', 'touch {started}; :')"
        trigger = f"CREATE TRIGGER t AFTER DELETE ON moz_historyvisits BEGIN {code}; END;"
        write_database(folder / "a/places.sqlite", PLACES + trigger)
        self.write(str((folder / "a/times.json").relative_to(self.home)))
        (folder / "profiles.ini").write_text("[Profile0]\nIsRelative=1\nPath=a\n")
        self.start()
        self.clean("Firefox", "Cleanup successful")
        self.assertFalse(started.exists())

    def test_caches_that_are_the_settings_folder_are_none(self):
        self.install_entries()
        self.desktop.environment["XDG_CACHE_HOME"] = str(self.home / ".config")
        kept = [f".config/google-chrome/Default/{name}" for name in ("Bookmarks", "Login Data", "Preferences")]
        kept += [".config/google-chrome/Local State", ".config/google-chrome/Profile 1/History"]
        gone = [".config/google-chrome/Default/History"]
        for item in kept + gone:
            self.write(item)
        self.start()
        self.clean("Google Chrome", "Cleanup successful")
        self.assertEqual(self.still_there(kept + gone), kept)

    def test_leaves_every_profile_of_chrome_but_the_default_one(self):
        self.install_entries()
        names = ("History", "Cookies", "Web Data", "Sessions/Session_1")
        kept = [f".config/google-chrome/Profile 1/{name}" for name in names]
        gone = [f".config/google-chrome/Default/{name}" for name in names]
        for item in kept + gone:
            self.write(item)
        self.start()
        self.clean("Google Chrome", "Cleanup successful")
        self.assertEqual(self.still_there(kept + gone), kept)

    def test_a_program_that_is_called_like_a_browser_is_none(self):
        self.install_entries()
        tool = self.home / ".cache/ms-playwright/chromium-1/chrome-linux/chrome"
        tool.parent.mkdir(parents=True)
        shutil.copy("/bin/sleep", tool)
        self.desktop.spawn(str(tool), "1000", log="tool")
        gone = [".config/google-chrome/Default/History"]
        self.write(gone[0])
        self.start()
        self.clean("Google Chrome", "Cleanup successful")
        self.assertEqual(self.still_there(gone), [])
