"""What the simulated examples share: drawing from the many-Flank rating scale model, and truth.csv.

Only random() is drawn, so that every Python 3 writes the same files.  All measures are in logits.
"""

import csv
import math
from statistics import NormalDist


def draw_measures(count, spread, rng):
    """Measures of a normal distribution around 0 with the standard deviation `spread`."""
    normal = NormalDist(0.0, spread)
    return [round(normal.inv_cdf(rng.random()), 2) for _ in range(count)]


def draw_rating(measure, thresholds, rng):
    """A category from 0 to len(thresholds) for a measure sum."""
    logits = [0.0]
    for threshold in thresholds:
        logits.append(logits[-1] + measure - threshold)
    weights = [math.exp(value) for value in logits]
    left = rng.random() * sum(weights)
    for category, weight in enumerate(weights):
        left -= weight
        if left < 0:
            return category
    return len(thresholds)


def write_truth(flanks, thresholds, biases=()):
    """truth.csv: `flanks` are lists of (label, measure), `biases` are (label, bias)."""
    with open("truth.csv", "w", encoding="ascii", newline="\n") as truth:
        rows = csv.writer(truth, lineterminator="\n")
        rows.writerow(["flank", "number", "label", "measure"])
        for flank, elements in enumerate(flanks, start=1):
            for number, (label, measure) in enumerate(elements, start=1):
                rows.writerow([flank, number, label, f"{measure:.2f}"])
        for label, bias in biases:
            rows.writerow(["bias", "", label, f"{bias:.2f}"])
        for category, threshold in enumerate(thresholds, start=1):
            rows.writerow(["threshold", category, "", f"{threshold:.2f}"])
