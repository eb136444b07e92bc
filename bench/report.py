#!/usr/bin/env python3
"""Makes the tables and the picture of a benchmark run.

report.py RUN                  prints the tables
report.py RUN PAGE PICTURE     also replaces the tables in the page and writes the picture

RUN is what zrcommon_bench printed. In each row "ours" is the library, a name that begins with "bare"
is a limit, any other a peer.
"""
import html
import math
import sys

# What a user does, at its usual size: family, operation, size and words for the picture.
PICTURE = [
    ("read the last key", "64 KiB", "read a key of a 64 KiB profile"),
    ("read the last key", "1 MiB", "read a key of a 1 MiB profile"),
    ("change in the middle", "64 KiB", "change a key of a 64 KiB profile"),
    ("CZRLogger::WriteToLog", "80 B", "log a line with a level"),
    ("WriteToLog", "80 B", "log a plain line"),
    ("GetEthernetInterfacesDetails", "3 links", "list 3 network links"),
    ("GetValueFromInfoEml", "last of 1,000", "look up 1 of 1,000 servers"),
    ("SearchFor in 1 MiB, English", "16 B", "search 1 MiB of text for 16 bytes"),
    ("SearchFor in 1 MiB, random bytes", "64 B", "search 1 MiB of data for 64 bytes"),
    ("SearchInFile in 64 MiB", "16 B", "search a file for 16 bytes"),
    ("CopyFile", "1 MiB", "copy a file of 1 MiB"),
    ("Base64 encode", "100 B", "Base64-encode 100 bytes"),
    ("Base64 decode", "100 B", "Base64-decode 100 bytes"),
    ("secure command and back", "20 pairs", "20 pairs to secure and back"),
    ("CCrypt::Encrypt", "100 B", "mix 100 bytes with a key"),
    ("EncryptBlock", "4 KiB", "rotate a block of 4 KiB"),
    ("wide length", "32", "length of 32 wide units"),
    ("wide compare", "32", "compare 32 wide units"),
    ("wide copy", "32", "copy 32 wide units"),
    ("widen", "32", "widen 32 bytes"),
    ("narrow", "32", "narrow 32 wide units"),
    ("narrow length", "32", "length of 32 bytes"),
    ("narrow fold-compare", "32", "compare 32 bytes without case"),
    ("search for \"lazy cats \"", "1 KiB", "find a word in 1 KiB"),
]
PEER, LIMIT, INK, FAINT = "#1f6fb2", "#c05a10", "#1b1f24", "#d0d4d9"


def is_limit(name):
    return name.startswith("bare")


def load(path):
    families = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            family, operation, size, contestant, time = line.rstrip("\n").split("\t")
            row = families.setdefault(family, {}).setdefault((operation, size), {})
            row[contestant] = float(time)
    return families


def duration(nanoseconds):
    for unit in ("ns", "µs", "ms"):
        if nanoseconds < 999.5:
            return f"{nanoseconds:.3g} {unit}"
        nanoseconds /= 1000
    return f"{nanoseconds:.3g} s"


def ratio(value):
    return f"{value:.2f}" if value < 9.95 else f"{value:.0f}"


def table(rows):
    lines = ["| operation | size | time | times as fast as | times the time of |", "|---|---|---|---|---|"]
    previous = None
    operations = list(dict.fromkeys(operation for operation, _ in rows))
    for (operation, size), times in sorted(rows.items(), key=lambda row: operations.index(row[0][0])):
        ours = times["ours"]
        peers = [f"{name} {ratio(time / ours)}" for name, time in times.items()
                 if name != "ours" and not is_limit(name)]
        limits = [f"{name} {ratio(ours / time)}" for name, time in times.items() if is_limit(name)]
        name = "" if operation == previous else operation
        previous = operation
        lines.append(f"| {name} | {size} | {duration(ours)} | {', '.join(peers)} | {', '.join(limits)} |")
    return "\n".join(lines)


def tables(families):
    return "\n\n".join(f"### {family}\n\n{table(rows)}" for family, rows in families.items())


class Axis:
    """Speed relative to the library's own, on a logarithmic scale."""
    LEFT, RIGHT, LOW, HIGH = 290, 780, 0.125, 128

    def x(self, value):
        share = math.log(min(max(value, self.LOW), self.HIGH) / self.LOW) / math.log(self.HIGH / self.LOW)
        return self.LEFT + share * (self.RIGHT - self.LEFT)

    def draw(self, top, bottom):
        for tick in (0.125, 0.25, 0.5, 1, 2, 4, 8, 16, 32, 64, 128):
            x, color = self.x(tick), INK if tick == 1 else FAINT
            yield f'<line x1="{x:.1f}" y1="{top}" x2="{x:.1f}" y2="{bottom}" stroke="{color}"/>'
            yield text(x, bottom + 14, f"{tick:g}×" if tick >= 0.25 else "⅛×", anchor="middle")


def text(x, y, words, anchor="start", size=12, color=INK):
    return (f'<text x="{x:.1f}" y="{y}" text-anchor="{anchor}" font-size="{size}" '
            f'fill="{color}">{html.escape(words)}</text>')


def best(times, limits):
    """The fastest contestant of a kind, and how many times its time is ours."""
    kind = {name: time for name, time in times.items() if name != "ours" and is_limit(name) == limits}
    if kind:
        name = min(kind, key=kind.get)
        yield name, kind[name] / times["ours"]


def bars(axis, y, times):
    drawn = [(PEER, each) for each in best(times, False)] + [(LIMIT, each) for each in best(times, True)]
    height = 12 / len(drawn)
    for place, (color, (_, value)) in enumerate(drawn):
        left, right = sorted((axis.x(1), axis.x(value)))
        yield (f'<rect x="{left:.1f}" y="{y + place * height:.1f}" width="{max(right - left, 1.5):.1f}" '
               f'height="{height - 0.5:.1f}" fill="{color}"/>')
    end = max(axis.x(1), *(axis.x(value) for _, (_, value) in drawn))
    words = ", ".join(f"{ratio(value)} {name}" for _, (name, value) in drawn)
    yield text(end + 5, y + 10, words, size=11)


def draw(families):
    rows = {key: times for family in families.values() for key, times in family.items()}
    axis, top, step, width = Axis(), 62, 20, 960
    bottom = top + step * len(PICTURE)
    lines = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {bottom + 34}" width="{width}" '
        f'height="{bottom + 34}" font-family="sans-serif">',
        '<rect width="100%" height="100%" rx="6" fill="#ffffff"/>',
        text(14, 24, "How fast libzrcommon is", size=16),
        f'<rect x="14" y="37" width="12" height="12" fill="{PEER}"/>',
        text(31, 47, "times as fast as the fastest peer that does the same work"),
        f'<rect x="400" y="37" width="12" height="12" fill="{LIMIT}"/>',
        text(417, 47, "speed against the limit: the same work without all that can be left out"),
        *axis.draw(top - 4, bottom),
    ]
    for index, (operation, size, words) in enumerate(PICTURE):
        y = top + step * index
        lines.append(text(axis.LEFT - 62, y + 10, words, anchor="end"))
        lines.append(text(axis.LEFT - 6, y + 10, duration(rows[operation, size]["ours"]), anchor="end", size=11))
        lines += bars(axis, y, rows[operation, size])
    lines += [text(axis.LEFT, bottom + 29, "speed, logarithmic; 1× is as fast as the library", size=11), "</svg>"]
    return "\n".join(lines) + "\n"


def replace_tables(path, made):
    begin, end = "<!-- made by scripts/bench -->\n", "<!-- end -->"
    with open(path, encoding="utf-8") as file:
        before, rest = file.read().split(begin)
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{begin}\n{made}\n\n{end}{rest.split(end)[1]}")


def main(run, page=None, picture=None):
    families = load(run)
    made = tables(families)
    print(made)
    if page:
        replace_tables(page, made)
        with open(picture, "w", encoding="utf-8") as file:
            file.write(draw(families))


if __name__ == "__main__":
    if len(sys.argv) not in (2, 4):
        sys.exit(__doc__)
    main(*sys.argv[1:])
