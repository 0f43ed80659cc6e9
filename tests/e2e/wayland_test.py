"""Journeys of the wallpaper on a Wayland desktop: those of every desktop, and changes of outputs."""

import json
import os
import pathlib
import signal
import unittest

from PIL import ImageStat

from session import WaylandSession, make_clip, wait_for
from wallpaper_test import BLACK, BLUE, BUILD, GREEN, RED, WHITE, Journey, Wallpaper
from wayland_wire import Mouse, Relay


class WaylandWallpaper(Wallpaper):
    make_session = WaylandSession


class WaylandOutputs(Journey):
    make_session = WaylandSession

    def moves(self, *outputs):
        for index in outputs:
            first = self.session.desktop.screenshot(index).tobytes()
            wait_for(lambda: self.session.desktop.screenshot(index).tobytes() != first, f"a moving picture on output {index}")

    def handles(self):
        """The agent's open files and shared memory segments."""
        process = pathlib.Path(f"/proc/{self.session.agent.pid}")
        return len(os.listdir(process / "fd")), (process / "maps").read_text().count("quilex-picture")

    def test_scale_and_rotation(self):
        rows = ("halves", self.halves), ("stripes", self.stripes)
        session = self.begin(*rows, MonitorArrange=1, CurrentVideoSign="halves")
        session.start_agent()
        upright = {(300, 360): RED, (640, 360): WHITE, (1000, 360): BLUE, (490, 210): WHITE, (470, 360): RED}
        session.wait_for_pixels(upright, "the picture at scale 1", 0)
        for scale, place in (("2", (0, 0, 640, 360)), ("1.5", (0, 0, 853, 480)), ("1", (0, 0, 1280, 720))):
            session.desktop.configure(0, f"scale {scale}")
            wait_for(lambda: place in session.desktop.outputs().values(), f"scale {scale}")
            session.wait_for_pixels(upright, f"the picture at scale {scale}", 0)
        turned = {(360, 640): WHITE, (40, 100): RED, (680, 100): BLUE, (90, 370): WHITE, (60, 640): RED, (660, 640): BLUE}
        turns = ("90", turned), ("180", upright), ("270", turned), ("flipped", upright), ("flipped-90", turned)
        for transform, picture in (*turns, ("flipped-180", upright), ("flipped-270", turned), ("normal", upright)):
            session.desktop.configure(0, f"transform {transform}")
            session.wait_for_pixels(picture, f"the picture on a monitor turned by {transform}", 0)
            session.desktop.reload()
            session.wait_for_pixels(picture, "the picture after the compositor read its configuration again", 0)

        # One picture of 1440x600 across outputs of different scales.
        session.desktop.configure(0, "scale 2")
        session.desktop.configure(1, "position 640 0")
        session.write_settings(MonitorArrange=0)
        session.wait_for_pixels({(600, 400): RED, (1200, 400): WHITE, (1200, 200): RED, (1260, 260): WHITE}, "the left part", 0)
        session.wait_for_pixels({(60, 200): WHITE, (310, 200): BLUE, (10, 100): RED, (150, 100): BLUE}, "the right part", 1)

        # Drawn for the pixels of the display, not enlarged.
        contrast = lambda: ImageStat.Stat(session.desktop.screenshot(0).convert("L").crop((200, 200, 600, 500))).stddev[0]
        for renderer in ("cpu", "gpu"):
            self.assertEqual(session.end_agent(), 0)
            session.write_settings(MonitorArrange=1, CurrentVideoSign="stripes")
            session.start_agent(QUILEX_RENDERER=renderer, LD_PRELOAD=BUILD + "/lib/keep_modules.so")
            session.desktop.set_monitors(["1280x720"])
            session.desktop.configure(0, "scale 2")
            wait_for(lambda: contrast() > 110, "each pixel of the video at scale 2")
            session.desktop.set_monitors(["1920x1080"])
            session.desktop.configure(0, "scale 1.5")
            wait_for(lambda: contrast() < 90, "a video that is enlarged")
            session.agent.send_signal(signal.SIGSTOP)  # so that it hears of mode and scale in one turn
            session.desktop.set_monitors(["1280x720"])
            session.agent.send_signal(signal.SIGCONT)
            columns = {(x, 200): WHITE if x % 2 else BLACK for x in range(600, 612)}
            session.wait_for_pixels(columns, "each pixel of the video in a mode that fills the same place", 0)

    def test_outputs_switched_off_and_plugged_in_and_out(self):
        rows = ("moving", self.moving), ("green", self.green)
        session = self.begin(*rows, MonitorArrange=1, CurrentVideoSign="moving")
        session.start_agent()
        self.moves(0, 1)
        session.desktop.set_lit(0, False)
        self.moves(1)
        session.write_settings(CurrentVideoSign="green")
        session.wait_for_pixels({(400, 300): GREEN}, "the other video where someone can see it", 1)
        session.desktop.set_lit(0, True)
        session.wait_for_pixels({(640, 360): GREEN, (1, 1): GREEN}, "the other video on the output that is lit again", 0)

        seen = []
        for _ in range(20):
            session.desktop.unplug(1)
            session.desktop.set_monitors(self.monitors)
            session.wait_for_pixels({(1, 1): GREEN, (799, 599): GREEN}, "the video on the output that came", 1)
            seen.append(self.handles())
        # A compositor that falls behind takes one more buffer of a picture.
        bound = tuple(count + 2 for count in max(seen[:10]))
        self.assertLessEqual(max(seen[10:]), bound, "no more files and memory than before")
        session.desktop.set_monitors([None, None])
        session.write_settings(CurrentVideoSign="moving")
        session.desktop.set_monitors(["800x600", "1280x720"])
        self.moves(0, 1)

        session.write_settings(IsOpenPlayer=False)
        wait_for(lambda: not session.windows(), "a closed wallpaper")
        session.desktop.set_monitors(self.monitors)
        session.write_settings(IsOpenPlayer=True)
        self.moves(0, 1)

    def test_the_video_starts_again_when_all_is_covered_and_seen_again(self):
        place = pathlib.Path(self.clips.name) / "replaced.mp4"
        hexadecimal = [bytes(colour).hex() for colour in (GREEN, RED, BLUE)]
        colours = [make_clip(place.with_suffix(f".{each}.mp4"), f"color=c=0x{each}", 60) for each in hexadecimal]
        os.rename(colours[0], place)
        session = self.begin(("replaced", f"file://{place}"), MonitorArrange=1)
        session.start_agent()
        session.wait_for_pixels({(640, 360): GREEN}, "the video", 0)
        files = lambda: [os.readlink(each) for each in pathlib.Path(f"/proc/{session.agent.pid}/fd").iterdir()]
        os.rename(colours[1], place)
        for index in (0, 1):
            session.desktop.set_lit(index, False)
        wait_for(lambda: str(place) in files(), "what is at the video's place now")
        os.rename(colours[2], place)
        session.desktop.set_lit(1, True)
        session.wait_for_pixels({(400, 300): BLUE}, "what is at the video's place at last", 1)

    def test_a_surface_that_the_compositor_closes(self):
        session = self.begin(("moving", self.moving), MonitorArrange=1)
        relay = Relay(session.folder, session.desktop.name)
        session.start_agent(WAYLAND_DISPLAY=relay.address)
        self.moves(0, 1)
        relay.closing.append(relay.opened[0])
        wait_for(lambda: len(relay.opened) == 3, "another surface in its place")
        wait_for(lambda: len(session.windows()) == 2, "a picture on both outputs")
        self.moves(0, 1)
        self.assertEqual((session.end_agent(), len(relay.opened)), (0, 3))

    def test_a_surface_that_is_closed_before_egl_can_use_it(self):
        session = self.begin(("moving", "file://" + self.moving), MonitorArrange=1)
        relay = Relay(session.folder, session.desktop.name)
        fault = session.start_agent_on_gpu("surface", WAYLAND_DISPLAY=relay.address)
        wait_for(lambda: len(relay.opened) == 2 and session.errors().count("no surface") > 2, "the failures")
        relay.closing.append(relay.opened[0])
        session.desktop.configure(1, "scale 2")  # an event that the relay can add its own to
        wait_for(lambda: len(relay.opened) == 3, "another surface in its place")
        fault.unlink()
        self.moves(0, 1)

    def test_the_compositor_goes_away(self):
        session = self.begin(("green", self.green))
        heard = session.hear()
        session.start_agent()
        session.wait_for_pixels({(640, 360): GREEN}, "the wallpaper", 0)
        session.desktop.server.send_signal(signal.SIGKILL)
        self.assertEqual(session.agent.wait(timeout=20), 1)
        session.agent = None
        self.assertEqual(session.errors(), "quilexhelper: the Wayland compositor is gone\n")
        wait_for(lambda: "com.dravo.quilex.mac.ter" in heard.read_text(), "the notification")

    def show_desktop(self):
        icons = self.session.start_probe(self.short)
        icons.order("back")
        return lambda: self.assertEqual(icons.end(), 0)

    def test_order_and_presses(self):
        session = self.begin(("green", self.green))
        session.environment["XDG_CURRENT_DESKTOP"] = "LXQt:wlroots"  # whose icons are in the background layer
        self.check_order([("front", GREEN), ("out", RED), ("front", GREEN)])
        session.environment["XDG_CURRENT_DESKTOP"] = "sway"
        mouse = Mouse(session.desktop.name)
        self.addCleanup(mouse.connection.close)
        session.start_agent()
        session.wait_for_pixels({(400, 300): GREEN}, "the wallpaper", 1)
        # The wallpaper only handles the primary button.
        for button in ("right", "left"):
            mouse.click(1600, 300, 2080, 720, button)
        wait_for(lambda: "tapVideoPlayerViewAction\n" in session.output(), "the click")
        lines = ["mouse down", "tapVideoPlayerViewAction"]
        self.assertEqual(session.output().splitlines()[1:], lines)

        # Where a program draws icons in another surface, the presses are for that one.
        self.assertEqual(session.end_agent(), 0)
        session.start_agent(XDG_CURRENT_DESKTOP="XFCE")
        session.wait_for_pixels({(400, 300): GREEN}, "the wallpaper", 1)
        mouse.click(1600, 300, 2080, 720, "left")
        session.desktop.unplug(0)  # an event that comes after the press
        report = lambda: json.loads(session.run(session.programs_folder / "quilex", "doctor", "--json"))
        wait_for(lambda: len(report()["displays"]) == 1, "the agent to have heard of the unplugged output")
        self.assertRegex(report()["desktop"]["placement"], "^background layer")
        self.assertEqual([line for line in session.output().splitlines() if line in lines], lines)


if __name__ == "__main__":
    unittest.main(verbosity=2)
