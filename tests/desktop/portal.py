"""The part of the desktop portal that says whether the desktop is dark. Spawned on a test desktop with the colour scheme as
its argument; each line of its input is a new one."""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

GROUP, KEY = "org.freedesktop.appearance", "color-scheme"
SETTINGS = "org.freedesktop.portal.Settings"


class Settings(dbus.service.Object):
    def __init__(self, bus, scheme):
        super().__init__(bus, "/org/freedesktop/portal/desktop")
        self.scheme = scheme

    @dbus.service.method(SETTINGS, in_signature="ss", out_signature="v")
    def Read(self, group, key):
        if (group, key) != (GROUP, KEY):
            raise dbus.DBusException("no such setting", name="org.freedesktop.portal.Error.NotFound")
        # A variant in a variant, as this call has always answered.
        return dbus.UInt32(self.scheme, variant_level=2)

    @dbus.service.signal(SETTINGS, signature="ssv")
    def SettingChanged(self, group, key, value):
        pass

    def change(self, scheme):
        self.scheme = scheme
        self.SettingChanged(GROUP, KEY, dbus.UInt32(scheme, variant_level=1))


def main():
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    settings = Settings(bus, int(sys.argv[1]))
    name = dbus.service.BusName("org.freedesktop.portal.Desktop", bus)
    loop = GLib.MainLoop()

    def read(stream, _):
        line = stream.readline()
        if line:
            settings.change(int(line))
        return bool(line)

    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, read)
    loop.run()
    del name


if __name__ == "__main__":
    main()
