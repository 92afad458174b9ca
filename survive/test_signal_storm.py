"""Signals that hit a run at chosen places of its code, half of them in the allocator and in the log. The
process is gone with the failure mark, its lines whole behind what the log had before, or it was done.
Nothing here depends on how busy the machine is."""

import os
import random
import re
import shutil
import subprocess
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from survive import Stage, marks
from varnoth_run import BINARY, run

AIMED_HIT = os.environ["AIMED_HIT"]
HITS = int(os.environ.get("STORM_HITS", "2000"))
CAUGHT = [1, 2, 3, 4, 6, 7, 8, 11, 15, 23, 24, 25, 31]
ALLOCATOR = r"malloc|free|realloc|calloc|_int_malloc|_int_free|malloc_consolidate|sysmalloc|unlink_chunk.*"
LOG = r"varnoth::(LOG|TEXT_SINK|LOG_OUTLETS|UNINTERRUPTED|LOG_TABLE)\b.*|__vsnprintf_internal"
UNSAFE = ALLOCATOR + r"|__vfprintf_internal|fflush|fwrite|exit|abort|___pthread_mutex_lock|__tz_convert"
VARYING = re.compile(r"\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}|(?<=[._])\w{6}$|\d+ second.*|less than.*"
                     r"|(table_|log\.|pool_)\w{6}|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d")


def masked(line):
    return VARYING.sub("", line)


class Target:
    """The program's functions, and how often a run passes each."""

    def __init__(self, stage):
        symbols = subprocess.run(["nm", "-C", BINARY], capture_output=True, text=True, check=True).stdout
        rows = re.findall(r"^(\w+) [tTwW] (.*)$", symbols, re.M)
        self.names = {int(address, 16): name for address, name in rows}
        self.handler, self.ending = (self.of(rf".*varnoth::.*\b{name}\(.*")[0]
                                     for name in ("HandleFatalSignal", "End"))
        self.words = [str(BINARY), *stage.WORDS]
        own = self.of(r"varnoth::.*|" + ALLOCATOR + "|" + LOG)
        seen = self.ask(stage.fresh("count"), own, "count", *self.words)
        passes = {int(a, 16): int(n) for a, n in (row.split() for row in seen.splitlines())}
        assert len(passes) > 100
        self.aims = [[(a, n) for a, n in passes.items() if re.fullmatch(pattern, self.names[a])]
                     for pattern in (".*", ALLOCATOR, ".*", LOG)]
        self.watched = [self.handler, self.ending, *self.of(UNSAFE)]

    def of(self, pattern):
        return [a for a, name in self.names.items() if re.fullmatch(pattern, name)]

    @staticmethod
    def ask(directory, addresses, *words):
        return subprocess.run([AIMED_HIT, *words], input="\n".join(f"{a:x}" for a in addresses), text=True,
                              cwd=directory, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60,
                              env={**os.environ, "TMPDIR": "tmp"}, check=True).stdout

    def hit(self, directory, number):
        address, passes = random.choice(self.aims[number % len(self.aims)])
        signals = random.choice(CAUGHT), random.choice([0, *CAUGHT])
        place = (random.randint(1, passes), random.choice([0, random.randint(0, 300)]))
        words = ["hit", f"{address:x}", *map(str, place + signals), *self.words]
        try:
            *_, ending = self.ask(directory, self.watched, *words).splitlines()
        except subprocess.TimeoutExpired:
            ending = "hung"
        return ending, signals, f"{self.names[address]} {place} {signals}"


def fault(stage, directory, reference, ending, sent):
    """What is wrong with the outcome of a hit, or nothing."""
    found = marks(directory)
    pools = [stage.state(directory, name) for name in stage.UPDATED]
    logs = [p.read_text() for p in (directory / "log.varnoth", *(directory / "tmp").glob("log.*"))
            if p.exists()]
    text = logs[0] if logs else ""
    if "lost" in pools:
        return f"pools {pools}"
    if ending == "exit 0":
        return None if found == {"OK": "0"} and pools == ["new", "new"] else f"marks {found}"
    if ending in [f"signal {number}" for number in sent] and not text:
        return None if found == {"OK": "0"} else f"marks {found}"  # there was no handler yet
    if ending != "exit 1" or found != {"ERROR": "1"}:
        return f"marks {found}"
    # Every line as in a run that nothing hits, the last one as far as it had come; then those of the end.
    lines = text.split("\n")
    what = [i for i, line in enumerate(lines) if f"got fatal signal {sent[0]}: " in line]
    if len(what) != 2 or lines[what[1]:][1:] != [""] or what[1] != what[0] + 1:
        return "no lines of the end"
    if not lines[what[0]].startswith("ALARM : varnoth : got") or \
       not lines[what[1]].startswith("ALARM : varnoth : ZOD_MSG|ERROR|varnoth got"):
        return "broken lines of the end"
    *whole, last = lines[:what[0]] or [""]
    wanted = reference[:len(whole) + 1] + [""]
    if [masked(line) for line in whole] != wanted[:len(whole)]:
        return "other lines in the log"
    return None if wanted[len(whole)].startswith(masked(last)) else f"broken line {last!r}"


def test_storm(tmp_path):
    stage = Stage(tmp_path)
    (stage.start / "tmp").mkdir()
    (stage.start / "OK.varnoth").write_text("0")
    target = Target(stage)
    done = run(stage.fresh("reference"), stage.WORDS)
    reference = [masked(line) for line in done.log]

    def one(number):
        directory = stage.fresh(str(number))
        ending, sent, place = target.hit(directory, number)
        wrong = ending in ("unsafe", "hung") or fault(stage, directory, reference, ending, sent)
        shutil.rmtree(directory)
        return f"WRONG {ending}, {wrong}: {place}" if wrong else ending

    with ThreadPoolExecutor(2) as pool:
        outcomes = Counter(pool.map(one, range(HITS)))
    wrong = [o for o in outcomes if o.startswith("WRONG")]
    print(f"\nsignal storm: {HITS} hits, wrong {len(wrong)}:",
          {o: n for o, n in outcomes.items() if o not in wrong})
    assert not wrong, "\n".join(wrong[:20])
    assert outcomes["exit 1"] > HITS * 0.8
