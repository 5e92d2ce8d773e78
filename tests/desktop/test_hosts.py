from case import DesktopCase, center, wait_for


class LatePanel(DesktopCase):
    desktop_options = {"panel": None}
    starts_program = False

    def test_gets_the_icon_when_it_comes(self):
        self.tray.start(wait=False)
        wait_for("the program", lambda: self.desktop.bus.name_has_owner("com.tidewell.HarborTray"))
        self.assertEqual(self.tray.items(), [])
        self.desktop.start_panel("xfce4-panel")
        self.tray.wait_for_icon()
        self.assertIn("Quit", self.tray.menu().labels())

    def test_is_not_needed_for_the_menu(self):
        self.tray.start(wait=False)
        wait_for("the program", lambda: self.desktop.bus.name_has_owner("com.tidewell.HarborTray"))
        self.assertEqual(self.tray.start_again(), 0)
        self.tray.wait_for_popup()
        self.tray.click_shown_entry("Clipboard", "Enable")
        wait_for("the setting", lambda: self.tray.settings().get("ClipboardEnabled"))

    def test_gets_the_icon_when_an_embedding_tray_comes(self):
        self.tray.start(wait=False)
        wait_for("the program", lambda: self.desktop.bus.name_has_owner("com.tidewell.HarborTray"))
        self.desktop.start_panel("trayer")
        wait_for("the icon in the tray", lambda: self.screen.embedded_windows_of(self.tray.pid))


class RestartedPanel(DesktopCase):
    def test_gets_the_icon_back(self):
        for _ in range(2):
            self.desktop.stop_panel()
            self.assertEqual(self.tray.items(), [])
            self.desktop.start_panel()
            self.tray.wait_for_icon()
        self.assertIn("Quit", self.tray.menu().labels())
        self.assertTrue(self.tray.is_running())


class EmbeddingTray:
    """The older protocol, where the program draws the icon itself and gets the clicks as X events."""

    starts_program = False

    def start_embedded(self):
        self.tray.start(wait=False)
        window = wait_for("the icon in the tray", lambda: self.screen.embedded_windows_of(self.tray.pid))[0]
        return wait_for("the place of the icon", window.box)

    def opens_with(self, button):
        self.screen.click(*center(self.start_embedded()), button)
        self.tray.wait_for_popup()
        wait_for("the entries", lambda: self.tray.accessibility.popup_with("Quit"))


class Trayer(EmbeddingTray, DesktopCase):
    desktop_options = {"panel": "trayer"}

    def test_opens_the_menu_with_the_left_button(self):
        self.opens_with(1)

    def test_opens_the_menu_with_the_right_button(self):
        self.opens_with(3)


class Tint2(EmbeddingTray, DesktopCase):
    desktop_options = {"panel": "tint2"}

    def test_opens_the_menu_of_tint2_with_the_left_button(self):
        self.opens_with(1)

    def test_opens_the_menu_of_tint2_with_the_right_button(self):
        self.opens_with(3)


class RestartedTrayer(EmbeddingTray, DesktopCase):
    desktop_options = {"panel": "trayer"}

    def test_gets_the_icon_back(self):
        self.start_embedded()
        self.desktop.stop_panel()
        self.desktop.start_panel()
        wait_for("the icon in the new tray", lambda: self.screen.embedded_windows_of(self.tray.pid))


class OtherWindowManagers(DesktopCase):
    desktop_options = {"window_manager": "xfwm4"}

    def test_xfwm4_shows_menu_and_alert(self):
        self.tray.choose("Clipboard", "Enable")
        other = self.notes()
        self.copy_and_record(other, "one")
        self.click_icon()
        self.tray.click_shown_entry("Clipboard", "Clear All")
        self.tray.answer("Clear")
        self.tray.wait_for_history()


class NoCompositor(DesktopCase):
    desktop_options = {"compositor": False}

    def test_menu_opens_without_one(self):
        self.click_icon()
        self.tray.click_shown_entry("Quit")
        self.assertEqual(self.tray.process.wait(timeout=60), 0)
