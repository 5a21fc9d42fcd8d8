#!/usr/bin/python3
"""Secure Input: a terminal's secure keyboard, menus, password fields. Who holds it is named; what is typed is left alone."""

import json
import time
import unittest

from applications import FirefoxField, Mousepad
from glyma import Glyma
from virtual_desktop import VirtualDesktop, wait_until

# Of the program's promise to know within five seconds.
NOTICED = 5
# A program that heard the keys would have shown by then that it did.
HEARD = 0.7


class SecureTerminal:
    """An xterm whose secure keyboard F9 switches."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.file = desktop.home / "typed.txt"
        self.process = desktop.start([
            "xterm", "-title", "glyma-secure", "-xrm", "XTerm*VT100.translations: #override <Key>F9: secure()",
            "-e", "sh", "-c", f"cat > {self.file}"])
        window = wait_until(lambda: desktop.windows("--name", "glyma-secure"), 15, "xterm's window")[-1]
        desktop.run(["xdotool", "windowactivate", "--sync", window])
        wait_until(self.file.exists, 10, "the line reader")
        time.sleep(0.3)

    def toggle(self):
        self.desktop.press("F9")

    def line(self, text):
        """Types a line; returns what the terminal got of it."""
        self.desktop.type(text)
        self.desktop.press("Return")
        wait_until(lambda: self.file.read_text().endswith("\n"), 3, "the line")
        return self.file.read_text()


class SecureInput(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop, {"debug.debugLogsEnabled": True, "excludedApps": []}).start()

    def secure_input(self):
        findings = json.loads(self.glyma.command("doctor", "--json", check=False))
        return {each["name"]: each for each in findings}["Secure Input"]

    def is_off(self):
        return self.secure_input()["state"] == "ok"

    def is_held_by(self, process):
        return f"(process {process})" in self.secure_input()["why"]

    def heard(self):
        return [line for line in self.glyma.log.read_text().splitlines() if "[tap]" in line or "[showPanel]" in line]

    def test_a_secure_keyboard_is_named_and_what_it_hides_is_not_heard(self):
        terminal = SecureTerminal(self.desktop)
        self.assertTrue(self.is_off())
        terminal.toggle()
        wait_until(lambda: self.is_held_by(terminal.process.pid), NOTICED, "xterm to be named")
        # As its desktop entry calls it.
        self.assertIn("held by XTerm", self.secure_input()["why"])
        self.assertEqual(terminal.line(":smile"), ":smile\n")
        time.sleep(HEARD)
        self.assertEqual(self.heard(), [])
        terminal.toggle()
        wait_until(self.is_off, NOTICED, "Secure Input to be off")
        self.desktop.type(":smi")
        wait_until(self.glyma.is_open, 3, "the picker")

    def test_a_secure_keyboard_is_left_alone_from_its_first_key(self):
        terminal = SecureTerminal(self.desktop)
        terminal.toggle()
        self.assertEqual(terminal.line(":smile"), ":smile\n")
        time.sleep(HEARD)
        self.assertEqual(self.heard(), [])

    def test_a_holder_that_is_killed_holds_no_longer(self):
        terminal = SecureTerminal(self.desktop)
        terminal.toggle()
        wait_until(lambda: self.is_held_by(terminal.process.pid), NOTICED, "xterm to be named")
        self.desktop.end(terminal.process)
        wait_until(self.is_off, NOTICED, "Secure Input to be off")

    def test_an_open_menu_is_no_secure_input(self):
        editor = Mousepad(self.desktop)
        self.desktop.press("F10")
        end = time.monotonic() + NOTICED
        while time.monotonic() < end:
            self.assertTrue(self.is_off(), self.secure_input())
            time.sleep(0.2)
        self.desktop.press("Escape")
        self.desktop.type("x:smi")
        wait_until(self.glyma.is_open, 3, "the picker")
        wait_until(lambda: editor.text().rstrip("\n") == "x:smi", 3, "the typed text")

    def test_a_password_field_is_secure_input(self):
        field = FirefoxField(self.desktop, "password", "x", "x")
        before = len(self.heard())
        self.desktop.type(":smile")
        wait_until(lambda: field.text() == "x:smile", 3, "the typed text")
        time.sleep(HEARD)
        self.assertEqual(self.heard()[before:], [])
        wait_until(lambda: self.is_held_by(field.process.pid), NOTICED, "Firefox to be named")
        Mousepad(self.desktop)
        wait_until(self.is_off, NOTICED, "Secure Input to be off")


if __name__ == "__main__":
    unittest.main(verbosity=2)
