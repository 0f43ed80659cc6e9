"""What a person sees and does in the companion's window, on a real X server and through the accessibility tree."""

import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

import dbus
import dbus.bus
from accessibility import AccessibleSession, find, names

from session import Session, WaylandSession, make_clip, wait_for

BUILD = sys.argv.pop(1)
RED, GREEN = (192, 32, 32), (32, 160, 32)
CHECKED, SHOWING = 4, 25


class WindowJourney(unittest.TestCase):
    monitors = ("1280x800", "1024x768")

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="quilex-clips-")
        cls.addClassCleanup(folder.cleanup)
        cls.clips = pathlib.Path(folder.name)
        make_clip(cls.clips / "red.mp4", "color=c=0xC02020", seconds=2)
        make_clip(cls.clips / "green.mp4", "color=c=0x20A020", seconds=2)
        (cls.clips / "words.mp4").write_text("no video\n" * 9)

    def setUp(self):
        self.session = Session(BUILD, self.monitors, manager="openbox")
        self.addCleanup(lambda: self.session.close())
        self.session.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.quilex = str(self.session.programs_folder / "quilex")

    def open_window(self, list_name="Videos"):
        self.window = self.session.start(self.quilex)
        self.tree = AccessibleSession(self.session).application("quilex")
        self.grid = find(self.tree, "list", list_name)

    def close_window(self):
        self.key("ctrl+q")
        self.assertEqual(self.window.wait(timeout=20), 0)
        self.session.programs.remove(self.window)

    def add(self, *files):
        command = [self.quilex, "import", *files]
        subprocess.run(command, env=self.session.environment, check=True, timeout=60, stdout=subprocess.DEVNULL)

    def find(self, role, name):
        return find(self.tree, role, name)

    def titles(self):
        """Titles in their order; what was left of them if they changed while they were read."""
        try:
            return [self.grid.child(index).name.split(",")[0] for index in range(self.grid.child_count())]
        except dbus.DBusException:
            return []

    def wait_for_titles(self, *expected):
        wait_for(lambda: self.titles() == list(expected), lambda: f"{expected} instead of {self.titles()}")

    def wait_for_card(self, beginning, part):
        """The card whose text begins so and has that part."""

        def look():
            try:
                cards = [self.grid.child(index) for index in range(self.grid.child_count())]
                return next((each for each in cards if each.name.startswith(beginning) and part in each.name), None)
            except dbus.DBusException:
                return None

        return wait_for(look, f"{part} at {beginning}")

    def key(self, *keys):
        self.session.run("xdotool", "key", "--clearmodifiers", *keys)

    def type(self, text):
        self.session.run("xdotool", "type", text)

    def click(self, place, times=1):
        x, y = place.middle() if hasattr(place, "middle") else place
        self.session.run("xdotool", "mousemove", str(x), str(y), "click", "--repeat", str(times), "--delay", "60", "1")

    def photograph(self, name):
        if folder := os.environ.get("QUILEX_SCREENSHOTS"):
            self.session.desktop.screenshot().save(f"{folder}/{name}.png")


class Window(WindowJourney):
    def test_first_start(self):
        """Three loops, a greeting and a stopped wallpaper; a second start leaves one window."""
        self.open_window()
        self.wait_for_titles("Silk", "Dunes", "Aurora")
        self.find("label", "These loops come with Quilex")
        self.find("label", "The wallpaper is not running.")
        self.photograph("first-start")
        again = subprocess.run([self.quilex], env=self.session.environment, check=True, timeout=20, capture_output=True)
        self.assertEqual((again.stdout, again.stderr), (b"", b""))
        self.find("push button", "Start").press()
        self.wait_for_card("Aurora", "playing on the desktop")
        wait_for(lambda: self.session.windows(), "the wallpaper")
        self.photograph("running")
        # Everything that can be used has a name.
        used = ("push button", "check box", "radio button", "slider", "text", "list", "combo box", "menu item")

        def nameless():
            try:
                shown = [each for each in self.tree.tree() if each.role in used and SHOWING in each.states()]
                return [each.role for each in shown if not each.name]
            except dbus.DBusException:
                return None  # the tree changed while it was read

        wait_for(lambda: nameless() == [], lambda: f"no names: {nameless()}")
        self.close_window()
        for agent in self.agents():
            os.kill(agent, 15)
        wait_for(lambda: not self.agents(), "the agent's end")

    def agents(self):
        """Processes of the agent that belong to this session."""
        program = str(self.session.programs_folder / "quilexhelper")
        found = []
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                folder = f"XDG_RUNTIME_DIR={self.session.folder}\0".encode()
                if os.readlink(process / "exe") == program and folder in (process / "environ").read_bytes():
                    found.append(int(process.name))
            except OSError:
                pass
        return found

    def test_choose_arrange_and_remove(self):
        session = self.session
        session.write_settings(alreadyImportVideo=True)
        self.add(self.clips / "red.mp4", self.clips / "green.mp4")
        session.start_agent()
        self.open_window()
        self.wait_for_titles("green", "red", "Silk", "Dunes", "Aurora")
        # Search, and show what was found.
        self.key("ctrl+f")
        self.type("gre")
        self.wait_for_titles("green")
        self.click(self.grid.child(0), times=2)
        self.wait_for_card("green", "playing on the desktop")
        corner = {(5, 5): GREEN, (1290, 5): GREEN}
        session.wait_for_pixels(corner, "the chosen video")
        self.key("ctrl+f", "Escape")
        self.wait_for_titles("green", "red", "Silk", "Dunes", "Aurora")

        # The window, the command line and the desktop agree.
        self.find("radio button", "The same picture on each").press()
        wait_for(lambda: session.settings().get("MonitorArrange") == 1, "the arrangement")
        session.set_value("MonitorArrange", "0")
        across = self.find("radio button", "One picture across all monitors")
        wait_for(lambda: CHECKED in across.states(), "the arrangement of another program")
        self.click(self.find("push button", "Monitor 2"))
        chosen = lambda: (session.settings()["MonitorArrange"], session.settings().get("ScreenIndex"))
        wait_for(lambda: chosen() == (2, 1), "one monitor")
        session.wait_for_pixels({(5, 5): (0, 0, 0), (1290, 5): GREEN}, "the wallpaper on the second monitor")
        self.photograph("arranged")
        mute = self.find("check box", "Mute")
        mute.press()
        wait_for(lambda: session.settings().get("Mute") is True, "the sound to be off")
        session.set_value("Mute", "false")
        wait_for(lambda: CHECKED not in mute.states(), "the sound of another program")
        volume = self.find("slider", "Volume")
        session.set_value("Volume", "0.25")
        wait_for(lambda: volume.value() == 25, "the volume of another program")
        # A monitor is pulled out.
        session.desktop.set_monitors([self.monitors[0], None])
        view = self.find("filler", "Monitors")
        wait_for(lambda: view.child_count() == 1, "one monitor")
        session.desktop.set_monitors(self.monitors)
        wait_for(lambda: view.child_count() == 2, "two monitors")

        # Removing moves the wallpaper on; undoing brings both back.
        rows = lambda: [title for (title,) in self.query("select title from LocalVideos")]
        before = rows()
        session.set_value("MonitorArrange", "1")
        self.click(self.wait_for_card("green", "playing"))
        self.key("Delete")
        self.wait_for_titles("red", "Silk", "Dunes", "Aurora")
        self.assertNotIn("green", rows())
        self.assertTrue((self.clips / "green.mp4").exists())
        self.photograph("removed")
        self.find("push button", "Undo").press()
        self.wait_for_titles("green", "red", "Silk", "Dunes", "Aurora")
        self.assertEqual(rows(), before)
        session.wait_for_pixels(corner, "the video that came back")

        # Buttons of the panel, and the keyboard on a card.
        shown = session.settings()["CurrentVideoSign"]
        self.find("push button", "Next video").press()
        wait_for(lambda: session.settings()["CurrentVideoSign"] != shown, "the next video")
        self.find("push button", "Pause").press()
        wait_for(lambda: session.settings()["isPlaying"] is False, "the pause")
        asked = self.start_file_manager()
        self.click(self.wait_for_card("red", ""))
        self.key("ctrl+e")
        wait_for(lambda: (self.clips / "red.mp4").as_uri() in asked(), "the file manager")
        self.key("F2", "ctrl+a")
        self.type("crimson")
        self.key("Return")
        wait_for(lambda: "crimson" in rows(), "the new title")
        self.close_window()
        self.assertEqual(session.end_agent(), 0)

    def start_file_manager(self):
        """Starts a mocked file manager; returns the function that tells what it was asked for."""
        name, path = "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1"
        log = self.session.folder / "file-manager"
        mock = ["/usr/bin/python3", "-m", "dbusmock", "--session", "--logfile", str(log), name, path, name]
        self.session.start(*mock)
        bus = dbus.bus.BusConnection(self.session.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: bus.name_has_owner(name), "the file manager's name")
        manager = dbus.Interface(bus.get_object(name, path), "org.freedesktop.DBus.Mock")
        manager.AddMethod(name, "ShowItems", "ass", "", "")
        return log.read_text

    def query(self, text):
        with self.session.library() as database:
            return database.execute(text).fetchall()

    def test_add_and_miss(self):
        session = self.session
        gone = session.folder / "gone.mp4"
        gone.write_bytes((self.clips / "green.mp4").read_bytes())
        self.add(gone)
        gone.unlink()
        self.open_window()
        self.wait_for_card("gone", "file missing")
        self.paste(self.clips)
        self.wait_for_titles("red", "gone", "Silk", "Dunes", "Aurora")
        self.find("label", "Added: 1. Found again: 1. Cannot be played: 1.")
        self.photograph("added")
        card = self.wait_for_card("gone", "")
        wait_for(lambda: "missing" not in card.name, "the file that was found again")
        self.close_window()

    def paste(self, path):
        """Pastes a path that was copied from anywhere, here from the search."""
        self.key("ctrl+f")
        self.type(str(path))
        self.key("ctrl+a", "ctrl+c", "Escape", "ctrl+v")

    def test_killed_while_it_imports(self):
        session = self.session
        many = session.folder / "many"
        many.mkdir()
        clip = (self.clips / "red.mp4").read_bytes()
        for number in range(200):
            # A box at its end that readers ignore makes it another video.
            (many / f"{number:03}.mp4").write_bytes(clip + struct.pack(">I4sI", 12, b"free", number))
        count = lambda: self.query("select count(*) from LocalVideos")[0][0]
        self.open_window()
        self.wait_for_titles("Silk", "Dunes", "Aurora")
        self.paste(many)
        wait_for(lambda: count() > 10, "some of the videos")
        self.find("label", "Adding ")
        self.photograph("importing")
        self.window.kill()
        self.window.wait()
        session.programs.remove(self.window)
        self.assertLess(count(), 203)
        self.assertEqual(self.query("pragma integrity_check"), [("ok",)])
        self.open_window()
        wait_for(lambda: self.grid.child_count() == count(), "the videos that were added before")
        self.paste(many)
        self.find("push button", "Cancel").press()
        told = lambda: names(self.tree, "label")
        wait_for(lambda: any("The rest was cancelled." in each for each in told()), lambda: f"the end of it: {told()}")
        self.assertLess(count(), 203)
        self.paste(many)
        wait_for(lambda: self.grid.child_count() == 203, "all videos", seconds=60)
        self.find("label", "Added: ")
        covers = {each.stem for each in (session.library_file.parent / "Covers").glob("*")}
        self.assertEqual(covers, {sign for (sign,) in self.query("select sign from LocalVideos where imgurl != ''")})
        self.close_window()

    def test_files_are_dropped(self):
        session = self.session
        session.write_settings(alreadyImportVideo=True)
        self.open_window()
        self.wait_for_titles("Silk", "Dunes", "Aurora")
        session.start(str(session.programs_folder / "drag_source"), str(self.clips))
        wait_for(lambda: session.run("xdotool", "search", "--onlyvisible", "--name", "drag_source"), "the source")
        x, y = self.grid.middle()
        moves = []
        for step in range(1, 9):
            moves += ["mousemove", str(50 + (x - 50) * step // 8), str(50 + (y - 50) * step // 8), "sleep", "0.05"]
        session.run("xdotool", "mousemove", "50", "50", "mousedown", "1", *moves, "sleep", "0.3", "mouseup", "1")
        self.wait_for_titles("red", "green", "Silk", "Dunes", "Aurora")
        self.find("label", "Added: 2. Cannot be played: 1.")
        self.find("push button", "Show why").press()
        self.find("dialog", "Files that cannot be played")
        self.photograph("refused")
        self.assertTrue((self.clips / "red.mp4").exists())

    def test_dark_and_japanese(self):
        session = self.session
        name, path = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
        interface = "org.freedesktop.portal.Settings"
        mock = ["/usr/bin/python3", "-m", "dbusmock", "--session", name, path, interface]
        session.start(*mock, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: bus.name_has_owner(name), "the portal")
        portal = dbus.Interface(bus.get_object(name, path), "org.freedesktop.DBus.Mock")
        portal.AddMethod(interface, "Read", "ss", "v", "ret = dbus.UInt32(1, variant_level=1)")
        session.environment |= {"LC_ALL": "C.UTF-8", "LANGUAGE": "ja"}
        self.open_window("動画")
        find(self.tree, "push button", "動画を追加…")
        ground = lambda: session.pixels((self.grid.extents()[0] + 5, sum(self.grid.extents()[1::2]) - 20))[0]
        wait_for(lambda: max(ground()) < 64, lambda: f"a dark ground instead of {ground()}")
        self.photograph("dark-japanese")
        scheme = ["org.freedesktop.appearance", "color-scheme", dbus.UInt32(2, variant_level=1)]
        portal.EmitSignal(interface, "SettingChanged", "ssv", scheme)
        wait_for(lambda: min(ground()) > 192, lambda: f"a light ground instead of {ground()}")
        self.close_window()

    def test_ten_thousand_videos(self):
        session = self.session
        session.make_library()
        with session.library() as database:
            database.execute("begin")
            database.executemany(
                "insert into LocalVideos (vid, sign, title, url, time, width, height) values (?, ?, ?, ?, 9, 640, 360)",
                ((n, f"{n:032}", f"Video {n:05}", f"{self.clips}/red.mp4") for n in range(10_000)),
            )
            database.execute("commit")
        self.open_window()
        wait_for(lambda: self.grid.child_count() == 10_000, "the library")
        self.click(self.grid.child(0))
        self.key("End")
        wait_for(lambda: SHOWING in self.grid.child(9999).states(), "the last card")
        self.key("ctrl+f")
        self.type("1234")
        wait_for(lambda: self.grid.child_count() == 1, "the one that is looked for")
        self.close_window()

    def test_without_a_display(self):
        environment = {**self.session.environment, "DISPLAY": ":nowhere", "WAYLAND_DISPLAY": "nowhere"}
        done = subprocess.run([self.quilex], env=environment, capture_output=True, text=True, timeout=20, check=False)
        self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1))
        self.assertIn("there is no display", done.stderr)


class WindowOnWayland(unittest.TestCase):
    def test_it_opens_and_agrees(self):
        session = WaylandSession(BUILD, ("1280x800",))
        self.addCleanup(session.close)
        session.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        session.start_agent()
        window = session.start(str(session.programs_folder / "quilex"))
        tree = AccessibleSession(session).application("quilex")
        find(tree, "list item", "Aurora, 0:10, 1920 × 1080, playing on the desktop")
        find(tree, "push button", "Monitor 1: ")
        if folder := os.environ.get("QUILEX_SCREENSHOTS"):
            session.desktop.screenshot().save(f"{folder}/wayland.png")
        find(tree, "check box", "Mute").press()
        wait_for(lambda: session.settings().get("Mute") is True, "the setting")
        window.terminate()
        self.assertEqual(window.wait(timeout=20), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
