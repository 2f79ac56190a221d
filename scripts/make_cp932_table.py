#!/usr/bin/env python3
"""Writes platform/text932/cp932_table.inc from Python's cp932 codec (Microsoft's published mapping).

The table is committed; this is only needed to see where it came from. cp932_test.cpp holds it against the
platform's own conversion in both builds.
"""
import sys

rows = []
for lead in list(range(0x81, 0xA0)) + list(range(0xE0, 0xFD)):
    if 0xF0 <= lead <= 0xF9:
        continue  # user-defined area: computed
    values = []
    for trail in range(0x40, 0xFD):
        if trail == 0x7F:
            values.append(0)
            continue
        try:
            values.append(ord(bytes([lead, trail]).decode("cp932")))
        except UnicodeDecodeError:
            values.append(0)
    if any(values):
        rows.append((lead, values))

out = sys.stdout
out.write("// Made by scripts/make_cp932_table.py. A row a lead byte: trail bytes 0x40 to 0xFC, 0 where undefined.\n")
for lead, values in rows:
    out.write("{0x%02X, {\n" % lead)
    for i in range(0, len(values), 16):
        out.write("  " + ",".join("0x%X" % v if v else "0" for v in values[i:i + 16]) + ",\n")
    out.write("}},\n")
