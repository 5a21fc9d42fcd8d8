#!/usr/bin/python3
"""Applications and web sites that the user has excluded are left alone."""

import time
import unittest

from applications import ChromiumField, FirefoxField, Mousepad, SilentChromiumField
from glyma import Glyma
from virtual_desktop import VirtualDesktop, wait_until

EXCLUDED = ("excluded.test", "www.excluded.test", "mail.excluded.test")


def site(is_excluded):
    return {"excludedWebsites": [{"domain": "excluded.test", "isExcluded": is_excluded}]}


def application(identifier, is_excluded):
    return {"excludedApps": [{"bundleID": identifier, "name": identifier, "isExcluded": is_excluded}]}


class Exclusions(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop, {"excludedApps": [], "debug.debugLogsEnabled": True, **site(True)})
        self.glyma.start()

    def restart(self, settings):
        """Settings are read at the start only, unless the preferences window changes them."""
        self.assertEqual(self.glyma.stop(), 0)
        self.glyma.write_settings(settings)
        self.glyma.start()

    def stays_closed(self, seconds=0.6):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.assertFalse(self.glyma.is_open())

    def check_works(self, target):
        """The picker opens, and a choice replaces what was typed."""
        before = (target.text() or "").rstrip("\n")
        self.desktop.type(":rocket")
        wait_until(self.glyma.is_open, 3, "the picker")
        self.desktop.press("Return")
        wait_until(lambda: target.text().rstrip("\n") == before + "\U0001f680", 3, "the insertion")

    def check_left_alone(self, target):
        """Everything typed arrives, also the keys that drive an open picker."""
        before = (target.text() or "").rstrip("\n")
        self.desktop.type(":smi")
        self.stays_closed()
        self.desktop.press("Return")
        self.desktop.type("x:a")
        self.stays_closed(0.3)
        wait_until(lambda: target.text().rstrip("\n") == before + ":smi\nx:a", 3, "the typed text")

    def check_keys_at_once(self, target):
        """Keys that come faster than the program can find out which page it is."""
        before = target.text()
        self.desktop.run(["xdotool", "key", "--delay", "3", "--", "colon", "s", "m", "Return", "Escape"])
        wait_until(lambda: target.text() == before + ":sm\n", 3, "the typed text")
        self.stays_closed(0.3)

    def check_address_bar(self):
        self.desktop.press("ctrl+l")
        # A hand takes as long; keys that come at once can open the picker for a moment, until Firefox has told of the
        # focus.
        time.sleep(0.4)
        self.desktop.type(":smi")
        self.stays_closed()
        self.desktop.press("Escape", "Escape")

    def check_browser(self, kind):
        browser = kind(self.desktop, "nested", host=EXCLUDED[0])
        self.check_left_alone(browser)
        for host in EXCLUDED[1:]:
            browser.visit(host)
            self.check_left_alone(browser)
        for _ in range(5):
            self.check_keys_at_once(browser)
        browser.visit("allowed.test")
        self.check_works(browser)
        self.check_address_bar()
        browser.visit("excluded.test")
        self.restart(site(False))
        self.check_works(browser)
        self.check_address_bar()

    def test_sites_in_firefox(self):
        self.check_browser(FirefoxField)

    def test_sites_in_chromium_that_tells_its_pages(self):
        self.check_browser(ChromiumField)

    def test_chromium_that_tells_nothing_is_an_application_like_any_other(self):
        browser = SilentChromiumField(self.desktop, "textarea", host="excluded.test")
        self.check_works(browser)

    def test_applications(self):
        self.restart(application("org.xfce.mousepad", True))
        editor = Mousepad(self.desktop)
        self.check_left_alone(editor)
        self.restart(application("org.xfce.mousepad", False))
        self.check_works(editor)


if __name__ == "__main__":
    unittest.main(verbosity=2)
