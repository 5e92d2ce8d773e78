"""Firefox and Chromium without a window, told where to go and asked what they remember."""

import json
import socket
import sqlite3
import subprocess

from waiting import wait_for


def rows(database, statement):
    """What a database file answers, read without changing it; None where there is no such file."""
    if not database.exists():
        return None
    connection = sqlite3.connect(f"file:{database}?mode=ro", uri=True)
    try:
        return [row[0] for row in connection.execute(statement)]
    finally:
        connection.close()


class Marionette:
    """Firefox's own remote control: lengths and JSON over a socket."""

    def __init__(self, port):
        self.socket = wait_for("Firefox to listen", lambda: self._connect(port), patience=120)
        self.number = 0
        self._receive()
        self.command("WebDriver:NewSession", {"capabilities": {"alwaysMatch": {"acceptInsecureCerts": True}}})

    @staticmethod
    def _connect(port):
        try:
            return socket.create_connection(("127.0.0.1", port), timeout=60)
        except OSError:
            return None

    def _receive(self):
        length = b""
        while not length.endswith(b":"):
            byte = self.socket.recv(1)
            if not byte:
                raise RuntimeError("Firefox hung up")
            length += byte
        message = b""
        while len(message) < int(length[:-1]):
            message += self.socket.recv(65536)
        return json.loads(message)

    def command(self, name, parameters):
        self.number += 1
        text = json.dumps([0, self.number, name, parameters]).encode()
        self.socket.sendall(str(len(text)).encode() + b":" + text)
        _, _, error, result = self._receive()
        if error:
            raise RuntimeError(f"{name}: {error.get('message')}")
        return result

    def script(self, text):
        """Runs the body of an asynchronous function with the rights of the browser itself."""
        self.command("Marionette:SetContext", {"value": "chrome"})
        text = 'const {PlacesUtils} = ChromeUtils.importESModule("resource://gre/modules/PlacesUtils.sys.mjs");' + text
        body = "const done = arguments[arguments.length - 1]; (async () => {" + text + "})().then("
        body += "value => done({value}), problem => done({problem: String(problem)}));"
        result = self.command("WebDriver:ExecuteAsyncScript", {"script": body, "args": []})
        self.command("Marionette:SetContext", {"value": "content"})
        if "problem" in result["value"]:
            raise RuntimeError(result["value"]["problem"])
        return result["value"].get("value")

    def quit(self):
        self.command("Marionette:Quit", {"flags": ["eAttemptQuit"]})
        self.socket.close()


class Firefox:
    """The same with a profile that the program makes for itself."""

    name, program, item = "Firefox ESR", "firefox-esr", "Firefox"

    def __init__(self, world):
        self.world, self.control = world, None

    def start(self):
        if not self.profile():
            first = self.world.spawn(self.program, "--headless", "about:blank")
            wait_for("Firefox to make its profile", self.profile, patience=120)
            wait_for("the profile to be in use", (self.profile() / "places.sqlite").exists, patience=120)
            self.world.stop(first)
        port = free_port()
        (self.profile() / "user.js").write_text(f'user_pref("marionette.port", {port});\n')
        self.process = self.world.spawn(
            self.program, "--headless", "--marionette", "--remote-allow-system-access", "about:blank"
        )
        self.control = Marionette(port)

    def profile(self):
        """The profile's folder once there is one: where the program of today puts it, or where older ones did."""
        for start in (self.world.home / ".config/mozilla/firefox", self.world.home / ".mozilla/firefox"):
            for found in start.glob("*.default-esr"):
                if (found / "prefs.js").exists():
                    return found
        return None

    def visit(self, address):
        self.control.command("WebDriver:Navigate", {"url": address})

    def bookmark(self, address):
        self.control.script(
            "await PlacesUtils.bookmarks.insert({parentGuid: PlacesUtils.bookmarks.unfiledGuid,"
            f" url: {json.dumps(address)}, title: 'kept'}});"
        )

    def remembered(self):
        """What the running program itself knows: visited addresses, cookies, the marked address."""
        return self.control.script(
            "const db = await PlacesUtils.promiseDBConnection();"
            "const ask = async text => (await db.execute(text)).map(row => row.getResultByIndex(0));"
            "return {"
            " visits: (await ask('SELECT url FROM moz_historyvisits v JOIN moz_places p ON p.id = v.place_id'))"
            ".filter(url => url.startsWith('http:')),"
            " bookmarks: await ask(\"SELECT url FROM moz_bookmarks b JOIN moz_places p ON p.id = b.fk"
            " WHERE b.title = 'kept'\"),"
            " cookies: Services.cookies.cookies.filter(one => one.host == '127.0.0.1').length};"
        )

    def quit(self):
        self.control.quit()
        self.process.wait(timeout=60)

    def complaints(self):
        """Signs that the program found its profile broken."""
        return [path.name for path in self.profile().glob("*.corrupt*")]


class Chromium:
    """With the folder of profiles in its usual place, which has to be said aloud where there is no window."""

    name, program, item = "Chromium", "chromium", "Google Chrome"

    def __init__(self, world):
        self.world = world
        self.data = world.home / ".config/chromium"
        self.profile = self.data / "Default"

    def run(self, address):
        """Opens the address, waits until it is in the history, and ends the program."""
        log = self.world.logs / "chromium.log"
        start = log.stat().st_size if log.exists() else 0
        process = self.world.spawn(
            *(self.program, "--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run"),
            *("--password-store=basic", f"--user-data-dir={self.data}", address),
            log="chromium",
        )
        wait_for(f"{address} in the history", lambda: self.has_written(address), patience=60)
        self.world.stop(process)
        return log.read_text(errors="replace")[start:]

    def has_written(self, address):
        """Whether the history's file has the address; the running program lets nobody else ask the database."""
        path = self.profile / "History"
        return path.exists() and address.encode() in path.read_bytes()

    def visits(self):
        return rows(self.profile / "History", "SELECT url FROM urls")

    def bookmarks(self):
        found = []

        def walk(node):
            if node.get("type") == "url":
                found.append(node["url"])
            for child in node.get("children", []):
                walk(child)

        path = self.profile / "Bookmarks"
        for root in json.loads(path.read_text())["roots"].values() if path.exists() else []:
            walk(root)
        return found

    def bookmark(self, address):
        """As the file says it; the program checks it and writes it anew when it starts."""
        folder = {"children": [], "date_added": "0", "name": "x", "type": "folder"}
        mark = {"date_added": "13300000000000000", "id": "5", "name": "kept", "type": "url", "url": address}
        roots = {
            "bookmark_bar": {**folder, "children": [mark], "id": "1"},
            "other": {**folder, "id": "2"},
            "synced": {**folder, "id": "3"},
        }
        (self.profile / "Bookmarks").write_text(json.dumps({"roots": roots, "version": 1}))


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


def version_of(world, program):
    answer = subprocess.run([program, "--version"], capture_output=True, text=True, env=world.environment, timeout=60)
    return (answer.stdout.strip().splitlines() or ["unknown"])[0].split(" built on ")[0]
