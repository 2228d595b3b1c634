#!/usr/bin/python3
"""Makes a page that shows a font as it is, as our WOFF, and as that WOFF with padding.

usage: make-webfont-page.py TYPESET FONT PAGE.html [TEXT]

TYPESET is the program of examples/typeset, FONT a file with one font. The page has the fonts in it,
cut to the glyphs of TEXT where they are ours, and needs nothing else.
"""

import base64
import html
import pathlib
import struct
import subprocess
import sys
import tempfile

TEXT = "Font service, 1234567890"
HEADER, ENTRY = 44, 20


def padded(woff):
    """The tables of a WOFF file, each at a multiple of four, as most readers want them."""
    count = struct.unpack_from(">H", woff, 12)[0]
    head, body = bytearray(woff[:HEADER]), bytearray()
    directory = bytearray(woff[HEADER : HEADER + ENTRY * count])
    for at in range(0, len(directory), ENTRY):
        offset, length = struct.unpack_from(">II", directory, at + 4)
        struct.pack_into(">I", directory, at + 4, HEADER + len(directory) + len(body))
        body += woff[offset : offset + length]
        body += bytes(-len(body) % 4)
    struct.pack_into(">I", head, 8, HEADER + len(directory) + len(body))
    return bytes(head + directory + body)


def url(kind, data):
    return f"data:font/{kind};base64,{base64.b64encode(data).decode()}"


def main(typeset, font, page, text=TEXT):
    font = pathlib.Path(font)
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        (folder / "text.txt").write_text(text, encoding="utf-8")
        subprocess.run(
            [typeset, "--font", font, "--webfont", folder / "ours.woff"]
            + ["-o", folder / "page.pdf", folder / "text.txt"],
            check=True,
            stdout=subprocess.DEVNULL,
        )
        ours = (folder / "ours.woff").read_bytes()
    files = {"source": font.read_bytes(), "ours": ours, "padded": padded(ours)}
    values = {"NAME": html.escape(font.name), "TEXT": html.escape(text)}
    for key, data in files.items():
        values[key.upper()] = url("ttf" if key == "source" else "woff", data)
        values[key.upper() + "_SIZE"] = f"{len(data):,} bytes"
    form = (pathlib.Path(__file__).parent / "webfont.html").read_text(encoding="utf-8")
    for key, value in values.items():
        form = form.replace(f"@{key}@", value)
    pathlib.Path(page).write_text(form, encoding="utf-8")


if __name__ == "__main__":
    if not 4 <= len(sys.argv) <= 5:
        sys.exit(__doc__)
    main(*sys.argv[1:])
