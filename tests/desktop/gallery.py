"""Takes a picture of every window, alert and menu of the program on a virtual desktop: in light, in dark, at twice the size
and mirrored for languages that are written from the right."""

import argparse
import signal
import sys
from dataclasses import dataclass, field
from pathlib import Path

from desktop import Desktop
from program import HarborTray
from waiting import wait_for
from windows import Windows

MARGIN = 24  # pixels around a window


@dataclass
class Look:
    dark: bool = False
    scale: int = 1
    environment: dict = field(default_factory=dict)


LOOKS = {
    "light": Look(),
    "dark": Look(dark=True),
    "double": Look(scale=2, environment={"QT_SCALE_FACTOR": "2"}),
    "reversed": Look(environment={"LANGUAGE": "ar", "LANG": "ar_EG.UTF-8"}),
}


def take_pictures(look, name, program, pictures):
    """Returns the pictures' paths."""
    taken = []
    with Desktop(dark_panel=look.dark, dark_windows=look.dark, size=(1280 * look.scale, 800 * look.scale)) as desktop:
        screen = desktop.screen
        tray = HarborTray(desktop, program)
        tray.scale = look.scale

        def save(what, box):
            left, top, right, bottom = box
            around = (
                max(left - MARGIN, 0),
                max(top - MARGIN, 0),
                min(right + MARGIN, screen.width),
                min(bottom + MARGIN, screen.height),
            )
            taken.append(pictures / f"{name}-{what}.png")
            # A bar that says that something is going on never settles.
            picture = screen.picture(around) if what == "progress" else screen.settled_picture(around)
            picture.save(taken[-1])

        try:
            panel = (screen.width // 2, 0, screen.width, 30)
            before = screen.settled_picture(panel)
            for what, _, window in Windows(desktop, tray).each(look.environment):
                if what == "menu":
                    icon = wait_for("the icon", lambda: before.difference(screen.picture(panel)))
                    save("icon", icon)
                box = window.box()
                wait_for(f"{what} on the screen", window.is_drawn)
                for popup in tray.popups():
                    other = popup.box() or box
                    box = tuple(function(pair) for function, pair in zip((min, min, max, max), zip(box, other)))
                save(what, box)
        except (AssertionError, RuntimeError):
            desktop.keep_evidence(pictures / "failed")
            raise
    return taken


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--program", required=True, type=Path)
    options.add_argument("--pictures", required=True, type=Path)
    options.add_argument("looks", nargs="*", metavar="LOOK", help=f"of {', '.join(LOOKS)}; all of them if none is named")
    chosen = options.parse_args()
    if unknown := set(chosen.looks) - set(LOOKS):
        options.error(f"unknown look: {', '.join(sorted(unknown))}")
    pictures = chosen.pictures.resolve()
    pictures.mkdir(parents=True, exist_ok=True)
    for number in (signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: sys.exit(1))
    for name in chosen.looks or LOOKS:
        for stale in pictures.glob(f"{name}-*.png"):
            stale.unlink()
        try:
            for path in take_pictures(LOOKS[name], name, chosen.program.resolve(), pictures):
                print(path, flush=True)
        except (AssertionError, RuntimeError) as failure:
            print(f"The gallery failed: {failure}", file=sys.stderr)
            print(f"What was on the screen and what the programs said: {pictures / 'failed'}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
