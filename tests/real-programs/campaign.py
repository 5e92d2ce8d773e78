#!/usr/bin/python3
"""Real programs make their data, Harbor Tray erases it through its menu, the programs start again.

Everything happens on a virtual desktop with a home folder of its own. Each check is a line of the table that is written;
the status is 0 only if every check held.
"""

import argparse
import contextlib
import http.server
import json
import os
import shutil
import socket
import subprocess
import sys
import threading
import time
import wave
from pathlib import Path

from browsers import Chromium, Firefox, rows, version_of
from desktop import Desktop
from program import HarborTray
from waiting import wait_for

SECRET = "secret.html"
KEPT = "kept.html"
PARTS = ("firefox", "chromium", "viewers", "mail", "finder", "disk")
RECENTS = ".local/share/recently-used.xbel"
TRASH = ".local/share/Trash"
# Category: what it has to take. What nothing of this desktop fills is not among them.
DISK_ITEMS = {
    "Application Caches": [".cache/program/page", ".cache/thumbnails/normal/1.png"],
    "Application Logs": [".local/state/program/program.log"],
    "Partial Downloads": ["Downloads/film.mkv.part", "Downloads/film.crdownload"],
    "Downloads Folder": ["Downloads/letter.pdf"],
    "Mail Downloads": [".claws-mail/mimetmp/0001.letter.pdf"],
    "Trash Can": [f"{TRASH}/files/letter.pdf", f"{TRASH}/info/letter.pdf.trashinfo"],
}


class Site(http.server.BaseHTTPRequestHandler):
    """Pages that set a cookie and have a title."""

    def do_GET(self):
        page = f"<html><head><title>{self.path}</title></head><body>{self.path}</body></html>".encode()
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Set-Cookie", "seen=yes; Max-Age=100000")
        self.send_header("Content-Length", str(len(page)))
        self.end_headers()
        with contextlib.suppress(ConnectionError):  # a browser that has seen enough hangs up
            self.wfile.write(page)

    def log_message(self, *_):
        pass


class World:
    """What the programs run in: the desktop, without what makes Harbor Tray see another user database."""

    def __init__(self, desktop):
        self.desktop, self.home, self.logs = desktop, desktop.home, desktop.logs
        self.environment = {
            name: value for name, value in desktop.environment.items() if not name.startswith(("LD_", "NSS_"))
        }
        self.environment["LIBGL_ALWAYS_SOFTWARE"] = "1"

    def spawn(self, *command, **options):
        return self.desktop.spawn(*command, **{"env": self.environment, **options})

    def stop(self, process):
        return self.desktop.stop(process)

    def run_in_window(self, command, is_done, what):
        """Starts a program on a file, closes its window as a user does, and waits until its record is written."""
        process = self.spawn(*command)
        try:
            wait_for(f"{command[0]} to show the file", lambda: self.shows(process, "secret"), patience=60)
            time.sleep(1)  # for what it does after the title is set
            for window in self.windows(process):
                self.desktop.screen.close_window(window)
            wait_for(what, is_done, patience=60)
        finally:
            self.stop(process)

    def windows(self, process):
        return self.desktop.screen.windows_of(process.pid)

    def shows(self, process, text):
        return any(text in (window.title() or "") for window in self.windows(process))


class Campaign:
    def __init__(self, desktop):
        self.desktop, self.world = desktop, World(desktop)
        self.home = desktop.home
        self.tray = HarborTray(desktop, os.environ["HARBOR_TRAY"])
        self.parts, self.lines = [], []
        self.site = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Site)
        threading.Thread(target=self.site.serve_forever, daemon=True).start()
        self.granted = False

    def address(self, page):
        return f"http://127.0.0.1:{self.site.server_address[1]}/{page}"

    def check(self, item, program, what, found, expected):
        self.lines.append((item, program, what, found, found == expected))
        print(f"{'ok  ' if found == expected else 'FAIL'} {item} | {program} | {what}: {found!r}", flush=True)
        if found != expected:
            print(f"     expected {expected!r}", flush=True)

    # Through the menu

    def run_item(self, *path):
        """Chooses an item, answers what it asks, and returns the title of the last alert."""
        self.tray.choose(*path)
        while True:
            dialog = self.tray.wait_for_dialog()
            title = dialog.text()
            texts = [text for text in dialog.texts("label") if text]
            button = next(name for name in ("Open", "Clear", "OK") if dialog.find("push button", name))
            if button == "Open":
                wait_for("the panel to offer the folder", lambda d=dialog: d.find("push button", "Open").has_state(8))
            shown = dialog.path
            wait_for(f"the button {button}", lambda d=dialog, b=button: d.find("push button", b)).press()
            wait_for("the alert to go", lambda s=shown: self.shown_path() != s)
            if button == "OK":
                return title, texts

    def shown_path(self):
        dialog = self.tray.dialog()
        return dialog.path if dialog else None

    def run_privacy(self, item):
        title, texts = self.run_item("Protect Privacy", item)
        self.check(item, "Harbor Tray", "the result", "successful" in " ".join([title, *texts]).lower(), True)

    # The programs' data

    def files(self, *places):
        """The regular files below the places, with their contents."""
        found = {}
        for place in places:
            for path in sorted((self.home / place).rglob("*")) if (self.home / place).is_dir() else [self.home / place]:
                if path.is_file() and not path.is_symlink():
                    found[str(path.relative_to(self.home))] = path.read_bytes()
        return found

    def firefox(self):
        browser = Firefox(self.world)
        program = version_of(self.world, browser.program)
        browser.start()
        for page in (SECRET, KEPT):
            browser.visit(self.address(page))
        browser.bookmark(self.address(KEPT))
        before = browser.remembered()
        self.check("Firefox", program, "visits before", len(before["visits"]) >= 2, True)
        self.check("Firefox", program, "cookies before", before["cookies"], 1)
        title, texts = self.run_item("Protect Privacy", "Firefox")
        text = " ".join([title, *texts])
        self.check("Firefox", program, "refused while it runs", "Firefox is Running" in text, True)
        browser.quit()
        kept = self.files(*[browser.profile() / name for name in ("key4.db", "logins.json", "logins.db", "cert9.db")])
        self.run_privacy("Firefox")
        places = browser.profile() / "places.sqlite"
        self.check("Firefox", program, "visits in the database", rows(places, "SELECT count(*) FROM moz_historyvisits"), [0])
        secret = rows(places, f"SELECT url FROM moz_places WHERE url LIKE '%{SECRET}'")
        self.check("Firefox", program, "the secret address in the database", secret, [])
        self.check("Firefox", program, "integrity of the database", rows(places, "PRAGMA integrity_check"), ["ok"])
        self.check(
            "Firefox", program, "passwords, keys and certificates unchanged",
            self.files(*[browser.profile() / name for name in ("key4.db", "logins.json", "logins.db", "cert9.db")]) == kept,
            True,
        )
        left = self.leftovers(browser.profile().parent, SECRET) + self.leftovers(self.home / ".cache/mozilla", SECRET)
        self.check("Firefox", program, "files that still hold the secret address", left, [])
        browser.start()
        after = browser.remembered()
        self.check("Firefox", program, "started again: visits", after["visits"], [])
        self.check("Firefox", program, "started again: bookmarks", after["bookmarks"], [self.address(KEPT)])
        self.check("Firefox", program, "started again: cookies", after["cookies"], 0)
        browser.visit(self.address("later.html"))
        self.check("Firefox", program, "it remembers again", len(browser.remembered()["visits"]), 1)
        browser.quit()
        self.check("Firefox", program, "profile found broken", browser.complaints(), [])

    def chromium(self):
        browser = Chromium(self.world)
        program = version_of(self.world, browser.program)
        browser.run(self.address(SECRET))
        browser.bookmark(self.address(KEPT))
        browser.run(self.address(KEPT))
        self.check("Google Chrome", program, "visits before", len(browser.visits()), 2)
        # The cookies themselves are written half a minute later; the file is there from the start.
        self.check("Google Chrome", program, "the cookies' file before", (browser.profile / "Cookies").exists(), True)
        self.check("Google Chrome", program, "bookmarks before", browser.bookmarks(), [self.address(KEPT)])
        process = self.world.spawn(
            *(browser.program, "--headless=new", "--no-sandbox", "--disable-gpu", "--password-store=basic"),
            *(f"--user-data-dir={browser.data}", "about:blank"),
        )
        wait_for("the lock of Chromium", lambda: os.path.lexists(browser.data / "SingletonLock"), patience=120)
        title, texts = self.run_item("Protect Privacy", "Google Chrome")
        text = " ".join([title, *texts])
        self.check("Google Chrome", program, "refused while it runs", "Google Chrome is Running" in text, True)
        self.check("Google Chrome", program, "the alert names it", "Chromium" in text, True)
        self.world.stop(process)
        kept = self.files(browser.profile / "Login Data", browser.profile / "Bookmarks")
        self.run_privacy("Google Chrome")
        same = self.files(browser.profile / "Login Data", browser.profile / "Bookmarks") == kept
        self.check("Google Chrome", program, "passwords and bookmarks unchanged", same, True)
        for name in ("History", "Cookies", "Favicons", "Sessions"):
            self.check("Google Chrome", program, f"{name} after", (browser.profile / name).exists(), False)
        left = self.leftovers(browser.profile, SECRET) + self.leftovers(self.home / ".cache/chromium", SECRET)
        self.check("Google Chrome", program, "files that still hold the secret address", left, [])
        log = browser.run(self.address("later.html"))
        self.check("Google Chrome", program, "started again: visits", browser.visits(), [self.address("later.html")])
        self.check("Google Chrome", program, "started again: bookmarks", browser.bookmarks(), [self.address(KEPT)])
        complaint = [line for line in log.splitlines() if "corrupt" in line.lower()]
        self.check("Google Chrome", program, "complaints of a broken profile", complaint, [])

    def leftovers(self, folder, text):
        """The files below a folder that hold a text anywhere."""
        found = []
        for path in folder.rglob("*"):
            if path.is_file() and not path.is_symlink() and text.encode() in path.read_bytes():
                found.append(str(path.relative_to(self.home)))
        return sorted(found)

    def documents(self):
        """A document and a film of a second, of the user's own."""
        folder = self.home / "Documents"
        folder.mkdir(exist_ok=True)
        parts = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
                 b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 300]>>"]
        text, offsets = b"%PDF-1.4\n", []
        for number, part in enumerate(parts, 1):
            offsets.append(len(text))
            text += b"%d 0 obj" % number + part + b"endobj\n"
        start = len(text)
        text += b"xref\n0 4\n0000000000 65535 f \n" + b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
        text += b"trailer<</Size 4/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF" % start
        (folder / "secret.pdf").write_bytes(text)
        with wave.open(str(folder / "secret.wav"), "wb") as film:
            film.setnchannels(1)
            film.setsampwidth(2)
            film.setframerate(8000)
            film.writeframes(bytes(16000 * 60))
        return folder / "secret.pdf", folder / "secret.wav"

    def holds(self, place, text):
        path = self.home / place
        return path.exists() and text.encode() in path.read_bytes()

    def viewers(self):
        document, film = self.documents()
        recents, okular, qpdfview = RECENTS, ".config/okularrc", ".config/qpdfview/qpdfview.conf"
        vlc = ".config/vlc/vlc-qt-interface.conf"
        opened = [
            ("Preview", "evince", [str(document)], recents, "secret"),
            ("Preview", "okular", [str(document)], okular, "secret"),
            # Unless told to keep more, it keeps the folder of what was opened last.
            ("Preview", "qpdfview", [str(document)], qpdfview, "openPath="),
            ("QuickTime Player", "vlc", ["--no-audio", "--no-qt-privacy-ask", str(film)], vlc, "secret"),
        ]
        for item, program, arguments, record, text in opened:
            self.world.run_in_window(
                [program, *arguments], lambda where=record, what=text: self.holds(where, what), f"the record of {program}"
            )
            self.check(item, program, f"its record ({record}) before", self.holds(record, text), True)
        control = self.desktop.runtime / "mpv"
        player = self.world.spawn("mpv", "--vo=null", "--ao=null", f"--input-ipc-server={control}", str(film))
        wait_for("mpv", control.exists)
        # Only a film that plays has a place to go on from.
        wait_for("the film to play", lambda: (self.ask_mpv(control, "get_property", "time-pos") or 0) > 0.5)
        self.ask_mpv(control, "quit-watch-later")
        player.wait(timeout=60)
        later = [path for path in self.home.rglob("watch_later/*")]
        self.check("QuickTime Player", "mpv", "its record (watch_later) before", len(later), 1)
        settings = {place: (self.home / place).read_bytes() for place in (okular, qpdfview, vlc)}

        self.run_privacy("Preview")
        self.check("Preview", "evince", "its record after", self.holds(recents, "secret.pdf"), False)
        self.check("Preview", "okular", "its record after", self.holds(okular, "secret"), False)
        self.check("Preview", "qpdfview", "its record after", self.holds(qpdfview, "openPath="), False)
        tabs = self.home / ".local/share/qpdfview/qpdfview/database"
        if tabs.exists():
            self.check("Preview", "qpdfview", "its tabs after", rows(tabs, "SELECT filePath FROM tabs_v5"), [])
        self.run_privacy("QuickTime Player")
        self.check("QuickTime Player", "vlc", "its record after", self.holds(vlc, "secret"), False)
        self.check("QuickTime Player", "mpv", "its record after", [p for p in later if p.exists()], [])
        self.check("Preview", "all", "document and film kept", document.exists() and film.exists(), True)
        for place, before in settings.items():
            kept = set((self.home / place).read_bytes().splitlines())
            lost = [line for line in before.splitlines() if line not in kept and b"secret" not in line]
            records = {b"openPath", b"times", b"filedialog-path", b"recentlyUsed"}
            names = sorted({line.split(b"=")[0] for line in lost} - records)
            self.check("Preview", place, "other settings lost", [name.decode() for name in names], [])
        for item, program, arguments, record, text in opened:
            self.world.run_in_window(
                [program, *arguments], lambda where=record, what=text: self.holds(where, what), f"{program} again"
            )
            self.check(item, program, "starts again and records again", self.holds(record, text), True)

    @staticmethod
    def ask_mpv(path, *command):
        """What mpv answers on its control socket; nothing when it ended without an answer."""
        with socket.socket(socket.AF_UNIX) as connection:
            connection.settimeout(20)
            wait_for("mpv to listen", lambda: connection.connect_ex(str(path)) == 0)
            connection.sendall(json.dumps({"command": command}).encode() + b"\n")
            for line in connection.makefile():
                answer = json.loads(line)
                if "event" not in answer:
                    return answer.get("data")
        return None

    def mail(self):
        """Mail programs with an account folder of their own; the copies lie where the programs open attachments."""
        program = version_of(self.world, "thunderbird")
        process = self.world.spawn("thunderbird", "--headless")
        wait_for("Thunderbird's profile", lambda: list(self.home.glob(".thunderbird/*/prefs.js")), patience=120)
        index = ".thunderbird/*/global-messages-db.sqlite"
        wait_for("Thunderbird's mail", lambda: list(self.home.glob(index)), patience=120)
        self.world.stop(process)
        ended = subprocess.Popen(["true"])
        ended.wait()
        opened = Path(f"/tmp/pid-{ended.pid}")
        opened.mkdir(mode=0o700)
        (opened / "secret.pdf").write_text("an attachment")
        claws = self.home / ".claws-mail/mimetmp/0000.secret.pdf"
        claws.parent.mkdir(parents=True)
        claws.write_text("an attachment")
        (self.home / ".claws-mail/accountrc").write_text("[Account: 1]\n")
        mailbox = self.home / "Mail/inbox/1"
        mailbox.parent.mkdir(parents=True)
        mailbox.write_text("From: a\n\nb\n")
        kept = (".thunderbird", ".claws-mail/accountrc", "Mail")
        before = self.files(*kept)
        self.run_privacy("Mail")
        self.check("Mail", program, "opened attachments after", opened.exists(), False)
        self.check("Mail", "Claws Mail", "opened attachments after", claws.exists(), False)
        self.check("Mail", "all", "mail and accounts unchanged", self.files(*kept) == before, True)
        process = self.world.spawn("thunderbird", "--headless")
        profiles = [path.parent for path in self.home.glob(".thunderbird/*/prefs.js")]
        lock = wait_for(
            "Thunderbird again", lambda: [p for p in profiles if os.path.lexists(p / "lock")], patience=120
        )
        self.check("Mail", program, "starts again", bool(lock) and process.poll() is None, True)
        self.world.stop(process)

    def finder(self):
        downloads = self.home / "Downloads"
        downloads.mkdir(exist_ok=True)
        download = downloads / "letter.txt"
        download.write_text("dear")
        for name in ("user.xdg.origin.url", "user.xdg.referrer.url"):
            os.setxattr(download, name, self.address(SECRET).encode())
        before = (download.stat().st_mtime_ns, download.read_text())
        self.check("Finder", "GTK programs", "list of recent files before", self.holds(RECENTS, "secret"), True)
        self.run_privacy("Finder")
        after = (download.stat().st_mtime_ns, download.read_text())
        self.check("Finder", "GTK programs", "list of recent files after", (self.home / RECENTS).exists(), False)
        self.check("Finder", "downloads", "origin after", os.listxattr(download), [])
        self.check("Finder", "downloads", "file and time unchanged", after == before, True)
        document = self.home / "Documents/secret.pdf"
        self.world.run_in_window(
            ["evince", str(document)], lambda: self.holds(RECENTS, "secret"), "the record of evince again"
        )
        self.check("Finder", "evince", "starts again and records again", self.holds(RECENTS, "secret"), True)

    def disk(self):
        """One file a category where a program would have left it, beside all that the programs made themselves."""
        self.documents()
        profile = Firefox(self.world).profile()
        kept = (profile / "places.sqlite", profile / "key4.db", ".config/chromium/Default/Bookmarks", "Documents", "Mail")
        before = self.files(*kept)
        for item, places in DISK_ITEMS.items():
            for place in places:
                path = self.home / place
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text("unneeded")
            title, texts = self.run_item("Free Disk Space", item)
            said = next((text for text in texts if "size" in text or "No data" in text), title)
            left = [place for place in places if (self.home / place).exists()]
            self.check(item, "Harbor Tray", f"left of what it should take ({said})", left, [])
        unchanged = self.files(*kept) == before
        self.check("Free Disk Space", "all", "profiles, documents and mail unchanged", unchanged, True)
        browser = Firefox(self.world)
        browser.start()
        marked = browser.remembered()["bookmarks"]
        self.check("Free Disk Space", "Firefox", "starts again: bookmarks", marked, [self.address(KEPT)])
        browser.quit()
        chromium = Chromium(self.world)
        chromium.run(self.address("last.html"))
        self.check("Free Disk Space", "Chromium", "starts again: bookmarks", chromium.bookmarks(), [self.address(KEPT)])

    def run(self, parts):
        self.tray.write_settings({"StartMessageAlertSuppression": True})
        self.tray.start()
        self.parts = parts
        for part in parts:
            try:
                getattr(self, part)()
            except Exception as problem:  # the other parts still tell something
                self.check(part, "campaign", "came to its end", f"{type(problem).__name__}: {problem}", "yes")
                while self.tray.dialog():
                    self.desktop.screen.press_key("Escape")
        self.tray.stop()

    def report(self):
        passed = sum(line[-1] for line in self.lines)
        text = [
            "# Real programs, before and after",
            "",
            "Made by `tests/real-programs/run`: the programs of Debian made their data in the home folder of a user of the",
            "campaign's own, each item was run through the menu, and the programs were started again.",
            "",
            f"Run: {', '.join(self.parts)}. {passed} of {len(self.lines)} checks held.",
            "",
            "| Item | Program | What was looked at | Found | |",
            "|---|---|---|---|---|",
        ]
        for item, program, what, found, held in self.lines:
            shown = {True: "yes", False: "no"}.get(found, found) if isinstance(found, bool) else found
            shown = "none" if shown == [] else shown
            shown = str(shown).replace(self.address(""), "…/").replace(str(self.home), "~").replace("|", "\\|")
            verdict = "held" if held else "**not held**"
            text.append(f"| {item} | {program} | {what.replace('|', '/')} | {shown} | {verdict} |")
        return "\n".join(text) + "\n"


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--report", type=Path, required=True)
    arguments.add_argument("parts", nargs="*", default=PARTS, help="firefox, chromium, viewers, mail, finder, disk")
    options = arguments.parse_args()
    with Desktop() as desktop:
        campaign = Campaign(desktop)
        try:
            campaign.run(options.parts)
        finally:
            options.report.write_text(campaign.report())
            if os.environ.get("HARBOR_EVIDENCE"):
                desktop.keep_evidence(os.environ["HARBOR_EVIDENCE"])
    shutil.rmtree(desktop.folder, ignore_errors=True)
    return 0 if campaign.lines and all(line[-1] for line in campaign.lines) else 1


if __name__ == "__main__":
    sys.exit(main())
