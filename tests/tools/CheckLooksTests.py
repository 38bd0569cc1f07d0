"""What cmake/check_looks.py lets pass and what it does not."""

import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "cmake"))
import check_looks

VIEW = "Tarn/ui/pane/PaneView.cpp"
THEME = "Tarn/ui/theme/Colors.cpp"


class CheckLooks(unittest.TestCase):
    def verify(self, rows):
        for path, line, passes in rows:
            with self.subTest(path=path, line=line):
                self.assertEqual(not list(check_looks.faults_of(path, line)), passes)

    def test_colours_and_lengths_are_the_themes(self):
        self.verify([
            (VIEW, "painter.setPen(QColor(200, 30, 30));", False),
            (VIEW, 'painter.setPen(QColor("#aa0000"));', False),
            (VIEW, 'painter.setPen(QColor(QStringLiteral("teal")));', False),
            (VIEW, "painter.fillRect(rect, Qt::red);", False),
            (VIEW, "painter.fillRect(rect, Qt::darkGray);", False),
            (VIEW, "const QColor ground(245, 246, 247);", False),
            (VIEW, 'const QColor ground{u"teal"};', False),
            (VIEW, "painter.setPen(QColor::fromRgb(200, 30, 30));", False),
            (VIEW, "painter.setPen(QColorConstants::Red);", False),
            (VIEW, "image.fill(0xff000000);", False),
            (VIEW, "image.fill(Qt::transparent);", True),
            (VIEW, "QColor ground = colors.text;", True),
            (VIEW, 'setStyleSheet("color: red");', False),
            (VIEW, "painter.setPen(Colors::current().danger);", True),
            (THEME, "colors.danger = QColor(200, 30, 30);", True),
            (VIEW, "row->setContentsMargins(0, 8, 0, 0);", False),
            (VIEW, "row->setSpacing(5);", False),
            (VIEW, "row->setContentsMargins(\n    0, 0,\n    8, 0);", False),
            (VIEW, "row->setContentsMargins(\n    Metrics::space8, 0,\n    0, 0);", True),
            (VIEW, "font.setPointSizeF(14);", False),
            (VIEW, "font.setPointSizeF(body.pointSizeF());", True),
            (VIEW, "row->setContentsMargins(0, Metrics::space8, 0, 0);", True),
            (VIEW, "box->setFixedHeight(2 * Metrics::space24);", True),
            (VIEW, "label->setMinimumWidth(1);", True),
            (VIEW, 'label->setMinimumWidth(Fonts::textWidth(font(), tr("%1").arg(1600)));', True),
        ])

    def test_texts_are_translated_whole(self):
        self.verify([
            (VIEW, 'button->setText(QStringLiteral("Copy"));', False),
            (VIEW, 'button->setToolTip("Copy all");', False),
            (VIEW, 'button->setText(tr("Copy"));', True),
            (VIEW, 'label->setText(QStringLiteral(" · "));', True),
            (VIEW, 'text += name + tr(" was copied");', False),
            (VIEW, 'text = tr("Copied ") + name;', False),
            (VIEW, 'text = tr("Copied %1").arg(name);', True),
        ])


if __name__ == "__main__":
    unittest.main()
