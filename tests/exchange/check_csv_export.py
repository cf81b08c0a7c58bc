#!/usr/bin/env python3
"""Reads the CSV files that the exchange tests exported with Python's own csv module and compares
every cell with the cells the test put into the list.

The writer escapes backslash, line feed and carriage return inside a field with a backslash (one
record per physical line); a reader that knows only standard CSV quoting sees those escapes as they
are, so the expected cells are compared after the same escapes.

Usage: check_csv_export.py <folder with expected.json>
"""
import csv
import json
import os
import sys


def escaped(cell):
    return cell.replace("\\", "\\\\").replace("\n", "\\n").replace("\r", "\\r")


def check_file(folder, entry):
    path = os.path.join(folder, entry["name"])
    encoding = entry["encoding"]
    with open(path, "rb") as raw:
        data = raw.read()
    problems = []
    if encoding == "utf-16":
        if not data.startswith(b"\xff\xfe"):
            problems.append("no UTF-16 LE byte order mark")
        text = data.decode("utf-16")
        line_end = "\r\n".encode("utf-16-le")
    else:
        text = data.decode(encoding)
        line_end = b"\r\n"
    if data.count(b"\n" if encoding != "utf-16" else "\n".encode("utf-16-le")) != data.count(line_end):
        problems.append("a line feed without carriage return")
    if not data.endswith(line_end):
        problems.append("the last record does not end with CR LF")
    with open(path, newline="", encoding=encoding) as fp:
        rows = list(csv.reader(fp, delimiter=entry["sep"], strict=True))
    expected = [[escaped(c) for c in row] for row in entry["rows"]]
    if len(rows) != len(expected):
        problems.append("%d records, expected %d" % (len(rows), len(expected)))
    for r, (got, want) in enumerate(zip(rows, expected)):
        if len(got) != len(want):
            problems.append("record %d: %d fields %r, expected %d %r" % (r, len(got), got, len(want), want))
            continue
        for c, (g, w) in enumerate(zip(got, want)):
            if g != w:
                problems.append("record %d field %d: %r, expected %r" % (r, c, g, w))
    if text.count('"') % 2:
        problems.append("odd number of quotes")
    return problems


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else "test-output/csv"
    with open(os.path.join(folder, "expected.json"), encoding="ascii") as fp:
        manifest = json.load(fp)
    failed = 0
    cells = 0
    for entry in manifest["files"]:
        problems = check_file(folder, entry)
        cells += sum(len(r) for r in entry["rows"])
        for p in problems:
            print("%s: %s" % (entry["name"], p))
        failed += bool(problems)
    print("%d files, %d cells checked, %d files with differences" % (len(manifest["files"]), cells, failed))
    return 1 if failed or not manifest["files"] else 0


if __name__ == "__main__":
    sys.exit(main())
