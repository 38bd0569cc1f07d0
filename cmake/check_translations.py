#!/usr/bin/env python3
"""Checks that every text of the window is translated, and that placeholders agree.

check_translations.py LUPDATE [ROOT]   prints one line per fault; exit status 1 if any.

`cmake --build … --target update-translations` puts new texts into translations/*.ts.
"""

import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PLACEHOLDER = re.compile(r"%(L?\d+|n|Ln)")


def messages(file):
    """The messages of a file of translations, by context, text and comment."""
    found = {}
    for context in ElementTree.parse(file).getroot().findall("context"):
        name = context.findtext("name")
        for message in context.findall("message"):
            key = (name, message.findtext("source"), message.findtext("comment") or "")
            found[key] = message
    return found


def texts_of(message):
    """The forms of one translation."""
    translation = message.find("translation")
    if translation is None:
        return []
    forms = translation.findall("numerusform")
    return [form.text or "" for form in forms] if forms else [translation.text or ""]


def faults_of(key, message):
    """What is wrong with one translation, in sentences."""
    source = key[1]
    translation = message.find("translation")
    if translation is None or translation.get("type") in ("unfinished", "vanished", "obsolete"):
        yield "is not translated"
        return
    forms = texts_of(message)
    if message.get("numerus") == "yes" and len(forms) < 2:
        yield "has no plural"
    wanted = sorted(PLACEHOLDER.findall(source))
    for text in forms:
        if not text.strip() and source.strip():
            yield "has an empty translation"
        elif sorted(PLACEHOLDER.findall(text)) != wanted:
            yield f"has other placeholders in “{text}”"
        if source.endswith("…") != text.endswith("…"):
            yield f"ends with “…” in one of the two: “{text}”"
        if source.strip() and (source[0].isspace(), source[-1].isspace()) != (
                text[:1].isspace(), text[-1:].isspace()):
            yield f"has blanks at other ends in “{text}”"


def check(file, present):
    """All faults of one file, given the messages that the sources have now."""
    faults = []
    translated = messages(file)
    for key in present:
        if key not in translated:
            faults.append(f"{key[0]}: “{key[1]}” is missing")
    for key, message in translated.items():
        if key not in present:
            faults.append(f"{key[0]}: “{key[1]}” is in no source any more")
            continue
        faults += [f"{key[0]}: “{key[1]}” {fault}" for fault in faults_of(key, message)]
    return [f"{file.name}: {fault}" for fault in faults]


def main():
    lupdate = sys.argv[1]
    root = Path(sys.argv[2] if len(sys.argv) > 2 else Path(__file__).resolve().parents[1])
    with tempfile.TemporaryDirectory() as folder:
        fresh = Path(folder) / "fresh.ts"
        subprocess.run([lupdate, "-silent", str(root / "Tarn"), "-I", str(root), "-locations", "none",
                        "-ts", str(fresh)], check=True, stderr=subprocess.DEVNULL)
        present = messages(fresh)
    files = sorted((root / "translations").glob("*.ts"))
    faults = [fault for file in files for fault in check(file, present)]
    for fault in faults:
        print(fault)
    if not files or not present:
        print(f"{root}: nothing to check")
    return 1 if faults or not files or not present else 0


if __name__ == "__main__":
    sys.exit(main())
