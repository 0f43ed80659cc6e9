"""Journeys of the status menu and of the agent's life: what panel, wallpaper, settings and login manager see."""

import os
import pathlib
import subprocess
import sys
import time
import unittest

import dbus.bus
import dbus.lowlevel
from wallpaper_test import BLACK, COMBO, GREEN, LONELY, MIRROR, RED, WHITE, Journey

from session import make_clip, wait_for

ITEM, MENU = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu"
WATCHER, MOCK = "org.kde.StatusNotifierWatcher", "org.freedesktop.DBus.Mock"
HOST = pathlib.Path(__file__).with_name("status_host.py")


class Panel:
    """A host for status items, like a panel, and what it sees of the agent's item."""

    def __init__(self, session):
        self.session = session
        self.host = None
        self.bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.start()

    def start(self):
        self.host = self.session.start("/usr/bin/python3", "-m", "dbusmock", "--template", str(HOST),
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: self.bus.name_has_owner(WATCHER), "the host of status items")
        self.mock = dbus.Interface(self.bus.get_object(WATCHER, "/StatusNotifierWatcher"), MOCK)

    def stop(self):
        self.host.terminate()
        self.host.wait(timeout=20)
        self.session.programs.remove(self.host)
        wait_for(lambda: not self.bus.name_has_owner(WATCHER), "the end of the host")

    def item(self):
        """The agent's status item, once it has registered itself."""
        calls = wait_for(lambda: self.mock.GetMethodCalls("RegisterStatusNotifierItem"), "the status item")
        name = str(calls[-1][1][0]).split("/")[0]
        return self.bus.get_object(name, "/StatusNotifierItem")

    def property(self, name):
        return self.item().Get(ITEM, name, dbus_interface=dbus.PROPERTIES_IFACE)

    def menu(self):
        return dbus.Interface(self.bus.get_object(self.item().bus_name, self.property("Menu")), MENU)

    def layout(self):
        return self.menu().GetLayout(0, -1, [])[1]

    def shape(self, item=None):
        """"-" for a separator; else the label, with "*" if marked and "!" if disabled, and the submenu."""
        parts = []
        for _, properties, children in (item or self.layout())[2]:
            text = "-" if properties.get("type") == "separator" else str(properties["label"]).replace("_", "")
            text += "*" if properties.get("toggle-state", 0) == 1 else ""
            text += "" if properties.get("enabled", True) else "!"
            text += " [" + self.shape((0, {}, children)) + "]" if children else ""
            parts.append(text)
        return ", ".join(parts)

    def find(self, *path):
        item = self.layout()
        for label in path:
            item = next(each for each in item[2] if str(each[1].get("label", "")).replace("_", "") == label)
        return item

    def click(self, *path):
        self.menu().Event(self.find(*path)[0], "clicked", dbus.Int32(0), dbus.UInt32(0))

    def wait_for_shape(self, part):
        wait_for(lambda: part in self.shape(), lambda: f"{part} is not in {self.shape()}")


class StatusMenu(Journey):
    def test_menu_settings_and_wallpaper_agree(self):
        session = self.begin(("halves", self.halves))
        prepare_for_sleep = session.start_login_manager()
        session.start_agent()
        wait_for(lambda: len(session.windows()) == 2, "the wallpaper")
        panel = Panel(session)
        entry = session.folder / "data/applications/com.dravo.quilex.macOS.desktop"
        entry.parent.mkdir(parents=True)
        entry.write_text(f"[Desktop Entry]\nType=Application\nName=Main\nExec=touch {session.folder}/launched\n")
        screens = "Screen [Integration*, Mirror, Single [1*, 2]], -, Quit"
        panel.wait_for_shape("Main Window, 1.0.0(1)!, Check for Updates..., -, Close Video Wallpaper, Pause, "
                             "Hide Desktop Icon, Mute, -, " + screens)
        self.assertTrue(panel.property("IconName") or panel.property("IconPixmap"))
        self.assertEqual(panel.find("Quit")[1]["shortcut"], [["Control", "Q"]])

        panel.click("Screen", "Mirror")
        session.wait_for_pixels(MIRROR, "mirror, chosen from the menu")
        panel.wait_for_shape("Screen [Integration, Mirror*, Single [1*, 2]]")
        panel.click("Screen", "Single", "2")
        session.wait_for_pixels({**LONELY, (640, 360): BLACK}, "the second monitor, chosen from the menu")
        session.set_value("MonitorArrange", "0")
        session.wait_for_pixels(COMBO, "one picture, set by another program")
        panel.wait_for_shape("Screen [Integration*, Mirror, Single [1, 2*]]")

        # In front of another program's icons, then behind them, and kept there when something may have changed that.
        icons = session.start_probe(self.green)
        covered = {(640, 360): GREEN, (1680, 300): GREEN}
        desktop = ("xprop", "-root", "-f", "_NET_CURRENT_DESKTOP", "32c", "-set", "_NET_CURRENT_DESKTOP")
        hide = lambda: panel.click("Hide Desktop Icon")
        for change in (hide, lambda: session.run(*desktop, "1"), lambda: prepare_for_sleep(False)):
            icons.order("front")
            session.wait_for_pixels(covered, "the icons")
            change()
            session.wait_for_pixels(COMBO, "the wallpaper in front of the icons")
        panel.wait_for_shape("Hide Desktop Icon*, Mute,")
        hide()
        session.wait_for_pixels(covered, "the icons in front of the wallpaper")
        self.assertEqual(icons.end(), 0)

        # A left click on the item.
        panel.item().Activate(700, 300, dbus_interface=ITEM)
        wait_for(lambda: len(session.windows()) == 3, "the menu")
        session.run("xdotool", "key", "Escape")
        wait_for(lambda: len(session.windows()) == 2, "the closed menu")

        panel.click("Mute")
        panel.click("Pause")
        panel.wait_for_shape("Play, Hide Desktop Icon, Mute*")
        panel.click("Play")
        session.set_value("Mute", "false")
        panel.wait_for_shape("Pause, Hide Desktop Icon, Mute,")
        panel.click("Close Video Wallpaper")
        panel.wait_for_shape("Open Video Wallpaper, Pause!, Hide Desktop Icon!")
        self.windows_cover()
        session.set_value("IsOpenPlayer", "true")
        session.wait_for_pixels(COMBO, "the wallpaper, opened by another program")
        panel.wait_for_shape("Close Video Wallpaper, Pause, Hide Desktop Icon,")
        session.desktop.set_monitors(["1280x720", None])
        panel.wait_for_shape("Mute, -, -, Quit")
        session.desktop.set_monitors(self.monitors)
        panel.wait_for_shape(screens.replace("1*, 2", "1, 2*"))
        panel.click("Main Window")
        wait_for((session.folder / "launched").exists, "the main application")

        # When a panel ends the agent goes on, and a new panel shows the item and its menu again.
        panel.stop()
        panel.start()
        panel.click("Screen", "Mirror")
        session.wait_for_pixels(MIRROR, "mirror, chosen from the menu of the new panel")
        panel.click("Quit")
        self.assertEqual(session.agent.wait(timeout=20), 0)
        session.agent = None


class Life(Journey):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        graph = "color=c=0xC02020,drawbox=w=640:h=360:c=0x20A020:t=fill:enable=gte(t\\,1)"
        cls.change = make_clip(pathlib.Path(cls.clips.name) / "change.mp4", graph, seconds=30)

    def test_sleep_screens_and_cover(self):
        session = self.begin(("moving", "file://" + self.moving), MonitorArrange=1)
        prepare_for_sleep = session.start_login_manager()
        session.start_agent()
        both = [(0, 0, 1280, 720), (1280, 0, 800, 600)]
        self.wait_to_move(*both)
        # The first request to the web service opens the descriptors of its thread.
        wait_for(lambda: "uuid" in session.settings(), "the first request")
        handles = lambda: len(os.listdir(f"/proc/{session.agent.pid}/fd"))
        before = handles()

        for _ in range(3):
            prepare_for_sleep(True)
            prepare_for_sleep(False)
            self.wait_to_move(*both)
            session.desktop.set_monitors(["1280x720", None])
            self.windows_cover((0, 0, 1280, 720))
            session.desktop.set_monitors(self.monitors)
            self.windows_cover(*both)
            self.wait_to_move(*both)
        session.run("xrandr", "--fb", "2400x1000")
        self.wait_to_move(*both)
        # Each of the two pictures takes a second buffer once the display server has fallen behind, and the request may
        # have only begun.
        wait_for(lambda: handles() <= before + 4, "no more open files than before")

    def test_being_covered_and_seen_again_starts_the_video_anew(self):
        session = self.begin(("change", "file://" + self.change))
        session.start_agent()
        session.wait_for_pixels({(640, 360): GREEN}, "the second colour")
        cover = session.start("xev", "-geometry", "2080x720+0+0", stdout=subprocess.DEVNULL)
        session.wait_for_pixels({(640, 360): WHITE, (1680, 300): WHITE}, "a window over everything")
        cover.terminate()
        session.wait_for_pixels({(640, 360): RED}, "the first colour")


class OlderTray(Journey):
    monitors = ("1280x720",)

    def test_without_a_bus_the_agent_plays_and_the_older_tray_has_the_item(self):
        session = self.begin(("moving", "file://" + self.moving))
        session.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent"
        session.start_agent()
        wait_for(session.moves, "a moving picture")
        self.assertEqual(session.errors().count("no D-Bus session bus"), 1)
        tray = ["--edge", "top", "--align", "right", "--width", "10", "--height", "24", "--SetDockType", "true"]
        session.start("trayer", *tray, stderr=subprocess.DEVNULL)
        dark = lambda pixel: sum(pixel) < 300
        icon = lambda: [*session.desktop.screenshot().crop((1256, 0, 1280, 24)).getdata()]
        wait_for(lambda: 20 < sum(dark(pixel) for pixel in icon()) < 300, "the item in the tray")
        for button in ("1", "3"):
            session.run("xdotool", "mousemove", "1268", "12", "click", button)
            session.wait_for_pixels({(1240, 60): WHITE, (1240, 100): WHITE}, "the open menu")
            if button == "1":
                session.run("xdotool", "key", "Escape")
                wait_for(lambda: session.pixels((1240, 60), (1240, 100)) != [WHITE, WHITE], "the closed menu")
        # Chooses its third enabled item.
        session.run("xdotool", "key", "Down", "Down", "Down", "Return")
        wait_for(lambda: not session.settings()["IsOpenPlayer"], "the wallpaper closed from the menu")


if __name__ == "__main__":
    unittest.main(verbosity=2)
