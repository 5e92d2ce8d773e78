"""A desktop of its own: X server, session bus, window manager, compositor, panel, home folder and user database.

Nothing of whoever runs it is read or touched. Everything ends with close(), and with this process however it ends.
"""

import ctypes
import json
import os
import pwd
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

import dbus
import dbus.bus

from screen import Screen, Window
from waiting import wait_for

HERE = Path(__file__).resolve().parent
WATCHER = "org.kde.StatusNotifierWatcher"
PORTAL = "org.freedesktop.portal.Desktop"

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
libc = ctypes.CDLL(None, use_errno=True)

BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={runtime}/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="{dark}"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
        <value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="tasklist"/>
    <property name="plugin-2" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-3" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""


class Desktop:
    """Use it in a with statement. `panel` and `window_manager` are programs, or None to go without."""

    def __init__(
        self,
        window_manager="openbox",
        panel="xfce4-panel",
        compositor=True,
        dark_panel=True,
        dark_windows=False,
        size=(1280, 800),
    ):
        self.size = size
        self.panel_name = panel
        self.folder = Path(tempfile.mkdtemp(prefix="harbor-desktop-"))
        self.home = self.folder / "home"
        self.logs = self.folder / "logs"
        self.runtime = self.folder / "runtime"
        self.config = self.home / ".config"
        self.data = self.home / ".local/share"
        self.processes = []
        self.screen = None
        self.bus = None
        self.panel = None
        # What a process of the desktop leaves behind becomes a child of this one, so that close() finds it.
        libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        try:
            for folder in (self.home, self.logs, self.runtime, self.config, self.data / "applications"):
                folder.mkdir(parents=True)
            self.runtime.chmod(0o700)
            self._prepare_environment()
            self._write_panel_configuration(dark_panel)
            self._start_screen()
            self._start_bus()
            if window_manager:
                self.start_window_manager(window_manager)
            if dark_windows:
                self.start_portal()
            self.run("hsetroot", "-add", "#2e4a62", "-add", "#7fa3b8", "-gradient", "0")
            if compositor:
                self.spawn("picom", "--config", "/dev/null", "--backend", "xrender")
                wait_for("the compositor", lambda: self.screen.selection_owner("_NET_WM_CM_S0"))
            if panel:
                self.start_panel(panel)
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    # Processes

    def spawn(self, *command, log=None, **options):
        """Starts a program on this desktop, its output in logs/NAME.log, and returns its Popen."""
        name = log or Path(command[0]).name

        def bind_to_parent():
            libc.prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)

        with open(self.logs / f"{name}.log", "ab") as output:
            settings = {"stdin": subprocess.DEVNULL, "stdout": output, "stderr": output, "env": self.environment}
            process = subprocess.Popen(
                command, **{**settings, **options}, start_new_session=True, preexec_fn=bind_to_parent, cwd=self.home
            )
        self.processes.append(process)
        return process

    def run(self, *command, patience=60, **options):
        """Runs a program to its end and returns its CompletedProcess, the output as text."""
        settings = {"stdin": subprocess.DEVNULL, "capture_output": True, "text": True, "env": self.environment}
        return subprocess.run(command, **{**settings, **options}, timeout=patience, cwd=self.home)

    def stop(self, process, how=signal.SIGTERM):
        """Ends a process that spawn() started and returns its status."""
        if process.poll() is None:
            process.send_signal(how)
        try:
            return process.wait(timeout=20)
        except subprocess.TimeoutExpired:
            process.kill()
            return process.wait()

    def close(self):
        if self.screen:
            self.screen.close()
        if self.bus:
            self.bus.close()
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        deadline = time.monotonic() + 5
        while children := self._children():
            if time.monotonic() > deadline:
                for child in children:
                    os.kill(child, signal.SIGKILL)
            for process in self.processes:
                process.poll()
            try:
                os.waitpid(-1, os.WNOHANG)
            except ChildProcessError:
                break
            if time.monotonic() > deadline - 4:  # what spawn() did not start has not been told yet
                for child in self._children():
                    os.kill(child, signal.SIGTERM)
            time.sleep(0.02)
        shutil.rmtree(self.folder, ignore_errors=True)

    @staticmethod
    def _children():
        found = []
        for task in Path("/proc/self/task").iterdir():
            try:
                found += [int(pid) for pid in (task / "children").read_text().split()]
            except OSError:
                continue
        return found

    # The pieces, in the order that never failed

    def _prepare_environment(self):
        user = pwd.getpwuid(os.getuid())
        passwd, group = self.folder / "passwd", self.folder / "group"
        passwd.write_text(f"{user.pw_name}:x:{user.pw_uid}:{user.pw_gid}:Tester:{self.home}:/bin/sh\n")
        group.write_text(f"users:x:{user.pw_gid}:\n")
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "LANG": "C.UTF-8",
            "USER": user.pw_name,
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.config),
            "XDG_DATA_HOME": str(self.data),
            "XDG_CACHE_HOME": str(self.home / ".cache"),
            "XDG_STATE_HOME": str(self.home / ".local/state"),
            "XDG_RUNTIME_DIR": str(self.runtime),
            # No screen reader runs here that would switch the accessibility tree on.
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "LD_PRELOAD": "libnss_wrapper.so",
            "NSS_WRAPPER_PASSWD": str(passwd),
            "NSS_WRAPPER_GROUP": str(group),
        }
        ask = "import os, pwd; print(pwd.getpwuid(os.getuid()).pw_dir)"
        answer = self.run("/usr/bin/python3", "-c", ask)
        if answer.stdout.strip() != str(self.home) or str(self.home) == user.pw_dir:
            raise RuntimeError(
                f"The user database still names {answer.stdout.strip() or user.pw_dir} as the home folder: "
                f"nothing is started. {answer.stderr}"
            )

    def _write_panel_configuration(self, dark):
        folder = self.config / "xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True)
        (folder / "xfce4-panel.xml").write_text(XFCE_PANEL.format(dark="true" if dark else "false"))

    def _start_screen(self):
        reader, writer = os.pipe()
        server = self.spawn(
            *("Xvfb", "-displayfd", str(writer), "-screen", "0", "{}x{}x24".format(*self.size), "-noreset", "-nolisten", "tcp"),
            pass_fds=(writer,),
        )
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError(f"Xvfb did not start: {self.log_of('Xvfb')} (status {server.wait()})")
        self.environment["DISPLAY"] = f":{number}"
        self.screen = Screen(f":{number}")

    def _start_bus(self):
        services = self.folder / "services"
        services.mkdir()
        for name in ("org.a11y.Bus", "org.xfce.Xfconf"):
            source = Path("/usr/share/dbus-1/services") / f"{name}.service"
            if source.exists():
                lines = source.read_text().splitlines()
                # Without systemd the bus has to start the service itself.
                (services / source.name).write_text(
                    "\n".join(line for line in lines if not line.startswith("SystemdService")) + "\n"
                )
        configuration = self.folder / "bus.conf"
        configuration.write_text(BUS_CONFIGURATION.format(runtime=self.runtime, services=services))
        address = f"unix:path={self.runtime}/bus"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self._spawn_bus = lambda: self.spawn("dbus-daemon", "--nofork", f"--config-file={configuration}")
        self.bus_daemon = self._spawn_bus()
        self.bus = wait_for("the session bus", lambda: self._connect(address))
        self.bus.set_exit_on_disconnect(False)
        launcher = self.bus.get_object("org.a11y.Bus", "/org/a11y/bus")
        self.accessibility_address = str(launcher.GetAddress(dbus_interface="org.a11y.Bus"))

    def restart_bus(self):
        """Kills the session bus under everybody who is on it and starts another one at the same address."""
        self.stop(self.bus_daemon, signal.SIGKILL)
        (self.runtime / "bus").unlink()
        self.bus_daemon = self._spawn_bus()
        wait_for("the new bus", lambda: self._connect(self.environment["DBUS_SESSION_BUS_ADDRESS"]))

    @staticmethod
    def _connect(address):
        try:
            return dbus.bus.BusConnection(address)
        except dbus.DBusException:  # not listening yet
            return None

    def start_window_manager(self, name):
        self.spawn(name)
        root = Window(self.screen, self.screen.root.id)
        wait_for(f"the window manager {name}", lambda: root.property("_NET_SUPPORTING_WM_CHECK"))

    def start_portal(self):
        """Has the desktop say that it is a dark one, until it is told otherwise (portal.py)."""
        portal = self.spawn("/usr/bin/python3", "-B", str(HERE / "portal.py"), "1", log="portal", stdin=subprocess.PIPE)
        wait_for("the desktop portal", lambda: self.bus.name_has_owner(PORTAL))
        return portal

    def start_panel(self, name=None):
        """Starts a panel and waits until icons can register with it."""
        name = name or self.panel_name
        before = None if self.tray_is_there(name) else self.screen.picture()
        self.panel = self.spawn(name, *{"xfce4-panel": ["--disable-wm-check"]}.get(name, []))
        wait_for(f"the tray of {name}", lambda: self.tray_is_there(name))
        if before:
            wait_for(f"{name} on the screen", lambda: self.screen.picture().difference(before))
            self.screen.settled_picture()
        return self.panel

    def tray_is_there(self, name):
        if name in ("trayer", "tint2"):
            return self.screen.selection_owner("_NET_SYSTEM_TRAY_S0") is not None
        return self.bus.name_has_owner(WATCHER)

    def stop_panel(self):
        """Kills the panel and waits until nothing of its tray is left."""
        self.stop(self.panel, signal.SIGKILL)
        wait_for("the tray to go", lambda: not self.tray_is_there(self.panel_name))

    # Evidence

    def log_of(self, name):
        path = self.logs / f"{name}.log"
        return path.read_text(errors="replace") if path.exists() else ""

    def keep_evidence(self, folder):
        """Copies a picture of the screen and all logs to a folder."""
        folder = Path(folder)
        shutil.rmtree(folder, ignore_errors=True)
        shutil.copytree(self.logs, folder)
        if self.screen:
            self.screen.picture().save(folder / "screen.png")


class OtherProgram:
    """Another program with a window, from which texts, pictures and files are copied (other_program.py)."""

    def __init__(self, desktop, name="Notes"):
        self.desktop, self.name = desktop, name
        # A script of its own a program, as an installed one would be, with the desktop entry that belongs to it.
        self.path = desktop.home / "bin" / name.lower()
        self.path.parent.mkdir(exist_ok=True)
        self.path.write_text((HERE / "other_program.py").read_text())
        self.path.chmod(0o755)
        self.entry = desktop.data / "applications" / f"org.example.{name}.desktop"
        self.entry.write_text(
            f"[Desktop Entry]\nType=Application\nName={name}\nExec={self.path} %f\nStartupWMClass={name}\n"
        )
        self.process = desktop.spawn(
            str(self.path), name, log=name, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        self.pid = self.process.pid
        self._answer()
        self.activate()

    def activate(self):
        """Brings the window to the front and waits until it is the active one."""
        self._ask({"do": "activate"})

        def is_active():
            active = self.desktop.screen.active_window()
            return active and active.pid() == self.pid

        wait_for(f"{self.name} to be the active window", is_active)

    def copy(self, text):
        """Copies a text, as an editor does."""
        self.copy_flavours({"UTF8_STRING": text, "text/plain;charset=utf-8": text, "STRING": text})

    def copy_flavours(self, flavours, hang="no"):
        """Takes the clipboard with the given targets. A value is a text, {"base64": ...} or {"size": number of bytes}.
        `hang` is "no", "data" (answers what targets there are, never the data) or "all" (never answers)."""
        self._ask({"do": "copy", "flavours": flavours, "hang": hang})

    def requests(self):
        """The targets that others have asked the last copy for, in order."""
        return self._ask({"do": "requests"})

    def owns_clipboard(self):
        return self._ask({"do": "owns"})

    def kill(self):
        self.desktop.stop(self.process, signal.SIGKILL)

    def _ask(self, message):
        self.process.stdin.write(json.dumps(message) + "\n")
        self.process.stdin.flush()
        return self._answer()

    def _answer(self):
        line = self.process.stdout.readline()
        if not line:
            raise AssertionError(f"{self.name} has ended: {self.desktop.log_of(self.name)}")
        return json.loads(line)
