"""What cmake/check_layers.py lets pass and what it does not, on small trees made for the purpose."""

import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "cmake"))
import check_layers

HEADERS = ["TarnCore/base/URL.h", "TarnCore/files/FileItem.h", "TarnCore/search/SearchTask.h",
           "TarnCore/platform/Platform.h", "TarnCore/platform/linux/LinuxPlatform.h",
           "TarnCore/ops/FileOps.h", "Tarn/model/records/Location.h", "Tarn/model/PaneModel.h",
           "Tarn/ui/pane/PaneView.h", "tests/support/TestFolder.h", "bench/Bench.h",
           "TarnCore/base/ICU.h"]


def check(path, include):
    """The faults of a tree in which `path` has that one #include."""
    with tempfile.TemporaryDirectory() as folder:
        for header in HEADERS + [path]:
            file = Path(folder) / header
            file.parent.mkdir(parents=True, exist_ok=True)
            file.touch()
        (Path(folder) / path).write_text(f"#include {include}\n")
        return check_layers.check(Path(folder))[1]


class CheckLayers(unittest.TestCase):
    def test_arrows_are_followed_downwards_only(self):
        rows = [
            ("TarnCore/files/Format.cpp", '"TarnCore/base/URL.h"', True),
            ("TarnCore/base/Text.cpp", '"TarnCore/files/FileItem.h"', False),
            ("TarnCore/search/QueryMatcher.cpp", '"TarnCore/files/FileItem.h"', True),
            ("TarnCore/files/Format.cpp", '"TarnCore/search/SearchTask.h"', False),
            ("TarnCore/search/QueryMatcher.cpp", '"TarnCore/ops/FileOps.h"', False),  # sideways
            ("TarnCore/files/Format.cpp", '"TarnCore/platform/linux/LinuxPlatform.h"', False),
            ("Tarn/model/PaneItems.cpp", '"TarnCore/search/SearchTask.h"', True),
            ("Tarn/model/PaneItems.cpp", '"Tarn/ui/pane/PaneView.h"', False),
            ("Tarn/ui/pane/PaneBar.cpp", '"Tarn/model/PaneModel.h"', True),
            ("cli/commands/ListCommand.cpp", '"Tarn/model/records/Location.h"', True),
            ("cli/commands/ListCommand.cpp", '"Tarn/model/PaneModel.h"', False),
        ]
        self.verify(rows)

    def test_only_programs_and_tests_name_an_implementation(self):
        linux = '"TarnCore/platform/linux/LinuxPlatform.h"'
        rows = [
            ("cli/main.cpp", linux, True),
            ("Tarn/main.cpp", linux, True),
            ("cli/Output.cpp", linux, False),
            ("Tarn/model/AppModel.cpp", linux, False),
            ("tests/files/FormatTests.cpp", linux, True),
        ]
        self.verify(rows)

    def test_qt_stays_above_the_core_and_widgets_above_the_models(self):
        rows = [
            ("TarnCore/base/Text.cpp", "<QString>", False),
            ("TarnCore/base/Text.cpp", "<string>", True),
            ("cli/Output.cpp", "<QtCore/QString>", False),
            ("Tarn/model/records/Favorite.h", "<QString>", False),
            ("Tarn/model/PaneItems.h", "<QAbstractListModel>", True),
            ("Tarn/model/PaneItems.h", "<QWidget>", False),
            ("Tarn/ui/pane/PaneBar.h", "<QWidget>", True),
            ("tests/search/QueryParserTests.cpp", "<QString>", False),
            ("tests/ui/PaneTests.cpp", "<QTest>", True),
        ]
        self.verify(rows)

    def test_tests_and_benchmarks_mirror_the_layers(self):
        rows = [
            ("tests/base/URLTests.cpp", '"tests/support/TestFolder.h"', True),
            ("tests/base/URLTests.cpp", '"TarnCore/search/SearchTask.h"', False),
            ("bench/search/WalkBench.cpp", '"bench/Bench.h"', True),
            ("bench/base/TextBench.cpp", '"Tarn/ui/pane/PaneView.h"', False),
        ]
        self.verify(rows)

    def test_heavy_headers_stay_out_of_ours(self):
        rows = [
            ("TarnCore/files/Format.cpp", "<nlohmann/json.hpp>", True),
            ("TarnCore/files/Format.h", "<nlohmann/json.hpp>", False),
            ("TarnCore/files/Format.h", "<nlohmann/json_fwd.hpp>", True),
            ("TarnCore/files/Format.h", '"TarnCore/base/ICU.h"', False),
        ]
        self.verify(rows)

    def test_unknown_folders_and_relative_includes_are_named(self):
        rows = [
            ("TarnCore/misc/Things.h", "<string>", False),
            ("TarnCore/base/Text.cpp", '"URL.h"', False),
            ("TarnCore/base/Text.cpp", '"TarnCore/base/Gone.h"', False),
        ]
        self.verify(rows)

    def verify(self, rows):
        for path, include, passes in rows:
            with self.subTest(path=path, include=include):
                faults = check(path, include)
                self.assertEqual(len(faults), 0 if passes else 1, faults)
                if not passes:
                    self.assertTrue(faults[0].startswith(path), faults)


if __name__ == "__main__":
    unittest.main()
