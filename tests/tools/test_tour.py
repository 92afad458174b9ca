"""The commands of README that lead from a folder of products to a report, run as they stand on made-up products."""

import datetime
import json
import os
import re
import subprocess
from pathlib import Path

import pytest

import make
import test_import_sentinel1 as sentinel1
from varnoth_run import BINARY, TOOLS

pytestmark = pytest.mark.skipif(not TOOLS.exists(), reason="varnoth-tools is not built")
README = (Path(__file__).parents[2] / "README.md").read_text()


def test_from_products_to_a_report(tmp_path, monkeypatch):
    for i, day in enumerate(("20250406", "20250418", "20250430", "20250512")):
        monkeypatch.setattr(sentinel1, "START", sentinel1.START + datetime.timedelta(12 * bool(i)))
        monkeypatch.setattr(sentinel1, "CIRCLE", make.Circle(aside=60.0 * i))
        sentinel1.file_of(tmp_path / f"{day}.SAFE" / "annotation" / f"s1a-iw1-slc-vv-{day}.xml",
                          sentinel1.annotation().replace("58630", str(58630 + 175 * i)))
        date = datetime.date.fromisoformat(f"{day[:4]}-{day[4:6]}-{day[6:]}")
        before, after = (f"{date + datetime.timedelta(n):%Y%m%d}" for n in (-1, 1))
        name = f"S1A_OPER_AUX_POEORB_OPOD_{after}T070000_V{before}T225942_{after}T005942.EOF"
        sentinel1.file_of(tmp_path / "orbits" / name, sentinel1.orbit_file(list(sentinel1.vectors(-100, 40)), count=40))
    commands = re.search(r"^    mkdir scenes.*(\n    .*)+", README, re.MULTILINE).group(0)
    path = f"{TOOLS.parent}:{BINARY.parent}:{os.environ['PATH']}"
    done = subprocess.run(["bash", "-eu"], input=commands, cwd=tmp_path, env=os.environ | {"PATH": path},
                          capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (0, ""), done.stderr
    pools = [path.read_text("latin-1") for path in (tmp_path / "scenes").iterdir()]
    assert len(pools) == 4 and all("_POEORB_" in pool for pool in pools)
    plan = json.loads((tmp_path / "plan" / "plan.json").read_text())
    names = sorted(f"pair_{pair['master']}_{pair['slave']}" for pair in plan["pairs"])
    assert plan["connected"] and len(names) == 5  # 12 and 24 days
    assert "done 5, failed 0, stopped 0" in done.stdout
    page = (tmp_path / "report.html").read_text()
    assert page.rstrip().endswith("</html>") and all(name in page for name in names)
