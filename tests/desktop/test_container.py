#!/usr/bin/python3
"""Delete App Container and Quit: asks, then removes what the program wrote of its user, and nothing else."""

import os
import unittest

from glyma import Glyma
from virtual_desktop import VirtualDesktop, wait_until


class Container(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop, {"triggerCharacter": "+"}).start()
        os.environ.update({name: self.desktop.environment[name] for name in
                           ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "HOME")})

    def find_button(self, name):
        """The button of the program's windows; none while it is not there."""
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib

        def search(element):
            if element.get_role() == Atspi.Role.PUSH_BUTTON and element.get_name().replace("&", "") == name:
                return element
            children = (element.get_child_at_index(index) for index in range(element.get_child_count()))
            return next((found for child in children if child and (found := search(child))), None)

        root = Atspi.get_desktop(0)
        try:
            for index in range(root.get_child_count()):
                application = root.get_child_at_index(index)
                if application and application.get_process_id() == self.glyma.process.pid:
                    return search(application)
        except GLib.Error:
            pass
        return None

    def press(self, name):
        wait_until(lambda: self.find_button(name), 10, f"the button {name}").get_action_iface().do_action(0)

    def test_deleting_asks_and_then_removes_exactly_what_is_ours(self):
        ours = [self.glyma.data / "user-data-backup-1714564800.json", self.glyma.config / "settings.json.damaged-1"]
        others = [self.glyma.data / "notes.txt", self.glyma.data / "Glyma.storeroom", self.glyma.config / "mine.json"]
        for file in ours + others:
            file.write_text("x")
        self.assertTrue((self.glyma.data / "Glyma.store").exists())
        autostart = self.desktop.home / ".config/autostart/glyma.desktop"
        autostart.parent.mkdir(parents=True, exist_ok=True)
        autostart.write_text("[Desktop Entry]\nType=Application\nName=Glyma\nExec=glyma\n")

        self.glyma.command("preferences", "advanced")
        self.press("Delete App Container and Quit…")
        self.press("Cancel")
        # Its buttons go a moment after it has closed, and the next question has some of the same names.
        wait_until(lambda: not self.find_button("Delete and Quit"), 5, "the question to go")
        self.assertIsNone(self.glyma.process.poll())
        self.assertTrue((self.glyma.config / "settings.json").exists())

        self.press("Delete App Container and Quit…")
        self.press("Delete and Quit")
        self.assertEqual(self.glyma.process.wait(5), 0)
        left = {file.name for folder in (self.glyma.data, self.glyma.config) for file in folder.iterdir()}
        self.assertEqual(left - {file.name for file in others}, left & {"Glyma.lock"})
        self.assertTrue(all(file.exists() for file in others))

        self.assertFalse(autostart.exists())

        self.glyma.start()
        self.assertEqual(self.glyma.process.poll(), None)
        self.assertFalse((self.glyma.config / "settings.json").exists() and "triggerCharacter" in self.glyma.settings())


if __name__ == "__main__":
    unittest.main(verbosity=2)
