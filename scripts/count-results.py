#!/usr/bin/env python3
"""Adds up the GoogleTest XML reports of one run and prints 'gtest: N passed, N failed'."""
import glob
import os
import sys
import xml.etree.ElementTree as ET

folder = sys.argv[1] if len(sys.argv) > 1 else "test-results"
passed = failed = skipped = 0
for path in sorted(glob.glob(os.path.join(folder, "*.xml"))):
    root = ET.parse(path).getroot()
    for case in root.iter("testcase"):
        if case.find("failure") is not None:
            failed += 1
        elif case.get("result") == "skipped" or case.find("skipped") is not None:
            skipped += 1
        else:
            passed += 1
line = f"gtest: {passed} passed, {failed} failed"
if skipped:
    line += f", {skipped} skipped"
print(line)
sys.exit(1 if failed or passed == 0 else 0)
