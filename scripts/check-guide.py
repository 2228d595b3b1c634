#!/usr/bin/python3
"""Checks that the code blocks of docs/host-guide.md are the code that tests/guide runs.

usage: check-guide.py [SOURCE_DIR | --self-test]

Each C++ block of the guide follows a comment "<!-- FILE: REGION -->". It must equal the lines of
tests/guide/FILE between the two lines "//! [REGION]", and every such region must be in the guide.
Exits 1 and names every difference.
"""

import pathlib
import re
import sys
import tempfile

BLOCK = re.compile(r"^(?:<!-- (\S+): (\S+) -->\n)?```cpp\n(.*?)^```$", re.M | re.S)
REGION = re.compile(r"^//! \[(\S+)\]\n(.*?)^//! \[\1\]$", re.M | re.S)


def regions(folder):
    found = {}
    for path in sorted(folder.glob("*.cpp")):
        for name, text in REGION.findall(path.read_text(encoding="utf-8")):
            found[path.name, name] = text
    return found


def check(root):
    guide = (root / "docs" / "host-guide.md").read_text(encoding="utf-8")
    tested = regions(root / "tests" / "guide")
    shown = set()
    for match in BLOCK.finditer(guide):
        file, name, text = match.groups()
        line = guide.count("\n", 0, match.start()) + 1
        if file is None:
            yield f"line {line}: a code block without the comment that names its source"
        elif (file, name) not in tested:
            yield f"line {line}: tests/guide/{file} has no region [{name}]"
        elif tested[file, name] != text:
            yield f"line {line}: differs from [{name}] in tests/guide/{file}"
        shown.add((file, name))
    for file, name in sorted(set(tested) - shown):
        yield f"[{name}] of tests/guide/{file} is not in the guide"


CODE = "//! [a]\nint a;\n//! [a]\n"
SELF_TEST = [
    # guide, tested code, number of differences
    ("<!-- x.cpp: a -->\n```cpp\nint a;\n```\n", CODE, 0),
    ("<!-- x.cpp: a -->\n```cpp\nint b;\n```\n", CODE, 1),
    ("<!-- x.cpp: b -->\n```cpp\nint a;\n```\n", CODE, 2),
    ("```cpp\nint a;\n```\n", CODE, 2),
    ("text alone\n", CODE, 1),
    ("text alone\n", "int a;\n", 0),
]


def self_test():
    wrong = 0
    for number, (guide, code, differences) in enumerate(SELF_TEST):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "docs").mkdir()
            (root / "tests" / "guide").mkdir(parents=True)
            (root / "docs" / "host-guide.md").write_text(guide, encoding="utf-8")
            (root / "tests" / "guide" / "x.cpp").write_text(code, encoding="utf-8")
            found = list(check(root))
        if len(found) != differences:
            wrong += 1
            print(f"check-guide.py: judged wrongly: case {number}: {found}", file=sys.stderr)
    return 1 if wrong else 0


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else __file__).resolve()
    root = root if root.is_dir() else root.parent.parent
    differences = list(check(root))
    for difference in differences:
        print(f"docs/host-guide.md: {difference}", file=sys.stderr)
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
