#!/usr/bin/python3
"""The picker's query follows the text of real applications; the picker follows their windows.

    test_query.py TARGET

TARGET  mousepad, gnome-text-editor, featherpad, firefox-input, firefox-textarea, firefox-contenteditable,
        completion-inline, completion-popup
"""

import os
import sys
import time

from applications import AccessibleEditor, FeatherPad, FirefoxField, GnomeTextEditor, Mousepad
from glyma import Glyma
from pointer import Pointer
from virtual_desktop import VirtualDesktop, connect_accessibility, wait_until

EDITORS = {"mousepad": Mousepad, "gnome-text-editor": GnomeTextEditor, "featherpad": FeatherPad}
TEXT = "caf\u00e9 \U0001f600 at 12:30, and more words to click into "
LIMIT = 0.1  # seconds in which the picker must follow
# What a look at the picker costs in this program comes on top, or three times what the slowest look has cost: where a
# look takes tenths of a second, so does everything else.
TOLERANCE = 0.1


class CompletingEditor(AccessibleEditor):
    def __init__(self, desktop, manner):
        self.name = f"completion-{manner}"
        self.manner = manner
        super().__init__(desktop)

    def command(self):
        return ["/usr/bin/python3", os.path.join(os.path.dirname(__file__), "completing_editor.py"), self.manner,
                self.file.name]


class Scene:
    def __init__(self, desktop, target):
        self.desktop = desktop
        self.target = target
        connect_accessibility(desktop)
        self.pointer = Pointer(desktop)
        self.glyma = Glyma(desktop, {"excludedApps": [], "debug.debugLogsEnabled": True}).start()
        desktop.set_clipboard("le")
        if target in EDITORS:
            self.application = EDITORS[target](desktop, TEXT)
            desktop.press("ctrl+End")
        elif target.startswith("completion-"):
            self.application = CompletingEditor(desktop, target.removeprefix("completion-"))
        else:
            self.application = FirefoxField(desktop, target.removeprefix("firefox-"), TEXT, TEXT)
        time.sleep(0.5)

    # What the user sees

    def picker_list(self):
        """The picker's list as assistive technology finds it, or nothing while it is closed."""
        from gi.repository import Atspi
        root = Atspi.get_desktop(0)
        for index in range(root.get_child_count()):
            application = root.get_child_at_index(index)
            if application and application.get_process_id() == self.glyma.process.pid:
                application.clear_cache()
                for number in range(application.get_child_count()):
                    window = application.get_child_at_index(number)
                    if window and window.get_role() == Atspi.Role.LIST:
                        return window
        return None

    def shown(self):
        """Trigger and query as the open picker shows them, "" while it is closed."""
        if not self.glyma.is_open():
            return ""
        if not getattr(self, "list", None):
            self.list = self.picker_list()
        if not self.list:
            return None
        self.list.clear_cache()
        return self.list.get_description()

    def expect_shown(self, echo, what, limit=LIMIT):
        start = time.monotonic()
        longest = 0.0

        def shows():
            nonlocal longest
            before = time.monotonic()
            found = self.shown()
            longest = max(longest, time.monotonic() - before)
            return found == echo

        try:
            wait_until(shows, 3, "the picker", interval=0.002)
        except TimeoutError:
            self.fail(f"{what}: the picker shows {self.shown()!r}, not {echo!r}")
        took = time.monotonic() - start
        print(f"    {what}: {echo!r} after {took * 1000:.0f} ms")
        if took > limit + max(TOLERANCE, 3 * longest):
            self.fail(f"{what}: took {took * 1000:.0f} ms")

    def text(self):
        return (self.application.text() or "").replace("\u00a0", " ").rstrip("\n")

    def expect_text(self, expected, what):
        try:
            wait_until(lambda: self.text() == expected, 3, "the text")
        except TimeoutError:
            self.fail(f"{what}: the text is {self.text()!r}, not {expected!r}")

    def fail(self, why):
        lines = [line for line in self.glyma.log.read_text().splitlines() if "[score" not in line]
        print("The program's last words:", *lines[-40:], sep="\n    ")
        raise SystemExit(f"{self.target}: {why}")

    def choose(self, query, before, what):
        """Return, and the text must be the one before with what the query finds first."""
        inserted = self.glyma.search(query)[0]["char"]
        self.desktop.press("Return")
        self.expect_text(before + inserted, what)
        return before + inserted

    # What the user does

    def window(self):
        return self.desktop.run(["xdotool", "getactivewindow"]).strip()

    def geometry(self, window):
        lines = self.desktop.run(["xdotool", "getwindowgeometry", "--shell", window])
        values = dict(line.split("=") for line in lines.split())
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def follow_the_text(self):
        text = TEXT
        self.desktop.type(":smi")
        self.expect_shown(":smi", "typed")
        self.desktop.press("ctrl+v")
        self.expect_shown(":smile", "pasted")
        self.desktop.press("ctrl+z")
        wait_until(lambda: self.text() != text + ":smile", 2, "the text to be undone")
        undone = self.text()
        query = undone.rpartition(":")[2] if undone.startswith(text + ":") else ""
        # Editors undo a paste, or all that was typed at once: then the trigger goes and the picker with it.
        self.expect_shown(":" + query if query else "", "undone")
        if not query:
            self.desktop.press("ctrl+End")
            self.desktop.type((":" if undone == text else "") + "smi")
            self.expect_shown(":smi", "typed again")
        self.desktop.press("BackSpace")
        self.desktop.type("ile")
        wait_until(lambda: self.text() == text + ":smile" or self.text() == text + ":" + query[:-1] + "ile", 2,
                   "the text to be typed")
        self.expect_shown(self.text()[len(text):], "corrected")
        text = self.choose(self.text()[len(text) + 1:], text, "chosen")

        self.desktop.press("ctrl+End")
        self.desktop.type(" :hea")
        self.expect_shown(":hea", "typed")
        self.desktop.press("ctrl+BackSpace")
        self.expect_shown("", "a word deleted")
        time.sleep(0.2)
        self.desktop.press("ctrl+End")
        text = self.text()
        self.desktop.type(" :heart")
        self.expect_shown(":heart", "typed after it")
        # Return at once behind the last letter.
        self.desktop.press("BackSpace", "t", "Return", delay=5)
        self.expect_text(text + " " + self.glyma.search("heart")[0]["char"], "chosen fast")

    def click_elsewhere(self):
        text = self.text()
        self.desktop.type(" :smi")
        self.expect_shown(":smi", "typed")
        x, y, width, height = self.click_target()
        self.pointer.click(x, y)
        self.expect_shown("", "clicked elsewhere", limit=0.15)
        self.desktop.type("z")
        time.sleep(0.2)
        if self.glyma.is_open():
            self.fail("a letter typed elsewhere opened the picker")
        self.desktop.press("BackSpace", "ctrl+End")
        for _ in range(4):
            self.desktop.press("BackSpace")
        self.expect_text(text + " ", "the typed text deleted")
        self.desktop.press("BackSpace")
        self.desktop.type(" :smil")
        self.expect_shown(":smil", "came back")
        self.choose("smil", text + " ", "chosen after it")

    def click_target(self):
        """A place in the text's first letters."""
        if self.target.startswith("firefox"):
            x, y, width, height = self.geometry(self.window())
            return x + 60, self.picker_top() - 12, width, height
        from gi.repository import Atspi
        box = self.application.element.get_extents(Atspi.CoordType.WINDOW)
        window = self.geometry(self.window())
        return window[0] + box.x + 40, self.picker_top() - 12, box.width, box.height

    def picker_top(self):
        return self.glyma.picker_geometry()[1]

    def click_into_the_picker(self):
        text = self.text()
        self.desktop.type(" :smile")
        self.expect_shown(":smile", "typed")
        x, y, width, _ = self.glyma.picker_geometry()
        self.pointer.click(x + 60, y + 100)
        time.sleep(0.3)
        if self.shown() != ":smile":
            self.fail("a click into the picker closed it")
        self.pointer.click(x + 60, y + 100)  # the second click chooses
        wait_until(lambda: not self.glyma.is_open(), 1, "the picker to close")
        wait_until(lambda: ":" not in self.text()[len(text):] and len(self.text()) > len(text) + 1, 2, "the choice")
        if not self.text().startswith(text + " "):
            self.fail(f"chosen by a click: the text is {self.text()!r}")
        print("    clicked a row twice: chosen")

    def drag_the_window(self):
        text = self.text()
        window = self.window()
        self.desktop.run(["xdotool", "windowsize", "--sync", window, 800, 420])
        self.desktop.run(["xdotool", "windowmove", window, 60, 60])
        time.sleep(0.5)
        self.desktop.type(" :smil")
        self.expect_shown(":smil", "typed")
        picker, before = self.glyma.picker_geometry(), self.geometry(window)
        # Alt and the left button drag a window by any place of it.
        self.desktop.run(["xdotool", "keydown", "alt"])
        self.pointer.drag((before[0] + 300, before[1] + 200), (140, 90))
        self.expect_offset(window, picker, before, "while dragging")
        self.pointer.drop()
        self.desktop.run(["xdotool", "keyup", "alt"])
        self.expect_offset(window, picker, before, "dropped")
        if abs(self.geometry(window)[0] - before[0] - 140) > 4:
            self.fail(f"the window has not been dragged: {before} to {self.geometry(window)}")
        self.choose("smil", text + " ", "chosen after dragging")

    def expect_offset(self, window, picker, before, what):
        def follows():
            now, moved = self.glyma.picker_geometry(), self.geometry(window)
            return (now[0] - picker[0], now[1] - picker[1]) == (moved[0] - before[0], moved[1] - before[1])
        try:
            wait_until(follows, 0.6, what)
        except TimeoutError:
            self.fail(f"{what}: the window went from {before} to {self.geometry(window)}, the picker from {picker} to "
                      f"{self.glyma.picker_geometry() if self.glyma.is_open() else 'nowhere'}")
        print(f"    {what}: the picker has moved with the window")

    def switch_windows(self):
        target = self.window()
        self.desktop.start(["xterm", "-title", "another"])
        other = wait_until(lambda: self.desktop.windows("--name", "^another$"), 10, "another window")[0]
        self.desktop.run(["xdotool", "windowactivate", "--sync", target])
        time.sleep(0.5)
        self.desktop.type(" :smi")
        self.expect_shown(":smi", "typed")
        self.desktop.run(["xdotool", "windowactivate", other])
        self.expect_shown("", "switched windows", limit=0.2)

    def complete(self):
        self.desktop.type(":he")
        if self.target == "completion-inline":
            self.expect_shown(":he", "completed, not yet accepted")
            self.choose("he", "", "chosen while the completion is selected")
            return
        self.expect_shown(":he", "typed")
        self.desktop.press("Tab")
        self.expect_shown(":heart", "completed")
        self.choose("heart", "", "chosen")


def main():
    with VirtualDesktop() as desktop:
        scene = Scene(desktop, sys.argv[1])
        if scene.target.startswith("completion-"):
            scene.complete()
        else:
            for step in (scene.follow_the_text, scene.click_elsewhere, scene.click_into_the_picker,
                         scene.drag_the_window, scene.switch_windows):
                print(step.__name__.replace("_", " "))
                step()
        if scene.glyma.stop() != 0:
            raise SystemExit("glyma did not end cleanly on SIGTERM")
    print(f"{sys.argv[1]}: the picker follows")


if __name__ == "__main__":
    main()
