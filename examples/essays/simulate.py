#!/usr/bin/env python3
"""Makes the data of this example: essays-data.txt and, with the true measures, truth.csv.

Nobody wrote these essays and nobody judged them.  90 examinees, 6 raters and 4 criteria have
known measures; each examinee meets 2 of the 6 raters, who rate the essay from 0 to 5 on each of
the criteria.  A rating is drawn with the probabilities of the many-Flank rating scale model,

    log(P(k) / P(k-1)) = examinee - rater - criterion - threshold(k),    k = 1 ... 5,

all in logits.  The seed is fixed and only random() is drawn, so that every Python 3 writes the
same files.  Run it in this folder: python3 simulate.py
"""

import csv
import itertools
import math
import random
from statistics import NormalDist

SEED = 1708
EXAMINEES = 90
SPREAD = 1.2  # standard deviation of the examinees' measures, logits

RATERS = [("Adams", -0.8), ("Baker", -0.4), ("Clark", -0.1),
          ("Davis", 0.1), ("Evans", 0.4), ("Frank", 0.8)]  # severities; they sum to 0
CRITERIA = [("Content", -0.3), ("Organization", 0.1), ("Language", 0.4), ("Spelling", -0.2)]
THRESHOLDS = [-2.2, -1.0, 0.1, 1.1, 2.0]  # of categories 1 to 5; they sum to 0


PAIRS = list(itertools.combinations(range(len(RATERS)), 2))


def raters_of(examinee):
    """The judging plan: the 15 pairs of raters take turns, so that each pair reads six essays."""
    return PAIRS[(examinee - 1) % len(PAIRS)]


def draw_rating(measure, rng):
    """A category from 0 to 5 for an examinee who is `measure` logits above rater and criterion."""
    logits = [0.0]
    for threshold in THRESHOLDS:
        logits.append(logits[-1] + measure - threshold)
    weights = [math.exp(value) for value in logits]
    left = rng.random() * sum(weights)
    for category, weight in enumerate(weights):
        left -= weight
        if left < 0:
            return category
    return len(THRESHOLDS)


def main():
    rng = random.Random(SEED)
    normal = NormalDist(0.0, SPREAD)
    examinees = [round(normal.inv_cdf(rng.random()), 2) for _ in range(EXAMINEES)]

    with open("essays-data.txt", "w", encoding="ascii", newline="\n") as data:
        data.write("; Simulated by simulate.py: examinee, rater, the criteria 1 to 4, four ratings.\n")
        for number, measure in enumerate(examinees, start=1):
            for rater in raters_of(number):
                ratings = [draw_rating(measure - RATERS[rater][1] - difficulty, rng)
                           for _, difficulty in CRITERIA]
                data.write(f"{number}, {rater + 1}, 1-4, {', '.join(map(str, ratings))}\n")

    with open("truth.csv", "w", encoding="ascii", newline="\n") as truth:
        rows = csv.writer(truth, lineterminator="\n")
        rows.writerow(["flank", "number", "label", "measure"])
        for number, measure in enumerate(examinees, start=1):
            rows.writerow([1, number, "Examinee", f"{measure:.2f}"])
        for flank, elements in ((2, RATERS), (3, CRITERIA)):
            for number, (label, measure) in enumerate(elements, start=1):
                rows.writerow([flank, number, label, f"{measure:.2f}"])
        for category, threshold in enumerate(THRESHOLDS, start=1):
            rows.writerow(["threshold", category, "", f"{threshold:.2f}"])


if __name__ == "__main__":
    main()
