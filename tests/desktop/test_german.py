#!/usr/bin/python3
"""The program in a German session: its windows speak German, what it prints and logs stays English."""

import unittest

from glyma import Glyma
from preferences_window import PATIENCE, PreferencesWindow
from virtual_desktop import VirtualDesktop, wait_until


class German(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop)

    def start(self, **language):
        for name in ("LANGUAGE", "LC_ALL", "LC_MESSAGES"):
            self.desktop.environment.pop(name, None)
        self.desktop.environment.update(language)
        self.glyma.start()
        self.window = PreferencesWindow(self.desktop, self.glyma)
        self.glyma.command("preferences", "permissions")
        wait_until(lambda: self.names(), PATIENCE, "the preferences")

    def names(self):
        return [name for name in (element.get_name() for element in self.window.elements()) if name]

    def test_the_windows_are_german_and_the_doctor_is_not(self):
        self.start(LANG="de_DE.UTF-8")
        for name in ("Glyma-Einstellungen", "Berechtigungen", "Barrierefreiheit",
                     f"Tasten werden auf {self.desktop.environment['DISPLAY']} gehört"):
            wait_until(lambda: name in self.names(), PATIENCE, f"{name} among {self.names()}")
        self.assertIn("keys are heard on", self.glyma.command("doctor", check=False))

    def test_a_user_who_prefers_english_reads_english(self):
        self.start(LANG="de_DE.UTF-8", LANGUAGE="en:de")
        wait_until(lambda: "Accessibility" in self.names(), PATIENCE, f"Accessibility among {self.names()}")


if __name__ == "__main__":
    unittest.main()
