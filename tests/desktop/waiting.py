"""Waiting for conditions: generous with time, so that a loaded machine makes a test slow and not red."""

import os
import time

import dbus

PATIENCE = float(os.environ.get("HARBOR_PATIENCE", "60"))  # seconds


def wait_for(what, condition, patience=PATIENCE):
    """Returns the first true value of condition(), or raises AssertionError, naming `what` was waited for."""
    deadline = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {patience:g} s in vain for {what}")
        time.sleep(0.03)


def pid_on_bus(bus, name):
    """The process behind a name of the bus, or None."""
    try:
        return int(bus.get_object("org.freedesktop.DBus", "/", introspect=False).GetConnectionUnixProcessID(
            name, dbus_interface="org.freedesktop.DBus"
        ))
    except dbus.DBusException:
        return None
