"""The manual page of varnoth-tools shows what happens; the page, the completion and --help know the same options."""

import datetime
import os
import re
import shutil
import subprocess

import pytest

import test_import_sentinel1 as sentinel1
from varnoth_run import BINARY, EXAMPLES, TOOLS, make

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
ROOT = EXAMPLES.parent
PAGE = (ROOT / "docs" / "man" / "varnoth-tools.1.scd").read_text()


def commands(*path):
    """Every command at or below a path, with its options and the commands below it, as --help has them."""
    text = subprocess.check_output([TOOLS, *path, "--help"], text=True)
    below = re.findall(r"^  (\w+) ", text.partition("Subcommands:")[2], re.MULTILINE)
    yield path, re.findall(r"^ +(?:-h,)?(--[\w-]+)", text, re.MULTILINE), below
    for name in below:
        yield from commands(*path, name)


def completed(*words):
    script = ('source packaging/varnoth-tools.bash-completion; COMP_WORDS=(varnoth-tools "$@"); '
              'COMP_CWORD=$#; _varnoth_tools; printf "%s\\n" "${COMPREPLY[@]}"')
    return subprocess.check_output(["bash", "-c", script, "bash", *words], cwd=ROOT, text=True).split()


def test_options():
    found = list(commands())
    assert len(found) == 19
    keys = set(re.findall(r"\*(-\w+)\*", (ROOT / "docs" / "man" / "varnoth.1.scd").read_text())) - {"-help"}
    for path, options, below in found:
        taken = keys if path in (("check",), ("geometry",)) else set()
        assert sorted(completed(*path, "-")) == sorted({*options, *taken}), path
        assert not below or sorted(completed(*path, "")) == sorted(options + below)
        assert below or completed(*path, "-MasterPar", "READ") == ["README.md"]
        assert not {option for option in options if option not in PAGE}, path


def test_version():
    version = re.search(r"project\(varnoth VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text()).group(1)
    assert subprocess.check_output([TOOLS, "--version"], text=True) == f"varnoth-tools {version}\n"
    assert f" varnoth {version}\n" in (ROOT / "tests" / "run" / "expected" / "log.txt").read_text()  # a run's


def test_examples(tmp_path, monkeypatch):
    """The blocks of the page, run one behind the other. A shell that tells its lines gives back each block."""
    shutil.copytree(EXAMPLES / "real_pair", tmp_path, dirs_exist_ok=True)
    for i, day in enumerate(("20250406", "20250418")):
        monkeypatch.setattr(sentinel1, "START", sentinel1.START + datetime.timedelta(12 * i))
        monkeypatch.setattr(sentinel1, "CIRCLE", make.Circle(aside=80.0 * i))
        sentinel1.file_of(tmp_path / f"{day}.SAFE" / "annotation" / f"s1a-iw1-slc-vv-{day}.xml",
                          sentinel1.annotation().replace("58630", str(58630 + 175 * i)))
    blocks = re.findall(r"```\n(.*?)```", PAGE, re.DOTALL)
    lines = [line for line in "".join(blocks).splitlines() if re.match(r"(varnoth(-tools)?|cd) ", line)]
    path = f"{TOOLS.parent}:{BINARY.parent}:{os.environ['PATH']}"
    done = subprocess.run(["bash", "-v"], input="\n".join(lines), cwd=tmp_path, env=os.environ | {"PATH": path},
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    shown, wanted = ([re.sub(r"(\d\.\d{6})\d+$", r"\1", line) for line in text.splitlines()]
                     for text in (done.stdout, "".join(blocks)))
    assert shown == wanted and len(lines) == 12
