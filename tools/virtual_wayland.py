"""A Wayland desktop without hardware: sway on headless outputs, which come and change like real monitors."""

import io
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

from PIL import Image

CONFIGURATION = "xwayland disable\n"
# It refuses to run as root.
ORDINARY_USER = 65534


class VirtualWaylandDesktop:
    def __init__(self, monitors=("1920x1080",)):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="virtual-desktop-"))
        configuration = self.folder / "config"
        configuration.write_text(CONFIGURATION)
        command = ["sway", "-c", str(configuration)]
        if os.getuid() == 0:
            os.chown(self.folder, ORDINARY_USER, ORDINARY_USER)
            command = ["setpriv", f"--reuid={ORDINARY_USER}", f"--regid={ORDINARY_USER}", "--clear-groups", *command]
        environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment |= {"HOME": str(self.folder), "XDG_RUNTIME_DIR": str(self.folder), "WLR_BACKENDS": "headless"}
        environment |= {"WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_HEADLESS_OUTPUTS": "0"}
        self.server = subprocess.Popen(
            command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )
        end = time.monotonic() + 20
        while not (sockets := [*self.folder.glob("sway-ipc.*.sock")]) or not [*self.folder.glob("wayland-?")]:
            if self.server.poll() is not None or time.monotonic() > end:
                raise RuntimeError("the compositor did not start")
            time.sleep(0.02)
        self.name = str(next(self.folder.glob("wayland-?")))
        self.environment = {**environment, "SWAYSOCK": str(sockets[0]), "WAYLAND_DISPLAY": self.name}
        self.outputs = []
        self.set_monitors(monitors)

    def run(self, *command):
        return subprocess.run(command, env=self.environment, check=True, capture_output=True, timeout=20).stdout

    def message(self, *words):
        self.run("swaymsg", *words)

    def set_monitors(self, monitors):
        """Lays the monitors out from left to right; there can only come to be more of them."""
        left = 0
        for index, mode in enumerate(monitors):
            if index == len(self.outputs):
                self.message("create_output")
                self.outputs.append(f"HEADLESS-{index + 1}")
            self.message("output", self.outputs[index], "resolution", mode, "position", str(left), "0")
            left += int(mode.split("x")[0])

    def screenshot(self):
        return Image.open(io.BytesIO(self.run("grim", "-s", "1", "-t", "ppm", "-"))).convert("RGB")

    def close(self):
        if self.server.poll() is None:
            self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)
