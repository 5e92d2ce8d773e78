from case import QUIET, RECORDING, DesktopCase, let_ticks_pass, wait_for
from program import clipboard_targets, read_clipboard

RTF = r"{\rtf1\ansi{\b bold} text}"
HTML = "<b>bold</b> text"
PNG = {"base64": "iVBORw0KGgo="}
RICH_TARGETS = {"text/rtf", "application/rtf", "text/richtext", "text/html"}


class Clearing(DesktopCase):
    """What is copied is reduced to its plain text, or left alone as it is."""

    settings = {**QUIET, "AutoClearClipboardFormattingEnabled": True}

    def is_reduced(self, flavours):
        notes = self.notes()
        notes.copy_flavours(flavours)
        wait_for("the copy to be rewritten", lambda: not notes.owns_clipboard())
        self.assertEqual(read_clipboard(self.desktop), "bold text")
        self.assertEqual(set(clipboard_targets(self.desktop)) & RICH_TARGETS, set())

    def is_left_alone(self, flavours):
        notes = self.notes()
        notes.copy_flavours(flavours)
        wait_for("the program to look", notes.requests)
        let_ticks_pass()
        self.assertTrue(notes.owns_clipboard())
        self.assertLessEqual(set(flavours), set(clipboard_targets(self.desktop)))
        # The tool is at work all the same.
        notes.copy_flavours({"UTF8_STRING": "bold text", "text/rtf": RTF})
        wait_for("the next copy to be rewritten", lambda: not notes.owns_clipboard())

    def test_reduces_rtf(self):
        self.is_reduced({"UTF8_STRING": "bold text", "text/rtf": RTF})

    def test_reduces_rtf_of_other_names(self):
        self.is_reduced({"UTF8_STRING": "bold text", "application/rtf": RTF})
        self.is_reduced({"UTF8_STRING": "bold text", "text/richtext": RTF})

    def test_reduces_html(self):
        self.is_reduced({"UTF8_STRING": "bold text", "text/html": HTML})

    def test_reduces_rtf_with_a_picture_beside_it(self):
        self.is_reduced({"UTF8_STRING": "bold text", "text/rtf": RTF, "text/html": HTML, "image/png": PNG})

    def test_leaves_html_with_a_picture(self):
        self.is_left_alone({"UTF8_STRING": "bold text", "text/html": HTML, "image/png": PNG})

    def test_leaves_html_with_files(self):
        self.is_left_alone({"UTF8_STRING": "bold text", "text/html": HTML, "text/uri-list": "file:///tmp/a\r\n"})

    def test_leaves_a_picture(self):
        self.is_left_alone({"image/png": PNG})

    def test_leaves_files(self):
        self.is_left_alone({"UTF8_STRING": "/tmp/a", "text/uri-list": "file:///tmp/a\r\n"})

    def test_leaves_plain_text(self):
        self.is_left_alone({"UTF8_STRING": "plain"})

    def test_leaves_rtf_without_plain_text(self):
        self.is_left_alone({"text/rtf": RTF})

    def test_resumes_after_a_restart(self):
        self.tray.stop()
        self.tray.start()
        self.is_reduced({"UTF8_STRING": "bold text", "text/rtf": RTF})

    def test_offers_no_single_clearing_meanwhile(self):
        self.assertTrue(self.menu_entry("Clear Clipboard Formatting", "Automatically Clear").checked)
        self.assertFalse(self.menu_entry("Clear Clipboard Formatting", "Clear Now").enabled)


class ClearingNow(DesktopCase):
    def test_reduces_what_is_on_the_clipboard(self):
        notes = self.notes()
        notes.copy_flavours({"UTF8_STRING": "bold text", "text/rtf": RTF})
        let_ticks_pass()
        self.assertTrue(notes.owns_clipboard())
        self.tray.choose("Clear Clipboard Formatting", "Clear Now")
        wait_for("the copy to be rewritten", lambda: not notes.owns_clipboard())
        self.assertEqual(read_clipboard(self.desktop), "bold text")
        self.assertFalse(self.tray.settings().get("AutoClearClipboardFormattingEnabled", False))

    def test_switching_on_reduces_what_is_there_at_once(self):
        notes = self.notes()
        notes.copy_flavours({"UTF8_STRING": "bold text", "text/rtf": RTF})
        self.tray.choose("Clear Clipboard Formatting", "Automatically Clear")
        wait_for("the copy to be rewritten", lambda: not notes.owns_clipboard())
        self.assertTrue(self.tray.settings()["AutoClearClipboardFormattingEnabled"])


class ClearingAndRecording(DesktopCase):
    settings = {**RECORDING, "AutoClearClipboardFormattingEnabled": True}

    def test_records_a_rich_copy_once(self):
        notes = self.notes()
        notes.copy_flavours({"UTF8_STRING": "bold text", "text/rtf": RTF})
        self.tray.wait_for_history("bold text")
        self.copy_and_record(notes, "next")
        self.assertEqual(self.tray.history(), ["next", "bold text"])
