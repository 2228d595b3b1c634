#!/usr/bin/python3
"""Checks that docs/interface.md lists the public interface, each line with a test that covers it.

usage: check-interface.py [SOURCE_DIR | --self-test]

The table has a section "## HEADER" for each header under include/ and in it a row
"| `NAME` | what it is or answers | `Suite.Name` |" for each class, member function and free
function, in the order of the header. The row of a class stands for its constructors as well, that
of a function for its overloads. What the language would write by itself (destructors, assignments
of the same class) and what is deleted has no row.

A test has to exist under tests/, and its file has to mention the function (of an operator: the
class). Exits 1 and names every difference.
"""

import pathlib
import re
import sys
import tempfile

HEADERS = ("KWCommon15", "KWFontService17")
WORDS = 10
ROW = re.compile(r"^\| `([^`]+)` \| (.*?) \| `([^`]+)` \|$")
NO_ROW = ("| name |", "| --- |")
TEST = re.compile(r"^(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+),\s*(\w+)\)", re.M)
# Lists of operations (src/*.inc) and fixtures (tests/*.h) mention for the tests that include them.
INCLUDED = re.compile(r'^\s*#include "([\w/]+\.(?:inc|h))"', re.M)

NOT_CODE = re.compile(r"//[^\n]*|/\*.*?\*/|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.M | re.S)
ACCESS = re.compile(r"\s*(public|protected|private)\s*:(?!:)")
RECORD = re.compile(r"^(?:template\s*<[^{]*>\s*)?(class|struct|union)\s+(?:\w+_API\s+)?(\w+)[^(]*$")
OPERATOR = re.compile(r"\boperator\s*(\(\)|[^\w\s(]+|[\w:]+)\s*\(")
FUNCTION = re.compile(r"^(?:[^=(]*[\s*&>])?(?<!:)(~?\w+)\s*\(")
CONSTANT = re.compile(r"^\w+_API extern [^(]*?(\w+)$")
DELETED = re.compile(r"=\s*delete$")


def statements(text):
    """Each declaration up to its ";" or "{", and what it has in braces, None if it has none."""
    head, depth, at = "", 0, 0
    while at < len(text):
        char = text[at]
        if depth == 0 and char == ";":
            yield head, None
            head = ""
        elif depth == 0 and char == "{":
            end = at + 1
            braces = 1
            while braces:
                braces += {"{": 1, "}": -1}.get(text[end], 0)
                end += 1
            yield head, text[at + 1:end - 1]
            head, at = "", end - 1
        else:
            depth += {"(": 1, ")": -1}.get(char, 0)
            head += char
        at += 1


def function(head, record):
    operator = OPERATOR.search(head)
    if operator:
        name = operator.group(1)
        if name == "=" and re.search(rf"operator=\((?:const )?{record}&", head):
            return None
        return f"operator {name}" if name[0].isalpha() else f"operator{name}"
    match = FUNCTION.match(head)
    name = match.group(1) if match else record
    return None if name in (record, "static_assert") or name.startswith("~") else name


def declared(code, record="", public=True):
    """What a header, or a class in it, makes public, in its order."""
    scope = f"{record}::" if record else ""
    for head, body in statements(code):
        while access := ACCESS.match(head):
            public = access.group(1) == "public"
            head = head[access.end():]
        head = " ".join(head.split())
        if not public or DELETED.search(head):
            continue
        inner = RECORD.match(head)
        if head.startswith("namespace "):
            yield from declared(body)
        elif inner and body is not None:
            name = scope + inner.group(2)
            yield name
            yield from declared(body, name, inner.group(1) != "class")
        elif constant := CONSTANT.match(head):
            yield constant.group(1)
        elif name := function(head, record.split("::")[-1]):
            yield scope + name


def interface(root):
    """The names of each header; overloads are one."""
    for library in HEADERS:
        for path in sorted((root / "include" / library).glob("*.h")):
            code = NOT_CODE.sub("", path.read_text(encoding="utf-8"))
            if names := list(dict.fromkeys(declared(code))):
                yield f"{library}/{path.name}", names


def tests(root):
    """For each test the text in which its functions are mentioned."""
    found = {}
    for path in (root / "tests").glob("**/*.cpp"):
        text = path.read_text(encoding="utf-8")
        names = [".".join(parts) for parts in TEST.findall(text)]
        for file in INCLUDED.findall(text):
            folders = ["src"] if file.endswith(".inc") else ["tests", path.parent]
            for included in (root / folder / file for folder in folders):
                if included.exists():
                    text += included.read_text(encoding="utf-8")
        for name in names:
            found[name] = found.get(name, "") + text
    return found


def mentions(text, name):
    *scope, own = name.split("::")
    word = scope[-1] if own.startswith("operator") else own
    return re.search(rf"\b{word}\b", text)


def check(root):
    tested = tests(root)
    public = dict(interface(root))
    listed = {}
    header = None
    table = (root / "docs" / "interface.md").read_text(encoding="utf-8")
    for number, line in enumerate(table.splitlines(), 1):
        if line.startswith("## "):
            header = line[3:]
            listed[header] = []
            if header not in public:
                yield f"line {number}: {header} is no header with something public"
        elif line.startswith("|") and not line.startswith(NO_ROW):
            row = ROW.match(line)
            if row is None or header is None:
                yield f"line {number}: is no row of a header's table"
                continue
            name, description, test = row.groups()
            if name in listed[header]:
                yield f"line {number}: {name} is in the table already"
            elif header in public and name not in public[header]:
                yield f"line {number}: {name} is not public in {header}"
            listed[header].append(name)
            if not 0 < len(description.split()) <= WORDS:
                yield f"line {number}: the description of {name} has not 1 to {WORDS} words"
            if test not in tested:
                yield f"line {number}: there is no test {test}"
            elif not mentions(tested[test], name):
                yield f"line {number}: the file of {test} does not mention {name}"
    for header, names in public.items():
        rows = listed.get(header, [])
        for name in names:
            if name not in rows:
                yield f"{name} of {header} has no row"
        if sorted(rows) == sorted(names) and rows != names:
            yield f"the rows of {header} are not in the order of the header"
    if list(filter(public.get, listed)) != list(filter(listed.__contains__, public)):
        yield "the headers are not in order"


HEADER = """
// class Comment {};
#if defined(_WIN32)
#define DEFINED(x) \\
    x()
#endif
namespace N {
class Elsewhere;
using Alias = int (*)(int);
class KWCOMMON_API C : public Base<char> {
public:
    struct Part { int data = 0; bool isPart() const { return data != 0; } };
    explicit C(int a, const S& b = {}) : a_(a), b_{.x = 1} {}
    C(const C&) = delete;
    C& operator=(const C& other);
    ~C() override;
    static constexpr int kMost = limits<int>::max();
    virtual int f(int a) const = 0;
    int f() const { return g(); }
    template <typename U>
    bool operator==(const U& other) const { return true; }
    explicit operator bool() const;
    KWCOMMON_API friend C operator+(const C& a, const C& b);
private:
    int g() const;
};
constexpr int C::f() const { return 1; }
template <typename T>
class Inline { int hidden(); public: T* get(); };
KWCOMMON_API extern const C NOTHING;
KWCOMMON_API int free(int a = max());
static_assert(sizeof(C) == 4);
}
"""
NAMES = ["C", "C::Part", "C::Part::isPart", "C::f", "C::operator==", "C::operator bool",
         "C::operator+", "Inline", "Inline::get", "NOTHING", "free"]
CODE = ("TEST(A, b) { C::Part p; p.isPart(); c.f(); Inline<int> i; i.get(); NOTHING; }\n"
        "TEST_F(A, Free) { free(); }\n")
ROWS = [f"| `{name}` | words | `A.b` |\n" for name in NAMES]
SELF_TEST = [
    # rows of the table, number of differences
    (ROWS, 0),
    (ROWS[:-1], 1),
    (ROWS[:-2] + ROWS[:-3:-1], 1),
    (ROWS + ["| `C::g` | words | `A.b` |\n"], 2),
    (ROWS + ROWS[:1], 1),
    (ROWS[:-1] + ["| `free` | words | `A.Free` |\n"], 0),
    (ROWS[:-1] + ["| `free` | words | `A.None` |\n"], 1),
    (ROWS[:-1] + ["| `free` | words | `Other.Test` |\n"], 1),
    (ROWS[:-1] + ["| `free` | words | `List.Test` |\n"], 0),
    (ROWS[:-1] + ["| `free` | words | `Fixture.Test` |\n"], 0),
    (ROWS[:-1] + ["| `free` | one two three four five six seven eight nine ten | `A.b` |\n"], 0),
    (ROWS[:-1] + ["| `free` | one two three four five six seven eight nine ten 11 | `A.b` |\n"], 1),
    (ROWS[:-1] + ["| `free` | | `A.b` |\n"], 2),
    (ROWS + ["## KWCommon15/Other.h\n"], 1),
    ([], len(NAMES)),
]


def self_test():
    wrong = 0
    for number, (rows, differences) in enumerate(SELF_TEST):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for path, text in {
                    "include/KWCommon15/C.h": HEADER,
                    "include/KWCommon15/Empty.h": "enum E { A };\n",
                    "src/list.inc": "OPERATION(free)\n",
                    "tests/room/a_test.cpp": CODE,
                    "tests/room/list_test.cpp": '#include "list.inc"\nTEST(List, Test) {}\n',
                    "tests/room/Fixture.h": "inline int helper() { return free(); }\n",
                    "tests/room/fixture_test.cpp":
                        '#include "room/Fixture.h"\nTEST(Fixture, Test) {}\n',
                    "tests/room/other_test.cpp": "TYPED_TEST(Other,\n    Test) {}\n",
                    "docs/interface.md": "# Title\n\n## KWCommon15/C.h\n" + "".join(rows),
            }.items():
                (root / path).parent.mkdir(parents=True, exist_ok=True)
                (root / path).write_text(text, encoding="utf-8")
            found = list(check(root))
        if len(found) != differences:
            wrong += 1
            print(f"check-interface.py: judged wrongly: case {number}: {found}", file=sys.stderr)
    return 1 if wrong else 0


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    given = sys.argv[1] if len(sys.argv) > 1 else __file__
    root = pathlib.Path(given).resolve()
    root = root if root.is_dir() else root.parent.parent
    differences = list(check(root))
    for difference in differences:
        print(f"docs/interface.md: {difference}", file=sys.stderr)
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
