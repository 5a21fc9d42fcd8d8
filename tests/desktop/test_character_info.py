#!/usr/bin/python3
"""What is this character? The shortcut over a selection in real applications, the panel, the bus and the command."""

import json
import subprocess
import time
import unittest

from applications import FirefoxField, GnomeTextEditor, Mousepad, XTerm
from glyma import BINARY, Glyma
from preferences_window import PreferencesWindow
from virtual_desktop import VirtualDesktop, wait_until

SHORTCUT = "super+shift+i"
SETTINGS = {
    "excludedApps": [],
    "characterInfoShortcut": {"keyCode": 34, "modifierRawValue": 0x120000, "display": "\u21e7\u2318I"},
}
FAMILY = "\U0001f468\u200d\U0001f469\u200d\U0001f467"
TONED = "\U0001f44d\U0001f3fd"
TEXT = f"x {FAMILY}{TONED}e\u0301e\u0301 y"
CARDS = ["family: man, woman, girl", "thumbs up", "LATIN SMALL LETTER E + COMBINING ACUTE ACCENT"]


class CharacterInfo(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop, SETTINGS)
        self.glyma.start()

    def ask(self, *cards):
        """Presses the shortcut and waits for exactly these cards."""
        self.desktop.press(SHORTCUT)
        self.wait_for(*cards)

    def wait_for(self, *cards):
        wait_until(self.glyma.info_windows, 3, "the panel")

        def shown():
            # A card's name is its own and its heading's.
            texts = self.glyma.info_shows()
            return all(texts.count(card) >= 2 for card in cards) and texts.count("Copy") == len(cards)
        wait_until(shown, 5, f"the cards {cards}")

    def wait_until_closed(self):
        wait_until(lambda: not self.glyma.info_windows(), 3, "the panel to close")

    def size(self):
        lines = self.desktop.run(["xdotool", "getwindowgeometry", "--shell", self.glyma.info_windows()[0]])
        values = dict(line.split("=") for line in lines.split())
        return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])

    def click(self, x, y, button=1):
        self.desktop.run(["xdotool", "mousemove", x, y, "click", button])

    def copied(self):
        return self.desktop.run(["xclip", "-selection", "clipboard", "-o"], check=False, timeout=5)

    def check_editor(self, editor):
        text = editor.text()
        editor.select(FAMILY + TONED + "e\u0301e\u0301")
        self.ask(*CARDS)
        self.assertEqual(self.size()[2:], (620, 560))
        self.desktop.press("Escape")
        self.wait_until_closed()
        self.assertEqual(editor.text(), text)
        self.assertTrue(editor.is_focused())
        self.assertEqual(editor.selection(), FAMILY + TONED + "e\u0301e\u0301")
        # Nothing selected: nothing opens, and what was selected before does not count.
        self.desktop.press("Right")
        wait_until(lambda: not editor.selection(), 2, "the selection to go")
        self.desktop.press(SHORTCUT)
        time.sleep(0.7)
        self.assertEqual(self.glyma.info_windows(), [])
        self.desktop.type("z")
        wait_until(lambda: "z" in editor.text(), 2, "a letter")
        self.assertEqual(editor.text().replace("z", ""), text)

    def test_a_shortcut_recorded_in_the_preferences(self):
        editor = Mousepad(self.desktop, TEXT)
        editor.select(FAMILY)
        preferences = PreferencesWindow(self.desktop, self.glyma).open("general")
        recorder = "Shortcut: Shift+Super+I"
        preferences.press(recorder)
        # What opens the panel anywhere else is recorded here.
        self.desktop.press(SHORTCUT)
        preferences.go_to("push button", recorder)
        self.assertEqual(self.glyma.info_windows(), [])
        preferences.press(recorder)
        self.desktop.press("ctrl+alt+j")
        preferences.get("push button", "Shortcut: Control+Alt+J")
        preferences.close()
        editor.focus()
        self.desktop.press("ctrl+alt+j")
        self.wait_for(CARDS[0])
        self.desktop.press("Escape")
        self.wait_until_closed()
        self.assertEqual(editor.text(), TEXT)

    def test_mousepad(self):
        self.check_editor(Mousepad(self.desktop, TEXT))

    def test_gnome_text_editor(self):
        self.check_editor(GnomeTextEditor(self.desktop, TEXT))

    def test_firefox_field(self):
        field = FirefoxField(self.desktop, "textarea", FAMILY + TONED, FAMILY)
        self.desktop.press("ctrl+a")
        wait_until(lambda: TONED in self.glyma.command("info", "--json", "--selection", check=False), 3, "the selection")
        self.ask(*CARDS[:2])
        self.assertEqual(self.size()[2:], (620, 440))
        self.desktop.press("Escape")
        self.wait_until_closed()
        self.assertEqual(field.text(), FAMILY + TONED)
        self.assertTrue(field.state["focused"])
        # Firefox keeps what was selected in PRIMARY.
        self.desktop.press("Right")
        time.sleep(0.3)
        self.desktop.press(SHORTCUT)
        time.sleep(0.7)
        self.assertEqual(self.glyma.info_windows(), [])

    def test_xterm(self):
        terminal = XTerm(self.desktop)
        self.desktop.type("aab")
        self.desktop.press("Return")
        window = self.desktop.windows("--name", "glyma-terminal")[0]
        self.desktop.run(["xdotool", "mousemove", "--window", window, "12", "12", "click", "--repeat", "2", "--delay", "60", "1"])
        self.ask("latin small letter a", "latin small letter b")
        self.desktop.press("Escape")
        self.wait_until_closed()
        self.desktop.type("c")
        self.desktop.press("Return")
        wait_until(lambda: terminal.lines() == "aab\nc\n", 2, "the next line")

    def test_a_click_elsewhere_closes_it_one_into_it_does_not(self):
        editor = Mousepad(self.desktop, TEXT)
        for button in (1, 3):
            editor.focus()
            editor.select(TONED)
            self.ask("thumbs up")
            x, y, width, height = self.size()
            self.click(x + width // 2, y + 20)
            time.sleep(0.3)
            self.assertTrue(self.glyma.info_windows())
            self.click(5, 795, button)
            self.wait_until_closed()
            self.desktop.press("Escape")

    def test_a_click_gives_it_the_keyboard_and_closing_gives_that_back(self):
        editor = Mousepad(self.desktop, TEXT)
        for close in ("ctrl+w", "Escape"):
            editor.select(TONED)
            self.ask("thumbs up")
            x, y, width, _ = self.size()
            self.click(x + width // 2, y + 20)
            time.sleep(0.3)
            self.desktop.type("q")
            self.desktop.press(close)
            self.wait_until_closed()
            wait_until(editor.is_focused, 2, "the editor to have the keyboard again")
        self.desktop.press("Right")
        self.desktop.type("z")
        wait_until(lambda: "z" in editor.text(), 2, "a letter")
        self.assertNotIn("q", editor.text())

    def test_the_shortcut_again_lets_the_keyboard_in(self):
        editor = Mousepad(self.desktop, TEXT)
        editor.select(TONED)
        self.ask("thumbs up")
        self.desktop.press(SHORTCUT)
        time.sleep(0.3)
        self.desktop.press("space")
        wait_until(lambda: self.copied() == TONED, 3, "the character on the clipboard")
        wait_until(lambda: "Copied" in self.glyma.info_shows(), 1, "the button to say so")
        wait_until(lambda: "Copied" not in self.glyma.info_shows(), 4, "the button to go back")
        # The menu beside it.
        self.desktop.press("Tab", "space", "Down", "Down", "Return")
        wait_until(lambda: self.copied() == "&#x1F44D;&#x1F3FD;", 3, "the entities on the clipboard")
        self.desktop.press("ctrl+w")
        self.wait_until_closed()
        wait_until(editor.is_focused, 2, "the editor to have the keyboard again")
        self.assertEqual(editor.text().rstrip("\n"), TEXT)

    def test_the_bus_and_the_command_show_it_too(self):
        def call(interface, method, *arguments):
            return subprocess.run(["gdbus", "call", "--session", "--dest", "net.quillaby.Glyma", "--object-path",
                                   "/net/quillaby/Glyma", "--method", f"{interface}.{method}", *arguments],
                                  env=self.desktop.environment, capture_output=True, text=True, timeout=10)
        empty = call("net.quillaby.Glyma", "ShowCharacterInfo", "")
        self.assertIn("No text was selected.", empty.stderr)
        self.assertEqual(call("net.quillaby.Glyma", "ShowCharacterInfo", "\U0001f680").returncode, 0)
        self.wait_for("rocket")
        self.glyma.command("info", "--panel", "aab")
        self.wait_for("latin small letter a", "latin small letter b")
        editor = Mousepad(self.desktop, TEXT)
        editor.select(TONED)
        self.assertEqual(json.loads(self.glyma.command("info", "--json", "--selection"))[0]["char"], TONED)
        action = call("org.freedesktop.Application", "ActivateAction", "character-information", "[]", "{}")
        self.assertEqual(action.returncode, 0, action.stderr)
        self.wait_for("thumbs up")

    def test_a_million_characters(self):
        editor = Mousepad(self.desktop, "\u0436\u0448 " * 333_333 + "\U0001f680")
        before = self.memory("VmRSS")
        self.desktop.press("ctrl+a")
        wait_until(lambda: editor.element.get_n_selections() > 0, 10, "the selection")
        started = time.monotonic()
        self.desktop.press(SHORTCUT)
        wait_until(self.glyma.info_windows, 5, "the panel")
        taken = time.monotonic() - started
        self.wait_for("rocket", "space", "cyrillic small letter zhe", "cyrillic small letter sha")
        self.desktop.press("Escape")
        self.wait_until_closed()
        grown = self.memory("VmHWM") - before
        print(f"a million characters: panel after {taken * 1000:.0f} ms, {grown / 1024:.1f} MiB more at the peak")
        self.assertLess(taken, 2)
        self.assertLess(grown, 64 * 1024)

    def memory(self, kind):
        """KiB."""
        with open(f"/proc/{self.glyma.process.pid}/status") as lines:
            return next(int(line.split()[1]) for line in lines if line.startswith(kind + ":"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
