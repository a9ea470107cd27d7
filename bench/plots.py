#!/usr/bin/env python3
"""Draws the figures of docs/PERFORMANCE.md: nodes per second by position, and the steps.

    bench/plots.py PEERS.tsv [--steps FILE] [--folder DIRECTORY]

PEERS.tsv is what bench/peers.py --tsv writes (engine, position, nodes per second); FILE has a row
for each step: instructions a node, a tab, what it was (bench/steps.tsv). Writes speed-peers.png and
speed-steps.png. Needs python3-matplotlib.
"""

import argparse
import csv
import os

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (the backend has to be chosen first)

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def rows_of(path):
    with open(path, newline="", encoding="utf-8") as file:
        return [row for row in csv.reader(file, delimiter="\t") if row and row[0][0] != "#"]


def draw_peers(rows, path):
    speeds = {}
    for engine, position, nodes in rows:
        speeds.setdefault(engine, []).append((int(position), int(nodes) / 1e6))
    figure, axes = plt.subplots(figsize=(8, 4.5))
    for engine, points in speeds.items():
        points.sort()
        axes.plot([p for p, _ in points], [n for _, n in points], marker="o", label=engine)
    axes.set_yscale("log")
    axes.set_yticks([0.5, 1, 2, 5, 10], labels=["0.5", "1", "2", "5", "10"])
    axes.set_xticks(sorted({int(row[1]) for row in rows}))
    axes.set_xlabel("position")
    axes.set_ylabel("million nodes per second")
    axes.grid(alpha=0.3)
    axes.legend(fontsize="small", ncols=4, loc="upper center", bbox_to_anchor=(0.5, 1.18))
    figure.savefig(path, dpi=110, bbox_inches="tight")


def draw_steps(rows, path):
    figure, axes = plt.subplots(figsize=(8, 0.4 * len(rows) + 1))
    names = [name for _, name in rows]
    counts = [int(count) for count, _ in rows]
    bars = axes.barh(names, counts)
    axes.bar_label(bars, padding=3, labels=[f"{count:,}" for count in counts])
    axes.invert_yaxis()
    axes.margins(x=0.12)
    axes.set_xlabel("instructions a node")
    figure.savefig(path, dpi=110, bbox_inches="tight")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("peers", metavar="PEERS.tsv")
    parser.add_argument("--steps", default=os.path.join(ROOT, "bench", "steps.tsv"))
    parser.add_argument("--folder", default=os.path.join(ROOT, "docs"))
    options = parser.parse_args()
    draw_peers(rows_of(options.peers), os.path.join(options.folder, "speed-peers.png"))
    draw_steps(rows_of(options.steps), os.path.join(options.folder, "speed-steps.png"))


if __name__ == "__main__":
    main()
