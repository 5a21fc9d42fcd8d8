#!/usr/bin/python3
"""As desktops start and reach the program: through the session bus, by its service file and its desktop entry."""

import configparser
import os
import subprocess
import time
import unittest
from types import SimpleNamespace

from applications import Mousepad
from glyma import BINARY, Glyma
from preferences_window import PreferencesWindow
from virtual_desktop import ROOT, VirtualDesktop, wait_until

NAME = "net.quillaby.Glyma"


class Bus(unittest.TestCase):
    def setUp(self):
        self.desktop = VirtualDesktop().__enter__()
        self.addCleanup(self.desktop.__exit__, None, None, None)
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        flags = Gio.DBusConnectionFlags
        self.connection = Gio.DBusConnection.new_for_address_sync(
            self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION)
        self.connection.set_exit_on_close(False)
        self.glyma = Glyma(self.desktop, {"debug.debugLogsEnabled": True})
        self.glyma.command("import")
        self.offer_service()

    def offer_service(self):
        """What an installation and a session do."""
        services = self.desktop.home / "run/dbus-1/services"
        services.mkdir(parents=True, exist_ok=True)
        text = (ROOT / "packaging/net.quillaby.Glyma.service.in").read_text()
        self.assertIn("@CMAKE_INSTALL_FULL_BINDIR@/glyma", text)
        (services / f"{NAME}.service").write_text(text.replace("@CMAKE_INSTALL_FULL_BINDIR@/glyma", str(BINARY)))
        self.ask_bus("ReloadConfig")
        wanted = ("DISPLAY", "GLYMA_DATA_DIR", "GLYMA_CONFIG_DIR")
        self.set_environment({name: self.desktop.environment[name] for name in wanted})

    def set_environment(self, values):
        self.ask_bus("UpdateActivationEnvironment", self.glib.Variant("(a{ss})", (values,)))

    def ask(self, name, path, interface, method, arguments):
        """As launchers do, which ask nothing before: the call itself starts what it is for."""
        return self.connection.call_sync(name, path, interface, method, arguments, None, self.gio.DBusCallFlags.NONE,
                                         10_000, None).unpack()

    def ask_bus(self, method, arguments=None):
        return self.ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments)

    def call(self, method, signature="()", *arguments):
        """The error's text, or nothing."""
        try:
            self.ask(NAME, "/net/quillaby/Glyma", "org.freedesktop.Application", method,
                     self.glib.Variant(signature, arguments))
        except self.glib.Error as error:
            return error.message
        return ""

    def activate(self):
        return self.call("Activate", "(a{sv})", {})

    def action(self, name):
        return self.call("ActivateAction", "(sava{sv})", name, [], {})

    def is_running(self):
        return self.ask_bus("NameHasOwner", self.glib.Variant("(s)", (NAME,)))[0]

    def process(self):
        return self.ask_bus("GetConnectionUnixProcessID", self.glib.Variant("(s)", (NAME,)))[0]

    def wait_for_end(self, process):
        wait_until(lambda: not self.is_running(), 3, "the name to be free")
        wait_until(lambda: not os.path.exists(f"/proc/{process}"), 3, "the process to end")

    def preferences(self):
        return bool(self.desktop.windows("--name", "^Glyma Settings$"))

    def test_a_call_starts_it_once_and_every_later_start_finds_it(self):
        self.assertFalse(self.is_running())
        self.assertEqual(self.activate(), "")
        process = self.process()
        editor = Mousepad(self.desktop)
        self.desktop.type(":rocket")
        wait_until(self.glyma.is_open, 3, "the picker")
        self.desktop.press("Return")
        wait_until(lambda: editor.text().rstrip("\n") == "\U0001f680", 3, "the insertion")
        self.assertFalse(self.preferences(), "what starts it does not open them")

        second = subprocess.run([BINARY], env=self.desktop.environment, timeout=10, capture_output=True, text=True)
        self.assertEqual((second.returncode, second.stderr), (0, "glyma: Glyma is running already\n"))
        wait_until(self.preferences, 5, "the preferences")
        self.assertEqual(self.activate(), "")
        self.assertEqual(self.process(), process)
        programs = [each for each in os.listdir("/proc") if each.isdigit() and self.is_ours(each)]
        self.assertEqual(programs, [str(process)])
        self.assertEqual(self.action("quit"), "")
        self.wait_for_end(process)

    def is_ours(self, process):
        try:
            with open(f"/proc/{process}/environ", "rb") as environment:
                return (os.readlink(f"/proc/{process}/exe") == str(BINARY)
                        and f"DISPLAY={self.desktop.environment['DISPLAY']}".encode() in environment.read().split(b"\0"))
        except OSError:
            return False

    def test_the_actions_of_the_desktop_entry_start_it_too(self):
        entry = configparser.ConfigParser(interpolation=None, strict=False)
        entry.read(ROOT / "packaging/net.quillaby.Glyma.desktop")
        self.assertEqual(entry["Desktop Entry"]["DBusActivatable"], "true")
        actions = entry["Desktop Entry"]["Actions"].strip(";").split(";")
        self.assertEqual(set(actions), {"preferences", "character-information", "quit"})
        for action in actions:
            self.assertIn(f"Desktop Action {action}", entry)

        self.assertEqual(self.action("preferences"), "")
        self.glyma.process = SimpleNamespace(pid=self.process())
        window = PreferencesWindow(self.desktop, self.glyma)
        window.bring_to_front()
        window.close()
        process = self.process()
        self.assertEqual(self.action("quit"), "")
        self.wait_for_end(process)

        editor = Mousepad(self.desktop, "one \U0001f680 two")
        editor.select("\U0001f680")
        self.assertEqual(self.action("character-information"), "")
        wait_until(self.glyma.info_windows, 5, "the character information")
        process = self.process()
        self.assertEqual(self.action("quit"), "")
        self.wait_for_end(process)

        # Started only to end again.
        self.assertEqual(self.action("quit"), "")
        time.sleep(0.2)
        wait_until(lambda: not self.is_running(), 3, "it to end again")

    def test_what_it_cannot_do_it_says(self):
        self.assertIn("opens no files", self.call("Open", "(asa{sv})", ["file:///etc/passwd"], {}))
        self.assertIn('no action "dance"', self.action("dance"))
        self.assertIn("no method Dance()", self.call("Dance"))
        self.assertIn("no method Activate(s)", self.call("Activate", "(s)", "not a dictionary"))
        self.assertTrue(self.is_running())
        self.desktop.run([BINARY, "quit"])
        self.assertFalse(self.is_running())

    def test_where_it_cannot_start_the_caller_hears_of_it(self):
        self.set_environment({"DISPLAY": ":7777"})
        self.assertIn("exited with status 1", self.activate())


if __name__ == "__main__":
    unittest.main(verbosity=2)
