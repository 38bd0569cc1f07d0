"""What cmake/check_translations.py lets pass and what it does not, on single messages."""

import sys
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "cmake"))
import check_translations


def faults(source, translation):
    message = ElementTree.fromstring(
        f"<message><source>{source}</source>{translation}</message>")
    return list(check_translations.faults_of(("Context", source, ""), message))


class CheckTranslations(unittest.TestCase):
    def test_texts_are_whole(self):
        rows = [
            ("Open", "<translation>Öffnen</translation>", True),
            ("Open", '<translation type="unfinished">Öffnen</translation>', False),
            ("Open", "<translation></translation>", False),
            ("Copy %1 to %2", "<translation>%1 nach %2 kopieren</translation>", True),
            ("Copy %1 to %2", "<translation>Nach %2 wird %1 kopiert</translation>", True),
            ("Copy %1 to %2", "<translation>%1 kopieren</translation>", False),
            ("Copy %1", "<translation>%2 kopieren</translation>", False),
            ("Open…", "<translation>Öffnen</translation>", False),
            ("with text ", "<translation>mit Text</translation>", False),
        ]
        for source, translation, passes in rows:
            with self.subTest(source=source, translation=translation):
                self.assertEqual(not faults(source, translation), passes)

    def test_plurals_have_their_forms(self):
        def numerus(*forms):
            inner = "".join(f"<numerusform>{form}</numerusform>" for form in forms)
            message = ElementTree.fromstring(
                f'<message numerus="yes"><source>%1 items</source>'
                f"<translation>{inner}</translation></message>")
            return list(check_translations.faults_of(("Context", "%1 items", ""), message))

        self.assertEqual(numerus("%1 Objekt", "%1 Objekte"), [])
        self.assertNotEqual(numerus("%1 Objekte"), [])
        self.assertNotEqual(numerus("%1 Objekt", "Objekte"), [])


if __name__ == "__main__":
    unittest.main()
