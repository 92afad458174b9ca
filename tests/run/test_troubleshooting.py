"""No text at ALARM, EXCEPTION, QA_WARNING or WARNING, and none that is thrown, is missing on the
page that tells users what to do about it; and each has the level that the page states."""

import re
from pathlib import Path

ROOT = Path(__file__).parents[2]
PAGE = (ROOT / "docs" / "troubleshooting.md").read_text().replace("\\|", "|")
# Texts of the tables' first columns, with the labels in front of them; without a label it is ALARM.
TOLD = [found for row in PAGE.splitlines() if row.startswith("| ")
        for found in re.findall(r"(?:(WARN|EXCEP) )?`([^`]+)`", row[2:].split(" | ")[0])]
LABELS = {"ALARM": "", "EXCEPTION": "EXCEP", "QA_WARNING": "QA_WA", "WARNING": "WARN"}
QUIET = ("INFO", "PARAMETER", "DEBUG", "TRACE")
LEVEL = f"({'|'.join([*LABELS, *QUIET])})"
START = re.compile(rf"set\({LEVEL}\)|(?:printf_line|WriteLine|EndProcess)\(\s*{LEVEL}"
                   r"|ScreenFailure\(|Fail<\w+>\(|NeedToken<\w+>\(|[rR]efuse\("
                   r"|Refuse(?:Series|Token)\(|nrerror\(|VARNOTH_ERROR\(|throw\s+\"|_WORD\b"
                   r"|= \"can not|NO_MEMORY = |CheckLength\(|Alarm\(solver\)|NeedStreamAndType\(")
# Solvers and enumerations that no run reaches, and the allocators that no run calls.
LIBRARY_ONLY = re.compile(r"geometry/(geolocation(_search)?\.|ellipsoid)"
                          r"|enumerations/|numerics/nrutil")


def texts():
    """The texts of more than two words, as patterns, with where they stand and the level, if it
    stands there too; what varies in one is anything on the same line of the page."""
    for path in sorted(p for p in (ROOT / "src").glob("**/*.?pp") if not LIBRARY_ONLY.search(str(p))):
        source = re.sub(r"//[^\n]*", "", path.read_text())
        source = re.sub(r'"\s*\n\s*"', "", source)
        for start in START.finditer(source):
            statement = source[start.start():source.find(";", start.end())]
            literals = "%s".join(re.findall(r'"((?:[^"\\]|\\.)*)"', statement))
            told = re.sub(r"\\[nt]", " ", literals.replace('\\"', '"'))
            parts = [part.strip(" :(<>.,=") for part in re.split(r"%[-.\d]*z?[a-zA-Z]", told)]
            parts = [part for part in parts if re.search(r"\w", part)]
            if len(" ".join(parts).split()) > 2:
                yield "[^\n]*?".join(map(re.escape, parts)), path.name, start[1] or start[2]


def test_every_text_stands_on_the_page_with_its_level():
    found = list(texts())
    missing = {text: place for text, place, level in found
               if level not in QUIET and not re.search(text, PAGE)}
    assert len(found) > 150 and not missing, missing
    for text, place, level in found:
        labels = {label for label, told in TOLD if re.search(text, told)}
        assert not level or not labels or LABELS.get(level) in labels, (text, place, level, labels)
