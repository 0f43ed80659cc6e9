"""Journeys of the wallpaper: what a person sees, and what the main application reads."""

import pathlib
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

from session import Session, make_clip, wait_for

BUILD = sys.argv.pop(1)

RED, BLUE, GREEN, WHITE, BLACK = (192, 32, 32), (32, 32, 192), (32, 160, 32), (255, 255, 255), (0, 0, 0)
# Red on the left, blue on the right, and a white square of 160x160 in the middle, which shows any distortion.
HALVES = (
    "color=c=0xC02020,drawbox=x=320:w=320:h=360:c=0x2020C0:t=fill,drawbox=x=240:y=100:w=160:h=160:c=white:t=fill"
)


class Journey(unittest.TestCase):
    make_session = Session
    monitors = ("1280x720", "800x600")

    @classmethod
    def setUpClass(cls):
        cls.clips = tempfile.TemporaryDirectory(prefix="quilex-clips-")
        folder = pathlib.Path(cls.clips.name)
        cls.halves = make_clip(folder / "halves of it.mp4", HALVES)
        cls.short = make_clip(folder / "short.mp4", "color=c=0xC02020", seconds=1)
        cls.green = make_clip(folder / "green.mp4", "color=c=0x20A020")
        cls.moving = make_clip(folder / "moving.mp4", "testsrc2")

    @classmethod
    def tearDownClass(cls):
        cls.clips.cleanup()

    def begin(self, *rows, manager=None, **settings):
        self.session = self.make_session(BUILD, self.monitors, manager)
        self.addCleanup(self.session.close)
        if rows:
            self.session.make_library(*rows)
        if settings:
            self.session.write_settings(**settings)
        return self.session

    def windows_cover(self, *places):
        found = lambda: sorted(self.session.geometry(window) for window in self.session.windows())
        wait_for(lambda: found() == sorted(places), f"windows at {places}")


class Wallpaper(Journey):
    def test_first_start_plays_the_default_library(self):
        session = self.begin()
        session.start_agent()
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))
        wait_for(session.moves, "a moving picture")
        self.assertEqual(session.output(), str(session.library_file) + "\n")
        with sqlite3.connect(session.library_file) as database:
            rows = database.execute("select sign, url, width, height, rate, time from LocalVideos").fetchall()
            columns = database.execute("pragma table_info(LocalVideos)").fetchall()
            index = database.execute("select sql from sqlite_master where type = 'index'").fetchone()[0]
        database.close()
        self.assertGreaterEqual(len(rows), 3)
        for _, url, width, height, rate, duration in rows:
            self.assertTrue(pathlib.Path(url.removeprefix("file://")).is_file())
            self.assertEqual((width, height, rate), (1920, 1080, 30))
            self.assertTrue(8 <= duration <= 12)
        self.assertEqual(len(columns), 25)
        self.assertFalse(any(not_null for _, _, _, not_null, _, _ in columns))
        self.assertIn('("sign")', index)
        wait_for(lambda: session.settings().get("CurrentVideoSign") == rows[0][0], "the sign of what plays")

        second = subprocess.run(
            [session.agent_program], env=session.environment, capture_output=True, text=True, check=False, timeout=20
        )
        self.assertEqual((second.returncode, second.stdout), (0, ""))
        self.assertIn("already running", second.stderr)
        self.assertEqual(session.end_agent(signal.SIGINT), 0)

    def test_layouts_items_and_monitors(self):
        session = self.begin(("halves", "file://" + self.halves.replace(" ", "%20")), CurrentVideoSign="halves")
        posted = session.start("dbus-monitor", "--session", "member=Posted", stdout=subprocess.PIPE)
        wait_for(lambda: b"NameAcquired" in posted.stdout.readline(), "the monitor of the bus")
        session.start_agent()

        # One picture across both monitors: 2080x720 wide, so scaled by 3.25 and cut above and below.
        combo = {(700, 300): RED, (900, 300): WHITE, (1270, 300): WHITE, (1290, 300): WHITE, (1400, 300): BLUE}
        session.wait_for_pixels({**combo, (800, 120): WHITE, (800, 80): RED}, "one picture across the monitors")
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))

        # The whole picture on each, the square still square where the shapes differ.
        session.write_settings(MonitorArrange=1)
        mirror = {(300, 360): RED, (640, 360): WHITE, (1000, 360): BLUE}
        mirror |= {(1680 - 145, 300): RED, (1680 + 120, 300 + 120): WHITE, (1680 - 120, 300 - 120): WHITE}
        mirror |= {(1680 + 145, 300): BLUE, (1680 + 60, 300 - 145): BLUE, (1281, 1): RED, (2079, 599): BLUE}
        session.wait_for_pixels(mirror, "the same picture on each monitor")

        session.write_settings(ScreenIndex=1)
        lonely = {point: colour for point, colour in mirror.items() if point[0] >= 1280}
        bare = session.desktop.background
        session.wait_for_pixels({**lonely, (640, 360): bare}, "the picture on the second monitor only")
        self.windows_cover((1280, 0, 800, 600))

        # Monitors come and go while it plays, down to none.
        session.write_settings(MonitorArrange=0)
        session.wait_for_pixels(combo, "one picture again")
        session.write_settings(MonitorArrange=1)
        session.wait_for_pixels(mirror, "both monitors again")
        session.desktop.set_monitors(["1280x720", None])
        self.windows_cover((0, 0, 1280, 720))
        session.desktop.set_monitors([None, None])
        self.windows_cover()
        session.desktop.set_monitors(["800x600", "1280x720"])
        self.windows_cover((0, 0, 800, 600), (800, 0, 1280, 720))
        session.wait_for_pixels({(400, 300): WHITE, (800 + 300, 360): RED, (800 + 640, 360): WHITE}, "other monitors")
        session.desktop.set_monitors(self.monitors)
        session.wait_for_pixels(mirror, "the first monitors")

        # Another video, named by the main application; then closed, and opened by naming the first again.
        session.add_video("green", "file://" + self.green)
        session.write_settings(CurrentVideoSign="green")
        session.wait_for_pixels({(640, 360): GREEN, (1680, 300): GREEN}, "the other video")
        session.write_settings(IsOpenPlayer=False)
        session.wait_for_pixels({(640, 360): bare, (1680, 300): bare}, "no wallpaper")
        self.assertEqual(session.windows(), [])
        session.write_settings(CurrentVideoSign="halves")
        session.wait_for_pixels(mirror, "the wallpaper again")
        wait_for(lambda: session.settings()["IsOpenPlayer"], "the setting to follow")

        self.assertEqual(session.end_agent(), 0)
        posted.terminate()
        said = posted.communicate(timeout=20)[0].decode()
        self.assertEqual(said.count("com.dravo.quilex.mac.ter"), 1, said)

    def test_list_goes_on_without_a_black_frame(self):
        session = self.begin(
            ("gone", "file:///no/such/file.mp4"),
            ("text", "file://" + __file__),
            ("short", "file://" + self.short),
            ("green", self.green),
            CurrentVideoSign="short",
            PlayMode=0,
        )
        session.start_agent()
        session.wait_for_pixels({(640, 360): RED, (1680, 300): RED}, "the first video")
        # Several rounds of the loop, the last of them into the next video.
        colours = {RED: 0, GREEN: 0}
        end = time.monotonic() + 2.5
        while not colours[GREEN]:
            if time.monotonic() > end:
                session.write_settings(PlayMode=1)
                end = float("inf")
            for pixel in session.pixels((640, 360), (1680, 300)):
                nearest = min(colours, key=lambda each: sum(abs(a - b) for a, b in zip(each, pixel)))
                self.assertLess(max(abs(a - b) for a, b in zip(nearest, pixel)), 24, f"a frame of {pixel}")
                colours[nearest] += 1
        wait_for(lambda: session.settings()["CurrentVideoSign"] == "green", "the sign to follow")
        self.assertEqual(session.end_agent(), 0)

    def test_pause_and_library_changes(self):
        session = self.begin(("lost", "file://" + self.clips.name + "/later.mp4"), ("web", "http://127.0.0.1:1/a.mp4"))
        session.start_agent()
        wait_for(lambda: session.settings().get("CurrentVideoSign") is not None, "the start")
        self.assertEqual(session.windows(), [], "nothing to show, nothing shown")

        # The main application imports a video: it plays at once.
        session.add_video("moving", "file://" + self.moving)
        session.post("UpdateVideoList")
        wait_for(lambda: len(session.windows()) == 2, "the windows")
        wait_for(session.moves, "a moving picture")
        wait_for(lambda: session.settings()["CurrentVideoSign"] == "moving", "the sign to follow")
        session.write_settings(isPlaying=False)
        wait_for(lambda: not session.moves(), "a picture that stands still")
        self.assertEqual(len(session.windows()), 2)
        bare = session.desktop.background
        self.assertNotEqual(session.pixels((640, 360))[0], bare)

        # The paused frame is there in another layout too.
        session.write_settings(ScreenIndex=1)
        self.windows_cover((1280, 0, 800, 600))
        wait_for(lambda: session.pixels((1680, 300))[0] != bare, "the paused frame on the one monitor")
        session.write_settings(isPlaying=True)
        wait_for(session.moves, "a moving picture again")

        # A sign whose file is gone is taken from the library, and what plays goes on.
        session.write_settings(CurrentVideoSign="lost")
        wait_for(lambda: "delete lost true\n" in session.output(), "the lost video to be deleted")
        self.assertTrue(session.moves())
        self.assertEqual(session.end_agent(), 0)

    def test_bad_input(self):
        session = self.begin(("halves", "file://" + self.halves.replace(" ", "%20")), MonitorArrange=1)
        for text in ("{", "[]", ""):
            session.settings_file.write_text(text)
            self.assertEqual(session.start_agent().wait(timeout=20), 1)
            self.assertEqual(session.errors().count(str(session.settings_file)), 1)
            self.assertEqual(session.settings_file.read_text(), text)
            (session.folder / "errors").unlink()
        environment = {**session.environment, "DISPLAY": ":nowhere", "WAYLAND_DISPLAY": "nowhere"}
        lost = subprocess.run([session.agent_program], env=environment, capture_output=True, check=False, timeout=20)
        self.assertEqual((lost.returncode, lost.stdout, lost.stderr.count(b"\n")), (1, b"", 1))

        # An editor in mid-save: nothing changes until the file is whole again.
        session.settings_file.unlink()
        session.write_settings(MonitorArrange=1)
        session.start_agent()
        session.wait_for_pixels({(640, 360): WHITE, (1680, 300): WHITE}, "the wallpaper")
        session.settings_file.write_text('{"IsOpenPlayer": fal')
        wait_for(lambda: "last good values" in session.errors(), "the complaint")
        self.assertEqual(len(session.windows()), 2)
        self.assertEqual(session.settings_file.read_text(), '{"IsOpenPlayer": fal')
        session.settings_file.write_text('{"IsOpenPlayer": true, "isPlaying": true, "ScreenIndex": 1}')
        self.windows_cover((1280, 0, 800, 600))

        # A library that turns into rubbish, or loses its table, while the agent runs.
        for ruin in (lambda: session.library_file.write_bytes(b"rubbish" * 999), session.make_library):
            ruin()
            session.post("UpdateVideoList")
            wait_for(session.windows, "the windows to stay")
        self.assertEqual(session.end_agent(), 0)
        session.library_file.write_bytes(b"rubbish" * 999)
        session.start_agent()
        wait_for(lambda: session.output().count(str(session.library_file)) == 2, "a start over the rubbish")
        session.write_settings(Volume=0.25)
        self.assertEqual(session.end_agent(), 0)

    def test_gpu_renderer_shows_the_same(self):
        session = self.begin(("halves", "file://" + self.halves.replace(" ", "%20")))
        session.start_agent(QUILEX_RENDERER="gpu", LD_PRELOAD=BUILD + "/lib/keep_modules.so")
        expected = {(700, 300): RED, (900, 300): WHITE, (1290, 300): WHITE, (1400, 300): BLUE, (800, 80): RED}
        session.wait_for_pixels(expected, "one picture across the monitors")
        session.write_settings(MonitorArrange=1)
        expected = {(640, 360): WHITE, (1680 - 145, 300): RED, (1680 + 120, 420): WHITE, (1680 + 145, 300): BLUE}
        session.wait_for_pixels(expected, "the same picture on each monitor")
        self.assertEqual(session.end_agent(), 0)


class WindowManagers(Journey):
    def check(self, manager):
        session = self.begin(("green", self.green), manager=manager)
        session.start("xmessage", "-geometry", "200x100+100+100", "an ordinary window")
        wait_for(lambda: session.run("xdotool", "search", "--onlyvisible", "--class", "xmessage"), "the window")
        session.start_agent()
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))
        session.wait_for_pixels({(640, 500): GREEN, (1680, 300): GREEN, (1281, 1): GREEN}, "the wallpaper")
        below = session.pixels((200, 150))[0]
        self.assertGreater(abs(below[1] - GREEN[1]) + abs(below[0] - GREEN[0]), 48, "the ordinary window is covered")
        focus = session.run("xdotool", "getwindowfocus").strip()
        self.assertNotIn(int(focus or 0), session.windows())
        for window in session.windows():
            kind = session.run("xprop", "-id", str(window), "_NET_WM_WINDOW_TYPE", "_NET_WM_DESKTOP", "WM_HINTS")
            self.assertIn("_NET_WM_WINDOW_TYPE_DESKTOP", kind)
            self.assertIn("4294967295", kind)
            self.assertIn("Client accepts input or input focus: False", kind)

        session.run("xdotool", "mousemove", "700", "500", "click", "1")
        wait_for(lambda: "tapVideoPlayerViewAction\n" in session.output(), "the click")
        session.run("xdotool", "click", "3")
        wait_for(lambda: session.output().count("mouse down\n") == 2, "one line for each press")
        return session

    def check_order(self, manager, steps):
        """A wallpaper goes behind and in front of another program's desktop windows, never before ordinary ones.

        Each step is who is told what, and the colour of the desktop afterwards.
        """
        session = self.begin(manager=manager)
        ordinary, desktop = (200, 150), (640, 500)
        session.start("xmessage", "-geometry", "200x100+100+100", "an ordinary window")
        clips = {"icons": self.short, "wallpaper": self.green}
        probes = {}
        for name, command, colour in steps:
            if name not in probes:
                probes[name] = session.start(
                    BUILD + "/bin/window_probe", clips[name], stdin=subprocess.PIPE, bufsize=0
                )
            probes[name].stdin.write(command.encode() + b"\n")
            session.wait_for_pixels({desktop: colour, (1680, 300): colour}, f"{manager}: {name} {command}")
            wait_for(lambda: session.pixels(ordinary) != session.pixels(desktop), "the ordinary window in front")
        for probe in probes.values():
            probe.stdin.close()
            self.assertEqual(probe.wait(timeout=20), 0)

    def test_order(self):
        steps = [("icons", "back", RED), ("wallpaper", "front", GREEN), ("wallpaper", "back", RED)]
        steps += [("wallpaper", "front", GREEN), ("wallpaper", "out", RED)]
        for manager in (None, "openbox"):
            self.check_order(manager, steps)
        # xfwm4 leaves desktop windows in the order in which they first appear.
        self.check_order("xfwm4 --compositor=off", steps[:2])

    def test_none(self):
        self.assertEqual(self.check(None).end_agent(), 0)

    def test_openbox(self):
        session = self.check("openbox")
        wait_for(lambda: session.pixels((720, 520))[0] != session.pixels((640, 650))[0], "the desktop's own menu")
        session.run("xdotool", "key", "Escape")
        # Another workspace, and a new window manager, find the wallpaper in its place.
        session.run("wmctrl", "-s", "1")
        session.wait_for_pixels({(640, 500): GREEN, (200, 150): GREEN, (1680, 300): GREEN}, "the other workspace")
        session.run("wmctrl", "-s", "0")
        session.run("openbox", "--restart")
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))
        session.wait_for_pixels({(640, 500): GREEN, (1680, 300): GREEN}, "the wallpaper after the restart")
        self.assertEqual(session.end_agent(), 0)

    def test_xfwm4(self):
        # Its compositor takes the driver's further outputs for unplugged ones and leaves them black.
        self.assertEqual(self.check("xfwm4 --compositor=off").end_agent(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
