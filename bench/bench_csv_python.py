#!/usr/bin/env python3
"""Writes the cells that bench_csv.exe dumped with Python's csv.writer, every field quoted, ';' as
separator and CR LF line ends, once in cp1252 and once in UTF-16, and prints MB/s of each (best of
three), as "<form>: <MB/s> MB/s".

Usage: bench_csv_python.py <cells file> [output folder]
"""
import csv
import os
import sys
import time


def write(rows, path, encoding):
    with open(path, "w", newline="", encoding=encoding, errors="replace") as fp:
        writer = csv.writer(fp, delimiter=";", quoting=csv.QUOTE_ALL, lineterminator="\r\n")
        writer.writerows(rows)


def main():
    cells = sys.argv[1]
    folder = sys.argv[2] if len(sys.argv) > 2 else os.path.dirname(os.path.abspath(cells))
    with open(cells, "rb") as fp:
        data = fp.read().decode("utf-8")
    rows = [rec.split("\x1f") for rec in data.split("\x1e") if rec]
    for name, encoding in (("cp1252", "cp1252"), ("utf16", "utf-16")):
        path = os.path.join(folder, "bench_csv_python_%s.csv" % name)
        best = None
        for _ in range(3):
            t0 = time.perf_counter()
            write(rows, path, encoding)
            t = time.perf_counter() - t0
            best = t if best is None else min(best, t)
        mb = os.path.getsize(path) / (1024.0 * 1024.0)
        print("%s: %.1f MB/s (%d rows, %.2f MB in %.1f ms)" % (name, mb / best, len(rows), mb, best * 1000))


if __name__ == "__main__":
    main()
