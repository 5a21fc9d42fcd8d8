"""Real applications through the accessibility adapter. GLYMA_PROBE names the program atspi_probe."""

import os
import re
import signal
import time
import unittest

from desktop import Desktop, Probe, wait_until

TEXT = "x👨‍👩‍👧y😀 "
DEADLINE_MS = 190  # 150 and what a busy machine adds


def units(text):
    return len(text.encode("utf-16-le")) // 2


class ApplicationTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.close)
        cls.probe = Probe(cls.desktop, os.environ["GLYMA_PROBE"])
        assert cls.probe("status") == [True, True, True], cls.probe.last

    def focus(self, role):
        self.assertTrue(wait_until(lambda: self.probe("focus") and self.probe("get", "AXRole") == role, 10),
                        f"focus: {self.probe.last}")

    def clear(self):
        self.desktop.key("ctrl+a", "BackSpace")

    def write(self):
        """Puts the caret between ":ab" and "c", behind characters of several units."""
        self.clear()
        self.desktop.paste(TEXT)
        self.desktop.type(":abc")
        self.desktop.key("Left")
        return units(TEXT + ":ab")

    def select_query(self, caret):
        self.assertTrue(wait_until(lambda: self.probe("get", "AXSelectedTextRange") == [caret, 0], 3), self.probe.last)
        self.assertEqual(self.probe("ask", "AXStringForRange", caret - 6, 6), "😀 :ab")
        self.assertTrue(wait_until(lambda: self.probe("select", caret - 3, 3), 3), self.probe.last)
        self.assertEqual(self.probe("get", "AXSelectedTextRange"), [caret - 3, 3])
        self.assertEqual(self.probe("get", "AXSelectedText"), ":ab")

    def check_rectangles(self, caret, window):
        geometry = dict(line.split("=") for line in self.desktop.run(
            "xdotool", "getwindowgeometry", "--shell", window).split())
        left, top = int(geometry["X"]), int(geometry["Y"])
        right, bottom = left + int(geometry["WIDTH"]), top + int(geometry["HEIGHT"])
        before = wait_until(lambda: self.probe("ask", "AXBoundsForRange", caret - 1, 1), 3)
        colon = self.probe("ask", "AXBoundsForRange", caret - 3, 1)
        emoji = self.probe("ask", "AXBoundsForRange", caret - 6, 2)
        end = self.probe("ask", "AXBoundsForRange", caret + 1, 0)
        for x, y, width, height in (before, colon, emoji, end):
            self.assertTrue(left <= x and x + width <= right and top <= y and y + height <= bottom, (x, y))
            self.assertTrue(8 <= height <= 40, height)
        self.assertLess(emoji[0], colon[0])
        self.assertLess(colon[0], before[0])
        self.assertLessEqual(before[0] + before[2], end[0])
        self.assertEqual(end[2], 1)

    def check_wrong_ranges(self, caret):
        """A caret that an application tells wrongly must not look like a text that is empty or shorter."""
        for location, length in ((1000, 100), (caret + 1, 50), (-5, 3), (3, -1), (2**40, 1)):
            self.assertEqual(self.probe("ask", "AXStringForRange", location, length), None, (location, length))
        self.assertIn(self.probe.last["error"], ("no value", "failed"))
        self.assertEqual(self.probe("ask", "AXStringForRange", 0, 0), "")
        self.assertEqual(self.probe("ask", "AXStringForRange", 0, caret + 1), TEXT + ":abc")
        # Right after the caret has been read, from the middle of a pair of units.
        self.assertEqual(self.probe("get", "AXSelectedTextRange"), [caret, 0])
        self.assertEqual(self.probe("ask", "AXStringForRange", caret - 5, 5)[-4:], " :ab")

    def check_drag(self, window):
        """The window manager moves the window step by step; its place is right at each of them."""
        def place():
            self.assertTrue(self.probe("window"), self.probe.last)
            self.assertEqual(self.probe("get", "AXRole"), "AXWindow")
            return self.probe("get", "AXPosition")
        def real_place():
            # xdotool counts the frame twice.
            lines = self.desktop.run("xwininfo", "-id", window)
            corner = [int(re.search(rf"Absolute upper-left {axis}: *(-?\d+)", lines)[1]) for axis in "XY"]
            extents = self.desktop.run("xprop", "-id", window, "_GTK_FRAME_EXTENTS").partition("=")[2]
            left, _, top, _ = [int(part) for part in extents.split(",")] if extents else (0, 0, 0, 0)
            return [corner[0] + left, corner[1] + top]
        self.desktop.run("xdotool", "windowsize", "--sync", window, "500", "300")
        self.desktop.run("xdotool", "windowmove", "--sync", window, "60", "70")
        self.assertTrue(wait_until(lambda: place() == real_place(), 1), (place(), real_place()))
        caret = self.probe("focus") and self.probe("ask", "AXBoundsForRange", 0, 1)
        before = place()
        for step in range(1, 6):
            self.desktop.run("xdotool", "windowmove", window, str(60 + 37 * step), str(70 + 23 * step))
            self.assertTrue(wait_until(lambda: place() == real_place(), 0.1), (place(), real_place()))
        moved = [now - then for now, then in zip(place(), before)]
        self.assertTrue(moved[0] > 150 and moved[1] > 80, moved)
        self.assertTrue(wait_until(lambda: [now - then for now, then in zip(
            self.probe("focus") and self.probe("ask", "AXBoundsForRange", 0, 1), caret)][:2] == moved, 2),
            "the text has moved along")

    def check_hang(self, process_id):
        self.probe("focus")
        os.kill(process_id, signal.SIGSTOP)
        try:
            for attempt in range(6):
                self.assertEqual(self.probe.error("get", "AXSelectedTextRange"), "timed out")
                self.assertLess(self.probe.last["ms"], DEADLINE_MS if attempt < 3 else 20)
            # The first of these may still find the worker inside the call that timed out.
            for limit in (DEADLINE_MS, 20):
                self.assertEqual(self.probe.error("focus"), "timed out")
                self.assertLess(self.probe.last["ms"], limit)
        finally:
            os.kill(process_id, signal.SIGCONT)
        # Not left alone for the whole two seconds: it is heard of as soon as it answers.
        self.assertTrue(wait_until(lambda: self.probe("focus") and self.probe("get", "AXSelectedTextRange"), 1, 0.05),
                        self.probe.last)

    def check_long_text(self):
        self.assertTrue(self.probe("set", "AXValue", "😀 line\n" * 4000 + "😀 :ab"), self.probe.last)
        self.desktop.key("ctrl+End")
        self.focus("AXTextArea")
        caret = wait_until(lambda: (self.probe("get", "AXSelectedTextRange") or [0])[0], 3)
        self.assertEqual(self.probe("ask", "AXStringForRange", caret - 6, 6), "😀 :ab")
        self.assertTrue(self.probe("select", caret - 3, 3), self.probe.last)
        self.assertTrue(self.probe("set", "AXSelectedText", "🙂"), self.probe.last)
        self.assertEqual(self.probe("get", "AXValue")[-10:], "😀 line\n😀 🙂"[-10:])

    def check_editor(self, command, window):
        process, identifier = self.desktop.open(*command, window=window)
        self.focus("AXTextArea")
        self.clear()
        self.assertEqual(self.probe("get", "AXValue"), "")
        self.assertEqual(self.probe("get", "AXSelectedTextRange"), [0, 0])
        self.assertTrue(self.probe("ask", "AXBoundsForRange", 0, 0), self.probe.last)

        caret = self.write()
        self.focus("AXTextArea")
        self.check_rectangles(caret, identifier)
        self.check_wrong_ranges(caret)
        self.check_drag(identifier)
        self.assertTrue(self.probe("focus"))
        self.assertTrue(self.probe("settable", "AXSelectedText"))
        self.select_query(caret)
        self.assertTrue(self.probe("set", "AXSelectedText", "🙂é\nz"), self.probe.last)
        self.assertEqual(self.probe("get", "AXValue"), TEXT + "🙂é\nzc")
        self.assertEqual(self.probe("get", "AXSelectedTextRange"), [caret - 3 + units("🙂é\nz"), 0])
        self.desktop.type("!")
        self.assertEqual(self.probe("get", "AXValue"), TEXT + "🙂é\nz!c")

        self.assertTrue(self.probe("select", 4, 0))  # inside the family
        self.assertEqual(self.probe("get", "AXSelectedTextRange"), [4, 0])
        self.assertTrue(self.probe("select", 0, 1000))
        self.assertEqual(self.probe("get", "AXSelectedText"), TEXT + "🙂é\nz!c")
        self.assertTrue(self.probe("set", "AXValue", "a😀b"))
        self.assertEqual(self.probe("get", "AXValue"), "a😀b")
        self.check_long_text()
        self.check_hang(int(self.desktop.run("xdotool", "getwindowpid", identifier)))

    def test_mousepad_gtk3(self):
        self.check_editor(["mousepad", "--disable-server"], "Mousepad")

    def test_gnome_text_editor_gtk4(self):
        self.check_editor(["gnome-text-editor", "--standalone"], "Text Editor")

    def test_featherpad_qt(self):
        self.check_editor(["featherpad"], "^.?Untitled$")

    def test_xterm_answers_nothing(self):
        window = self.desktop.open("xterm", window="xterm")[1]
        self.assertTrue(wait_until(lambda: self.probe.error("focus") == "no value", 3))
        self.assertLess(self.probe.last["ms"], DEADLINE_MS)
        self.assertTrue(self.probe("window"), "but has a window")
        self.assertEqual(self.probe("get", "AXSize")[1], int(dict(line.split("=") for line in self.desktop.run(
            "xdotool", "getwindowgeometry", "--shell", window).split())["HEIGHT"]))
        self.assertEqual(self.probe.error("page"), "no value")

    def test_firefox(self):
        page = os.path.join(self.desktop.home, "page.html")
        with open(page, "w", encoding="utf-8") as file:
            file.write("<!doctype html><meta charset=utf-8><title>glymapage</title><input autofocus><br>"
                       "<textarea></textarea><div contenteditable><p>one</p><p>two</p></div><input type=password>")
        process, window = self.desktop.open(
            "firefox-esr", "--profile", self.desktop.home, "--new-instance", "file://" + page, window="glymapage")
        for field, role in (("input", "AXTextField"), ("textarea", "AXTextArea"), ("editable", "AXTextArea")):
            with self.subTest(field=field):
                self.focus(role)
                self.assertFalse(self.probe("password"))
                if field == "editable":  # each paragraph is an element of its own
                    self.desktop.key("ctrl+End")
                    self.focus(role)
                    self.assertEqual(self.probe("get", "AXValue"), "two")
                    self.assertEqual(self.probe("get", "AXSelectedTextRange"), [3, 0])
                self.desktop.key("ctrl+a", "BackSpace")
                self.focus(role)
                caret = self.write()
                self.focus(role)
                self.check_rectangles(caret, window)
                self.check_wrong_ranges(caret)
                self.select_query(caret)
                # The page does not let itself be edited; pasting over the selection has to do.
                self.assertEqual(self.probe.error("set", "AXSelectedText", "🙂"), "unsupported")
                self.desktop.paste("🙂é")
                self.assertEqual(self.probe("get", "AXValue").strip("\n"), TEXT + "🙂éc")
                for _ in range(20):
                    if self.probe("get", "AXRole") == "AXWebArea" or not self.probe("parent"):
                        break
                self.assertEqual(self.probe("get", "AXURL"), "file://" + page)
                self.desktop.key("Tab")
        self.focus("AXSecureTextField")
        self.assertTrue(wait_until(lambda: self.probe("password"), 2))
        self.desktop.open("xterm", window="xterm")
        self.assertTrue(wait_until(lambda: not self.probe("password"), 2), "the flag outlives the focus")
        self.desktop.activate(window)
        self.assertTrue(wait_until(lambda: self.probe("password"), 2), "the flag does not come back")


class NoBusTest(unittest.TestCase):
    def test_everything_fails_at_once(self):
        desktop = Desktop(with_accessibility=False)
        self.addCleanup(desktop.close)
        probe = Probe(desktop, os.environ["GLYMA_PROBE"])
        self.assertEqual(probe("status"), [False, False, False])
        self.assertEqual(probe.error("focus"), "failed")
        self.assertLess(probe.last["ms"], 10)
        self.assertFalse(probe("password"))


class LostBusTest(unittest.TestCase):
    def test_the_program_outlives_the_session_bus(self):
        desktop = Desktop()
        self.addCleanup(desktop.close)
        probe = Probe(desktop, os.environ["GLYMA_PROBE"])
        self.assertEqual(probe("status"), [True, True, True])
        bus = next(process for process in desktop.processes if process.args[0] == "dbus-daemon")
        bus.kill()
        time.sleep(1)
        self.assertIsNone(probe("focus"))
        self.assertLess(probe.last["ms"], DEADLINE_MS)
        self.assertIsNone(probe.process.poll())


if __name__ == "__main__":
    unittest.main()
