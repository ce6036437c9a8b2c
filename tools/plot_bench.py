#!/usr/bin/python3
"""Turns the CSV of scroll2d_bench into the plots of docs/performance.md.

usage: plot_bench.py FILE.csv [FOLDER]      FOLDER defaults to docs/performance
"""

import argparse
import csv
import math
import pathlib
import sys
from collections import defaultdict

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (after the choice of a backend that needs no window)

PEERS = ("SDL2", "pixman", "SDL2 run-length")
COLOURS = {"module": "#1b6ca8", "SDL2": "#d1603d", "pixman": "#7a9e3c", "SDL2 run-length": "#b99ac7"}


def geometric_mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def read(path):
    """The measurements as dictionaries, numbers converted."""
    with open(path, newline="") as file:
        rows = list(csv.DictReader(file))
    for row in rows:
        for key in ("bits_per_pixel", "width", "height"):
            row[key] = int(row[key])
        for key in ("microseconds", "ratio"):
            row[key] = float(row[key])
    return rows


def save(figure, path):
    figure.savefig(path, metadata={"Date": None})


def scenes(rows):
    """The moving scenes that were drawn: what they are, and the microseconds of each contender."""
    drawn = defaultdict(dict)
    for row in rows:
        if row["part"] == "draw" and row["value"] != "still":
            key = tuple(row[name] for name in ("pictures", "family", "bits_per_pixel", "variant", "width", "value"))
            drawn[key][row["contender"]] = row["microseconds"]
    return drawn


def by_family(drawn, figure):
    """{(family, depth): {column: [ratio, ...]}} of the pairs (column, ratio) that `figure` gives for a scene."""
    figures = defaultdict(lambda: defaultdict(list))
    for (pictures, family, depth, *_), times in drawn.items():
        for column, ratio in figure(pictures, times):
            figures[family, depth][column].append(ratio)
    return figures


def family_lines(figures):
    """Families in the table's order, all depths of a family together."""
    order = list(dict.fromkeys(family for family, _ in figures))
    order.sort(key=lambda family: min(depth for name, depth in figures if name == family))
    return sorted(figures, key=lambda line: (order.index(line[0]), line[1]))


def set_ratios(axes, ticks, label):
    axes.set_xscale("log")
    axes.set_xticks(ticks, map(str, ticks))
    axes.minorticks_off()
    axes.grid(axis="x", alpha=0.4)
    axes.set_xlabel(label)


def set_families(axes, lines):
    axes.set_yticks(range(len(lines)), [f"{family}, {depth} bits" for family, depth in lines])
    axes.set_ylim(len(lines) - 0.5, -0.5)


def plot_kinds(rows, folder):
    """The module on each kind of pictures: one panel over memcpy of the view, one over the straight loops."""
    drawn = scenes(rows)
    bases = [base for base in ("memcpy", "straight") if any(base in times for times in drawn.values())]
    if not bases:
        return
    figure, panels = plt.subplots(1, len(bases), figsize=(6 * len(bases), 8), sharey=True, squeeze=False,
                                  layout="constrained")
    colours = plt.get_cmap("viridis")
    for panel, base in zip(panels.flat, bases):
        figures = by_family(drawn, lambda pictures, times: [(pictures, times["module"] / times[base])])
        lines = family_lines(figures)
        kinds = list(dict.fromkeys(pictures for pictures, *_ in drawn))
        for number, kind in enumerate(kinds):
            points = [(geometric_mean(figures[line][kind]), y) for y, line in enumerate(lines) if figures[line][kind]]
            panel.plot(*zip(*points), "o", color=colours(number / max(1, len(kinds) - 1)), alpha=0.8, label=kind)
        set_families(panel, lines)
    set_ratios(panels[0, 0], [1, 1.5, 2, 3, 4, 6], "time / memcpy of the view")
    if len(bases) == 2:
        set_ratios(panels[0, 1], [0.7, 0.8, 0.9, 1, 1.1], "time / that of the straight loops")
        panels[0, 1].axvline(1, color="black", linewidth=0.8)
    panels[0, 0].legend(loc="upper right", title="pictures")
    save(figure, folder / "kinds.svg")


def plot_drawing(rows, folder):
    """Module and peers over memcpy of the view: one line per family and depth, over every kind of pictures."""
    contenders = ("module", *PEERS)

    def figure_of(_, times):
        return [(name, times[name] / times["memcpy"]) for name in contenders if name in times]

    beside_peers = {key: times for key, times in scenes(rows).items() if any(peer in times for peer in PEERS)}
    figures = by_family(beside_peers, figure_of)
    if not figures:
        return
    lines = family_lines(figures)
    figure, axes = plt.subplots(figsize=(9, 0.3 * len(lines) + 1.4), layout="constrained")
    for contender in contenders:
        points = [(figures[line][contender], y) for y, line in enumerate(lines) if figures[line][contender]]
        if points:
            axes.plot([geometric_mean(ratios) for ratios, _ in points], [y for _, y in points], "o",
                      color=COLOURS[contender], label=contender)
        if contender == "module":
            for ratios, y in points:
                axes.plot([min(ratios), max(ratios)], [y, y], color=COLOURS[contender], linewidth=2, alpha=0.5)
    set_families(axes, lines)
    set_ratios(axes, [1, 2, 3, 5, 10, 20, 50, 100], "time / memcpy of the view")
    axes.set_title("Geometric means; the module's line reaches from its best scene to its worst", fontsize="medium")
    axes.legend(loc="upper right", ncols=2)
    save(figure, folder / "drawing.svg")


def plot_moves(rows, folder):
    """Cost of a move in refills over the pixels moved, one panel per direction."""
    lines = defaultdict(list)
    for row in rows:
        if row["part"] == "move" and row["contender"] == "module" and row["value"] != "0":
            stage = f"{row['width']}x{row['height']}, {row['bits_per_pixel']} bits"
            lines[row["variant"], stage].append((int(row["value"]), row["ratio"]))
    if not lines:
        return
    directions = list(dict.fromkeys(direction for direction, _ in lines))
    stages = list(dict.fromkeys(stage for _, stage in lines))
    colours = plt.get_cmap("tab10").colors
    figure, panels = plt.subplots(2, 3, figsize=(12, 7), sharey=True, layout="constrained")
    for panel, direction in zip(panels.flat, directions):
        for colour, stage in zip(colours, stages):
            points = lines[direction, stage]
            panel.plot(*zip(*points), color=colour, marker=".", label=stage)
        panel.axhline(1, color="black", linewidth=0.8)
        panel.set_title(direction)
        panel.set_xscale("log", base=2)
        panel.grid(alpha=0.3)
        panel.set_xlabel("pixels moved")
    panels[0, 0].set_ylim(bottom=0)  # shared, so only once every line is there
    for panel in panels[:, 0]:
        panel.set_ylabel("cost / refill")
    legend = panels.flat[-1]
    legend.axis("off")
    legend.legend(*panels.flat[0].get_legend_handles_labels(), loc="center")
    save(figure, folder / "moves.svg")


def plot_growth(rows, folder):
    """Microseconds of a frame over each thing that can grow, with the line of proportion."""
    series = defaultdict(list)
    for row in rows:
        if row["part"] == "growth":
            value = row["value"]
            size = math.prod(map(int, value.split("x"))) if "x" in value else int(value)
            series[row["family"]].append((size, row["microseconds"]))
    if not series:
        return
    figure, panels = plt.subplots(2, 2, figsize=(9, 6.5), layout="constrained")
    for panel, (what, points) in zip(panels.flat, series.items()):
        empty = sum(time for size, time in points if size == 0)  # a frame without any of the counted things
        points = [(size, time - empty) for size, time in points if size > 0]
        panel.plot(*zip(*points), color=COLOURS["module"], marker="o")
        if what != "size of the map":
            first, last = points[0], points[-1]
            panel.plot([first[0], last[0]], [first[1], first[1] * last[0] / first[0]], "--", color="grey",
                       label="in proportion to the first")
            panel.legend()
        panel.set_xscale("log")
        panel.set_yscale("log")
        if what == "size of the map":
            panel.set_ylim(points[0][1] / 10, points[0][1] * 10)
        panel.set_xlabel(what + (", pixels" if what == "size of the map" else ""))
        panel.set_ylabel("microseconds a frame" + (", less those of none" if empty else ""))
        panel.grid(alpha=0.3)
    save(figure, folder / "growth.svg")


def plot_frames(rows, folder):
    """Microseconds of a whole frame, one bar per game and depth, made of its steps."""
    frames = defaultdict(dict)
    for row in rows:
        if row["part"] == "frame":
            line = f"{row['family']} {row['width']}x{row['height']}, {row['bits_per_pixel']} bits"
            frames[line][row["value"]] = row["microseconds"]
    if not frames:
        return
    figure, axes = plt.subplots(figsize=(9, 0.45 * len(frames) + 1.2), layout="constrained")
    reached = [0.0] * len(frames)
    for step, colour in zip(next(iter(frames.values())), plt.get_cmap("Set2").colors):
        times = [steps[step] for steps in frames.values()]
        axes.barh(range(len(frames)), times, left=reached, color=colour, label=step)
        reached = [end + time for end, time in zip(reached, times)]
    axes.set_yticks(range(len(frames)), list(frames))
    axes.invert_yaxis()
    axes.set_xlabel("microseconds of a frame")
    axes.grid(axis="x", alpha=0.4)
    axes.set_axisbelow(True)
    axes.legend(loc="upper center", bbox_to_anchor=(0.45, 1.22), ncols=7, frameon=False)
    save(figure, folder / "frames.svg")


def main():
    parser = argparse.ArgumentParser(description="Plots the CSV of scroll2d_bench.")
    parser.add_argument("csv", type=pathlib.Path, help="written by scroll2d_bench --csv")
    root = pathlib.Path(__file__).resolve().parent.parent
    parser.add_argument("folder", type=pathlib.Path, nargs="?", default=root / "docs" / "performance")
    arguments = parser.parse_args()
    # The same small file from the same figures.
    matplotlib.rcParams.update({"svg.hashsalt": "scroll2d", "svg.fonttype": "none"})
    try:
        rows = read(arguments.csv)
    except (OSError, KeyError, ValueError) as error:
        sys.exit(f"plot_bench: {arguments.csv} cannot be read: {error}")
    arguments.folder.mkdir(parents=True, exist_ok=True)
    plot_kinds(rows, arguments.folder)
    plot_drawing(rows, arguments.folder)
    plot_moves(rows, arguments.folder)
    plot_growth(rows, arguments.folder)
    plot_frames(rows, arguments.folder)


if __name__ == "__main__":
    main()
