"""What a power cut may leave of a run. Records its file operations and replays them in memory: after each one,
those that no fsync settled may be on the disk or not, in any order, and writes in part (Pillai et al., All File
Systems Are Not Created Equal, OSDI 2014)."""

import itertools
import random
import re
from collections import Counter
from functools import lru_cache
from math import prod

import pytest

from survive import Stage, masked

EXHAUSTIVE, SAMPLES = 2000, 150  # looks at all states of a point up to the first number, else draws the second
RECORD = ("-y", "-xx", "-s", "1000000", "-e", "trace=openat,write,pwrite64,ftruncate,unlink,fsync")
DIRECTORY = "directory"
# In which ways an operation reaches the disk; 0 is not at all, 1 is whole.
WAYS = {"name": 2, "size": 2, "write": 5}


def text(escaped):
    return bytes.fromhex(escaped.replace("\\x", ""))


def operations(stage, mode, old_mark):
    """The files at the start by number, the names by which they go, and what a run does to them."""
    directory = stage.fresh(mode)
    if old_mark:
        (directory / "OK.varnoth").write_text("0")
    paths = [directory / name for name in ("insar.pool", "log.pool", "OK.varnoth") if (directory / name).exists()]
    names = {path.name: number for number, path in enumerate(paths)}
    files, live, found = [path.read_bytes() for path in paths], dict(names), []
    status, calls = stage.traced(directory, *RECORD, words=[*stage.WORDS, "-DurableUpdate", mode])
    assert status == 0
    for call, arguments, result in calls:
        quoted = call in ("openat", "unlink")
        name = text(re.search('"(.*?)"' if quoted else "<(.*?)>", arguments)[1]).decode().rsplit("/", 1)[-1]
        last = arguments.rsplit(", ", 1)[-1]
        if call == "fsync" and name == directory.name:
            found.append(("sync", DIRECTORY))
        elif result.startswith("-") or not re.match(r"(insar|log)\.pool$|pool_|(OK|ERROR)\.varnoth", name):
            continue
        elif call == "unlink" or call == "openat" and "O_CREAT" in arguments and name not in live:
            live[name] = len(files) + len(found) if call == "openat" else None  # a number of its own
            found.append(("name", DIRECTORY, name, live[name]))
            if call == "unlink":
                del live[name]
        elif call == "fsync":
            found.append(("sync", live[name]))
        elif call == "ftruncate":
            found.append(("size", live[name], int(last)))
        elif call in ("write", "pwrite64"):
            at = int(last) if call == "pwrite64" else 0  # marks are written at once
            found.append(("write", live[name], at, text(arguments.split('"')[1])))
    return files, names, found


def apply(files, names, done):
    """The names and contents after operations, each with the way in which it reached the disk."""
    names, files = dict(names), {number: bytearray(content) for number, content in enumerate(files)}
    for (kind, number, first, *more), way in done:
        data = files.setdefault(number, bytearray())
        if kind == "name" and way:
            names[first], = more
        elif kind == "size" and way:
            data[:] = data[:first].ljust(first, b"\0")
        elif way:  # whole, cut short at a sector or a page, or only the size
            taken = more[0][:{1: None, 2: len(more[0]) // 1024 * 512, 3: 4096, 4: 0}[way]]
            end = first + len(taken if way == 2 else more[0])
            data[:] = data.ljust(end, b"\0")
            data[first:first + len(taken)] = taken
    return {name: (number, bytes(files.get(number, b""))) for name, number in names.items() if number is not None}


def crashes(found, draw):
    """Every point of a run with the ways of its operations."""
    for point in range(len(found) + 1):
        synced = {operation[1]: i for i, operation in enumerate(found[:point]) if operation[0] == "sync"}
        done = [(i, operation) for i, operation in enumerate(found[:point]) if operation[0] != "sync"]
        pending = [1 if i < synced.get(operation[1], -1) else WAYS[operation[0]] for i, operation in done]
        if prod(pending) <= EXHAUSTIVE:
            choices = itertools.product(*(range(n) if n > 1 else (1,) for n in pending))
        else:
            singles = [[way if i == j else 1 for j in range(len(pending))]
                       for i, n in enumerate(pending) if n > 1 for way in range(n)]
            choices = singles + [[1 if n == 1 or draw.random() < share else draw.randrange(n) for n in pending]
                                 for share in (0.1, 0.5, 0.95) for _ in range(SAMPLES // 3)]
        yield from ([(operation, way) for (_, operation), way in zip(done, ways)] for ways in choices)


def campaign(stage, files, names, found):
    """Counts what the states show."""
    new = lru_cache(None)(lambda content, name: masked(content) == stage.after[name])

    def state(left, name):
        content = left[name][1]
        if content == stage.before[name] or new(content, name):
            return "old" if content == stage.before[name] else "new"
        return "kept" if any(new(left[n][1], name) for n in left if n.startswith("pool_")) else "lost"

    seen = Counter()
    for done in crashes(found, random.Random(1)):
        left = apply(files, names, done)
        states = [state(left, name) for name in stage.UPDATED]
        number, mark = left.get("OK.varnoth", (None, b""))
        honest = ("old", "new") if number == names.get("OK.varnoth") else ("new",)
        seen["lost" if "lost" in states else "/".join(states)] += 1
        seen["mark lies"] += mark == b"0" and any(s not in honest for s in states)
    return seen


@pytest.mark.parametrize("old_mark", [False, True])
def test_power_loss(tmp_path, old_mark):
    stage = Stage(tmp_path)
    for mode in ("TRUE", "FALSE"):
        files, names, found = operations(stage, mode, old_mark)
        end = apply(files, names, [(operation, 1) for operation in found if operation[0] != "sync"])
        assert [masked(end[name][1]) for name in stage.UPDATED] == [stage.after[name] for name in stage.UPDATED]
        assert end["OK.varnoth"][1] == b"0"
        seen = campaign(stage, files, names, found)
        print(f"power loss, DurableUpdate {mode}, old mark {old_mark}: {len(found)} operations,",
              sum(seen.values()) - seen["mark lies"], "states,", dict(seen))
        assert (seen["lost"] > 0) == (mode == "FALSE"), seen  # the model sees what no fsync guards
        assert mode == "FALSE" or not seen["mark lies"], seen
