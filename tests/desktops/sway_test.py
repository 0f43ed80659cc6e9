"""Journeys in sway with what Debian's configuration of it starts: swaybg, which draws the background, and a bar."""

import contextlib
import json
import pathlib
import sys
import unittest

E2E = pathlib.Path(__file__).resolve().parents[1] / "e2e"
sys.path.insert(0, str(E2E))
from session import WaylandSession, wait_for  # noqa: E402
from wallpaper_test import BLUE, RED, WHITE, Journey  # noqa: E402
from wayland_wire import Mouse  # noqa: E402

PURPLE, TEAL, DARK = (128, 64, 192), (32, 160, 160), (50, 50, 50)
BACKGROUND = "output * bg #{:02x}{:02x}{:02x} solid_color\n"
# In the bottom layer, as waybar is by default.
BAR = "bar {\n  position top\n  colors {\n    background #323232\n  }\n}\n"
IN_BAR = (200, 8)
# The same with and without a bar.
PICTURES = (
    {(300, 360): RED, (640, 360): WHITE, (1000, 360): BLUE, (600, 204): WHITE, (600, 196): RED, (600, 516): WHITE, (600, 524): RED},
    {(100, 300): RED, (400, 300): WHITE, (700, 300): BLUE, (380, 170): WHITE, (380, 163): RED},
)


class Sway(Journey):
    make_session = WaylandSession

    def begin(self, *rows, **settings):
        session = super().begin(*rows, **settings)
        session.environment["XDG_CURRENT_DESKTOP"] = "sway"
        return session

    def run_personally(self, lines):
        """Has sway read that configuration, and start what it names again."""
        self.session.desktop.personal = lines
        self.session.desktop.reload()

    def programs(self, name):
        """Processes of that name in this sway."""
        place = str(self.session.desktop.folder).encode()
        found = set()
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if (process / "comm").read_text().strip() == name and place in (process / "environ").read_bytes():
                    found.add(process.name)
            except OSError:  # it has ended
                pass
        return found

    def look(self, what):
        for index, picture in enumerate(PICTURES):
            self.session.wait_for_pixels({**picture, IN_BAR: DARK}, f"{what}: the video and the bar", index)

    def test_the_video_is_seen_between_background_and_bar(self):
        session = self.begin(("halves", self.halves), MonitorArrange=1, CurrentVideoSign="halves")
        desktop = session.desktop
        session.start_agent()
        whole = {**PICTURES[0], (1270, 5): BLUE}
        session.wait_for_pixels(whole, "the video on the whole output", 0)
        for _ in range(2):  # both start after the wallpaper
            before = self.programs("swaybg"), self.programs("swaybar")
            self.run_personally(BACKGROUND.format(*PURPLE) + BAR)
            now = lambda: (self.programs("swaybg"), self.programs("swaybar"))
            wait_for(lambda: all(new - old for old, new in zip(before, now())), "another swaybg and another bar")
            self.look("after a reload")

        for scale in ("2", "1.5", "1"):
            desktop.configure(0, f"scale {scale}")
            session.wait_for_pixels({**PICTURES[0], IN_BAR: DARK}, f"the video and the bar at scale {scale}", 0)
        self.look("after changes of the scale")
        for lit in (False, True):
            desktop.set_lit(0, lit)
        self.look("after an output was off")
        for index in (0, 1):
            desktop.unplug(index)
            desktop.set_monitors(self.monitors)
            self.look(f"after output {index} was unplugged")

        # Both start before the wallpaper, and the background again after it.
        self.assertEqual(session.end_agent(), 0)
        session.wait_for_pixels({(640, 360): PURPLE}, "the other background", 0)
        session.start_agent()
        self.look("after the wallpaper's start")
        before = self.programs("swaybg")
        desktop.command(BACKGROUND.format(*TEAL))
        wait_for(lambda: self.programs("swaybg") - before, "another swaybg")
        self.look("after another background's start")
        self.run_personally(BACKGROUND.format(*TEAL))
        session.wait_for_pixels(whole, "the video on the whole output, once the bar is gone", 0)
        session.write_settings(IsOpenPlayer=False)
        session.wait_for_pixels({(640, 360): TEAL, (1270, 5): TEAL}, "the other background without a wallpaper", 0)

    def test_a_translucent_panel_and_clicks_on_its_status_item(self):
        session = self.begin(("halves", self.halves), MonitorArrange=1)
        configuration = session.folder / "waybar"
        configuration.write_text(json.dumps({"modules-left": ["tray"], "tray": {"icon-size": 24}, "height": 30}))
        style = session.folder / "style"
        style.write_text("* { border: none } window { background: rgba(255, 255, 255, 0.5) } menu { background: #20a0a0 }")
        session.start_agent()
        session.wait_for_pixels(PICTURES[0], "the wallpaper", 0)
        with open(session.folder / "waybar.log", "wb") as log:
            session.start("waybar", "-c", str(configuration), "-s", str(style), stdout=log, stderr=log)
        below = {**PICTURES[0], (600, 15): (223, 143, 143), (700, 15): (143, 143, 223)}
        session.wait_for_pixels(below, "the same wallpaper beside and below a translucent bar", 0)
        icon = lambda: [*session.desktop.screenshot(0).crop((0, 0, 24, 30)).convert("L").getdata()]
        wait_for(lambda: 20 < sum(pixel < 100 for pixel in icon()) < 400, "the item in the bar")
        mouse = Mouse(session.desktop.name)
        self.addCleanup(mouse.connection.close)
        calls = session.folder / "calls"
        with open(calls, "wb") as file:
            session.start("dbus-monitor", "--session", "member=Activate", stdout=file)
        wait_for(lambda: "NameAcquired" in calls.read_text(), "the monitor of the bus")
        mouse.click(12, 15, 2080, 720, "left")
        wait_for(lambda: "member=Activate" in calls.read_text(), "the left click")

        def opens_menu():
            mouse.click(12, 15, 2080, 720, "right")
            with contextlib.suppress(AssertionError):
                session.wait_for_pixels({(20, 40): TEAL}, "the menu", 0, seconds=3)
                return True
            return False

        # The panel has no menu to open before it has read it from the bus.
        wait_for(opens_menu, "the panel's own menu after a right click")
        self.assertEqual(session.desktop.ordinary_windows(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
