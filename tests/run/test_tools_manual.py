"""The manual page of varnoth-tools, the completion and --help know the same options."""

import os
import re
import subprocess
from pathlib import Path

import pytest

from varnoth_run import BINARY, EXAMPLES

TOOLS = Path(os.environ.get("VARNOTH_TOOLS_BINARY", BINARY.parents[2] / "tools" / "varnoth-tools"))
pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
ROOT = EXAMPLES.parent
PAGE = (ROOT / "docs" / "man" / "varnoth-tools.1.scd").read_text()


def commands(*path):
    """Every command at or below a path, with its options and the commands below it, as --help has them."""
    text = subprocess.check_output([TOOLS, *path, "--help"], text=True)
    below = re.findall(r"^  (\w+) ", text.partition("Subcommands:")[2], re.MULTILINE)
    yield path, re.findall(r"^  (?:-h,)?(--\w+)", text, re.MULTILINE), below
    for name in below:
        yield from commands(*path, name)


def completed(*words):
    script = ('source packaging/varnoth-tools.bash-completion; COMP_WORDS=(varnoth-tools "$@"); '
              'COMP_CWORD=$#; _varnoth_tools; printf "%s\\n" "${COMPREPLY[@]}"')
    return subprocess.check_output(["bash", "-c", script, "bash", *words], cwd=ROOT, text=True).split()


def test_options():
    found = list(commands())
    assert len(found) == 14
    keys = set(re.findall(r"\*(-\w+)\*", (ROOT / "docs" / "man" / "varnoth.1.scd").read_text())) - {"-help"}
    for path, options, below in found:
        taken = keys if path == ("check",) else set()
        assert sorted(completed(*path, "-")) == sorted({*options, *taken}), path
        assert not below or sorted(completed(*path, "")) == sorted(options + below)
        assert below or completed(*path, "-MasterPar", "READ") == ["README.md"]
        assert not {option for option in options if option not in PAGE}, path


def test_version():
    version = re.search(r"project\(varnoth VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text()).group(1)
    assert subprocess.check_output([TOOLS, "--version"], text=True) == f"varnoth-tools {version}\n"
    assert f" varnoth {version}\n" in (ROOT / "tests" / "run" / "expected" / "log.txt").read_text()  # a run's
