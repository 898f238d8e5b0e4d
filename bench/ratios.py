#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Compares the benchmarks with the floor, with each other and with limits: ratios.py RESULTS.json

Fails if a figure is over its limit."""

import json
import pathlib
import statistics
import sys

HUGE_PAGES = pathlib.Path("/sys/kernel/mm/transparent_hugepage/enabled")
HOSTILE = ("spaces", "property_keys", "time_starts")


def medians(results, figure):
    """The median of the repetitions of each benchmark."""
    runs = {}
    for run in results["benchmarks"]:
        if run["run_type"] == "iteration" and figure in run:
            runs.setdefault(run["run_name"].split("/iterations:")[0], []).append(run[figure])
    return {name: statistics.median(values) for name, values in runs.items()}


def rows(results, huge_pages):
    """(what, measured, limit) for every ratio and figure; the limit may be None."""
    cost = {name: 1e9 / rate for name, rate in medians(results, "items_per_second").items()}  # ns a line
    char = {name: 1e9 / rate for name, rate in medians(results, "chars_per_second").items()}
    for size, build, preview, text in (("songs", 2.6, 3.25, 0.15), ("big", 3.4 if huge_pages else 5.2, 5.1, 0.3)):
        edit = cost[f"edit/{size}"]
        yield f"{size}: build / floor", edit / cost[f"floor/{size}"], build
        yield f"{size}: import / build", cost[f"import/{size}"] / edit, 1.6
        yield f"{size}: preview's build / floor", cost[f"preview/{size}"] / cost[f"floor/{size}"], preview
        yield f"{size}: preview's build / build", cost[f"preview/{size}"] / edit, None
        yield f"{size}: updateSongText() / build", cost[f"build_update/{size}"] / edit - 1, 0.2
        yield f"{size}: preview's text / build", (cost[f"preview_text/{size}"] - cost[f"preview/{size}"]) / edit, text
    yield "one song of 63 lines / songs, a line", cost["edit/song"] / cost["edit/songs"], 0.8
    yield "big / one song of 63 lines, a line", cost["edit/big"] / cost["edit/song"], 2.9 if huge_pages else 4.4
    yield "big: delete half of the lines / build", cost["delete_half/big"] / cost["edit/big"], 1
    for name in HOSTILE:
        for size in (8, 32):
            ratio = char[f"hostile_{name}/{size}"] / char["usual/32"]
            yield f"{size} MiB of {name} / lyric, a character", ratio, 2
    memory = medians(results, "bytes_per_line")
    yield "bytes a line beside the text", memory["memory/edit"], 130
    yield "bytes a line beside the text, preview", memory["memory/preview"], 160
    for name in ("edit/song", "edit/songs", "edit/big", "floor/songs", "floor/big"):
        yield f"{name}, ns a line", cost[name], None


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        results = json.load(file)
    huge_pages = HUGE_PAGES.exists() and "[never]" not in HUGE_PAGES.read_text(encoding="ascii")
    print(f"huge pages: {'yes' if huge_pages else 'no'}\n{'':52}{'measured':>10}{'limit':>8}")
    over = False
    for what, measured, limit in rows(results, huge_pages):
        is_over = limit is not None and measured > limit
        over = over or is_over
        print(f"{what:52}{measured:10.2f}{'' if limit is None else f'{limit:8}'}{'  over' if is_over else ''}")
    sys.exit(over)


if __name__ == "__main__":
    main()
