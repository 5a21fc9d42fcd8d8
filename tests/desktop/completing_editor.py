#!/usr/bin/python3
"""A line to type into that completes words as they are typed: completing_editor.py inline|popup FILE

inline  what completes the word appears selected behind the caret; Right or End accepts it
popup   a list opens below, as in editors for programmers; Tab accepts its first word
"""

import sys

import gi
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk

WORDS = ["smile", "heart", "rocket"]


def main():
    manner, name = sys.argv[1:3]
    window = Gtk.Window(title=name)
    view = Gtk.TextView(monospace=True)
    view.get_accessible().set_name("line")
    buffer = view.get_buffer()

    def word_before_caret():
        caret = buffer.get_iter_at_mark(buffer.get_insert())
        text = buffer.get_text(buffer.get_start_iter(), caret, True)
        return text.rpartition(":")[2] if ":" in text else ""

    def completion():
        word = word_before_caret()
        return next((each[len(word):] for each in WORDS if len(word) >= 2 and each.startswith(word)), "")

    def key_released(_, event):
        text = completion()
        if manner != "inline" or event.keyval not in range(Gdk.KEY_a, Gdk.KEY_z + 1) or not text:
            return False
        start = buffer.get_iter_at_mark(buffer.get_insert()).get_offset()
        buffer.insert_at_cursor(text)
        buffer.select_range(buffer.get_iter_at_offset(start), buffer.get_iter_at_offset(start + len(text)))
        return False

    def key_pressed(_, event):
        if manner == "popup" and event.keyval == Gdk.KEY_Tab and completion():
            buffer.insert_at_cursor(completion())
            return True
        return False

    view.connect("key-release-event", key_released)
    view.connect("key-press-event", key_pressed)
    window.add(view)
    window.set_default_size(700, 300)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


main()
