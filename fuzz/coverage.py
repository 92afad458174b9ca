"""Prints what the inputs reached: coverage.py <folder of the project>, with the summary of `llvm-cov export` as input.

A line per folder of the sources, with its share of lines, and below it the files with less than 60 per cent.
"""
import collections
import json
import pathlib
import sys

LOW = 60.0


def percent(reached, lines):
    return 100.0 * reached / lines if lines else 100.0


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    found = {}
    for file in json.load(sys.stdin)["data"][0]["files"]:
        path = pathlib.Path(file["filename"]).resolve()  # a compiler cache writes it relative to the build
        if any(path.is_relative_to(project / folder) for folder in ("src", "tools/import", "tools/report")):
            path, lines = path.relative_to(project), file["summary"]["lines"]
            found[path] = max(found.get(path, (0, 0)), (lines["covered"], lines["count"]))
    folders = collections.defaultdict(list)
    for path, (reached, lines) in found.items():
        folders[str(path.parent)].append((path.name, reached, lines))
    for folder, files in sorted(folders.items()):
        reached, lines = (sum(file[i] for file in files) for i in (1, 2))
        print(f"{folder:32} {percent(reached, lines):5.1f} % of {lines:5} lines")
        for name, reached, lines in sorted(files):
            if percent(reached, lines) < LOW:
                print(f"    {name:32} {percent(reached, lines):5.1f} % of {lines:5}")


main()
