"""Every window, alert and menu of the program, opened one after another as its users open them. The window in which an
application's related files are reviewed, and the preview of a file, are not among them."""

import plistlib

from accessibility import STATE_ENABLED
from waiting import wait_for

CLIPS = [
    "Meet at the harbor at nine.",
    "https://example.org/tides?day=today&place=harbor_town",
    "Two lines:\nthis is the second",
    "A long text of which the menu shows the beginning and the tip shows more. " * 4,
    "مرحبا بكم في الميناء",
]
QUARANTINE = "Library/Preferences/com.apple.LaunchServices.QuarantineEventsV2"


class Windows:
    """Prepares a home folder on a desktop and goes through the windows of a program that has not been started yet."""

    def __init__(self, desktop, tray):
        self.desktop, self.screen, self.tray = desktop, desktop.screen, tray
        home = desktop.home
        # Whatever is installed on the machine is not installed here.
        desktop.environment["XDG_DATA_DIRS"] = str(desktop.folder / "share")
        for name, identifier in (("Notes", "org.example.Notes"), ("Tide Tables", "org.example.Tides")):
            (desktop.data / "applications" / f"{identifier}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={name}\nExec=/usr/bin/true\n"
            )
        for path in ("Downloads/letter.pdf", "Library/Caches/Google/page", "Library/Logs/log", QUARANTINE):
            (home / path).parent.mkdir(parents=True, exist_ok=True)
            (home / path).write_text("figures\n" * 2000)
        self.gate = desktop.folder / "gate"
        self._install_commands(home / "bin")

    def _install_commands(self, folder):
        """Stand-ins for two outside commands: one says that the Trash is protected, the other takes as long as the gate
        is there."""
        folder.mkdir(exist_ok=True)
        for name, line in (
            ("csrutil", "echo System Integrity Protection status: enabled."),
            ("sqlite3", f"while [ -e '{self.gate}' ]; do sleep 0.1; done"),
        ):
            (folder / name).write_text(f"#!/bin/sh\n{line}\n")
            (folder / name).chmod(0o755)
        self.desktop.environment["PATH"] = f"{folder}:{self.desktop.environment['PATH']}"

    def each(self, environment=None):
        """Yields (name, node, window): what the window is, its top element and the X window, while it is open and in
        front. A tip has no element."""
        yield from self._welcome(environment)
        yield from self._menus()
        yield from self._preferences()
        yield from self._colour_panes()
        yield from self._alerts_of_tools()
        yield from self._cleanups()

    # The windows

    def _welcome(self, environment):
        self.tray.write_settings(
            {"ClipboardEnabled": True, "ClipboardContent": plistlib.dumps(CLIPS, fmt=plistlib.FMT_BINARY)}
        )
        self.tray.start(wait=False, environment=environment)
        yield from self._alert("alert-welcome", "Welcome to Harbor Tray!", "OK")
        self.tray.wait_for_icon()

    def _menus(self):
        # Read before it is opened: what a panel is given differs from what the program draws itself.
        exported = self.tray.menu()
        self.screen.move_pointer(self.screen.width // 2, 60)
        self.tray.start_again()
        menu = wait_for("the menu", lambda: self.tray.accessibility.popup_with("Quit"))
        yield "menu", menu, self.tray.wait_for_popup()
        for entry in exported.children:
            if entry.children:
                yield f"menu-{entry.label.lower().replace(' ', '-')}", *self._submenu(exported, entry.label)
        yield "menu-clipboard-blacklist-apps", *self._submenu(exported, "Clipboard", "Blacklist Apps")
        clip = next(label for label in exported.entry("Clipboard").labels() if label.startswith("A long text"))
        known = self.tray.popups()
        self.tray.move_to_shown_entry("Clipboard", clip)
        yield "clip-preview", None, self.tray.wait_at_pointer("the tip", lambda: self._popup_beside(known))
        self.tray.close_popups()

    def _submenu(self, exported, *labels):
        known = self.tray.popups()
        self.tray.move_to_shown_entry(*labels)
        first = exported.entry(*labels).labels()[0]
        node = self.tray.wait_at_pointer(f"the submenu {labels}", lambda: self.tray.accessibility.popup_with(first))
        return node, self.tray.wait_at_pointer(f"the window of {labels}", lambda: self._popup_beside(known))

    def _popup_beside(self, known):
        return next((popup for popup in self.tray.popups() if popup not in known), None)

    def _preferences(self):
        self.tray.choose("Preferences")
        yield "preferences", *self._shown("Preferences")
        self._close("Preferences")

    def _colour_panes(self):
        for tool in ("Focus Mode", "Tint Screen"):
            title = f"{tool} Preferences"
            self.tray.choose(tool, "Preferences")
            yield f"{tool.lower().replace(' ', '-')}-preferences", *self._shown(title)
            if tool == "Tint Screen":
                self.screen.press_key("space")
                yield "colours", *self._shown("Colors")
                self._close("Colors")
            self._close(title)

    def _alerts_of_tools(self):
        self.tray.choose("Clipboard", "Clear All")
        yield from self._alert("alert-clear-clipboard", "Clear Clipboard", "Cancel")
        missing = self.tray.menu().entry("Clipboard", "Blacklist Apps", "Tide Tables")
        (self.desktop.data / "applications/org.example.Tides.desktop").unlink()
        missing.click()
        yield from self._alert("alert-app-missing", "App Missing", "Cancel")
        self.tray.choose("Hide Desktop Icons", "Enable")
        yield from self._alert("alert-hidden-icons", "Your Desktop Icons Will Be Hidden!", "OK")
        self.tray.choose("Hide Desktop Icons", "Enable")
        self.tray.choose("Tint Screen", "Enable")
        self.tray.choose("Focus Mode", "Enable")
        yield from self._alert("alert-conflict", "Attempt to Activate Conflicting Features!", "OK")
        self.tray.choose("Focus Mode", "Enable")

    def _cleanups(self):
        self.tray.choose("Free Disk Space", "Trash Can")
        yield from self._alert("alert-trash-protected", "'Trash Can' Cannot Be Cleaned Up!", "OK")
        self.tray.choose("Free Disk Space", "Application Logs")
        yield "open-panel", *self._shown("Select Folder")
        self._close("Select Folder")
        yield from self._alert("alert-refused", "Cleanup failed", "OK")
        self.tray.choose("Free Disk Space", "Delete All")
        yield from self._alert(
            "alert-all-but-trash", "All Selections Except the Trash Can Will Be Cleaned Up!", "OK"
        )
        self._grant()
        yield from self._alert("alert-delete-all", "Confirm Cleanup", "Cancel")
        self.tray.choose("Free Disk Space", "Application Logs")
        yield from self._alert("alert-confirm", "Confirm Cleanup", "Clear")
        yield from self._alert("alert-result", "Cleanup Successful", "OK")
        self.gate.touch()
        self.tray.choose("Protect Privacy", "Finder")
        for _ in self._alert("", "Confirm Cleanup", "Clear"):
            pass
        progress = wait_for("the progress window", lambda: self.screen.windows_of(self.tray.pid))[0]
        yield "progress", wait_for("its element", lambda: self._node("Harbor Tray")), progress
        self.gate.unlink()
        yield from self._alert("alert-privacy-result", "Cleanup successful", "OK")

    # What is on the screen

    def _node(self, title):
        """The top-level element with a title; an alert is found by its first text."""
        for application in self.tray.accessibility.root.children():
            for node in application.children() if application.text() == "Harbor Tray" else []:
                if node.text() == title or (node.role() in ("alert message", "dialog") and title in node.texts("label")):
                    return node
        return None

    def _shown(self, title):
        node = wait_for(f"the window {title!r}", lambda: self._node(title))

        def in_front():
            window = self.screen.active_window()
            return window if window and window.pid() == self.tray.pid and window.title() == node.text() else None

        return node, wait_for(f"the window {title!r} in front", in_front)

    def _close(self, title):
        self._shown(title)
        self.screen.press_key("Escape")
        wait_for(f"the window {title!r} to go", lambda: self._node(title) is None)

    def _alert(self, name, title, button):
        node, window = self._shown(title)
        yield name, node, window
        wait_for(f"the button {button!r}", lambda: node.find("push button", button)).press()
        wait_for("the alert to go", lambda: not node.role())

    def _grant(self):
        panel, _ = self._shown("Select Folder")
        button = wait_for("the Open button", lambda: panel.find("push button", "Open"))
        wait_for("it to be enabled", lambda: button.has_state(STATE_ENABLED))
        button.press()
        wait_for("the panel to go", lambda: not panel.role())
