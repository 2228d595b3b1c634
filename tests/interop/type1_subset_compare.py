# type1_subset_compare.py SOURCE SUBSET: every glyph of the subset has the outline and the width that
# it has in the source, as fontTools sees them.
import sys

from fontTools.pens.recordingPen import RecordingPen
from fontTools.t1Lib import T1Font


def glyphs_of(path):
    font = T1Font(path)
    font.parse()
    glyphs = font.getGlyphSet()
    drawn = {}
    for name in glyphs.keys():
        pen = RecordingPen()
        glyphs[name].draw(pen)
        drawn[name] = (pen.value, glyphs[name].width)
    return drawn, font["Encoding"], font["Private"]["Subrs"] if "Subrs" in font["Private"] else []


source, source_encoding, source_subrs = glyphs_of(sys.argv[1])
subset, encoding, subrs = glyphs_of(sys.argv[2])
assert encoding == source_encoding, "another encoding"
assert len(subrs) == len(source_subrs), "other subrs"
for name, glyph in subset.items():
    assert glyph == source[name], f"{name} differs"
print("same", len(subset))
