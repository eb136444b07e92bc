#!/usr/bin/env python3
"""Makes a summary and a picture of a sweep.

sweep_report.py RUN PICTURE

RUN is what zrcommon_sweep printed. The picture shows the time per byte over the size: on the left
each operation with ordinary input, on the right with the slowest input of each size.
"""
import html
import math
import sys

COLORS = ["#1f6fb2", "#c05a10", "#2a7f3f", "#8a2be2", "#b0183a", "#11808a", "#7a6a00", "#d0459b", "#444444"]
INK, FAINT = "#1b1f24", "#d8dce0"
WIDTH, TOP, BOTTOM = 960, 66, 430
SIZES = [(64, "64 B"), (1024, "1 KiB"), (16 << 10, "16 KiB"), (256 << 10, "256 KiB"), (4 << 20, "4 MiB")]
TIMES = [0.01, 0.1, 1, 10]


def load(path):
    """The time per byte of each operation, input and size."""
    operations = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            operation, name, size, time = line.rstrip("\n").split("\t")
            operations.setdefault(operation, {}).setdefault(name, {})[int(size)] = float(time)
    return operations


def summary(operations):
    lines = ["| operation | input | smallest size | largest size | most |", "|---|---|---|---|---|"]
    for operation, inputs in operations.items():
        for name, times in inputs.items():
            figures = (times[min(times)], times[max(times)], max(times.values()))
            lines.append(f"| {operation} | {name} | " + " | ".join(f"{each:.2f}" for each in figures) + " |")
    return "\n".join(lines)


def text(x, y, words, anchor="start", size=12):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" '
            f'fill="{INK}">{html.escape(words)}</text>')


def share(value, low, high):
    return math.log(min(max(value, low), high) / low) / math.log(high / low)


class Panel:
    """One diagram, both axes logarithmic."""

    def __init__(self, left, title):
        self.left, self.right, self.title = left, left + 400, title

    def x(self, size):
        return self.left + share(size, SIZES[0][0], SIZES[-1][0]) * (self.right - self.left)

    @staticmethod
    def y(time):
        return BOTTOM - share(time, TIMES[0], 2 * TIMES[-1]) * (BOTTOM - TOP)

    def axes(self):
        yield text(self.left, TOP - 12, self.title)
        for size, name in SIZES:
            yield f'<line x1="{self.x(size):.1f}" y1="{TOP}" x2="{self.x(size):.1f}" y2="{BOTTOM}" stroke="{FAINT}"/>'
            yield text(self.x(size), BOTTOM + 16, name, "middle", 11)
        for time in TIMES:
            yield f'<line x1="{self.left}" y1="{self.y(time):.1f}" x2="{self.right}" y2="{self.y(time):.1f}" stroke="{FAINT}"/>'
            yield text(self.left - 6, self.y(time) + 4, f"{time:g} ns", "end", 11)

    def line(self, times, color):
        points = " ".join(f"{self.x(size):.1f},{self.y(time):.1f}" for size, time in times.items())
        return f'<polyline points="{points}" fill="none" stroke="{color}" stroke-width="2"/>'


def slowest(inputs):
    sizes = next(iter(inputs.values()))
    return {size: max(times[size] for times in inputs.values()) for size in sizes}


def legend(operations):
    for place, (operation, color) in enumerate(zip(operations, COLORS)):
        x, y = 60 + place % 5 * 180, BOTTOM + 42 + place // 5 * 20
        yield f'<line x1="{x}" y1="{y - 4}" x2="{x + 20}" y2="{y - 4}" stroke="{color}" stroke-width="3"/>'
        yield text(x + 26, y, operation)


def draw(operations):
    ordinary, slow = Panel(60, "ordinary input"), Panel(540, "slowest input")
    height = BOTTOM + 76
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" '
        f'height="{height}" font-family="sans-serif">',
        '<rect width="100%" height="100%" rx="6" fill="#ffffff"/>',
        text(14, 24, "Time per byte over the size of the input", size=16),
        *ordinary.axes(), *slow.axes(),
    ]
    for inputs, color in zip(operations.values(), COLORS):
        lines.append(ordinary.line(next(iter(inputs.values())), color))
        lines.append(slow.line(slowest(inputs), color))
    return "\n".join([*lines, *legend(operations), "</svg>"]) + "\n"


def main(run, picture):
    operations = load(run)
    print(summary(operations))
    with open(picture, "w", encoding="utf-8") as file:
        file.write(draw(operations))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
