"""Signals that hit a run at chosen places of its code, half of them in the allocator and in the log. The
process is gone with the failure mark, its lines whole after what the log had before, or it was done.
Nothing here depends on how busy the machine is."""

import os
import random
import re
import subprocess

from aimed_hit import count_passes, hit
from survive import Stage, marks
from varnoth_run import BINARY, run

HITS = int(os.environ.get("STORM_HITS", "2000"))
CAUGHT = [1, 2, 3, 4, 6, 7, 8, 11, 15, 23, 24, 25, 31]
ALLOCATOR = r"malloc|free|realloc|calloc|_int_malloc|_int_free|malloc_consolidate|sysmalloc|unlink_chunk.*"
LOG = r"varnoth::(LOG|TEXT_SINK|LOG_OUTLETS|UNINTERRUPTED|LOG_TABLE|FormatText|FixedText)\b.*|__vsnprintf_internal"
UNSAFE = ALLOCATOR + r"|__vfprintf_internal|fflush|fwrite|exit|abort|___pthread_mutex_lock|__tz_convert"
VARYING = re.compile(r"\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4}|(?<=[._])\w{6}$|\d+ second.*|less than.*"
                     r"|(table_|log\.|pool_)\w{6}|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d")


def masked(line):
    return VARYING.sub("", line)


def expect_whole_lines(text, reference, number):
    """Every line as in a run that nothing hits, the last one as far as it had come; then those of the end."""
    what = rf"got fatal signal {number}: .*\n"
    end = rf"^ALARM : varnoth : {what}ALARM : varnoth : ZOD_MSG\|ERROR\|varnoth {what}"
    ahead, *behind = re.split(end, text, flags=re.M)
    assert behind == [""], text[-500:]
    *whole, last = ahead.split("\n")[:-1] or [""]
    wanted = reference[:len(whole) + 1] + [""]
    assert [masked(line) for line in whole] == wanted[:len(whole)]
    assert wanted[len(whole)].startswith(masked(last))


def test_storm(tmp_path):
    stage = Stage(tmp_path)
    (stage.start / "tmp").mkdir()
    (stage.start / "OK.varnoth").write_text("old")
    reference = [masked(line) for line in run(stage.fresh("reference"), stage.WORDS).log]
    symbols = subprocess.run(["nm", "-C", BINARY], capture_output=True, text=True, check=True).stdout
    names = {int(address, 16): name for address, name in re.findall(r"^(\w+) [tTwW] (.*)$", symbols, re.M)}
    command = [BINARY, *stage.WORDS]

    def of(pattern, addresses=names):
        return [a for a in addresses if re.fullmatch(pattern, names[a])]

    passes = count_passes(command, stage.fresh("count"), of(f"varnoth::.*|{ALLOCATOR}|{LOG}"))
    aims = [of(pattern, passes) for pattern in (".*", ALLOCATOR, ".*", LOG)]
    unsafe = of(UNSAFE)
    (handler,), (ending,) = of(r"varnoth::HandleFatalSignal\(.*"), of(r"varnoth::.*\bEnd\(.*")

    def draw(aim):
        address = random.choice(aim)
        place = address, random.randint(1, passes[address]), random.choice([0, random.randint(0, 300)])
        return names[address], place, random.choices(CAUGHT, k=random.choice([1, 2]))

    def look(directory, _, place, signals):
        status = hit(command, directory, place, signals, handler, ending, unsafe)
        _, *pools = stage.outcome(directory, status)
        found = marks(directory)
        logs = [directory / "log.varnoth", *(directory / "tmp").glob("log.*")]
        text = next((log.read_text() for log in logs if log.exists()), "")
        if status == 0:
            assert (found, pools) == ({"OK": "0"}, ["new", "new"])
        elif not text and status in [-number for number in signals]:
            assert found == {"OK": "old"}  # there was no handler yet
        else:
            assert (status, found) == (1, {"ERROR": "1"})
            expect_whole_lines(text, reference, signals[0])
        return status

    seen = stage.sweep([draw(aims[number % len(aims)]) for number in range(HITS)], look)
    print(f"\nsignal storm: {HITS} hits, none wrong: {dict(seen)}")
    # About a sixth comes before there is a handler, or after the success.
    assert len(passes) > 100 and seen[1] > HITS * 0.75
