"""Journeys of the agent's end, which comes in time whatever hangs."""

import contextlib
import pathlib
import signal
import socket
import time
import unittest

from wallpaper_test import Journey

from service import Service
from session import WaylandSession, wait_for

TERMINATION = "com.dravo.quilex.mac.ter"


@contextlib.contextmanager
def stopped(process):
    process.send_signal(signal.SIGSTOP)
    try:
        yield
    finally:
        process.send_signal(signal.SIGCONT)


class EndingJourney(Journey):
    monitors = ("1280x720",)

    def setUp(self):
        self.begin(("moving", "file://" + self.moving), CurrentVideoSign="moving")
        self.bus = self.session.programs[0]
        self.log = self.session.hear()
        # Far more than is promised, for a machine that does other things too; the sanitizers take long at the end.
        program = self.session.agent_program.read_bytes()
        self.limit = 30 if b"__asan_init" in program or b"__tsan_init" in program else 8

    def play(self, **variables):
        self.session.start_agent(**variables)
        wait_for(self.session.moves, "a moving picture")

    def end(self):
        agent, self.session.agent = self.session.agent, None
        for how in (signal.SIGTERM, signal.SIGINT, signal.SIGTERM):
            agent.send_signal(how)
        try:
            self.assertEqual(agent.wait(timeout=self.limit), 0)
        finally:
            agent.kill()
        self.assertEqual(self.session.settings()["CurrentVideoSign"], "moving")

    def end_is_heard(self, times=1):
        """That many more ends have been notified."""
        self.session.post("now")
        wait_for(lambda: '"now"' in self.log.read_text(), "a notification")
        said = self.log.read_text()
        self.assertEqual(said.count(TERMINATION), times, said)
        self.log.write_text("")


class DisplayHangs(EndingJourney):
    def test_the_display_server_stops(self):
        self.play()
        with stopped(self.session.desktop.server):
            self.end()
        self.end_is_heard()

    def test_the_main_thread_hangs_with_settings_to_write(self):
        session = self.session
        session.settings_file.write_text("{}")
        lock = session.settings_file.with_name(session.settings_file.name + ".lock")
        lock.touch()
        fault = session.start_agent_on_gpu()
        wait_for(session.moves, "a moving picture")
        fault.write_text("hang")
        wait_for(lambda: not fault.exists(), "the hanging thread")
        lock.unlink(missing_ok=True)
        self.end()
        self.end_is_heard()


class WaylandHangs(DisplayHangs):
    make_session = WaylandSession


class ServicesHang(EndingJourney):
    def test_the_session_bus_stops(self):
        session = self.session
        self.play()
        with stopped(self.bus):
            self.end()
        self.end_is_heard()
        del session.environment["DBUS_SESSION_BUS_ADDRESS"]  # it is at its usual place
        with stopped(self.bus):
            self.play()
            self.assertEqual(session.errors().count("bus does not answer"), 1, session.errors())
            self.end()
            # During its start, as soon as the signal handler is installed.
            status = pathlib.Path(f"/proc/{session.start_agent().pid}/status")
            caught = lambda: int(status.read_text().split("SigCgt:")[1].split()[0], 16) >> (signal.SIGTERM - 1) & 1
            wait_for(caught, "the handler")
            self.end()
        self.end_is_heard(times=0)

    def test_the_system_bus_stops(self):
        self.session.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.session.start_bus("system")
        with stopped(self.session.programs[-1]):
            self.play()
            self.assertEqual(self.session.errors().count("bus does not answer"), 1, self.session.errors())
            self.end()
        self.end_is_heard()

    def test_the_network_hangs(self):
        service = Service(self.session)
        for mode in ("silent", "endless head"):
            service.misbehave(Service.GUIDE, mode)
            service.misbehave(Service.UPGRADE, mode)
            before = len(service.requests(Service.UPGRADE))
            self.play()
            wait_for(lambda: len(service.requests(Service.UPGRADE)) > before, "the request")
            self.end()
            self.end_is_heard()
        with socket.create_server(("127.0.0.1", 0)) as proxy:
            proxy.settimeout(20)
            # The proxy script's server never answers.
            script = "pac+http://127.0.0.1:%d/proxy.pac" % proxy.getsockname()[1]
            self.play(http_proxy=script, no_proxy="")
            asked, _ = proxy.accept()
            with asked:
                self.end()
        self.end_is_heard()


if __name__ == "__main__":
    unittest.main(verbosity=2)
