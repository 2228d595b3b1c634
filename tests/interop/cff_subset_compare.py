"""Compares glyphs of a CFF subset with those of its source.

cff_subset_compare.py SOURCE SUBSET GID...

SUBSET is a bare table with packed glyphs, or an OpenType file whose glyphs kept their ids. Prints
"same N" when N glyphs, those listed, have the source's outline and width, else what differs.
"""

import sys
from io import BytesIO

from fontTools.cffLib import CFFFontSet
from fontTools.pens.recordingPen import RecordingPen
from fontTools.ttLib import TTFont


def bare(data):
    fonts = CFFFontSet()
    fonts.decompile(BytesIO(data), None)
    return fonts.topDictIndex[0]


def drawing(charstring):
    pen = RecordingPen()
    charstring.draw(pen)
    return pen.value, charstring.width


def main(source_path, subset_path, *gids):
    source = TTFont(source_path, fontNumber=0)["CFF "].cff.topDictIndex[0]
    with open(subset_path, "rb") as stream:
        data = stream.read()
    packed = data[:4] != b"OTTO"
    subset = bare(data) if packed else TTFont(BytesIO(data))["CFF "].cff.topDictIndex[0]
    is_cid = hasattr(source, "ROS")
    for gid in map(int, gids):
        name = source.charset[gid]
        new_name = f"cid{gid:05d}" if packed and is_cid and gid else name
        if drawing(source.CharStrings[name]) != drawing(subset.CharStrings[new_name]):
            sys.exit(f"glyph {gid} differs")
    print("same", len(gids))


main(*sys.argv[1:])
