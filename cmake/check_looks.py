#!/usr/bin/env python3
"""Checks that views take colours, lengths and texts from where these belong.

check_looks.py [ROOT]   prints one line per literal that does not; exit status 1 if any.

Colours and lengths are in Tarn/ui/theme, so that all of the window changes together; texts go
through tr(), so that they can be translated, and are whole sentences, since no other language has
the order of words that pieces would dictate.
"""

import re
import sys
from pathlib import Path

THEME = "Tarn/ui/theme/"

# Qt::transparent is none.
COLOR = re.compile(
    r'QColor(?:\s+\w+)?\s*[({]\s*(?:u?"|QStringLiteral|QLatin1|[0-9]|Qt::(?!transparent))'
    r'|QColor::from\w+\(|QColorConstants::|"#[0-9a-fA-F]{3,8}"|\b0x[fF]{2}[0-9a-fA-F]{6}\b'
    r'|qRgba?\(|setStyleSheet'
    r'|Qt::(?:black|white|(?:dark|light)?(?:Red|Green|Blue|Gray|Yellow|Cyan|Magenta)'
    r'|red|green|blue|gray|yellow|cyan|magenta)\b')
# A call that sets a length, with a number in it that stands for itself: not 0, which is none, and
# not a factor of a named length.
SETTER = re.compile(
    r'\b(setContentsMargins|setSpacing|addSpacing|setHorizontalSpacing|setVerticalSpacing'
    r'|setFixedSize|setFixedWidth|setFixedHeight|setMinimumWidth|setMinimumHeight'
    r'|setMaximumWidth|setMaximumHeight|setIconSize|QMargins)\(([^;]*)\)')
# A width or height of 1 lets a part become as narrow as its neighbours want.
NUMBER = re.compile(r'(?<![\w.])([2-9]|[1-9]\d+)(?![\w.])(?!\s*\*)')
# Arguments of other calls inside are not lengths.
CALL = re.compile(r'\b\w+(::\w+)*\([^()]*\)')
FONT_SIZE = re.compile(r'\bset(?:Point|Pixel)SizeF?\(\s*[0-9]')

UNTRANSLATED = re.compile(
    r'\b(setText|setToolTip|setTitle|setPlaceholderText|setAccessibleName'
    r'|setAccessibleDescription|setWindowTitle|setStatusTip|addAction|addMenu)'
    r'\(\s*(QStringLiteral\(|QLatin1String\(|u)?"[^"]*[A-Za-z]{2}[^"]*"')
GLUED = re.compile(r'\btr\("[^"]*"\)\s*\+|\+\s*(\w+::)?tr\("')

# Where a line is right all the same: the file, what it contains, and why.
ALLOWED = [
    ("Tarn/ui/thumbnails/ThumbnailCache.cpp", '"Software"', "a key of the file, shown nowhere"),
    ("Tarn/ui/sheets/ConnectServerSheet.cpp", '"smb://', "an address, alike in all languages"),
]


def faults_of(path, text):
    """What is wrong with one file, as (line, sentence) from top to bottom."""
    lines = text.split("\n")
    # A statement may go on in the next line; a comment does not.
    code = "\n".join(line.split("//")[0] for line in lines)
    faults = []

    def find(pattern, sentence, is_fault=lambda match: True):
        for match in pattern.finditer(code):
            number = code.count("\n", 0, match.start()) + 1
            line = lines[number - 1]
            if any(path == file and part in line for file, part, _ in ALLOWED):
                continue
            if is_fault(match):
                faults.append((number, sentence))

    def names_length(setter):
        lengths = setter.group(2)
        while CALL.search(lengths):
            lengths = CALL.sub("x", lengths)
        return NUMBER.search(lengths)

    if not path.startswith(THEME):
        find(COLOR, "names a colour; take it from Colors or the palette")
        find(SETTER, "names a length; take it from Metrics", names_length)
        find(FONT_SIZE, "names a size of text; take it from Fonts")
    find(UNTRANSLATED, "shows a text that cannot be translated; put it into tr()")
    find(GLUED, "glues a sentence together; make it one text with placeholders")
    return sorted(faults)


def check(root):
    """How many files were looked at, and the faults found, as lines."""
    faults = []
    count = 0
    for path in sorted((root / "Tarn").rglob("*")):
        if path.suffix not in {".h", ".cpp"}:
            continue
        count += 1
        name = path.relative_to(root).as_posix()
        faults += [f"{name}:{line}: {fault}"
                   for line, fault in faults_of(name, path.read_text(encoding="utf-8"))]
    return count, faults


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parents[1])
    count, faults = check(root)
    for fault in faults:
        print(fault)
    if count == 0:
        print(f"{root}: no sources of the window found")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
