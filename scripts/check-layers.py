#!/usr/bin/python3
"""Checks the arrows between the rooms of src/ and the public headers.

usage: check-layers.py [SOURCE_DIR | --self-test]

A room includes the rooms below it and nothing above; one floor's rooms do not know each other.
Angle includes come from a list per room, so a system header can only enter through
src/platform/posix and src/platform/windows. Exits 1 and names every breach.
"""

import pathlib
import re
import sys
import tempfile

# Rooms a room may include, beside itself. Everything here points down; cff lies above type1, with
# which it shares the table of words.
BELOW = {
    "platform": set(),
    "common": {"platform"},
    "type1": {"common", "platform"},
    "cff": {"type1", "common", "platform"},
    "layout": {"common", "platform"},
    "fonts": {"layout", "cff", "type1", "common", "platform"},
    "raster": {"fonts", "layout", "cff", "type1", "common", "platform"},
    "embed": {"fonts", "layout", "cff", "type1", "common", "platform"},
    "registry": {"embed", "raster", "fonts", "layout", "cff", "type1", "common", "platform"},
}
BELOW["service"] = {"registry"} | BELOW["registry"]

# The font classes call into the rooms that write and draw, from their .cpp files only.
CALLS_UP = {"fonts": {"embed", "raster"}}

# Rooms that may include the public headers of KWFontService17.
KNOWS_FONT_SERVICE = set(BELOW) - {"platform", "common"}

STANDARD = re.compile(r"[a-z_]+$")  # <vector>; C headers come as <cstdio>
THIRD_PARTY = {
    "platform": [r"unicode/.*"],
    "common": [r"unicode/.*", r"zlib\.h", r"expat\.h"],
    "raster": [r"unicode/.*", r"ft2build\.h", r"freetype/.*"],
}
THIRD_PARTY_DEFAULT = [r"unicode/.*"]
# The one public header that has members of the system's records.
SYSTEM_IN_PUBLIC = {"KWFontService17/FS_WindowsRecords.h": [r"windows\.h"]}
FREETYPE_MACRO = re.compile(r"#\s*include\s+FT_[A-Z0-9_]+_H\b")

INCLUDE = re.compile(r"^\s*#\s*include\s*(?:<([^>]+)>|\"([^\"]+)\")", re.M)
SUFFIXES = {".h", ".hpp", ".cpp", ".cc", ".inc"}


def files_under(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in SUFFIXES) if folder.is_dir() else []


def includes(path):
    text = path.read_text(encoding="utf-8")
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start(1 if match[1] else 2)) + 1, match[1], match[2]


def check_angle(name, third_party, public):
    if STANDARD.match(name) or any(re.fullmatch(pattern, name) for pattern in third_party):
        return None
    if any(name.startswith(prefix) for prefix in public):
        return None
    return f"<{name}> is neither standard nor on this room's list"


def check_room_file(source, path):
    relative = path.relative_to(source)
    parts = relative.parts
    if len(parts) < 2 or parts[0] not in BELOW:
        yield 1, "lies in no known room"
        return
    room = parts[0]
    inside_system = room == "platform" and len(parts) > 2 and parts[1] in ("posix", "windows")
    public = ["KWCommon15/"] if room != "platform" else []
    if room in KNOWS_FONT_SERVICE:
        public.append("KWFontService17/")
    called_up = CALLS_UP.get(room, set()) if path.suffix == ".cpp" else set()
    allowed = BELOW[room] | {room} | called_up

    for line, angle, quoted in includes(path):
        if angle:
            if not inside_system:
                problem = check_angle(angle, THIRD_PARTY.get(room, THIRD_PARTY_DEFAULT), public)
                if problem:
                    yield line, problem
            continue
        head = quoted.split("/")[0]
        if ".." in quoted.split("/"):
            yield line, f'"{quoted}": includes are written from src/ or from the own folder'
        elif any(quoted.startswith(prefix) for prefix in ("KWCommon15/", "KWFontService17/")):
            if not any(quoted.startswith(prefix) for prefix in public):
                yield line, f'"{quoted}" is a public header that this room lies below'
        elif head in BELOW and (source / quoted).exists():
            if head not in allowed:
                yield line, f'"{quoted}" points up, from {room} to {head}'
        elif not (path.parent / quoted).exists():
            yield line, f'"{quoted}" is found neither under src/ nor beside the file'

    if room not in ("raster",) and FREETYPE_MACRO.search(path.read_text(encoding="utf-8")):
        yield 1, "includes FreeType by macro, which only raster does"


def check_public_file(include, path):
    library = path.relative_to(include).parts[0]
    public = ["KWCommon15/"] if library == "KWCommon15" else ["KWCommon15/", "KWFontService17/"]
    allowed = THIRD_PARTY_DEFAULT + SYSTEM_IN_PUBLIC.get(path.relative_to(include).as_posix(), [])
    for line, angle, quoted in includes(path):
        name = angle or quoted
        if quoted and not any(quoted.startswith(prefix) for prefix in public):
            yield line, f'"{quoted}": public headers include public headers, by their full name'
        if angle:
            problem = check_angle(name, allowed, public)
            if problem:
                yield line, problem


def check(root):
    source, include = root / "src", root / "include"
    breaches = []
    for path in files_under(source):
        breaches += [(path, *breach) for breach in check_room_file(source, path)]
    for path in files_under(include):
        breaches += [(path, *breach) for breach in check_public_file(include, path)]
    return breaches


SELF_TEST = [
    # file, its one line, is it a breach?
    ("src/common/Ok.cpp", '#include "common/Ok.h"', False),
    ("src/common/Ok.h", "#include <vector>", False),
    ("src/common/Zip.cpp", "#include <zlib.h>", False),
    ("src/common/System.cpp", "#include <unistd.h>", True),
    ("src/common/System2.cpp", "#  include <sys/stat.h>", True),
    ("src/common/Up.cpp", '#include "fonts/Font.h"', True),
    ("src/common/Public.cpp", "#include <KWFontService17/FS_Export.h>", True),
    ("src/common/Lost.cpp", '#include "common/Nowhere.h"', True),
    ("src/platform/Platform.h", "#include <dirent.h>", True),
    ("src/platform/posix/Folder.cpp", "#include <dirent.h>", False),
    ("src/platform/posix/Up.cpp", '#include "common/Ok.h"', True),
    ("src/fonts/Font.h", '#include "common/Ok.h"', False),
    ("src/fonts/Reader.h", '#include "embed/Writer.h"', True),
    ("src/fonts/Font.cpp", '#include "embed/Writer.h"', False),
    ("src/fonts/Face.cpp", "#include FT_FREETYPE_H", True),
    ("src/fonts/Dots.cpp", '#include "../common/Ok.h"', True),
    ("src/embed/Writer.h", '#include "fonts/Font.h"', False),
    ("src/embed/Draw.cpp", '#include "raster/Face.h"', True),
    ("src/raster/Face.h", "#include <ft2build.h>", False),
    ("src/service/Service.cpp", '#include "raster/Face.h"', False),
    ("src/cff/Dict.cpp", '#include "type1/Words.h"', False),
    ("src/type1/Words.h", '#include "common/Ok.h"', False),
    ("src/type1/Up.cpp", '#include "cff/Dict.cpp"', True),
    ("src/attic/Old.cpp", "#include <vector>", True),
    ("include/KWCommon15/A.h", "#include <unicode/unistr.h>", False),
    ("include/KWCommon15/B.h", '#include "KWFontService17/C.h"', True),
    ("include/KWFontService17/C.h", "#include <KWCommon15/A.h>", False),
    ("include/KWFontService17/D.h", "#include <ft2build.h>", True),
    ("include/KWFontService17/F.h", "#include <windows.h>", True),
    ("include/KWFontService17/FS_WindowsRecords.h", "#include <windows.h>", False),
    ("src/platform/windows/Header.h", "#include <windows.h>", False),
    ("src/fonts/Windows.cpp", "#include <windows.h>", True),
    ("include/KWFontService17/E.h", '#include "fonts/Font.h"', True),
]


def self_test():
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text, _ in SELF_TEST:
            path = root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text + "\n", encoding="utf-8")
        found = {path.relative_to(root).as_posix() for path, _, _ in check(root)}
    wrong = [name for name, _, breach in SELF_TEST if (name in found) != breach]
    for name in wrong:
        print(f"check-layers.py: judged wrongly: {name}", file=sys.stderr)
    return 1 if wrong else 0


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__).resolve()
    root = root if root.is_dir() else root.parent.parent
    breaches = check(root)
    for path, line, problem in breaches:
        print(f"{path.relative_to(root)}:{line}: {problem}", file=sys.stderr)
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
