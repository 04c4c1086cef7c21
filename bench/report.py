"""The results as rows, and the rows as Markdown tables or JSON."""

import itertools
import statistics
from dataclasses import dataclass, field


@dataclass
class Row:
    """One case: the figures of ours in each round and, by name, those of the baselines in the same run."""
    subject: str
    case: str
    unit: str
    ours: list
    baselines: dict = field(default_factory=dict)
    # The targets: for ours, and for its ratios to baselines.
    at_most: float = None
    at_least: float = None
    ratios_at_most: dict = field(default_factory=dict)

    def record(self):
        ratios = {name: self.ratio(name) for name in self.baselines}
        return {"subject": self.subject, "case": self.case, "unit": self.unit, "value": self.value(),
                "spread": self.spread(), "ratios": ratios, "missed": bool(self.missed()) or
                any(self.missed_ratio(name) for name in ratios)}

    def value(self):
        return statistics.median(self.ours)

    def spread(self):
        """Half the distance between the quartiles in percent of the median; None with fewer than three rounds."""
        if len(self.ours) < 3:
            return None
        first, middle, third = statistics.quantiles(self.ours, n=4)
        return (third - first) / 2 / middle * 100

    def ratio(self, baseline):
        return self.value() / statistics.median(self.baselines[baseline])

    def missed(self):
        if self.at_most is not None and self.value() > self.at_most:
            return f" (over {number(self.at_most)})"
        if self.at_least is not None and self.value() < self.at_least:
            return f" (under {number(self.at_least)})"
        return ""

    def missed_ratio(self, baseline):
        limit = self.ratios_at_most.get(baseline)
        return f" (over {limit:.2f})" if limit is not None and self.ratio(baseline) > limit else ""

    def cells(self, baselines):
        yield self.case
        yield self.unit
        yield number(self.value()) + self.missed()
        yield "-" if self.spread() is None else f"{self.spread():.1f}"
        for name in baselines:
            yield self.comparison(name) if name in self.baselines else "-"

    def comparison(self, baseline):
        figure = number(statistics.median(self.baselines[baseline]))
        return f"{self.ratio(baseline):.2f} × {figure}{self.missed_ratio(baseline)}"


def number(value):
    if value == int(value) or abs(value) >= 1000:
        return f"{value:,.0f}"
    return f"{value:.1f}" if abs(value) >= 10 else f"{value:.2f}"


def tables(rows):
    """One table for each subject, a column for each of its baselines."""
    return "\n".join(table(subject, list(group)) for subject, group in itertools.groupby(rows, lambda row: row.subject))


def table(subject, rows):
    baselines = list(dict.fromkeys(name for row in rows for name in row.baselines))
    lines = [["case", "unit", "ours", "±%", *(f"to {name}" for name in baselines)],
             *(list(row.cells(baselines)) for row in rows)]
    widths = [max(map(len, column)) for column in zip(*lines)]
    lines.insert(1, ["-" * width for width in widths])
    shown = (" | ".join(cell.ljust(width) if i < 2 else cell.rjust(width)
                        for i, (cell, width) in enumerate(zip(line, widths))) for line in lines)
    return f"### {subject}\n\n" + "".join(f"| {line} |\n" for line in shown)


def write_docs(page, text):
    """Replaces what is between the two marks of the page."""
    begin, end = "<!-- begin: scripts/bench --docs -->\n", "<!-- end -->\n"
    before, rest = page.read_text().split(begin)
    page.write_text(before + begin + "\n" + text + "\n" + end + rest.split(end)[1])
