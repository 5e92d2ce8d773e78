"""The program under test, driven as its users and its panel drive it."""

import plistlib
import signal
import subprocess

import dbus

from accessibility import STATE_CHECKED, Accessibility
from desktop import WATCHER
from screen import center
from waiting import pid_on_bus, wait_for

PROPERTIES = "org.freedesktop.DBus.Properties"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
SETTINGS_NAME = "com.tidewell.HarborTray.plist"


class MenuEntry:
    """One entry of the exported menu, as a panel reads it."""

    def __init__(self, menu, identifier, properties, children):
        self.menu, self.identifier = menu, int(identifier)
        self.separator = properties.get("type") == "separator"
        self.visible = bool(properties.get("visible", True))
        self.enabled = bool(properties.get("enabled", True))
        self.icon = bytes(properties.get("icon-data", b""))
        self.checked = int(properties.get("toggle-state", -1)) == 1
        # A single underscore marks a mnemonic, two of them are one.
        self.label = str(properties.get("label", "")).replace("__", "\0").replace("_", "").replace("\0", "_")
        self.children = [MenuEntry(menu, *child) for child in children]

    def labels(self):
        """The visible entries: labels, "-" for a separator, "" for a spacer."""
        return ["-" if child.separator else child.label for child in self.children if child.visible]

    def entry(self, *labels):
        """The entry that the labels lead to."""
        found = self
        for label in labels:
            matching = [child for child in found.children if child.visible and child.label == label]
            if not matching:
                raise AssertionError(f"no entry {label!r} among {found.labels()}")
            found = matching[0]
        return found

    def click(self):
        self.menu.event(self.identifier, "clicked")


class ExportedMenu:
    def __init__(self, bus, name, path):
        self.menu = dbus.Interface(bus.get_object(name, path, introspect=False), MENU)

    def read(self):
        """The whole menu, freshly built: what a panel asks for when it is about to show it."""
        self.menu.AboutToShow(dbus.Int32(0), timeout=20)
        _, (identifier, properties, children) = self.menu.GetLayout(
            dbus.Int32(0), dbus.Int32(-1), dbus.Array([], signature="s"), timeout=20
        )
        return MenuEntry(self, identifier, properties, children)

    def event(self, identifier, what):
        self.menu.Event(dbus.Int32(identifier), what, dbus.String("", variant_level=1), dbus.UInt32(0), timeout=20)


class HarborTray:
    def __init__(self, desktop, path):
        self.desktop, self.path = desktop, str(path)
        self.settings_file = desktop.config / SETTINGS_NAME
        self.accessibility = Accessibility(desktop.accessibility_address)
        self.process = None
        self.scale = 1  # of what it draws; it tells places in its own units

    # Life

    def start(self, *arguments, wait=True, environment=None):
        """Starts the program; with `wait` until its icon is registered with the panel."""
        self.process = self.desktop.spawn(
            *(self.path, *arguments), log="harbor-tray", env={**self.desktop.environment, **(environment or {})}
        )
        if wait:
            self.wait_for_icon()
        return self.process

    def start_again(self, *arguments):
        """Starts a second copy beside the first and returns its status."""
        return self.desktop.run(self.path, *arguments, patience=60).returncode

    def stop(self, how=signal.SIGTERM):
        return self.desktop.stop(self.process, how)

    def is_running(self):
        return self.process.poll() is None

    @property
    def pid(self):
        return self.process.pid

    # Settings

    def write_settings(self, values, form=plistlib.FMT_BINARY):
        """Writes the settings file as an independent program would; lists become the encoded lists of the program."""
        self.settings_file.write_bytes(plistlib.dumps(values, fmt=form))
        self.settings_file.chmod(0o600)

    def settings(self):
        return plistlib.loads(self.settings_file.read_bytes()) if self.settings_file.exists() else {}

    def history(self):
        content = self.settings().get("ClipboardContent")
        return plistlib.loads(content) if content else []

    def wait_for_history(self, *texts):
        try:
            wait_for(f"the history {texts}", lambda: self.history() == list(texts))
        except AssertionError as failure:
            raise AssertionError(f"{failure}; it is {self.history()!r}") from None

    # Icon and menu

    def items(self):
        """The bus names and paths of the program's registered icons."""
        if not self.desktop.bus.name_has_owner(WATCHER):
            return []
        watcher = self.desktop.bus.get_object(WATCHER, "/StatusNotifierWatcher", introspect=False)
        found = []
        for item in watcher.Get(WATCHER, "RegisteredStatusNotifierItems", dbus_interface=PROPERTIES):
            name, _, path = str(item).partition("/")
            if pid_on_bus(self.desktop.bus, name) == self.pid:
                found.append((name, "/" + path if path else "/StatusNotifierItem"))
        return found

    def wait_for_icon(self):
        def registered():
            if not self.is_running():
                raise RuntimeError(f"the program ended early: {self.desktop.log_of('harbor-tray')}")
            return self.items()

        return wait_for("the icon to be registered", registered)[0]

    def item_property(self, name):
        service, path = self.wait_for_icon()
        item = self.desktop.bus.get_object(service, path, introspect=False)
        return item.Get(ITEM, name, dbus_interface=PROPERTIES)

    def menu(self):
        """The exported menu, freshly read."""
        service, _ = self.wait_for_icon()
        return ExportedMenu(self.desktop.bus, service, str(self.item_property("Menu"))).read()

    def choose(self, *labels):
        """Clicks an entry of the exported menu."""
        self.menu().entry(*labels).click()

    def popups(self):
        return self.desktop.screen.popups_of(self.pid)

    def wait_for_popup(self):
        return wait_for("the menu on the screen", self.popups)[-1]

    def close_popups(self):
        def closed():
            if not self.popups():
                return True
            self.desktop.screen.press_key("Escape")
            return False

        wait_for("the menu to close", closed)
        self.accessibility.forget_popups()

    def wait_at_pointer(self, what, condition):
        """Waits for what appears where the pointer rests. A menu that closes behind the pointer may take it along: then the
        pointer is moved again, as a person would."""

        def appeared():
            try:
                return wait_for(what, condition, patience=2)
            except AssertionError:
                x, y = self.desktop.screen.pointer()
                self.desktop.screen.move_pointer(x, y + 1)
                self.desktop.screen.move_pointer(x, y)
                return None

        return wait_for(what, appeared)

    def move_to_shown_entry(self, *labels):
        """Goes with the mouse through the open menu to an entry and returns where it is."""
        for label in labels:
            menu = self.wait_at_pointer(
                f"a menu with {label!r}", lambda text=label: self.accessibility.popup_with(text)
            )
            node = next(child for child in menu.children() if child.text() == label)
            left, top = center(wait_for(f"the place of {label!r}", lambda entry=node: entry.place()))
            place = (self.scale * left, self.scale * top)
            self.desktop.screen.move_pointer(*place)
        return place

    def click_shown_entry(self, *labels):
        self.desktop.screen.click(*self.move_to_shown_entry(*labels))

    # Alerts

    def dialog(self):
        return self.accessibility.dialog(self.pid)

    def wait_for_dialog(self):
        return wait_for("an alert", self.dialog)

    def answer(self, button):
        """Presses a button of the alert that is up and waits for the alert to go."""
        dialog = self.wait_for_dialog()
        wait_for(f"the button {button!r}", lambda: dialog.find("push button", button)).press()
        wait_for("the alert to go", lambda: self.dialog() is None)

    def tick(self, text):
        """Ticks the check box of the alert that is up."""
        box = wait_for(f"the check box {text!r}", lambda: self.wait_for_dialog().find("check box", text))
        box.press()
        wait_for("the tick", lambda: box.has_state(STATE_CHECKED))


def read_clipboard(desktop, target="UTF8_STRING"):
    """What another program gets when it pastes, or None if there is nothing of that kind."""
    try:
        answer = desktop.run("xclip", "-o", "-selection", "clipboard", "-t", target, patience=20)
    except subprocess.TimeoutExpired:
        return None
    return answer.stdout if answer.returncode == 0 else None


def clipboard_targets(desktop):
    return (read_clipboard(desktop, "TARGETS") or "").split()
