"""The table of a sweep."""
from judgement import NOTES, WRONGS

COLUMNS = ["positions", "missed", *WRONGS, *NOTES]


class Table:
    def __init__(self):
        self.rows = {}

    def add(self, row, verdict):
        counts = self.rows.setdefault(row, dict.fromkeys(COLUMNS, 0))
        counts["positions"] += 1
        counts["missed"] += not verdict.was_disturbed
        for column in {finding.column for finding in verdict.findings}:
            counts[column] += 1

    def is_bad(self):
        """Also when so many positions were missed that little has been tried."""
        return any(counts[column] for counts in self.rows.values() for column in WRONGS) or any(
            counts["missed"] * 10 > counts["positions"] for counts in self.rows.values())

    def __str__(self):
        together = {column: sum(counts[column] for counts in self.rows.values()) for column in COLUMNS}
        width = max(map(len, self.rows))
        lines = [[" " * width, *COLUMNS]]
        for row, counts in (self.rows | {"together": together}).items():
            lines.append([row.ljust(width), *map(str, counts.values())])
        return "\n".join("  ".join(cell.rjust(len(column)) for cell, column in zip(line, lines[0])) for line in lines)
