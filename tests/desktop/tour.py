"""Shows the program on a virtual desktop: copies three texts, opens the menu and the clipboard history, takes pictures."""

import argparse
import signal
import sys
from pathlib import Path

from case import PANEL_BOX, RECORDING
from desktop import Desktop, OtherProgram
from program import HarborTray
from screen import center
from waiting import wait_for

TEXTS = ["Meet at the harbor at nine", "https://example.org/tides?day=today", "Two lines:\nthis is the second"]


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--program", required=True, type=Path)
    options.add_argument("--pictures", required=True, type=Path)
    options.add_argument("arguments", nargs="*", help="arguments of the program")
    chosen = options.parse_args()
    pictures = chosen.pictures.resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    for stale in pictures.glob("*.png"):
        stale.unlink()
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: sys.exit(1))

    with Desktop() as desktop:
        screen, taken = desktop.screen, []

        def take(name):
            path = pictures / f"{len(taken) + 1}-{name}.png"
            screen.settled_picture().save(path)
            taken.append(path)

        tray = HarborTray(desktop, chosen.program.resolve())
        try:
            # The welcome is a first start's; the rest is with the history switched on.
            tray.start(*chosen.arguments, wait=False)
            tray.wait_for_dialog()
            take("welcome")
            tray.stop()

            tray.write_settings(RECORDING)
            before = screen.settled_picture(PANEL_BOX)
            tray.start(*chosen.arguments)
            icon = wait_for("the icon on the panel", lambda: before.difference(screen.picture(PANEL_BOX)))
            take("icon")

            notes = OtherProgram(desktop)
            for text in TEXTS:
                notes.copy(text)
                wait_for("the text in the history", lambda newest=text: tray.history()[:1] == [newest])

            screen.click(*center(icon))
            tray.wait_for_popup()
            take("menu")

            tray.move_to_shown_entry("Clipboard")
            wait_for("the history on the screen", lambda: tray.accessibility.popup_with("Clear All"))
            take("clipboard")
            tray.close_popups()

            tray.choose("Clipboard", "Clear All")
            tray.wait_for_dialog()
            take("clear-clipboard")
            tray.answer("Cancel")
            tray.choose("Quit")
            status = tray.process.wait(timeout=60)
        except (AssertionError, RuntimeError) as failure:
            desktop.keep_evidence(pictures / "failed")
            print(f"The tour failed: {failure}", file=sys.stderr)
            print(f"What was on the screen and what the programs said: {pictures / 'failed'}", file=sys.stderr)
            return 1

    print("The tour's pictures:")
    for path in taken:
        print(f"  {path}")
    return status


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
