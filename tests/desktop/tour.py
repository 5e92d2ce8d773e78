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


def show_overlays(desktop, tray, front, take):
    """Switches each tool that lies over the screen on and off, with a picture of it at work."""
    screen = desktop.screen

    def changes(what, act):
        before = screen.settled_picture()
        act()
        wait_for(what, lambda: screen.picture().difference(before))

    behind = OtherProgram(desktop, "Letters")
    window = screen.windows_of(behind.pid)[0]
    window.window.configure(x=180, y=140)
    wait_for("the window to move", lambda: window.box()[0] < 200)
    front.activate()

    changes("the dimmed screen", lambda: tray.choose("Focus Mode", "Enable"))
    take("focus-mode")
    tray.choose("Tint Screen", "Enable")
    tray.wait_for_dialog()
    take("conflict")
    changes("the tint", lambda: tray.answer("OK"))
    take("tint-screen")
    changes("the pane", lambda: tray.choose("Tint Screen", "Preferences"))
    take("tint-preferences")
    screen.press_key("Escape")
    changes("the clear screen", lambda: tray.choose("Tint Screen", "Enable"))

    screen.move_pointer(860, 560)
    changes("the ring", lambda: tray.choose("Highlight Mouse Cursor", "Enable"))
    take("pointer-ring")
    changes("the ring to go", lambda: tray.choose("Highlight Mouse Cursor", "Enable"))

    tray.choose("Prevent Sleep", "Enable")
    screen.click(*center((1250, 0, 1280, 30)))
    tray.wait_for_popup()
    take("prevent-sleep")
    tray.close_popups()
    # Its title counts down.
    tray.choose(next(label for label in tray.menu().labels() if label.startswith("Prevent Sleep")), "Enable")

    folder = desktop.home / "Desktop"
    folder.mkdir(exist_ok=True)
    (folder / "Report.txt").write_text("figures")
    changes("the icon", lambda: desktop.spawn("pcmanfm", "--desktop"))
    take("desktop-icons")
    tray.choose("Hide Desktop Icons", "Enable")
    tray.wait_for_dialog()
    changes("the icon to go", lambda: tray.answer("OK"))
    take("hidden-desktop-icons")
    changes("the icon to come back", lambda: tray.choose("Hide Desktop Icons", "Enable"))


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
            show_overlays(desktop, tray, notes, take)
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
