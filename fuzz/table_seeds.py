# SPDX-FileCopyrightText: 2026 The QVSongLrc authors
# SPDX-License-Identifier: MIT
"""Writes the texts of tests/data/import.txt as seeds: table_seeds.py TABLE FOLDER"""

import pathlib
import re
import sys

table, folder = map(pathlib.Path, sys.argv[1:])
folder.mkdir(exist_ok=True)
for row in table.read_text(encoding="utf-8").splitlines():
    if row.count("|") == 3:
        name, text = (cell.strip() for cell in row.split("|")[:2])
        text = text.translate(dict(zip(map(ord, "␣␉␍␊"), " \t\r\n")))
        text = re.sub(r"\\u(....)", lambda unit: chr(int(unit[1], 16)), text)
        (folder / re.sub(r"\W", "-", name)).write_bytes(text.encode("utf-16", "surrogatepass")[2:])
