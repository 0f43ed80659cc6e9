"""Journeys of the wallpaper: what a person sees, and what the main application reads."""

import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import Xlib.display
import Xlib.X
import Xlib.Xatom
from session import Session, make_clip, wait_for

BUILD = sys.argv.pop(1)

RED, BLUE, GREEN, WHITE, BLACK = (192, 32, 32), (32, 32, 192), (32, 160, 32), (255, 255, 255), (0, 0, 0)
# Red on the left, blue on the right, and a white square of 160x160 in the middle, which shows any distortion.
HALVES = "color=c=0xC02020,drawbox=x=320:w=320:h=360:c=0x2020C0:t=fill,drawbox=x=240:y=100:w=160:h=160:c=white:t=fill"
# One picture across both monitors: 2080x720 wide, so scaled by 3.25 and cut above and below.
COMBO = {(700, 300): RED, (900, 300): WHITE, (1270, 300): WHITE, (1290, 300): WHITE, (1400, 300): BLUE}
COMBO |= {(800, 120): WHITE, (800, 80): RED}
# As large as both monitors in one; columns and below them rows, black and white by turns, show any shift and scaling.
STRIPES = "color=c=white,trim=end_frame=1,scale=2080:720,setsar=1,format=gray,geq=lum=255*mod(if(lt(Y\\,360)\\,X\\,Y)\\,2),loop=-1:1"
EXACT = {(x, 200): WHITE if x % 2 else BLACK for x in (0, 1, 1278, 1279, 1280, 1281, 2078, 2079)}
EXACT |= {(x, y): WHITE if y % 2 else BLACK for x in (640, 1680) for y in (500, 501)}

# The whole picture on the second monitor or on each, the square still square where the shapes differ.
LONELY = {(1680 - 145, 300): RED, (1680 + 120, 300 + 120): WHITE, (1680 - 120, 300 - 120): WHITE}
LONELY |= {(1680 + 145, 300): BLUE, (1680 + 60, 300 - 145): BLUE, (1281, 1): RED, (2079, 599): BLUE}
MIRROR = {(300, 360): RED, (640, 360): WHITE, (1000, 360): BLUE, **LONELY}
ORDINARY_WINDOW = ("xmessage", "-geometry", "200x100+100+100", "an ordinary window")


class Journey(unittest.TestCase):
    make_session = Session
    monitors = ("1280x720", "800x600")

    @classmethod
    def setUpClass(cls):
        cls.clips = tempfile.TemporaryDirectory(prefix="quilex-clips-")
        cls.addClassCleanup(cls.clips.cleanup)
        folder = pathlib.Path(cls.clips.name)
        cls.halves = make_clip(folder / "halves of it.mp4", HALVES)
        cls.short = make_clip(folder / "short.mp4", "color=c=0xC02020", seconds=1)
        cls.green = make_clip(folder / "green.mp4", "color=c=0x20A020")
        cls.moving = make_clip(folder / "moving.mp4", "testsrc2")
        cls.stripes = make_clip(folder / "stripes.mp4", STRIPES, seconds=1)

    def begin(self, *rows, manager=None, **settings):
        """A session with that library and these settings; its agent must end cleanly after the test."""
        self.session = session = self.make_session(BUILD, self.monitors, manager)
        self.addCleanup(session.close)
        if rows:
            session.make_library(*rows)
        if settings:
            session.write_settings(**settings)
        return session

    def wait_to_move(self, *boxes):
        """Waits for a moving picture on each monitor."""
        for left, top, width, height in boxes:
            box = (left, top, left + width, top + height)
            wait_for(lambda: self.session.moves(box), f"a moving picture at {box}")

    def said_by_another(self, status, **variables):
        """What a second agent, which ends with that status, writes to standard error."""
        environment, program = {**self.session.environment, **variables}, self.session.agent_program
        ended = subprocess.run([program], env=environment, capture_output=True, text=True, check=False, timeout=20)
        self.assertEqual((ended.returncode, ended.stdout), (status, ""))
        return ended.stderr

    def show_desktop(self):
        """Shows a program's desktop with icons, and returns the function that ends it. It is red where the tests look, but
        not mostly of one colour, from which icons could be told."""
        display = Xlib.display.Display(self.session.desktop.name)
        screen = display.screen()
        tile = screen.root.create_pixmap(640, 16, screen.root_depth)
        for left, colour in ((0, 0xFFFFFF), (200, 0xC02020), (320, 0x2020C0)):
            tile.fill_rectangle(tile.create_gc(foreground=colour), left, 0, 640 - left, 16)
        size = (0, 0, screen.width_in_pixels, screen.height_in_pixels, 0, Xlib.X.CopyFromParent)
        window = screen.root.create_window(*size, background_pixmap=tile)
        kind = [display.intern_atom("_NET_WM_WINDOW_TYPE_DESKTOP")]
        window.change_property(display.intern_atom("_NET_WM_WINDOW_TYPE"), Xlib.Xatom.ATOM, 32, kind)
        window.configure(stack_mode=Xlib.X.Below)
        window.map()
        display.sync()
        return display.close

    def check_order(self, steps, check=lambda: None):
        """Orders a wallpaper on a desktop with icons. Each step is a command, and the colour that is seen afterwards."""
        end_desktop = self.show_desktop()
        self.session.wait_for_pixels({(300, 360): RED}, "a desktop with icons")
        wallpaper = self.session.start_probe(self.green)
        for word, colour in steps:
            wallpaper.order(word)
            self.session.wait_for_pixels({(300, 360): colour, (1535, 300): colour}, word)
            check()
        self.assertEqual(wallpaper.end(), 0)
        end_desktop()

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
        with session.library() as database:
            rows = database.execute("select sign, url, width, height, rate, time from LocalVideos").fetchall()
        self.assertGreaterEqual(len(rows), 3)
        for _, url, *facts, duration in rows:
            self.assertTrue(pathlib.Path(url.removeprefix("file://")).is_file())
            self.assertEqual(facts, [1920, 1080, 30])
            self.assertTrue(8 <= duration <= 12)
        wait_for(lambda: session.settings().get("CurrentVideoSign") == rows[0][0], "the sign of what plays")

        self.assertRegex(self.said_by_another(0), "already running")
        self.assertEqual(session.end_agent(signal.SIGINT), 0)

    def test_layouts_items_and_monitors(self):
        halves = "file://" + self.halves.replace(" ", "%20")
        session = self.begin(("halves", halves), CurrentVideoSign="halves", MonitorArrange=1)
        heard = session.hear()
        session.start_agent()
        session.wait_for_pixels(MIRROR, "the same picture on each monitor")
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))

        # Monitors come and go while it plays, down to none.
        session.desktop.set_monitors([None, "800x600"])
        self.windows_cover((0, 0, 800, 600))
        session.desktop.set_monitors([None, None])
        self.windows_cover()
        session.desktop.set_monitors(self.monitors)
        session.wait_for_pixels(MIRROR, "the first monitors")
        session.write_settings(MonitorArrange=0)
        session.wait_for_pixels(COMBO, "one picture across the monitors")
        session.write_settings(ScreenIndex=1)
        bare = session.desktop.background
        lonely = {**LONELY, (640, 360): bare}
        session.wait_for_pixels(lonely, "the picture on the second monitor only")

        # Another video, named by the main application; then closed, and opened by naming the first again.
        session.add_video("green", "file://" + self.green)
        session.write_settings(CurrentVideoSign="green")
        session.wait_for_pixels({(640, 360): bare, (1680, 300): GREEN}, "the other video")
        session.write_settings(IsOpenPlayer=False)
        session.wait_for_pixels({(640, 360): bare, (1680, 300): bare}, "no wallpaper")
        self.assertEqual(session.windows(), [])
        session.write_settings(CurrentVideoSign="halves")
        session.wait_for_pixels(lonely, "the wallpaper again")
        wait_for(lambda: session.settings()["IsOpenPlayer"], "the setting to follow")

        self.assertEqual(session.end_agent(), 0)
        wait_for(lambda: heard.read_text().count("com.dravo.quilex.mac.ter") == 1, "the notification")

    def test_list_goes_on_without_a_black_frame(self):
        rows = ("gone", "/no/such/file.mp4"), ("text", __file__), ("short", self.short), ("green", self.green)
        session = self.begin(*rows, CurrentVideoSign="short", PlayMode=0)
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
                shown = [colour for colour in colours if max(abs(a - b) for a, b in zip(colour, pixel)) < 24]
                self.assertTrue(shown, f"a frame of {pixel}")
                colours[shown[0]] += 1
        wait_for(lambda: session.settings()["CurrentVideoSign"] == "green", "the sign to follow")

    def test_pause_and_library_changes(self):
        session = self.begin(("web", "http://127.0.0.1:1/a.mp4"))
        session.start_agent()
        wait_for(lambda: session.settings().get("CurrentVideoSign") is not None, "the start")
        self.assertEqual(session.windows(), [], "nothing to show, nothing shown")

        # The main application imports a video: it plays at once.
        session.add_video("moving", self.moving)
        session.post("UpdateVideoList")
        wait_for(lambda: len(session.windows()) == 2, "the windows")
        wait_for(lambda: session.settings()["CurrentVideoSign"] == "moving", "the sign to follow")
        # On monitors of the same size, and again after each close.
        session.desktop.set_monitors(["800x600", "800x600"])
        for opens in (*(True, False) * 4, True):
            session.write_settings(IsOpenPlayer=opens)
            wait_for(lambda: bool(session.windows()) == opens, "the windows")
            self.wait_to_move(*((left, 0, 800, 600) for left in (0, 800) if opens))
        session.desktop.set_monitors(self.monitors)
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

    def test_bad_input(self):
        session = self.begin(("halves", self.halves), MonitorArrange=1)
        session.settings_file.write_text("{")
        self.assertEqual(session.start_agent().wait(timeout=20), 1)
        self.assertEqual(session.errors().count(str(session.settings_file)), 1)
        session.agent = None
        self.assertEqual(self.said_by_another(1, DISPLAY=":nowhere", WAYLAND_DISPLAY="nowhere").count("\n"), 1)

    def test_each_renderer_shows_each_pixel(self):
        for renderer in ("cpu", "gpu"):
            session = self.begin(("halves", self.halves), ("stripes", self.stripes), CurrentVideoSign="halves")
            session.start_agent(QUILEX_RENDERER=renderer, LD_PRELOAD=BUILD + "/lib/keep_modules.so")
            session.wait_for_pixels(COMBO, "one picture across the monitors")
            # A second monitor that stands lower shows what is lower in the picture.
            session.desktop.place(1, 1280, 101)
            session.write_settings(MonitorArrange=0, CurrentVideoSign="stripes")
            session.wait_for_pixels(EXACT, "one picture across the monitors, pixel by pixel")
            session.desktop.set_monitors(["800x600", "1280x720"])
            session.wait_for_pixels(EXACT, "the same on other monitors")
            session.write_settings(IsOpenPlayer=False)
            self.windows_cover()
            session.write_settings(IsOpenPlayer=True, MonitorArrange=1, CurrentVideoSign="halves")
            session.wait_for_pixels({(400, 300): WHITE, (800 + 300, 360): RED, (800 + 640, 360): WHITE}, "opened again")
            session.close()

    def test_a_reset_gpu_shows_the_picture_again(self):
        session = self.begin(("halves", self.halves))
        fault = session.start_agent_on_gpu()
        session.wait_for_pixels(COMBO, "one picture across the monitors")
        # While it draws, and while it has nothing to draw.
        for playing, arrangement, picture in ((True, 1, MIRROR), (False, 0, COMBO)):
            session.write_settings(isPlaying=playing)
            fault.write_text("lost")
            session.write_settings(MonitorArrange=arrangement)
            wait_for(lambda: not fault.exists(), "the loss of the context")
            session.wait_for_pixels(picture, "the picture after the loss")


class WindowManagers(Journey):
    def check(self, manager):
        session = self.begin(("green", self.green), manager=manager)
        session.start(*ORDINARY_WINDOW)
        wait_for(lambda: session.run("xdotool", "search", "--onlyvisible", "--class", "xmessage"), "the window")
        session.start_agent()
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))
        session.wait_for_pixels({(640, 500): GREEN, (1680, 300): GREEN, (1281, 1): GREEN}, "the wallpaper")
        self.assertNotEqual(*session.pixels((200, 150), (640, 500)), "the ordinary window is covered")
        focus = session.run("xdotool", "getwindowfocus").strip()
        self.assertNotIn(int(focus or 0), session.windows())
        for window in session.windows():
            kind = session.run("xprop", "-id", str(window), "_NET_WM_WINDOW_TYPE", "_NET_WM_DESKTOP", "WM_HINTS")
            for part in ("_NET_WM_WINDOW_TYPE_DESKTOP", "4294967295", "Client accepts input or input focus: False"):
                self.assertIn(part, kind)

        # The wallpaper only handles the primary button.
        for button in ("2", "3", "1"):
            session.run("xdotool", "mousemove", "700", "500", "click", button)
        wait_for(lambda: "tapVideoPlayerViewAction\n" in session.output(), "the click")
        self.assertEqual(session.output().splitlines()[1:], ["mouse down", "tapVideoPlayerViewAction"])
        session.run("xdotool", "click", "3")
        return session

    def test_order(self):
        # xfwm4 leaves desktop windows in the order in which they first appear.
        for manager, steps in ((None, 5), ("openbox", 5), ("xfwm4 --compositor=off", 1)):
            session = self.begin(manager=manager)
            session.start(*ORDINARY_WINDOW)
            ordinary = lambda: session.pixels((200, 150)) != session.pixels((300, 360))
            order = [("front", GREEN), ("back", RED), ("front", GREEN), ("out", RED), ("front", GREEN)]
            self.check_order(order[:steps], lambda: wait_for(ordinary, "the ordinary window in front"))

    def test_openbox(self):
        session = self.check("openbox")
        wait_for(lambda: session.pixels((720, 520))[0] != session.pixels((640, 650))[0], "the desktop's own menu")
        session.run("xdotool", "key", "Escape")
        # Another workspace, and a new window manager, find the wallpaper in its place.
        session.run("wmctrl", "-s", "1")
        session.wait_for_pixels({(640, 500): GREEN, (200, 150): GREEN, (1680, 300): GREEN}, "the other workspace")
        session.run("wmctrl", "-s", "0")
        session.run("openbox", "--restart")
        for shows_desktop in (True, False):
            wait_for(lambda: session.manager_obeys(shows_desktop), "the window manager after its restart")
        self.windows_cover((0, 0, 1280, 720), (1280, 0, 800, 600))
        session.wait_for_pixels({(640, 500): GREEN, (1680, 300): GREEN}, "the wallpaper after the restart")

    def test_none_and_xfwm4(self):
        # Its compositor takes the driver's other outputs for unplugged ones and leaves them black.
        for manager in (None, "xfwm4 --compositor=off"):
            session = self.check(manager)
        # The primary button of a person who is left-handed.
        presses = session.output().count("mouse down")
        session.run("xmodmap", "-e", "pointer = 3 2 1")
        session.run("xdotool", "click", "1", "click", "3")
        wait_for(lambda: session.output().count("mouse down") > presses, "the click of the other hand")
        self.assertEqual(session.output().count("mouse down"), presses + 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
