"""Journeys of the wallpaper on a Wayland desktop with a layer shell: what a person sees."""

import unittest

from menu_test import COMBO, MIRROR, SECOND
from wallpaper_test import BLUE, RED, WHITE, Journey

from session import wait_for


# The compositor's own background.
BARE = (63, 63, 63)


class Wayland(Journey):
    kind = "wayland"

    def play_halves(self, **settings):
        session = self.begin(("halves", "file://" + self.halves.replace(" ", "%20")), **settings)
        session.start_agent()
        return session

    def test_layouts_settings_and_the_end_of_the_compositor(self):
        session = self.play_halves()
        session.wait_for_pixels(COMBO, "one picture across the monitors")
        session.write_settings(MonitorArrange=1)
        session.wait_for_pixels(MIRROR, "the same picture on each monitor")
        session.write_settings(ScreenIndex=1)
        session.wait_for_pixels({**SECOND, (640, 360): BARE}, "the picture on the second monitor only")
        session.write_settings(ScreenIndex=0, IsOpenPlayer=False)
        session.wait_for_pixels(dict.fromkeys(MIRROR, BARE), "no wallpaper")
        session.write_settings(IsOpenPlayer=True, isPlaying=True)
        session.wait_for_pixels({(640, 360): WHITE}, "the wallpaper")
        # In front of other programs' desktops, and back.
        for hides in (True, False):
            session.write_settings(IsHideIcon=hides)
            session.wait_for_pixels({(640, 360): WHITE}, "the wallpaper")
        session.desktop.server.kill()
        self.assertEqual(session.agent.wait(timeout=20), 1)
        self.assertRegex(session.errors(), "Wayland (compositor is gone|connection broke)")
        session.agent = None

    def test_monitors_come_and_change(self):
        session = self.begin(("halves", "file://" + self.halves.replace(" ", "%20")), MonitorArrange=1)
        session.start_agent()
        session.wait_for_pixels(MIRROR, "the same picture on each monitor")
        session.desktop.set_monitors(["1280x720", "800x600", "640x480"])
        third = {(2080 + 220, 240): WHITE, (2080 + 60, 240): RED, (2080 + 580, 240): BLUE}
        session.wait_for_pixels({**MIRROR, **third}, "the picture on a monitor that came")
        last = session.desktop.outputs[2]
        for change, width, height in (("scale 2", 320, 240), ("scale 1.5", 427, 320), ("scale 1 transform 90", 480, 640)):
            session.desktop.message("output", last, *change.split())
            left, middle = width // 12, height // 2
            expected = {(2080 + left, middle): RED, (2080 + width // 2, middle): WHITE}
            expected |= {(2080 + width - left, middle): BLUE}
            session.wait_for_pixels({**MIRROR, **expected}, change)
            self.assertLessEqual(abs(session.desktop.screenshot().width - 2080 - width), 1, change)
        self.assertEqual(session.end_agent(), 0)

    def test_a_moving_picture_moves(self):
        session = self.begin(("moving", "file://" + self.moving), MonitorArrange=1)
        session.start_agent()
        wait_for(lambda: session.moves((0, 0, 1280, 720)), "a moving picture on the first monitor")
        wait_for(lambda: session.moves((1280, 0, 2080, 600)), "a moving picture on the second")
        session.write_settings(isPlaying=False)
        wait_for(lambda: not session.moves(), "a picture that stands")
        self.assertEqual(session.end_agent(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
