#!/usr/bin/python3
"""Checks that shared libraries export nothing but our two namespaces.

usage: check-exports.py LIBRARY...

Weak symbols of the C++ library and of ICU are let through: they are template instances and inline
functions whose own headers give them default visibility. Exits 1 and names every other symbol.
"""

import re
import subprocess
import sys

SPECIAL = r"(?:T[VTISCW]|T[hv]n?\d+_(?:n?\d+_)?|Tc(?:[hv]n?\d+_(?:n?\d+_)?)+|GV|GR|Z)*"
NESTED = r"N[KVrRO]*"
OURS = re.compile(rf"_Z{SPECIAL}{NESTED}(?:10KWCommonNS|16KWFontService_NS)")
FOREIGN_WEAK = re.compile(rf"_Z{SPECIAL}(?:{NESTED})?(?:S[tabdios]|9__gnu_cxx|6icu_\d+)")
WEAK_TYPES = "WwVvu"


def exported(library):
    listing = subprocess.run(
        ["nm", "-D", "--defined-only", "--format=posix", library],
        check=True, capture_output=True, text=True).stdout
    for line in listing.splitlines():
        name, kind = line.split()[:2]
        yield name.split("@")[0], kind


def main():
    strangers = 0
    for library in sys.argv[1:]:
        ours = 0
        for name, kind in exported(library):
            if OURS.match(name):
                ours += 1
            elif not (kind in WEAK_TYPES and FOREIGN_WEAK.match(name)):
                strangers += 1
                print(f"{library}: exports {name} ({kind})", file=sys.stderr)
        if ours == 0:
            strangers += 1
            print(f"{library}: exports nothing of ours", file=sys.stderr)
    return 1 if strangers or len(sys.argv) < 2 else 0


if __name__ == "__main__":
    sys.exit(main())
