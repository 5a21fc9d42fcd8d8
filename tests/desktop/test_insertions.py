#!/usr/bin/python3
"""Types into a real application, again and again, and compares the text that results with the text that should.

    test_insertions.py TARGET VARIANT [COUNT]

TARGET   mousepad, gnome-text-editor, featherpad, firefox-input, firefox-textarea, firefox-contenteditable, xterm
VARIANT  plain, german, caps-lock, snippet
"""

import sys
import time
import unicodedata

from applications import FeatherPad, FirefoxField, GnomeTextEditor, Mousepad, XTerm
from glyma import Glyma
from virtual_desktop import VirtualDesktop, wait_until

BEFORE = "caf\u00e9 e\u0301 \U0001f600 \U0001f468\u200d\U0001f469\u200d\U0001f467 ["
AFTER = "] nach \U0001f680 Ende"
CLIPBOARD = "what the user copied \U0001f4cb \u00fc"
EDITORS = {"mousepad": Mousepad, "gnome-text-editor": GnomeTextEditor, "featherpad": FeatherPad}
QUERIES = {
    "plain": ["smile", "heart", "thumbs up", "cat", "s", "rocket", "pizza", "+1", "no entry", "arrow"],
    "german": ["zebra", "yen", "pizza", "jazz", "z", "crazy", "smile"],
    "caps-lock": ["smile", "heart", "cat"],
    "snippet": ["qaddress"],
}
SNIPPET = "Quillaby House\n1 Main Street \U0001f3e0\n\tback door"
DELAY = 15
# Seconds. An application that did not answer once is left alone for two, and then asked again.
PATIENCE = 8


def settings():
    return {
        "userReplacements": [{"id": "5B0F3F0C-3B0E-4B51-9D7A-0A3C6A8B1F11", "name": "Where I live",
                              "keywords": ["qaddress"], "text": SNIPPET}],
        "excludedApps": [],
        "debug.debugLogsEnabled": True,
    }


class Run:
    def __init__(self, desktop, target, variant):
        self.desktop = desktop
        self.target = target
        self.variant = variant
        self.glyma = Glyma(desktop, settings())

    def prepare(self):
        if self.variant == "german":
            self.desktop.set_layout("de")
        self.glyma.start()
        self.desktop.set_clipboard(CLIPBOARD)
        self.open_target()
        if self.variant == "caps-lock":
            self.desktop.press("Caps_Lock")

    def open_target(self):
        if self.target in EDITORS:
            self.application = EDITORS[self.target](self.desktop, BEFORE + AFTER)
            self.application.place_caret(BEFORE)
        elif self.target.startswith("firefox-"):
            self.application = FirefoxField(self.desktop, self.target.removeprefix("firefox-"), BEFORE + AFTER, BEFORE)
        else:
            self.application = XTerm(self.desktop)

    def expected_insertion(self, query):
        """What choosing the first result inserts, asked of the program's own ranking beforehand."""
        if self.variant == "snippet":
            return SNIPPET
        return self.glyma.search(query)[0]["char"]

    def as_shown(self, inserted):
        # A field of one line has no place for line ends: Firefox pastes spaces instead.
        return " ".join(inserted.splitlines()) if self.target == "firefox-input" else inserted

    def insert(self, number):
        queries = QUERIES[self.variant]
        query = queries[number % len(queries)]
        inserted = self.expected_insertion(query)
        self.desktop.type(":" + query, DELAY)
        self.desktop.press("Return")
        return query, inserted

    def fail(self, number, query, expected, found):
        print(f"{number + 1:3} :{query}  FAIL\n    expected {expected}\n    found    {found}")
        lines = [line for line in self.glyma.log.read_text().splitlines() if "[score" not in line]
        print("The program's last words:", *lines[-30:], sep="\n    ")
        raise SystemExit(f"{self.target} {self.variant}: stopped at insertion {number + 1}")

    def check_editor(self, count):
        typed = ""
        for number in range(count):
            query, inserted = self.insert(number)
            typed += self.as_shown(inserted)
            self.wait_for_text(number, query, BEFORE + typed + AFTER, len(BEFORE + typed))
            # Now and then a plain letter in between: nothing of ours may be left behind that takes it.
            if number % 5 == 4:
                self.desktop.type("xy", DELAY)
                typed += "XY" if self.variant == "caps-lock" else "xy"
                self.wait_for_text(number, "(plain letters)", BEFORE + typed + AFTER, len(BEFORE + typed))

    def wait_for_text(self, number, query, expected, caret):
        try:
            wait_until(lambda: (self.application.text() or "").rstrip("\n") == expected, PATIENCE, "the text")
            wait_until(lambda: self.application.caret() == caret, 1, "the caret")
        except TimeoutError:
            self.fail(number, query, f"{expected!r} caret {caret}",
                      f"{self.application.text()!r} caret {self.application.caret()}")

    def check_terminal(self, count):
        lines = ""
        for number in range(count):
            self.desktop.type("a", DELAY)
            query, inserted = self.insert(number)
            time.sleep(0.05 + 0.02 * (len(query) + 1) + 0.35)
            self.desktop.type("b", DELAY)
            self.desktop.press("Return")
            lines += f"a{inserted}b\n".upper() if self.variant == "caps-lock" else f"a{inserted}b\n"
            try:
                wait_until(lambda: self.application.lines() == lines, 3, "the line")
            except TimeoutError:
                self.fail(number, query, repr(lines), repr(self.application.lines()))

    def check_clipboard(self):
        try:
            wait_until(lambda: self.desktop.clipboard() == CLIPBOARD, 2, "the clipboard")
        except TimeoutError:
            raise SystemExit(f"{self.target} {self.variant}: the clipboard holds {self.desktop.clipboard()!r}")


def main():
    target, variant = sys.argv[1:3]
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 20
    with VirtualDesktop() as desktop:
        run = Run(desktop, target, variant)
        run.prepare()
        if target == "xterm":
            run.check_terminal(count)
        else:
            run.check_editor(count)
        run.check_clipboard()
        if run.glyma.stop() != 0:
            raise SystemExit("glyma did not end cleanly on SIGTERM")
    print(f"{target} {variant}: {count} insertions, each exactly right")


if __name__ == "__main__":
    main()
