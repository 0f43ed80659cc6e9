"""Journeys in real desktops on X: the video is seen under icons that work.

The programs that show icons run with their window managers. A desktop whose programs are not installed is left out.
"""

import json
import pathlib
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
import Xlib.display  # noqa: E402
import Xlib.X  # noqa: E402
import Xlib.Xatom  # noqa: E402
from menu_test import Panel  # noqa: E402
from PIL import Image, ImageChops  # noqa: E402
from session import wait_for  # noqa: E402
from wallpaper_test import GREEN, Journey  # noqa: E402

FREE = (900, 500)  # a place on the first monitor without icons
MOST = 24  # how much a codec or a font changes a colour


def differences(one, other, most=MOST):
    """Where the pictures differ, as a mask."""
    bands = ImageChops.difference(one, other).split()
    return ImageChops.lighter(ImageChops.lighter(bands[0], bands[1]), bands[2]).point(lambda value: 255 * (value > most))


def share(mask, area=None):
    """How much of the area, which is a mask too, is in the mask."""
    within = ImageChops.multiply(mask, area) if area else mask
    return within.histogram()[255] / max(1, area.histogram()[255] if area else mask.width * mask.height)


class DesktopJourney(Journey):
    manager = desktop = ()

    def setUp(self):
        for program in (self.manager[0], self.desktop[0]):
            if not shutil.which(program):
                self.skipTest(program + " is not installed")

    def start_desktop(self):
        home = self.session.folder / "home"
        (home / "Desktop").mkdir(parents=True, exist_ok=True)
        self.session.environment["HOME"] = str(home)
        with open(self.session.folder / "desktop-log", "ab") as log:
            program = self.session.start(*self.desktop, stdout=log, stderr=log)
        # Not all of them end when they are asked to.
        self.addCleanup(program.kill)
        return program

    def end_desktop(self, program):
        program.kill()
        program.wait(timeout=20)
        self.session.programs.remove(program)

    def wait_until_still(self, seen_before=None):
        """The picture of a desktop that shows something else than before, when it does not change any more."""
        pictures = [self.session.desktop.screenshot()] * 8

        def still():
            pictures.append(self.session.desktop.screenshot())
            differs = seen_before is None or share(differences(pictures[-1], seen_before)) > 0
            return differs and all(share(differences(pictures[-1], each)) == 0 for each in pictures[-8:])

        wait_for(still, "a desktop that is ready")
        return pictures[-1]

    def find_icon(self):
        """Puts a folder on the desktop; keeps where its icon is, and how it looks there."""
        start = Image.new("RGB", self.session.desktop.screenshot().size)
        before = self.wait_until_still(start)
        (self.session.folder / "home/Desktop/a folder").mkdir()
        self.with_icon = self.wait_until_still(before)
        self.icon = differences(self.with_icon, before)
        left, top, right, bottom = self.icon.getbbox()
        self.assertTrue(20 <= right - left <= 200 and 20 <= bottom - top <= 200, "only an icon is new")
        self.middle = ((left + right) // 2, (top + bottom) // 2)

    def wait_for_desktop(self, what, shows_icon=True):
        """Waits until each monitor shows the video, and in it the icon."""
        monitors = ((400, 0, 1280, 720), (1280, 0, 2080, 600))
        seen = {}

        def is_right():
            picture = self.session.desktop.screenshot()
            green = differences(picture, Image.new("RGB", picture.size, GREEN))
            seen["video"] = [1 - share(green.crop(monitor)) for monitor in monitors]
            seen["icon"] = 1 - share(differences(picture, self.with_icon), self.icon)
            seen["video over the icon"] = 1 - share(green, self.icon)
            icon_is_right = seen["icon"] > 0.97 if shows_icon else seen["video over the icon"] > 0.999
            return min(seen["video"]) > 0.999 and icon_is_right

        def report():
            self.session.desktop.screenshot().save("/tmp/quilex-journey.png")
            return f"{what}: {seen}; see /tmp/quilex-journey.png"

        wait_for(is_right, report)

    def placement(self):
        """Where the wallpaper lies, and what the person can do about it, as the doctor says it."""
        report = json.loads(self.session.run(self.session.programs_folder / "quilex", "doctor", "--json"))
        return report["desktop"].get("placement", "no agent yet"), str(report["odd"])

    def click(self, place, button=1):
        self.session.run("xdotool", "mousemove", *map(str, place), "click", str(button))

    def check_input(self):
        """Presses reach the desktop, and the agent counts those on its own picture."""
        session = self.session
        first_output = session.output()
        self.click(self.middle)
        changed = lambda: share(differences(session.desktop.screenshot(), self.with_icon), self.icon) > 0.05
        wait_for(changed, "a chosen icon")
        self.assertEqual(session.output(), first_output)
        self.click(FREE)
        wait_for(lambda: session.output() == first_output + "mouse down\ntapVideoPlayerViewAction\n", "the press")
        self.wait_for_desktop("the icon is not chosen any more")
        self.click(FREE, 3)
        left, top = FREE[0] - 300, FREE[1] - 400
        near = lambda: session.desktop.screenshot().crop((left, top, left + 600, top + 600))
        green = Image.new("RGB", (600, 600), GREEN)
        wait_for(lambda: 0.05 < share(differences(near(), green)) < 0.9, "the desktop's own menu")
        session.run("xdotool", "key", "Escape")
        self.wait_for_desktop("the menu is closed")

    def check_events(self, desktop):
        """Whatever restarts, comes and goes, the picture is right again."""
        session = self.session
        panel = Panel(session)
        for shows_icon in (False, True):
            panel.click("Hide Desktop Icon")
            self.wait_for_desktop("icons hidden or shown", shows_icon)
        self.end_desktop(desktop)
        everywhere = {(20, 20): GREEN, self.middle: GREEN, FREE: GREEN, (1680, 300): GREEN}
        session.wait_for_pixels(everywhere, "no program shows icons")
        self.start_desktop()
        self.wait_for_desktop("the desktop is started after the agent")
        session.start(*self.manager, "--replace")
        self.wait_for_desktop("another window manager")
        for shown in ("on", "off"):
            session.run("wmctrl", "-k", shown)
            self.wait_for_desktop("the desktop is shown: " + shown)
        session.desktop.set_monitors(["1280x720", None])
        session.wait_for_pixels({FREE: GREEN, (20, 650): GREEN}, "one monitor")
        session.desktop.set_monitors(["1280x720", "800x600"])
        self.wait_for_desktop("two monitors again")

    def journey(self):
        session = self.begin(("green", self.green), manager=" ".join(self.manager))
        desktop = self.start_desktop()
        self.find_icon()
        session.start_agent()
        self.wait_for_desktop("the video under the icons")
        self.assertIn("above the desktop, whose icons are left out", self.placement()[0])
        self.check_input()
        self.check_events(desktop)
        session.end_agent()
        wait_for(lambda: share(differences(session.desktop.screenshot(), self.with_icon)) < 0.02, "the desktop as it was")


class Xfce(DesktopJourney):
    manager = ("xfwm4", "--compositor=off")
    desktop = ("xfdesktop",)

    def test_xfce(self):
        self.journey()


class Mate(DesktopJourney):
    manager = ("marco", "--no-composite")
    desktop = ("caja", "--force-desktop", "--no-default-window")

    def test_mate(self):
        self.journey()


class Lxqt(DesktopJourney):
    manager = ("openbox",)
    desktop = ("pcmanfm-qt", "--desktop", "--profile=lxqt")

    background = "WallpaperMode=none\nBgColor=#304a6e"

    def start_desktop(self):
        file = self.session.folder / "config/pcmanfm-qt/lxqt/settings.conf"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"[System]\nFallbackIconThemeName=Adwaita\n[Desktop]\n{self.background}\n")
        return super().start_desktop()

    def test_lxqt(self):
        self.journey()

    def test_icons_that_cannot_be_told_from_the_background(self):
        session = self.begin(("green", self.green), manager="openbox")
        picture = session.folder / "picture.png"
        Image.radial_gradient("L").convert("RGB").save(picture)
        self.background = f"WallpaperMode=stretch\nWallpaper={picture}"
        desktop = self.start_desktop()
        hidden = self.wait_until_still(Image.new("RGB", session.desktop.screenshot().size))
        session.start_agent()
        panel = Panel(session)
        wait_for(lambda: "which hides it" in self.placement()[0], lambda: str(self.placement()))
        self.assertIn("a background of a single colour", self.placement()[1])
        # This desktop has a window on the first monitor only.
        first = lambda picture: picture.crop((0, 0, 1280, 720))
        is_hidden = lambda: share(differences(first(session.desktop.screenshot()), first(hidden))) < 0.01
        wait_for(is_hidden, "the desktop's picture")
        panel.click("Hide Desktop Icon")
        session.wait_for_pixels({FREE: GREEN, (20, 20): GREEN, (1680, 300): GREEN}, "the video in front")
        panel.click("Hide Desktop Icon")
        # What the doctor says helps.
        self.end_desktop(desktop)
        self.background = Lxqt.background
        self.start_desktop()
        wait_for(lambda: "icons are left out" in self.placement()[0], lambda: str(self.placement()))
        session.wait_for_pixels({FREE: GREEN, (1680, 300): GREEN}, "the video under the icons")


class TransparentDesktop(Journey):
    """A desktop as GNOME's and Cinnamon's: icons in a window that is transparent around them, under a compositor."""

    ICON, COLOUR = (40, 40, 64, 64), (48, 80, 192)

    def show_icon(self):
        display = Xlib.display.Display(self.session.desktop.name)
        self.addCleanup(display.close)
        screen = display.screen()
        depth = next(each for each in screen.allowed_depths if each.depth == 32)
        visual = next(each.visual_id for each in depth.visuals if each.visual_class == Xlib.X.TrueColor)
        colours = {"colormap": screen.root.create_colormap(visual, Xlib.X.AllocNone), "background_pixel": 0, "border_pixel": 0}
        window = screen.root.create_window(0, 0, 1280, 720, 0, 32, Xlib.X.InputOutput, visual, **colours)
        desktop = [display.intern_atom("_NET_WM_WINDOW_TYPE_DESKTOP")]
        window.change_property(display.intern_atom("_NET_WM_WINDOW_TYPE"), Xlib.Xatom.ATOM, 32, desktop)
        red, green, blue = self.COLOUR
        pen = window.create_gc(foreground=255 << 24 | red << 16 | green << 8 | blue)
        window.change_attributes(event_mask=Xlib.X.ExposureMask)
        window.map()
        while display.next_event().type != Xlib.X.Expose:
            pass
        window.fill_rectangle(pen, *self.ICON)
        display.sync()
        return window

    def test_the_wallpaper_lies_below(self):
        session = self.begin(("green", self.green), manager="openbox")
        session.start("picom", "--config", "/dev/null", "--backend", "xrender", stderr=subprocess.DEVNULL)
        window = self.show_icon()
        icon, beside = (70, 70), {(20, 20): GREEN, (150, 150): GREEN, FREE: GREEN, (1680, 300): GREEN}
        session.start_agent()
        panel = Panel(session)
        session.wait_for_pixels({icon: self.COLOUR, **beside}, "the video below the icon")
        panel.click("Hide Desktop Icon")
        session.wait_for_pixels({icon: GREEN, **beside}, "the video in front of the icon")
        panel.click("Hide Desktop Icon")
        session.wait_for_pixels({icon: self.COLOUR, **beside}, "the icon again")
        window.destroy()
        window.display.flush()
        session.wait_for_pixels({icon: GREEN, **beside}, "no icons")
        self.show_icon()
        session.wait_for_pixels({icon: self.COLOUR, **beside}, "an icon that came after the wallpaper")


if __name__ == "__main__":
    unittest.main(verbosity=2)
