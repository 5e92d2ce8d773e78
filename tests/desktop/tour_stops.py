"""The stops of the tour: each shows one part of the program at work and leaves the desktop as it found it."""

from accessibility import STATE_CHECKED
from desktop import OtherProgram
from screen import center
from waiting import wait_for

STATE_ENABLED = 8
TEXTS = ["Meet at the harbor at nine", "https://example.org/tides?day=today", "Two lines:\nthis is the second"]
APPLICATION = "Sketchbook"
IDENTIFIER = "org.example.Sketchbook"
UNINSTALL = ("Uninstall Applications", APPLICATION, "Uninstall")


class Tour:
    def __init__(self, desktop, tray, pictures):
        self.desktop, self.tray, self.pictures = desktop, tray, pictures
        self.screen = desktop.screen
        self.icon = None  # where the icon is on the panel, once it is there
        self.taken = []

    def take(self, name):
        path = self.pictures / f"{len(self.taken) + 1:02}-{name}.png"
        self.screen.settled_picture().save(path)
        self.taken.append(path)

    def changes(self, what, act):
        before = self.screen.settled_picture()
        act()
        wait_for(what, lambda: self.screen.picture().difference(before))

    def open_menu(self):
        self.screen.click(*center(self.icon))
        self.tray.wait_for_popup()

    def window(self, title):
        found = [window for window in self.screen.windows_of(self.tray.pid) if window.title() == title]
        return found[0] if found else None

    def node(self, title, role, text):
        """An element of the window with that title, or None."""
        for application in self.tray.accessibility.root.children():
            for window in application.children():
                if window.text() == title:
                    return window.find(role, text)
        return None


def prepare_home(home, entries):
    """An application with files of its own, and something for a cleanup to take."""
    (entries / f"{IDENTIFIER}.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName={APPLICATION}\nExec=/usr/bin/true\nIcon=applications-graphics\n"
    )
    contents = {
        f"Library/Preferences/{IDENTIFIER}.plist": 400,
        f"Library/Application Support/{APPLICATION}/drawings/harbor.png": 240_000,
        f"Library/Caches/{IDENTIFIER}/tiles": 1_800_000,
        f"Library/Logs/{APPLICATION}.log": 9_000,
        f".config/{APPLICATION}/settings.conf": 300,
    }
    for path, size in contents.items():
        file = home / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(bytes(size))


def show_submenus(tour):
    """Opens every submenu with the mouse, one after the other."""

    def paths(entry, above=()):
        for child in entry.children:
            if not child.visible or not child.children:
                continue
            path = (*above, child.label)
            yield path, next(label for label in child.labels() if label not in ("", "-"))
            # The applications' submenus are all alike.
            if path[:1] != UNINSTALL[:1]:
                yield from paths(child, path)
        if above == UNINSTALL[:1]:
            yield UNINSTALL[:2], "Open"

    for path, first in list(paths(tour.tray.menu())):
        tour.open_menu()
        tour.tray.move_to_shown_entry(*path, first)
        tour.take("submenu-" + "-".join(label.lower().replace(" ", "-") for label in path))
        tour.tray.close_popups()


def show_clipboard(tour, front):
    tray = tour.tray
    tray.choose("Clipboard", "Enable")
    wait_for("the history to be on", lambda: tray.menu().entry("Clipboard", "Enable").checked)
    for text in TEXTS:
        front.copy(text)
        wait_for("the text in the history", lambda newest=text: tray.history()[:1] == [newest])
    tour.open_menu()
    tray.move_to_shown_entry("Clipboard", TEXTS[0])
    tour.take("clipboard")
    tray.close_popups()
    tray.choose("Clear Clipboard Formatting", "Automatically Clear")
    switch = ("Clear Clipboard Formatting", "Automatically Clear")
    wait_for("the formatting tool to be on", lambda: tray.menu().entry(*switch).checked)
    tour.open_menu()
    tray.move_to_shown_entry("Clear Clipboard Formatting", "Automatically Clear")
    tour.take("clear-clipboard-formatting")
    tray.close_popups()
    tray.choose(*switch)
    wait_for("the formatting tool to be off", lambda: not tray.menu().entry(*switch).checked)
    tray.choose("Clipboard", "Clear All")
    tray.wait_for_dialog()
    tour.take("clear-clipboard")
    tray.answer("Cancel")
    tray.choose("Clipboard", "Enable")
    wait_for("the history to be off", lambda: not tray.menu().entry("Clipboard", "Enable").checked)


def show_overlays(tour, front):
    """Switches each tool that lies over the windows on and off."""
    desktop, tray, screen = tour.desktop, tour.tray, tour.screen
    behind = OtherProgram(desktop, "Letters")
    window = screen.windows_of(behind.pid)[0]
    window.window.configure(x=180, y=140)
    wait_for("the window to move", lambda: window.box()[0] < 200)
    front.activate()

    tour.changes("the dimmed screen", lambda: tray.choose("Focus Mode", "Enable"))
    tour.take("focus-mode")
    tray.choose("Tint Screen", "Enable")
    tray.wait_for_dialog()
    tour.take("conflict")
    tour.changes("the tint", lambda: tray.answer("OK"))
    tour.take("tint-screen")
    tour.changes("the pane", lambda: tray.choose("Tint Screen", "Preferences"))
    tour.take("tint-preferences")
    screen.press_key("Escape")
    tour.changes("the clear screen", lambda: tray.choose("Tint Screen", "Enable"))

    screen.move_pointer(860, 560)
    tour.changes("the ring", lambda: tray.choose("Highlight Mouse Cursor", "Enable"))
    tour.take("pointer-ring")
    tour.changes("the ring to go", lambda: tray.choose("Highlight Mouse Cursor", "Enable"))


def show_desktop_icons(tour):
    desktop, tray = tour.desktop, tour.tray
    folder = desktop.home / "Desktop"
    folder.mkdir(exist_ok=True)
    (folder / "Report.txt").write_text("figures")
    tour.changes("the icon", lambda: desktop.spawn("pcmanfm", "--desktop"))
    tour.take("desktop-icons")
    tray.choose("Hide Desktop Icons", "Enable")
    tray.wait_for_dialog()
    tour.changes("the icon to go", lambda: tray.answer("OK"))
    tour.take("hidden-desktop-icons")
    tour.changes("the icon to come back", lambda: tray.choose("Hide Desktop Icons", "Enable"))


def show_prevent_sleep(tour):
    tray = tour.tray
    tray.choose("Prevent Sleep", "Enable")
    tour.open_menu()
    tour.take("prevent-sleep")
    tray.close_popups()
    # Its title counts down.
    tray.choose(next(label for label in tray.menu().labels() if label.startswith("Prevent Sleep")), "Enable")


def show_preferences(tour):
    tray = tour.tray
    tray.choose("Preferences")
    switch = wait_for("the switch", lambda: tour.node("Preferences", "check box", "Launch at Login"))
    switch.press()
    wait_for("launch at login to be on", lambda: switch.has_state(STATE_CHECKED))
    tour.take("preferences")
    switch.press()
    wait_for("launch at login to be off", lambda: not switch.has_state(STATE_CHECKED))
    tour.screen.close_window(tour.window("Preferences"))
    wait_for("the preferences to close", lambda: not tour.window("Preferences"))


def show_cleanup(tour):
    """Empties the caches of the prepared home folder, from the grant to the result."""
    tray, caches = tour.tray, tour.desktop.home / "Library/Caches"
    tour.screen.move_pointer(640, 760)  # where it calls up no tool tip
    tray.choose("Free Disk Space", "Application Caches")

    def shown_button(text):
        dialog = tray.dialog()
        return dialog.find("push button", text) if dialog else None

    for label, name in (("Open", "cleanup-grant"), ("Clear", "cleanup-confirmation"), ("OK", "cleanup-result")):
        button = wait_for(f"the button {label!r}", lambda text=label: shown_button(text))
        tour.take(name)
        button.press()
    wait_for("the result to go", lambda: tray.dialog() is None)
    if any(caches.iterdir()):
        raise AssertionError("the caches are not empty")


def show_uninstallation(tour):
    """Moves a file of the prepared application to the Trash, and opens the history."""
    tray, screen = tour.tray, tour.screen
    tray.choose(*UNINSTALL)
    wait_for("the grant or the window", lambda: tray.dialog() or tour.window(APPLICATION))
    if tray.dialog():
        tray.answer("Open")
    delete = wait_for("the end of the search", lambda: enabled(tour.node(APPLICATION, "push button", "Delete")))
    table = tour.node(APPLICATION, "table", "Related files")
    name = next(child for child in table.children() if child.role() == "cell" and child.text() == f"{IDENTIFIER}.plist")
    line = center(name.place())[1]
    box = next(child.place() for child in table.children() if child.role() == "check box" and in_line(child, line))
    screen.click(box[0] + 10, line)
    wait_for("the tick", lambda: tour.node(APPLICATION, "label", "1 file selected (400 bytes)"))
    tour.take("uninstaller")
    screen.click(*center(delete.place()))
    tray.wait_for_dialog()
    tour.take("uninstalled")
    tray.answer("OK")
    screen.close_window(tour.window(APPLICATION))
    wait_for("the window to close", lambda: not tour.window(APPLICATION))
    trash = tour.desktop.data / "Trash/files"
    if len(list(trash.iterdir())) != 1:
        raise AssertionError("the file is not in the Trash")
    tour.open_menu()
    tray.move_to_shown_entry("Uninstall Applications", "Uninstallation History", APPLICATION)
    tour.take("uninstallation-history")
    tray.close_popups()


def in_line(node, height):
    place = node.place()
    return place is not None and place[1] <= height < place[3]


def enabled(node):
    return node if node and node.has_state(STATE_ENABLED) else None
