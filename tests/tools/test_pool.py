"""varnoth-tools pool: what it shows, changes, compares and finds, and that it leaves alone what it only reads."""

import json
import os
import resource
import signal
import subprocess

import pytest

from varnoth_run import EXAMPLES, TOOLS, Run

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
VECTOR = "v FLT_15_V {}\n {{\n  1\n  2.5E+00\n }}\n\nlast INT_32 1\n"
MATRIX = "m INT_16_M 1 2 3 2\n {{\n  {{\n   1\n   2\n  }}\n  {{\n   3\n{}   4\n  }}\n }}\n"
POOL = "#height\n# in [m]\nheight FLT_15 1.25E+01 m\n\n" + VECTOR.format("-3 2") + MATRIX.format("") + (
    'n FLT_6 nan\nb BOL TRUE\nt STR "10\xb0 \\"N\\""\np STR_STR "a" "b"\ni IDX_FLT_6 -1 0.5\nheight INT_32 2\n')
# Text, and what is told of it as line, severity and a part of the message.
PITS = {
    "clean": (POOL.replace("height INT_32", "other INT_32").replace(" m\n", "\n").replace("nan", "1"), []),
    "type": ("a FLT_16 1\nb FLT_V 0 1\n {\n  1\n }\nc", ["1 e unknown type", "2 e unknown type", "6 e line end", "6 e w"]),
    "CR LF": ("a INT_8 1\r\nb INT_8_V 0 1\r\n {\r\n 1\r\n }\r\nc INT_8\r\n", ["1 w 6 l", "2 e block", "6 e no value"]),
    "limits": (f"#{'c' * 1022}\n#{'c' * 1023}\n{'a' * 100} BYT 1\n{'b' * 101} BYT 1\n", ["2 e 1024", "4 e 101 bytes"]),
    "NUL": ('a INT_32 5\0\nb STR "a\0"\n', ["1 w NUL", "2 w NUL", "2 e closing quote"]),
    "loose lines": (" a INT_32 1\n 5\n", ["1 w never found", "2 w no entry"]),
    "count": (VECTOR.format("0 1") + VECTOR.format("0 3"), ["4 e surplus", "8 w line 1", "12 e behind 2", "14 w line 7"]),
    "hostile": ("k ST\x1b[2J\x9b0m 1\n", ["1 e ST?[2J?0m"]),
    "not closed": ("#c\n" + VECTOR.format("0 2").replace(" }\n", ""), ["2 e not closed"]),
    "not opened": ("a STR_V 0 0\nb INT_32_V 0 1\n { 5\n 6\n }\n", ["1 e must open", "3 e lost"]),
    "elements": ("a FLT_6_V 0 3\n {\n  x\n\n#c\n }\n", ["3 e no number", "4 e no value", "5 e no number"]),
    "columns surplus": (MATRIX.format("   9\n"), ["10 e surplus"]),
    "rows missing": (MATRIX.format("").replace("1 2 3", "1 3 3"), ["11 e behind 2 rows"]),
    "rows surplus": (MATRIX.format("").replace("1 2 3", "1 1 3"), ["7 e surplus"]),
    "head of a block": ("a INT_8_V 0\n {\n }\nb INT_8_V 0 -1\n {\n }\n", ["1 e no value", "4 e negative"]),
    "integers": ("a BYT 256\nb BYT -1\nc INT_8 -128\nd INT_16 32768\ne INT_64 9223372036854775808\nf INT_32 8051.0\n"
                 "g INT_32 12-5\nh INT_32 -\ni INT_32_INT_32 1\n", [
                     *(f"{i} e fit" for i in (1, 2, 4, 5)), "6 e no integer", "7 e as 12", "8 e as 0", "9 e second"]),
    "numbers": ("a FLT_6 1E39\nb FLT_15 inf\nc FLT_15 1E999\nd FLT_15 5.405D+09\ne FLT_15 12,5\nf FLT_6\ng FLT_6 1E-60\n"
                "h FLT_15 nan\ni FLT_15 +0.0E7\nj FLT_15 1 500\nk CPL_6 1 2i\nl FLT_6 1E+\n", [
                    *(f"{i} e fit" for i in (1, 2, 3)), "4 e as 5.405: an exponent", "5 e as 12", "6 e no value",
                    "7 e too small", "8 w not a number", "10 w ignored", "11 e as 2", "12 e as 1"]),
    "texts": ('a STR "x\nb STR C:\\d\nc STR "C:\\d"\nd STR x \ne STR\nf STR "x" y\ng STR_STR "a"\nh BOL true\n', [
        "1 e closing quote", "3 e backslash", "4 w blanks", "5 w empty", "6 w ignored", "7 e second", "8 e neither"]),
}


def tool(*arguments, **options):
    return subprocess.run([TOOLS, "pool", *arguments], capture_output=True, text=True, **options)


def pool_file(tmp_path, text=POOL, name="a.pool"):
    path = tmp_path / name
    path.write_bytes(text.encode("latin-1"))
    return path


@pytest.mark.parametrize("name", PITS)
def test_check(tmp_path, name):
    text, wanted = PITS[name]
    done = tool("check", pool_file(tmp_path, text))
    told = [line.removeprefix(f"{tmp_path}/a.pool:").split(": ", 2) for line in done.stderr.splitlines()]
    assert [(line, severity[0]) for line, severity, _ in told] == [tuple(w.split(" ")[:2]) for w in wanted]
    assert all(w.split(" ", 2)[2] in message for w, (_, _, message) in zip(wanted, told)), told
    assert (done.returncode, done.stdout) == (int(" e " in " ".join(wanted)), "")


def test_examples_are_clean_and_read_as_by_others():
    files = sorted(EXAMPLES.glob("*/*.pool"))
    assert tool("check", *files).stderr == ""
    for file, shown in zip(files, json.loads(tool("show", "--json", *files).stdout)):
        found = {e["key"]: e["value"]["values"] if "_V" in e["type"] else e["value"] for e in shown["entries"]}
        wanted = Run(file.parent, 0, "", "").pool(file.name)
        assert shown["file"] == str(file) and list(found) == list(wanted)
        assert all(found[key] == pytest.approx(wanted[key], rel=6e-8) for key in wanted)  # some are single


def test_show_and_get(tmp_path):
    file = pool_file(tmp_path)
    shown = json.loads(tool("show", "--json", file).stdout)
    assert [tuple(e.values()) for e in shown["entries"]] == [
        ("height", "FLT_15", 3, "height\n in [m]", 12.5),
        ("v", "FLT_15_V", 5, None, {"first": -3, "values": [1, 2.5]}), ("last", "INT_32", 11, None, 1),
        ("m", "INT_16_M", 12, None, {"first_row": 1, "first_column": 3, "values": [[1, 2], [3, 4]]}),
        ("n", "FLT_6", 23, None, "nan"), ("b", "BOL", 24, None, True), ("t", "STR", 25, None, '10\xb0 "N"'),
        ("p", "STR_STR", 26, None, ["a", "b"]), ("i", "IDX_FLT_6", 27, None, [-1, 0.5]),
        ("height", "INT_32", 28, None, 2)]
    assert tool("show", file).stdout.splitlines()[:2] == [
        "height  FLT_15     12.5           # height in [m]", "v       FLT_15_V   [2] 1 2.5"]
    assert [tool("get", file, key).stdout for key in "vmt"] == ["1\n2.5\n", "1\t2\n3\t4\n", '10\xb0 "N"\n']
    assert tool("get", file, "v", "--json").stdout == '{"first":-3,"values":[1.0,2.5]}\n'
    swallowed = tool("show", "--json", pool_file(tmp_path, VECTOR.format("0 9").replace(" }\n", "")))
    assert [e["value"] for e in json.loads(swallowed.stdout)["entries"]] == [None, 1] and swallowed.returncode == 1


@pytest.mark.parametrize("arguments, wanted", [
    ("height FLT_15 -.5 --comment 5\xb0", -0.5), ("v FLT_15 -1 -nan 3", [-1, "nan", 3]), ("v FLT_15_V 7", [7]),
    ('t STR ["a",b]', '["a",b]'), ("new STR -- --x ", ["--x", ""]), (f"new INT_64 {-2**63}", -2**63),
    ("new IDX_FLT_15 -1 2 3 4", [[-1, 2], [3, 4]])])
def test_set(tmp_path, arguments, wanted):
    file, arguments = pool_file(tmp_path), arguments.split(" ")
    file.chmod(0o640)
    (tmp_path / "link").hardlink_to(file)
    assert tool("set", file, *arguments).stderr == ""
    wanted = {"first": -3 * (arguments[0] == "v"), "values": wanted} if isinstance(wanted, list) else wanted
    assert json.loads(tool("get", "--json", file, arguments[0]).stdout) == wanted
    kept = [line for line in POOL.split("\n") if line and not line.startswith((arguments[0] + " ", " "))]
    lines = (tmp_path / "link").read_text(encoding="latin-1").split("\n")
    assert [line for line in lines if line in kept] == kept and ("#5\xb0" in lines) == ("--comment" in arguments)
    assert file.stat().st_mode & 0o777 == 0o640 and sorted(os.listdir(tmp_path)) == ["a.pool", "link"]


def test_set_of_a_block_without_indents(tmp_path):
    file = pool_file(tmp_path, "v INT_8_V 0 2\n{\n1\n2\n}\nlast INT_32 1\n")
    assert tool("set", file, "v", "INT_8", "7", "8", "9").stderr == tool("check", file).stderr == ""
    assert [tool("get", file, key).stdout for key in ("v", "last")] == ["7\n8\n9\n", "1\n"]


def test_sets_at_the_same_time(tmp_path):
    file = pool_file(tmp_path)
    started = [subprocess.Popen([TOOLS, "pool", "set", file, f"k{i}", "BYT", str(i)]) for i in range(8)]
    assert [p.wait() for p in started] == [0] * 8
    assert sorted(line[1] for line in file.read_text("latin-1").split("\n") if line[:1] == "k") == list("01234567")


@pytest.mark.parametrize("status, arguments, text", [
    (1, "x FLT_15 5D3", POOL), (1, "x INT_8 128", POOL), (2, "x FLT_7 1", POOL), (2, "x INT_8_M 1", POOL),
    (1, "x STR a\\b", POOL), (1, "#x INT_32 1", POOL), (1, "x CPL_6 1 2 3", POOL), (1, "x STR \u65e5", POOL),
    (1, "x STR " + "a" * 1000, POOL), (1, "b" * 101 + " INT_32 1", POOL), (2, "x STR --coment a", POOL),
    (2, "x INT_32", POOL), (1, "height FLT_15 1", POOL.rstrip()), (1, "height FLT_15 1", None)])
def test_set_failing(tmp_path, status, arguments, text):
    file = pool_file(tmp_path, text) if text else tmp_path / "missing"
    done = tool("set", file, *arguments.split(" "))
    assert done.returncode == status and done.stderr
    assert {p.name: p.read_text(encoding="latin-1") for p in tmp_path.iterdir()} == ({"a.pool": text} if text else {})


def test_set_on_a_full_disk(tmp_path):
    done = tool("set", pool_file(tmp_path), "new", "FLT_15", "1", preexec_fn=lambda: (
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN), resource.setrlimit(resource.RLIMIT_FSIZE, (len(POOL) + 20,) * 2)))
    assert done.returncode == 1 and [p.read_text(encoding="latin-1") for p in tmp_path.iterdir()] == [POOL]


@pytest.mark.parametrize("change, options, wanted", [
    (("#height", "#other"), [], []), (("height INT_32 2", "height INT_32 3"), [], []),
    (("1.25", "1.26"), ["v=1", "height=0.09"], ["height: 12.5 | 12.6"]), (("1.25", "1.26"), ["height=0.11"], []),
    (("1.25", "1.26"), ["--relative=79E-4"], ["height: 12.5 | 12.6"]), (("1.25", "1.26"), ["--relative=795E-5"], []),
    (("-3 2", "4 2"), [], ["v first index: -3 | 4"]), (("2.5E+00", "3"), ["height=9"], ["v[-2]: 2.5 | 3"]),
    (("   4", "   5"), [], ["m[2,4]: 4 | 5"]), (("b BOL TRUE", "c BYT 1"), [], ["b: TRUE | missing", "c: missing | 1"]),
    (("last INT_32", "last FLT_6"), [], ["last: INT_32 | FLT_6"]), (("nan", "0"), [], ["n: nan | 0"])])
def test_diff(tmp_path, change, options, wanted):
    files = pool_file(tmp_path), pool_file(tmp_path, POOL.replace(*change), "b.pool")
    done = tool("diff", *files, *(o if o[0] == "-" else f"--tolerance={o}" for o in options))
    assert (done.stdout.splitlines(), done.returncode) == (wanted, bool(wanted))


@pytest.mark.parametrize("status, command", [
    (1, "show missing"), (1, "get missing a"), (1, "check missing"), (1, "diff missing missing"),
    (2, ""), (2, "get missing"), (2, "show --jsn missing"), (2, "diff missing missing --tolerance x")])
def test_reading_touches_nothing(tmp_path, status, command):
    done = tool(*command.split(), cwd=tmp_path, env={"TMPDIR": str(tmp_path)})
    assert done.returncode == status and os.listdir(tmp_path) == []
    assert status == 2 or done.stderr == "missing:1: error: No such file or directory\n"


def test_no_pool_is_that_large(tmp_path):
    (tmp_path / "a").touch()
    os.truncate(tmp_path / "a", 600_000_000)
    done = subprocess.run([TOOLS, "pool", "check", "a"], cwd=tmp_path, capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (1, "a:1: error: larger than 512 MB, as no pool is\n")
