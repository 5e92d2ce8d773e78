"""The launch-at-login helper on a private session bus. The helper is named by HARBOR_LAUNCHER; what it starts is a
script that behaves as the test says."""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

import dbus
import dbus.bus
import dbus.lowlevel

LAUNCHER = "com.tidewell.LauncherApplication"
PROGRAM = "com.tidewell.HarborTray"
PATIENCE = 60
HANDSHAKE = 5  # seconds that the helper gives a program that is up
PR_SET_PDEATHSIG = 1

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={folder}/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*"/><allow eavesdrop="true"/><allow own="*"/>
  </policy>
</busconfig>
"""

# What stands for the program: notes each start, and then does as it is told, step by step.
STAND_IN = """#!/usr/bin/python3
import os, sys, time
import dbus, dbus.bus, dbus.lowlevel
folder = {folder!r}
with open(folder + "/starts", "a") as starts:
    starts.write(f"{{os.getpid()}}\\n")
bus = None
for step in {steps!r}:
    what, _, value = step.partition(" ")
    if what == "exit":
        sys.exit(int(value))
    elif what == "sleep":
        time.sleep(float(value))
    elif what == "own":
        bus = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        bus.request_name(value)
    elif what == "kill-launcher":
        message = dbus.lowlevel.SignalMessage(
            "/com/tidewell/HarborTray", "com.tidewell.DistributedNotification", "killLauncher")
        message.append(value)
        bus.send_message(message)
        bus.flush()
time.sleep(100)
"""


def wait_for(what, condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.02)


def bind_to_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)


class Launcher(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="harbor-launcher-"))
        self.addCleanup(shutil.rmtree, self.folder)
        configuration = self.folder / "bus.conf"
        configuration.write_text(CONFIGURATION.format(folder=self.folder))
        self.daemon = subprocess.Popen(
            ["dbus-daemon", "--nofork", f"--config-file={configuration}"],
            stderr=subprocess.DEVNULL, preexec_fn=bind_to_parent,
        )
        self.addCleanup(self.stop, self.daemon)
        address = f"unix:path={self.folder}/bus"
        self.environment = {"PATH": "/usr/bin:/bin", "HOME": str(self.folder), "DBUS_SESSION_BUS_ADDRESS": address}
        wait_for("the bus", lambda: self.connect(address))
        self.bus.set_exit_on_disconnect(False)
        self.addCleanup(self.bus.close)
        self.addCleanup(self.end_programs)

    def connect(self, address):
        try:
            self.bus = dbus.bus.BusConnection(address)
        except dbus.DBusException:  # its socket is there before it listens
            return False
        return True

    @staticmethod
    def stop(process):
        if process.poll() is None:
            process.terminate()
        process.wait()

    def end_programs(self):
        for pid in self.starts():
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass

    def starts(self):
        path = self.folder / "starts"
        return [int(line) for line in path.read_text().split()] if path.exists() else []

    def program(self, *steps):
        path = self.folder / "harbor tray"
        path.write_text(STAND_IN.format(folder=str(self.folder), steps=steps))
        path.chmod(0o755)
        return str(path)

    def launch(self, *arguments, **options):
        process = subprocess.Popen(
            [os.environ["HARBOR_LAUNCHER"], *arguments],
            env=self.environment, stderr=subprocess.DEVNULL, preexec_fn=bind_to_parent, **options,
        )
        self.addCleanup(self.stop, process)
        return process

    def status(self, process):
        return process.wait(timeout=PATIENCE)

    def is_alive(self, pid):
        return Path(f"/proc/{pid}").exists() and "\nState:\tZ" not in Path(f"/proc/{pid}/status").read_text()

    def post(self, name, object_):
        message = dbus.lowlevel.SignalMessage(
            "/com/tidewell/HarborTray", "com.tidewell.DistributedNotification", name
        )
        message.append(object_)
        self.bus.send_message(message)
        self.bus.flush()

    def test_starts_the_program_and_quits_when_told_to(self):
        program = self.program(f"own {PROGRAM}", "sleep 0.3", f"kill-launcher {PROGRAM}")
        began = time.monotonic()
        self.assertEqual(self.status(self.launch(program)), 0)
        self.assertLess(time.monotonic() - began, HANDSHAKE)
        self.assertEqual(len(self.starts()), 1)
        self.assertTrue(self.is_alive(self.starts()[0]), "the program outlives its launcher")

    def test_is_found_by_its_name_while_it_waits_and_gone_after(self):
        launcher = self.launch(self.program())
        wait_for("the name", lambda: self.bus.name_has_owner(LAUNCHER))
        wait_for("the program", self.starts)
        self.post("killLauncher", PROGRAM)
        self.assertEqual(self.status(launcher), 0)
        wait_for("the name to go", lambda: not self.bus.name_has_owner(LAUNCHER))

    def test_is_not_ended_by_what_concerns_others(self):
        launcher = self.launch(self.program())
        wait_for("the program", self.starts)
        self.post("killLauncher", "org.example.Other")
        self.post("anotherNotification", PROGRAM)
        self.post("killLauncher", dbus.Int32(1))
        time.sleep(1)
        self.assertIsNone(launcher.poll())

    def test_goes_by_itself_when_the_program_is_up_and_says_nothing(self):
        launcher = self.launch(self.program(f"own {PROGRAM}"))
        wait_for("the program to be up", lambda: self.bus.name_has_owner(PROGRAM))
        self.assertEqual(self.status(launcher), 0)
        self.assertTrue(self.is_alive(self.starts()[0]))

    def test_does_not_start_what_runs_already(self):
        self.bus.request_name(PROGRAM)
        self.assertEqual(self.status(self.launch(self.program())), 0)
        self.assertEqual(self.starts(), [])

    def test_leaves_the_start_to_a_launcher_that_is_already_at_it(self):
        first = self.launch(self.program())
        wait_for("the first launcher's program", self.starts)
        self.assertEqual(self.status(self.launch(self.program())), 0)
        self.assertEqual(len(self.starts()), 1)
        self.assertIsNone(first.poll())

    def test_reports_a_program_that_does_not_exist(self):
        self.assertEqual(self.status(self.launch(str(self.folder / "nowhere"))), 1)

    def test_reports_a_program_that_fails_at_once(self):
        self.assertEqual(self.status(self.launch(self.program("exit 3"))), 1)
        self.assertEqual(len(self.starts()), 1, "no second try")

    def test_reports_a_program_that_goes_down_by_a_signal(self):
        launcher = self.launch(self.program())
        wait_for("the program", self.starts)
        os.kill(self.starts()[0], signal.SIGKILL)
        self.assertEqual(self.status(launcher), 1)

    def test_takes_a_program_that_ends_in_order_for_one_that_found_another_instance(self):
        self.assertEqual(self.status(self.launch(self.program("exit 0"))), 0)

    def test_goes_when_the_session_ends(self):
        launcher = self.launch(self.program())
        wait_for("the program", self.starts)
        self.stop(self.daemon)
        self.assertEqual(self.status(launcher), 1)

    def test_without_a_session_bus_becomes_the_program(self):
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.folder}/nothing"
        launcher = self.launch(self.program("exit 7"))
        self.assertEqual(self.status(launcher), 7)
        self.assertEqual(self.starts(), [launcher.pid])

    def test_says_how_it_is_used(self):
        for arguments in ([], ["relative/path"], ["/a", "/b"]):
            with self.subTest(arguments):
                self.assertEqual(self.status(self.launch(*arguments)), 2)

    def test_stays_small(self):
        self.assertLess(os.path.getsize(os.environ["HARBOR_LAUNCHER"]), 1_000_000)
        linked = subprocess.run(["ldd", os.environ["HARBOR_LAUNCHER"]], capture_output=True, text=True, check=True)
        self.assertNotIn("Qt", linked.stdout)


if __name__ == "__main__":
    sys.exit(unittest.main())
