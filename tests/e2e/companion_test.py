"""What the companion's command line does to the library, the settings and the agent."""

import itertools
import json
import os
import pathlib
import pty
import random
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse

from PIL import Image, ImageChops, ImageStat

from session import Session, UserSession, make_clip, turn_clip, wait_for

BUILD = sys.argv.pop(1)

RED, GREEN = (192, 32, 32), (32, 160, 32)


def vary(clip, target, number):
    """The clip with other contents: a box at its end that readers ignore."""
    target.write_bytes(clip.read_bytes() + struct.pack(">I4sI", 12, b"free", number))
    return target


class CompanionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="quilex-clips-")
        cls.addClassCleanup(folder.cleanup)
        cls.clips = pathlib.Path(folder.name)
        cls.red = make_clip(cls.clips / "red.mp4", "color=c=0xC02020")
        cls.green = make_clip(cls.clips / "green.mp4", "color=c=0x20A020")
        cls.small = cls.clips / "small.mp4"
        encoding = ["-c:v", "libx264", "-preset", "ultrafast", "-c:a", "aac"]
        sources = ["-f", "lavfi", "-i", "testsrc=s=128x72:r=10", "-f", "lavfi", "-i", "sine", "-t", "1"]
        subprocess.run(["ffmpeg", "-v", "error", *sources, *encoding, str(cls.small)], check=True, timeout=60)

    def setUp(self):
        self.session = UserSession(BUILD)
        self.addCleanup(lambda: self.session.close())
        self.covers = self.session.library_file.parent / "Covers"

    def command(self, *arguments):
        return [self.session.programs_folder / "quilex", *arguments]

    def quilex(self, *arguments, status=0, **options):
        """Runs the program and returns its standard output, or standard error if it is to fail."""
        done = subprocess.run(
            self.command(*arguments), env=self.session.environment, capture_output=True, timeout=120, check=False, **options
        )
        errors = done.stderr.decode()
        self.assertEqual(done.returncode, status, (arguments, done.stdout, errors))
        self.assertTrue(all(line.startswith("quilex: ") for line in errors.splitlines()), errors)
        return done.stdout.decode() if status == 0 else errors

    def videos(self):
        return json.loads(self.quilex("list", "--json"))

    def rows(self):
        with self.session.library() as database:
            rows = database.execute("select sign, imgurl from LocalVideos where imgurl != '' order by vid").fetchall()
            self.assertEqual(database.execute("pragma integrity_check").fetchall(), [("ok",)])
        for sign, cover in rows:
            self.assertEqual(cover, (self.covers / (sign + ".jpg")).as_uri())
            self.assertTrue((self.covers / (sign + ".jpg")).read_bytes().endswith(b"\xff\xd9"))
        return rows

    def check_covers(self, count):
        """Each video has its cover, and there are no other files."""
        self.assertEqual({sign + ".jpg" for sign, _ in self.rows()}, set(os.listdir(self.covers)))
        self.assertEqual(len(os.listdir(self.covers)), count)
        self.assertEqual(set(os.listdir(self.covers.parent)), {"Quilex.db", "Covers"})

    def check_privacy(self):
        """Only the user may read what the program has made."""
        made = [*(self.session.folder / "config").rglob("*"), *(self.session.folder / "data").rglob("*")]
        self.assertGreaterEqual(len(made), 6)
        for path in made:
            self.assertEqual(path.stat().st_mode & 0o777, 0o700 if path.is_dir() else 0o600, path)


class Companion(CompanionTest):
    def test_import_describes_the_video(self):
        heard = self.session.hear()
        loops = len(self.videos())
        self.assertGreaterEqual(loops, 3)
        turned, counted = turn_clip(self.small, self.clips / "turned.mp4", 90), self.clips / "counted.h264"
        command = ["ffmpeg", "-v", "error", "-y", "-i", str(self.small), "-an", "-c", "copy", str(counted)]
        subprocess.run(command, check=True, timeout=60)
        self.quilex("import", self.small, turned, counted)
        wait_for(lambda: '"UpdateVideoList"' in heard.read_text(), "the notification")
        video, upright, third = self.videos()[loops:]
        # Nothing was chosen before, so it is shown.
        shown = {"alreadyImportVideo": True, "CurrentVideoSign": video["sign"], "IsOpenPlayer": True, "isPlaying": True}
        self.assertEqual(self.session.settings(), shown)
        facts = {"id": loops + 1, "title": "small", "time": 1, "size": self.small.stat().st_size, "ratio": "16:9"}
        facts |= {"width": 128, "height": 72, "frame": 10, "rate": 10, "audio": 1, "url": self.small.as_uri()}
        self.assertLessEqual(facts.items(), video.items())
        self.assertEqual((upright["width"], upright["height"], upright["ratio"]), (72, 128, "9:16"))
        self.assertEqual((third["frame"], third["rate"]), (10, 10))
        self.check_covers(3)
        self.check_privacy()
        cover, turned_cover = (Image.open(self.covers / (each["sign"] + ".jpg")) for each in (video, upright))
        self.assertEqual(turned_cover.size, (72, 128))
        difference = ImageChops.difference(cover.transpose(Image.Transpose.ROTATE_270), turned_cover)
        self.assertLess(max(ImageStat.Stat(difference).mean), 16)
        # On a terminal it shows its progress, which disappears at the end.
        terminal, errors = pty.openpty()
        subprocess.run(self.command("import", self.red), env=self.session.environment, stderr=errors, stdout=subprocess.DEVNULL, check=True)
        self.assertRegex(os.read(terminal, 4096).decode(), r"(?s)^\r\[1/1\] red.mp4 .*100 %.*\r\x1b\[K$")
        self.assertEqual(self.session.settings()["CurrentVideoSign"], video["sign"])

    def test_files_that_are_no_videos_are_refused_one_by_one(self):
        folder = self.session.folder / "videos"
        folder.mkdir()
        (folder / "folder.mp4").mkdir()
        os.mkfifo(folder / "pipe.mp4")
        contents = {"text.txt": b"words\n" * 99, "list.m3u8": b"#EXTM3U\n#EXTINF:1,\nsmall.mp4\n", "empty.mp4": b""}
        contents |= {"garbage.mp4": random.randbytes(9999), "cut.mp4": self.small.read_bytes()[:2000]}
        for name, content in contents.items():
            (folder / name).write_bytes(content)
        sound = folder / "sound.m4a"
        subprocess.run(["ffmpeg", "-v", "error", "-i", str(self.small), "-vn", str(sound)], check=True, timeout=60)
        names = ["missing.mp4", *os.listdir(folder)]
        errors = self.quilex("import", *(folder / name for name in names), self.small, status=1).splitlines()
        for name, error in zip(names, errors, strict=False):
            self.assertTrue(error.startswith(f"quilex: {folder}/{name}: "), error)
        self.assertEqual(len(errors), len(names) + 1)
        for name, words in {"missing.mp4": "no such file", "folder.mp4": "a folder", "empty.mp4": "empty"}.items():
            self.assertIn(words, errors[names.index(name)])
        self.check_covers(1)
        # A file that is still being downloaded is refused, even if it can be played already.
        growing = folder / "growing.mp4"
        rest = 100_000_000
        growing.write_bytes(self.small.read_bytes() + struct.pack(">I4s", rest, b"free"))
        os.truncate(growing, growing.stat().st_size + rest - 8)
        with subprocess.Popen(["bash", "-c", r'while printf "\0\0\0\10free"; do :; done >>"$0"', growing]) as download:
            try:
                self.assertIn("was changed while it was read", self.quilex("import", growing, status=1))
            finally:
                download.kill()
        self.check_covers(1)

    def test_any_name_will_do_and_contents_count_once(self):
        names = [b"a b%20#?\n\x1b[31m.mp4", b"\xff\xfe.mp4", b"-x.mp4", b"n" * 251 + b".mp4", "日本.mp4".encode()]
        folder = os.fsencode(self.session.folder)
        for number, name in enumerate(names):
            vary(self.small, pathlib.Path(os.fsdecode(os.path.join(folder, name))), number)
        loops = len(self.videos())
        self.quilex("import", "--", *names, cwd=folder)
        for name, video in zip(names, self.videos()[loops:], strict=True):
            path = urllib.parse.unquote_to_bytes(video["url"].removeprefix("file://"))
            self.assertEqual(path, os.path.join(os.path.realpath(folder), name))
            self.assertTrue(video["title"].isprintable())
        self.assertNotIn("\x1b", self.quilex("list"))
        self.assertIn("already in the library", self.quilex("import", os.path.join(folder, names[0])))
        # Importing a video that was moved updates its path; importing a copy changes nothing.
        url = lambda: self.videos()[loops]["url"]
        first, copy = os.path.join(folder, names[0]), os.path.join(folder, b"copy.mp4")
        before = url()
        shutil.copy(first, copy)
        self.quilex("import", copy)
        self.assertEqual(url(), before)
        os.remove(first)
        self.assertIn("(its file is gone)", self.quilex("list"))
        self.quilex("import", copy)
        self.assertTrue(url().endswith("/copy.mp4"))
        self.assertEqual(len(self.videos()), loops + len(names))

    def test_play_and_remove(self):
        loops = [video["sign"] for video in self.videos()]
        self.quilex("import", self.red, self.green)
        red, green = (video["sign"] for video in self.videos()[-2:])
        self.session.write_settings(IsOpenPlayer=False)
        defaults = self.session.settings_file.parents[1] / "com.dravo.quilex.QuilexHelper/defaults.json"
        defaults.parent.mkdir(exist_ok=True)
        defaults.write_text("{")
        self.assertIn("defaults.json is not a JSON object", self.quilex("play", red, status=1))
        # A video that the agent refuses is allowed again once it is chosen, and the agent is notified.
        heard = self.session.hear()
        for refusal in ({f"RefusedVideo/{red}": True}, {"LoadingVideo": red}):
            defaults.write_text(json.dumps({"another": 1, **refusal}))
            self.quilex("play", red[:6])
            self.assertEqual(json.loads(defaults.read_text()), {"another": 1})
        told = lambda times: wait_for(lambda: heard.read_text().count('"UpdateVideoList"') == times, "the notification")
        told(2)
        chosen = {"CurrentVideoSign": red, "IsOpenPlayer": True, "isPlaying": True}
        self.assertLessEqual(chosen.items(), self.session.settings().items())
        self.assertRegex(self.quilex("list"), rf"\n\* {red}  0:10 +640x360 +red\n")
        self.assertIn(f"red ({red})", self.quilex("status"))

        for sign in ("abcd1", "abcd2"):
            self.session.add_video(sign, "/gone")
        for sign, words in {"abcd": "abcd1, abcd2", "abcd1": "is gone", red[:3]: "4 characters"}.items():
            self.assertIn(words, self.quilex("play", sign, status=1))
        self.assertEqual(self.session.settings()["CurrentVideoSign"], red)

        # All or nothing. The wallpaper continues with the next playable video, and closes after the last.
        self.quilex("remove", green, "unknown", status=1)
        self.assertEqual(len(self.videos()), len(loops) + 4)
        self.quilex("remove", green, red, red)
        told(3)
        self.assertEqual(self.session.settings()["CurrentVideoSign"], loops[0])
        self.check_covers(0)
        self.assertTrue(pathlib.Path(self.red).exists())
        self.quilex("remove", *loops)
        before = self.session.settings()
        self.assertEqual(before["IsOpenPlayer"], False)
        self.quilex("remove", "abcd1", "abcd2")
        self.assertEqual(self.session.settings(), before | {"LibraryWasEmptied": True})
        self.assertEqual(self.videos(), [])
        # The chosen video is gone, so the first imported one is shown.
        self.quilex("import", self.green, self.red)
        self.assertEqual(self.session.settings(), before | chosen | {"CurrentVideoSign": green})

    def test_settings(self):
        absent = dict(line.split(" ", 1) for line in self.quilex("get").splitlines())
        self.assertEqual(absent | {"Volume": "0.5", "IsOpenPlayer": "true", "Mute": "false", "PlayMode": "0"}, absent)
        self.assertFalse(self.session.settings_file.exists())
        german = {**self.session.environment, "LC_ALL": "de_DE.UTF-8"}
        subprocess.run(self.command("set", "Volume", "0.1"), env=german, check=True, timeout=20)
        self.assertEqual(self.session.settings(), {"Volume": 0.1})
        refused = [("Volume", value) for value in ("nan", "inf", "-inf", " 1", "1 ", "1x", "1.01", "1e999", "0,5", "", "-1")]
        refused += [("PlayMode", value) for value in ("3", "-1", "1.0", "9" * 30)] + [("Mute", "yes"), ("volume", "1")]
        for key, value in refused:
            self.assertIn(key, self.quilex("set", "--", key, value, status=2))
        self.assertIn("in the library", self.quilex("set", "CurrentVideoSign", "nothing", status=1))
        self.quilex("frobnicate", status=2)
        self.assertEqual(self.session.settings(), {"Volume": 0.1})

        # A failed write is reported, and nothing is lost.
        def small_disk():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))

        self.session.write_settings(another="x" * 999)
        before = self.session.settings_file.read_bytes()
        self.assertIn("settings.json", self.quilex("set", "Mute", "true", status=1, preexec_fn=small_disk))
        self.assertEqual(self.session.settings_file.read_bytes(), before)
        self.session.settings_file.write_text("{")
        for arguments in (("set", "Mute", "true"), ("get", "Mute"), ("import", self.small)):
            self.assertIn("settings.json is not a JSON object", self.quilex(*arguments, status=1))
        self.assertEqual(self.session.settings_file.read_text(), "{")

    def test_the_output_may_end_early(self):
        full = subprocess.run(
            f"'{self.command()[0]}' list >/dev/full; echo $?; '{self.command()[0]}' list | true; echo ${{PIPESTATUS[0]}}",
            shell=True, executable="/bin/bash", env=self.session.environment, capture_output=True, text=True, check=True,
        )
        self.assertEqual(full.stdout.split(), ["1", "0"])
        self.assertEqual(full.stderr.count("\n"), 1)


class CompanionAtOnce(CompanionTest):
    def run_all(self, commands):
        """Runs the commands in parallel and returns their standard output."""
        options = {"env": self.session.environment, "stdout": subprocess.PIPE}
        running = [subprocess.Popen(self.command(*each), **options) for each in commands]
        results = [(each.communicate(timeout=300)[0].decode(), each.returncode) for each in running]
        self.assertEqual({status for _, status in results}, {0})
        return [output for output, _ in results]

    def test_settings_lose_nothing(self):
        self.session.write_settings(another="one")
        sign = self.videos()[0]["sign"]
        rounds = [("1", "2", "3", "0.25", "true", "false"), ("2", "1", "4", "0.75", "false", "true")]
        for number, values in enumerate(rounds * 2):
            keys = ("MonitorArrange", "PlayMode", "ScreenIndex", "Volume", "Mute", "isPlaying")
            wanted = dict(zip(keys, values)) | {"CurrentVideoSign": sign, "autolaunch": "false", "IsOpenPlayer": "false"}
            wanted["alreadyImportVideo"] = "true"
            # Each key once, so that a lost write shows; in the last round a hundred commands at once.
            self.run_all([("set", key, value) for key, value in wanted.items()] * (10 if number == 3 else 1))
            stored = {key: json.dumps(value).strip('"') for key, value in self.session.settings().items()}
            self.assertEqual(stored, wanted | {"another": "one"})

    def test_imports_add_one_row_each(self):
        clips = [vary(self.small, self.clips / f"once {number}.mp4", number) for number in range(4)]
        self.session.library_file.parent.parent.mkdir()
        output = self.run_all([("import", clip) for clip in clips] * 25)
        self.assertEqual(sum("already" not in line for line in output), len(clips))
        self.check_covers(len(clips))
        numbers = [video["id"] for video in self.videos()]
        self.assertEqual(numbers, list(range(1, len(numbers) + 1)))

    def test_an_import_may_be_killed_at_any_moment(self):
        clips = [vary(self.small, self.clips / f"many {number}.mp4", number) for number in range(200)]
        options = {"env": self.session.environment, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        count = lambda: len(self.rows()) if self.session.library_file.exists() else 0
        for how in [signal.SIGKILL] * 4 + [signal.SIGINT] + [signal.SIGKILL] * 4:
            lines = count() + random.randint(0, 18)
            with subprocess.Popen(self.command("import", *clips), **options) as program:
                shown = list(itertools.islice(program.stdout, lines))
                # Somewhere within the next file.
                time.sleep(random.uniform(0, 0.03))
                program.send_signal(how)
                program.stdout.read()
                self.assertEqual(program.wait(timeout=20), -how if how == signal.SIGKILL else 1)
                errors = program.stderr.read()
            self.assertEqual(b"interrupted" in errors, how == signal.SIGINT)
            self.assertEqual(len(shown), lines)
            self.assertGreaterEqual(count(), lines)
        self.quilex("import", *clips)
        self.check_covers(200)


class CompanionWithAgent(CompanionTest):
    def test_any_order_of_removing_and_importing(self):
        self.session.close()
        self.session = session = Session(BUILD)
        session.make_library()
        self.assertIn("not running", self.quilex("status"))
        # Short clips, so that one ends during each step.
        files = {name: make_clip(self.clips / f"short {name}.mp4", f"color=c={colour}", seconds=1)
                 for name, colour in {"red": "0xC02020", "green": "0x20A020"}.items()}
        closed, opened, bare = "no wallpaper", "a wallpaper", "no video to name"
        reached = {closed: lambda: not session.windows(), opened: session.windows}
        reached[bare] = lambda: "CurrentVideoSign" not in session.settings()
        opens, closes, pauses = "set IsOpenPlayer true", "set IsOpenPlayer false", "set isPlaying false"
        steps = [("import red", RED), ("import green", RED), ("play green", GREEN), ("play red", RED), (pauses, opened)]
        steps += [("remove red", GREEN), (pauses, GREEN), ("remove green", closed), (opens, bare), ("restart", bare)]
        steps += [("import red green", RED), (closes, closed), ("remove red", closed), ("restart", closed)]
        steps += [(opens, GREEN), (closes, closed), ("remove green", closed), ("restart", closed), (opens, bare)]
        steps += [("import green red", GREEN), ("remove green red", closed), ("import green", GREEN)]
        session.start_agent()
        signs = {}
        for mode in ("0", "1", "2"):
            self.quilex("set", "PlayMode", mode)
            for step, expected in steps:
                verb, *names = step.split()
                if verb == "restart":
                    self.assertEqual(session.end_agent(), 0)
                    session.start_agent()
                elif verb == "import":
                    lines = self.quilex(verb, *(files[name] for name in names)).splitlines()
                    signs |= {name: line.split()[0] for name, line in zip(names, lines, strict=True)}
                else:
                    self.quilex(verb, *(signs.get(name, name) for name in names))
                what = f"{expected} after {step} in mode {mode}"
                if expected in reached:
                    wait_for(lambda: session.agent.poll() is not None or reached[expected](), what)
                else:
                    session.wait_for_pixels({(640, 360): expected, (1680, 300): expected}, what)
                self.assertIsNone(session.agent.poll(), what)
            self.quilex("remove", signs["green"])
        self.assertIn("agent:       running", self.quilex("status"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
