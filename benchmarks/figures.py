"""Prints what the benchmarks found: each figure is the ratio of two costs of one run, by the medians of
its rounds, with the goal that it should keep.

    figures.py <output of a benchmark program, JSON>...
"""

import json
import statistics
import sys
from collections import defaultdict

# Name, benchmark, floor (none where the benchmark measures both in turn), unit, goal, and a better
# ratio to aim at.
FIGURES = [
    ("whole run on the real pair", "WholeRun", None, "ms", 2.0, 1.5),
    ("400 pairs, two at a time", "ManyPairs", None, "ms", 2.0, 1.5),
    ("start to the STOP file", "Stop", None, "ms", 2.5, 1.5),
    ("largest memory of a run", "Memory", None, "kB", 3.0, 2.0),
    ("searches, pool as it is", "Searches/40", "SearchesFloor/40", "us", 3.0, 1.5),
    ("searches, pool 100 times as large", "Searches/4000", "SearchesFloor/4000", "us", 3.0, 1.5),
    ("line reader", "Lines/400", "LinesFloor/400", "ns", 5.0, 2.5),
    ("number in", "NumberIn", "NumberInFloor", "ns", 1.5, 1.2),
    ("1000 numbers out", "NumbersOut/1000", "NumbersOutFloor/1000", "ns", 1.5, 1.2),
    ("geolocation_fast", "Geolocation", "GeolocationFloor", "ns", 1.3, 1.1),
    ("CalcSlaveTime, order 4", "SlaveTime", "SlaveTimeFloor", "ns", 1.4, 1.2),
    ("EVERETT value, order 4", "Everett/value/4", "EverettChain/4", "ns", 1.2, 1.1),
    ("EVERETT value, order 8", "Everett/value/8", "EverettChain/8", "ns", 1.2, 1.1),
    *[(f"EVERETT second derivative, order {order}", f"Everett/second/{order}",
       f"Everett/value/{order}", "ns", 2.5, 1.5) for order in (2, 4, 6, 8, 10)],
    ("lfit, 11 x 4", "NormalEquations/11/4", "NormalEquationsFloor/11/4", "ns", 3.0, 2.0),
    ("SVD fit, 11 x 4", "SvdFit/11/4", "SvdFitGsl/11/4", "ns", 1.2, 1.0),
    ("SVD fit, 200 x 8", "SvdFit/200/8", "SvdFitGsl/200/8", "ns", 1.2, 1.0),
    ("loading 17000 orbit samples", "OrbitLoad/17000", "OrbitLoadFloor/17000", "ms", 3.0, 1.5),
]


def rounds_of(paths):
    """Costs of each round by benchmark, and by (name, None) the floors that a benchmark measures itself."""
    rounds = defaultdict(list)
    for path in paths:
        with open(path, encoding="utf-8") as file:
            entries = json.load(file)["benchmarks"]
        for entry in entries:
            if entry.get("error_occurred"):
                sys.exit(f"{entry['name']}: {entry['error_message']}")
            if entry["run_type"] != "iteration":
                continue
            name = entry["run_name"].removesuffix("/iterations:1")
            rounds[name].append(entry.get("cost", entry["real_time"]))
            if "floor" in entry:
                rounds[name, None].append(entry["floor"])
    return rounds


def main(paths):
    rounds = rounds_of(paths)
    print(f"{'figure':36} {'cost':>9} {'floor':>9}    {'ratio':>5}  {'middle half':13} {'goal':>4}")
    for name, measured, floor, unit, goal, stretch in FIGURES:
        cost, least = rounds[measured], rounds[floor or (measured, None)]
        ratio = low = high = statistics.median(cost) / statistics.median(least)
        if len(cost) > 3:
            # Measured in turn: quartiles of the rounds' ratios; otherwise: ratios of quartiles.
            ratios = statistics.quantiles([c / f for c, f in zip(cost, least)])
            costs, floors = statistics.quantiles(cost), statistics.quantiles(least)
            low, high = (costs[0] / floors[2], costs[2] / floors[0]) if floor else ratios[::2]
        verdict = "better" if ratio <= stretch else "good" if ratio <= goal else "MISSED"
        print(f"{name:36} {statistics.median(cost):9.4g} {statistics.median(least):9.4g} {unit}"
              f" {ratio:5.2f}  {low:5.2f} - {high:5.2f} {goal:4.1f}  {verdict}")


if __name__ == "__main__":
    main(sys.argv[1:])
