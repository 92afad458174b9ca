"""Every example shows what stands beside it, made-up pools and pictures are what their makers write, and the
scripts tell wrong words."""

import shutil
import subprocess
import sys

import pytest

from varnoth_run import BINARY, EXAMPLES


@pytest.mark.parametrize("name", sorted(path.parent.name for path in EXAMPLES.glob("*/output.txt")))
def test_output(name):
    done = subprocess.run([EXAMPLES / "run", name, BINARY], check=False, capture_output=True, text=True)
    assert done.stdout == (EXAMPLES / name / "output.txt").read_text()


@pytest.mark.parametrize("maker, count", [(EXAMPLES / "make.py", 34), (EXAMPLES.parent / "docs/pictures/draw.py", 6)])
def test_made_files(tmp_path, maker, count):
    subprocess.run([sys.executable, shutil.copy(maker, tmp_path)], check=True)
    made = [path for path in tmp_path.rglob("*") if path.is_file()]
    assert len(made) == count
    for path in made:
        assert path.read_bytes() == (maker.parent / path.relative_to(tmp_path)).read_bytes(), path


@pytest.mark.parametrize("words, told", [
    ("run nothing", "there is no example nothing in "),
    ("run seconds nowhere", "there is no program nowhere"), ("make.py nowhere", "nowhere is no directory"),
    ("plots/plot", "usage: plot"), ("plots/plot {0}/real_pair out", "has no log.varnoth"),
    ("plots/plot_stack nowhere out.svg", "there is no directory nowhere"),
    ("stack/make_pairs 1 {0}/run", "Not a directory"), ("stack/make_pairs two out", "usage: make_pairs"),
    ("stack/with_slurm out", "with_slurm <pairs> <results>"),
    ("stack/with_parallel nowhere out", "there is no directory nowhere")])
def test_wrong_words(tmp_path, words, told):
    script, *words = [word.format(EXAMPLES) for word in words.split()]
    done = subprocess.run([EXAMPLES / script, *words], cwd=tmp_path, check=False, text=True,
                          capture_output=True)
    assert done.returncode in (1, 2) and told in done.stderr
    assert len(done.stderr.splitlines()) == 1 and not list(tmp_path.iterdir())
