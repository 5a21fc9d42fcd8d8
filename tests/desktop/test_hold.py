#!/usr/bin/python3
"""Types on without waiting for the insertion: nothing may be lost, doubled or out of order.

    test_hold.py TARGET [--runs N]

TARGET  mousepad, gnome-text-editor, featherpad, firefox-textarea, recorder (a window that writes down its keys)
"""

import argparse
import os
import re
import signal
import time

from applications import FeatherPad, FirefoxField, GnomeTextEditor, Mousepad
from glyma import Glyma
from test_keys import Recorder
from virtual_desktop import VirtualDesktop, wait_until

EDITORS = {"mousepad": Mousepad, "gnome-text-editor": GnomeTextEditor, "featherpad": FeatherPad}
# Snippets, because what the ranking learns from these choices must not change the next ones; of more than one
# character, because a character is found under its own names alone.
INSERTED = {"qsmile": "<\U0001f604>", "qheart": "<\u2764\ufe0f>", "qrocket": "<\U0001f680>", "qpizza": "<\U0001f355>",
            "qfamily": "<\U0001f468\u200d\U0001f469\u200d\U0001f467>", "qthumb up": "<\U0001f44d>",
            "qsun": "<\u2600\ufe0f>", "qeuro": "<\u20ac>", "qletter": "<\u0416>", "qwords": "two words"}
QUERIES = list(INSERTED)
SENTENCE = ["So ", " aLL is WELL, ", " too... ", " (yes!) ", " and ", " better? ", " now ", " it goes ", " on; ", " to "]


NAMES = {" ": "space", "\n": "Return", ":": "colon", ",": "comma", ".": "period", "(": "parenleft", ")": "parenright",
         "!": "exclam", "?": "question", ";": "semicolon"}


def settings():
    return {
        "userReplacements": [{"id": f"5B0F3F0C-3B0E-4B51-9D7A-0A3C6A8B1F{number:02}", "name": query, "keywords": [query],
                              "text": text} for number, (query, text) in enumerate(INSERTED.items())],
        "excludedApps": [],
        "debug.debugLogsEnabled": True,
    }


class Failure(Exception):
    pass


def type_keys(desktop, text, delay):
    """One key every so many milliseconds, down for half of them; a line end is Return."""
    desktop.press(*[NAMES.get(character, character) for character in text], delay=delay)


class Run:
    def __init__(self, desktop, target):
        self.desktop = desktop
        self.glyma = Glyma(desktop, settings()).start()
        self.outcomes = {}
        if target in EDITORS:
            self.application = EDITORS[target](desktop)
        else:
            self.application = FirefoxField(desktop, target.removeprefix("firefox-"), "text", "text")
            self.clear()

    def text(self):
        """Absent while the application does not answer."""
        from gi.repository import GLib
        try:
            text = self.application.text() or ""
        except GLib.Error:
            return None
        # gnome-text-editor and Firefox count a last empty line
        return text.removesuffix("\n")

    def clear(self):
        self.desktop.press("ctrl+a", "BackSpace")
        self.expect("", "an empty text")

    def expect(self, text, what, seconds=12):
        try:
            wait_until(lambda: self.text() == text, seconds, what)
            time.sleep(0.05)
            if self.text() == text:
                return
        except TimeoutError:
            pass
        raise Failure(f"{what}\n    expected {text!r}\n    found    {self.text()!r}")

    def type_at_once_after_return(self):
        self.desktop.type("x:qsmile", 15)
        self.desktop.press("Return", "o", "k", delay=5)
        self.expect(f"x{INSERTED['qsmile']}ok", "ok 5 ms after Return")

    def type_a_sentence_through_ten_choices(self):
        typed = "".join(f"{words}:{query}\n" for words, query in zip(SENTENCE, QUERIES)) + " the end."
        expected = "".join(words + INSERTED[query] for words, query in zip(SENTENCE, QUERIES)) + " the end."
        type_keys(self.desktop, typed, 10)
        self.expect(expected, "a sentence at 10 ms a key", 40)

    def hang(self, seconds):
        os.killpg(self.application.process.pid, signal.SIGSTOP)
        try:
            yield
            time.sleep(seconds)
        finally:
            os.killpg(self.application.process.pid, signal.SIGCONT)

    def choose_while_hanging(self, seconds):
        self.desktop.type("x:qsmile", 15)
        wait_until(lambda: self.text() == "x:qsmile", 3, "the query")
        for _ in self.hang(seconds):
            self.desktop.press("Return", "o", "k", delay=5)

    def type_while_the_target_hangs_for_a_moment(self):
        self.choose_while_hanging(0.6)
        # It may not have told in time what it did: then nothing more is done to the text.
        self.expect_keys_once(["x{}ok", "x:qsmileok"])

    def type_while_the_target_hangs_for_long(self):
        self.choose_while_hanging(2.5)
        # The keys were let go after a second and a half; what was pasted may come behind them.
        self.expect_keys_once(["x{}ok", "x:qsmileok", "xok{}", "xok", "xo{}k"])

    def expect_keys_once(self, patterns):
        texts = [pattern.format(INSERTED["qsmile"]) for pattern in patterns]
        try:
            wait_until(lambda: self.text() in texts, 8, "the text")
            time.sleep(1)
        except TimeoutError:
            pass
        if self.text() not in texts:
            raise Failure(f"a hanging target\n    expected one of {texts}\n    found    {self.text()!r}")
        self.outcomes[self.text()] = self.outcomes.get(self.text(), 0) + 1

    def check(self, runs):
        parts = [self.type_at_once_after_return, self.type_a_sentence_through_ten_choices,
                 self.type_while_the_target_hangs_for_a_moment, self.type_while_the_target_hangs_for_long]
        failed = 0
        for number in range(runs):
            for part in parts:
                if part == self.type_while_the_target_hangs_for_long and number % 10:
                    continue
                try:
                    part()
                except Failure as failure:
                    failed += 1
                    print(f"run {number + 1}: {failure}", flush=True)
                    lines = [line for line in self.glyma.log.read_text().splitlines() if "[score" not in line]
                    print("The program's last words:", *lines[-40:], sep="\n    ", flush=True)
                time.sleep(0.6)
                self.clear()
        print("a hanging target left", self.outcomes)
        return failed


def check_recorder(desktop, runs):
    """A window without text: what reaches it is exactly what was typed, whatever is typed for the user in between."""
    Glyma(desktop, {"excludedApps": []}).start()
    recorder = Recorder(desktop)
    failed = 0
    for number in range(runs):
        recorder.lines.clear()
        type_keys(desktop, "ab:smile\ncDe:heart\nfgH", 10)
        expected = list("ab") + ["colon"] + list("smilecDe") + ["colon"] + list("heartfgH")
        ours = ("BackSpace", "v", "Control_L", "Shift_L", "NoSymbol")

        def keys():
            return [key for key in recorder.pressed() if key not in ours]
        try:
            wait_until(lambda: len(keys()) >= len(expected), 10, "the keys")
        except TimeoutError:
            pass
        time.sleep(0.3)
        down = set()
        pairs = True
        for line in recorder.lines:
            if match := re.match(r"(press|release) keycode=(\d+)", line):
                pairs = pairs and (match[1] == "press") != (match[2] in down)
                down.symmetric_difference_update([match[2]])
        problems = [what for what, wrong in (
            (f"keys {keys()}", keys() != expected), ("an unpaired press or release", not pairs),
            (f"still down {down}", bool(down)), ("a focus change", bool(recorder.focus_changes()))) if wrong]
        if problems:
            failed += 1
            print(f"run {number + 1}:", *problems, *recorder.lines, sep="\n    ", flush=True)
    return failed


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("target")
    arguments.add_argument("--runs", type=int, default=3)
    options = arguments.parse_args()
    with VirtualDesktop() as desktop:
        if options.target == "recorder":
            failed = check_recorder(desktop, options.runs)
        else:
            failed = Run(desktop, options.target).check(options.runs)
    if failed:
        raise SystemExit(f"{options.target}: {failed} failures in {options.runs} runs")
    print(f"{options.target}: {options.runs} runs, each exactly right")


if __name__ == "__main__":
    main()
