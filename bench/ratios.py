#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Compares the benchmarks with their baselines and limits: ratios.py RESULTS.json"""

import json
import statistics
import sys

SIZES = (63, 4000, 300000)
HOSTILE = ("spaces", "property_keys", "time_starts", "brackets", "cjk")


def times(results):
    """The median of the repetitions of each benchmark, in ns."""
    unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    runs = {}
    for run in results["benchmarks"]:
        if run["run_type"] == "iteration":
            name = run["run_name"].split("/iterations:")[0]
            runs.setdefault(name, []).append(run["cpu_time"] * unit[run["time_unit"]])
    return {name: statistics.median(values) for name, values in runs.items()}


def rows(results):
    """(what, measured, limit) for every ratio and figure; the limit may be None."""
    time = times(results)
    for size in SIZES:
        for name, base, limit in (
            ("build", "build_baseline", 1.4),
            ("build_preview", "build", 1.5),
            ("preview_tags", "preview_tags_baseline", 1.5),
            ("preview_bare", "preview_bare_baseline", 1.5),
            ("serialise", "serialise_baseline", None),
            ("delete_set", "delete_set_baseline", None),
        ):
            yield f"{name} / {base}, {size} lines", time[f"{name}/{size}"] / time[f"{base}/{size}"], limit
    yield "build, per line, 300000 lines / 63 lines", time["build/300000"] / 300000 / (time["build/63"] / 63), 1.5
    usual = time["usual/256"] / (256 * 1024)
    for name in HOSTILE:
        at = {size: time[f"hostile_{name}/{size}"] for size in (64, 256)}
        yield f"{name}, 256 KiB / 64 KiB", at[256] / at[64], 4.5
        yield f"{name}, per character / usual lyric", at[256] / (256 * 1024) / usual, 4
    yield "delete 50,000 of 100,000 lines, ms", time["delete_set/100000"] / 1e6, 5
    memory = [run["bytes_per_line"] for run in results["benchmarks"] if "bytes_per_line" in run]
    yield "bytes per line besides the text, 300000 lines", max(memory), 200


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        results = json.load(file)
    print(f"{'':52}{'measured':>10}{'limit':>8}")
    for what, measured, limit in rows(results):
        verdict = "" if limit is None else f"{limit:8}" + ("" if measured <= limit else "  over")
        print(f"{what:52}{measured:10.2f}{verdict}")
    for size in SIZES:
        print(f"{f'build, ns per line, {size} lines':52}{times(results)[f'build/{size}'] / size:10.1f}")


if __name__ == "__main__":
    main()
