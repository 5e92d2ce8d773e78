"""The accessibility tree of the desktop, spoken over D-Bus as a screen reader would."""

import dbus
import dbus.bus
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

from waiting import pid_on_bus

ACCESSIBLE = "org.a11y.atspi.Accessible"
ROOT = "/org/a11y/atspi/accessible/root"
REGISTRY = "org.a11y.atspi.Registry"
STATE_CHECKED = 4
STATE_ENABLED = 8
STATE_FOCUSABLE = 11
STATE_FOCUSED = 12
STATE_SHOWING = 25
DIRECTION_MARK = "\u200e"  # not for the eye, and not read out
PATIENCE = 5.0  # seconds for one question; a program that does not answer is asked again by whoever waits


class Node:
    """One element. Questions to an element that has gone answer with nothing."""

    def __init__(self, bus, name, path):
        self.bus, self.name, self.path = bus, name, path

    def _call(self, interface, method, signature, *arguments):
        return self.bus.call_blocking(self.name, self.path, interface, method, signature, arguments, timeout=PATIENCE)

    def _ask(self, interface, method, signature, *arguments, otherwise=None):
        try:
            return self._call(interface, method, signature, *arguments)
        except dbus.DBusException:
            return otherwise

    def children(self):
        found = self._ask(ACCESSIBLE, "GetChildren", "", otherwise=[])
        return [Node(self.bus, str(name), str(path)) for name, path in found if not path.endswith("/null")]

    def text(self):
        name = self._ask("org.freedesktop.DBus.Properties", "Get", "ss", ACCESSIBLE, "Name", otherwise="")
        return str(name).strip(DIRECTION_MARK)

    def description(self):
        found = self._ask("org.freedesktop.DBus.Properties", "Get", "ss", ACCESSIBLE, "Description", otherwise="")
        return str(found)

    def role(self):
        return str(self._ask(ACCESSIBLE, "GetRoleName", "", otherwise=""))

    def has_state(self, state):
        low, high = self._ask(ACCESSIBLE, "GetState", "", otherwise=(0, 0))
        return bool(((int(high) << 32) | int(low)) >> state & 1)

    def place(self):
        """(left, top, right, bottom) on the screen, or None while it has none."""
        found = self._ask("org.a11y.atspi.Component", "GetExtents", "u", dbus.UInt32(0))
        if not found or not found[2]:
            return None
        left, top, width, height = (int(value) for value in found)
        return (left, top, left + width, top + height)

    def press(self):
        self._call("org.a11y.atspi.Action", "DoAction", "i", 0)

    def descendants(self):
        for child in self.children():
            yield child
            yield from child.descendants()

    def find(self, role, text):
        """The first element below this one with that role and that text, or None."""
        return next((node for node in self.descendants() if node.role() == role and node.text() == text), None)

    def texts(self, role):
        return [node.text() for node in self.descendants() if node.role() == role]


class Accessibility:
    def __init__(self, address):
        self.bus = dbus.bus.BusConnection(address, mainloop=DBusGMainLoop())
        self.bus.set_exit_on_disconnect(False)
        self.root = Node(self.bus, REGISTRY, ROOT)
        self.shown = []
        self.bus.add_signal_receiver(
            self._state_changed,
            signal_name="StateChanged",
            dbus_interface="org.a11y.atspi.Event.Object",
            sender_keyword="sender",
            path_keyword="path",
        )
        # Programs send only what someone has asked for.
        registry = Node(self.bus, REGISTRY, "/org/a11y/atspi/registry")
        registry._call(REGISTRY, "RegisterEvent", "s", "object:state-changed:showing")

    def close(self):
        self.bus.close()

    def dialog(self, pid):
        """The first dialog of a process, or None."""
        for application in self.root.children():
            if pid_on_bus(self.bus, application.name) == pid:
                for child in application.children():
                    if child.role() in ("dialog", "alert", "alert message"):
                        return child
        return None

    def popup_with(self, text):
        """The newest menu on the screen that has an item with this text. Menus stand outside the tree: they are known from
        the event of their appearance."""
        self._receive_events()
        for node in reversed(self.shown):
            if any(child.text() == text for child in node.children()):
                return node
        return None

    def forget_popups(self):
        """To be called when all menus are closed: one that goes with the menu above it does not say so itself."""
        self._receive_events()
        self.shown.clear()

    @staticmethod
    def _receive_events():
        context = GLib.MainContext.default()
        while context.pending():
            context.iteration(False)

    def _state_changed(self, what, shown, *_, sender=None, path=None):
        if what == "showing":
            node = Node(self.bus, str(sender), str(path))
            self.shown = [known for known in self.shown if (known.name, known.path) != (node.name, node.path)]
            if shown:
                self.shown.append(node)
