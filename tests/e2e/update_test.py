"""Journeys of the update check: the service's offer, what the user sees, and what the button opens."""

import subprocess
import unittest

from menu_test import Panel
from wallpaper_test import Journey

from service import Service
from session import wait_for

OFFER, ALERT = "New version", "Softwareaktualisierung"
CHECK = "Check for Updates..."


class Updates(Journey):
    monitors = ("1280x720",)

    def begin_with_service(self, manager=None, **answer):
        session = self.begin(("moving", self.moving), manager=manager)
        self.service = Service(session)
        self.service.answer(Service.UPGRADE, **answer)
        programs = session.folder / "programs"
        programs.mkdir()
        browser = programs / "xdg-open"
        browser.write_text(f'#!/bin/sh\necho "$@" $QT_QPA_PLATFORM >> {session.folder}/opened\n')
        browser.chmod(0o755)
        session.environment["PATH"] = f"{programs}:{session.environment['PATH']}"
        return session

    def opened(self):
        file = self.session.folder / "opened"
        return file.read_text().split() if file.exists() else []

    def named(self, name):
        """The ids of the agent's visible windows with that title."""
        return self.session.run("xdotool", "search", "--onlyvisible", "--name", f"^{name}").split()

    def wait_for_keyboard(self, name):
        """Waits until the only window with that title has the keyboard focus, and returns its id."""
        def with_keyboard():
            found = self.named(name)
            return len(found) == 1 and self.session.run("xdotool", "getactivewindow").split() == found and found[0]
        return wait_for(with_keyboard, f"the window {name} in front")

    def wait_for_requests(self, count):
        wait_for(lambda: len(self.service.requests(Service.UPGRADE)) == count, "the update request")

    def press(self, *keys):
        self.session.run("xdotool", "key", *keys)

    def test_an_offer_comes_to_the_front_and_its_button_opens_the_address(self):
        for manager in ("openbox", "xfwm4"):
            session = self.begin_with_service(manager, url="https://quilex.invalid/get?v=9&x=%20", ver="9.0")
            other = session.start("xev", "-name", "other", "-geometry", "900x600+100+50", stdout=subprocess.DEVNULL)
            wait_for(lambda: self.named("other"), "another program's window")
            session.start_agent()
            offer = self.wait_for_keyboard(OFFER)
            left, top, width, height = session.geometry(offer)
            session.run("xdotool", "mousemove", str(left + width // 2), str(top + height - 46), "click", "1")
            wait_for(lambda: self.opened() == ["https://quilex.invalid/get?v=9&x=%20"], "the browser")
            wait_for(lambda: not self.named(OFFER), "the closed panel")

            # Two newer offers leave one panel, which takes the keyboard focus from another window.
            panel = Panel(session)
            session.run("xdotool", "search", "--name", "^other", "windowactivate")
            panel.click(CHECK)
            first = self.wait_for_keyboard(OFFER)
            session.run("xdotool", "search", "--name", "^other", "windowactivate")
            panel.click(CHECK)
            self.wait_for_requests(3)
            wait_for(lambda: self.named(OFFER) not in ([], [first]), "the newer offer")
            self.wait_for_keyboard(OFFER)
            self.press("Escape")
            wait_for(lambda: not self.named(OFFER), "the closed panel")
            self.assertEqual(len(self.opened()), 1)
            other.terminate()
            self.assertEqual(session.end_agent(), 0)
            self.assertEqual(session.errors(), "")
            session.close()

    def test_without_news_only_who_asks_is_told(self):
        session = self.begin_with_service("openbox", ver="1.0.0.1")
        session.start_agent(LANGUAGE="de")
        self.wait_for_requests(1)
        wait_for(lambda: self.service.requests(Service.GUIDE), "the guide request, two seconds later")
        self.assertEqual(len(session.windows()), 1, "the wallpaper alone")
        panel = Panel(session)
        panel.wait_for_shape("Hauptfenster, 1.0.0(1)!, Nach Updates suchen …, -, Videohintergrund schließen, Anhalten")
        panel.click("Nach Updates suchen …")
        self.wait_for_keyboard(ALERT)
        self.press("Return")
        wait_for(lambda: not self.named(ALERT), "the closed alert")
        self.assertEqual(str(panel.property("Title")), "QuilexHelper")
        self.assertEqual(session.end_agent(), 0)
        self.assertEqual(session.errors(), "")


if __name__ == "__main__":
    unittest.main(verbosity=2)
