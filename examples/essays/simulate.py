#!/usr/bin/env python3
"""Makes the data of this example: essays-data.txt and, with the true measures, truth.csv.

Nobody wrote these essays and nobody judged them.  90 examinees, 6 raters and 4 criteria have
known measures; each examinee meets 2 of the 6 raters, who rate the essay from 0 to 5 on each of
the criteria.  A rating is drawn with the probabilities of the many-Flank rating scale model,

    log(P(k) / P(k-1)) = examinee - rater - criterion - threshold(k),    k = 1 ... 5,

all in logits.  The seed is fixed and only random() is drawn, so that every Python 3 writes the
same files.  Run it in this folder: python3 simulate.py
"""

import itertools
import random
import sys

sys.path.append("..")
from rating_model import draw_measures, draw_rating, write_truth  # noqa: E402

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


def main():
    rng = random.Random(SEED)
    examinees = draw_measures(EXAMINEES, SPREAD, rng)

    with open("essays-data.txt", "w", encoding="ascii", newline="\n") as data:
        data.write("; Simulated by simulate.py: examinee, rater, the criteria 1 to 4, four ratings.\n")
        for number, measure in enumerate(examinees, start=1):
            for rater in raters_of(number):
                ratings = [draw_rating(measure - RATERS[rater][1] - difficulty, THRESHOLDS, rng)
                           for _, difficulty in CRITERIA]
                data.write(f"{number}, {rater + 1}, 1-4, {', '.join(map(str, ratings))}\n")

    people = [("Examinee", measure) for measure in examinees]
    write_truth([people, RATERS, CRITERIA], THRESHOLDS)


if __name__ == "__main__":
    main()
