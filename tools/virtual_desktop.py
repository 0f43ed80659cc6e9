#!/usr/bin/python3
"""An X desktop without hardware: Xorg with the dummy driver, whose outputs are switched like real monitors.

As a program, virtual_desktop.py --screenshot FILE.png [--seconds S] [--monitors WxH,WxH...] [--manager NAME]
[--wayland] COMMAND... runs the command on such a desktop, or on a Wayland one, saves what it shows after some seconds,
ends it, and exits with its status.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

from PIL import ImageGrab
from sway_desktop import SwayDesktop

CONFIGURATION = pathlib.Path(__file__).with_name("virtual_desktop.conf")
# Not the wrapper of that name, which only serves users at the console.
SERVER = "/usr/lib/xorg/Xorg"


class VirtualDesktop:
    background = (0, 0, 0)  # what the server shows where nobody draws

    def __init__(self, monitors=("1920x1080",)):
        self.folder = tempfile.mkdtemp(prefix="virtual-desktop-")
        reading, writing = os.pipe()
        log = os.path.join(self.folder, "Xorg.log")
        # Each output keeps its modes: without -noreset the server would forget them with its last client.
        self.server = subprocess.Popen(
            [SERVER, "-config", CONFIGURATION, "-displayfd", str(writing), "-logfile", log]
            + ["-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp"],
            pass_fds=(writing,),
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("the X server did not start; see " + log)
        self.name = ":" + number
        self.environment = {**os.environ, "DISPLAY": self.name}
        self.environment.pop("WAYLAND_DISPLAY", None)
        self.set_monitors(monitors)

    def run(self, *command):
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, text=True).stdout

    def set_monitors(self, monitors):
        """Lays the monitors out from left to right; None in the list is an output that is switched off."""
        command, left = ["xrandr"], 0
        for index, mode in enumerate(monitors):
            output = f"DUMMY{index}"
            if mode is None:
                command += ["--output", output, "--off"]
                continue
            self.run("xrandr", "--addmode", output, mode)
            command += ["--output", output, "--mode", mode, "--pos", f"{left}x0"]
            left += int(mode.split("x")[0])
        self.run(*command)

    def place(self, index, left, top):
        self.run("xrandr", "--output", f"DUMMY{index}", "--pos", f"{left}x{top}")

    def screenshot(self):
        return ImageGrab.grab(xdisplay=self.name)

    def close(self):
        self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--monitors", default="1920x1080,1920x1080", help="sizes, from left to right")
    parser.add_argument("--wayland", action="store_true", help="a Wayland desktop instead (see sway_desktop.py)")
    parser.add_argument("--manager", help="a window manager to run on the desktop")
    parser.add_argument("--seconds", type=float, default=5)
    parser.add_argument("--screenshot", required=True, type=pathlib.Path)
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()

    make_desktop = SwayDesktop if arguments.wayland else VirtualDesktop
    desktop = make_desktop(arguments.monitors.split(","))
    programs = []
    try:
        if arguments.manager:
            programs.append(subprocess.Popen([arguments.manager], env=desktop.environment))
        programs.append(subprocess.Popen(arguments.command, env=desktop.environment))
        try:
            status = programs[-1].wait(timeout=arguments.seconds)
        except subprocess.TimeoutExpired:
            arguments.screenshot.parent.mkdir(parents=True, exist_ok=True)
            desktop.screenshot().save(arguments.screenshot)
            programs[-1].terminate()
            status = programs[-1].wait()
    finally:
        for program in programs:
            if program.poll() is None:
                program.terminate()
                program.wait()
        desktop.close()
    return status


if __name__ == "__main__":
    sys.exit(main())
