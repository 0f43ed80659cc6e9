"""What the agent reports on the bus, in its log, and to the companion's doctor."""

import json
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

import dbus.bus

from session import DEADLINE, SOURCE, Session, make_clip, wait_for

BUILD = sys.argv.pop(1)
NAME, PATH, INTERFACE = "com.dravo.quilex.QuilexHelper", "/com/dravo/quilex/Agent", "com.dravo.quilex.Agent1"


class Doctor(unittest.TestCase):
    def setUp(self):
        self.session = Session(BUILD)
        self.addCleanup(self.session.close)
        self.home = self.session.folder
        self.session.environment["HOME"] = str(self.home)
        shutil.rmtree(self.home / "config", ignore_errors=True)

    def program(self, name, *arguments, **variables):
        command = [self.session.programs_folder / name, *arguments]
        environment = self.session.environment | variables
        return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=60, check=False)

    def doctor(self, **variables):
        """The report, and what it finds odd."""
        done = self.program("quilex", "doctor", "--json", **variables)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertNotIn(str(self.home), done.stdout)
        report = json.loads(done.stdout)
        text = self.program("quilex", "doctor", **variables).stdout
        sections = [section.replace("odd", "what is odd") for section in report]
        self.assertEqual(re.findall(r"^\w.*", text, re.MULTILINE), sections)
        # The number of dropped frames changes from one report to the next.
        for each in report["odd"] if report["program"]["agent"] != "running" else []:
            self.assertIn(f"  - {each['what']}\n    what to do: {each['remedy']}\n", text)
        return report, " ".join(each["what"] for each in report["odd"])

    def test_without_an_agent(self):
        report, odd = self.doctor()
        self.assertEqual(odd, "the agent is not running")
        self.assertEqual([report[each]["health"] for each in ("settings", "library")], ["not there yet"] * 2)
        self.assertEqual([*self.home.glob("config"), *self.home.glob("data")], [], "looking makes nothing")
        self.session.settings_file.parent.mkdir(parents=True)
        self.session.settings_file.write_text("{")
        self.session.make_library(("abcd1", "/gone"), ("abcd2", "/gone"))
        report, odd = self.doctor()
        self.assertIn("settings.json is not a JSON object", odd)
        self.assertIn("2 of 2 videos of the library have no file", odd)
        self.session.library_file.write_text("no database at all" * 99)
        self.assertIn("Quilex.db cannot be read", self.doctor()[1])
        self.assertIn("no D-Bus session bus", self.doctor(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")[1])

    def test_the_command_line_needs_no_desktop(self):
        bare = {"DISPLAY": "", "WAYLAND_DISPLAY": "", "DBUS_SESSION_BUS_ADDRESS": ""}
        version = self.program("quilexhelper", "--version", **bare).stdout
        self.assertEqual(version.replace("quilexhelper", "quilex"), self.program("quilex", "--version", **bare).stdout)
        self.assertIn("QUILEX_LOG", self.program("quilexhelper", "--help", **bare).stdout)
        for arguments, words in {("--frobnicate",): "--frobnicate", ("--log", "mpv=loud"): '"loud"', ("--log=all=info,moon",): '"moon"'}.items():
            refused = self.program("quilexhelper", *arguments, **bare)
            self.assertEqual((refused.returncode, refused.stderr.count("\n"), words in refused.stderr), (2, 1, True))
        # The wallpaper plays even if the variable is wrong.
        logged = self.program("quilexhelper", QUILEX_LOG="moon", **bare)
        self.assertEqual((logged.returncode, '"moon"' in logged.stderr), (1, True))
        journal = self.home / "journal"
        with open(journal, "wb") as stream:
            place = f"{journal.stat().st_dev}:{journal.stat().st_ino}"
            environment = self.session.environment | bare | {"JOURNAL_STREAM": place, "QUILEX_LOG": "all"}
            subprocess.run([self.session.agent_program], env=environment, stderr=stream, timeout=DEADLINE, check=False)
        self.assertRegex(journal.read_text(), r"(?m)^<6>\d{4}-\S+ info desktop: ")

    def test_with_an_agent(self):
        session = self.session
        folder = tempfile.TemporaryDirectory(prefix="quilex-clips-")
        self.addCleanup(folder.cleanup)
        broken = pathlib.Path(folder.name) / "broken.mp4"
        broken.write_bytes(b"no video" * 99)
        clips = {name: make_clip(broken.with_name(name + ".mp4"), "color=c=" + name) for name in ("red", "green")}
        session.make_library(("broken", f"file://{broken}"), *((name, "file://" + clip) for name, clip in clips.items()))
        session.write_settings(CurrentVideoSign="broken", PlayMode=1, Volume=0.2)
        session.start_agent(QUILEX_LOG="playback=info,render,mpv=info")
        bus = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: bus.name_has_owner(NAME), "the agent")
        properties = dbus.Interface(bus.get_object(NAME, PATH, introspect=False), "org.freedesktop.DBus.Properties")
        value = lambda name: properties.Get(INTERFACE, name)
        wait_for(lambda: (value("VideoSign"), value("VideoState")) == ("red", "ready"), "the next video")
        failure = str(value("LastFailure"))
        self.assertIn(f"cannot play {failure}\n", session.errors())
        self.assertTrue(failure.startswith(f"{broken}: "), failure)

        # The log says why it failed, and what was played next.
        log = r"(?s) info render: EGL is not used: .* info playback: loads video broken, .*" \
              r" warning playback: video broken cannot be played; .* info playback: loads video red, .*" \
              r" info mpv: decodes with [^\n]*H\.264"
        self.assertRegex(session.errors(), log)
        self.assertNotIn(" debug playback", session.errors())

        # Changes are signalled, but not the counts of frames.
        heard = session.folder / "changes"
        with open(heard, "ab") as file:
            session.start("gdbus", "monitor", "--session", "--dest", NAME, stdout=file)
        wait_for(lambda: "is owned by" in heard.read_text(), "the monitor")
        before = value("FramesShown")
        wait_for(lambda: value("FramesShown") > before, "more frames")
        session.set_value("CurrentVideoSign", "green")
        wait_for(lambda: "'VideoSign': <'green'>" in heard.read_text() and value("VideoState") == "ready", "the change")
        session.run("xrandr", "--output", "DUMMY1", "--off")
        wait_for(lambda: "'Displays': <[{" in heard.read_text(), "the displays")
        self.assertEqual([str(each["Name"]) for each in value("Displays")], ["DUMMY0"])
        self.assertNotIn("Frames", heard.read_text())
        with self.assertRaisesRegex(dbus.DBusException, "PropertyReadOnly"):
            properties.Set(INTERFACE, "Volume", 1.0, signature="ssv")
        with self.assertRaisesRegex(dbus.DBusException, "UnknownProperty"):
            value("Moon")

        # The documentation lists the same properties.
        introspection = dbus.Interface(bus.get_object(NAME, PATH, introspect=False), "org.freedesktop.DBus.Introspectable")
        found = xml.etree.ElementTree.fromstring(introspection.Introspect()).find(f"interface[@name='{INTERFACE}']")
        words = {"const": "never", "true": "yes", "false": "no"}
        real = [(each.get("name"), each.get("type"), words[each[0].get("value")]) for each in found]
        documents = (SOURCE / "docs/dbus.md").read_text()
        self.assertEqual(re.findall(r"\| `(\w+)` \| `(\S+)` \| .* \| (\w+) \|", documents), real)

        status = self.program("quilex", "status").stdout
        for line in ("agent:       running", "video:       LABEL (green)", "mode:        play the list", "volume:      0.2, not muted", "library:     3 videos, "):
            self.assertIn(line.replace("LABEL", str(value("VideoTitle"))), status)
        report, odd = self.doctor()
        self.assertEqual((report["video"]["sign"], report["video"]["width"]), ("green", 640))
        self.assertEqual((report["desktop"]["backend"], report["desktop"]["placement"]), ("x11", value("Placement")))
        self.assertTrue(value("Placement"))
        self.assertGreater(report["drawing"]["framesShownInLastMinute"], before)
        rates = [float(each) for each in re.findall(r"([\d.]+)\*", session.run("xrandr"))]
        for display, rate in zip(report["displays"].values(), rates, strict=True):
            self.assertAlmostEqual(display["refreshRate"], rate, delta=0.01)
        for words in ("drawn with the CPU: EGL", "no panel shows the status item"):
            self.assertIn(words, odd)
        session.agent.send_signal(signal.SIGSTOP)
        self.assertIn("does not say what it is doing", self.doctor()[1])
        self.assertIn("does not answer", self.program("quilex", "status").stdout)
        session.agent.send_signal(signal.SIGCONT)
        self.assertEqual(session.end_agent(), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
