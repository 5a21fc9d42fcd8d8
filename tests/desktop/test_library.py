"""The library tab of the real window: its test field, and switching seen by the running picker and after a restart."""

import sys
import time
import unittest

from applications import FirefoxField
from glyma import Glyma
from virtual_desktop import VirtualDesktop, connect_accessibility, wait_until


class Library(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(VirtualDesktop())
        self.glyma = Glyma(self.desktop).start()
        connect_accessibility(self.desktop)

    def application(self):
        from gi.repository import Atspi
        root = Atspi.get_desktop(0)
        for index in range(root.get_child_count()):
            child = root.get_child_at_index(index)
            if child and child.get_process_id() == self.glyma.process.pid:
                child.clear_cache()
                return child
        return None

    def find(self, role, name):
        """The visible element of the preferences with this role and a name that begins so."""
        from gi.repository import Atspi

        def below(element):
            for index in range(min(element.get_child_count(), 400)):
                child = element.get_child_at_index(index)
                if not child:
                    continue
                if child.get_role_name() == role and child.get_name().startswith(name):
                    return child
                if child.get_state_set().contains(Atspi.StateType.SHOWING):
                    found = below(child)
                    if found:
                        return found
            return None

        application = self.application()
        return application and below(application)

    def open_library(self):
        self.glyma.command("preferences", "unicode")
        wait_until(lambda: self.find("text", "Test Picker"), 10, "the library tab")
        self.desktop.run(["xdotool", "search", "--sync", "--name", "^Glyma Settings$", "windowactivate", "--sync"])
        time.sleep(0.3)

    def field_text(self):
        from gi.repository import Atspi
        field = self.find("text", "Test Picker")
        return Atspi.Text.get_text(field, 0, -1)

    def focus_test_field(self):
        self.desktop.press("alt+t")
        time.sleep(0.2)

    def try_picker(self, query):
        """Types a query into the test field; says whether the picker opened, and leaves the field empty."""
        self.focus_test_field()
        self.desktop.press("ctrl+a", "BackSpace")
        self.desktop.type(":" + query)
        try:
            wait_until(self.glyma.is_open, 2, "the picker")
        except TimeoutError:
            return False
        return True

    def test_picker_opens_in_the_test_field_only(self):
        self.open_library()
        self.assertTrue(self.try_picker("rocket"))
        x, y, width, height = self.glyma.picker_geometry()
        place = self.find("text", "Test Picker").get_extents(0)
        self.assertLess(abs(x - place.x), 120, "the picker is at the caret")
        self.assertLess(min(abs(y - place.y), abs(y + height - place.y)), 60, "the picker is beside the field")
        self.desktop.press("Return")
        wait_until(lambda: self.field_text() == "🚀", 3, "the rocket")
        self.desktop.press("shift+Tab", "shift+Tab")
        self.desktop.type(":rocket")
        time.sleep(0.5)
        self.assertFalse(self.glyma.is_open())

    def test_switched_off_block_is_gone_at_once_and_after_a_restart(self):
        self.open_library()
        self.desktop.press("alt+l", "Tab")
        self.desktop.type("Transport")
        self.desktop.press("Down", "space")
        wait_until(lambda: self.find("list item", "Transport and Map Symbols (0 of"), 3, "the block to be off")
        wait_until(lambda: not any(item["char"] == "🚀" for item in self.glyma.search("rocket")), 3, "the store")
        self.focus_test_field()
        self.desktop.type(":rocket")
        wait_until(self.glyma.is_open, 2, "the picker")
        self.desktop.press("Return")
        time.sleep(0.7)
        self.assertNotEqual("🚀", self.field_text())
        self.glyma.stop()
        self.glyma.start()
        self.assertFalse(any(item["char"] == "🚀" for item in self.glyma.search("rocket")))

    def test_open_page_of_firefox_is_offered_for_exclusion(self):
        FirefoxField(self.desktop, "input", "text", "text")
        self.glyma.command("preferences", "exclusions")
        wait_until(lambda: self.find("list", "Excluded Websites"), 10, "the exclusions tab")
        self.desktop.run(["xdotool", "search", "--sync", "--name", "^Glyma Settings$", "windowactivate", "--sync"])
        self.find("push button", "Add excluded website").do_action(0)
        wait_until(lambda: self.find("combo box", "127.0.0.1"), 5, "Firefox's page to be offered")
        self.desktop.press("Return")
        wait_until(lambda: {"domain": "127.0.0.1", "isExcluded": True} in self.glyma.settings()["excludedWebsites"],
                   3, "the page to be excluded")


if __name__ == "__main__":
    sys.exit(unittest.main(verbosity=2))
