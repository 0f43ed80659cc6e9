"""Journeys of a wallpaper that nobody can see or that is to stand still: what holds it, and that it goes on from there."""

import pathlib
import subprocess
import sys
import time
import unittest

import dbus
import Xlib.display
import Xlib.X

from session import WaylandSession, make_clip, wait_for
from wallpaper_test import BUILD, GREEN, WHITE, Journey

LOGIN, LOGIN_PATH = "org.freedesktop.login1", "/org/freedesktop/login1"
SAVER, SAVER_PATH = "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"
NAME, PATH, INTERFACE = "com.dravo.quilex.QuilexHelper", "/com/dravo/quilex/Agent", "com.dravo.quilex.Agent1"
# The clip becomes lighter all the time.
SECONDS = 60
SHADES = 219 / SECONDS


def changes(picture):
    """Whether the picture changes within a moment; use it with wait_for."""
    first = picture()
    time.sleep(0.2)
    return picture() != first


class StandstillJourney(Journey):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        graph = f"color=c=white,fade=t=in:s=0:n={30 * SECONDS}"
        cls.dawn = make_clip(pathlib.Path(cls.clips.name) / "dawn.mp4", graph, seconds=SECONDS)

    def begin(self, *rows, **options):
        session = super().begin(*(rows or (("moving", self.moving), ("dawn", self.dawn))), MonitorArrange=1, **options)
        session.environment["XDG_SESSION_ID"] = "7"
        self.login = session.start_mock("system", LOGIN, LOGIN_PATH, "--template", "logind")
        self.place = self.login().AddSession("7", "seat0", dbus.UInt32(1000), "ann", True)
        return session

    def lock(self, locked):
        self.login(self.place).UpdateProperties(LOGIN + ".Session", {"LockedHint": locked})

    def status(self):
        return self.session.run(self.session.programs_folder / "quilex", "status")

    def reasons(self):
        agent = self.session.bus().get_object(NAME, PATH, introspect=False)
        return [str(each) for each in agent.Get(INTERFACE, "StandsStillBecause", dbus_interface=dbus.PROPERTIES_IFACE)]

    def wait_to_stand(self, *reasons):
        wait_for(lambda: self.reasons() == list(reasons), lambda: f"{reasons}, not {self.reasons()}")
        wait_for(lambda: not self.session.moves(), "a picture that stands still")

    def goes_on(self, *reasons):
        wait_for(lambda: self.reasons() == list(reasons), lambda: f"{reasons}, not {self.reasons()}")
        wait_for(self.session.moves, "a moving picture")

    def processor(self):
        """Seconds that the agent has computed, and how often it was woken."""
        folder = pathlib.Path(f"/proc/{self.session.agent.pid}/task")
        ticks = (folder.parent / "stat").read_text().rpartition(")")[2].split()[11:13]
        switches = [line for task in folder.iterdir() for line in (task / "status").read_text().splitlines()]
        woken = sum(int(line.split()[1]) for line in switches if line.startswith("voluntary_ctxt_switches"))
        return sum(map(int, ticks)) / 100, woken

    def report_cost(self, what, seconds=5):
        """Prints what it takes; decides nothing."""
        (before, woken), began = self.processor(), time.monotonic()
        time.sleep(seconds)
        (after, woken_after), passed = self.processor(), time.monotonic() - began
        print(f"{what}: {100 * (after - before) / passed:.1f} % of a core, {(woken_after - woken) / passed:.1f} wakeups a second", file=sys.stderr)


class Standstill(StandstillJourney):
    def test_locked_saved_and_dark_screens(self):
        session = self.begin()
        saver = session.start_mock("session", SAVER, SAVER_PATH, "--template", "gnome_screensaver")
        active = lambda is_active: dbus.Interface(saver(), SAVER).SetActive(is_active)
        session.start_agent()
        wait_for(session.moves, "a moving picture")
        reasons = {
            "the session is locked": self.lock,
            "the screen saver is on": active,
            # The virtual screen has no DPMS; with it the server begins its screen saver as well.
            "the screen is off": lambda off: session.run("xset", "s", "activate" if off else "reset"),
        }
        for reason, switch in reasons.items():
            switch(True)
            self.wait_to_stand(reason)
            self.assertIn(f"wallpaper:   open, playing; stands still because {reason}\n", self.status())
            switch(False)
            self.goes_on()
        session.run("xset", "s", "activate")
        self.wait_to_stand("the screen is off")
        # All at once, and the person pauses in between.
        self.lock(True)
        active(True)
        self.wait_to_stand(*reasons)
        session.run("xset", "s", "reset")
        session.set_value("isPlaying", "false")
        self.lock(False)
        self.wait_to_stand("the screen saver is on")
        active(False)
        self.wait_to_stand()
        self.assertFalse(session.settings()["isPlaying"], "the pause is the person's")
        session.set_value("isPlaying", "true")
        self.goes_on()

        # What is locked when the agent starts, whose saver dies, or that changes monitors meanwhile.
        self.assertEqual(session.end_agent(), 0)
        active(True)
        session.start_agent()
        wait_for(lambda: session.bus().name_has_owner(NAME) and self.reasons() == ["the screen saver is on"], "the saver")
        session.programs[-1].terminate()
        self.goes_on()
        self.lock(True)
        self.wait_to_stand("the session is locked")
        session.desktop.set_monitors(["800x600", "1280x720"])
        self.windows_cover((0, 0, 800, 600), (800, 0, 1280, 720))
        self.wait_to_stand("the session is locked")
        self.lock(False)
        self.wait_to_move((0, 0, 800, 600), (800, 0, 1280, 720))
        session.desktop.set_monitors([None, None])
        wait_for(lambda: self.reasons() == ["no part of the wallpaper can be seen"], "no monitor")
        session.desktop.set_monitors(self.monitors)
        self.wait_to_move((0, 0, 1280, 720), (1280, 0, 800, 600))

    def test_rules(self):
        session = self.begin(manager="openbox")
        power, path = "org.freedesktop.UPower", "/org/freedesktop/UPower"
        upower = session.start_mock("system", power, path, "--template", "upower")
        on_battery = lambda on: upower().UpdateProperties(power, {"OnBattery": on})
        charge = lambda percent: upower(path + "/devices/DisplayDevice").UpdateProperties(power + ".Device", {"Percentage": percent})
        daemon, place = "net.hadess.PowerProfiles", "/net/hadess/PowerProfiles"
        profiles = session.start_mock("system", daemon, place, "--template", "power_profiles_daemon")
        saver = lambda on: profiles().UpdateProperties(daemon, {"ActiveProfile": "power-saver" if on else "balanced"})
        mode, place = "com.feralinteractive.GameMode", "/com/feralinteractive/GameMode"
        games = session.start_mock("session", mode, place, mode, place, mode)
        games().AddProperty(mode, "ClientCount", dbus.Int32(0))
        play = lambda plays: games().UpdateProperties(mode, {"ClientCount": dbus.Int32(plays)})
        window = self.make_window("200x100+100+100")
        extend = lambda state: lambda on: session.run("wmctrl", "-i", "-r", window, "-b", ("add," if on else "remove,") + state)
        programs = []

        def run(runs):
            if runs:
                programs.append(session.start("xmessage", "-geometry", "+900+500", "a chosen program"))
            else:
                programs.pop().terminate()

        charge(50.0)
        session.start_agent()
        wait_for(session.moves, "a moving picture")
        # Nothing is a rule before the person says so.
        idle = lambda is_idle: self.login(self.place).UpdateProperties(LOGIN + ".Session", {"IdleHint": is_idle})
        circumstances = [idle, on_battery, saver, play, extend("fullscreen"), run]
        for each in circumstances:
            each(True)
        wait_for(session.moves, "a moving picture")
        for each in circumstances:
            each(False)
        rules = {
            ("PauseOnBattery", "true", "false"): (on_battery, "the computer runs on battery"),
            ("PauseBelowCharge", "51", "0"): (on_battery, "the battery has less than 51 %"),
            ("PauseInPowerSaver", "true", "false"): (saver, "power is to be saved"),
            ("PauseWhenIdle", "true", "false"): (idle, "nobody uses the computer"),
            ("PauseForGames", "true", "false"): (play, "a game runs"),
            ("PauseForPrograms", "nothing, xmessage", ""): (run, "nothing or xmessage runs"),
            ("PauseForFullScreen", "true", "false"): (extend("fullscreen"), "a window is full-screen"),
            ("PauseForMaximized", "true", "false"): (extend("maximized_vert,maximized_horz"), "a window is maximised or full-screen"),
        }
        for (key, on, off), (change, reason) in rules.items():
            session.set_value(key, on)
            change(True)
            wait_for(lambda: self.reasons() == [reason], lambda: f"{reason}, not {self.reasons()}")
            if "window" not in reason:
                self.wait_to_stand(reason)
            if key == "PauseBelowCharge":
                charge(52.0)
                self.goes_on()
                charge(50.0)
                self.wait_to_stand(reason)
            change(False)
            self.goes_on()
            change(True)
            wait_for(self.reasons, reason)
            session.set_value(key, off)
            self.goes_on()
            change(False)
        # A window on another workspace is not in the way.
        session.set_value("PauseForMaximized", "true")
        extend("maximized_vert,maximized_horz")(True)
        wait_for(self.reasons, "the window")
        session.run("wmctrl", "-s", "1")
        self.goes_on()
        session.run("wmctrl", "-s", "0")
        wait_for(self.reasons, "the window again")
        session.run("xkill", "-id", window)
        self.goes_on()
        self.assertTrue(session.settings()["isPlaying"])

    def test_it_goes_on_where_it_stopped(self):
        session = self.begin(CurrentVideoSign="dawn")
        session.start_agent()
        shade = lambda: session.pixels((640, 360))[0][0]
        wait_for(lambda: shade() > 16, "a lighter picture")
        self.lock(True)
        wait_for(self.reasons, "the lock")
        wait_for(lambda: shade() == (time.sleep(0.5), shade())[1], "a picture that stands still")
        held, began = shade(), time.monotonic()
        self.report_cost("locked")
        self.assertEqual(shade(), held)
        released = time.monotonic()
        self.lock(False)
        seen = held
        while seen <= held + 4:
            seen = shade()
            passed = time.monotonic() - released
            self.assertGreaterEqual(seen, held, "neither a black frame nor another start")
            self.assertLessEqual(seen, held + 4 + SHADES * (passed + 1), "no jump")
            self.assertLess(passed, 20, "it goes on")
        self.assertGreater(released - began, 4)
        self.report_cost("playing")

    def test_full_screen_windows_under_a_compositor(self):
        session = self.begin(manager="openbox")
        session.start("picom", "--backend", "xrender", "--config", "/dev/null", stderr=subprocess.DEVNULL)
        session.start_agent()
        self.wait_to_move((0, 0, 1280, 720), (1280, 0, 800, 600))
        first, second = (self.make_window(place) for place in ("200x100+100+100", "200x100+1500+100"))
        full = lambda window, action: session.run("wmctrl", "-i", "-r", window, "-b", action + ",fullscreen")
        full(first, "add")
        session.wait_for_pixels({(640, 360): WHITE}, "a full-screen window")
        # One monitor shows it still; for the other, nothing is drawn.
        self.wait_to_move((1280, 300, 800, 300))
        contents = {session.geometry(window)[0]: self.contents(window) for window in session.windows()}
        self.assertTrue(changes(contents[1280]))
        wait_for(lambda: not changes(contents[0]), "a window in which nothing is drawn")
        self.assertEqual(self.reasons(), [])
        full(second, "add")
        session.wait_for_pixels({(640, 360): WHITE, (1680, 300): WHITE}, "full-screen windows on both monitors")
        covered = ["no part of the wallpaper can be seen"]
        wait_for(lambda: self.reasons() == covered, "nothing to be seen")
        self.report_cost("covered under a compositor")
        # Another workspace, a window that lets the wallpaper shine through, a smaller one, and none.
        for change, back in (
            (("wmctrl", "-s", "1"), ("wmctrl", "-s", "0")),
            (("xprop", "-id", second, "-f", "_NET_WM_WINDOW_OPACITY", "32c", "-set", "_NET_WM_WINDOW_OPACITY", "2000000000"),
             ("xprop", "-id", second, "-remove", "_NET_WM_WINDOW_OPACITY")),
            (("xdotool", "windowminimize", second), ("xdotool", "windowactivate", second)),
        ):
            session.run(*change)
            self.goes_on()
            session.run(*back)
            wait_for(lambda: self.reasons() == covered, lambda: f"nothing to be seen after {back}")
        full(first, "remove")
        self.goes_on()
        self.wait_to_move((0, 0, 1280, 720))

    def contents(self, window):
        """A function that returns what the window holds, seen or not, as the compositing manager has it."""
        display = Xlib.display.Display(self.session.desktop.name)
        self.addCleanup(display.close)
        drawable = display.create_resource_object("window", window)
        return lambda: drawable.get_image(0, 0, 400, 300, Xlib.X.ZPixmap, 0xFFFFFFFF).data

    def make_window(self, geometry):
        known = set(self.session.run("xdotool", "search", "--onlyvisible", "--name", "Event Tester").split())
        self.session.start("xev", "-geometry", geometry, stdout=subprocess.DEVNULL)
        new = lambda: set(self.session.run("xdotool", "search", "--onlyvisible", "--name", "Event Tester").split()) - known
        return hex(int(wait_for(new, "a window").pop()))


class WaylandStandstill(StandstillJourney):
    make_session = WaylandSession

    def test_locked_and_out_of_sight(self):
        session = self.begin()
        session.start_agent()
        both = (0, 0, 1280, 720), (1280, 0, 800, 600)
        self.wait_to_move(*both)
        self.report_cost("playing in sway")
        self.lock(True)
        self.wait_to_stand("the session is locked")
        self.report_cost("locked in sway")
        self.lock(False)
        self.wait_to_move(*both)
        for index in (0, 1):
            session.desktop.set_lit(index, False)
        wait_for(lambda: self.reasons() == ["no part of the wallpaper can be seen"], "dark screens")
        self.report_cost("dark in sway")
        session.desktop.set_lit(1, True)
        picture = lambda: session.desktop.screenshot(1).tobytes()
        before = picture()
        wait_for(lambda: picture() != before, "a moving picture on the monitor that is lit")
        self.assertEqual(self.reasons(), [])
        session.desktop.set_lit(0, True)
        self.wait_to_move(*both)

    def test_full_screen_windows_by_rule(self):
        session = self.begin(PauseForFullScreen=True)
        session.start_agent()
        both = (0, 0, 1280, 720), (1280, 0, 800, 600)
        self.wait_to_move(*both)
        session.start("mpv", "--no-config", "--vo=wlshm", "--no-audio", "--loop", "--really-quiet", self.green)
        is_green = lambda pixel: all(abs(have - want) <= 24 for have, want in zip(pixel, GREEN))
        covered = lambda: [is_green(pixel) for pixel in session.pixels((640, 360), (1680, 300))]
        wait_for(lambda: any(covered()), "the window")
        free = both[0 if covered()[1] else 1]
        self.wait_to_move(free)
        self.assertEqual(self.reasons(), [], "a window that is as large, but not full-screen")
        session.desktop.command("[app_id=mpv] fullscreen enable")
        self.wait_to_stand("a window is full-screen")
        session.desktop.command("[app_id=mpv] fullscreen disable")
        self.wait_to_move(free)
        session.desktop.command("[app_id=mpv] fullscreen enable")
        self.wait_to_stand("a window is full-screen")
        session.programs[-1].terminate()
        self.wait_to_move(*both)


if __name__ == "__main__":
    unittest.main(verbosity=2)
