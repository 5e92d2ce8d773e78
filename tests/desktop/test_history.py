import os
import plistlib
import signal
import stat
import time

from case import QUIET, RECORDING, DesktopCase, let_ticks_pass, wait_for, with_history
from program import clipboard_targets, read_clipboard

MENU_PATIENCE = 1.0  # seconds; what a person still takes for at once


class History(DesktopCase):
    settings = RECORDING

    def test_records_what_other_programs_copy_newest_first(self):
        notes = self.notes()
        self.copy_and_record(notes, "one", "two", "three")
        self.assertEqual(self.tray.history(), ["three", "two", "one"])
        self.assertEqual(self.menu_entry("Clipboard").labels()[-3:], ["three", "two", "one"])

    def test_compares_with_the_newest_entry_only(self):
        notes = self.notes()
        self.copy_and_record(notes, "A")
        notes.copy("A")
        let_ticks_pass()
        self.copy_and_record(notes, "B", "A")
        self.assertEqual(self.tray.history(), ["A", "B", "A"])

    def test_records_while_the_menu_is_open(self):
        notes = self.notes()
        self.click_icon()
        notes.copy("copied meanwhile")
        self.tray.wait_for_history("copied meanwhile")
        self.assertNotEqual(self.tray.popups(), [])

    def test_survives_the_program_that_copied(self):
        notes = self.notes()
        self.copy_and_record(notes, "left behind")
        notes.kill()
        self.tray.choose("Clipboard", "left behind")
        wait_for("the text", lambda: read_clipboard(self.desktop) == "left behind")

    def test_survives_a_restart(self):
        notes = self.notes()
        self.copy_and_record(notes, "one", "two")
        self.assertEqual(self.tray.stop(), 0)
        self.tray.start()
        self.assertEqual(self.menu_entry("Clipboard").labels()[-2:], ["two", "one"])
        self.copy_and_record(notes, "three")
        self.assertEqual(self.tray.history(), ["three", "two", "one"])

    def test_survives_a_kill(self):
        notes = self.notes()
        self.copy_and_record(notes, "one", "two")
        self.tray.stop(signal.SIGKILL)
        self.assertEqual(self.tray.history(), ["two", "one"])
        self.tray.start()
        self.assertEqual(self.menu_entry("Clipboard").labels()[-2:], ["two", "one"])

    def test_shows_titles_on_one_line_and_shortened(self):
        notes = self.notes()
        fifty, more = "x" * 50, "y" * 51
        self.copy_and_record(notes, "  first\n\tsecond ", fifty, more, "save_as & \"quote\" <b>")
        self.assertEqual(
            self.menu_entry("Clipboard").labels()[-4:],
            ["save_as & \"quote\" <b>", "y" * 50 + "...", fifty, "first  second"],
        )

    def test_keeps_any_text_unchanged(self):
        notes = self.notes()
        for text in ("grüße 👩‍👩‍👧 日本語", "tab\tand\r\nlines\n", "\u202eright to left", " "):
            self.copy_and_record(notes, text)
        self.assertEqual(len(self.tray.history()), 4)

    def test_keeps_a_long_text_whole(self):
        text = "0123456789" * 40_000
        self.copy_and_record(self.notes(), text)
        self.tray.choose("Clipboard", text[:50] + "...")
        wait_for("the text", lambda: read_clipboard(self.desktop) == text)


class FullHistory(DesktopCase):
    entries = [f"entry {number}" for number in range(20)]
    settings = with_history(*entries)

    def test_drops_the_oldest_of_twenty(self):
        self.copy_and_record(self.notes(), "the newest")
        self.assertEqual(self.tray.history(), ["the newest", *self.entries[:19]])

    def test_pastes_an_entry_again_without_recording_or_moving_it(self):
        self.tray.choose("Clipboard", "entry 7")
        wait_for("the text", lambda: read_clipboard(self.desktop) == "entry 7")
        let_ticks_pass()
        self.assertEqual(self.tray.history(), self.entries)
        # A later copy is recorded, and nothing was recorded before it.
        self.copy_and_record(self.notes(), "later")
        self.assertEqual(self.tray.history(), ["later", *self.entries[:19]])

    def test_marks_the_entry_that_is_on_the_clipboard(self):
        self.tray.choose("Clipboard", "entry 3")
        entry = self.wait_for_entry("the dot", lambda entry: entry.icon, "Clipboard", "entry 3")
        self.assertNotEqual(self.menu_entry("Clipboard", "entry 4").icon, entry.icon)

    def test_is_cleared_after_a_confirmation(self):
        self.tray.choose("Clipboard", "Clear All")
        texts = self.tray.wait_for_dialog().texts("label")
        self.assertIn("Clear Clipboard", texts)
        self.assertIn("Click the Clear button in order to erase the app's clipboard history.", texts)
        self.tray.answer("Clear")
        self.tray.wait_for_history()
        self.assertFalse(self.menu_entry("Clipboard", "Clear All").enabled)

    def test_is_kept_when_the_confirmation_is_cancelled(self):
        self.tray.choose("Clipboard", "Clear All")
        self.tray.answer("Cancel")
        self.assertEqual(self.tray.history(), self.entries)

    def test_is_listed_but_not_offered_while_the_tool_is_off(self):
        self.tray.choose("Clipboard", "Enable")
        entry = self.wait_for_entry("the entry", lambda entry: not entry.enabled, "Clipboard", "entry 0")
        entry.click()
        let_ticks_pass()
        self.assertEqual(self.tray.history(), self.entries)
        self.assertNotEqual(read_clipboard(self.desktop), "entry 0")


class SwitchingOn(DesktopCase):
    def test_does_not_record_what_was_there_before(self):
        notes = self.notes()
        notes.copy("before")
        self.tray.choose("Clipboard", "Enable")
        wait_for("the setting", lambda: self.tray.settings().get("ClipboardEnabled"))
        self.copy_and_record(notes, "after")
        self.assertEqual(self.tray.history(), ["after"])

    def test_is_needed_for_anything_to_be_recorded(self):
        notes = self.notes()
        notes.copy("while off")
        let_ticks_pass()
        self.tray.choose("Clipboard", "Enable")
        self.copy_and_record(notes, "while on")
        self.tray.choose("Clipboard", "Enable")
        wait_for("the setting", lambda: self.tray.settings().get("ClipboardEnabled") is False)
        notes.copy("off again")
        let_ticks_pass()
        self.tray.choose("Clipboard", "Enable")
        self.copy_and_record(notes, "on again")
        self.assertEqual(self.tray.history(), ["on again", "while on"])


class Blacklist(DesktopCase):
    settings = RECORDING
    starts_program = False  # not before its applications are installed

    def test_keeps_out_the_copies_of_an_application(self):
        diary, notes = self.notes("Diary"), self.notes("Notes")
        self.start()
        self.tray.choose("Clipboard", "Blacklist Apps", "Diary")
        self.wait_for_entry("the check mark", lambda entry: entry.checked, "Clipboard", "Blacklist Apps", "Diary")
        stored = plistlib.loads(self.tray.settings()["ClipboardBlacklistedApplications"])
        self.assertEqual(stored, [{"relative": diary.entry.as_uri()}])

        diary.activate()
        diary.copy("dear diary")
        let_ticks_pass()
        notes.activate()
        self.copy_and_record(notes, "shopping list")
        self.assertEqual(self.tray.history(), ["shopping list"])

        # Taken off the list, it is recorded again.
        self.tray.choose("Clipboard", "Blacklist Apps", "Diary")
        self.wait_for_entry("no mark", lambda entry: not entry.checked, "Clipboard", "Blacklist Apps", "Diary")
        diary.activate()
        self.copy_and_record(diary, "open letter")

    def test_survives_a_restart(self):
        diary = self.notes("Diary")
        self.start()
        self.tray.choose("Clipboard", "Blacklist Apps", "Diary")
        self.wait_for_entry("the check mark", lambda entry: entry.checked, "Clipboard", "Blacklist Apps", "Diary")
        self.tray.stop()
        self.tray.start()
        self.assertTrue(self.menu_entry("Clipboard", "Blacklist Apps", "Diary").checked)
        diary.copy("dear diary")
        let_ticks_pass()
        self.copy_and_record(self.notes("Notes"), "shopping list")
        self.assertEqual(self.tray.history(), ["shopping list"])

    def test_asks_about_an_application_that_has_gone(self):
        diary = self.notes("Diary")
        self.start()
        entry = self.menu_entry("Clipboard", "Blacklist Apps", "Diary")
        diary.entry.unlink()
        entry.click()
        texts = self.tray.wait_for_dialog().texts("label")
        self.assertIn("App Missing", texts)
        self.assertIn("Please refresh by clicking Reload Apps", texts)
        self.tray.answer("Reload Apps")
        self.assertNotIn("Diary", self.menu_entry("Clipboard", "Blacklist Apps").labels())
        self.assertNotIn("ClipboardBlacklistedApplications", self.tray.settings())


class Secrets(DesktopCase):
    settings = {**RECORDING, "AutoClearClipboardFormattingEnabled": True}

    def test_are_neither_read_nor_recorded_nor_rewritten(self):
        manager = self.notes("Vault")
        manager.copy_flavours(
            {"x-kde-passwordManagerHint": "secret", "UTF8_STRING": "hunter2", "text/rtf": r"{\rtf1 hunter2}"}
        )
        wait_for("the program to look", lambda: "TARGETS" in manager.requests())
        let_ticks_pass()
        self.assertNotIn("hunter2", self.menu_entry("Clipboard").labels())
        self.assertTrue(manager.owns_clipboard())
        self.copy_and_record(self.notes("Notes"), "public")
        self.assertEqual(set(manager.requests()) - {"TARGETS", "TIMESTAMP"}, set())
        self.assertEqual(self.tray.history(), ["public"])
        self.assertNotIn(b"hunter2", self.tray.settings_file.read_bytes())


class DifficultOwners(DesktopCase):
    settings = with_history("kept")

    def menu_comes_at_once(self):
        start = time.monotonic()
        labels = self.menu_entry("Clipboard").labels()
        self.assertLess(time.monotonic() - start, MENU_PATIENCE)
        self.assertIn("kept", labels)

    def goes_on_recording(self, program):
        self.copy_and_record(program, "next")
        self.assertEqual(self.tray.history(), ["next", "kept"])

    def test_that_never_answer_do_not_hold_up_the_menu(self):
        hung, notes = self.notes("Hung"), self.notes()
        hung.copy_flavours({"UTF8_STRING": "never"}, hang="all")
        for _ in range(5):
            self.menu_comes_at_once()
        wait_for("the program to ask", hung.requests)
        self.menu_comes_at_once()
        self.goes_on_recording(notes)

    def test_that_keep_back_their_text_do_not_hold_up_the_menu(self):
        hung, notes = self.notes("Hung"), self.notes()
        hung.copy_flavours({"UTF8_STRING": "never"}, hang="data")
        wait_for("the program to ask for the text", lambda: "UTF8_STRING" in hung.requests())
        for _ in range(5):
            self.menu_comes_at_once()
        self.goes_on_recording(notes)

    def test_that_stop_while_asked_are_forgotten(self):
        hung, notes = self.notes("Hung"), self.notes()
        hung.copy_flavours({"UTF8_STRING": "never"}, hang="data")
        wait_for("the program to ask for the text", lambda: "UTF8_STRING" in hung.requests())
        hung.kill()
        self.menu_comes_at_once()
        self.goes_on_recording(notes)

    def resident_kilobytes(self, field):
        with open(f"/proc/{self.tray.pid}/status") as status:
            return next(int(line.split()[1]) for line in status if line.startswith(field + ":"))

    def test_that_send_without_end_are_given_up(self):
        flood, notes = self.notes("Flood"), self.notes()
        self.menu_comes_at_once()
        before = self.resident_kilobytes("VmHWM")
        flood.activate()
        flood.copy_flavours({"UTF8_STRING": {"size": 200_000_000}})
        wait_for("the program to ask", lambda: "UTF8_STRING" in flood.requests())
        self.menu_comes_at_once()
        notes.activate()
        self.goes_on_recording(notes)
        self.assertLess(self.resident_kilobytes("VmHWM") - before, 40_000)

    def test_that_send_no_text_do_no_harm(self):
        notes = self.notes()
        notes.copy_flavours({"UTF8_STRING": {"base64": "//4AgMMo"}})
        wait_for("the program to ask for the text", lambda: "UTF8_STRING" in notes.requests())
        let_ticks_pass()
        self.goes_on_recording(notes)

    def test_that_copy_a_picture_leave_the_history_alone(self):
        notes = self.notes()
        notes.copy_flavours({"image/png": {"base64": "iVBORw0KGgo="}})
        wait_for("the program to look", notes.requests)
        let_ticks_pass()
        self.goes_on_recording(notes)

    def test_that_copy_an_empty_text_leave_the_history_alone(self):
        notes = self.notes()
        notes.copy("")
        wait_for("the program to look", notes.requests)
        let_ticks_pass()
        self.goes_on_recording(notes)


class SettingsFile(DesktopCase):
    settings = None
    starts_program = False

    def test_is_private_and_read_by_an_independent_reader(self):
        os.umask(0)
        self.tray.write_settings(QUIET)
        self.tray.start()
        self.tray.choose("Clipboard", "Enable")
        self.copy_and_record(self.notes(), "grüße")
        self.assertEqual(stat.S_IMODE(self.tray.settings_file.stat().st_mode), 0o600)
        self.assertEqual(self.tray.settings_file.read_bytes()[:8], b"bplist00")
        self.assertEqual(
            self.tray.settings(),
            {**RECORDING, "ClipboardContent": plistlib.dumps(["grüße"], fmt=plistlib.FMT_BINARY)},
        )
        self.assertEqual([path.name for path in self.desktop.config.glob("com.tidewell*")], [self.tray.settings_file.name])

    def test_is_made_in_a_private_folder(self):
        self.tray.settings_file.parent.rename(self.desktop.home / "config-of-before")
        self.tray.start(wait=False)
        self.tray.tick("Do not show again")
        self.tray.answer("OK")
        wait_for("the file", self.tray.settings_file.exists)
        self.assertEqual(stat.S_IMODE(self.tray.settings_file.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(self.tray.settings_file.parent.stat().st_mode), 0o700)

    def test_may_be_written_as_xml(self):
        self.tray.write_settings(
            {**RECORDING, "ClipboardContent": plistlib.dumps(["from XML"], fmt=plistlib.FMT_XML)}, plistlib.FMT_XML
        )
        self.tray.start()
        self.assertEqual(self.menu_entry("Clipboard").labels()[-1], "from XML")
        self.copy_and_record(self.notes(), "next")
        self.assertEqual(self.tray.history(), ["next", "from XML"])

    def test_that_is_broken_is_set_aside_byte_for_byte(self):
        self.tray.settings_file.write_bytes(b"bplist00 this is no property list")
        self.tray.start(wait=False)
        self.tray.tick("Do not show again")
        self.tray.answer("OK")
        self.tray.wait_for_icon()
        self.assertEqual(self.tray.settings(), QUIET)
        others = [path for path in self.desktop.config.glob("com.tidewell*") if path != self.tray.settings_file]
        self.assertEqual([path.read_bytes() for path in others], [b"bplist00 this is no property list"])
        self.assertEqual([stat.S_IMODE(path.stat().st_mode) for path in others], [0o600])


class Unowned(DesktopCase):
    settings = RECORDING

    def test_clipboard_is_left_empty(self):
        self.assertEqual(clipboard_targets(self.desktop), [])
        self.assertEqual(self.tray.history(), [])
        notes = self.notes()
        self.copy_and_record(notes, "one")
        self.desktop.run("xsel", "--clipboard", "--clear")
        self.copy_and_record(notes, "two")
        self.assertEqual(self.tray.history(), ["two", "one"])
