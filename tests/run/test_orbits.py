"""Whole runs on the real pair with every interpolation: all agree with Everett's formula of eighth
order within what the method can do."""

import pytest

from varnoth_run import EXAMPLES, run

# Bounds in metres for the targets, which the log tells to the centimetre, and for the slave's ranges
# and the effective baseline, where both orbits' like errors cancel. A spline's velocity is 0.1 m/s
# off, which turns the zero-Doppler plane by 0.2 m at the target; the others are better than their
# digits. A fit in plain powers of up to 160 s is the worst conditioned: above order 5 it is lost.
METHODS = {
    "everett_4": (0.011, 1e-6), "polynom": (0.011, 2e-5), "polyfit_4": (0.02, 5e-4),
    "spline": (0.4, 2e-5), "localpolynom_0_9": (0.011, 2e-5), "localpolyfit_4_5": (0.02, 2e-5),
    "chebyshev_10": (0.011, 1e-4), "localchebyshev_6_9": (0.011, 5e-5),
    "hermite": (0.011, 5e-5), "localhermite_0_4": (0.011, 2e-5),
}


def run_with(directory, method):
    for name in ("master", "slave", "insar"):
        text = (EXAMPLES / "real_pair" / f"{name}.pool").read_text()
        (directory / f"{name}.pool").write_text(text.replace("everett_8", method))
    done = run(directory)
    assert done.status == 0, done.alarms
    targets = [float(x) for text in done.levels("DEBUG") if "Earth vector" in text
               for x in text.split("(")[1].rstrip(")").split()]
    pool = done.pool()
    return targets, [*pool["slave_early_az_range_distance"],
                     *pool["slave_late_az_range_distance"], pool["eff_baseline"]]


@pytest.fixture(scope="module")
def wanted(tmp_path_factory):
    return run_with(tmp_path_factory.mktemp("wanted"), "everett_8")


@pytest.mark.parametrize("method", METHODS)
def test_results_agree(wanted, tmp_path, method):
    found = run_with(tmp_path, method)
    errors = [max(abs(a - b) for a, b in zip(f, w)) for f, w in zip(found, wanted)]
    assert errors[0] <= METHODS[method][0] and errors[1] <= METHODS[method][1], errors
