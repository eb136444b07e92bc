#!/usr/bin/env python3
"""Turns Google Benchmark's JSON into the table, the results file and the picture.

report.py RUN.json RESULTS.json PICTURE.svg

A benchmark is named ROW/CONTESTANT. In each row "ours" is the library, a name that begins with
"bare" is a limit, any other a peer. Peers are shown as how many times as fast as they we are, limits
as how many times their time we take; both from medians of one interleaved run.
"""
import html
import json
import math
import statistics
import sys


def medians(run):
    times = {}
    for each in sorted(run["benchmarks"], key=lambda each: each["family_index"]):
        if each.get("run_type") == "iteration" and not each.get("error_occurred"):
            row, contestant = each["run_name"].rsplit("/", 1)
            times.setdefault(row, {}).setdefault(contestant, []).append(each["real_time"])
    return {row: {name: statistics.median(all_) for name, all_ in contestants.items()}
            for row, contestants in times.items() if "ours" in contestants}


def compare(contestants):
    ours = contestants["ours"]
    others = {name: time for name, time in contestants.items() if name != "ours"}
    return {
        "ours_ns": round(ours, 2),
        "times_as_fast_as": {n: round(t / ours, 2) for n, t in others.items() if not n.startswith("bare")},
        "times_the_limit": {n: round(ours / t, 2) for n, t in others.items() if n.startswith("bare")},
    }


def duration(nanoseconds):
    for unit in ("ns", "us", "ms"):
        if nanoseconds < 1000:
            return f"{nanoseconds:.3g} {unit}"
        nanoseconds /= 1000
    return f"{nanoseconds:.3g} s"


def print_table(rows):
    width = max(len(row) for row in rows)
    print(f"{'operation':<{width}}  {'ours':>9}  compared in the same run")
    for row, result in rows.items():
        said = [f"{ratio}x as fast as {name}" for name, ratio in result["times_as_fast_as"].items()]
        said += [f"{ratio} of {name}" for name, ratio in result["times_the_limit"].items()]
        print(f"{row:<{width}}  {duration(result['ours_ns']):>9}  {', '.join(said)}")


def bars(rows):
    """Each row's speed against its fastest peer, or else against its limit."""
    for row, result in rows.items():
        peers, limits = result["times_as_fast_as"], result["times_the_limit"]
        if peers:
            name = min(peers, key=peers.get)
            yield row, name, peers[name]
        elif limits:
            name = min(limits, key=limits.get)
            yield row, name, round(1 / limits[name], 2)


def draw(rows, context):
    drawn = list(bars(rows))
    top, step, axis, doubling = 60, 18, 520, 60
    height = top + step * len(drawn) + 30
    caption = f"{context['date'][:10]}, {context['processor']}, {context['num_cpus']} processors"
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="1200" height="{height}" '
        'font-family="sans-serif" font-size="12">',
        '<rect width="100%" height="100%" fill="white"/>',
        '<text x="10" y="20" font-size="16">libzrcommon: speed against the fastest peer '
        '(bare limit where there is none), peer = 1.0; every 60 points are twice as fast</text>',
        f'<text x="10" y="40" fill="#555">{html.escape(caption)}</text>',
    ]
    for index, (row, name, ratio) in enumerate(drawn):
        y = top + step * index
        length = doubling * math.log2(min(max(ratio, 0.125), 128))
        color = "#2a7f3f" if ratio >= 0.995 else "#b0662a"
        lines += [
            f'<text x="{axis - 190}" y="{y + 12}" text-anchor="end">{html.escape(row)}</text>',
            f'<rect x="{axis + min(length, 0):.1f}" y="{y + 2}" width="{max(abs(length), 1):.1f}" '
            f'height="13" fill="{color}"/>',
            f'<text x="{axis + max(length, 0) + 5:.1f}" y="{y + 12}">{ratio}x {html.escape(name)}</text>',
        ]
    lines.append(f'<line x1="{axis}" y1="{top}" x2="{axis}" y2="{height - 25}" stroke="black"/>')
    lines.append("</svg>")
    return "\n".join(lines) + "\n"


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        for line in info:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return "unknown processor"


def main(run_path, results_path, picture_path):
    with open(run_path, encoding="utf-8") as file:
        run = json.load(file)
    context = {key: run["context"][key] for key in ("date", "num_cpus")}
    context["processor"] = processor()
    rows = {row: compare(contestants) for row, contestants in medians(run).items()}
    print_table(rows)
    with open(results_path, "w", encoding="utf-8") as file:
        json.dump({"context": context, "rows": rows}, file, indent=1)
        file.write("\n")
    with open(picture_path, "w", encoding="utf-8") as file:
        file.write(draw(rows, context))


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
