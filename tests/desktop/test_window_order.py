"""Which of the program's windows is in front, and which stays where the user has put it."""

from case import let_ticks_pass
from reviewing import ENTRY, UNINSTALL, UninstallerCase
from screen import Window
from waiting import wait_for

WITHDRAWN, NORMAL, ICONIC = 0, 1, 3
PANES = (("Preferences",), ("Focus Mode", "Preferences"), ("Tint Screen", "Preferences"))
TITLES = {path: path[0] if len(path) == 1 else f"{path[0]} Preferences" for path in PANES}


class WindowOrder(UninstallerCase):
    def install(self):
        super().install()
        for name in ("Anchor", "Buoy", "Compass"):
            (self.desktop.data / f"applications/org.example.{name}.desktop").write_text(
                ENTRY.replace("Sketchbook", name)
            )

    def open(self, path):
        self.tray.choose(*path)
        self.wait_for_active(TITLES[path])

    def window(self, title):
        return wait_for(f"the window {title!r}", lambda: self.windows(title))[0]

    def state_of(self, title):
        state = self.window(title).property("WM_STATE")
        return state[0] if state is not None else WITHDRAWN

    def minimize(self, title):
        self.screen.minimize_window(self.window(title))
        wait_for(f"{title!r} to be minimized", lambda: self.state_of(title) == ICONIC)

    def stacking(self):
        """The titles of the program's windows, lowest first."""
        xids = Window(self.screen, self.screen.root.id).property("_NET_CLIENT_LIST_STACKING") or []
        windows = [Window(self.screen, xid) for xid in xids]
        return [window.title() for window in windows if window.pid() == self.tray.pid]

    def test_a_new_window_is_in_front_of_all_others_which_keep_their_order(self):
        self.review()
        for path in PANES:
            self.open(path)
        expected = ["Sketchbook", *TITLES.values()]
        self.assertEqual(self.stacking(), expected)
        for name in ("Anchor", "Buoy", "Compass"):
            self.tray.choose(UNINSTALL[0], name, UNINSTALL[2])
            expected.append(name)
            self.wait_for_active(name)
            let_ticks_pass()
            self.wait_for_active(name)
            self.assertEqual(self.stacking(), expected)

    def test_a_minimized_window_stays_so_when_another_one_opens(self):
        self.open(PANES[2])
        self.minimize("Tint Screen Preferences")
        self.open(PANES[0])
        let_ticks_pass()
        self.assertEqual(self.state_of("Tint Screen Preferences"), ICONIC)

    def check_comes_back(self):
        other = self.notes()
        for path in PANES:
            title = TITLES[path]
            with self.subTest(title):
                self.open(path)
                other.activate()
                self.tray.choose(*path)
                self.wait_for_active(title)
                self.minimize(title)
                other.activate()
                self.tray.choose(*path)
                self.wait_for_active(title)
                self.assertEqual(self.state_of(title), NORMAL)

    def test_what_is_asked_for_again_comes_back(self):
        self.check_comes_back()


class WindowOrderOnMetacity(WindowOrder):
    desktop_options = {"window_manager": "metacity", "compositor": False}

    def test_what_is_asked_for_again_comes_back_on_metacity(self):
        self.check_comes_back()


class WindowOrderOnXfwm(WindowOrder):
    desktop_options = {"window_manager": "xfwm4", "compositor": False}

    def test_what_is_asked_for_again_comes_back_on_xfwm(self):
        self.check_comes_back()
