"""Files that a library may name, from ordinary videos to files that only look like one. ffmpeg makes them at run time.

`kept` is a folder for what ffmpeg makes, where it stays from run to run; `folder` one for the rest.
"""

import contextlib
import ctypes
import errno
import os
import random
import socket
import struct
import subprocess
import sys
import time

from endurance import QUADRANTS

from session import turn_clip

H264 = "-c:v libx264 -preset ultrafast -pix_fmt yuv420p"
# ffmpeg's options for each suffix.
CODECS = {
    "h264.mp4": H264, "full.mp4": "-c:v libx264 -preset ultrafast -pix_fmt yuv444p", "h264.mkv": H264, "h264.ts": H264,
    "h265.mp4": "-c:v libx265 -x265-params log-level=none", "h265.hevc": "-c:v libx265 -x265-params log-level=none",
    "av1.mp4": "-c:v libaom-av1 -cpu-used 8", "av1.obu": "-c:v libaom-av1 -cpu-used 8", "vp8.webm": "-c:v libvpx",
    "vp9.webm": "-c:v libvpx-vp9 -deadline realtime", "vp9.ivf": "-c:v libvpx-vp9 -deadline realtime", "h264.264": H264 + " -f h264",
    "prores.mov": "-c:v prores_ks", "animation.mov": "-c:v qtrle", "png.mov": "-c:v png", "ffv1.mkv": "-c:v ffv1",
    "mpeg4.avi": "-c:v mpeg4", "mjpeg.avi": "-c:v mjpeg -pix_fmt yuvj420p", "old.avi": "-c:v msmpeg4v2", "raw.avi": "-c:v rawvideo",
    "mpeg2.mpg": "-c:v mpeg2video", "mpeg2.mxf": "-c:v mpeg2video -r 25", "flv1.flv": "-c:v flv", "theora.ogv": "-c:v libtheora",
    "wmv2.wmv": "-c:v wmv2", "rv20.rm": "-c:v rv20 -s 176x144", "h263.3gp": "-c:v h263 -s 176x144", "dv.dv": "-s 720x576 -r 25 -pix_fmt yuv420p",
    "mpeg4.m4v": "-c:v mpeg4", "snow.nut": "-c:v ffv1", "plain.y4m": "-pix_fmt yuv420p", "any.gif": "", "any.apng": "-f apng",
}  # fmt: skip
RATES = ("1", "24000/1001", "25", "30000/1001", "30", "60000/1001", "240")
SIZES = ("1x1", "2x2", "3x5", "641x359", "8192x16", "16x8192", "4096x4096", "8192x8192")
# ffmpeg filters that store the picture such that turning it clockwise by that many degrees shows it upright.
TURNS = {0: "null", 90: "transpose=2", 180: "hflip,vflip", 270: "transpose=1"}
DAMAGED = ("h264.mp4", "vp9.webm", "mpeg4.avi", "h264.ts", "h264.mkv", "any.gif")
# Longer than anybody waits. It must end, because a process that waits for a read cannot be killed.
HANGING_SECONDS = 8
# Texts that refer to other files. Each is also put before a real MPEG-TS, which demuxers find at any offset.
TEXTS = {
    "edl": ("# mpv EDL v0\n", "{}\n", ""),
    "m3u": ("#EXTM3U\n", "#EXTINF:1,\n{}\n", ""),
    "hls": ("#EXTM3U\n#EXT-X-VERSION:3\n#EXT-X-TARGETDURATION:1\n", "#EXTINF:1,\n{}\n", "#EXT-X-ENDLIST\n"),
    "ffconcat": ("ffconcat version 1.0\n", "file '{}'\n", ""),
    "cue": ("", 'FILE "{}" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n', ""),
    "pls": ("[playlist]\n", "File1={}\n", ""),
    "dash": ('<?xml version="1.0"?>\n<MPD xmlns="urn:mpeg:dash:schema:mpd:2011" type="static"><Period>', '<AdaptationSet mimeType="video/mp4">'
             '<Representation id="1" bandwidth="1"><BaseURL>{}</BaseURL></Representation></AdaptationSet>', "</Period></MPD>\n"),
    "plain": ("", "{}\n", ""),
}  # fmt: skip


class Openings:
    """How often a file has been opened since the last call."""

    IN_OPEN, SIZE = 0x20, 16  # of inotify(7): the event, and the size of one without a name

    def __init__(self, path):
        libc = ctypes.CDLL(None)
        # A file object, which is closed automatically, because a user may have only a few of these descriptors.
        self.events = os.fdopen(libc.inotify_init1(os.O_NONBLOCK), "rb", buffering=0)
        libc.inotify_add_watch(self.events.fileno(), os.fsencode(path), self.IN_OPEN)

    def count(self):
        return len(self.events.read(65536) or b"") // self.SIZE


class Canary:
    """A video and an address that are only reached through a file that refers to them."""

    def __init__(self, kept, folder):
        self.file = folder / "canary.mp4"
        self.file.write_bytes((kept / "h264.mp4").read_bytes())
        self.server = socket.create_server(("127.0.0.1", 0))
        self.server.setblocking(False)
        self.address = f"http://127.0.0.1:{self.server.getsockname()[1]}/canary.mp4"
        self.openings = Openings(self.file)
        self.file.read_bytes()
        socket.create_connection(self.server.getsockname()).close()
        assert len(self.touched()) == 2, "the canary sees nothing"

    def touched(self):
        """Which of them were accessed since the last call."""
        seen = ["opens another file"] if self.openings.count() else []
        with contextlib.suppress(BlockingIOError):
            while True:
                self.server.accept()[0].close()
                seen.append("makes a connection")
        return seen


def encode(path, options, size="64x48", rate="30", frames=9, filters="null"):
    if not path.exists() or path.stat().st_mtime < os.stat(__file__).st_mtime:
        source = f"testsrc2=s={size}:r={rate},{filters}"
        command = ["ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i", source, "-frames:v", str(frames)]
        subprocess.run([*command, *options.split(), str(path)], check=True, timeout=120)
    return path


def turned(kept):
    """Videos of the quadrants that are upright only if their rotation is applied."""
    for degrees, filters in TURNS.items():
        stored, path = kept / f"stored {degrees}.mp4", kept / f"turned {degrees}.mp4"
        encode(stored, H264, "640x360", frames=60, filters=QUADRANTS.split(",", 1)[1] + "," + filters)
        yield turn_clip(stored, path, degrees)


def sound(kept):
    """Videos that must be played."""
    for name, options in CODECS.items():
        yield encode(kept / name, options)
    for rate in RATES:
        yield encode(kept / f"rate {rate.replace('/', ' of ')}.mp4", H264, rate=rate, frames=2 if rate == "1" else 9)
    yield encode(kept / "variable rate.mkv", H264 + " -fps_mode vfr", filters="setpts=N*N/(300*TB)")
    for frames in (1, 300):
        yield encode(kept / f"frames {frames}.mp4", H264, rate="240", frames=frames)


def large(kept):
    """Videos of unusual sizes, which may be refused."""
    for size in SIZES:
        scaled = "format=yuv444p,scale=" + size.replace("x", ":")
        yield encode(kept / f"size {size}.mkv", "-c:v libx264 -preset ultrafast", frames=3, filters=scaled)
        yield encode(kept / f"size {size}.mov", "-c:v png", frames=1, filters=scaled)
    # One pixel per frame, on a canvas of 16000x16000 pixels.
    picture = b"!\xf9\x04\x00\x0a\x00\x00\x00" + b"," + struct.pack("<4HB", 0, 0, 1, 1, 0) + b"\x02\x02\x44\x01\x00"
    canvas = b"GIF89a" + struct.pack("<HHBBB", 16000, 16000, 0x80, 0, 0) + b"\0\0\0\xff\xff\xff"
    (kept / "canvas.gif").write_bytes(canvas + 9 * picture + b";")
    yield kept / "canvas.gif"


def damaged(kept, folder):
    """Files with random damage, different in each run."""
    for name in DAMAGED:
        whole = (kept / name).read_bytes()
        flipped = bytearray(whole)
        for _ in range(len(whole) // 200 + 1):
            flipped[random.randrange(len(whole))] ^= 1 << random.randrange(8)
        for kind, content in (("cut", whole[: random.randrange(len(whole))]), ("flipped", flipped)):
            path = folder / f"{kind} {name}"
            path.write_bytes(content)
            yield path


def disguised(kept, folder, canary):
    """Texts that refer to the canary, in files with the suffixes of videos."""
    lines = (kept / "h264.ts").read_bytes()
    # Made one long comment line; it does not matter what that damages in the picture.
    stream = b"#" + lines.replace(b"\n", b"\v")
    for name, (head, entry, tail) in TEXTS.items():
        targets = (canary.file.name, canary.file, canary.file.as_uri(), canary.address)
        text = (head + "".join(entry.format(each) for each in targets) + tail).encode()
        for kind, content in (("text", text), ("stream", text + stream), ("raw stream", text + lines)):
            path = folder / f"{name} {kind}.mp4"
            path.write_bytes(content)
            yield path


def special(folder):
    """Everything that is not a regular file with contents."""
    paths = [folder / f"{name}.mp4" for name in ("fifo", "folder", "device", "socket", "dangling", "loop", "empty", "nothing")]
    fifo, directory, device, listening, dangling, loop, empty, _ = paths
    os.mkfifo(fifo)
    directory.mkdir()
    device.symlink_to("/dev/zero")
    socket.socket(socket.AF_UNIX).bind(os.path.relpath(listening))
    dangling.symlink_to(folder / "nowhere")
    loop.symlink_to(loop)
    empty.touch()
    yield from paths


@contextlib.contextmanager
def hanging(folder):
    """Files that do not answer: one hangs when it is read, the other when its status is. None without FUSE."""
    place = folder / "hanging"
    place.mkdir()
    server = subprocess.Popen(["/usr/bin/python3", __file__, place], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    try:
        mounted = server.stdout.readline() == b"mounted\n"
        yield [place / "read.mp4", place / "look.mp4"] if mounted else []
    finally:
        # When the server ends, the processes that wait for it get an error.
        server.kill()
        server.wait()
        subprocess.run(["umount", "--lazy", place], check=False, capture_output=True)


def serve_hanging(place):
    import fusepy

    def hang():
        time.sleep(HANGING_SECONDS)
        raise fusepy.FuseOSError(errno.EIO)

    class Hanging(fusepy.Operations):
        def init(self, path):
            print("mounted", flush=True)

        def getattr(self, path, fh=None):
            if path == "/look.mp4":
                hang()
            return {"st_mode": 0o40755 if path == "/" else 0o100644, "st_nlink": 1, "st_size": 0 if path == "/" else 10**6}

        def read(self, path, size, offset, fh):
            hang()

    fusepy.FUSE(Hanging(), place, foreground=True)


if __name__ == "__main__":
    serve_hanging(sys.argv[1])
