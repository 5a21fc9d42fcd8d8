#!/usr/bin/python3
"""Which keys reach the application: all of them but those that drive the open picker, in the same order."""

import re
import subprocess
import threading
import time
import unittest

from glyma import BINARY, Glyma
from virtual_desktop import VirtualDesktop, wait_until

RECORDER = BINARY.parent / "key_recorder"


class Recorder:
    """A window that prints the key and focus events it gets, as an application would."""

    def __init__(self, desktop):
        self.lines = []
        self.process = desktop.start([RECORDER], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        threading.Thread(target=self._read, daemon=True).start()
        wait_until(lambda: any(line.startswith("ready") for line in self.lines), 10, "the recorder")
        self.lines.clear()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.strip())

    def pressed(self):
        return [re.search(r"keysym=(\S+)", line)[1] for line in self.lines if line.startswith("press ")]

    def focus_changes(self):
        """Those that an application notices: a grab's own come with another mode."""
        return [line for line in self.lines if line.startswith("focus") and "mode=normal" in line]


class Keys(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = VirtualDesktop().__enter__()
        cls.glyma = Glyma(cls.desktop, {"excludedApps": []}).start()
        cls.recorder = Recorder(cls.desktop)

    @classmethod
    def tearDownClass(cls):
        cls.desktop.__exit__(None, None, None)

    def setUp(self):
        self.desktop.press("Escape")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to be closed")
        time.sleep(0.8)
        self.recorder.lines.clear()

    def open_picker(self, query="smi"):
        self.desktop.type(":" + query)
        wait_until(self.glyma.is_open, 3, "the picker")
        wait_until(lambda: len(self.letters()) >= len(query), 2, "the letters")

    def letters(self):
        # NoSymbol is the harmless key that keeps an application from opening its menu on a bare Alt.
        modifiers = ("Shift_L", "Shift_R", "Alt_L", "Control_L", "Super_L", "Meta_L", "Caps_Lock", "Num_Lock", "ISO_Level3_Shift",
                     "NoSymbol")
        return [key for key in self.recorder.pressed() if key not in modifiers]

    def test_typing_reaches_the_application_and_navigation_does_not(self):
        self.open_picker()
        self.desktop.press("Down", "Down", "Up", "Tab", "Next", "x", "Down", "BackSpace", "Escape")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
        self.desktop.press("z")
        wait_until(lambda: "z" in self.letters(), 2, "z")
        self.assertEqual(self.letters(), ["colon", "s", "m", "i", "Tab", "Next", "x", "BackSpace", "z"])

    def test_navigation_is_consumed_with_every_lock_and_level(self):
        for held in ([], ["shift"], ["alt"], ["shift", "alt"], ["ISO_Level3_Shift"]):
            for lock in (None, "Caps_Lock", "Num_Lock"):
                with self.subTest(held=held, lock=lock):
                    self.setUp()
                    self.open_picker()
                    if lock:
                        self.desktop.press(lock)
                    # Openbox keeps Shift+Alt with an arrow for itself: neither the application nor we get it.
                    for key in ("Escape",) if held == ["shift", "alt"] else ("Down", "Up", "Escape"):
                        self.desktop.press("+".join([*held, key]))
                    wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
                    if lock:
                        self.desktop.press(lock)
                    self.assertEqual(self.letters(), ["colon", "s", "m", "i"])

    def test_control_chords_pass(self):
        self.open_picker()
        self.desktop.press("ctrl+Down")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
        self.assertEqual(self.letters(), ["colon", "s", "m", "i", "Down"])

    def test_return_and_keypad_enter_choose(self):
        for key in ("Return", "KP_Enter"):
            with self.subTest(key=key):
                self.setUp()
                self.open_picker()
                self.desktop.press(key)
                wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
                wait_until(lambda: "v" in self.letters(), 3, "the paste")
                self.assertNotIn("Return", self.letters())
                self.assertNotIn("KP_Enter", self.letters())
                self.assertEqual(self.letters().count("BackSpace"), 4)

    def test_return_with_nothing_found_is_consumed(self):
        self.open_picker("qqqzzzxx")
        self.desktop.press("Return")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
        self.desktop.press("z")
        wait_until(lambda: self.letters()[-1:] == ["z"], 2, "z")
        self.assertNotIn("Return", self.letters())

    def test_with_the_picker_closed_nothing_is_consumed(self):
        keys = ["Up", "Down", "Return", "KP_Enter", "Escape", "Home", "End", "Left", "Right", "colon", "space", "a"]
        self.desktop.press(*keys)
        wait_until(lambda: len(self.letters()) >= len(keys), 3, "the keys")
        self.assertEqual(self.letters(), keys)

    def test_the_application_keeps_the_focus(self):
        self.open_picker()
        self.desktop.press("Down", "Escape")
        wait_until(lambda: not self.glyma.is_open(), 3, "the picker to close")
        self.assertEqual(self.recorder.focus_changes(), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
