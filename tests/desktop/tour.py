"""Shows the program on a virtual desktop: opens every submenu, switches every tool on and off, runs a cleanup and an
uninstallation on a prepared home folder, and takes a picture of each."""

import argparse
import signal
import sys
from pathlib import Path

import tour_stops as stops
from case import PANEL_BOX, QUIET
from desktop import Desktop, OtherProgram
from program import HarborTray
from waiting import wait_for

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
        stops.prepare_home(desktop.home, desktop.data / "applications")
        tray = HarborTray(desktop, chosen.program.resolve())
        tour = stops.Tour(desktop, tray, pictures)
        try:
            # The welcome is a first start's.
            tray.start(*chosen.arguments, wait=False)
            tray.wait_for_dialog()
            tour.take("welcome")
            tray.stop()

            tray.write_settings(QUIET)
            before = tour.screen.settled_picture(PANEL_BOX)
            tray.start(*chosen.arguments)
            tour.icon = wait_for("the icon on the panel", lambda: before.difference(tour.screen.picture(PANEL_BOX)))
            tour.take("icon")
            notes = OtherProgram(desktop)
            tour.open_menu()
            tour.take("menu")
            tray.close_popups()

            stops.show_submenus(tour)
            stops.show_clipboard(tour, notes)
            stops.show_overlays(tour, notes)
            stops.show_prevent_sleep(tour)
            stops.show_preferences(tour)
            stops.show_cleanup(tour)
            stops.show_uninstallation(tour)
            stops.show_desktop_icons(tour)
            tray.choose("Quit")
            status = tray.process.wait(timeout=60)
        except (AssertionError, RuntimeError) as failure:
            desktop.keep_evidence(pictures / "failed")
            print(f"The tour failed: {failure}", file=sys.stderr)
            print(f"What was on the screen and what the programs said: {pictures / 'failed'}", file=sys.stderr)
            return 1

    print("The tour's pictures:")
    for path in tour.taken:
        print(f"  {path}")
    return status


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
