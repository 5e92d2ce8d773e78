"""Measures the whole program on a virtual desktop: start, menu, processor, memory. Prints a table."""

import argparse
import statistics
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/desktop"))

from Xlib import X  # noqa: E402

from case import PANEL_BOX, with_history  # noqa: E402
from desktop import Desktop, OtherProgram  # noqa: E402
from program import HarborTray  # noqa: E402
from screen import center  # noqa: E402
from waiting import wait_for  # noqa: E402

APPLICATIONS = 500
STARTS = 11
CLICKS = 31
OPENINGS = 1000
IDLE_SECONDS = 30


def install_applications(desktop):
    for number in range(APPLICATIONS):
        (desktop.data / "applications" / f"org.example.App{number}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Application {number}\nExec=/usr/bin/app{number} %U\n"
        )


def milliseconds_until_registered(tray):
    begin = time.perf_counter()
    tray.start(wait=False)
    while not tray.items():
        pass
    return (time.perf_counter() - begin) * 1000


def open_with_mouse(screen, icon, before):
    """Clicks and returns the milliseconds until the menu's pixels are on the screen."""
    begin = time.perf_counter()
    screen.click(*center(icon))
    while True:
        event = screen.display.next_event()
        if event.type == X.MapNotify and event.override:
            geometry = event.window.get_geometry()
            break
    # One column of pixels through the middle tells a drawn menu from an empty window.
    middle = geometry.x + geometry.width // 2
    column = (middle, geometry.y, middle + 1, min(geometry.y + geometry.height, screen.height))
    empty = [before.colour(middle, y) for y in range(column[1], column[3])]
    while True:
        picture = screen.picture(column)
        colours = [picture.colour(middle, y) for y in range(column[1], column[3])]
        if all(now != then for now, then in zip(colours, empty)):
            return (time.perf_counter() - begin) * 1000


def close_menu(tray, screen):
    tray.close_popups()
    while screen.display.pending_events():
        screen.display.next_event()


def processor_nanoseconds(pid):
    return sum(int((task / "schedstat").read_text().split()[0]) for task in Path(f"/proc/{pid}/task").iterdir())


def memory_megabytes(pid, field):
    for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith(field + ":"):
            return int(line.split()[1]) / 1024
    raise RuntimeError(f"no {field}")


def row(figure, value, goal=""):
    print(f"{figure:<56} {value:>14} {goal:>12}", flush=True)


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--program", required=True, type=Path)
    options.add_argument("--openings", type=int, default=OPENINGS)
    chosen = options.parse_args()

    row("figure", "measured", "goal")
    with Desktop() as desktop:
        screen = desktop.screen
        install_applications(desktop)
        tray = HarborTray(desktop, chosen.program.resolve())
        history = [f"{number:02} " + "some copied text " * 20 for number in range(20)]
        tray.write_settings(with_history(*history, AutoClearClipboardFormattingEnabled=True))

        starts = []
        for _ in range(STARTS):
            starts.append(milliseconds_until_registered(tray))
            tray.stop()
        row("start to icon registered, median", f"{statistics.median(starts):.1f} ms", "< 150 ms")
        row("start to icon registered, slowest", f"{max(starts):.1f} ms")

        before = screen.settled_picture(PANEL_BOX)
        tray.start()
        icon = wait_for("the icon on the panel", lambda: before.difference(screen.picture(PANEL_BOX)))
        notes = OtherProgram(desktop)
        notes.copy("something to look at")
        wait_for("the copy in the history", lambda: tray.history()[0] == "something to look at")

        screen.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        clicks = []
        background = screen.settled_picture()
        for _ in range(CLICKS):
            clicks.append(open_with_mouse(screen, icon, background))
            close_menu(tray, screen)
        row("click to menu on the screen, median", f"{statistics.median(clicks):.1f} ms", "< 50 ms")
        row("click to menu on the screen, slowest", f"{max(clicks):.1f} ms")

        begin, start = processor_nanoseconds(tray.pid), time.monotonic()
        time.sleep(IDLE_SECONDS)
        share = (processor_nanoseconds(tray.pid) - begin) / 1e9 / (time.monotonic() - start) * 100
        row(f"idle, both clipboard tools on, {IDLE_SECONDS} s, one core", f"{share:.3f} %", "< 0.5 %")
        row("resident memory", f"{memory_megabytes(tray.pid, 'Rss'):.1f} MB", "< 40 MB")
        row("proportional memory", f"{memory_megabytes(tray.pid, 'Pss'):.1f} MB")

        resident = memory_megabytes(tray.pid, "Rss")
        for _ in range(chosen.openings):
            open_with_mouse(screen, icon, background)
            close_menu(tray, screen)
        growth = memory_megabytes(tray.pid, "Rss") - resident
        row(f"resident memory added by {chosen.openings} openings", f"{growth:.2f} MB", "< 2 MB")
        tray.stop()


if __name__ == "__main__":
    main()
