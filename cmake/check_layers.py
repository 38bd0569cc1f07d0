#!/usr/bin/env python3
"""Checks every #include of the tree against the layers drawn in docs/architecture.md.

check_layers.py [ROOT]   prints one line per include that goes up or sideways; exit status 1 if any.

A new arrow is an edit to the table below, made on purpose, with a note in docs/decisions/.
"""

import re
import sys
from pathlib import Path

# folder: the folders its arrows point at. What those reach may be included too, and nothing else.
ARROWS = {
    "TarnCore/base": [],
    "TarnCore/platform": ["TarnCore/base"],
    "TarnCore/platform/linux": ["TarnCore/platform"],
    "TarnCore/platform/memory": ["TarnCore/platform"],
    "TarnCore/files": ["TarnCore/platform"],
    "TarnCore/index": ["TarnCore/files"],
    "TarnCore/index/readers": ["TarnCore/index", "TarnCore/preview"],
    "TarnCore/sources": ["TarnCore/files"],
    "TarnCore/search": ["TarnCore/index", "TarnCore/sources"],
    "TarnCore/imagesearch": ["TarnCore/search"],
    "TarnCore/preview": ["TarnCore/index"],
    "TarnCore/ops": ["TarnCore/files"],
    "TarnCore/rename": ["TarnCore/ops", "TarnCore/index"],
    "TarnCore/tags": ["TarnCore/ops"],
    "TarnCore/archive": ["TarnCore/ops"],
    "TarnCore/duplicates": ["TarnCore/files"],
    "TarnCore/cleanup": ["TarnCore/duplicates", "TarnCore/ops"],
    "TarnCore/storage": ["TarnCore/files"],
    "Tarn/model/records": ["TarnCore"],
    "Tarn/model": ["Tarn/model/records", "Tarn/commands"],  # with commands one layer
    "Tarn/commands": ["Tarn/model"],
    "Tarn/ui": ["Tarn/commands"],
    "Tarn": ["Tarn/ui"],  # main.cpp of the window
    "cli": ["TarnCore", "Tarn/model/records"],
    "extract": ["TarnCore", "TarnCore/index/readers"],
}
# The core as a whole, for the layers above it: all but the implementations of the platform.
CORE = [folder for folder in ARROWS if re.fullmatch(r"TarnCore/\w+", folder)]
IMPLEMENTATIONS = ["TarnCore/platform/linux", "TarnCore/platform/memory"]

# Who puts the services together, and so may name an implementation (beside tests and benchmarks).
COMPOSERS = re.compile(r"(cli|extract|Tarn)/(\w+/)*main\.cpp")

QT = re.compile(r"(Qt\w+/.*|Q[A-Z]\w*|Qt\w*|qt?[a-z]*global\.h|q[a-z]+\.h)")
QT_FOLDERS = {"Tarn/ui": "any", "Tarn": "any", "Tarn/model": "core", "Tarn/commands": "core",
              "Tarn/model/records": "none"}
# What models and commands use of Qt, all of it in Qt Core.
QT_CORE = {
    "QAbstractEventDispatcher", "QAbstractItemModel", "QAbstractListModel", "QAbstractTableModel",
    "QAtomicInt", "QByteArray",
    "QCollator", "QCoreApplication", "QCryptographicHash", "QDate", "QDateTime", "QDebug", "QDir",
    "QElapsedTimer", "QEvent", "QEventLoop", "QFile", "QFileInfo", "QHash", "QIODevice",
    "QItemSelectionModel", "QJsonArray", "QJsonDocument", "QJsonObject", "QJsonValue", "QList",
    "QLocale", "QMap", "QMetaEnum", "QMetaObject", "QMetaType", "QMimeData", "QModelIndex",
    "QObject", "QPersistentModelIndex", "QPoint", "QPointer", "QProcess", "QRect", "QScopeGuard",
    "QSet", "QSettings", "QSignalBlocker", "QSize", "QSocketNotifier", "QSortFilterProxyModel",
    "QStandardPaths", "QString", "QStringList", "QStringView", "QTemporaryDir", "QThread", "QTimer", "QTimeZone",
    "QTranslator", "QUrl", "QUuid", "QVariant", "QVariantMap", "QVector", "QtCore", "QtGlobal"}

# Slow to compile or greedy with names; our headers hide them, sources include them.
HEAVY = re.compile(r"(nlohmann/json\.hpp|CLI/.*|spdlog/.*|fmt/.*|unicode/.*|glib.*|gio/.*|exiv2/.*|vips/.*|sqlite3\.h|libxml/.*|tesseract/.*|leptonica/.*|poppler.*|windows\.h)")
# Headers whose very purpose is to meet that library, included by sources only.
MEETS_LIBRARY = {"TarnCore/base/ICU.h", "TarnCore/base/JSONFields.h",
                 "TarnCore/rename/NameText.h"}
# Lists of precompiled headers, one per layer; the compiler reads them, no source does.
PREFIX = re.compile(r".*Prefix\.h")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SOURCES = {".h", ".cpp"}
TREES = ["TarnCore", "Tarn", "cli", "extract", "tests", "bench"]


def reach(folder):
    """Everything that `folder` may include, itself among it."""
    found, waiting = set(), [folder]
    while waiting:
        one = waiting.pop()
        for target in CORE if one == "TarnCore" else [one]:
            if target not in found:
                found.add(target)
                waiting.extend(ARROWS.get(target, []))
    return found


def layer(path):
    """The longest folder of the table that `path` lies in; None when there is none."""
    folders = [folder for folder in ARROWS if path.startswith(folder + "/")]
    return max(folders, key=len, default=None)


def allowed_folders(path):
    """The folders that a file may include from, or a sentence that says why it has none."""
    top, _, rest = path.partition("/")
    if top in ("tests", "bench"):
        everything = set(ARROWS) | {"tests/support", "bench"}
        area = rest.partition("/")[0] if "/" in rest else ""
        mirrored = {"model": "Tarn/model", "commands": "Tarn/commands", "ui": "Tarn/ui",
                    "cli": "cli"}.get(area, f"TarnCore/{area}")
        if mirrored not in ARROWS:  # tests/support, tests/fuzz, bench itself
            return everything | {f"tests/{area}"}
        # A test may build on everything below what it tests, on real services and on fakes.
        below = reach(mirrored) | {one for one in ARROWS if one.startswith(mirrored + "/")}
        return below | set(IMPLEMENTATIONS) | {"tests/support", f"tests/{area}", "bench"}
    own = layer(path)
    if own is None and PREFIX.fullmatch(path):
        return set()
    if own is None:
        return f"{path}: this folder has no place in the layers; give it one in cmake/check_layers.py"
    folders = reach(own)
    if COMPOSERS.fullmatch(path):
        folders |= {"TarnCore/platform/linux"}
    return folders


def folder_of(include):
    if include.startswith("tests/"):
        return "/".join(include.split("/")[:2])
    if include.startswith("bench/"):
        return "bench"
    return layer(include)


def qt_rule(path):
    top = path.partition("/")[0]
    if top in ("tests", "bench"):
        area = path.split("/")[1]
        return "any" if area in ("ui", "model", "commands", "support") else "none"
    return QT_FOLDERS.get(layer(path), "none")


def check_line(root, path, mark, include, folders):
    """A sentence about one #include, or None."""
    if mark == "<":
        if QT.fullmatch(include):
            rule = qt_rule(path)
            if rule == "none":
                return f"<{include}> is Qt, and {path.rpartition('/')[0]} is Qt-free"
            if rule == "core" and include.rpartition("/")[2] not in QT_CORE:
                return f"<{include}> is not known to be in Qt Core, all that this layer uses of Qt"
        may_be_heavy = path.endswith(".cpp") or path in MEETS_LIBRARY or PREFIX.fullmatch(path)
        if HEAVY.fullmatch(include) and not may_be_heavy:
            return f"<{include}> is heavy; include it in sources only"
        return None
    if HEAVY.fullmatch(include) or QT.fullmatch(include):
        return check_line(root, path, "<", include, folders)
    if include.endswith(".moc") or (PREFIX.fullmatch(path) and PREFIX.fullmatch(include)):
        return None
    if path.endswith(".h") and include in MEETS_LIBRARY:
        return f"“{include}” is heavy; include it in sources only"
    if not (root / include).is_file():
        generated = (root / path).parent / include
        if generated.is_file():
            return f"“{include}” must be written from the root of the project"
        return None if "/" not in include else f"“{include}” does not exist"
    target = folder_of(include)
    if target in folders:
        return None
    own = path.rpartition("/")[0]
    return f"“{include}”: {own} may not include from {target}"


def check(root):
    """The number of sources below `root`, and a line for each fault in them."""
    faults, files = [], 0
    for tree in TREES:
        for file in sorted((root / tree).rglob("*")):
            if file.suffix not in SOURCES:
                continue
            files += 1
            path = file.relative_to(root).as_posix()
            folders = allowed_folders(path)
            if isinstance(folders, str):
                faults.append(folders)
                continue
            for number, line in enumerate(file.read_text(errors="replace").splitlines(), 1):
                found = INCLUDE.match(line)
                if found:
                    fault = check_line(root, path, found[1], found[2], folders)
                    if fault:
                        faults.append(f"{path}:{number}: {fault}")
    return files, faults


def main():
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent)
    files, faults = check(root)
    for fault in faults:
        print(fault)
    print(f"{files} files, {len(faults)} includes that leave their layer.")
    return 1 if faults or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
