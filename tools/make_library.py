#!/usr/bin/python3
"""Makes the template library: make_library.py SCHEMA.sql DATABASE FOLDER VIDEO...

VIDEO is a file, described by ffprobe; FOLDER is where it will be found when the agent runs.
"""

import hashlib
import json
import pathlib
import sqlite3
import subprocess
import sys
import urllib.parse


def probe(video: pathlib.Path) -> dict:
    command = ["ffprobe", "-v", "error", "-show_streams", "-show_format", "-of", "json", str(video)]
    return json.loads(subprocess.run(command, check=True, capture_output=True).stdout)


def row(number: int, video: pathlib.Path, folder: pathlib.Path) -> dict:
    facts = probe(video)
    picture = next(stream for stream in facts["streams"] if stream["codec_type"] == "video")
    counter, denominator = (int(part) for part in picture["r_frame_rate"].split("/"))
    values = {
        "vid": number,
        "sign": hashlib.sha256(video.read_bytes()).hexdigest()[:32],
        "title": video.stem.capitalize(),
        "url": "file://" + urllib.parse.quote(str(folder / video.name)),
        "time": round(float(facts["format"]["duration"])),
        "size": video.stat().st_size,
        "ratio": "16:9",
        "width": picture["width"],
        "height": picture["height"],
        "frame": int(picture["nb_frames"]),
        "rate": round(counter / denominator),
        "audio": int(any(stream["codec_type"] == "audio" for stream in facts["streams"])),
        "author": "QuilexHelper",
    }
    return values


def main() -> int:
    schema, database, folder = (pathlib.Path(argument) for argument in sys.argv[1:4])
    videos = [pathlib.Path(argument) for argument in sys.argv[4:]]
    unfinished = database.with_suffix(".new")
    unfinished.unlink(missing_ok=True)
    connection = sqlite3.connect(unfinished)
    connection.executescript(schema.read_text(encoding="utf-8"))
    for number, video in enumerate(videos, start=1):
        values = row(number, video, folder)
        columns = ", ".join(f'"{name}"' for name in values)
        marks = ", ".join("?" for _ in values)
        connection.execute(f"insert into LocalVideos ({columns}) values ({marks})", tuple(values.values()))
    connection.commit()
    connection.close()
    unfinished.replace(database)
    return 0


if __name__ == "__main__":
    sys.exit(main())
