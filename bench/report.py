#!/usr/bin/python3
"""Prints what the benchmarks measured, and writes it down.

    report.py [--host FILE] [--write DOCS] JSON...

The JSON is what Google Benchmark writes, with repetitions; FILE is what measure_host.py writes. Prints case, ours, the
best peer and the ratio, and how cost grows: the exponent of a power of the size that fits our three medians. With
--write, DOCS/benchmarks.md gets machine, date and tables between its marks, and DOCS/benchmarks the charts.
"""

import argparse
import collections
import csv
import json
import math
import pathlib
import platform
import re
import statistics
import subprocess

HERE = pathlib.Path(__file__).parent
OURS = "kora"
COLOUR = "#4878a8"
MISSED = "#c8553d"


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
        case: {who: {size: statistics.median(all) for size, all in sorted(sizes.items())}
               for who, sizes in whos.items()}
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


def host_table(host):
    bytes = {}
    for row in host["bytes"]:
        bytes.setdefault(row["name"], []).append(row)
    yield "| | ours | peer | |"
    yield "|---|---|---|---|"
    for name, (ours, peer) in bytes.items():
        yield f"| bytes of a {name} | {float(ours['each']):.0f} | {float(peer['each']):.0f} | {peer['who']} |"
    yield f"| `kora-host`, idle without modules, at most | {host['hostPeakKiB'] / 1024:.1f} MiB | | |"
    yield f"| the library, stripped | {host['libraryBytes'] / 1024:.0f} KiB | | |"
    for count, time in host["startMicroseconds"].items():
        yield f"| from exec to the first idle pass, {count} modules | {time / 1000:.2f} ms | | |"


def machine(context):
    model = re.search("model name\\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True).stdout.strip()
    caches = ", ".join(f"L{cache['level']} {cache['size'] // 1024} KiB" for cache in context["caches"]
                       if cache["type"] != "Instruction")
    yield (f"Measured on {context['date'][:10]}: {model[1] if model else platform.machine()}, {caches}, "
           f"{platform.freedesktop_os_release()['PRETTY_NAME']}, GCC {compiler} with `-O2`.")


def between(text, mark, lines):
    """The text with what stands between two marks replaced."""
    begin, end = f"<!-- {mark} -->\n", f"<!-- end of {mark} -->\n"
    before, rest = text.split(begin)
    return before + begin + "\n".join(lines) + "\n" + end + rest.split(end)[1]


def charts(folder, all, times, cases):
    import matplotlib
    matplotlib.use("svg")
    import matplotlib.pyplot as plot
    import matplotlib.ticker
    plot.rcParams.update({"svg.hashsalt": "kora", "svg.fonttype": "none", "font.size": 9})
    folder.mkdir(exist_ok=True)
    save = {"metadata": {"Date": None}, "bbox_inches": "tight"}

    figure, axes = plot.subplots(figsize=(8, 0.26 * len(all) + 1))
    places = range(len(all))
    axes.barh(places, [row.ratio for row in all], color=[COLOUR if row.ratio <= row.goal else MISSED for row in all])
    axes.scatter([row.goal for row in all], places, marker="|", s=90, color="black", label="goal", zorder=3)
    axes.axvline(1, color="gray", linewidth=0.8)
    axes.set_yticks(places, [row.case for row in all])
    axes.invert_yaxis()
    axes.set_xscale("log")
    axes.xaxis.set_major_formatter(matplotlib.ticker.FormatStrFormatter("%g"))
    axes.set_xlabel("our time divided by the best peer's; left is faster, red misses its goal")
    axes.legend(loc="lower right")
    figure.savefig(folder / "ratios.svg", **save)
    plot.close(figure)

    across = 4
    figure, grid = plot.subplots(math.ceil(len(all) / across), across, figsize=(12, 2.1 * math.ceil(len(all) / across)))
    for axes in grid.flat[len(all):]:
        axes.remove()
    for axes, row in zip(grid.flat, all):
        peers = iter(("#e08a2e", "#5a9a5a", "#9467bd"))
        for who, at in sorted(times[row.case].items(), key=lambda pair: (pair[0] != OURS, pair[0])):
            axes.plot(at.keys(), at.values(), marker="o", markersize=3, label=who,
                      color=COLOUR if who == OURS else next(peers), linewidth=2 if who == OURS else 1)
        axes.set_xscale("log")
        axes.set_yscale("log")
        sizes = times[row.case][OURS].keys()
        axes.set_xticks(list(sizes), [f"{size:,}" for size in sizes])
        axes.xaxis.set_minor_locator(matplotlib.ticker.NullLocator())
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
    parser.add_argument("--host", type=pathlib.Path, metavar="FILE")
    parser.add_argument("--write", type=pathlib.Path, metavar="DOCS")
    options = parser.parse_args()
    context, times = medians(options.json)
    cases = list(csv.DictReader((HERE / "cases.csv").open()))
    unknown = times.keys() - {case["case"] for case in cases}
    if unknown:
        raise SystemExit(f"not in cases.csv: {', '.join(sorted(unknown))}")
    all = list(rows(cases, times))
    print_table(all)
    if options.host:
        print(*host_table(json.loads(options.host.read_text())), sep="\n")
    if not options.write:
        return
    page = options.write / "benchmarks.md"
    text = between(page.read_text(), "machine", machine(context))
    text = between(text, "cases", markdown(all))
    if options.host:
        text = between(text, "host", host_table(json.loads(options.host.read_text())))
    page.write_text(text)
    charts(options.write / "benchmarks", all, times, cases)


if __name__ == "__main__":
    main()
