"""Rebuilding the playlist from a library of many rows."""

import statistics
import subprocess

from measure import Row


def measure(context):
    seconds, references = {}, {}
    for _ in range(context.rounds):
        output = subprocess.run(
            [context.build / "bin" / "playlist_bench"], check=True, capture_output=True, text=True
        ).stdout
        for rows, ours, reference in (line.split() for line in output.splitlines()):
            seconds.setdefault(int(rows), []).append(float(ours))
            references.setdefault(int(rows), []).append(float(reference))
    few, many = sorted(seconds)
    ratio = statistics.median(a / b for a, b in zip(seconds[many], references[many]))
    per_row = statistics.median(a * few / (b * many) for a, b in zip(seconds[many], seconds[few]))
    form = lambda values: f"{1000 * statistics.median(values):.0f} ms"
    return [
        Row(f"playlist of {many} rows / bare SQLite", form(seconds[many]), form(references[many]), ratio, 2.0),
        Row(f"playlist: time a row, {many} / {few} rows", form(seconds[many]), form(seconds[few]), per_row, 1.25),
    ]
