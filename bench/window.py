"""The companion's window over a library of 10,000 videos: its start, its longest stall while it scrolls, its memory."""

import os
import random
import subprocess
import time

from measure import Desktop, Row
from PIL import Image
from Xlib import X, display

VIDEOS, PICTURES = 10_000, 40
START_TARGET, STALL_TARGET, MEMORY_TARGET = 300, 50, 160  # ms, ms, MiB


def make_library(desktop):
    """Rows with a cover each; the covers are links to a few noisy pictures."""
    desktop.make_library()
    covers = desktop.library_file.parent / "Covers"
    covers.mkdir(parents=True)
    generator = random.Random(1)
    for number in range(PICTURES):
        colour = Image.new("RGB", (640, 360), tuple(generator.randrange(256) for _ in range(3)))
        noise = Image.effect_noise((640, 360), 60).convert("RGB")
        Image.blend(noise, colour, 0.6).save(covers / f"{number}.jpg", quality=85)
    rows = []
    for number in range(VIDEOS):
        sign = f"{number:032}"
        os.link(covers / f"{number % PICTURES}.jpg", covers / f"{sign}.jpg")
        rows.append((number, sign, f"Video {number:05}", f"/nonexistent/{number}.mp4", f"file://{covers}/{sign}.jpg"))
    with desktop.library() as database:
        database.execute("begin")
        columns = "insert into LocalVideos (vid, sign, title, url, imgurl, time, width, height)"
        database.executemany(columns + " values (?, ?, ?, ?, ?, 9, 640, 360)", rows)
        database.execute("commit")
    desktop.write_settings(alreadyImportVideo=True)


def show_window(desktop, root):
    """Starts the window; returns its process and the milliseconds until it shows a cover."""
    begun = time.monotonic()
    program = subprocess.Popen([desktop.programs_folder / "quilex"], env=desktop.environment)
    while time.monotonic() < begun + 20:
        for window in root.query_tree().children:
            if window.get_attributes().map_state != X.IsViewable or window.get_geometry().width < 600:
                continue
            pixels = window.get_image(20, 150, 100, 100, X.ZPixmap, 0xFFFFFFFF).data
            # Nothing else there has as many colours as noise.
            if len({pixels[index : index + 4] for index in range(0, len(pixels), 4)}) > 50:
                return program, (time.monotonic() - begun) * 1000
    raise RuntimeError("the window shows no cover")


def memory(process):
    """MiB that are the process's own."""
    with open(f"/proc/{process.pid}/status") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("RssAnon")) / 1024


def row(figure, values, unit, target):
    least = min(values)
    return Row(figure, f"{least:.0f} {unit}", "-", least, target)


def measure(context):
    desktop = Desktop(context, 1)
    starts, stalls, sizes = [], [], []
    try:
        make_library(desktop)
        screen = display.Display(desktop.environment["DISPLAY"])
        for _ in range(max(5, context.rounds)):
            program, milliseconds = show_window(desktop, screen.screen().root)
            starts.append(milliseconds)
            for _ in range(50):
                desktop.run("xdotool", "mousemove", "300", "400", "click", "--repeat", "4", "--delay", "5", "5")
            sizes.append(memory(program))
            program.terminate()
            program.wait()
        bench = context.build / "bin" / "window_bench"
        for _ in range(max(3, context.rounds)):
            stalls.append(float(desktop.run(bench)))
        screen.close()
    finally:
        desktop.close()
    return [
        row("window: start to the first cover, 10,000 videos", starts, "ms", START_TARGET),
        row("window: longest stall while scrolling", stalls, "ms", STALL_TARGET),
        row("window: its own memory after scrolling", [max(sizes)], "MiB", MEMORY_TARGET),
    ]
