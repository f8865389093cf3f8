#!/usr/bin/env python3
"""Prints the ratios of one run of the benchmarks as a Markdown table.

table.py FOLDER, where scripts/bench has put times.json, pairs-*.json, memory.json, starts.txt and
stripped.so.
"""

import json
import math
import os
import pathlib
import statistics
import sys

FULL = 999
QUARTER = 250

# Operation, reference, at most how many times the reference.
RATIOS = [
    ("History_load", "StreamReader_history", 1.5),
    ("Bookmarks_load", "StreamReader_bookmarks", 1.5),
    ("History_save", "StreamWriter_history", 1.1),
    ("History_visit", "Sqlite_visit", 0.5),
    ("History_visit_systemLog", "Sqlite_visit", 1.5),
    ("Bookmarks_list", "StreamReader_history", 1 / 8),
    ("History_list", "StreamReader_history", 1 / 8),
    ("Fonts_list", "StreamReader_history", 1 / 8),
    ("Credentials_list", "StreamReader_history", 1 / 8),
    ("Lookup_lastId", "PlainLookup_lastId", None),
    ("Count_history", "PlainCount_history", None),
    ("History_load", "DomDocument_load", None),
    ("History_save", "DomDocument_save", None),
]

# Operations whose cost must not grow faster than the number of entries to this power.
GROWTH = ["History_load", "Bookmarks_load", "History_save", "History_visit", "History_list",
          "Bookmarks_list", "Fonts_list", "Credentials_list"]
MOST_GROWTH = 1.15

# As many operations as there are entries, each of which renumbers those before it.
GROWTH_OF_SERIES = ["Credentials_setAll"]


def measured(path):
    """The times in nanoseconds of each measurement, by name and size."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    unit = {"ns": 1, "us": 1e3, "ms": 1e6}
    times = {}
    for run in runs:
        if run["run_type"] == "iteration":
            times.setdefault(run["run_name"], []).append(run["real_time"] * unit[run["time_unit"]])
    return times


def measured_in_pairs(folder, kind, counter):
    """What was measured as two things right after each other, by the name of the operation."""
    results = {}
    for path in folder.glob(f"pairs-*_{kind}.json"):
        with open(path, encoding="utf-8") as file:
            runs = json.load(file)["benchmarks"]
        results[path.stem[len("pairs-"):-len(f"_{kind}")]] = statistics.median(
            run[counter] for run in runs if run["run_type"] == "iteration")
    return results


def growth(times, name):
    """The power of the number of entries that the time of an operation grows with."""
    ratio = times[f"{name}/{FULL}"] / times[f"{name}/{QUARTER}"]
    return math.log(ratio) / math.log(FULL / QUARTER)


def verdict(value, limit):
    return "yes" if value <= limit else "**no**"


def row(*cells):
    print("| " + " | ".join(cells) + " |")


def main():
    if len(sys.argv) != 2:
        print("table.py: give the folder with the results", file=sys.stderr)
        sys.exit(2)
    folder = pathlib.Path(sys.argv[1])
    times = {name: statistics.median(of_one)
             for name, of_one in measured(folder / "times.json").items()}
    with open(folder / "memory.json", encoding="utf-8") as file:
        memory = json.load(file)

    # Other work on the machine, which comes and goes, adds to both of a pair alike: what has a
    # limit is measured so too, and held to it.
    row("at 999 entries", "median", "reference", "its median", "ratio", "in pairs", "at most", "met")
    row(*["---"] * 8)
    pairs = measured_in_pairs(folder, "inPairs", "ratio")
    for name, reference, limit in RATIOS:
        mine, other = times[f"{name}/{FULL}"], times[f"{reference}/{FULL}"]
        cells = [name, f"{mine / 1e3:.2f} us", reference, f"{other / 1e3:.2f} us",
                 f"{mine / other:.3f}"]
        if limit is None:
            row(*cells, "", "", "")
        else:
            row(*cells, f"{pairs[name]:.3f}", f"{limit:g}", verdict(pairs[name], limit))
    print()
    row("growth from 250 to 999 entries", "exponent", "in pairs", "at most", "met")
    row(*["---"] * 5)
    pairs = measured_in_pairs(folder, "growth", "exponent")
    for name in GROWTH:
        row(name, f"{growth(times, name):.2f}", f"{pairs[name]:.2f}", f"{MOST_GROWTH}",
            verdict(pairs[name], MOST_GROWTH))
    for name in GROWTH_OF_SERIES:
        row(name, f"{growth(times, name):.2f}", "", "", "")
    print()
    row("size", "bytes", "ratio to the file", "at most", "met")
    row(*["---"] * 5)
    file_bytes = memory["fileBytes"]
    for name, label in (("loadedBytes", "heap right after loading 999 visits"),
                        ("settledBytes", "the same, deferred deletions done")):
        ratio = memory[name] / file_bytes
        row(label, str(memory[name]), f"{ratio:.2f}", "8", verdict(ratio, 8))
    # The smallest piece of heap that a round could leave behind takes 32 bytes.
    least = memory["rounds"] * 32
    row(f"heap growth over {memory['rounds']} rounds of load, change, save",
        str(memory["growthBytes"]), "", f"under {least}", verdict(memory["growthBytes"], least - 1))
    stripped = os.path.getsize(folder / "stripped.so")
    row("stripped library", str(stripped), "", "409600", verdict(stripped, 400 * 1024))
    print()
    with open(folder / "starts.txt", encoding="utf-8") as file:
        start = statistics.median(int(line) for line in file)
    row("start", "median", "at most", "met")
    row(*["---"] * 4)
    row("loading the library where Qt is loaded", f"{start / 1e3:.0f} us", "1000 us",
        verdict(start, 1e6))


if __name__ == "__main__":
    main()
