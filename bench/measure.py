"""Shared by the benchmarks: clips, desktops, players, and the kernel's figures of a process."""

import os
import pathlib
import subprocess
import sys
import time
from dataclasses import dataclass

SOURCE = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(SOURCE / "tests" / "e2e"))
from session import Session, wait_for  # noqa: E402

CLIP_FRAMES, CLIP_RATE, SIZE = 300, 30, (1920, 1080)
MONITOR = "1920x1080"
# The frame counter in the clips; ScreenWatch.cpp reads it.
COUNTER_BITS, COUNTER_CELL = 10, 24
SECONDS = CLIP_FRAMES // CLIP_RATE  # the clip once, of which some parts cost more than others
WARM_UP = 2

# ffmpeg's options for each clip's picture and quality: 15 Mbit/s of fine detail, and one of the agent's slow loops.
CLIPS = {
    "heavy": (
        ["-f", "lavfi", "-i", "testsrc2=s=1920x1080:r=30,noise=alls=24:allf=t"],
        ["-b:v", "15M", "-maxrate", "18M", "-bufsize", "15M"],
    ),
    "light": (
        ["-stream_loop", "-1", "-i", str(SOURCE / "build/release/share/quilexhelper/loops/silk.mp4")],
        ["-crf", "18"],
    ),
}


@dataclass
class Row:
    """A line of the table. Values are texts; the target applies to `ratio`."""

    figure: str
    ours: str
    reference: str
    ratio: float
    target: float

    @property
    def met(self):
        return self.ratio <= self.target


def counter_strips():
    """The strip of each frame, as raw grey pixels: its number in binary, the least significant bit first."""
    for number in range(CLIP_FRAMES):
        cells = b"".join((b"\xeb" if number >> bit & 1 else b"\x10") * COUNTER_CELL for bit in range(COUNTER_BITS))
        yield cells * COUNTER_CELL


def clip(name, folder):
    """The path of that clip, which is made if it is missing."""
    path = folder / f"{name}.mp4"
    if path.exists():
        return path
    folder.mkdir(parents=True, exist_ok=True)
    picture, quality = CLIPS[name]
    strip = f"{COUNTER_BITS * COUNTER_CELL}x{COUNTER_CELL}"
    command = ["ffmpeg", "-v", "error", "-y", *picture]
    command += ["-f", "rawvideo", "-pix_fmt", "gray", "-s", strip, "-r", str(CLIP_RATE), "-i", "-"]
    command += ["-filter_complex", "[0][1]overlay=0:0:shortest=1,format=yuv420p", "-frames:v", str(CLIP_FRAMES)]
    command += ["-c:v", "libx264", "-preset", "fast", *quality, "-movflags", "+faststart"]
    unfinished = path.with_suffix(".new.mp4")
    print(f"Making the {name} clip", file=sys.stderr)
    maker = subprocess.Popen([*command, str(unfinished)], stdin=subprocess.PIPE)
    for each in counter_strips():
        maker.stdin.write(each)
    maker.stdin.close()
    if maker.wait() != 0:
        raise RuntimeError("ffmpeg could not make the clip")
    unfinished.rename(path)
    return path


class Desktop(Session):
    """A virtual desktop with its own bus and folders, on which the programs are compared."""

    def __init__(self, context, monitors=1):
        super().__init__(context.build, (MONITOR,) * monitors)
        self.environment["QUILEX_RENDERER"] = "cpu"
        self.context = context

    def set_monitor_count(self, count):
        self.desktop.set_monitors([MONITOR] * count + [None] * (4 - count))

    def prepare(self, clip_path, **settings):
        self.make_library(("clip", f"file://{clip_path}"))
        self.write_settings(CurrentVideoSign="clip", Mute=True, **settings)

    def start_ours(self, clip_path, monitors, arrangement=1):
        self.set_monitor_count(monitors)
        self.prepare(clip_path, MonitorArrange=arrangement, IsOpenPlayer=True, isPlaying=True)
        self.start_agent()
        wait_for(lambda: len(self.windows()) == monitors, "the wallpaper")
        return self.agent

    def start_mpv(self, clip_path, *options):
        program = ["mpv", "--no-config", "--no-audio", "--loop-file=inf", "--really-quiet", *options]
        return self.start(*program, str(clip_path))

    def start_floor(self, clip_path):
        return self.start_mpv(clip_path, "--vo=null")

    def start_peer(self, clip_path, left=0, width=SIZE[0], *options):
        place = [f"--geometry={width}x{SIZE[1]}+{left}+0", "--no-border"]
        return self.start_mpv(clip_path, "--vo=x11", *place, *options)

    def stop(self, program):
        if program is self.agent:
            self.end_agent()
            return
        program.terminate()
        program.wait(timeout=20)
        self.programs.remove(program)

    def watch(self, seconds=SECONDS):
        """The times (in seconds) and numbers of the frames on the screen, and how often the screen was drawn on."""
        program = self.context.build / "bin" / "screen_watch"
        lines = subprocess.run(
            [program, str(seconds)], env=self.environment, check=True, capture_output=True, text=True
        ).stdout.splitlines()
        frames = [(int(when) / 1e6, int(number)) for when, number in (line.split() for line in lines[:-1])]
        return frames, int(lines[-1].split()[1])


def processor_seconds(process):
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def wakeups(process):
    """How often the threads of the process have slept, and so been woken."""
    count = 0
    for status in pathlib.Path(f"/proc/{process.pid}/task").glob("*/status"):
        count += int(status.read_text().split("\nvoluntary_ctxt_switches:")[1].split()[0])
    return count


def memory(process):
    """Proportional set size, in MiB."""
    for line in pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text().splitlines():
        if line.startswith("Pss:"):
            return int(line.split()[1]) / 1024
    raise RuntimeError("no Pss")


def spent(process, seconds=SECONDS, warm_up=WARM_UP):
    """Processor seconds of the process over some seconds, after some time to settle."""
    time.sleep(warm_up)
    before = processor_seconds(process)
    time.sleep(seconds)
    return processor_seconds(process) - before


def compared(figure, ours, references, target, unit):
    """The minimum of each value, because other programs on the machine can only add to it."""
    form = lambda values: f"{min(values):.3g} {unit}"
    return Row(figure, form(ours), form(references), min(ours) / min(references), target)


def side_by_side(figure, rounds, target, unit):
    """The pair with the median ratio. The values of a pair are taken at the same time, so that other programs on the
    machine slow both alike."""
    ours, reference = sorted(rounds, key=lambda pair: pair[0] / pair[1])[len(rounds) // 2]
    return Row(figure, f"{ours:.3g} {unit}", f"{reference:.3g} {unit}", ours / reference, target)
