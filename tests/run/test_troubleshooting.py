"""No text at ALARM, EXCEPTION, QA_WARNING or WARNING, and none that is thrown, is missing on the
page that tells users what to do about it."""

import re
from pathlib import Path

ROOT = Path(__file__).parents[2]
PAGE = (ROOT / "docs" / "troubleshooting.md").read_text().replace("\\|", "|")
LEVEL = "(?:ALARM|EXCEPTION|QA_WARNING|WARNING)"
START = re.compile(rf"set\({LEVEL}\)|(?:printf_line|WriteLine|EndProcess)\(\s*{LEVEL}"
                   r"|ScreenFailure\(|Fail<\w+>\(|NeedToken<\w+>\(|[rR]efuse\("
                   r"|Refuse(?:Series|Token)\(|nrerror\(|VARNOTH_ERROR\(|throw\s+\"|_WORD\b"
                   r"|= \"can not|NO_MEMORY = |CheckLength\(|Alarm\(solver\)|NeedStreamAndType\(")
# Solvers and enumerations that no run reaches, and the allocators that no run calls.
LIBRARY_ONLY = re.compile(r"geometry/(geolocation(_new|_test)?\.|surface_search|ellipsoid)"
                          r"|enumerations/|numerics/nrutil")


def texts():
    """The texts of more than two words, as patterns, with where they stand: what varies in one is
    anything on the same line of the page."""
    for path in sorted((ROOT / "src").glob("**/*.?pp")):
        if LIBRARY_ONLY.search(str(path)):
            continue
        source = re.sub(r"//[^\n]*", "", path.read_text())
        source = re.sub(r'"\s*\n\s*"', "", source)
        for start in START.finditer(source):
            statement = source[start.start():source.find(";", start.end())]
            parts = []
            for literal in re.findall(r'"((?:[^"\\]|\\.)*)"', statement):
                literal = re.sub(r"\\[nt]", " ", literal.replace('\\"', '"'))
                parts += re.split(r"%[-.\d]*z?[a-zA-Z]", literal)
            parts = [re.sub(r"^[ :(<>.,=]+|[ :(<>.,=]+$", "", part) for part in parts]
            parts = [part for part in parts if re.search(r"\w", part)]
            if len(" ".join(parts).split()) > 2:
                yield "[^\n]*?".join(map(re.escape, parts)), path.name


def test_every_text_stands_on_the_page():
    found = dict(texts())
    assert len(found) > 150
    missing = {text: place for text, place in found.items() if not re.search(text, PAGE)}
    assert not missing, missing
