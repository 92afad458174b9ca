"""Draws the screenshots of docs/report.md: picture_report.py <directory>"""

import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from browser import Browser
from varnoth_run import EXAMPLES, run

TOOLS = os.environ["VARNOTH_TOOLS_BINARY"]


def draw(target, work):
    shutil.copytree(EXAMPLES / "real_pair", work / "real_pair")
    run(work / "real_pair")
    subprocess.run([EXAMPLES / "stack" / "make_pairs", "40", work / "results"], check=True)
    for pair in (work / "results").iterdir():
        run(pair)
    (work / "results" / "failed").mkdir()
    broken = work / "results" / "pair_00003"
    shutil.copy(broken / "master.pool", broken / "slave.pool")
    (broken / "master.pool").write_text("")
    run(broken)
    shutil.move(broken / "log.varnoth", work / "results" / "failed" / "pair_00003.log")
    shutil.rmtree(broken)
    browser = Browser(work / "profile")
    for name, place in (("report_pair", "real_pair"), ("report_stack", "results")):
        subprocess.run([TOOLS, "report", place, "--out", f"{name}.html"], cwd=work, check=True)
        browser.open(work / f"{name}.html", width=1200, height=1400)
        browser.picture(target / f"{name}.png", whole=False)
    browser.close()


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as directory:
        draw(Path(sys.argv[1]), Path(directory))
