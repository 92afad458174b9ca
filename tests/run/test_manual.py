"""The manual page shows what happens, and the completion knows its options."""

import re
import shlex
import shutil
import subprocess

import pytest

from varnoth_run import EXAMPLES, run

ROOT = EXAMPLES.parent
PAGE = (ROOT / "docs" / "man" / "varnoth.1.scd").read_text()


def test_manual_page(tmp_path):
    command, screen, results = re.findall(r"```\n(.*?)```", PAGE, re.DOTALL)
    shutil.copytree(EXAMPLES / "real_pair", tmp_path / "pair")
    done = run(tmp_path / "pair", shlex.split(command)[1:])
    assert (done.status, re.sub("\033\\[.m", "", done.screen)) == (0, screen)
    content = (tmp_path / "pair" / "insar.pool").read_text(encoding="latin-1")
    assert all(line in content.splitlines() for line in results.splitlines())


@pytest.mark.parametrize("words, is_help", [
    (["--help"], True), (["-help"], True), (["-h"], False), (["--help", "x"], False), ([], False)])
def test_help(tmp_path, words, is_help):
    done = run(tmp_path, words or ["-x", "y"], {"TMPDIR": str(tmp_path)})
    assert (done.status, not list(tmp_path.iterdir())) == ((0, True) if is_help else (1, False))
    keys = re.findall(r"^  (-\w+) ", done.screen, re.MULTILINE)
    assert {*keys, "-help"} == set(re.findall(r"\*(-\w+)\*", PAGE)) if is_help else keys == []
    statuses = "\nExit status: 0 end reached, 1 failure, 2 STOP file found, 255 no log file.\n"  # as other tests find
    assert (statuses in done.screen) == is_help
    pointed = 'varnoth: "-h" has no value; varnoth --help shows the keys\n'
    assert done.errors.startswith(pointed) == (words == ["-h"])


def completed(*words):
    script = ('source packaging/varnoth.bash-completion; COMP_WORDS=(varnoth "$@"); '
              'COMP_CWORD=$#; _varnoth; printf "%s\\n" "${COMPREPLY[@]}"')
    return subprocess.check_output(["bash", "-c", script, "bash", *words], cwd=ROOT, text=True).split()


def test_completion():
    assert sorted(completed("-")) == sorted(set(re.findall(r"\*(-\w+)\*", PAGE)))
    assert completed("-lfl", "TR") == ["TRACE"]
    assert completed("-MasterPar", "READ") == ["README.md"]
    assert completed("-status", "example") == ["examples"]
