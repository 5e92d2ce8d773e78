from pathlib import Path

import dbus

from case import DesktopCase, center, let_ticks_pass, wait_for, with_history
from program import ITEM, MENU
from screen import Window

SECTIONS = [
    "Free Disk Space",
    "Protect Privacy",
    "Uninstall Applications",
    "",
    "Focus Mode",
    "Tint Screen",
    "",
    "Hide Desktop Icons",
    "Highlight Mouse Cursor",
    "Prevent Sleep",
    "",
    "Clipboard",
    "Clear Clipboard Formatting",
    "-",
    "Preferences",
    "-",
    "Harbor Tray Help",
    "Privacy Policy",
    "Rate on App Store",
    "Visit Tidewell",
    "Quit",
]


class Menu(DesktopCase):
    def test_lists_its_sections_in_order(self):
        self.assertEqual(self.tray.menu().labels(), SECTIONS)

    def ask_for_menu(self, exported):
        """What a host sends for the right button. One that draws the exported menu asks for that beside it."""
        service, path = self.tray.wait_for_icon()
        menu = str(self.tray.item_property("Menu"))
        item = dbus.Interface(self.desktop.bus.get_object(service, path, introspect=False), ITEM)
        drawn = dbus.Interface(self.desktop.bus.get_object(service, menu, introspect=False), MENU)
        if exported == "before":
            drawn.AboutToShow(dbus.Int32(0), ignore_reply=True)
        item.ContextMenu(dbus.Int32(200), dbus.Int32(200), ignore_reply=True)
        if exported == "after":
            drawn.AboutToShow(dbus.Int32(0), ignore_reply=True)

    def test_opens_for_a_host_without_the_exported_one(self):
        self.ask_for_menu(exported=None)
        self.tray.wait_for_popup()

    def test_opens_once_for_a_host_that_asks_for_the_exported_one_first(self):
        self.ask_for_menu(exported="before")
        let_ticks_pass()
        self.assertEqual(self.tray.popups(), [])

    def test_opens_once_for_a_host_that_asks_for_the_exported_one_then(self):
        self.ask_for_menu(exported="after")
        let_ticks_pass()
        self.assertEqual(self.tray.popups(), [])

    def test_opens_with_the_left_button(self):
        self.click_icon()
        wait_for("the entries", lambda: self.tray.accessibility.popup_with("Clipboard"))
        self.tray.close_popups()

    def test_shows_the_same_entries_in_the_panel_with_the_right_button(self):
        self.screen.click(*center(self.icon), 3)
        shown = wait_for("the panel's menu", lambda: self.tray.accessibility.popup_with("Quit"))
        texts = [child.text() for child in shown.children()]
        self.assertEqual(
            [text for text in texts if text], [label for label in self.tray.menu().labels() if label not in ("", "-")]
        )

    def test_is_walked_through_with_the_mouse(self):
        self.click_icon()
        self.tray.click_shown_entry("Clipboard", "Enable")
        wait_for("the setting", lambda: self.tray.settings().get("ClipboardEnabled"))
        self.assertTrue(self.menu_entry("Clipboard", "Enable").checked)

    def test_is_walked_through_with_the_keys(self):
        self.click_icon()
        wait_for("the entries", lambda: self.tray.accessibility.popup_with("Quit"))
        self.screen.press_key("Up")
        self.screen.press_key("Return")
        self.assertEqual(self.tray.process.wait(timeout=60), 0)

    def test_is_fresh_at_each_opening(self):
        self.assertFalse(self.menu_entry("Clipboard", "Enable").checked)
        self.tray.choose("Clipboard", "Enable")
        self.wait_for_entry("the check mark", lambda entry: entry.checked, "Clipboard", "Enable")
        self.tray.choose("Clipboard", "Enable")
        self.wait_for_entry("no check mark", lambda entry: not entry.checked, "Clipboard", "Enable")

    def test_marks_a_tool_that_is_on(self):
        unmarked = self.menu_entry("Clipboard").icon
        self.tray.choose("Clipboard", "Enable")
        self.wait_for_entry("the dot", lambda entry: entry.icon != unmarked, "Clipboard")
        self.assertEqual(self.menu_entry("Clear Clipboard Formatting").icon, unmarked)
        self.tray.choose("Clipboard", "Enable")
        self.wait_for_entry("no dot", lambda entry: entry.icon == unmarked, "Clipboard")

    def test_stays_open_and_complete_through_many_openings(self):
        for _ in range(10):
            popup = self.click_icon()
            self.assertIsNotNone(popup.box())
            self.tray.close_popups()
        self.assertTrue(self.tray.is_running())

    def test_is_drawn_on_the_screen(self):
        left, top, right, bottom = self.click_icon().box()
        picture = self.screen.settled_picture((left, top, right, bottom))
        colours = {picture.colour(x, y) for x in range(left, right, 3) for y in range(top, bottom, 3)}
        self.assertGreater(len(colours), 2, "a menu with text has more than a background")
        self.assertGreaterEqual(left, 0)
        self.assertLessEqual(right, self.screen.width)


class ManyApplications(DesktopCase):
    starts_program = False

    def test_scroll_in_a_menu_that_stays_on_the_screen(self):
        opened = self.desktop.home / "opened"
        for number in range(1000):
            (self.desktop.data / f"applications/org.example.App{number:03}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName=Zz {number:03}\nExec=/usr/bin/touch {opened}-{number:03}\n"
            )
        self.start()
        self.click_icon()
        wait_for("the entries", lambda: self.tray.accessibility.popup_with("Quit"))
        for key in ("Down", "Down", "Down", "Right"):
            self.screen.press_key(key)
        wait_for("the submenu", lambda: len(self.tray.popups()) == 2)
        # From its first entry to the last, and into that one's own menu.
        for key in ("Up", "Right"):
            self.screen.press_key(key)
        wait_for("the application's menu", lambda: len(self.tray.popups()) == 3)
        for popup in self.tray.popups():
            left, top, right, bottom = popup.box()
            self.assertTrue(left >= 0 and top >= 0, popup.box())
            self.assertTrue(right <= self.screen.width and bottom <= self.screen.height, popup.box())
        self.screen.press_key("Return")
        wait_for("the last application", Path(f"{opened}-999").exists)
        self.assertEqual(len(list(self.desktop.home.glob("opened-*"))), 1)


def contrast(case):
    """The greatest difference in brightness between the icon and the panel beside it, of 255."""
    left, top, right, bottom = case.icon
    picture = case.screen.settled_picture((left - 4, top, right, bottom))
    ground = sum(picture.colour(left - 3, (top + bottom) // 2))
    return max(abs(sum(picture.colour(x, y)) - ground) for x in range(left, right) for y in range(top, bottom)) / 3


class Icon(DesktopCase):
    def test_can_be_seen_on_a_dark_panel(self):
        wait_for("an icon that stands out", lambda: contrast(self) > 100)

    def test_has_a_title_for_those_who_cannot_see_it(self):
        self.assertEqual(str(self.tray.item_property("Title")), "Harbor Tray")


class IconOnLightPanel(DesktopCase):
    desktop_options = {"dark_panel": False}

    def test_can_be_seen_there(self):
        wait_for("an icon that stands out", lambda: contrast(self) > 100)


def is_in_task_bar(screen, window):
    states = Window(screen, window.xid).property("_NET_WM_STATE") or []
    return screen.atom("_NET_WM_STATE_SKIP_TASKBAR") not in states


class Alerts(DesktopCase):
    settings = with_history("first")

    def open_alert(self):
        other = self.notes()
        self.tray.choose("Clipboard", "Clear All")
        self.tray.wait_for_dialog()
        return other

    def alert_is_active(self):
        active = self.screen.active_window()
        return active and active.pid() == self.tray.pid

    def test_come_to_the_front_and_stand_in_the_task_bar(self):
        self.open_alert()
        wait_for("the alert to be active", self.alert_is_active)
        self.assertTrue(is_in_task_bar(self.screen, self.screen.active_window()))

    def test_are_only_raised_by_what_the_menu_sends_meanwhile(self):
        other = self.open_alert()
        other.activate()
        self.tray.choose("Clipboard", "Enable")
        wait_for("the alert to be in front again", self.alert_is_active)
        self.tray.answer("Cancel")
        self.assertTrue(self.menu_entry("Clipboard", "Enable").checked)
        self.assertIs(self.tray.settings()["ClipboardEnabled"], True)

    def test_are_not_ended_by_the_entry_quit(self):
        other = self.open_alert()
        other.activate()
        self.tray.choose("Quit")
        wait_for("the alert to be in front again", self.alert_is_active)
        self.tray.answer("Cancel")
        self.assertTrue(self.tray.is_running())
        self.assertEqual(self.tray.history(), ["first"])

    def test_take_the_escape_key_for_the_cancelling_button(self):
        self.open_alert()
        wait_for("the alert to be active", self.alert_is_active)
        self.screen.press_key("Escape")
        wait_for("the alert to go", lambda: self.tray.dialog() is None)
        self.assertEqual(self.tray.history(), ["first"])

    def test_take_a_closed_window_for_the_cancelling_button(self):
        self.open_alert()
        wait_for("the alert to be active", self.alert_is_active)
        self.screen.close_window(self.screen.active_window())
        wait_for("the alert to go", lambda: self.tray.dialog() is None)
        self.assertEqual(self.tray.history(), ["first"])

    def test_take_the_return_key_for_the_first_button(self):
        self.open_alert()
        wait_for("the alert to be active", self.alert_is_active)
        self.screen.press_key("Return")
        self.tray.wait_for_history()
