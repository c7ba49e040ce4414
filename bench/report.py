#!/usr/bin/python3
"""Prints what the benchmarks measured, and writes it down.

    report.py [--write DOCS] [--run FILE] JSON...

The files are what Google Benchmark writes, with repetitions. Prints case, ours, the best peer and the ratio, and how
cost grows: the exponent of a power of the size that fits our three medians. With --write, DOCS/benchmarks.md gets the
tables between its marks, and DOCS/benchmarks the charts.
"""

import argparse
import collections
import csv
import json
import math
import pathlib
import statistics

HERE = pathlib.Path(__file__).parent
OURS = "kora"


def medians(files):
    """Nanoseconds of one operation: {case: {who: {size: median over the repetitions}}}."""
    times = collections.defaultdict(lambda: collections.defaultdict(lambda: collections.defaultdict(list)))
    context = {}
    for file in files:
        text = pathlib.Path(file).read_text()
        if not text:  # no case of this program was wanted
            continue
        run = json.loads(text)
        context = context or run["context"]
        for row in run["benchmarks"]:
            if row.get("run_type") == "aggregate":
                continue
            if row.get("error_occurred"):
                raise SystemExit(f"{row['name']}: {row['error_message']}")
            case, who, size = row["run_name"].split("/repeats")[0].split(" ")
            each = 1e9 / row["items_per_second"] if "items_per_second" in row else row["real_time"]
            times[case][who][int(size.split("/")[0])].append(each)
    return context, {
        case: {who: {size: statistics.median(all) for size, all in sizes.items()} for who, sizes in whos.items()}
        for case, whos in times.items()
    }


def exponent(sizes):
    """The slope of the line through the logarithms."""
    points = [(math.log(size), math.log(time)) for size, time in sizes.items()]
    x, y = (statistics.mean(values) for values in zip(*points))
    return sum((a - x) * (b - y) for a, b in points) / sum((a - x) ** 2 for a, _ in points)


def readable(nanoseconds):
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= scale:
            return f"{nanoseconds / scale:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


Row = collections.namedtuple("Row", "case what unit goal must ours peer best ratio growth")


def rows(cases, times):
    for case in cases:
        if case["case"] not in times:
            continue
        whos = times[case["case"]]
        size = int(case["size"])
        peer, best = min(((who, at[size]) for who, at in whos.items() if who != OURS), key=lambda pair: pair[1])
        ours = whos[OURS]
        yield Row(case["case"], case["what"], case["unit"], float(case["goal"]), case["must"], ours[size], peer, best,
                  ours[size] / best, exponent(ours))


def print_table(all):
    print(f"{'case':34} {'ours':>9} {'best peer':>9}  {'':24} {'ratio':>6} {'goal':>6}  {'growth':>6}")
    for row in all:
        verdict = "" if row.ratio <= row.goal else "missed, must" if row.must else "missed"
        print(f"{row.case:34} {readable(row.ours):>9} {readable(row.best):>9}  {row.peer:24} {row.ratio:6.2f} "
              f"{row.goal:6.2f}  {row.growth:6.2f}  {verdict}")


def markdown(all):
    yield "| case | what | ours | best peer | | ratio | goal | growth |"
    yield "|---|---|---|---|---|---|---|---|"
    for row in all:
        mark = "**" if row.ratio > row.goal else ""
        goal = f"{row.goal:g}" + (" must" if row.must else "")
        yield (f"| `{row.case}` | {row.what} | {readable(row.ours)} | {readable(row.best)} | {row.peer} | "
               f"{mark}{row.ratio:.2f}{mark} | {goal} | {row.growth:.2f} |")


def charts(folder, all, times, cases):
    import matplotlib
    matplotlib.use("svg")
    import matplotlib.pyplot as plot
    plot.rcParams.update({"svg.hashsalt": "kora", "svg.fonttype": "none", "font.size": 9})
    folder.mkdir(exist_ok=True)
    save = {"metadata": {"Date": None}, "bbox_inches": "tight"}

    figure, axes = plot.subplots(figsize=(8, 0.26 * len(all) + 1))
    places = range(len(all))
    axes.barh(places, [row.ratio for row in all], color=["#4878a8" if row.ratio <= row.goal else "#c8553d" for row in all])
    axes.scatter([row.goal for row in all], places, marker="|", s=90, color="black", label="goal", zorder=3)
    axes.axvline(1, color="gray", linewidth=0.8)
    axes.set_yticks(places, [row.case for row in all])
    axes.invert_yaxis()
    axes.set_xscale("log")
    axes.set_xlabel("our time divided by the best peer's; left is faster")
    axes.legend(loc="lower right")
    figure.savefig(folder / "ratios.svg", **save)
    plot.close(figure)

    across = 4
    figure, grid = plot.subplots(math.ceil(len(all) / across), across, figsize=(12, 2.1 * math.ceil(len(all) / across)))
    for axes in grid.flat[len(all):]:
        axes.remove()
    for axes, row in zip(grid.flat, all):
        for who, at in sorted(times[row.case].items(), key=lambda pair: pair[0] != OURS):
            axes.plot(at.keys(), at.values(), marker="o", markersize=3, label=who,
                      color="#4878a8" if who == OURS else None, linewidth=2 if who == OURS else 1)
        axes.set_xscale("log")
        axes.set_yscale("log")
        axes.set_title(row.case, fontsize=8)
        axes.set_xlabel(row.unit, fontsize=7)
        axes.tick_params(labelsize=6)
        axes.legend(fontsize=5)
    figure.supylabel("nanoseconds")
    figure.tight_layout()
    figure.savefig(folder / "growth.svg", **save)
    plot.close(figure)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("json", nargs="+")
    parser.add_argument("--write", type=pathlib.Path, metavar="DOCS")
    options = parser.parse_args()
    context, times = medians(options.json)
    cases = list(csv.DictReader((HERE / "cases.csv").open()))
    unknown = times.keys() - {case["case"] for case in cases}
    if unknown:
        raise SystemExit(f"not in cases.csv: {', '.join(sorted(unknown))}")
    all = list(rows(cases, times))
    print_table(all)
    if not options.write:
        return
    page = options.write / "benchmarks.md"
    before, _, rest = page.read_text().partition("<!-- measured -->\n")
    _, _, after = rest.partition("<!-- end -->\n")
    page.write_text(before + "<!-- measured -->\n" + "\n".join(markdown(all)) + "\n<!-- end -->\n" + after)
    charts(options.write / "benchmarks", all, times, cases)


if __name__ == "__main__":
    main()
