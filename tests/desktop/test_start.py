import re
import signal

from case import QUIET, DesktopCase, wait_for

WELCOME = (
    "I am a menubar only app. Please click my icon from the menubar to get started. Hope you love me!"
)


class FirstStart(DesktopCase):
    settings = None
    starts_program = False

    def test_welcomes_and_waits_for_the_answer(self):
        self.tray.start(wait=False)
        dialog = self.tray.wait_for_dialog()
        texts = dialog.texts("label")
        self.assertIn("Welcome to Harbor Tray!", texts)
        self.assertIn(WELCOME, texts)
        self.assertEqual(dialog.texts("push button"), ["OK"])
        self.assertEqual(dialog.texts("check box"), ["Do not show again"])
        self.assertEqual(self.tray.items(), [])
        self.tray.answer("OK")
        self.tray.wait_for_icon()

    def test_welcomes_again_unless_told_not_to(self):
        self.tray.start(wait=False)
        self.tray.answer("OK")
        self.tray.wait_for_icon()
        self.assertFalse(self.tray.settings().get("StartMessageAlertSuppression", False))
        self.tray.stop()

        self.tray.start(wait=False)
        self.tray.tick("Do not show again")
        self.tray.answer("OK")
        self.tray.wait_for_icon()
        self.assertIs(self.tray.settings()["StartMessageAlertSuppression"], True)
        self.tray.stop()

        # Without an answer to give, the icon comes by itself.
        self.tray.start()
        self.assertIsNone(self.tray.dialog())


class Life(DesktopCase):
    def test_ends_with_the_entry_quit(self):
        self.tray.choose("Quit")
        self.assertEqual(self.tray.process.wait(timeout=60), 0)

    def test_ends_on_sigterm(self):
        self.assertEqual(self.tray.stop(signal.SIGTERM), 0)
        self.assertFalse(self.desktop.bus.name_has_owner("com.tidewell.HarborTray"))

    def test_ends_on_sigterm_while_an_alert_is_up(self):
        self.tray.stop()
        self.tray.write_settings({})
        self.tray.start(wait=False)
        self.tray.wait_for_dialog()
        self.assertEqual(self.tray.stop(signal.SIGTERM), 0)

    def test_owns_its_name_on_the_bus(self):
        wait_for("the name", lambda: self.desktop.bus.name_has_owner("com.tidewell.HarborTray"))

    def test_second_start_brings_up_the_menu_of_the_first(self):
        self.assertEqual(self.tray.popups(), [])
        self.assertEqual(self.tray.start_again(), 0)
        self.tray.wait_for_popup()
        self.assertTrue(self.tray.is_running())
        self.assertEqual(len(self.tray.items()), 1)

    def test_second_start_raises_the_alert_that_is_up(self):
        self.tray.stop()
        self.tray.write_settings({})
        self.tray.start(wait=False)
        self.tray.wait_for_dialog()
        other = self.notes()
        self.assertEqual(self.tray.start_again(), 0)
        wait_for("the alert to be in front", lambda: (self.screen.active_window() or other).pid() == self.tray.pid)
        self.assertEqual(self.tray.popups(), [])

    def test_second_start_finds_the_first_that_has_lost_its_bus(self):
        self.desktop.restart_bus()
        self.assertEqual(self.tray.start_again(), 0)
        self.tray.wait_for_popup()
        self.assertTrue(self.tray.is_running())

    def test_settings_of_a_start_that_changes_nothing_stay_as_they_are(self):
        before = self.tray.settings_file.stat()
        self.tray.menu()
        self.tray.stop()
        after = self.tray.settings_file.stat()
        self.assertEqual((before.st_mtime_ns, before.st_ino), (after.st_mtime_ns, after.st_ino))
        self.assertEqual(self.tray.settings(), QUIET)


class WithoutDisplay(DesktopCase):
    settings = None
    starts_program = False

    def run_without_display(self, *arguments):
        kept = {name: value for name, value in self.desktop.environment.items() if name != "DISPLAY"}
        return self.desktop.run(self.tray.path, *arguments, env=kept)

    def test_shows_its_help(self):
        answer = self.run_without_display("--help")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertIn("harbor-tray", answer.stdout)

    def test_shows_its_version(self):
        answer = self.run_without_display("--version")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertTrue(re.search(r"\d+\.\d+\.\d+", answer.stdout), answer.stdout)

    def test_says_that_it_needs_one(self):
        answer = self.run_without_display()
        self.assertGreater(answer.returncode, 0, "a status, not a signal")
        self.assertIn("display", answer.stderr)

    def test_refuses_an_unknown_argument(self):
        answer = self.run_without_display("--no-such-argument")
        self.assertGreater(answer.returncode, 0)
        self.assertNotEqual(answer.stderr, "")
