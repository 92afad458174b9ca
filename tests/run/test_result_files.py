"""The exact text of what a run leaves: the log with its levels, wording and tables, and the pools with
their order, comments, digits, tabs, blanks, and the lines that are none of its business."""

import re
from pathlib import Path

from varnoth_run import arguments, difference, run

EXPECTED = Path(__file__).parent / "expected"
FOREIGN = ("#old value\ncenter_latitude FLT_6 1.0\n\n#kept\n"
           "foreign_key            STR   'as it stands'  \t\n  indented {\n\n")
# Lines of the libraries below.
APART = re.compile(r"TRACE : varnoth : (PP\.|geolocation_fast:).*\n", re.MULTILINE)


def text(path):
    return path.read_text(encoding="latin-1")


def without_comments(path):
    return [line for line in text(path).split("\n") if line[:1] != "#"]


def test_log_and_pools(ready):
    """A second run replaces the entries in their places; each run leaves its 19 comments."""
    pool = ready / "insar.pool"
    pool.write_text("#a comment of ours\n" + text(pool) + FOREIGN)
    assert run(ready, arguments(lfl="TRACE")).status == 0
    for stored, found in (("log", "log.varnoth"), ("insar_pool", "insar.pool"), ("log_pool", "log.pool")):
        content = APART.sub("", text(ready / found))
        assert difference(text(EXPECTED / f"{stored}.txt"), content) is None, stored
    entries, comments = without_comments(pool), text(pool).count("\n#")
    assert run(ready).status == 0
    assert without_comments(pool) == entries
    assert text(pool).count("\n#") == comments + 19
