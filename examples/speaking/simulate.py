#!/usr/bin/env python3
"""Makes the data of this example: speaking-data.txt and, with what they were drawn from, truth.csv.

Nobody took this speaking test.  80 candidates, 6 raters and 4 criteria have known measures; each
candidate meets 3 of the 6 raters, who rate the talk from 0 to 5 on each of the criteria.  Two
raters are biased: each of them rates one criterion otherwise than the rest.  A rating is drawn with
the probabilities of the many-Flank rating scale model with an interaction,

    log(P(k) / P(k-1)) = candidate - rater - criterion + bias(rater, criterion) - threshold(k),

k = 1 ... 5, all in logits.  The seed is fixed and only random() is drawn, so that every Python 3
writes the same files.  Run it in this folder: python3 simulate.py
"""

import itertools
import random
import sys

sys.path.append("..")
from rating_model import draw_measures, draw_rating, write_truth  # noqa: E402

SEED = 4117
CANDIDATES = 80
SPREAD = 1.1  # standard deviation of the candidates' measures, logits

RATERS = [("Okafor", -0.5), ("Lindqvist", -0.3), ("Moreau", 0.0),
          ("Tanaka", 0.1), ("Silva", 0.2), ("Brandt", 0.5)]  # severities; they sum to 0
CRITERIA = [("Fluency", -0.2), ("Grammar", 0.5), ("Vocabulary", 0.1), ("Pronunciation", -0.4)]
THRESHOLDS = [-2.0, -1.0, 0.0, 1.1, 1.9]  # of categories 1 to 5; they sum to 0
BIASES = {("Lindqvist", "Pronunciation"): -1.1,  # rates it too low
          ("Silva", "Grammar"): 0.9}             # rates it too high

TRIPLES = list(itertools.combinations(range(len(RATERS)), 3))


def raters_of(candidate):
    """The judging plan: the 20 triples of raters take turns, so that each hears four candidates."""
    return TRIPLES[(candidate - 1) % len(TRIPLES)]


def main():
    rng = random.Random(SEED)
    candidates = draw_measures(CANDIDATES, SPREAD, rng)

    with open("speaking-data.txt", "w", encoding="ascii", newline="\n") as data:
        data.write("; Simulated by simulate.py: candidate, rater, the criteria 1 to 4, four ratings.\n")
        for number, measure in enumerate(candidates, start=1):
            for rater in raters_of(number):
                name, severity = RATERS[rater]
                ratings = [draw_rating(measure - severity - difficulty
                                       + BIASES.get((name, criterion), 0.0), THRESHOLDS, rng)
                           for criterion, difficulty in CRITERIA]
                data.write(f"{number}, {rater + 1}, 1-4, {', '.join(map(str, ratings))}\n")

    people = [("Candidate", measure) for measure in candidates]
    biases = [(f"{rater} x {criterion}", bias) for (rater, criterion), bias in BIASES.items()]
    write_truth([people, RATERS, CRITERIA], THRESHOLDS, biases)


if __name__ == "__main__":
    main()
