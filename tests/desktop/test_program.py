#!/usr/bin/python3
"""The program as a whole: learning, a second start, ends, bad surroundings."""

import json
import os
import shutil
import signal
import subprocess
import time
import unittest

from applications import FirefoxField, Mousepad
from glyma import BINARY, Glyma
from virtual_desktop import ROOT, VirtualDesktop, wait_until


class Program(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop)

    def choose(self, editor, query, downs=0):
        """The text that choosing adds to the end of the editor's text."""
        before = editor.text().rstrip("\n")
        self.desktop.type(":" + query)
        wait_until(self.glyma.is_open, 3, "the picker")
        for _ in range(downs):
            self.desktop.press("Down")
        self.desktop.press("Return")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")

        def inserted():
            text = editor.text().rstrip("\n")
            return text.startswith(before) and len(text) > len(before) and ":" not in text[len(before):] and text
        return wait_until(inserted, 3, "the insertion")[len(before):]

    def test_what_was_chosen_ranks_higher_next_time_also_after_a_restart(self):
        self.glyma.start()
        editor = Mousepad(self.desktop)
        first = self.glyma.search("smile")
        self.assertNotEqual(first[0]["char"], first[2]["char"])
        chosen = self.choose(editor, "smile", downs=2)
        self.assertEqual(chosen, first[2]["char"])
        self.assertEqual(self.choose(editor, "smile"), chosen)
        self.assertEqual(self.glyma.stop(), 0)
        self.glyma.start()
        self.assertEqual(self.choose(editor, "smile"), chosen)
        self.assertEqual(self.glyma.search("smile")[0]["char"], chosen)

    def test_a_second_start_finds_the_first(self):
        self.glyma.start()
        second = subprocess.run([BINARY], env=self.desktop.environment, timeout=10, stdout=subprocess.DEVNULL)
        self.assertEqual(second.returncode, 0)
        self.assertIsNone(self.glyma.process.poll())
        self.desktop.run([BINARY, "quit"])
        self.assertEqual(self.glyma.process.wait(3), 0)

    def test_every_polite_signal_ends_it_cleanly(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number):
                self.glyma.start()
                self.glyma.process.send_signal(number)
                self.assertEqual(self.glyma.process.wait(2), 0)

    def test_a_target_that_closes_while_the_picker_is_open(self):
        self.glyma.start()
        editor = Mousepad(self.desktop)
        self.desktop.type(":smi")
        wait_until(self.glyma.is_open, 3, "the picker")
        editor.process.kill()
        time.sleep(0.5)
        self.desktop.press("Return")
        time.sleep(0.5)
        self.assertIsNone(self.glyma.process.poll())
        self.assertEqual(self.choose(Mousepad(self.desktop), "rocket"), "\U0001f680")

    def test_a_target_that_hangs_does_not_hang_the_program(self):
        self.glyma.start()
        editor = Mousepad(self.desktop)
        editor.process.send_signal(signal.SIGSTOP)
        try:
            self.desktop.type(":smi")
            wait_until(self.glyma.is_open, 3, "the picker")
            self.desktop.press("Escape")
            wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
        finally:
            editor.process.send_signal(signal.SIGCONT)
        wait_until(lambda: editor.text().rstrip("\n") == ":smi", 3, "the typed text")

    def test_damaged_settings_and_store_are_kept_and_replaced(self):
        self.glyma.config.mkdir(parents=True)
        self.glyma.data.mkdir(parents=True)
        (self.glyma.config / "settings.json").write_text("{ this is no JSON")
        (self.glyma.data / "Glyma.store").write_bytes(b"not a database" * 1000)
        self.glyma.start()
        self.assertEqual(self.choose(Mousepad(self.desktop), "rocket"), "\U0001f680")
        damaged = list(self.glyma.data.glob("Glyma.store.*-2*"))
        self.assertEqual([file.read_bytes()[:14] for file in damaged], [b"not a database"])
        kept = list(self.glyma.config.glob("settings.json.damaged-*"))
        self.assertEqual([file.read_text() for file in kept], ["{ this is no JSON"])

    def test_without_a_display_it_says_so(self):
        environment = {name: value for name, value in self.desktop.environment.items() if name != "DISPLAY"}
        result = subprocess.run([BINARY], env=environment, capture_output=True, text=True, timeout=10)
        self.assertEqual(result.returncode, 1)
        self.assertIn("display", result.stderr)

    def test_a_missing_reference_file_is_named(self):
        resources = self.desktop.home / "resources"
        shutil.copytree(ROOT / "resources", resources)
        (resources / "Blocks.txt").unlink()
        environment = {**self.desktop.environment, "GLYMA_RESOURCE_DIR": str(resources)}
        result = subprocess.run([BINARY, "search", "heart"], env=environment, capture_output=True, text=True, timeout=20)
        self.assertEqual(result.returncode, 1)
        self.assertIn("Blocks.txt", result.stderr)

    def test_without_accessibility_it_goes_on_with_keys_and_clipboard(self):
        self.desktop.environment["AT_SPI_BUS_ADDRESS"] = "unix:path=/nonexistent"
        self.glyma.start()
        del self.desktop.environment["AT_SPI_BUS_ADDRESS"]
        self.assertEqual(self.choose(Mousepad(self.desktop), "rocket"), "\U0001f680")

    def test_an_excluded_application_is_left_alone(self):
        self.glyma.write_settings({"excludedApps": [
            {"bundleID": "org.xfce.mousepad", "name": "Mousepad", "isExcluded": True}]})
        self.glyma.start()
        editor = Mousepad(self.desktop)
        self.desktop.type(":smi")
        time.sleep(0.5)
        self.assertFalse(self.glyma.is_open())
        self.assertEqual(editor.text().rstrip("\n"), ":smi")

    def test_a_password_field_is_left_alone(self):
        self.glyma.write_settings({"debug.debugLogsEnabled": True, "excludedApps": []})
        self.glyma.start()
        field = FirefoxField(self.desktop, "password", "x", "x")
        self.desktop.type(":smile")
        wait_until(lambda: field.text() == "x:smile", 3, "the typed text")
        self.assertFalse(self.glyma.is_open())
        self.assertNotIn("[tap]", self.glyma.log.read_text())

    def test_alt_return_inserts_the_text_form_and_opens_no_menu(self):
        self.glyma.start()
        editor = Mousepad(self.desktop)
        self.desktop.type(":red heart")
        wait_until(self.glyma.is_open, 3, "the picker")
        self.desktop.press("alt+Return")
        wait_until(lambda: editor.text().rstrip("\n") == "\u2764", 3, "the text form")
        self.desktop.type("x")
        wait_until(lambda: editor.text().rstrip("\n") == "\u2764x", 3, "a letter after it")


if __name__ == "__main__":
    unittest.main(verbosity=2)
