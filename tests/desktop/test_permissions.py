#!/usr/bin/python3
"""What the program says of its permissions while they come and go, and its start without a tray."""

import json
import os
import re
import signal
import subprocess
import time
import unittest
from pathlib import Path

from glyma import BINARY, Glyma
from virtual_desktop import VirtualDesktop, wait_until

NOTICED = 5


class Permissions(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        self.glyma = Glyma(self.desktop, {"debug.debugLogsEnabled": True})

    def findings(self):
        return {each["name"]: each for each in json.loads(self.glyma.command("doctor", "--json", check=False))}

    def state(self, name):
        return self.findings()[name]["state"]

    def set_accessibility(self, enabled):
        self.desktop.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                          "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled",
                          f"<{str(enabled).lower()}>"])

    def test_accessibility_that_is_switched_off_is_noticed(self):
        self.glyma.start()
        self.assertEqual(self.state("Accessibility"), "ok")
        self.set_accessibility(False)
        wait_until(lambda: self.state("Accessibility") == "limited", NOTICED, "the loss to be noticed")
        self.assertEqual(self.state("Input Monitoring"), "ok")
        self.set_accessibility(True)
        wait_until(lambda: self.state("Accessibility") == "ok", NOTICED, "the return to be noticed")

    def test_accessibility_that_is_on_but_cannot_be_reached_is_none(self):
        self.desktop.environment["AT_SPI_BUS_ADDRESS"] = "unix:path=/nonexistent"
        self.assertEqual(self.state("Accessibility"), "limited")
        self.glyma.start()
        del self.desktop.environment["AT_SPI_BUS_ADDRESS"]
        wait_until(lambda: self.state("Accessibility") == "limited", NOTICED, "the running program to say so")
        self.glyma.stop()
        self.assertEqual(self.state("Accessibility"), "ok")

    def test_accessibility_that_ends_is_noticed(self):
        self.glyma.start()
        self.assertEqual(self.state("Accessibility"), "ok")
        process = next(int(process) for process in filter(str.isdigit, os.listdir("/proc"))
                       if self.serves_accessibility(process))
        os.kill(process, signal.SIGKILL)
        wait_until(lambda: self.state("Accessibility") == "limited", NOTICED, "the end to be noticed")
        self.assertIn("has ended", self.findings()["Accessibility"]["why"])
        self.assertIsNone(self.glyma.process.poll())
        self.desktop.type(":smi")
        wait_until(self.glyma.is_open, 3, "the picker")

    def serves_accessibility(self, process):
        """The daemon of this desktop's accessibility bus."""
        try:
            line = Path(f"/proc/{process}/cmdline").read_bytes()
        except OSError:
            return False
        return b"at-spi2/accessibility.conf" in line and str(self.desktop.home).encode() in line

    def test_a_tap_that_loses_its_connection_is_started_again(self):
        self.glyma.start()
        # The tap's connection has a window that nobody sees.
        tree = self.desktop.run(["xwininfo", "-root", "-children"])
        hidden = re.findall(r"(0x[0-9a-f]+) .* 1x1\+-1\+-1 ", tree)
        self.assertTrue(hidden)
        for window in hidden:
            self.desktop.run(["xkill", "-id", window], check=False)
        wait_until(lambda: "keyboard monitor stopped" in self.glyma.log.read_text(), NOTICED, "the loss to be noticed")
        wait_until(lambda: self.glyma.log.read_text().count("keyboard monitor running") == 2, 2 * NOTICED,
                   "the monitor to run again")
        self.assertEqual(self.state("Input Monitoring"), "ok")

    def test_without_a_tray_the_first_start_says_so_and_the_second_does_not(self):
        monitor = self.desktop.start(["dbus-monitor", "--session", "interface='org.freedesktop.Notifications'"],
                                     stdout=subprocess.PIPE, text=True)
        self.glyma.start()
        key = "glymaToldAboutMissingTray"
        wait_until(lambda: self.glyma.settings().get(key), 10, "the message")
        self.glyma.stop()
        self.glyma.start()
        time.sleep(6)
        self.desktop.end(monitor)
        self.assertEqual(monitor.stdout.read().count('string "Glyma is running"'), 1)

    def test_the_preferences_command_reaches_the_running_program(self):
        self.glyma.start()
        self.glyma.command("preferences", "library")
        wait_until(lambda: "[prefs] openPreferences" in self.glyma.log.read_text(), 3, "the preferences")
        result = subprocess.run([BINARY, "preferences", "nonsense"], env=self.desktop.environment, capture_output=True,
                                timeout=10)
        self.assertEqual(result.returncode, 2)


if __name__ == "__main__":
    unittest.main(verbosity=2)
