#!/usr/bin/python3
"""Shows Glyma at work on a virtual display: types ":smile" into a real editor, chooses, prints the text that resulted
and saves a picture of the open picker (default: glyma-demo.png)."""

import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/desktop"))

from applications import Mousepad
from glyma import Glyma
from virtual_desktop import VirtualDesktop, wait_until


def main():
    picture = Path(sys.argv[1] if len(sys.argv) > 1 else "glyma-demo.png")
    with VirtualDesktop(size="800x600") as desktop:
        print("Starting Glyma and an editor on a virtual display ...", flush=True)
        glyma = Glyma(desktop)
        print(glyma.command("import", timeout=120), end="", flush=True)
        glyma.start()
        editor = Mousepad(desktop)
        desktop.type(":smile", 60)
        wait_until(glyma.is_open, 5, "the picker")
        time.sleep(0.5)
        desktop.picture(picture)
        desktop.press("Return")
        wait_until(lambda: ":" not in editor.text(), 5, "the insertion")
        time.sleep(0.1)
        print(f"Typed \":smile\" and Return into Mousepad. Its text is now: {editor.text().rstrip()}")
        print(f"A picture of the open picker: {picture}")


if __name__ == "__main__":
    main()
