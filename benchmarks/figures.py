"""Prints what the benchmarks found: each figure is the ratio of two costs of one run, by the medians of
its rounds, with the goal that it should keep.

    figures.py <output of a benchmark program, JSON>...
"""

import json
import statistics
import sys
from collections import defaultdict

# Name, what is measured, its floor, goal, and what more would be good.
FIGURES = [
    ("whole run on the real pair", "WholeRun/varnoth", "WholeRun/floor", 2.0, 1.5),
    ("400 pairs, two at a time", "ManyPairs/varnoth", "ManyPairs/floor", 2.0, 1.5),
    ("start to the STOP file", "Stop/varnoth", "Stop/floor", 2.5, 1.5),
    ("largest memory of a run", "Memory/varnoth", "Memory/floor", 3.0, 2.0),
    ("searches, pool as it is", "Searches/40", "SearchesFloor/40", 3.0, 1.5),
    ("searches, pool 100 times as large", "Searches/4000", "SearchesFloor/4000", 3.0, 1.5),
    ("line reader", "Lines/400", "LinesFloor/400", 5.0, 2.5),
    ("number in", "NumberIn", "NumberInFloor", 1.5, 1.2),
    ("number out", "NumbersOut/1000", "NumbersOutFloor/1000", 1.5, 1.2),
    ("geolocation_fast", "Geolocation", "GeolocationFloor", 1.3, 1.1),
    ("CalcSlaveTime, order 4", "SlaveTime", "SlaveTimeFloor", 1.4, 1.2),
    ("EVERETT value, order 4", "Everett/value/4", "EverettChain/4", 1.2, 1.1),
    ("EVERETT value, order 8", "Everett/value/8", "EverettChain/8", 1.2, 1.1),
    *[(f"EVERETT second derivative, order {order}", f"Everett/second/{order}",
       f"Everett/value/{order}", 2.5, 1.5) for order in (2, 4, 6, 8, 10)],
    ("lfit, 11 x 4", "NormalEquations/11/4", "NormalEquationsFloor/11/4", 3.0, 2.0),
    ("SVD fit, 11 x 4", "SvdFit/11/4", "SvdFitGsl/11/4", 1.2, 1.0),
    ("SVD fit, 200 x 8", "SvdFit/200/8", "SvdFitGsl/200/8", 1.2, 1.0),
    ("loading 17000 orbit samples", "OrbitLoad/17000", "OrbitLoadFloor/17000", 3.0, 1.5),
]


def rounds_of(paths):
    """Costs per round in the benchmark's own unit, by benchmark."""
    rounds = defaultdict(list)
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for entry in json.load(file)["benchmarks"]:
                if entry.get("error_occurred"):
                    sys.exit(f"{entry['name']}: {entry['error_message']}")
                if entry["run_type"] == "iteration":
                    name = entry["run_name"].removesuffix("/manual_time")
                    rounds[name.removesuffix("/iterations:1")].append(
                        (entry["real_time"], entry["time_unit"]))
    return rounds


def main(paths):
    rounds = rounds_of(paths)
    print(f"{'figure':36} {'cost':>12} {'floor':>12} {'ratio':>6}  {'middle half':13} {'goal':>5}")
    for name, measured, floor, goal, stretch in FIGURES:
        cost, least = ([time for time, _ in rounds[key]] for key in (measured, floor))
        unit = "kB" if measured.startswith("Memory") else rounds[measured][0][1]
        ratio = statistics.median(cost) / statistics.median(least)
        low, high = ratio, ratio
        if len(cost) > 3:
            of_cost, of_least = statistics.quantiles(cost), statistics.quantiles(least)
            low, high = of_cost[0] / of_least[2], of_cost[2] / of_least[0]
        verdict = "better" if ratio <= stretch else "good" if ratio <= goal else "MISSED"
        print(f"{name:36} {statistics.median(cost):9.4g} {unit:2} {statistics.median(least):9.4g}"
              f" {unit:2} {ratio:6.2f}  {low:5.2f} - {high:5.2f} {goal:5.1f}  {verdict}")


if __name__ == "__main__":
    main(sys.argv[1:])
