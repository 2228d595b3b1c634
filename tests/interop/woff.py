"""WOFF files by fontTools.

woff.py pack FONT WOFF     writes a font as WOFF
woff.py tables FONT...     a line for each table: tag, length, sum of its 32-bit words
"""

import sys

from fontTools.ttLib import TTFont
from fontTools.ttLib.sfnt import calcChecksum


def pack(source, target):
    font = TTFont(source, lazy=True, recalcBBoxes=False, recalcTimestamp=False)
    font.flavor = "woff"
    font.save(target, reorderTables=None)


def tables(*paths):
    for path in paths:
        font = TTFont(path, lazy=True)
        for tag in sorted(font.reader.keys()):
            data = font.reader[tag]
            print(f"{tag} {len(data)} {calcChecksum(data)}")
        font.close()


if __name__ == "__main__":
    {"pack": pack, "tables": tables}[sys.argv[1]](*sys.argv[2:])
