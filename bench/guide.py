"""The cost of a guide with 32 MiB of images: reading time, memory, and the wallpaper's longest pause meanwhile."""

import base64
import io
import json
import pathlib
import random
import statistics
import subprocess

from PIL import Image

from measure import Desktop, Row, clip
from service import Service

MIB = 1 << 20
TEXT_SIZE = 32 * MIB
# Images of noise, which are hardly larger in memory than as files.
PICTURE = (418, 418)
WATCHED = 8


def guide_answer():
    width, height = PICTURE
    pictures, size, source = [], 0, random.Random(1)
    while size < TEXT_SIZE:
        file = io.BytesIO()
        Image.frombytes("RGB", PICTURE, source.randbytes(3 * width * height)).save(file, "PNG")
        pictures.append(base64.b64encode(file.getvalue()).decode())
        size += len(pictures[-1])
    members = {f"{name}{kind}": [] for name in ("leftPanel", "window", "browser", "newFeature") for kind in ("", "Url")}
    half = len(pictures) // 2
    members.update(leftPanel=pictures[:half], leftPanelUrl=["https://quilex.invalid"] * half)
    members.update(newFeature=pictures[half:], newFeatureUrl=["https://quilex.invalid"] * (len(pictures) - half))
    return json.dumps({"status": 0, "info": "", "data": members}), len(pictures)


def peak(process):
    """The largest resident set so far, in MiB."""
    status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return int(status.split("VmHWM:")[1].split()[0]) / 1024


def longest_wait(frames):
    return max(1000 * (later - earlier) for (earlier, _), (later, _) in zip(frames, frames[1:]))


def watch_guide(context, answer):
    """Peak memory and the longest pause between two frames while the agent gets that guide; None is the default one."""
    desktop = Desktop(context, 1)
    try:
        service = Service(desktop)
        if answer:
            (service.folder / f"{Service.GUIDE}.json").write_text(answer)
        agent = desktop.start_ours(clip("heavy", context.clips), 1)
        frames, _ = desktop.watch(WATCHED)
        assert len(service.requests(Service.GUIDE)) == 1, "the guide was not asked for while being watched"
        return peak(agent), longest_wait(frames[30:])
    finally:
        desktop.close()


def measure(context):
    answer, pictures = guide_answer()
    file = context.clips / "guide.json"
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(answer)
    program = context.build / "bin" / "guide_bench"
    output = subprocess.run([program, file], check=True, capture_output=True, text=True).stdout.split()
    ours, direct, read = float(output[0]), float(output[1]), int(output[2])
    assert read == pictures, "not all pictures were read"
    reply = len(answer) * 4 / 3 / MIB
    small = [watch_guide(context, None) for _ in range(context.rounds)]
    large = [watch_guide(context, answer) for _ in range(context.rounds)]
    added = min(size for size, _ in large) - min(size for size, _ in small)
    assert added > reply, "the agent gave the guide up"
    waits = [statistics.median(wait for _, wait in runs) for runs in (large, small)]
    return [
        Row(f"guide of {pictures} pictures / libraries directly", f"{1000 * ours:.0f} ms", f"{1000 * direct:.0f} ms",
            ours / direct, 2),
        Row("guide: memory at its peak / the reply", f"{added:.0f} MiB", f"{reply:.0f} MiB", added / reply, 3),
        # One or two frames are late if the reading takes a core from the decoder. All would be if it blocked the agent.
        Row("guide: longest wait for a frame / without a guide", f"{waits[0]:.0f} ms", f"{waits[1]:.0f} ms",
            waits[0] / waits[1], 3),
    ]
