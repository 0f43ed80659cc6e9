"""Journeys of installed programs: what desktops, shells and service managers find, and the start at login."""

import hashlib
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest
from urllib.parse import unquote

import dbus.bus
from menu_test import Panel
from wallpaper_test import BUILD, Journey

from session import wait_for

AGENT = "com.dravo.quilex.QuilexHelper"
LANGUAGES = {"de", "es", "fr", "ja", "pt_BR", "zh_CN"}


class InstalledJourney(Journey):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = tempfile.TemporaryDirectory(prefix="quilex-prefix-")
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "a prefix"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", cls.prefix], check=True, stdout=subprocess.DEVNULL, timeout=300)

    def call(self, *command, status=0):
        """Runs a command in the session and returns its output."""
        options = {"capture_output": True, "text": True, "timeout": 120, "check": False}
        done = subprocess.run(command, env=self.session.environment, **options)
        self.assertEqual(done.returncode, status, (command, done.stdout, done.stderr))
        return done.stdout + done.stderr


class Metadata(InstalledJourney):
    def test_the_main_window_opens(self):
        self.begin()
        session = self.session
        session.start("gio", "launch", self.prefix / "share/applications/com.dravo.quilex.macOS.desktop")
        search = ("xdotool", "search", "--onlyvisible", "--class", "^quilex$")
        window = wait_for(lambda: session.run(*search).split(), "the window")[-1]
        icon = session.run("xprop", "-id", window, "WM_CLASS", "WM_NAME")
        self.assertIn('"Quilex"', icon)
        programs = [pathlib.Path("/proc", each, "exe").resolve() for each in session.run("xdotool", "getwindowpid", window).split()]
        self.assertEqual(programs, [self.prefix / "libexec/quilex-window"])
        os.kill(int(session.run("xdotool", "getwindowpid", window)), signal.SIGTERM)
        wait_for(lambda: not session.run(*search), "the window's end")

    def test_desktops_and_shells_understand_what_is_installed(self):
        self.begin()
        share = self.prefix / "share"
        entries = sorted((share / "applications").iterdir())
        self.assertEqual([each.stem for each in entries], [AGENT, "com.dravo.quilex.macOS"])
        for entry in entries:
            self.assertEqual(self.call("desktop-file-validate", entry), "")
            lines = dict(line.split("=", 1) for line in entry.read_text().splitlines() if "=" in line)
            for key in ("Comment", "Keywords"):
                self.assertEqual({name[len(key) + 1 : -1] for name in lines if name.startswith(key + "[")}, LANGUAGES)
            self.assertTrue(os.access(lines["TryExec"], os.X_OK))
            self.assertEqual(lines["Exec"].removesuffix(" list"), f'"{lines["TryExec"]}"')
            for size in (16, 48, 256):
                self.assertTrue((share / f"icons/hicolor/{size}x{size}/apps/{lines['Icon']}.png").read_bytes())
            self.assertIn("linearGradient", (share / f"icons/hicolor/scalable/apps/{lines['Icon']}.svg").read_text())
        file = self.prefix / "lib/systemd/user/quilexhelper.service"
        self.assertEqual(self.call("systemd-analyze", "verify", "--user", "--man=no", file), "")
        unit = file.read_text()
        self.assertIn(f'\nExecStart="{self.prefix}/bin/quilexhelper"\nRestart=on-failure\n', unit)
        self.assertRegex(unit, r"\nMemoryMax=\d+G\n")
        metainfo = share / f"metainfo/{AGENT}.metainfo.xml"
        self.call("appstreamcli", "validate", "--strict", "--no-net", metainfo)

    def test_what_a_program_says_with_help_is_in_its_manual_page(self):
        self.begin()
        words = lambda text: "".join(text.split())
        for name in ("quilex", "quilexhelper"):
            program = self.prefix / "bin" / name
            helps = [self.call(program, "--help")]
            commands = helps[0].partition("Subcommands:\n")[2].splitlines()
            helps += [self.call(program, line.split()[0], "--help") for line in commands if line.strip()]
            self.assertEqual(len(helps) > 7, name == "quilex")
            page = words((self.prefix / f"share/man/man1/{name}.1").read_text().replace("\\-", "-").replace("\\&", ""))
            for meaning in (line.split("  ")[-1] for text in helps for line in text.splitlines() if line.startswith("  ")):
                self.assertTrue("Print this help" in meaning or words(meaning) in page, meaning)

    def test_a_shell_completes_commands_signs_and_values(self):
        session = self.begin(("665babcd", "file:///a"), ("b2f8", "file:///b"), ("$(touch x)", "file:///c"))
        with session.library() as database:
            database.execute("update LocalVideos set title = 'Au' || char(9) || 'rora' where sign = '665babcd'")
        script = self.prefix / "share/bash-completion/completions/quilex"
        session.environment["PATH"] = f"{self.prefix}/bin:{session.environment['PATH']}"
        cases = {"se": ["set"], "play 6": ["665babcd"], "remove b2f8 ": ["665babcd"], "play x": [], "frobnicate ": []}
        cases |= {"play ": ["665babcd  Au rora", "b2f8      "], "set Mute t": ["true"], "list --j": ["--json"]}
        cases["set PlayMode "] = ["0  repeat one video", "1  play the list", "2  shuffle"]
        for typed, expected in cases.items():
            words = ["quilex", *typed.split(" ")]
            ask = 'source "$0"; COMP_TYPE=9 COMP_CWORD=$(($# - 1)) COMP_WORDS=("$@"); compopt() { :; }; _quilex quilex; printf "%s\\n" "${COMPREPLY[@]}"'
            self.assertEqual(self.call("bash", "-c", ask, script, *words).splitlines(), expected or [""], typed)
        commands = self.call("quilex", "complete", "").splitlines()
        self.assertEqual({line.split("\t")[0] for line in commands} & {"import", "status", "complete"}, {"import", "status"})
        self.assertEqual(self.call("quilex", "complete", "import", "--", "-"), ":files\n")
        session.library_file.unlink()
        self.assertEqual(self.call("quilex", "complete", "play", ""), "")
        self.assertFalse(session.library_file.exists(), "completion writes nothing")


class StartAtLogin(InstalledJourney):
    def setUp(self):
        self.begin(("moving", "file://" + self.moving), CurrentVideoSign="moving")
        self.entry = self.session.folder / f"config/autostart/{AGENT}.desktop"
        self.quilex = self.prefix / "bin/quilex"
        self.session.agent_program = self.prefix / "bin/quilexhelper"

    def agents(self):
        """Process ids of the running installed agents."""
        found = []
        for each in pathlib.Path("/proc").glob("[0-9]*/exe"):
            try:
                if os.readlink(each) == str(self.session.agent_program):
                    found.append(int(each.parent.name))
            except OSError:
                pass
        return found

    def test_the_entry_follows_the_setting_and_starts_one_agent(self):
        # The entry names where the programs are now, not where they were installed.
        moved = self.prefix.with_name('another "\\" $prefix')
        shutil.move(self.prefix, moved)
        self.addCleanup(shutil.move, moved, self.prefix)
        self.quilex, self.session.agent_program = moved / "bin/quilex", moved / "bin/quilexhelper"
        self.session.library_file.unlink()
        self.session.start_agent()
        wait_for(self.entry.exists, "the entry of the first start")
        loops = {f"file://{each}" for each in (moved / "share/quilexhelper/loops").iterdir()}
        with self.session.library() as library:
            self.assertEqual({unquote(url) for (url,) in library.execute("select url from LocalVideos")}, loops)
        self.assertEqual(self.session.end_agent(), 0)
        self.call("desktop-file-validate", self.entry)
        self.assertEqual(self.entry.stat().st_mode & 0o777, 0o600)

        log = self.session.folder / "launches"
        with open(log, "ab") as output:
            for _ in range(2):
                launch = ["gio", "launch", self.entry]
                subprocess.run(launch, env=self.session.environment, stdout=output, stderr=output, check=True, timeout=60)
        self.addCleanup(lambda: [os.kill(each, signal.SIGKILL) for each in self.agents()])
        wait_for(self.session.moves, "a moving picture")
        wait_for(lambda: log.read_text().count("already running") == 1 and len(self.agents()) == 1, log.read_text)

        # The agent follows the setting, whoever changes it; the companion also works without an agent.
        for wanted in (False, True, False):
            self.session.write_settings(autolaunch=wanted)
            wait_for(lambda: self.entry.exists() == wanted, f"the entry to follow {wanted}")
        bus = dbus.bus.BusConnection(self.session.environment["DBUS_SESSION_BUS_ADDRESS"])
        os.kill(self.agents()[0], signal.SIGTERM)
        wait_for(lambda: not bus.name_has_owner(AGENT) and not self.agents(), "the agent's end")
        for wanted in ("true", "false"):
            self.assertEqual(self.call(self.quilex, "set", "autolaunch", wanted), "")
            self.assertEqual(self.entry.exists(), wanted == "true")

    def test_what_the_unit_opens_is_outside_it(self):
        session = self.session
        entry = session.folder / "data/applications/com.dravo.quilex.macOS.desktop"
        entry.parent.mkdir(parents=True)
        entry.write_text(f"[Desktop Entry]\nType=Application\nName=Main\nExec=touch {session.folder}/launched\n")
        manager, unit = session.folder / "systemd-run", session.folder / "unit"
        manager.write_text(f'#!/bin/sh\necho "$@" >{session.folder}/run\nshift 4\nexec "$@"\n')
        unit.write_text(f'#!/bin/sh\nexport SYSTEMD_EXEC_PID=$$ PATH={session.folder}:$PATH\nexec "{session.agent_program}"\n')
        for program in (manager, unit):
            program.chmod(0o755)
        session.agent_program = unit
        session.start_agent()
        panel = Panel(session)
        panel.click("Main Window")
        wait_for((session.folder / "launched").exists, "the main application")
        self.assertEqual((session.folder / "run").read_text(), f"--user --scope --quiet -- gio launch {entry}\n")
        self.assertEqual(session.end_agent(), 0)

    def test_an_entry_of_a_person_stays(self):
        setting = lambda value, status=0: self.call(self.quilex, "set", "autolaunch", value, status=status)
        setting("true")
        made = self.entry.read_text()
        # An entry that an earlier version made is recognised by its digest, and replaced.
        old = "[Desktop Entry]\nType=Application\nName=Old\nExec=/old\nX-Quilex-Digest="
        old += hashlib.sha256(old.removesuffix("X-Quilex-Digest=").encode()).hexdigest() + "\n"
        self.entry.write_text(old)
        setting("true")
        self.assertEqual(self.entry.read_text(), made)
        self.entry.write_text(old)
        setting("false")
        self.assertFalse(self.entry.exists())
        for theirs in (made + "Hidden=true\n", made.replace("Name=", "Name=My "), "", old.upper(), "x" * 99999):
            self.entry.write_text(theirs)
            for value in ("true", "false"):
                self.assertIn("it stays", setting(value))
                self.assertEqual(self.entry.read_text(), theirs)
        self.entry.write_text(made)
        elsewhere = self.entry.rename(self.entry.with_suffix(".mine"))
        self.entry.symlink_to(elsewhere)
        self.assertIn("it stays", setting("false"))
        self.assertTrue(self.entry.is_symlink() and elsewhere.exists())
        # The setting is stored even if the entry cannot be written.
        shutil.rmtree(self.entry.parent)
        self.entry.parent.write_text("no folder")
        self.assertIn("cannot be written", setting("true", status=1))
        self.assertTrue(self.session.settings()["autolaunch"])

    def test_programs_in_a_build_folder_leave_the_entry_alone(self):
        self.entry.parent.mkdir(parents=True)
        for program, entry in ((self.session.programs_folder / "quilex", False), (self.quilex, True)):
            said = self.call(program, "set", "autolaunch", "true")
            self.assertEqual((self.entry.exists(), "is installed" in said), (entry, not entry))
        made = self.entry.read_text()
        self.call(self.session.programs_folder / "quilex", "set", "autolaunch", "true")
        self.assertEqual(self.entry.read_text(), made)
        self.call(self.session.programs_folder / "quilex", "set", "autolaunch", "false")
        self.assertFalse(self.entry.exists())


if __name__ == "__main__":
    unittest.main(verbosity=2)
