#!/usr/bin/python3
"""The preferences window by keyboard and screen reader: every setting takes effect in the running picker, and lasts."""

import subprocess
import time
import unittest

from applications import Mousepad
from glyma import BINARY, Glyma
from preferences_window import PATIENCE, PreferencesWindow
from virtual_desktop import VirtualDesktop, wait_until


class Preferences(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop)

    def start(self):
        self.glyma.start()
        self.editor = Mousepad(self.desktop)
        self.window = PreferencesWindow(self.desktop, self.glyma)

    # What the picker does with what is typed into the editor

    def opens(self, text):
        self.editor.focus()
        self.desktop.press("ctrl+a", "Delete")
        self.desktop.type(text)
        try:
            return wait_until(self.glyma.is_open, 1.5, "the picker")
        except TimeoutError:
            return False

    def settled_picker(self, text, look):
        """What the look at the open picker gives once it has shown all its results."""
        self.assertTrue(self.opens(text))
        looks = []

        def is_settled():
            looks.append(look())
            return len(looks) > 5 and len(set(looks[-5:])) == 1
        wait_until(is_settled, PATIENCE, "the picker to settle", interval=0.05)
        self.desktop.press("Escape")
        wait_until(lambda: not self.glyma.is_open(), PATIENCE, "the picker to close")
        return looks[-1]

    def picker_height(self, text):
        return self.settled_picker(text, lambda: self.glyma.picker_geometry()[3])

    def picker_picture(self, text):
        file = self.desktop.home / "picker.ppm"

        def look():
            self.desktop.run(["import", "-window", self.glyma.picker_windows()[0], file])
            return file.read_bytes()
        return self.settled_picker(text, look)

    def inserts(self, text):
        """What stands in the editor once the first entry has been chosen."""
        self.assertTrue(self.opens(text), text)
        time.sleep(0.3)
        self.desktop.press("Return")
        wait_until(lambda: not self.glyma.is_open(), PATIENCE, "the picker to close")
        return wait_until(lambda: self.editor.text().strip() not in ("", text) and self.editor.text().strip(), PATIENCE,
                          f"the text inserted for {text}")

    # The walk: each changes settings by keyboard, sees their effect at once, and returns what is to last

    def change_trigger(self):
        self.assertTrue(self.opens(":smile"))
        self.window.open("general").choose("Trigger character", "Plus  +")
        self.assertFalse(self.opens(":smile"))
        self.assertTrue(self.opens("+smile"))
        self.desktop.press("Escape")
        return lambda: self.assertEqual(self.window.choice("Trigger character"), "Plus  +")

    def change_rows(self):
        before = self.picker_height("+smile")
        self.window.open("general").enter("Visible rows", "3")
        self.desktop.press("Return")
        after = self.picker_height("+smile")
        self.assertLess(after, before * 0.7)
        self.window.open("general").enter("Visible rows", "20")
        self.desktop.press("Return")
        wait_until(lambda: self.window.text("Visible rows") == "3", PATIENCE, "the refused number to go back")
        self.assertEqual(self.picker_height("+smile"), after)
        return lambda: self.assertEqual(self.window.text("Visible rows"), "3")

    def change_skin_tone(self):
        self.window.open("general").choose("Skin tone", "Dark")
        self.assertEqual(self.inserts("+thumbs up"), "\U0001f44d\U0001f3ff")
        return lambda: self.assertEqual(self.window.choice("Skin tone"), "Dark")

    def change_fuzzy_search(self):
        self.window.open("general").switch("Use fuzzy search")
        self.assertEqual(self.inserts("+rckt"), "\U0001f680")
        return lambda: self.assertTrue(self.window.is_on("Use fuzzy search"))

    def change_other_general_settings(self):
        self.window.open("general").choose("Tray icon", "Sparkles")
        self.window.switch("Random Unicode includes emoji", False)
        self.window.switch("Start Glyma at login")
        entry = self.desktop.home / ".config/autostart/glyma.desktop"
        self.desktop.run(["desktop-file-validate", entry])

        def kept():
            self.window.open("general")
            self.assertEqual(self.window.choice("Tray icon"), "Sparkles")
            self.assertFalse(self.window.is_on("Random Unicode includes emoji"))
            self.assertTrue(self.window.is_on("Start Glyma at login"))
            self.window.switch("Start Glyma at login", False)
            self.assertFalse(entry.exists())
        return kept

    def change_replacements(self):
        self.window.open("replacements").press("Add replacement")
        self.window.enter("Name", "Zebra")
        self.window.enter("Keywords", " zzq , ,stripes")
        self.window.enter("Text", "striped horse")
        self.window.press("Save")
        wait_until(lambda: self.window.find("text", "Name") is None, PATIENCE, "the sheet to close")
        self.assertEqual(self.inserts("+zzq"), "striped horse")
        # The snippet stays selected: another Delete removes it, and nothing else.
        count = len(self.glyma.settings()["userReplacements"])
        self.window.open("replacements").press("Add replacement")
        self.window.enter("Name", "Gone")
        self.window.press("Save")
        wait_until(lambda: self.window.find("text", "Name") is None, PATIENCE, "the sheet to close")
        self.window.press("Remove selected replacements")
        wait_until(lambda: len(self.glyma.settings()["userReplacements"]) == count, PATIENCE, "one to be removed")

        def kept():
            self.window.open("replacements").go_to("list", "Replacements")
            self.desktop.press("End")
            self.window.wait_for("Zebra, striped horse, zzq, stripes")
            self.assertFalse(self.window.says("Gone"))
            self.assertEqual(self.inserts("+zzq"), "striped horse")
            self.window.bring_to_front()
        return kept

    def change_debug_switches(self):
        before = self.picker_picture("+smile")
        self.assertEqual(self.picker_picture("+smile"), before)
        self.window.open("advanced").switch("Show ranking info")
        self.assertNotEqual(self.picker_picture("+smile"), before)
        self.window.open("advanced").switch("Show Debug tab")
        self.assertTrue(self.window.get("page tab", "Debug"))
        self.inserts("+random emoji")
        self.window.open("debug")
        self.window.wait_for("1 pick")

        def kept():
            self.window.open("debug")
            self.window.wait_for("1 pick")
            self.window.open("advanced")
            self.assertTrue(self.window.is_on("Show ranking info"))
        return kept

    def change_exclusions(self):
        self.window.open("exclusions").press("Add excluded application")
        self.window.enter("Search applications…", "mousepad")
        self.desktop.press("Return")
        wait_until(lambda: self.window.find("text", "Search applications…") is None, PATIENCE, "the sheet to close")
        self.assertFalse(self.opens("+smile"))
        self.window.open("exclusions").go_to("list", "Excluded Applications")
        self.desktop.press("space")
        self.assertTrue(self.opens("+smile"))
        self.desktop.press("Escape")

        def kept():
            self.window.open("exclusions")
            self.window.wait_for("Mousepad")
        return kept

    def change_blocks(self):
        face = self.inserts("+grinning face")
        self.window.open("unicode").enter("Filter blocks…", "emoticons")
        self.window.go_to("list", "Blocks")
        self.desktop.press("Home", "space")
        self.assertNotEqual(self.inserts("+grinning face"), face)

        def kept():
            self.assertNotIn(face, [each["char"] for each in self.glyma.search("grinning face")])
        return kept

    WALK = [change_trigger, change_rows, change_skin_tone, change_fuzzy_search, change_other_general_settings,
            change_replacements, change_debug_switches, change_exclusions, change_blocks]

    def test_every_setting_takes_effect_at_once_and_lasts(self):
        self.start()
        lasting = [(change.__name__, change(self)) for change in self.WALK]
        self.window.close()
        self.assertEqual(self.glyma.stop(), 0)
        self.glyma.start()
        self.editor.focus()
        self.assertTrue(self.opens("+smile"))
        self.desktop.press("Escape")
        self.window.open("general")
        for name, kept in lasting:
            with self.subTest(name):
                kept()

    def test_a_second_start_opens_it_with_the_page_shown_last(self):
        self.start()
        self.window.open("advanced").close()
        subprocess.run([BINARY], env=self.desktop.environment, timeout=10, check=True, stderr=subprocess.DEVNULL)
        wait_until(self.window.is_open, PATIENCE, "the preferences")
        wait_until(lambda: self.window.focused(), PATIENCE, "the window to get the keyboard by itself")
        self.assertTrue(self.window.has(self.window.get("page tab", "Advanced"), "SELECTED"))
        self.desktop.press("alt+p")
        self.window.wait_for("Accessibility")
        self.desktop.press("Escape")
        wait_until(lambda: not self.window.is_open(), PATIENCE, "the preferences to close")
        self.assertIsNone(self.glyma.process.poll())

    def test_deleting_everything_asks_and_leaves_what_is_not_ours(self):
        self.start()
        strangers = [self.glyma.data / "notes.txt", self.glyma.config / "user-data-backup.txt"]
        for file in strangers:
            file.write_text("mine")
        self.window.open("general").choose("Trigger character", "Tilde  ~")
        self.window.open("advanced").press("Delete App Container and Quit…")
        self.window.get("push button", "Delete and Quit")
        self.desktop.press("Return")
        wait_until(lambda: self.window.find("push button", "Delete and Quit") is None, PATIENCE, "Return to cancel")
        self.assertIsNone(self.glyma.process.poll())
        self.window.press("Delete App Container and Quit…")
        self.window.press("Delete and Quit")
        self.assertEqual(self.glyma.process.wait(5), 0)
        left = [file for folder in (self.glyma.data, self.glyma.config) for file in folder.rglob("*")]
        self.assertCountEqual([file for file in left if file.name != "Glyma.lock"], strangers)
        self.glyma.start()
        self.assertTrue(self.opens(":smile"))

    def test_settings_of_wrong_types_are_shown_as_defaults(self):
        self.glyma.write_settings({"triggerCharacter": 7, "menuBarIcon": [], "visiblePickerRows": "many",
                                   "skinToneModifier": {}, "useFuzzySearch": "yes", "userReplacements": "none",
                                   "glymaSelectedPrefsTab": 3, "debug.showDebugTab": "on"})
        self.start()
        self.window.open()
        self.assertEqual(self.window.choice("Trigger character"), "Colon  :")
        self.assertEqual(self.window.text("Visible rows"), "7")
        self.assertFalse(self.window.is_on("Use fuzzy search"))
        self.assertIsNone(self.window.find("page tab", "Debug"))
        self.window.open("replacements")
        self.window.wait_for("Shrug")

    def test_it_opens_during_the_import(self):
        with open(self.glyma.log, "ab") as log:
            self.glyma.process = self.desktop.start([BINARY, "preferences", "general"], stderr=log)
        self.window = PreferencesWindow(self.desktop, self.glyma)
        wait_until(self.window.is_open, 10, "the preferences")
        self.window.choose("Trigger character", "Slash  /")
        self.assertIsNone(self.glyma.process.poll())
        self.editor = Mousepad(self.desktop)
        wait_until(lambda: self.glyma.search("rocket"), 30, "the catalogue")
        self.assertEqual(self.inserts("/rocket"), "\U0001f680")


if __name__ == "__main__":
    unittest.main(verbosity=2)
