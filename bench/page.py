"""docs/performance.md and the picture beside it: what a person reads of a run in a minute."""

import textwrap

import queuerows
from report import number

# Case, and whether twenty registers sell at once.
WIRES = (("plain", "HTTP"), ("tls", "TLS"))
SIZES = (1, 10, 100)
UNITS = ("µs", "CPU µs", "instructions")
EQUAL = "equal work"


def case_of(size, wire, registers):
    return f"{size} {wire}" if registers == 1 else f"{size} {wire}, {registers} registers"


class Run:
    """The rows of a run by what they measure."""

    def __init__(self, rows):
        self.rows = {(row.subject, row.case, row.unit): row for row in rows}

    def row(self, subject, case, unit):
        return self.rows[subject, case, unit]

    def receipt(self, size, wire, registers, unit):
        return self.row("Whole receipt, equal work", case_of(size, wire, registers), unit)

    def receipts(self, unit):
        return [self.receipt(size, wire, registers, unit)
                for size in SIZES for wire, _ in WIRES for registers in (1, 20)]

    def all(self, subject, unit):
        return [row for key, row in self.rows.items() if key[0] == subject and key[2] == unit]

    def first(self, subject, unit):
        return self.all(subject, unit)[0]


def met(row, name=None):
    missed = row.missed_ratio(name) if name else row.missed()
    return "missed" if missed else "met"


def spanning(run, unit, what):
    """One finding about all whole receipts."""
    rows = run.receipts(unit)
    ratios = [row.ratio(EQUAL) for row in rows]
    limit = rows[0].ratios_at_most[EQUAL]
    done = sum(ratio <= limit for ratio in ratios)
    return (f"**{what}**: a receipt takes {min(ratios):.2f} to {max(ratios):.2f} times that of equal work; "
            f"at most {limit:.2f} is wanted, and met in {done} of {len(ratios)} cases.")


def findings(run):
    yield spanning(run, "µs", "Time")
    yield spanning(run, "CPU µs", "Processor time")
    yield spanning(run, "instructions", "Instructions")
    one = run.receipt(1, "plain", 1, "µs")
    yield (f"**The floor**: of the {number(one.value())} µs of a receipt of one line, a bare socket takes "
           f"{number(one.value() / one.ratio('bare socket'))}, and equal work {number(one.value() / one.ratio(EQUAL))}.")
    small, large = (run.receipt(size, "plain", 1, "instructions").value() for size in (1, 100))
    yield f"**A further line** of a receipt takes {number((large - small) / 99)} instructions."
    many = run.receipt(1, "plain", 20, "µs")
    yield f"**Twenty registers** at once register {number(1e6 / many.value())} receipts of one line a second."
    found = [run.first("Many registers in one process", unit)
             for unit in ("kB resident each", "descriptors when all are idle")]
    yield (f"**{found[0].case} registers in one process**: " + ", ".join(
        f"{number(row.value())} {row.unit} (at most {number(row.at_most)} is wanted, and {met(row)})" for row in found) + ".")
    row = run.first("Growth in a soak", "kB resident")
    yield f"**Growth**: {row.case} through one register add {number(row.value())} kB."
    row = run.row("frhost as a process", "describe", "ms")
    stages = run.all("Loading libraries, and nothing else", "ms")
    loaded = [f"{number(stage.value())} with {stage.case.removeprefix('and ')}" for stage in stages]
    yield (f"**Start**: `frhost describe` takes {number(row.value())} ms; at most {number(row.at_most)} is wanted, and "
           f"{met(row)}. To load libraries alone takes {', '.join(loaded[:-1])} and {loaded[-1]}, each with those before.")
    yield from queue(run)


def queue(run):
    """One finding about all figures of the queue that have a target."""
    rows = [row for row in run.rows.values()
            if row.subject in (queuerows.IN_FILE, queuerows.ON_SERVER) and (row.at_most or row.baselines)]
    missed = [row for row in rows if row.missed() or any(row.missed_ratio(name) for name in row.baselines)]
    killed = " and ".join(number(row.value()) for row in rows if row.case == queuerows.KILLED)
    yield (f"**[The queue](queue.md)**: a killed worker's receipt is claimed again after {killed} ms; {len(rows) - len(missed)} "
           f"of {len(rows)} targets are met" + "".join(f"; missed: {row.case}" for row in missed) + ".")


def table(run):
    lines = [["lines", "wire", "registers", "µs", "bare socket", *(f"{unit} to {EQUAL}" for unit in UNITS)]]
    for registers in (1, 20):
        for wire, name in WIRES:
            for size in SIZES:
                rows = [run.receipt(size, wire, registers, unit) for unit in UNITS]
                lines.append([str(size), name, str(registers), number(rows[0].value()),
                              number(rows[0].value() / rows[0].ratio("bare socket")),
                              *(f"{row.ratio(EQUAL):.2f}" for row in rows)])
    widths = [max(map(len, column)) for column in zip(*lines)]
    lines.insert(1, ["-" * (width - 1) + ":" if i != 1 else "-" * width for i, width in enumerate(widths)])
    return "".join("| " + " | ".join(cell.ljust(width) if i == 1 else cell.rjust(width)
                                     for i, (cell, width) in enumerate(zip(line, widths))) + " |\n" for line in lines)


def picture(run):
    """Bars of the time of a receipt, one register, over HTTP."""
    colours = {"bare socket": "#9aa5b1", EQUAL: "#5b8def", "ours": "#2a9d60"}
    bars = []
    for size in SIZES:
        row = run.receipt(size, "plain", 1, "µs")
        times = {"bare socket": row.value() / row.ratio("bare socket"), EQUAL: row.value() / row.ratio(EQUAL),
                 "ours": row.value()}
        bars += [(f"{size} line" + "s" * (size > 1) if name == "bare socket" else "", name, time)
                 for name, time in times.items()]
    longest = max(time for _, _, time in bars)
    shapes, top = [], 16
    for label, name, time in bars:
        top += 12 if label else 0
        width = time / longest * 380
        shapes.append(f'<text x="8" y="{top + 13}">{label}</text>'
                      f'<rect x="80" y="{top}" width="{width:.0f}" height="16" fill="{colours[name]}"/>'
                      f'<text x="{86 + width:.0f}" y="{top + 13}">{name}, {number(time)} µs</text>')
        top += 20
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="640" height="{top + 12}" font-family="sans-serif" '
            f'font-size="13">\n<rect width="100%" height="100%" fill="white"/>\n' + "\n".join(shapes) + "\n</svg>\n")


def wrapped(finding):
    return textwrap.fill(finding, 120, initial_indent="- ", subsequent_indent="  ", break_on_hyphens=False) + "\n"


# The measured rate is not used up, so that the rest of the work and a bad day have room; and of a shop's day, a part falls
# into its busiest hour.
USED, BUSIEST = 0.5, 0.2
A_DAY = (100, 500, 2000)


def scale(rows, machine):
    """docs/scale.md: what one server carries; nothing where none was measured."""
    found = {(row.subject, row.case, row.unit): row.value() for row in rows}
    stay, stored = (found.get((queuerows.ON_SERVER, queuerows.STAY, unit)) for unit in ("µs", "kB stored"))
    if stay is None:
        return None
    second = 1e6 / stay
    day = second * USED * 3600 / BUSIEST
    lines = [f"{number(stay)} µs a receipt, {queuerows.WORKERS} workers together: {second:,.0f} receipts a second from "
             "`add` to registered.",
             f"With {USED:.0%} of that in the busiest hour, and {BUSIEST:.0%} of a day's receipts in that hour: {day:,.0f} "
             "receipts a day.",
             f"{stored:.1f} kB stored a receipt, its history included: {day * stored / 1024 ** 2:,.1f} GB on such a day."]
    table = "".join(f"| {count:>24,} | {day / count:>7,.0f} |\n" for count in A_DAY)
    return (machine + "\n" + "".join(wrapped(line) for line in lines) +
            "\n| receipts of a shop a day |   shops |\n| -----------------------: | ------: |\n" + table)


def page(rows, machine):
    run = Run(rows)
    return (machine + "\n" + "".join(wrapped(line) for line in findings(run)) +
            "\n![The time of a receipt](performance.svg)\n\n" + table(run))
