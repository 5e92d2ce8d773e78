"""What the program asks of those that own the clipboard, and what it records when they end or are followed."""

import plistlib

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
