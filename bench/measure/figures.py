"""Medians with minimum and maximum, and how they are printed."""

import dataclasses
import statistics


@dataclasses.dataclass(frozen=True)
class Figure:
    median: float
    least: float
    most: float

    @staticmethod
    def of(values):
        return Figure(statistics.median(values), min(values), max(values))

    def text(self, digits):
        return f"{self.median:,.{digits}f} ({self.least:,.{digits}f} to {self.most:,.{digits}f})"


def ratios(ones, others):
    """Of what was measured in the same round."""
    return Figure.of([one / other for one, other in zip(ones, others)])


def print_table(head, rows):
    for cells in (head, ["---"] * len(head), *rows):
        print("| " + " | ".join(cells) + " |", flush=True)
    print(flush=True)
