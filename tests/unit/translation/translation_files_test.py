#!/usr/bin/python3
"""The translations are complete, made of the texts that the sources have now, and keep what is put into them."""

import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
FILES = sorted((ROOT / "resources/translations").glob("*.ts"))


def messages(file):
    for context in xml.parse(file).getroot().iter("context"):
        for message in context.iter("message"):
            yield context.findtext("name"), message


class TranslationFiles(unittest.TestCase):
    def test_they_have_exactly_the_texts_of_the_sources(self):
        with tempfile.TemporaryDirectory() as folder:
            for file in FILES:
                shutil.copy(file, folder)
            subprocess.run([ROOT / "tools/update-translations.sh", folder], check=True)
            for file in FILES:
                self.assertEqual(file.read_text(), (Path(folder) / file.name).read_text(),
                                 f"{file.name}: run tools/update-translations.sh and translate what is new")

    def test_every_text_is_translated(self):
        for file in FILES:
            for context, message in messages(file):
                translation = message.find("translation")
                with self.subTest(file=file.name, source=message.findtext("source")):
                    self.assertIsNone(translation.get("type"))
                    forms = [form.text for form in translation.iter("numerusform")] or [translation.text]
                    self.assertTrue(all(forms))
                    # Of a class whose texts would not be found under this name when the program runs.
                    self.assertRegex(context, "^glyma::")

    def test_what_is_put_into_a_text_and_what_it_ends_with_stay(self):
        def kept(text):
            return {"places": sorted(re.findall(r"%(?:\d|n)", text)),
                    "markup": sorted(re.findall(r"</?\w+>", text)),
                    "mnemonics": len(re.findall(r"&\w", text)),
                    "spaces": (text[:1].isspace(), text[-1:].isspace()),
                    "ending": text.rstrip()[-1] in "….:" and text.rstrip()[-1],
                    "commands": sorted(re.findall(r"[\w-]+\.(?:txt|json|com)\b|\b[a-z]+(?:-[a-z0-9]+){2,}|\w+=\S+\w", text))}
        for file in FILES:
            for _, message in messages(file):
                source = message.findtext("source")
                with self.subTest(file=file.name, source=source):
                    self.assertEqual(kept(source), kept(message.findtext("translation")))


if __name__ == "__main__":
    unittest.main()
