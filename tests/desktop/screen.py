"""The X server as another client sees it: windows, pixels, pointer and keys. Needs no toolkit."""

import struct
import zlib

from Xlib import X, XK, Xatom, display, error
from Xlib.protocol import event
from Xlib.ext import xtest

from waiting import wait_for


class Picture:
    """The pixels of a part of the screen, four bytes each (blue, green, red, unused), row by row."""

    def __init__(self, x, y, width, height, pixels):
        self.x, self.y, self.width, self.height, self.pixels = x, y, width, height, pixels

    def difference(self, other):
        """The smallest box (left, top, right, bottom) around what differs, in screen coordinates, or None."""
        rows = [row for row in range(self.height) if self._row(row) != other._row(row)]
        if not rows:
            return None
        columns = [
            column
            for column in range(self.width)
            if any(self._pixel(row, column) != other._pixel(row, column) for row in rows)
        ]
        return (self.x + columns[0], self.y + rows[0], self.x + columns[-1] + 1, self.y + rows[-1] + 1)

    def colour(self, x, y):
        blue, green, red = self._pixel(y - self.y, x - self.x)[:3]
        return red, green, blue

    def save(self, path):
        """Writes a PNG file."""
        rows = bytearray()
        for row in range(self.height):
            line = self._row(row)
            rgb = bytearray(3 * self.width)
            rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
            rows += b"\0" + rgb

        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

        header = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header))
            file.write(chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b""))

    def _row(self, row):
        return self.pixels[4 * self.width * row : 4 * self.width * (row + 1)]

    def _pixel(self, row, column):
        start = 4 * (self.width * row + column)
        return self.pixels[start : start + 4]


class Window:
    """A window that was on the screen at one moment; every question may find it gone and then answers None."""

    def __init__(self, screen, xid):
        self.screen, self.xid = screen, xid
        self.window = screen.display.create_resource_object("window", xid)

    def __eq__(self, other):
        return isinstance(other, Window) and self.xid == other.xid

    def __hash__(self):
        return self.xid

    def property(self, name):
        try:
            found = self.window.get_full_property(self.screen.atom(name), X.AnyPropertyType)
        except error.XError:
            return None
        return found.value if found else None

    def pid(self):
        value = self.property("_NET_WM_PID")
        return value[0] if value else None

    def title(self):
        value = self.property("_NET_WM_NAME") or self.property("WM_NAME")
        return value.decode("utf-8", "replace") if isinstance(value, bytes) else value

    def box(self):
        """(left, top, right, bottom) on the screen."""
        try:
            geometry = self.window.get_geometry()
            origin = self.window.translate_coords(self.screen.root, 0, 0)
        except error.XError:
            return None
        left, top = -origin.x, -origin.y
        return (left, top, left + geometry.width, top + geometry.height)

    def is_drawn(self):
        """Whether the screen shows along the window's middle line what the program has drawn there."""
        box = self.box()
        if not box:
            return False
        left, top, right, bottom = box
        middle = (bottom - top) // 2
        try:
            own = self.window.get_image(0, middle, right - left, 1, X.ZPixmap, 0xFFFFFFFF)
        except error.XError:
            return False
        line = Picture(left, top + middle, right - left, 1, own.data)
        return line.difference(self.screen.picture((left, top + middle, right, top + middle + 1))) is None


class Screen:
    def __init__(self, name):
        self.display = display.Display(name)
        self.display.set_error_handler(lambda *_: None)
        self.root = self.display.screen().root
        self.width = self.display.screen().width_in_pixels
        self.height = self.display.screen().height_in_pixels

    def close(self):
        self.display.close()

    def atom(self, name):
        return self.display.intern_atom(name)

    def set_resources(self, lines):
        """What programs that start from now on find in the X resources."""
        self.root.change_property(self.atom("RESOURCE_MANAGER"), Xatom.STRING, 8, lines.encode())
        self.display.sync()

    # Windows

    def selection_owner(self, name):
        owner = self.display.get_selection_owner(self.atom(name))
        return Window(self, owner.id) if owner else None

    def active_window(self):
        value = Window(self, self.root.id).property("_NET_ACTIVE_WINDOW")
        return Window(self, value[0]) if value and value[0] else None

    def managed_windows(self):
        return [Window(self, xid) for xid in Window(self, self.root.id).property("_NET_CLIENT_LIST") or []]

    def windows_of(self, pid):
        return [window for window in self.managed_windows() if window.pid() == pid]

    def popups_of(self, pid):
        """The mapped windows of a process that no window manager handles: menus and tool tips, lowest first."""
        found = []
        for child in self.root.query_tree().children:
            try:
                attributes = child.get_attributes()
            except error.XError:
                continue
            window = Window(self, child.id)
            if attributes.map_state == X.IsViewable and attributes.override_redirect and window.pid() == pid:
                found.append(window)
        return found

    def embedded_windows_of(self, pid):
        """The viewable windows of a process that lie inside a window of another one: icons in an embedding tray."""
        found = []

        def walk(window, depth):
            try:
                children = window.query_tree().children
            except error.XError:
                return
            for child in children:
                candidate = Window(self, child.id)
                if depth and candidate.pid() == pid and candidate.property("_XEMBED_INFO") is not None:
                    try:
                        if child.get_attributes().map_state == X.IsViewable:
                            found.append(candidate)
                    except error.XError:
                        continue
                walk(child, depth + 1)

        walk(self.root, 0)
        return found

    # Pixels

    def picture(self, box=None):
        left, top, right, bottom = box or (0, 0, self.width, self.height)
        image = self.root.get_image(left, top, right - left, bottom - top, X.ZPixmap, 0xFFFFFFFF)
        return Picture(left, top, right - left, bottom - top, image.data)

    def settled_picture(self, box=None):
        """A picture of what no longer changes: two in a row that are the same."""
        last = [self.picture(box)]

        def settled():
            before, last[0] = last[0], self.picture(box)
            return last[0].difference(before) is None

        wait_for("the screen to settle", settled)
        return last[0]

    # Pointer and keys, as the real devices give them

    def move_pointer(self, x, y):
        xtest.fake_input(self.display, X.MotionNotify, x=x, y=y)
        self.display.sync()

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        xtest.fake_input(self.display, X.ButtonPress, button)
        xtest.fake_input(self.display, X.ButtonRelease, button)
        self.display.sync()

    def press_key(self, name, *held):
        """Presses and releases a key while others are held down."""
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(key)) for key in (*held, name)]
        for code in codes:
            xtest.fake_input(self.display, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    def pointer(self):
        answer = self.root.query_pointer()
        return answer.root_x, answer.root_y

    def close_window(self, window):
        """What the cross in a title bar does."""
        self._ask_manager(window, "_NET_CLOSE_WINDOW", X.CurrentTime, 2)

    def minimize_window(self, window):
        """What the button for that in a title bar does."""
        iconic = 3
        self._ask_manager(window, "WM_CHANGE_STATE", iconic)

    def _ask_manager(self, window, request, *data):
        message = event.ClientMessage(
            window=window.window,
            client_type=self.atom(request),
            data=(32, [*data, *[0] * (5 - len(data))]),
        )
        self.root.send_event(message, event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.display.sync()


def center(box):
    left, top, right, bottom = box
    return (left + right) // 2, (top + bottom) // 2
