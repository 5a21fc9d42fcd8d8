#!/usr/bin/python3
"""Every end of the program: within a second, nothing of the user's lost, nothing left behind, and a reason given."""

import json
import os
import signal
import sqlite3
import time
import unittest

from applications import Mousepad
from glyma import BINARY, Glyma
from preferences_window import PreferencesWindow
from test_keys import Recorder
from virtual_desktop import VirtualDesktop, wait_until

IN_TIME = 1.0
COPIED = "what the user has copied"
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)


def idle(desktop, glyma):
    """Nothing to do, but a question waits for its answer."""
    window = PreferencesWindow(desktop, glyma).open("advanced")
    window.press("Delete App Container and Quit…")
    window.get("push button", "Delete and Quit")


def picker(desktop, glyma):
    desktop.type(":smile")
    wait_until(glyma.is_open, 3, "the picker")


def insertion(desktop, glyma):
    """One that does not end: the recorder, which tells accessibility nothing, never asks for what it is to paste."""
    picker(desktop, glyma)
    desktop.press("Return")
    wait_until(lambda: "sending Cmd+V" in glyma.log.read_text(), 3, "the paste")


class Ends(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.display, self.bus = self.desktop.processes[:2]

    def start(self, state):
        self.desktop.set_clipboard(COPIED)
        self.glyma = Glyma(self.desktop)
        self.glyma.write_settings({"debug.debugLogsEnabled": True, "excludedApps": []})
        self.glyma.log.write_text("")
        self.glyma.start()
        with sqlite3.connect(self.glyma.data / "Glyma.store") as store:
            self.characters = store.execute("SELECT count(*) FROM UnicodeChar").fetchone()
        self.recorder = Recorder(self.desktop)
        state(self.desktop, self.glyma)

    def end(self, act, status):
        began = time.monotonic()
        act()
        self.assertEqual(self.glyma.process.wait(5), status)
        self.assertLess(time.monotonic() - began, IN_TIME)
        self.check_what_is_on_disk()

    def check_what_is_on_disk(self):
        self.assertIs(json.loads((self.glyma.config / "settings.json").read_text())["debug.debugLogsEnabled"], True)
        self.assertEqual([file.name for file in self.glyma.config.iterdir()], ["settings.json"])
        with sqlite3.connect(self.glyma.data / "Glyma.store") as store:
            self.assertEqual(store.execute("PRAGMA integrity_check").fetchone(), ("ok",))
            self.assertEqual(store.execute("SELECT count(*) FROM UnicodeChar").fetchone(), self.characters)
        self.assertEqual(list(self.desktop.home.glob("**/core*")), [])

    def check_the_desktop(self):
        """The keys are the application's and the clipboard is the user's."""
        self.recorder.lines.clear()
        self.desktop.press("Down", "Return", "Escape", "a")
        wait_until(lambda: "a" in self.recorder.pressed(), 2, "the keys")
        self.assertEqual(self.recorder.pressed(), ["Down", "Return", "Escape", "a"])
        self.assertEqual(self.recorder.focus_changes(), [])
        # Keys that were pressed for the user are up again.
        self.assertNotIn("state=", " ".join(line for line in self.recorder.lines if not line.startswith("focus")
                                            and "state=0" not in line))
        self.assertEqual(self.desktop.clipboard(), COPIED)

    def keepers(self):
        found = []
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{process}/cmdline", "rb") as line, open(f"/proc/{process}/environ", "rb") as environment:
                    if (line.read() == f"{BINARY}\0keep-clipboard\0".encode()
                            and f"HOME={self.desktop.home}".encode() in environment.read().split(b"\0")):
                        found.append(process)
            except OSError:
                pass
        return found

    def check_signals(self, state):
        for number in SIGNALS:
            with self.subTest(signal=number):
                self.start(state)
                self.end(lambda: self.glyma.process.send_signal(number), 0)
                self.check_the_desktop()
                self.recorder.process.kill()

    def test_signals_while_idle(self):
        self.check_signals(idle)

    def test_signals_while_the_picker_is_open(self):
        self.check_signals(picker)

    def test_signals_during_an_insertion(self):
        self.check_signals(insertion)
        # What the program had on the clipboard is kept until something else is.
        self.assertEqual(len(self.keepers()), 1)
        self.desktop.set_clipboard("the next")
        wait_until(lambda: not self.keepers(), 3, "the keeper to end")
        self.assertEqual(self.desktop.clipboard(), "the next")

    def check_loss_of_the_bus(self, state):
        self.start(state)
        self.end(self.bus.kill, 1)
        self.assertIn("the session bus is gone", self.glyma.log.read_text())
        self.check_the_desktop()

    def test_the_session_bus_is_lost_while_idle(self):
        self.check_loss_of_the_bus(idle)

    def test_the_session_bus_is_lost_while_the_picker_is_open(self):
        self.check_loss_of_the_bus(picker)

    def test_the_session_bus_is_lost_during_an_insertion(self):
        self.check_loss_of_the_bus(insertion)

    def check_loss_of_the_server(self, state):
        self.start(state)
        self.end(self.display.kill, 1)
        self.assertIn("the X server is gone", self.glyma.log.read_text())
        self.assertEqual(self.keepers(), [])

    def test_the_server_is_lost_while_idle(self):
        self.check_loss_of_the_server(idle)

    def test_the_server_is_lost_while_the_picker_is_open(self):
        self.check_loss_of_the_server(picker)

    def test_the_server_is_lost_during_an_insertion(self):
        self.check_loss_of_the_server(insertion)

    def test_an_insertion_under_way_is_brought_to_its_end(self):
        self.start(lambda *_: None)
        editor = Mousepad(self.desktop)
        self.desktop.type("x:rocket")
        wait_until(self.glyma.is_open, 3, "the picker")
        self.desktop.press("Return", "y", delay=2)
        wait_until(lambda: "insert: deleteCharsBefore" in self.glyma.log.read_text(), 2, "the choice", interval=0.001)
        self.end(lambda: self.glyma.process.send_signal(signal.SIGTERM), 0)
        wait_until(lambda: editor.text().rstrip("\n") == "x\U0001f680y", 3, "the text")
        self.desktop.type("z")
        wait_until(lambda: editor.text().rstrip("\n") == "x\U0001f680yz", 3, "the next letter")


if __name__ == "__main__":
    unittest.main(verbosity=2)
