import plistlib
import signal
import unittest

from Xlib.ext import screensaver  # adds screensaver_query_info to windows

from case import QUIET, DesktopCase, center, wait_for

BELOW_THE_PANEL = (0, 40, 1280, 800)
WHITE, BLUE, ORANGE = (255, 255, 255), (37, 121, 204), (252, 107, 10)
CONFLICT = "Attempt to Activate Conflicting Features!"


def blended(below, veil, alpha):
    return tuple(under * (1 - alpha) + over * alpha for under, over in zip(below, veil))


def is_near(colour, expected, tolerance=2):
    return all(abs(seen - wanted) <= tolerance for seen, wanted in zip(colour, expected))


class OverlayCase(DesktopCase):
    def place(self, program, left, top):
        """Moves a program's window and returns it."""
        window = wait_for("the window", lambda: self.screen.windows_of(program.pid))[0]
        window.window.configure(x=left, y=top)
        wait_for("the window to move", lambda: abs(window.box()[0] - left) < 20 and abs(window.box()[1] - top) < 60)
        return window

    def shown(self, window):
        """The colour in the middle of a window."""
        x, y = center(window.box())
        return self.screen.picture((x, y, x + 1, y + 1)).colour(x, y)

    def wait_for_colour(self, window, expected):
        seen = []

        def matches():
            seen[:] = [self.shown(window)]
            return is_near(seen[0], expected)

        try:
            wait_for(f"the colour {expected}", matches)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; it is {seen[0]}") from None

    def two_windows(self):
        back, front = self.notes("Behind"), self.notes("Before")
        places = self.place(back, 150, 150), self.place(front, 600, 450)
        front.activate()
        for window in places:
            self.wait_for_colour(window, WHITE)
        return back, front, *places

    def wait_for_setting(self, key, value):
        wait_for(f"{key} to be {value!r}", lambda: self.tray.settings().get(key) == value)

    def picture(self):
        return self.screen.settled_picture(BELOW_THE_PANEL)

    def wait_for_picture(self, expected, box=BELOW_THE_PANEL):
        wait_for("the screen as before", lambda: self.screen.picture(box).difference(expected) is None)


class FocusMode(OverlayCase):
    def test_dims_all_but_the_front_window_and_follows_it(self):
        back, _, behind, before = self.two_windows()
        managed = self.screen.managed_windows()
        self.tray.choose("Focus Mode", "Enable")
        self.wait_for_colour(behind, blended(WHITE, (0, 0, 0), 0.8))
        self.wait_for_colour(before, WHITE)
        self.assertEqual(self.screen.active_window(), before)
        self.assertEqual(self.screen.managed_windows(), managed)

        self.tray.choose("Focus Mode", "30% Opacity")
        self.wait_for_colour(behind, blended(WHITE, (0, 0, 0), 0.3))
        self.wait_for_colour(before, WHITE)

        back.activate()
        self.wait_for_colour(before, blended(WHITE, (0, 0, 0), 0.3))
        self.wait_for_colour(behind, WHITE)

        self.tray.choose("Focus Mode", "Enable")
        self.wait_for_colour(before, WHITE)


class FocusModeOnMetacity(FocusMode):
    desktop_options = {"window_manager": "metacity", "compositor": False}

    def test_dims_all_but_the_front_window_and_follows_it(self):
        super().test_dims_all_but_the_front_window_and_follows_it()


class TintScreen(OverlayCase):
    def test_mixes_its_colour_into_everything(self):
        _, _, behind, before = self.two_windows()
        managed = self.screen.managed_windows()
        self.tray.choose("Tint Screen", "Enable")
        for window in (behind, before):
            self.wait_for_colour(window, blended(WHITE, ORANGE, 0.2))
        self.tray.choose("Tint Screen", "Blue Color")
        self.tray.choose("Tint Screen", "90% Intensity")
        for window in (behind, before):
            self.wait_for_colour(window, blended(WHITE, BLUE, 0.45))
        self.assertEqual(self.screen.active_window(), before)
        self.assertEqual(self.screen.managed_windows(), managed)
        self.tray.choose("Tint Screen", "Enable")
        for window in (behind, before):
            self.wait_for_colour(window, WHITE)

    def test_leaves_a_clear_screen_when_the_program_is_killed(self):
        clear = self.picture()
        self.tray.choose("Tint Screen", "Enable")
        self.tray.choose("Highlight Mouse Cursor", "Enable")
        wait_for("the veil", lambda: self.screen.picture(BELOW_THE_PANEL).difference(clear) == BELOW_THE_PANEL)
        self.tray.stop(signal.SIGKILL)
        self.wait_for_picture(clear)


class Conflict(OverlayCase):
    def switch(self, on, off):
        self.tray.choose(on, "Enable")
        labels = self.tray.wait_for_dialog().texts("label")
        self.assertIn(CONFLICT, labels)
        self.assertIn(
            f"Since Focus Mode and Tint Screen cannot exist simultaneously, we have automatically disabled {off}.",
            labels,
        )

    def test_is_told_both_ways_until_it_is_suppressed(self):
        self.tray.choose("Focus Mode", "Enable")
        self.wait_for_setting("FocusModeEnabled", True)
        self.switch("Tint Screen", "Focus Mode")
        self.tray.answer("OK")
        self.wait_for_setting("TintScreenEnabled", True)
        self.assertIs(self.tray.settings()["FocusModeEnabled"], False)

        self.switch("Focus Mode", "Tint Screen")
        self.tray.tick("Do not show again")
        self.tray.answer("OK")
        self.wait_for_setting("FocusModeEnabled", True)
        self.assertIs(self.tray.settings()["TintScreenEnabled"], False)

        self.tray.stop()
        self.tray.start()
        self.tray.choose("Tint Screen", "Enable")
        self.wait_for_setting("TintScreenEnabled", True)
        self.assertIsNone(self.tray.dialog())
        self.assertIs(self.tray.settings()["FocusModeEnabled"], False)


class PointerRing(OverlayCase):
    def ring(self, clear):
        return self.screen.picture(BELOW_THE_PANEL).difference(clear)

    def wait_for_ring(self, clear, x, y, side):
        def is_there():
            box = self.ring(clear)
            return box and all(abs(a - b) <= 8 for a, b in zip(
                box, (x - side / 2, y - side / 2, x + side / 2, y + side / 2)))

        wait_for(f"a ring of {side} around {x}, {y}, and nothing elsewhere", is_there)

    def test_follows_the_pointer_in_its_colour_and_size(self):
        self.screen.move_pointer(400, 400)
        clear = self.picture()
        self.tray.choose("Highlight Mouse Cursor", "Enable")
        self.wait_for_ring(clear, 400, 400, 70)
        picture = self.screen.picture((360, 360, 440, 440))
        self.assertTrue(any(is_near(picture.colour(x, 400), BLUE) for x in range(360, 440)))
        self.screen.move_pointer(800, 500)
        self.wait_for_ring(clear, 800, 500, 70)
        self.tray.choose("Highlight Mouse Cursor", "10")
        self.wait_for_ring(clear, 800, 500, 120)
        self.tray.choose("Highlight Mouse Cursor", "Enable")
        self.wait_for_picture(clear)


class DesktopIcons(OverlayCase):
    def test_are_covered_and_come_back(self):
        folder = self.desktop.home / "Desktop"
        folder.mkdir()
        before = self.picture()
        self.desktop.spawn("pcmanfm", "--desktop")
        wait_for("the desktop", lambda: self.screen.picture(BELOW_THE_PANEL).difference(before))
        empty = self.picture()
        (folder / "Report.txt").write_text("figures")
        box = wait_for("the icon", lambda: self.screen.picture(BELOW_THE_PANEL).difference(empty))
        with_icon = self.screen.settled_picture(box)
        without = self.part(empty, box)

        self.tray.choose("Hide Desktop Icons", "Enable")
        self.assertIn("Your Desktop Icons Will Be Hidden!", self.tray.wait_for_dialog().texts("label"))
        self.tray.answer("OK")
        wait_for("the icon to go", lambda: self.colours(self.screen.picture(box), box) == without)
        self.tray.choose("Hide Desktop Icons", "Enable")
        self.wait_for_picture(with_icon, box)

    @staticmethod
    def colours(picture, box):
        left, top, right, bottom = box
        return [picture.colour(x, y) for y in range(top, bottom) for x in range(left, right)]

    def part(self, picture, box):
        return self.colours(picture, box)


class PreventSleep(OverlayCase):
    def idle(self):
        return screensaver.QueryInfo(
            display=self.screen.display.display,
            opcode=self.screen.display.display.get_extension_major("MIT-SCREEN-SAVER"),
            drawable=self.screen.root,
        ).idle

    def wait_for_resets(self, count):
        last, falls = [self.idle()], [0]

        def fell():
            now = self.idle()
            falls[0] += now < last[0]
            last[0] = now
            return falls[0] >= count

        wait_for("the idle time to fall back", fell)

    def title(self):
        return next(label for label in self.tray.menu().labels() if label.startswith("Prevent Sleep"))

    def test_keeps_the_screen_awake_while_it_is_on(self):
        self.tray.choose("Prevent Sleep", "Enable")
        self.wait_for_setting("PreventSleepEnabled", True)
        self.wait_for_resets(3)
        self.tray.choose(self.title(), "1 Hour")
        first = wait_for("the countdown", lambda: self.title() if "[" in self.title() else None)
        self.assertRegex(first, r"^Prevent Sleep \[0[01]:\d\d:\d\d\]$")
        wait_for("the countdown to go on", lambda: self.title() < first)

        self.tray.stop()
        self.tray.start()
        self.wait_for_resets(2)
        self.assertIn("[", self.title())

        self.tray.choose(self.title(), "Enable")
        wait_for("the idle time to climb", lambda: self.idle() > 4000)
        self.assertEqual(self.title(), "Prevent Sleep")


class Pane(OverlayCase):
    settings = {**QUIET, "TintScreenEnabled": True}

    def panes(self):
        return [w for w in self.screen.windows_of(self.tray.pid) if w.title() == "Tint Screen Preferences"]

    def test_is_one_window_in_the_task_bar_while_it_is_open(self):
        self.assertEqual(self.screen.windows_of(self.tray.pid), [])
        self.tray.choose("Tint Screen", "Preferences")
        pane = wait_for("the pane", self.panes)[0]
        wait_for("the pane in front", lambda: self.screen.active_window() == pane)
        self.tray.choose("Tint Screen", "Preferences")
        self.assertIsNotNone(self.tray.menu())
        self.assertEqual(self.panes(), [pane])
        skip = self.screen.atom("_NET_WM_STATE_SKIP_TASKBAR")
        self.assertNotIn(skip, pane.property("_NET_WM_STATE") or [])
        self.screen.press_key("Escape")
        wait_for("the pane to go", lambda: not self.screen.windows_of(self.tray.pid))

    def test_stores_and_shows_a_colour_chosen_with_the_keys(self):
        other = self.notes()
        window = self.place(other, 900, 600)
        self.wait_for_colour(window, blended(WHITE, ORANGE, 0.2))
        self.tray.choose("Tint Screen", "Preferences")
        pane = wait_for("the pane", self.panes)[0]
        wait_for("the pane in front", lambda: self.screen.active_window() == pane)
        self.screen.press_key("space")
        chooser = wait_for("the chooser", lambda: [
            w for w in self.screen.windows_of(self.tray.pid) if w.title() == "Colors"])[0]
        wait_for("the chooser in front", lambda: self.screen.active_window() == chooser)
        # The basic colours have the focus: the first of them is black.
        self.screen.press_key("Home")
        self.screen.press_key("space")
        self.wait_for_setting("SelectedTintScreenColor", "Custom Color")
        wait_for("the archived colour", lambda: "SelectedCustomTintScreenColor" in self.tray.settings())
        archive = plistlib.loads(self.tray.settings()["SelectedCustomTintScreenColor"])
        rgb = next(o["NSRGB"] for o in archive["$objects"] if isinstance(o, dict) and "NSRGB" in o)
        chosen = [float(part) * 255 for part in rgb.rstrip(b"\0").split()[:3]]
        self.assertFalse(is_near(chosen, ORANGE))
        self.wait_for_colour(window, blended(WHITE, chosen, 0.2))


if __name__ == "__main__":
    unittest.main()
