#!/usr/bin/env python3
"""Compares the measures of a report with the true ones: python3 compare.py essays.out.txt

Prints, for each Flank, how the estimates lie beside the measures that the ratings were drawn from:

    slope   of the estimates over the true measures; 1 when they are spread as the truth is
    r       their correlation
    RMS     root mean square of the differences, logits
    S.E.    root mean square of the standard errors that the report gives, logits

Extreme elements (nothing but lowest or highest ratings) have no finite estimate and are left out.
"""

import csv
import math
import re
import sys


def true_measures():
    with open("truth.csv", encoding="ascii") as truth:
        return {(row["flank"], int(row["number"])): float(row["measure"])
                for row in csv.DictReader(truth)}


def estimates(report):
    """Measure and standard error by Flank and element number: Table 7 in its first order."""
    found = {}
    flank = None
    for line in open(report, encoding="utf-8"):
        if line.startswith("Table "):
            title = re.match(r"Table 7\.(\d+)\.1 ", line)
            flank = title[1] if title else None
        cells = line.strip().strip("|").split("|")
        label = re.match(r" *(\d+) \S", cells[-1])
        if flank and label and len(cells) > 2 and "(" not in cells[0]:
            measure, error = cells[0].split()[4:6]
            found[flank, int(label[1])] = float(measure), float(error)
    return found


def mean(values):
    return sum(values) / len(values)


def compare(pairs):
    """pairs: (true measure, estimate, standard error)"""
    truth, estimate, error = zip(*pairs)
    from_truth = [value - mean(truth) for value in truth]
    from_estimate = [value - mean(estimate) for value in estimate]
    product = sum(t * e for t, e in zip(from_truth, from_estimate))
    squares = sum(t * t for t in from_truth), sum(e * e for e in from_estimate)
    return (product / squares[0], product / math.sqrt(squares[0] * squares[1]),
            math.sqrt(mean([(e - t) ** 2 for t, e in zip(truth, estimate)])),
            math.sqrt(mean([value * value for value in error])))


def main():
    truth = true_measures()
    found = estimates(sys.argv[1])
    print("Flank  elements  slope     r    RMS   S.E.")
    for flank in sorted({key[0] for key in found}):
        pairs = [(truth[key], *found[key]) for key in found if key[0] == flank]
        print(f"{flank:>5}  {len(pairs):>8}  " + " ".join(f"{value:6.2f}" for value in compare(pairs)))


if __name__ == "__main__":
    main()
