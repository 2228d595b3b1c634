"""Sums up the layout tables of a font, one line for each lookup and each subtable.

layout_tables.py FONT

"GSUB lookup TYPE FLAG SUBTABLES", where an extension has the type that it wraps in GSUB and 9 in
GPOS, then for each subtable "TYPE FORMAT COUNT SUM": how many entries it has, and the sum of the
numbers in them, glyphs by id. A class definition of format 1 has no classes.
"""

import sys

from fontTools.ttLib import TTCollection, TTFont
from fontTools.ttLib.tables import otTables


def remember_format(table_class):
    """fontTools forgets the format of some tables once it has read them."""
    post_read = table_class.postRead

    def remembering(self, raw_table, font):
        self.format_in_file = self.Format
        post_read(self, raw_table, font)

    table_class.postRead = remembering


def format_of(table):
    table.ensureDecompiled()
    remembered = vars(table).get("format_in_file")
    return remembered if remembered is not None else vars(table).get("Format", 1)


class Sums:
    def __init__(self, font):
        self.gid = font.getReverseGlyphMap().__getitem__
        self.glyphs = font["maxp"].numGlyphs

    def value(self, record):
        if record is None:
            return 0
        fields = ("XPlacement", "YPlacement", "XAdvance", "YAdvance")
        return sum(getattr(record, field, 0) or 0 for field in fields)

    def anchor(self, anchor):
        return 0 if anchor is None else anchor.XCoordinate + anchor.YCoordinate

    def anchors(self, anchors):
        present = [anchor for anchor in anchors if anchor is not None]
        return len(present), sum(map(self.anchor, present))

    def classes(self, definition):
        if definition is None or format_of(definition) == 1:
            return 0
        return sum(definition.classDefs.values())

    def coverages(self, tables):
        return sum(len(table.glyphs) for table in tables)

    def records(self, records):
        return sum(record.SequenceIndex + record.LookupListIndex for record in records)

    def gsub(self, table, kind):
        gid = self.gid
        if kind == 1:
            return len(table.mapping), sum(map(gid, table.mapping.values()))
        if kind == 2:
            return len(table.mapping), sum(gid(g) for s in table.mapping.values() for g in s)
        if kind == 3:
            return len(table.alternates), sum(gid(g) for s in table.alternates.values() for g in s)
        if kind == 4:
            ligatures = [lig for s in table.ligatures.values() for lig in s]
            return len(ligatures), sum(
                gid(lig.LigGlyph) + sum(map(gid, lig.Component)) for lig in ligatures)
        return self.context(table) if kind in (5, 6) else (0, 0)

    def gpos(self, table, kind):
        glyphs = table.Coverage.glyphs if hasattr(table, "Coverage") else []
        if kind == 1:
            if format_of(table) == 1:
                return len(glyphs), len(glyphs) * self.value(table.Value)
            return len(glyphs), sum(map(self.value, table.Value))
        if kind == 2 and format_of(table) == 1:
            # Of a glyph that stands twice in a set, the first pair counts.
            pairs = {}
            for index, pair_set in enumerate(table.PairSet):
                for record in pair_set.PairValueRecord:
                    pairs.setdefault((index, record.SecondGlyph), record)
            return len(pairs), sum(
                self.value(p.Value1) + self.value(p.Value2) for p in pairs.values())
        if kind == 2:
            cells = [cell for row in table.Class1Record for cell in row.Class2Record]
            return len(cells), self.classes(table.ClassDef1) + self.classes(table.ClassDef2) + sum(
                self.value(cell.Value1) + self.value(cell.Value2) for cell in cells)
        if kind == 3:
            return self.anchors(a for r in table.EntryExitRecord
                                for a in (r.EntryAnchor, r.ExitAnchor))
        if kind == 4:
            return self.marks(table.MarkArray,
                              (a for r in table.BaseArray.BaseRecord for a in r.BaseAnchor))
        if kind == 5:
            return self.marks(table.MarkArray,
                              (a for ligature in table.LigatureArray.LigatureAttach
                               for component in ligature.ComponentRecord
                               for a in component.LigatureAnchor))
        if kind == 6:
            return self.marks(table.Mark1Array,
                              (a for r in table.Mark2Array.Mark2Record for a in r.Mark2Anchor))
        return self.context(table) if kind in (7, 8) else (0, 0)

    def marks(self, array, anchors):
        count, total = self.anchors(anchors)
        for record in array.MarkRecord:
            count += 1
            total += record.Class + self.anchor(record.MarkAnchor)
        return count, total

    def context(self, table):
        if format_of(table) == 3 and hasattr(table, "InputCoverage"):
            parts = (table.BacktrackCoverage, table.InputCoverage, table.LookAheadCoverage)
            records = getattr(table, "SubstLookupRecord", None) or getattr(
                table, "PosLookupRecord", None) or []
            return sum(map(len, parts)), sum(map(self.coverages, parts)) + self.records(records)
        if format_of(table) == 2 and hasattr(table, "InputClassDef"):
            sets = getattr(table, "ChainSubClassSet", None) or getattr(
                table, "ChainPosClassSet", None) or []
            count = total = 0
            for rules in filter(None, sets):
                for rule in getattr(rules, "ChainSubClassRule", None) or rules.ChainPosClassRule:
                    count += 1
                    total += sum(rule.Backtrack) + sum(rule.Input) + sum(rule.LookAhead)
                    total += self.records(getattr(rule, "SubstLookupRecord", None) or getattr(
                        rule, "PosLookupRecord", None) or [])
            return count, total + self.classes(table.BacktrackClassDef) + self.classes(
                table.InputClassDef) + self.classes(table.LookAheadClassDef)
        return 0, 0


def main(path):
    font = TTCollection(path).fonts[0] if path.endswith(".ttc") else TTFont(path)
    sums = Sums(font)
    for tag, extension in (("GSUB", 7), ("GPOS", 9)):
        if tag not in font or font[tag].table.LookupList is None:
            continue
        for lookup in font[tag].table.LookupList.Lookup:
            tables = [(t.ExtSubTable, t.ExtensionLookupType) if lookup.LookupType == extension
                      else (t, lookup.LookupType) for t in lookup.SubTable]
            kind = tables[-1][1] if tag == "GSUB" and tables else lookup.LookupType
            print(tag, "lookup", kind, lookup.LookupFlag, len(tables))
            for table, table_type in tables:
                count, total = (sums.gsub if tag == "GSUB" else sums.gpos)(table, table_type)
                print(table_type, format_of(table), count, total)


remember_format(otTables.ClassDef)
remember_format(otTables.SingleSubst)
main(sys.argv[1])
