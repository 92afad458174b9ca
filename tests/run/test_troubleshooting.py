"""No text at ALARM, EXCEPTION, QA_WARNING or WARNING, and none that is thrown, is missing on the page
that tells users what to do about it."""

import re
from pathlib import Path

ROOT = Path(__file__).parents[2]
PAGE = (ROOT / "docs" / "troubleshooting.md").read_text().replace("\\|", "|")
LEVEL = "(?:ALARM|EXCEPTION|QA_WARNING|WARNING)"
START = re.compile(rf"set\({LEVEL}\)|(?:printf_line|WriteLine|EndProcess)\(\s*{LEVEL}|ScreenFailure\("
                   r"|Fail<\w+>\(|NeedToken<\w+>\(|refuse\(|RefuseSeries\(|nrerror\(|VARNOTH_ERROR\("
                   r"|throw\s+\"|_WORD\b|= \"can not")
# Solvers and enumerations that no run reaches; geolocation_fast's own lines stand there with theirs.
LIBRARY_ONLY = re.compile("geometry/(geolocation|surface_search|ellipsoid)|enumerations/")


def texts():
    """The literal parts of more than two words, with where they stand."""
    for path in sorted((ROOT / "src").glob("**/*.?pp")):
        if LIBRARY_ONLY.search(str(path)):
            continue
        source = re.sub(r"//[^\n]*", "", path.read_text())
        source = re.sub(r'"\s*\n\s*"', "", source)
        for start in START.finditer(source):
            statement = source[start.start():source.find(";", start.end())]
            for literal in re.findall(r'"((?:[^"\\]|\\.)*)"', statement):
                for part in re.split(r"%[-.\d]*z?[a-zA-Z]", literal.replace('\\"', '"')):
                    part = re.sub(r"\\[nt]", " ", part).strip(" :(<>.,=")
                    if len(part.split()) > 2:
                        yield part, path.name


def test_every_text_stands_on_the_page():
    found = dict(texts())
    assert len(found) > 120
    missing = {text: place for text, place in found.items() if text not in PAGE}
    assert not missing, missing
