"""Journeys of the wallpaper on a Wayland desktop: the one of every desktop, and what outputs do here."""

import os
import pathlib
import signal
import subprocess
import unittest

from PIL import ImageStat

from session import WaylandSession, make_clip, wait_for
from wallpaper_test import BLUE, BUILD, GREEN, RED, WHITE, Journey, Wallpaper
from wayland_relay import Relay


class WaylandWallpaper(Wallpaper):
    make_session = WaylandSession


class WaylandOutputs(Journey):
    make_session = WaylandSession

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # Columns of one pixel, which any scaling turns grey.
        graph = "color=c=white,scale=1280:720,format=gray,geq=lum=255*mod(X\\,2)"
        cls.columns = make_clip(pathlib.Path(cls.clips.name) / "columns.mp4", graph, seconds=1)

    def shows(self, index, expected, what):
        """`expected` maps points of that output, in its own pixels, to colours."""
        near = lambda have, want: all(abs(a - b) <= 24 for a, b in zip(have, want))

        def match():
            picture = self.session.desktop.screenshot(index)
            return all(near(picture.getpixel(point), colour) for point, colour in expected.items())

        try:
            wait_for(match, what)
        except AssertionError:
            self.session.desktop.screenshot(index).save("/tmp/quilex-journey.png")
            raise

    def moves(self, index):
        shot = lambda: self.session.desktop.screenshot(index).tobytes()
        first = shot()
        wait_for(lambda: shot() != first, f"a moving picture on output {index}")

    def handles(self):
        """Open files and pieces of shared memory of the agent."""
        process = pathlib.Path(f"/proc/{self.session.agent.pid}")
        return len(os.listdir(process / "fd")), (process / "maps").read_text().count("quilex-picture")

    def test_scale_and_rotation(self):
        rows = ("halves", "file://" + self.halves.replace(" ", "%20")), ("columns", self.columns)
        session = self.begin(*rows, MonitorArrange=1, CurrentVideoSign="halves")
        session.start_agent()
        upright = {(300, 360): RED, (640, 360): WHITE, (1000, 360): BLUE, (490, 210): WHITE, (470, 360): RED}
        self.shows(0, upright, "the picture at scale 1")
        for scale, place in (("2", (0, 0, 640, 360)), ("1.5", (0, 0, 853, 480)), ("1", (0, 0, 1280, 720))):
            session.desktop.configure(0, f"scale {scale}")
            wait_for(lambda: place in session.desktop.outputs().values(), f"scale {scale}")
            self.shows(0, upright, f"the picture at scale {scale}")
        session.desktop.configure(0, "transform 90")
        turned = {(360, 640): WHITE, (40, 100): RED, (680, 100): BLUE, (90, 370): WHITE, (60, 640): RED, (660, 640): BLUE}
        self.shows(0, turned, "the picture on a monitor that stands upright")
        session.desktop.reload()
        self.shows(0, turned, "the picture after the compositor read its configuration again")
        session.desktop.configure(0, "transform normal")
        self.shows(0, upright, "the picture on a monitor that lies again")

        # One picture of 1440x600 across outputs of different scales.
        session.desktop.configure(0, "scale 2")
        session.desktop.configure(1, "position 640 0")
        session.write_settings(MonitorArrange=0)
        self.shows(0, {(600, 400): RED, (1200, 400): WHITE, (1200, 200): RED, (1260, 260): WHITE}, "the left part")
        self.shows(1, {(60, 200): WHITE, (310, 200): BLUE, (10, 100): RED, (150, 100): BLUE}, "the right part")

        # Drawn for the pixels of the display, not enlarged.
        session.write_settings(MonitorArrange=1, CurrentVideoSign="columns")
        contrast = lambda: ImageStat.Stat(session.desktop.screenshot(0).convert("L").crop((200, 200, 600, 500))).stddev[0]
        wait_for(lambda: contrast() > 110, "each pixel of the video at scale 2")
        session.desktop.set_monitors(["1920x1080"])
        session.desktop.configure(0, "scale 1.5")
        wait_for(lambda: contrast() < 90, "a video that is enlarged")
        session.agent.send_signal(signal.SIGSTOP)  # so that it hears of mode and scale in one turn
        session.desktop.set_monitors(["1280x720"])
        session.agent.send_signal(signal.SIGCONT)
        wait_for(lambda: contrast() > 110, "each pixel of the video in a mode that fills the same place")
        self.assertEqual(session.end_agent(), 0)

    def test_outputs_switched_off_and_plugged_in_and_out(self):
        rows = ("moving", "file://" + self.moving), ("green", self.green)
        session = self.begin(*rows, MonitorArrange=1, CurrentVideoSign="moving")
        session.start_agent()
        for index in (0, 1):
            self.moves(index)
        session.desktop.set_lit(0, False)
        self.moves(1)
        session.write_settings(CurrentVideoSign="green")
        self.shows(1, {(400, 300): GREEN}, "the other video where someone can see it")
        session.desktop.set_lit(0, True)
        self.shows(0, {(640, 360): GREEN, (1, 1): GREEN}, "the other video on the output that is lit again")

        seen = []
        for _ in range(20):
            session.desktop.unplug(1)
            session.desktop.set_monitors(self.monitors)
            self.shows(1, {(1, 1): GREEN, (799, 599): GREEN}, "the video on the output that came")
            seen.append(self.handles())
        # A compositor that falls behind takes a further buffer of a picture.
        bound = tuple(count + 2 for count in max(seen[:10]))
        self.assertLessEqual(max(seen[10:]), bound, "no more files and memory than before")
        session.desktop.set_monitors([None, None])
        session.write_settings(CurrentVideoSign="moving")
        session.desktop.set_monitors(["800x600", "1280x720"])
        for index in (0, 1):
            self.moves(index)
        self.assertEqual(session.end_agent(), 0)

    def test_the_video_starts_again_when_all_is_covered_and_seen_again(self):
        place = pathlib.Path(self.clips.name) / "replaced.mp4"
        hexadecimal = [bytes(colour).hex() for colour in (GREEN, RED, BLUE)]
        colours = [make_clip(place.with_suffix(f".{each}.mp4"), f"color=c=0x{each}", 60) for each in hexadecimal]
        os.rename(colours[0], place)
        session = self.begin(("replaced", f"file://{place}"), MonitorArrange=1)
        session.start_agent()
        self.shows(0, {(640, 360): GREEN}, "the video")
        files = lambda: [os.readlink(each) for each in pathlib.Path(f"/proc/{session.agent.pid}/fd").iterdir()]
        os.rename(colours[1], place)
        for index in (0, 1):
            session.desktop.set_lit(index, False)
        wait_for(lambda: str(place) in files(), "what is at the video's place now")
        os.rename(colours[2], place)
        session.desktop.set_lit(1, True)
        self.shows(1, {(400, 300): BLUE}, "what is at the video's place at last")
        self.assertEqual(session.end_agent(), 0)

    def test_a_surface_that_the_compositor_closes(self):
        session = self.begin(("moving", "file://" + self.moving), MonitorArrange=1)
        with Relay(session.folder, session.desktop.name) as relay:
            session.start_agent(WAYLAND_DISPLAY=relay.address)
            for index in (0, 1):
                self.moves(index)
            relay.closing.append(relay.opened[0])
            wait_for(lambda: len(relay.opened) == 3, "another surface in its place")
            wait_for(lambda: len(session.windows()) == 2, "a picture on both outputs")
            for index in (0, 1):
                self.moves(index)
            self.assertEqual((session.end_agent(), len(relay.opened)), (0, 3))

    def test_a_surface_that_is_closed_before_egl_can_use_it(self):
        session = self.begin(("moving", "file://" + self.moving), MonitorArrange=1)
        with Relay(session.folder, session.desktop.name) as relay:
            fault = session.start_agent_on_gpu("surface", WAYLAND_DISPLAY=relay.address)
            wait_for(lambda: len(relay.opened) == 2 and session.errors().count("no surface") > 2, "the failures")
            relay.closing.append(relay.opened[0])
            session.desktop.configure(1, "scale 2")  # an event that the relay can add its own to
            wait_for(lambda: len(relay.opened) == 3, "another surface in its place")
            fault.unlink()
            for index in (0, 1):
                self.moves(index)
            self.assertEqual(session.end_agent(), 0)

    def test_the_compositor_goes_away(self):
        session = self.begin(("green", self.green))
        heard = session.folder / "heard"
        with open(heard, "wb") as file:
            session.start("dbus-monitor", "--session", "member=Posted", stdout=file)
        wait_for(lambda: "NameAcquired" in heard.read_text(), "the monitor of the bus")
        session.start_agent()
        self.shows(0, {(640, 360): GREEN}, "the wallpaper")
        session.desktop.server.send_signal(signal.SIGKILL)
        self.assertEqual(session.agent.wait(timeout=20), 1)
        self.assertEqual(session.errors(), "quilexhelper: the Wayland compositor is gone\n")
        wait_for(lambda: "com.dravo.quilex.mac.ter" in heard.read_text(), "the notification")

    def test_order_and_presses(self):
        session = self.begin(("green", self.green))
        icons = session.start(BUILD + "/bin/window_probe", self.short, stdin=subprocess.PIPE, bufsize=0)
        icons.stdin.write(b"back\n")
        self.shows(0, {(640, 500): RED}, "a desktop with icons")
        wallpaper = session.start(BUILD + "/bin/window_probe", self.green, stdin=subprocess.PIPE, bufsize=0)
        for command, colour in (("front", GREEN), ("out", RED), ("front", GREEN)):
            wallpaper.stdin.write(command.encode() + b"\n")
            for index in (0, 1):
                self.shows(index, {(400, 300): colour}, command)
        for probe in (wallpaper, icons):
            probe.stdin.close()
            self.assertEqual(probe.wait(timeout=20), 0)

        mouse = session.start(BUILD + "/bin/mouse", stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        self.assertEqual(mouse.stdout.readline(), b"ready\n")
        session.start_agent()
        self.shows(1, {(400, 300): GREEN}, "the wallpaper")
        for button in ("right", "left"):
            mouse.stdin.write(f"1600 300 2080 720 {button}\n".encode())
            wait_for(lambda: mouse.stdout.readline(), "the click")
        wait_for(lambda: "tapVideoPlayerViewAction\n" in session.output(), "the click")
        self.assertEqual(session.output().splitlines()[1:], ["mouse down", "tapVideoPlayerViewAction"])
        mouse.stdin.close()
        self.assertEqual(session.end_agent(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
