"""Journeys of the agent and the web service: the requests, their times, and the effect of a bad service."""

import json
import time
import unittest

from wallpaper_test import Journey

from service import Service, make_bundle
from session import wait_for


def zone_just_before_midnight(seconds):
    """A time zone in which it is midnight in that many seconds."""
    offset = (int(time.time()) + seconds) % 86400
    return f"MID+{offset // 3600:02}:{offset // 60 % 60:02}:{offset % 60:02}"


class WebService(Journey):
    monitors = ("1280x720",)

    def test_the_service_is_asked_in_its_own_form_and_at_its_times(self):
        session = self.begin(("moving", "file://" + self.moving))
        service = Service(session)
        defaults = session.folder / "config/com.dravo.quilex.QuilexHelper/defaults.json"
        defaults.parent.mkdir(parents=True)
        defaults.write_text('{"ct": 42}')
        start = time.monotonic()
        session.start_agent(TZ=zone_just_before_midnight(10), LANGUAGE="de_AT:fr", LANG="C.UTF-8")
        request = wait_for(lambda: service.requests(Service.GUIDE), "the guide request")[0]
        self.assertGreaterEqual(time.monotonic() - start, 2)
        user = session.settings()["uuid"]
        self.assertRegex(user, "^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$")

        def expect(request, code, body):
            self.assertEqual((request["method"], request["url"], request["body"]), ("POST", "/inst.html", body))
            self.assertEqual(request["f"], str(code))
            headers = request["headers"]
            info = json.loads((session.agent_program.parents[1] / "share/quilexhelper/Info.json").read_text())
            version = f'{info["CFBundleShortVersionString"]}.{info["CFBundleVersion"]}'
            exact = {"user-agent": "MACQuilex" + version, "content-length": str(len(request["form"])),
                     "content-type": "application/x-www-form-urlencoded; charset=utf-8"}
            self.assertLessEqual(exact.items(), headers.items())
            self.assertRegex(headers["accept-encoding"], r"\bgzip\b")
            self.assertRegex(headers["accept-language"], r"^de-AT;q=1\.0, de(-\w+)*;q=0\.9, .*\bfr\b")
            self.assertNotIn("cookie", headers)
            return version

        version = json.loads(request["body"].replace("\\", ""))["v"]
        body = f'{{"ui":"{user}","v":"{version}"}}'.replace('"', '\\"')
        self.assertEqual(expect(request, 214, body), version)
        # The heartbeat may come at any time in the minute after midnight. Meanwhile:
        self.refuse_bad_addresses()
        heartbeat = wait_for(lambda: service.requests(Service.HEARTBEAT), "the heartbeat", seconds=90)[0]
        body = f'{{"n":"1000", "ui":"{user}","ct":"42","v":"{version}","type":"2","ismac":"1"}}'.replace('"', '\\"')
        expect(heartbeat, 21, body)
        self.assertTrue(session.moves())
        self.assertEqual(session.end_agent(), 0)
        self.assertEqual([len(service.requests(code)) for code in (214, 21)], [1, 1])
        self.assertEqual(session.errors(), "")

    def refuse_bad_addresses(self):
        session = self.begin(("moving", "file://" + self.moving))
        for address in ("http://service.quilex.invalid", 7):
            session.agent_program = make_bundle(session, QuilexServiceURL=address)
            session.start_agent()
            wait_for(session.moves, "a moving picture")
            wait_for(lambda: session.errors().count("\n") == 1, "the one complaint")
            self.assertIn("QuilexServiceURL", session.errors())
            self.assertEqual(session.end_agent(), 0)
            (session.folder / "errors").unlink()


if __name__ == "__main__":
    unittest.main(verbosity=2)
