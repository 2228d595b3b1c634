"""Compares glyphs of a subset with those of its source, by glyph id.

subset_compare.py SOURCE SUBSET GID...

Prints "same N" when the listed glyphs, their components and glyph 0 (N in all) have the same
outline, instructions and advance in both fonts and every other glyph of the subset is empty, else
what differs.
"""

import sys

from fontTools.ttLib import TTFont


def open_font(path):
    font = TTFont(path, recalcBBoxes=False, recalcTimestamp=False)
    font.setGlyphOrder([f"g{gid}" for gid in range(font["maxp"].numGlyphs)])
    return font


def glyph_at(font, gid):
    return font["glyf"][f"g{gid}"]


def describe(font, gid):
    glyph = glyph_at(font, gid)
    facts = {"advance": font["hmtx"][f"g{gid}"], "contours": glyph.numberOfContours}
    if glyph.numberOfContours != 0:
        facts["box"] = (glyph.xMin, glyph.yMin, glyph.xMax, glyph.yMax)
        facts["program"] = glyph.program.getBytecode() if hasattr(glyph, "program") else None
        coordinates, ends, flags = glyph.getCoordinates(font["glyf"])
        facts["outline"] = (list(coordinates), list(ends), list(flags))
    if glyph.isComposite():
        facts["components"] = [
            (c.glyphName, c.flags, c.getComponentInfo()) for c in glyph.components
        ]
    return facts


def closure_of(font, gids):
    closure, waiting = set(), [0, *gids]
    while waiting:
        gid = waiting.pop()
        if gid in closure:
            continue
        closure.add(gid)
        glyph = glyph_at(font, gid)
        if glyph.isComposite():
            waiting += [font.getGlyphID(c.glyphName) for c in glyph.components]
    return closure


def main(source_path, subset_path, *gids):
    source, subset = open_font(source_path), open_font(subset_path)
    closure = closure_of(source, [int(gid) for gid in gids])
    if subset["maxp"].numGlyphs != source["maxp"].numGlyphs:
        sys.exit("numGlyphs differ")
    for gid in range(source["maxp"].numGlyphs):
        if gid not in closure:
            if subset["loca"][gid] != subset["loca"][gid + 1]:
                sys.exit(f"glyph {gid} is not empty")
        elif describe(source, gid) != describe(subset, gid):
            sys.exit(f"glyph {gid} differs")
    print("same", len(closure))


main(*sys.argv[1:])
