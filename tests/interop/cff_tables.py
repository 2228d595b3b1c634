"""Sums up the CFF table of a font, a line for each thing that its readers need.

cff_tables.py FONT

The bounding box is printed modulo 2 ** 16, since its short integers have no sign for us. Sums are
taken modulo 2 ** 32. A sum of values in an order weighs each with its place.
"""

import sys

from fontTools.cffLib import cffStandardStrings
from fontTools.encodings.StandardEncoding import StandardEncoding
from fontTools.ttLib import TTCollection, TTFont

TOP = {
    "version": "s", "Notice": "s", "FullName": "s", "FamilyName": "s", "Weight": "s",
    "Copyright": "s", "ItalicAngle": "i", "UnderlinePosition": "i", "UnderlineThickness": "i",
    "CharstringType": "i", "FontMatrix": "a", "FontBBox": "m", "CIDCount": "i",
    "isFixedPitch": "i",
}
PRIVATE = ["BlueFuzz", "BlueScale", "BlueShift", "BlueValues", "ExpansionFactor", "FamilyBlues",
           "FamilyOtherBlues", "ForceBold", "LanguageGroup", "OtherBlues", "StdHW", "StdVW",
           "StemSnapH", "StemSnapV", "defaultWidthX", "initialRandomSeed", "nominalWidthX"]


def number(value):
    return f"{float(value):.6f}"


def ordered(values):
    return sum((place + 1) * value for place, value in enumerate(values)) % 2**32


def checked(items):
    """The number of byte strings, their length, and a sum over them."""
    data = b"".join(items)
    return f"{len(items)} {len(data)} {ordered(data)}"


def private(label, dictionary):
    raw = dictionary.rawDict
    for key in PRIVATE:
        if key not in raw:
            continue
        value = raw[key]
        if isinstance(value, list):
            text = " ".join(number(item) for item in getattr(dictionary, key))
        else:
            text = number(value)
        print(label, key, text)
    subrs = getattr(dictionary, "Subrs", None)
    print(label, "subrs", checked(charstrings_of(subrs) if subrs else []))


def charstrings_of(index):
    return [bytes(item.bytecode) for item in index]


def main(path):
    with open(path, "rb") as stream:
        collection = stream.read(4) == b"ttcf"
    font = TTCollection(path).fonts[0] if collection else TTFont(path)
    cff = font["CFF "].cff
    cff.desubroutinize = None
    top = cff[0]
    cid = hasattr(top, "ROS")
    print("kind", "CID" if cid else "names")
    if cid:
        print("ROS", *top.ROS)
    print("strings", checked([text.encode("latin-1") for text in cff.strings.strings]))
    for key, kind in TOP.items():
        if key not in top.rawDict:
            continue
        value = getattr(top, key)
        if kind == "s":
            print(key, value.encode("latin-1").hex())
        elif kind == "a":
            print(key, *map(number, value))
        elif kind == "m":
            print(key, *(int(item) % 2**16 for item in value))
        else:
            print(key, int(value))
    names = top.charset
    print("glyphs", len(names))
    if cid:
        values = [int(name[3:]) if name.startswith("cid") else 0 for name in names]
    else:
        values = [0] + [cff.strings.getSID(name) for name in names[1:]]
    print("charset", ordered(values))
    if not cid:
        print("names", ordered("\n".join(names).encode("latin-1")))
        if isinstance(top.Encoding, str):
            print("encoding", top.Encoding)
        else:
            codes = {name: code for code, name in enumerate(top.Encoding) if name != ".notdef"}
            print("encoding", ordered(codes[name] for name in names if name in codes))
    print("global subrs", checked(charstrings_of(cff.GlobalSubrs)))
    strings = top.CharStrings
    print("charstrings", checked([bytes(strings[name].bytecode) for name in names]))
    if cid:
        print("selected", ordered(top.FDSelect.gidArray))
        for place, entry in enumerate(top.FDArray):
            print("fd", place, "name", getattr(entry, "FontName", ""))
            private(f"fd {place}", entry.Private)
    else:
        private("private", top.Private)
    print("standard", ordered("\n".join(cffStandardStrings).encode()),
          ordered("\n".join(StandardEncoding).encode()))


main(sys.argv[1])
