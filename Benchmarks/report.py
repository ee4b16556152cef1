#!/usr/bin/env python3
"""Turns what Google Benchmark measured into the table that ./kelvane bench prints, the same table as TSV, and a plot.

A measurement is named "row|kind|contestant", where kind is ours, avx2, peer or limit; what a row promises stands in the
context as "row|property". Row.h says what these are. All times are medians of processor time, in nanoseconds.
"""

import argparse
import json
import math
from html import escape


class Row:
    def __init__(self, name):
        self.name = name
        self.times = {"ours": {}, "avx2": {}, "peer": {}, "limit": {}}
        self.held = {}
        self.promises = {}

    def promise(self, name):
        value = self.promises.get(name)
        return None if value is None else float(value)

    def time(self, kind):
        return min(self.times[kind].values(), default=None)

    def ratio(self, kind="ours"):
        """How many times as fast as the fastest peer."""
        ours, peer = self.time(kind), self.time("peer")
        return peer / ours if ours and peer else None

    def verdict(self, kind="ours"):
        """True when all that is promised is kept, None when nothing is promised or there was nothing to compare with."""
        ours, limit = self.time(kind), self.time("limit")
        kept = []
        if self.promise("reach") and self.ratio(kind):
            kept.append(self.ratio(kind) >= self.promise("reach"))
        if self.promise("within") and ours and limit:
            kept.append(ours <= self.promise("within") * limit)
        if self.promise("under") and ours:
            kept.append(ours / self.count() <= self.promise("under"))
        return all(kept) if kept else None

    def count(self):
        return float(self.promises.get("count", 1))

    def shown_time(self, nanoseconds):
        return duration(nanoseconds / self.count())

    def shown_promise(self):
        texts = []
        if self.promise("reach"):
            texts.append(f"{self.promise('reach'):g}x")
        if self.promise("within"):
            texts.append(f"{self.promise('within'):g} {'/'.join(self.times['limit'])}")
        if self.promise("under"):
            texts.append(f"< {duration(self.promise('under'))}")
        return ", ".join(texts)


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def size(count):
    for unit, bytes_in_unit in (("MiB", 2**20), ("KiB", 2**10)):
        if count >= bytes_in_unit:
            return f"{count / bytes_in_unit:.3g} {unit}"
    return f"{count:g} B"


def read(path):
    with open(path, encoding="utf-8") as file:
        measured = json.load(file)
    rows = {}
    for run in measured["benchmarks"]:
        if run.get("error_occurred"):
            raise SystemExit(f"{run['run_name']}: {run['error_message']}")
        if run.get("aggregate_name") != "median":
            continue
        run_name = run["run_name"]
        clock = "real_time" if run_name.endswith("/real_time") else "cpu_time"
        name, kind, contestant = run_name.removesuffix("/real_time").split("|")
        row = rows.setdefault(name, Row(name))
        row.times[kind][contestant] = run[clock]
        row.held[kind, contestant] = run["held"]
    for key, value in measured["context"].items():
        name, _, promise = key.partition("|")
        if promise and name in rows:
            rows[name].promises[promise] = value
    # In the order of the sources; what only shows the machine stands at the end.
    return sorted(rows.values(), key=lambda row: (not row.times["ours"], row.promise("order"))), measured["context"]


def verdict_text(verdict):
    return {True: "met", False: "short", None: ""}[verdict]


def times_text(row, kind):
    return ", ".join(f"{name} {row.shown_time(time)}" for name, time in sorted(row.times[kind].items()))


def memory_line(row, with_avx2):
    at_most = row.promise("memory")
    held = row.held["ours", "ours"]
    peers = {name: count for (kind, name), count in row.held.items() if kind == "peer"}
    best = min(peers.values(), default=None)
    return [
        f"{row.name}: memory",
        size(held),
        *([""] if with_avx2 else []),
        ", ".join(f"{name} {size(count)}" for name, count in sorted(peers.items())),
        "",
        f"{best / held:.2f}" if best else "",
        *([""] if with_avx2 else []),
        f"<= {size(at_most)}",
        verdict_text(held <= at_most),
    ]


def table(rows):
    """The lines of the table, the first being its head."""
    with_avx2 = any(row.times["avx2"] for row in rows)
    head = ["work", "ours", "at AVX2", "others", "limit", "ratio", "at AVX2", "reach", "verdict"]
    if not with_avx2:
        head = [column for column in head if column != "at AVX2"]
    lines = [head]
    for row in rows:
        piece = row.promises.get("piece")
        verdict = verdict_text(row.verdict())
        if with_avx2 and row.verdict("avx2") not in (None, row.verdict()):
            verdict += f" (AVX2: {verdict_text(row.verdict('avx2'))})"
        ratios = [f"{row.ratio(kind):.2f}" if row.ratio(kind) else "" for kind in ("ours", "avx2")]
        lines.append([
            row.name + (f", per {piece}" if piece else ""),
            row.shown_time(row.time("ours")) if row.times["ours"] else "",
            *([row.shown_time(row.time("avx2")) if row.times["avx2"] else ""] if with_avx2 else []),
            times_text(row, "peer"),
            times_text(row, "limit"),
            *(ratios if with_avx2 else ratios[:1]),
            row.shown_promise(),
            verdict,
        ])
        if row.promise("memory"):
            lines.append(memory_line(row, with_avx2))
    return lines


def records(rows):
    """One line for each contestant, with plain numbers."""
    yield "row", "kind", "contestant", "nanoseconds", "pieces", "held bytes", "ratio", "reach", "verdict"
    for row in rows:
        for kind, times in row.times.items():
            for contestant, time in sorted(times.items()):
                judged = (row.ratio(kind) or "", row.promise("reach") or "", verdict_text(row.verdict(kind)))
                yield (row.name, kind, contestant, time, row.count(), row.held[kind, contestant],
                       *(judged if kind in ("ours", "avx2") else ("", "", "")))


def aligned(lines):
    widths = [max(len(line[i]) for line in lines) for i in range(len(lines[0]))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines)


STYLE = """
  text { font: 12px system-ui, sans-serif; fill: #6e7781 }
  .met { fill: #2da44e } .short { fill: #d4a72c } .none { fill: #8c959f }
  .axis { stroke: #8c959f } .reach { stroke: #6e7781; stroke-width: 2 }
  @media (prefers-color-scheme: dark) { text { fill: #adbac7 } .reach { stroke: #adbac7 } }
"""


def plot(rows):
    """Bars on a logarithmic scale, to the right of 1 where we are faster; a mark where the row means to be."""
    rows = [row for row in rows if row.ratio()]
    values = [value for row in rows for value in (row.ratio(), row.promise("reach")) if value]
    low, high = min([0.5, *values]), max([10, *values])
    left, width, step, top = 250, 760, 22, 44
    bottom = top + step * len(rows)

    def place(ratio):
        return left + math.log(ratio / low) / math.log(high / low) * (width - left - 60)

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {bottom + 26}" width="{width}" '
             f'height="{bottom + 26}" role="img"><title>Speed against the fastest other library</title>'
             f"<style>{STYLE}</style>",
             '<text x="8" y="16">How many times as fast as the fastest other library. '
             "The mark is where we mean to be: green is met, amber is short.</text>"]
    for tick in (0.1, 0.3, 1, 3, 10, 30, 100, 300, 1000):
        if low <= tick <= high:
            x = f"{place(tick):.1f}"
            parts.append(f'<line class="axis" x1="{x}" x2="{x}" y1="{top - 8}" y2="{bottom + 4}" '
                         f'stroke-opacity="{1 if tick == 1 else 0.3}"/>'
                         f'<text x="{x}" y="{bottom + 19}" text-anchor="middle">{tick:g}x</text>')
    for index, row in enumerate(rows):
        y = top + index * step
        kind = {True: "met", False: "short", None: "none"}[row.verdict()]
        start, end = sorted((place(1), place(row.ratio())))
        parts.append(f'<text x="{left - 12}" y="{y + 13}" text-anchor="end">{escape(row.name)}</text>'
                     f'<rect class="{kind}" x="{start:.1f}" y="{y + 2}" width="{max(1.0, end - start):.1f}" height="14"/>')
        if row.promise("reach"):
            mark = place(row.promise("reach"))
            parts.append(f'<line class="reach" x1="{mark:.1f}" x2="{mark:.1f}" y1="{y}" y2="{y + 18}"/>')
            # The number stands beside its bar, and steps aside where the mark would cross it.
            end = mark if end <= mark < end + 50 else end
        parts.append(f'<text x="{end + 6:.1f}" y="{y + 13}">{row.ratio():.2g}x</text>')
    return "\n".join([*parts, "</svg>", ""])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("measured")
    parser.add_argument("--tsv", required=True)
    parser.add_argument("--plot")
    arguments = parser.parse_args()
    rows, machine = read(arguments.measured)
    with open(arguments.tsv, "w", encoding="utf-8") as file:
        file.writelines("\t".join(map(str, record)) + "\n" for record in records(rows))
    if arguments.plot:
        with open(arguments.plot, "w", encoding="utf-8") as file:
            file.write(plot(rows))
    print(aligned(table(rows)))
    print("\nMedians of processor time. ratio: the fastest other library's time by ours; reach: where we mean to be.")
    print(f"{machine['num_cpus']} processors of {machine['mhz_per_cpu']} MHz, load {machine['load_avg'][0]:.1f} at the start")


if __name__ == "__main__":
    main()
