"""Every window as people meet it who see badly, use no mouse, have a small screen or read from the right."""

import unittest

from accessibility import STATE_CHECKED, STATE_ENABLED, STATE_FOCUSABLE, STATE_FOCUSED, STATE_SHOWING
from case import DesktopCase
from waiting import wait_for
from windows import Windows

LARGEST = (1024, 700)
# The roles of what can be used and has to say what it is.
CONTROLS = {
    "push button", "toggle button", "check box", "button menu", "combo box", "text", "spin box", "list", "tree", "table",
    "slider", "menu item", "check menu item", "radio menu item",
}  # fmt: skip
WINDOWS = {"frame", "dialog", "alert message", "popup menu"}


def unnamed_controls(node):
    """What can be used below an element, by keyboard or with the mouse, and has no name. Cells say what they hold."""
    return [
        control.role()
        for control in node.descendants()
        if control.has_state(STATE_SHOWING)
        and control.has_state(STATE_ENABLED)  # a blank line of a menu is an entry that cannot be chosen
        and (control.role() in CONTROLS or control.has_state(STATE_FOCUSABLE))
        and control.role() not in ("tree item", "list item", "table cell", "separator")
        and not control.text().strip()
    ]


class EveryWindowCase(DesktopCase):
    settings = None
    starts_program = False

    def check_sizes(self, scale, boxes):
        for name, (left, top, right, bottom) in boxes.items():
            with self.subTest(name):
                self.assertLessEqual(right - left, LARGEST[0] * scale)
                self.assertLessEqual(bottom - top, LARGEST[1] * scale)
                self.assertTrue(left >= 0 and top >= 0 and right <= self.screen.width and bottom <= self.screen.height)


class EveryWindow(EveryWindowCase):
    def test_has_names_and_roles_and_fits_a_small_screen(self):
        boxes = {}
        for name, node, window in Windows(self.desktop, self.tray).each():
            boxes[name] = window.box()
            if node is None:  # a tip
                continue
            with self.subTest(name):
                self.assertIn(node.role(), WINDOWS)
                if node.role() != "popup menu":
                    self.assertTrue(node.text())
                    self.assertEqual(node.text(), window.title())
                self.assertEqual(unnamed_controls(node), [])
        self.check_sizes(1, boxes)


class EveryWindowAtTwiceTheSize(EveryWindowCase):
    desktop_options = {"size": (2560, 1600)}

    def test_is_drawn_so_and_fits_the_screen(self):
        self.screen.set_resources("Xft.dpi:\t192\n")
        self.tray.scale = 2
        boxes = {name: window.box() for name, _, window in Windows(self.desktop, self.tray).each()}
        self.check_sizes(2, boxes)
        left, _, right, _ = boxes["preferences"]
        self.assertGreater(right - left, 600)


class DarkDesktop(DesktopCase):
    starts_program = False

    def ground(self):
        """The brightness of the preferences window's edge, of 255."""
        left, top, _, _ = self.window.box()
        return sum(self.screen.picture((left + 2, top + 2, left + 3, top + 3)).colour(left + 2, top + 2)) / 3

    def test_has_dark_windows_until_it_is_light_again(self):
        portal = self.desktop.start_portal()
        self.addCleanup(portal.stdin.close)
        self.start()
        self.tray.choose("Preferences")
        self.window = wait_for("the window", lambda: self.screen.windows_of(self.tray.pid))[0]
        wait_for("a dark window", lambda: self.ground() < 80)
        portal.stdin.write(b"2\n")
        portal.stdin.flush()
        wait_for("a light window", lambda: self.ground() > 200)
        portal.stdin.write(b"1\n")
        portal.stdin.flush()
        wait_for("a dark window again", lambda: self.ground() < 80)


class Keyboard(DesktopCase):
    """Nothing here touches the mouse. A second start is what a key of the desktop is bound to."""

    settings = None
    starts_program = False

    def windows(self):
        return [window.title() for window in self.screen.windows_of(self.tray.pid)]

    def press(self, *names):
        for name in names:
            self.screen.press_key(name)

    def wait_for_focus(self, role, text):
        def focused():
            for application in self.tray.accessibility.root.children():
                found = application.find(role, text) if application.text() == "Harbor Tray" else None
                if found and found.has_state(STATE_FOCUSED):
                    return found
            return None

        return wait_for(f"the focus on the {role} {text!r}", focused)

    def open_menu(self):
        self.tray.start_again()
        wait_for("the menu", lambda: self.tray.popups() and self.tray.accessibility.popup_with("Quit"))

    def wait_for_title(self, title):
        def in_front():
            window = self.screen.active_window()
            return window and window.pid() == self.tray.pid and window.title() == title

        wait_for(f"{title!r} in front", in_front)

    def test_alone_goes_through_alerts_menus_panels_and_panes(self):
        self.tray.start(wait=False)
        self.wait_for_title("Harbor Tray")
        self.wait_for_focus("push button", "OK")
        self.press("Tab")
        box = self.wait_for_focus("check box", "Do not show again")
        self.press("space")
        wait_for("the tick", lambda: box.has_state(STATE_CHECKED))
        self.press("Return")
        wait_for("the choice to be stored", lambda: self.tray.settings().get("StartMessageAlertSuppression"))
        self.tray.wait_for_icon()

        self.open_menu()
        self.press(*["Up"] * 6, "Return")
        self.wait_for_title("Preferences")
        self.wait_for_focus("check box", "Launch at Login")
        self.press("Tab")
        self.wait_for_focus("push button", "Reset Warnings")
        self.press("Tab")
        self.wait_for_focus("check box", "Launch at Login")
        self.press("Escape")
        wait_for("the window to go", lambda: not self.windows())

        self.open_menu()
        self.press("Down", "Right")  # the first entry's submenu, whose first entry is then the current one
        wait_for("the submenu", lambda: len(self.tray.popups()) == 2)
        self.press("Down", "Return")
        self.wait_for_title("Select Folder")
        self.wait_for_focus("text", "Directory:")
        self.press("Tab")
        self.wait_for_focus("push button", "Open")
        self.press("Tab")
        self.wait_for_focus("push button", "Cancel")
        self.press("Escape")
        self.wait_for_title("Harbor Tray")
        self.wait_for_focus("push button", "OK")
        self.press("Escape")
        wait_for("the alert to go", lambda: not self.windows())

        self.open_menu()
        self.press(*["Down"] * 4, "Right")
        wait_for("the submenu", lambda: len(self.tray.popups()) == 2)
        self.press("Up", "Return")
        self.wait_for_title("Focus Mode Preferences")
        self.wait_for_focus("push button", "Custom Color")
        self.press("Return")
        self.wait_for_title("Colors")
        self.press("Escape")
        self.wait_for_title("Focus Mode Preferences")
        self.press("Escape")
        wait_for("the pane to go", lambda: not self.windows())


class FromTheRight(DesktopCase):
    starts_program = False

    def test_windows_are_mirrored_and_texts_are_not(self):
        self.tray.start(environment={"LANGUAGE": "ar", "LANG": "ar_EG.UTF-8"})
        self.tray.choose("Preferences")

        def node(role):
            for application in self.tray.accessibility.root.children():
                if found := application.find(role, "Launch at Login"):
                    return found.place()
            return None

        label, switch = (wait_for(f"the {role}", lambda role=role: node(role)) for role in ("label", "check box"))
        self.assertLess(switch[2], label[2])
        labels = self.tray.menu().entry("Prevent Sleep").labels()
        self.assertIn("15 Minutes", labels)


if __name__ == "__main__":
    unittest.main()
