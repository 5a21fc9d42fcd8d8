"""The preferences window as someone has it who works by keyboard and screen reader: through AT-SPI and key presses."""

import os

from glyma import BINARY
from virtual_desktop import wait_until

# Seconds; a busy machine needs them, and what works does not wait.
PATIENCE = 10


class PreferencesWindow:
    """The window of a running program; elements are found by role and by the name that is read out."""

    def __init__(self, desktop, glyma):
        self.desktop = desktop
        self.glyma = glyma
        os.environ.update({name: desktop.environment[name] for name in
                           ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "HOME")})
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self.atspi = Atspi
        self.gone = GLib.Error

    def open(self, tab=None):
        self.desktop.run([BINARY, "preferences", *([tab] if tab else [])])
        self.bring_to_front()
        return self

    def bring_to_front(self):
        window = wait_until(lambda: self.desktop.windows("--name", "^Glyma Settings$"), PATIENCE, "the preferences window")[0]
        self.desktop.run(["xdotool", "windowactivate", "--sync", window])
        wait_until(lambda: self.focused(), PATIENCE, "the preferences to have the focus")

    def is_open(self):
        return bool(self.desktop.windows("--name", "^Glyma Settings$"))

    def close(self):
        self.bring_to_front()
        self.desktop.press("ctrl+w")
        wait_until(lambda: not self.is_open(), PATIENCE, "the preferences to close")

    # Looking

    def elements(self):
        """What is on the screen of the program's windows, in reading order."""
        try:
            root = self.atspi.get_desktop(0)
            for index in range(root.get_child_count()):
                application = root.get_child_at_index(index)
                if application and application.get_process_id() == self.glyma.process.pid:
                    for window in self._children(application):
                        yield from self._walk(window)
        except self.gone:
            return

    def _children(self, element):
        element.clear_cache()
        return [child for child in map(element.get_child_at_index, range(element.get_child_count())) if child]

    def _walk(self, element):
        # What scrolls into view says nothing of it.
        element.clear_cache()
        if not element.get_state_set().contains(self.atspi.StateType.SHOWING):
            return
        yield element
        for child in self._children(element):
            yield from self._walk(child)

    def name(self, element):
        """The name of its label where it has one: a drop-down list's own name is its choice."""
        for relation in element.get_relation_set():
            if relation.get_relation_type() == self.atspi.RelationType.LABELLED_BY:
                return relation.get_target(0).get_name()
        return element.get_name()

    def find(self, role, name):
        for element in self.elements():
            if element.get_role_name() == role and self.name(element) == name:
                return element
        return None

    def get(self, role, name):
        return wait_until(lambda: self.find(role, name), PATIENCE, f"a {role} named {name}")

    def has(self, element, state):
        element.clear_cache()
        return element.get_state_set().contains(getattr(self.atspi.StateType, state))

    def focused(self):
        return next((element for element in self.elements() if self.has(element, "FOCUSED")
                     and element.get_role_name() != "list item"), None)

    def is_on(self, name):
        return self.has(self.get("check box", name), "CHECKED")

    def choice(self, name):
        element = self.get("combo box", name)
        element.clear_cache()
        return element.get_name()

    def text(self, name):
        element = self.get("text", name)
        return element.get_text(0, element.get_character_count())

    def says(self, text):
        return any(text in (element.get_name() or "") for element in self.elements())

    def wait_for(self, text):
        wait_until(lambda: self.says(text), PATIENCE, f"the words {text}")

    # Doing

    def go_to(self, role, name):
        """Moves the focus there by the Tab key."""
        for _ in range(60):
            element = self.get(role, name)
            if self.has(element, "FOCUSED"):
                return element
            before = self.focused()
            self.desktop.press("Tab")
            wait_until(lambda: self.focused() != before, PATIENCE, f"Tab to move on towards {name}")
        raise RuntimeError(f"Tab does not reach {name}")

    def switch(self, name, to=True):
        if self.is_on(name) == to:
            return
        self.go_to("check box", name)
        self.desktop.press("space")
        wait_until(lambda: self.is_on(name) == to, PATIENCE, f"{name} to change")

    def choose(self, name, label):
        self.go_to("combo box", name)
        self.desktop.press("Home")
        for _ in range(20):
            if self.choice(name) == label:
                return
            before = self.choice(name)
            self.desktop.press("Down")
            wait_until(lambda: self.choice(name) != before, PATIENCE, f"{name} to change")
        raise RuntimeError(f"{name} does not offer {label}")

    def enter(self, name, text):
        self.go_to("text", name)
        self.desktop.press("ctrl+a")
        self.desktop.type(text)

    def press(self, name):
        self.go_to("push button", name)
        self.desktop.press("space")
