"""Thousands of pairs made good and bad: whether `varnoth-tools check` foretells the end of each run, with a
reason for every failure, and leaves everything as it was. CHECKED_RUNS and CHECKED_FROM choose others."""

import json
import os
import random
import re
import shutil
import subprocess
from pathlib import Path

import pytest

from survive import sweep
from test_mutated_pools import NUMBERS, mutated
from varnoth_run import BINARY, EXAMPLES, arguments, run

TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parents[2] / "tools" / "varnoth-tools"))
RUNS, FROM = (int(os.environ.get(f"CHECKED_{name}", n)) for name, n in (("RUNS", "2000"), ("FROM", "0")))
STARTS = sorted({p.parent for p in EXAMPLES.glob("*/insar.pool")})
SCENES = ("master.pool", "slave.pool")
NOBODY = {"user": 65534, "group": 65534} if os.geteuid() == 0 else {}
METHODS = ("everett", "everett_4", "everett_7", "everett_-2", "everett_20", "everett_0", "polynom",
           "polyfit_3", "polyfit_-1", "polyfit_99", "chebyshev_8", "spline", "hermite", "localhermite_0_4",
           "localpolynom_0_9", "localpolyfit_4_0", "localchebyshev_6_9", "localpolynom_0_99", "Everett_8", "",
           "_", "everett(6)")
TIMES = ("0", "3600", "-86400", "06-APR-2025/00:00:00.000000", "2026-11-10T00:00:00", "0010/00:00:00", "10/00:0x:00",
         "31-FEB-2025/00:00:00", "", "99999/00:00:00", "x")
KEYS = re.compile(rb"^(\w+)[ \t]+([A-Z]\w+)[ \t]+(.*)$", re.MULTILINE)


class Faults:
    """Each operation makes one fault, or something odd that is none, in a directory."""

    def __init__(self, chance, directory):
        self.chance, self.directory, self.words, self.options = chance, directory, {}, {}

    def name(self, *names):
        return self.chance.choice(names or (*SCENES, "insar.pool"))

    def edit(self, name, change):
        path = self.directory / name
        if path.is_file():
            path.write_bytes(change(path.read_bytes()))

    def remove(self, *names):
        """Takes one of the files away, whatever it is, and gives its path."""
        path = self.directory / self.name(*names)
        shutil.rmtree(path) if path.is_dir() and not path.is_symlink() else path.unlink(missing_ok=True)
        return path

    def entry(self, name, change, wanted=None):
        """Changes one entry's key, type and value, of a random one or of one by its name."""
        def one(content):
            found = [m for m in KEYS.finditer(content) if wanted is None or m[1].decode() == wanted]
            if not found:
                return content
            m = self.chance.choice(found)
            return content[:m.start()] + b" ".join(change(*m.groups())) + content[m.end():]
        self.edit(name, one)

    def value(self, name, key, *texts):
        text = self.chance.choice(texts).encode()
        self.entry(name, lambda k, kind, _: (k, kind, b'"' + text + b'"' if kind == b"STR" else text), key)

    def nothing(self): pass
    def any_lines(self): self.edit(self.name(), lambda content: mutated(content, self.chance))
    def no_entry(self): self.entry(self.name(), lambda *_: (b"",))
    def other_key(self): self.entry(self.name(), lambda k, *rest: (self.chance.choice([k.upper(), b" " + k,
        k + b"x"]), *rest))
    def other_type(self):
        self.entry(self.name(), lambda k, kind, v: (k, self.chance.choice([b"FLT_6", b"FLT_15", b"INT_32", b"STR",
            b"REAL"]), v))
    def other_number(self): self.entry(self.name(), lambda k, kind, _: (k, kind,
        self.chance.choice(NUMBERS + [b"12,5", b"5.4D+09", b"1e-9", b"3"])))
    def scaled(self):
        factor = self.chance.choice([0.5, 2, 1e-6, 1e6, -1, 1.001])
        def change(k, kind, v):
            try:
                return k, kind, f"{float(v) * factor:.17E}".encode()
            except ValueError:
                return k, kind, v
        self.entry(self.name(), change)
    def cut(self): self.edit(self.name(), lambda c: c[:self.chance.randrange(len(c) + 1)])
    def no_end(self): self.edit(self.name(), lambda c: c.rstrip(b"\n"))
    def returns(self): self.edit(self.name(), lambda c: c.replace(b"\n", b"\r\n"))
    def method(self): self.value(self.name(*SCENES), "orbit_interpolation", *METHODS)
    def reference(self): self.value(self.name(*SCENES), "orbit_reference_time", *TIMES)
    def representation(self):
        self.value(self.name(*SCENES), "orbit_representation", *(
            f"orbit_{a}_{b}" for a in ("pool_double", "pool_float", "mdb_double") for b in ("double", "utc", "met",
                "x")))
    def columns(self): self.value(self.name(*SCENES), "orbit_value_key", "orbit_x", "orbit_x/orbit_y(orbit_z)",
        "orbit_x y z", "", "a b c d",
                                  "orbit_x orbit_y orbit_z orbit_x", "orbit_epoch,orbit_y,orbit_z",
                                      "orbit_z, orbit_x, orbit_y")
    def side(self): self.value(self.name(*SCENES), "antenna_look_direction", "left", "right", " ri ght", "Left", "")
    def mode(self): self.value("insar.pool", "observation_mode", "single_pass", "dual_pass", "single_pass ",
        "single", "")
    def size(self): self.value("insar.pool", self.name("n_samples", "n_lines"), "0", "1", "2", "-5", "2147483647",
        "-2147483648", "900000")
    def start(self): self.value("insar.pool", self.name("master_first_az_time", "slave_first_az_time"), "3600",
        "3590", "3598.0", "3618", "3630",
                                "0", "8530", "1e9", "3541.25", "3540", "-1e300")
    def range(self): self.value("insar.pool", self.name("master_first_rg_time", "slave_first_rg_time"), "0.00275",
        "0.011", "0.1", "0", "5.5", "-0.0055", "0.0047")
    def height(self): self.value("insar.pool", "local_height", "-6e6", "8e3", "1e6", "nan", "-1e308", "")
    def epochs(self):
        """Changes lines of the list of epochs, or of any other."""
        def change(content):
            head = self.chance.choice([b"orbit_epoch", b"orbit_x", b"orbit_z"])
            lines, at = content.split(b"\n"), content[:max(content.find(b"\n" + head), 0)].count(b"\n") + 4
            if at + 4 >= len(lines):
                return content
            i, j = (at + self.chance.randrange(4) for _ in "ij")
            what = self.chance.randrange(5)
            if what == 0:
                lines[i], lines[j] = lines[j], lines[i]
            elif what == 1:
                lines[i] = lines[j]
            elif what == 2:
                del lines[i]
            elif what == 3:
                lines.insert(i, lines[j])
            else:
                lines[i] = re.sub(rb"(\d)(\d*\D*)$", rb"\g<1>7\2", lines[i])
            return b"\n".join(lines)
        self.edit(self.name(*SCENES), change)

    def degree(self): self.words["FlatEarthPolyDegree"] = self.chance.choice(["-1", "-7", "0", "10", "11", "40",
        "x", "4.5", "", None, "99999999999", "-2147483648"])
    def own_height(self): self.words["LocalHeight"] = self.chance.choice(["12,5", "x", "", "nan", "1e999", "-7e6",
        "250", "inf"])
    def durable(self): self.words["DurableUpdate"] = self.chance.choice(["TRUE", "FALSE", "true", ""])
    def pool_name(self):
        key = self.chance.choice(["MasterPar", "SlavePar", "ParameterPool", "log_pp"])
        self.words[key] = self.chance.choice(["", "none.pool", "none/x.pool", ".", "a" * 256, "insar.pool",
            "master.pool", "./insar.pool", None, "/dev/null"])
    def log_place(self): self.words["lfn"] = self.chance.choice(["none/log", ".", "own.log", "b" * 300, "",
        "/dev/null"])
    def status(self): self.words["status"] = self.chance.choice(["none", ".", "c" * 260, "", "insar.pool"])
    def identity(self): self.words["pid"] = self.chance.choice(["7", "", "none/7", "d" * 252, "e" * 246])
    def stop(self): (self.directory / "STOP.varnoth").touch()
    def settings_file(self):
        rows = self.chance.choice(["FlatEarthPolyDegree 2\nlog_pp file.pool\n",
            "FlatEarthPolyDegree 2\nlfn none/a\nFlatEarthPolyDegree -1\n",
                                   "MasterPar none.pool\nMasterPar master.pool\n", "SlavePar " + "s" * 400 + "\n",
                                       "LocalHeight\n"])
        self.remove("pcf.varnoth").write_text(rows)
        for key in set(row.split()[0] for row in rows.splitlines()):
            self.words[key] = None
    def settings_unreadable(self): self.remove("pcf.varnoth").mkdir()
    def log_pool(self):
        column = "software_{} {} 0 1\n {{\n  {}\n }}\n".format
        texts = ("names", "versions", "dates", "start_times", "end_times")
        table = "".join(column(name, "STR_V", '"a"') for name in texts) + column("execution_times", "INT_32_V", 7)
        table = table.encode()
        self.remove("log.pool").write_bytes(self.chance.choice([table, mutated(table, self.chance)]))
    def directory_instead(self):
        self.remove("log.pool", "current_process.pid", "log.varnoth", "insar.pool").mkdir()
    def link(self):
        self.remove("log.pool", "master.pool", "parent_process.pid",
            "log.varnoth").symlink_to(self.name("nowhere/x", "there", "slave.pool", "slave.pool/x"))
    def pipe(self):
        os.mkfifo(self.remove("log.pool", "master.pool", "current_process.pid", "insar.pool"))
    def rights(self):
        """Takes rights away, from a user who is not above them."""
        name = self.name(".", ".", "insar.pool", "master.pool", "log.pool", "log.varnoth", "current_process.pid",
            "pcf.varnoth")
        path = self.directory / name
        self.options = NOBODY
        if not path.exists():
            path.touch()
        for p in (self.directory, *self.directory.rglob("*")):
            if NOBODY:
                os.chown(p, 65534, 65534, follow_symlinks=False)
        path.chmod(self.chance.choice([0o000, 0o444, 0o222, 0o555] if name != "." else [0o555]))
    def far_pool(self):
        """The InSAR pool in a directory where no file can be made."""
        place = self.directory / "far"
        place.mkdir()
        if (self.directory / "insar.pool").is_file():
            shutil.move(self.directory / "insar.pool", place)
        self.words["ParameterPool"] = "far/insar.pool"
        if self.chance.random() < 0.3:
            self.words["log_pp"] = "far/insar.pool"
        self.options = NOBODY
        for p in (self.directory, *self.directory.rglob("*")):
            if NOBODY:
                os.chown(p, 65534, 65534, follow_symlinks=False)
        place.chmod(0o555)


FAULTS = [name for name in vars(Faults) if name not in ("__init__", "name", "edit", "remove", "entry", "value")
          and not name.startswith("_")]


def stand(directory):
    """All that a check could have touched."""
    return {p: (s.st_mode, s.st_mtime_ns, s.st_size) for p in (directory, *directory.rglob("*")) for s in [p.lstat()]}


def look(directory, seed):
    chance = random.Random(seed)
    shutil.copytree(chance.choice(STARTS), directory, dirs_exist_ok=True)
    faults = Faults(chance, directory)
    made = chance.sample(FAULTS, chance.choice([1, 1, 1, 2, 2, 3]))
    for name in made:
        getattr(faults, name)()
    words = arguments(**faults.words)
    before = stand(directory)
    checked = subprocess.run([TOOLS, "check", "--json", *words], cwd=directory, capture_output=True, timeout=60,
                             stdin=subprocess.DEVNULL, check=False, **faults.options)
    assert stand(directory) == before, (made, "touched", set(stand(directory)) ^ set(before))
    done = run(directory, words, **faults.options)
    for path in (directory, *directory.rglob("*")):
        if not path.is_symlink():
            path.chmod(0o755)
    assert checked.returncode in (0, 1), (made, checked)
    told = json.loads(checked.stdout)
    assert (checked.returncode == 0) == told["would_succeed"] == (done.status == 0), (made, words, done.status,
        checked.stdout)
    errors = [finding for finding in told["findings"] if finding["level"] == "error"]
    assert bool(errors) != told["would_succeed"], (made, told)
    vague = any(finding["code"] in ("arithmetic", "run-fails") for finding in errors)
    return "good" if told["would_succeed"] else "bad, told vaguely" if vague else "bad"


@pytest.mark.skipif(not TOOLS.exists(), reason="LEFT OUT: varnoth-tools is not built")
def test_check_agrees(tmp_path):
    start = tmp_path / "start"
    start.mkdir()
    for path in (tmp_path, *tmp_path.parents):
        if NOBODY and path.owner() == "root" and str(path) not in ("/", "/tmp"):
            path.chmod(path.stat().st_mode | 0o011)
    seen = sweep(start, tmp_path, [(seed,) for seed in range(FROM, FROM + RUNS)], look)
    print(f"\nchecks that agree with their run: {dict(seen)}")
    assert seen["good"] and seen["bad"]
