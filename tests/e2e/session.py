"""One user's session on a virtual desktop, with its own bus, folders and agent, as the journeys use it."""

import contextlib
import itertools
import json
import math
import os
import pathlib
import shutil
import signal
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time

import dbus.bus
from PIL import Image, ImageChops

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "tools"))
from sway_desktop import SwayDesktop  # noqa: E402
from virtual_desktop import VirtualDesktop  # noqa: E402

DEADLINE = 20  # seconds; far more than anything here takes, even under a sanitizer


def wait_for(condition, what, seconds=DEADLINE):
    """Waits until the condition holds and returns its value; fails after the deadline with `what` or its result."""
    end = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + (what() if callable(what) else what))
        time.sleep(0.02)
    return value


def make_clip(path, graph, seconds=10):
    """A video of 640x360 from an ffmpeg filter graph that begins with a source."""
    source, _, filters = graph.partition(",")
    size = (":" if "=" in source else "=") + "s=640x360:r=30"
    graph = ",".join(filter(None, [source + size, filters]))
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", graph, "-t", str(seconds)]
    command += ["-c:v", "libx264", "-preset", "ultrafast", "-crf", "12", "-pix_fmt", "yuv420p", str(path)]
    subprocess.run(command, check=True, timeout=120)
    return str(path)


def turn_clip(path, target, degrees):
    """Changes the MP4 at path so that its first track is shown turned clockwise by that many degrees."""
    # The first four numbers of the matrix in the track's header (ISO 14496-12, 8.3.2).
    data = bytearray(pathlib.Path(path).read_bytes())
    matrix, angle = data.index(b"tkhd") + 44, math.radians(degrees)
    numbers = (math.cos(angle), math.sin(angle), -math.sin(angle), math.cos(angle))
    for offset, number in zip((0, 4, 12, 16), numbers):
        struct.pack_into(">i", data, matrix + offset, round(number * 65536))
    target.write_bytes(data)
    return target


class Probe(subprocess.Popen):
    """Another program's wallpaper, which takes the commands front, back and out."""

    def order(self, word):
        self.stdin.write(word.encode() + b"\n")

    def end(self):
        self.stdin.close()
        return self.wait(timeout=DEADLINE)


class UserSession:
    """The folders, the bus and the programs of a user, without a display."""

    def __init__(self, build, environment=os.environ):
        self.programs_folder = pathlib.Path(build).resolve() / "bin"
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quilex-session-"))
        self.settings_file = self.folder / "config/K4TQZM71RX.quilex/settings.json"
        self.library_file = self.folder / "data/com.dravo.quilex.QuilexHelper/Quilex.db"
        self.programs = []
        self.environment = {
            **environment,
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "XDG_DATA_HOME": str(self.folder / "data"),
            "XDG_CACHE_HOME": str(self.folder / "cache"),
            "XDG_RUNTIME_DIR": str(self.folder),
        }
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.start_bus("bus")

    def start(self, *command, **options):
        self.programs.append(subprocess.Popen(command, env=self.environment, **options))
        return self.programs[-1]

    def start_bus(self, name):
        """Starts a bus whose socket has that name in the user's runtime directory; returns its address."""
        command = ["dbus-daemon", "--session", "--nofork", "--print-address", f"--address=unix:path={self.folder}/{name}"]
        bus = self.start(*command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return bus.stdout.readline().decode().strip()

    def bus(self, kind="session"):
        """The user's bus, or a system bus of its own, which is started at first use."""
        variable = f"DBUS_{kind.upper()}_BUS_ADDRESS"
        # Never the system's own bus.
        if kind == "system" and f"unix:path={self.folder}/" not in self.environment.get(variable, ""):
            self.environment[variable] = self.start_bus(kind)
        return dbus.bus.BusConnection(self.environment[variable])

    def start_mock(self, kind, name, path, *arguments):
        """Starts a mocked service on that bus; returns its object with the methods that direct the mock."""
        bus = self.bus(kind)
        command = ["/usr/bin/python3", "-m", "dbusmock", "--" + kind, *arguments]
        self.start(*command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: bus.name_has_owner(name), name)
        return lambda place=path: dbus.Interface(bus.get_object(name, place), "org.freedesktop.DBus.Mock")

    def start_login_manager(self):
        """Starts a mocked login manager; returns the function that lets the machine sleep and wake up."""
        name, path = "org.freedesktop.login1", "/org/freedesktop/login1"
        manager = self.start_mock("system", name, path, "--template", "logind")()
        return lambda asleep: manager.EmitSignal(name + ".Manager", "PrepareForSleep", "b", [asleep])

    def run(self, *command):
        options = {"check": False, "capture_output": True, "text": True, "timeout": DEADLINE}
        return subprocess.run(command, env=self.environment, **options).stdout

    def close(self):
        for program in reversed(self.programs):
            program.terminate()
            program.wait(timeout=DEADLINE)
            if program.stdout:
                program.stdout.close()
        shutil.rmtree(self.folder, ignore_errors=True)

    # What the agent shares with the main application

    def settings(self):
        return json.loads(self.settings_file.read_text()) if self.settings_file.exists() else {}

    def write_settings(self, **values):
        """Replaces the whole file at once, as another program does."""
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        unfinished = self.settings_file.with_suffix(".edited")
        unfinished.write_text(json.dumps({**self.settings(), **values}))
        os.replace(unfinished, self.settings_file)

    def set_value(self, key, value):
        """Runs the companion, as a person does in a terminal."""
        subprocess.run([self.programs_folder / "quilex", "set", key, value], env=self.environment, check=True, timeout=DEADLINE)

    def make_library(self, *rows):
        self.library_file.parent.mkdir(parents=True, exist_ok=True)
        self.library_file.unlink(missing_ok=True)
        with self.library() as database:
            database.executescript((SOURCE / "resources/LocalVideos.sql").read_text())
        for row in rows:
            self.add_video(*row)

    def library(self):
        """The library in autocommit mode; the caller closes it."""
        return contextlib.closing(sqlite3.connect(self.library_file, timeout=60, isolation_level=None))

    def add_video(self, sign, url):
        with self.library() as database:
            database.execute("insert into LocalVideos (sign, url) values (?, ?)", (sign, url))

    def hear(self):
        """Returns a file to which everything that is posted on the bus is written."""
        heard = self.folder / "heard"
        form = "path=/com/dravo/quilex/Notifications,interface=com.dravo.quilex.Notifications,member=Posted"
        with open(heard, "ab") as file:
            self.start("dbus-monitor", "--session", form, stdout=file)
        wait_for(lambda: "NameAcquired" in heard.read_text(), "the monitor of the bus")
        return heard

    def post(self, name):
        place = ["--object-path", "/com/dravo/quilex/Notifications"]
        signal_name = "com.dravo.quilex.Notifications.Posted"
        self.run("gdbus", "emit", "--session", *place, "--signal", signal_name, f"'{name}'", "''", "@a{sv} {}")


class Session(UserSession):
    """A user's session on a virtual desktop, with an agent."""

    make_desktop = VirtualDesktop

    def __init__(self, build, monitors=("1280x720", "800x600"), manager=None):
        self.desktop = self.make_desktop(monitors)
        super().__init__(build, self.desktop.environment)
        self.agent_program = self.programs_folder / "quilexhelper"
        self.agent = None
        if manager:
            self.start(*manager.split(), stderr=subprocess.DEVNULL)
            # It announces itself before it manages windows, and may leave one unmapped that is made in between.
            for shows_desktop in (True, False):
                wait_for(lambda: self.manager_obeys(shows_desktop), "the window manager")

    def close(self):
        try:
            status = self.end_agent()
        finally:
            super().close()
            self.desktop.close()
        assert not status, f"the agent ended with {status}"

    # The agent

    def start_agent(self, **variables):
        environment = {**self.environment, **variables}
        with open(self.folder / "output", "ab") as output, open(self.folder / "errors", "ab") as errors:
            self.agent = subprocess.Popen([self.agent_program], env=environment, stdout=output, stderr=errors)
        return self.agent

    def start_agent_on_gpu(self, fault="", **variables):
        """Starts it with the GPU renderer; returns the file that says what EGL fails at (see EglFaults.cpp)."""
        modules = self.programs_folder.parent / "lib"
        file = self.folder / "fault"
        file.write_text(fault)
        variables |= {"QUILEX_RENDERER": "gpu", "QUILEX_EGL_FAULT": str(file)}
        self.start_agent(LD_PRELOAD=f"{modules}/keep_modules.so {modules}/egl_faults.so", **variables)
        return file

    def end_agent(self, how=signal.SIGTERM):
        """Ends the agent and returns its exit status, which also shows what sanitizers found."""
        if self.agent is None:
            return 0
        self.agent.send_signal(how)
        status = self.agent.wait(timeout=DEADLINE)
        self.agent = None
        if status != 0:
            print(self.errors(), file=sys.stderr)
        return status

    def output(self):
        return (self.folder / "output").read_text()

    def errors(self):
        return (self.folder / "errors").read_text()

    def start_probe(self, video):
        command = [self.programs_folder / "window_probe", video]
        self.programs.append(Probe(command, env=self.environment, stdin=subprocess.PIPE, bufsize=0))
        return self.programs[-1]

    # What a person sees

    def manager_obeys(self, shows_desktop):
        self.run("wmctrl", "-k", "on" if shows_desktop else "off")
        return f"= {shows_desktop:d}" in self.run("xprop", "-root", "_NET_SHOWING_DESKTOP")

    def windows(self):
        """Ids of the agent's mapped windows."""
        found = self.run("xdotool", "search", "--onlyvisible", "--classname", "^quilexhelper$").split()
        return sorted(int(each) for each in found)

    def geometry(self, window):
        lines = self.run("xwininfo", "-id", str(window)).splitlines()
        values = dict(line.strip().split(":", 1) for line in lines if ":" in line)
        keys = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        # A window may be gone before it is queried.
        return tuple(int(values.get(key, -1)) for key in keys)

    def moves(self, box=None):
        """Whether the picture, or the part of it in `box`, changes within a moment; use it with wait_for."""
        first = self.desktop.screenshot().crop(box)
        time.sleep(0.2)
        return ImageChops.difference(first, self.desktop.screenshot().crop(box)).getbbox() is not None

    def pixels(self, *points):
        picture = self.desktop.screenshot()
        return [picture.getpixel(point) for point in points]

    def wait_for_pixels(self, expected, what, *monitor, seconds=DEADLINE):
        """Waits until the desktop, or the monitor of that number, shows a colour at each point, within the codec's error."""
        seen = []

        def match():
            seen[:] = map(self.desktop.screenshot(*monitor).getpixel, expected)
            pairs = zip(itertools.chain(*seen), itertools.chain(*expected.values()))
            return all(abs(have - want) <= 24 for have, want in pairs)

        def report():
            self.desktop.screenshot(*monitor).save("/tmp/quilex-journey.png")
            return f"{what}: {seen} instead of {expected}; see /tmp/quilex-journey.png"

        wait_for(match, report, seconds)


def start_sway(monitors):
    """Tries again, because a sway in a sway sometimes ends during its start."""
    for patience in (True, True, False):
        try:
            return SwayDesktop(monitors)
        except (RuntimeError, subprocess.CalledProcessError) as failure:
            if not patience:
                raise
            print("once more:", failure, file=sys.stderr)


class WaylandSession(Session):
    """A user's session on a Wayland desktop, where the wallpaper's surfaces cannot be listed, only seen."""

    make_desktop = staticmethod(start_sway)

    def windows(self):
        """Positions of the monitors that show anything."""
        places = self.desktop.outputs().values()
        if not places:
            return []
        picture = self.desktop.screenshot()
        difference = ImageChops.difference(picture, Image.new("RGB", picture.size, self.desktop.background))
        shows = lambda left, top, width, height: difference.crop((left, top, left + width, top + height)).getbbox()
        return sorted(place for place in places if shows(*place))

    def geometry(self, window):
        return window
