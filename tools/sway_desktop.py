"""A Wayland desktop without hardware: sway, whose outputs are windows of another sway that has no display at all.

Outputs of a compositor without a display cannot be taken away or switched off; windows can be closed and hidden.
"""

import io
import json
import os
import pathlib
import pwd
import shutil
import subprocess
import tempfile
import time

from PIL import Image

DEADLINE = 20  # seconds
# The windows lie side by side, one position for each monitor, and each reaches into the outer output: covered windows
# are not drawn. That output is flat, because its pixels cost memory.
PLACE = 4096
OUTER = f'default_border none\nfor_window [app_id="wlroots"] floating enable\nfloating_maximum_size -1 x -1\noutput * mode --custom {7 * PLACE}x16\n'
INNER = "default_border none\nxwayland disable\n"
INITIAL_NAME = "WL-1"


class SwayDesktop:
    def __init__(self, monitors=("1920x1080",)):
        # What a person has in the configuration besides the outputs; it holds after `reload`.
        self.personal = ""
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="virtual-desktop-"))
        # The output of each monitor, or None, and its requested mode.
        self.names = [INITIAL_NAME]
        self.created = 1
        self.settings = {}
        # sway refuses to run as root.
        self.user = []
        if os.geteuid() == 0:
            nobody = pwd.getpwnam("nobody")
            os.chown(self.folder, nobody.pw_uid, nobody.pw_gid)
            self.user = ["setpriv", f"--reuid={nobody.pw_uid}", f"--regid={nobody.pw_gid}", "--clear-groups"]
        self.outer, outer_display, self.outer_socket = self._start("outer", OUTER, WLR_BACKENDS="headless")
        self.server, self.name, self.socket = self._start(
            "inner", INNER, WLR_BACKENDS="wayland", WLR_WL_OUTPUTS="1", WAYLAND_DISPLAY=outer_display
        )
        # With a path, clients of any user, with another runtime folder, can connect.
        self.environment = {**os.environ, "WAYLAND_DISPLAY": self.name}
        self.environment.pop("DISPLAY", None)
        try:
            self._wait(lambda: self._is_shown(INITIAL_NAME), "the first output")
            self.set_monitors(monitors)
            # The background where nothing is drawn, which differs between versions of sway.
            self.background = self.screenshot().getpixel((0, 0))
        except (RuntimeError, subprocess.CalledProcessError):
            self.close()
            raise

    def _start(self, name, text, **variables):
        configuration = self.folder / f"{name}.conf"
        configuration.write_text(text)
        configuration.chmod(0o644)
        sockets = lambda pattern: set(self.folder.glob(pattern)) - set(self.folder.glob("*.lock"))
        displays, controls = sockets("wayland-*"), sockets("sway-ipc.*")
        environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.folder),
            "XDG_RUNTIME_DIR": str(self.folder),
            "WLR_RENDERER": "pixman",
            "WLR_LIBINPUT_NO_DEVICES": "1",
            **variables,
        }
        with open(self.folder / f"{name}.log", "wb") as log:
            server = subprocess.Popen(
                [*self.user, "sway", "-c", str(configuration)], env=environment, stdout=log, stderr=log
            )
        end = time.monotonic() + DEADLINE
        while True:
            display, control = sockets("wayland-*") - displays, sockets("sway-ipc.*") - controls
            if display and control:
                return server, str(display.pop()), str(control.pop())
            if server.poll() is not None or time.monotonic() > end:
                raise RuntimeError("sway did not start: " + (self.folder / f"{name}.log").read_text())
            time.sleep(0.02)

    def _ask(self, socket, *arguments):
        command = ["swaymsg", "-s", socket, "-r", *arguments]
        return json.loads(subprocess.run(command, check=True, capture_output=True, text=True, timeout=DEADLINE).stdout)

    def _order(self, socket, text):
        # swaymsg waits only three seconds for an answer, too short on a busy machine. Callers wait for the effect.
        command = ["swaymsg", "-s", socket, text]
        subprocess.run(command, check=False, capture_output=True, timeout=DEADLINE)

    def command(self, text):
        self._order(self.socket, text)

    def _nodes(self, socket):
        nodes = [self._ask(socket, "-t", "get_tree")]
        for node in nodes:
            nodes += node["nodes"] + node["floating_nodes"]
        return nodes

    def _is_shown(self, name):
        """Whether the outer sway has that output's window."""
        return any((node["name"] or "").endswith(" " + name) for node in self._nodes(self.outer_socket))

    def ordinary_windows(self):
        """The titles of the windows that are not in a layer."""
        return [node["name"] for node in self._nodes(self.socket) if node["type"].endswith("con") and not node["nodes"]]

    def outputs(self):
        """Names and logical rectangles (left, top, width, height) of the outputs."""
        found = self._ask(self.socket, "-t", "get_outputs")
        keys = ("x", "y", "width", "height")
        return {each["name"]: tuple(each["rect"][key] for key in keys) for each in found if each["active"]}

    def _wait(self, condition, what):
        end = time.monotonic() + DEADLINE
        while not condition():
            if time.monotonic() > end:
                raise RuntimeError("waited in vain: " + what)
            time.sleep(0.02)

    def set_monitors(self, monitors):
        """Lays the monitors out from left to right; None in the list removes an output."""
        left = 0
        self.names += [None] * (len(monitors) - len(self.names))
        for index, mode in enumerate(monitors):
            if mode is None:
                self.unplug(index)
                continue
            size = tuple(int(length) for length in mode.split("x"))
            if self.names[index] is None:
                self.created += 1
                self.names[index] = name = f"WL-{self.created}"
                self.command("create_output")
                self._wait(lambda: self._is_shown(name), "the output " + name)
            name = self.names[index]
            self.configure(index, f"position {left} 0 scale 1 transform normal")
            self._wait(lambda: self._has_mode(name, left, size), f"{name} at {mode}")
            # A window keeps its centre when it is resized.
            self._order(self.outer_socket, f'[title="{name}$"] move absolute position {index * PLACE} 0')
            left += size[0]

    def _has_mode(self, name, left, size):
        """Whether the output has that size and position; if not, its window is resized again. The outer sway drops a
        resize if the window draws in its old size meanwhile."""
        if self.outputs()[name] == (left, 0, *size):
            return True
        self._order(self.outer_socket, f'[title="{name}$"] resize set {size[0]} px {size[1]} px')
        return False

    def unplug(self, index):
        name, self.names[index] = self.names[index], None
        if name is not None:
            self.settings.pop(name, None)
            self._order(self.outer_socket, f'[title="{name}$"] kill')
            self._wait(lambda: name not in self.outputs(), f"the end of {name}")

    def configure(self, index, settings):
        name = self.names[index]
        self.settings[name] = f"{self.settings.get(name, '')} {settings}"
        self.command(f"output {name} {settings}")

    def place(self, index, left, top):
        self.configure(index, f"position {left} {top}")

    def reload(self):
        lines = [f"output {name} {settings}\n" for name, settings in self.settings.items()]
        (self.folder / "inner.conf").write_text(INNER + self.personal + "".join(lines))
        self.command("reload")

    def set_lit(self, index, lit):
        """Turns the output's power on or off. It keeps its position, but without power nothing is drawn on it."""
        place = "1" if lit else "hidden"
        self._order(self.outer_socket, f'[title="{self.names[index]}$"] move container to workspace {place}')

    def screenshot(self, index=None):
        """The whole desktop in logical pixels (or more, where outputs are scaled), or one output in its own."""
        if index is None and not any(self.names):
            return Image.new("RGB", (1, 1), self.background)
        options = ["-o", self.names[index]] if index is not None else []
        environment = {**self.environment, "XDG_RUNTIME_DIR": str(self.folder)}
        command = ["grim", *options, "-t", "ppm", "-"]
        picture = subprocess.run(command, env=environment, check=True, capture_output=True, timeout=DEADLINE).stdout
        return Image.open(io.BytesIO(picture)).convert("RGB")

    def close(self):
        for server in (self.server, self.outer):
            server.terminate()
            try:
                server.wait(timeout=DEADLINE)
            except subprocess.TimeoutExpired:
                server.kill()
                server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
