"""What the program asks of those that own the clipboard, and what it records when they end or are followed."""

import plistlib
import time

from case import QUIET, RECORDING, DesktopCase, let_ticks_pass, wait_for
from program import read_clipboard

RTF = r"{\rtf1\ansi{\b bold} text}"
FORMATTED = {"UTF8_STRING": "bold text", "text/rtf": RTF}


class OwnersCase(DesktopCase):
    starts_program = False  # not before its applications are installed

    def leave_out(self, program, **values):
        """Starts the program with another one on its list of ignored applications."""
        ignored = plistlib.dumps([{"relative": program.entry.as_uri()}], fmt=plistlib.FMT_BINARY)
        self.tray.write_settings({**RECORDING, "ClipboardBlacklistedApplications": ignored, **values})
        self.start()

    def copy_once(self, text):
        """Offers a text for one paste only, as programs do with codes that are valid once."""
        before = self.screen.selection_owner("CLIPBOARD")
        once = self.desktop.spawn("sh", "-c", f"printf {text} | xclip -quiet -loops 1 -selection clipboard", log="once")
        wait_for("the offer", lambda: self.screen.selection_owner("CLIPBOARD") != before)
        return once


class Unwanted(OwnersCase):
    settings = QUIET

    def test_nothing_is_requested_while_both_tools_are_off(self):
        notes = self.notes()
        self.start()
        notes.copy_flavours(FORMATTED)
        let_ticks_pass()
        self.menu_entry("Clipboard")
        self.assertEqual(notes.requests(), [])

        # The user may ask for it all the same.
        self.tray.choose("Clear Clipboard Formatting", "Clear Now")
        wait_for("the copy to be rewritten", lambda: not notes.owns_clipboard())
        self.assertEqual(read_clipboard(self.desktop), "bold text")

        once = self.copy_once("onetime")
        let_ticks_pass()
        self.menu_entry("Clipboard")
        self.assertIsNone(once.poll())
        self.assertEqual(read_clipboard(self.desktop), "onetime")

    def test_nothing_is_requested_of_an_application_that_is_left_out(self):
        diary, notes = self.notes("Diary"), self.notes("Notes")
        self.leave_out(diary, AutoClearClipboardFormattingEnabled=True)
        diary.activate()
        diary.copy_flavours(FORMATTED)
        let_ticks_pass()
        self.menu_entry("Clipboard")
        self.assertEqual(diary.requests(), [])
        notes.activate()
        self.copy_and_record(notes, "shopping list")
        self.assertEqual(self.tray.history(), ["shopping list"])

    def test_nothing_is_asked_for_and_marked_with_the_history_off(self):
        notes = self.notes()
        self.tray.write_settings({**RECORDING, "ClipboardContent": plistlib.dumps(["kept", "other"])})
        self.start()
        notes.copy("kept")
        dot = self.wait_for_entry("the dot", lambda entry: entry.icon, "Clipboard", "kept").icon
        self.tray.choose("Clipboard", "Enable")
        self.wait_for_entry("no dot", lambda entry: entry.icon != dot, "Clipboard", "kept")
        notes.copy("kept")
        self.assertNotEqual(self.menu_entry("Clipboard", "kept").icon, dot)
        let_ticks_pass()
        self.assertEqual(notes.requests(), [])


class LeftOut(OwnersCase):
    """What an ignored application copied does not come in through those that keep the clipboard when it ends."""

    desktop_options = {"compositor": False}

    def copy_in_diary(self, text):
        diary = self.notes("Diary")
        diary.copy(text)
        let_ticks_pass()
        return diary

    def prepare(self):
        self.leave_out(self.notes("Diary"))

    def is_kept_out(self, text):
        wait_for("the text to be kept", lambda: read_clipboard(self.desktop) == text)
        let_ticks_pass()
        self.assertEqual(self.tray.history(), [])
        self.assertNotIn(text, self.menu_entry("Clipboard").labels())

    def test_copy_stays_out_when_the_clipboard_manager_takes_it_over(self):
        self.desktop.spawn("xfce4-clipman")
        wait_for("the manager", lambda: self.screen.selection_owner("CLIPBOARD_MANAGER"))
        self.prepare()
        notes = self.notes("Notes")
        diary = self.copy_in_diary("dear diary")
        wait_for("the manager to look", diary.requests)
        diary.kill()
        self.is_kept_out("dear diary")
        notes.activate()
        self.copy_and_record(notes, "shopping list")

    def test_copy_stays_out_when_a_manager_restores_it(self):
        folder = self.desktop.config / "parcellite"
        folder.mkdir()
        (folder / "parcelliterc").write_text("[rc]\nuse_copy=true\nuse_primary=false\nrestore_empty=true\n")
        self.desktop.spawn("parcellite")
        self.prepare()
        notes = self.notes("Notes")
        diary = self.copy_in_diary("dear diary")
        wait_for("the manager to look", diary.requests)
        diary.kill()
        self.is_kept_out("dear diary")
        notes.activate()
        self.copy_and_record(notes, "shopping list")

    def test_copy_costs_no_later_one(self):
        self.prepare()
        notes = self.notes("Notes")
        self.copy_in_diary("dear diary").kill()
        time.sleep(0.2)
        notes.activate()
        self.copy_and_record(notes, "shopping list")
        self.copy_in_diary("dear diary").kill()
        notes.activate()
        time.sleep(10)
        self.desktop.run("sh", "-c", "printf terminal | xclip -selection clipboard >/dev/null 2>&1")
        self.tray.wait_for_history("terminal", "shopping list")
