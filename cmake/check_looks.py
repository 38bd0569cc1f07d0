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

COLOR = re.compile(
    r'QColor\s*[({]\s*["0-9]|#[0-9a-fA-F]{6}\b|qRgba?\(|setStyleSheet'
    r'|Qt::(black|white|red|green|blue|gray|darkGray|lightGray|yellow|cyan|magenta)\b')
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

UNTRANSLATED = re.compile(
    r'\b(setText|setToolTip|setTitle|setPlaceholderText|setAccessibleName'
    r'|setAccessibleDescription|setWindowTitle|setStatusTip|addAction|addMenu)'
    r'\((QStringLiteral\(|QLatin1String\(|u)?"[^"]*[A-Za-z]{2}[^"]*"')
GLUED = re.compile(r'\btr\("[^"]*"\)\s*\+|\+\s*(\w+::)?tr\("')

# Where a line is right all the same: the file, what it contains, and why.
ALLOWED = [
    ("Tarn/ui/thumbnails/ThumbnailCache.cpp", '"Software"', "a key of the file, shown nowhere"),
]


def faults_of(path, text):
    """What is wrong with each line of one file, as (line, sentence)."""
    for number, line in enumerate(text.split("\n"), 1):
        code = line.split("//")[0]
        if any(path == file and part in line for file, part, _ in ALLOWED):
            continue
        if not path.startswith(THEME):
            if COLOR.search(code):
                yield number, "names a colour; take it from Colors or the palette"
            for setter in SETTER.finditer(code):
                lengths = setter.group(2)
                while CALL.search(lengths):
                    lengths = CALL.sub("x", lengths)
                if NUMBER.search(lengths):
                    yield number, "names a length; take it from Metrics"
        if UNTRANSLATED.search(code):
            yield number, "shows a text that cannot be translated; put it into tr()"
        if GLUED.search(code):
            yield number, "glues a sentence together; make it one text with placeholders"


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
