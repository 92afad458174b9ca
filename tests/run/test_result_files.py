"""The exact text of the pools that a run leaves: order, comments, digits, tabs, blanks, and the lines
that are none of its business."""

from pathlib import Path

from varnoth_run import difference, run

EXPECTED = Path(__file__).parent / "expected"
FOREIGN = ("#old value\ncenter_latitude FLT_6 1.0\n\n#kept\n"
           "foreign_key            STR   'as it stands'  \t\n  indented {\n\n")


def text(path):
    return path.read_text(encoding="latin-1")


def with_foreign_lines(directory):
    pool = directory / "insar.pool"
    pool.write_text("#a comment of ours\n" + text(pool) + FOREIGN)
    return directory


def test_written_pools(ready):
    assert run(with_foreign_lines(ready)).status == 0
    for name in ("insar", "log"):
        wanted = text(EXPECTED / f"{name}_pool.txt")
        assert difference(wanted, text(ready / f"{name}.pool")) is None


def test_second_run_replaces_in_place(ready):
    """Entries keep their places and values. Comments ahead of an entry are everybody's, so the ones
    of the first run stay where the second one writes its own."""
    def parts(content):
        lines = content.split("\n")
        return [x for x in lines if x[:1] != "#"], sorted(x for x in lines if x[:1] == "#")

    log = run(with_foreign_lines(ready)).log
    first, first_comments = parts(text(ready / "insar.pool"))
    done = run(ready)
    assert done.status == 0 and done.log[:len(log)] == log
    second, second_comments = parts(text(ready / "insar.pool"))
    assert second == first
    assert len(second_comments) == len(first_comments) + 19
