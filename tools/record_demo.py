#!/usr/bin/python3
"""Records the demonstration of the README: a real editor on a virtual display, somebody types, Glyma helps.

    tools/record_demo.py [FILE]     default: docs/images/demo.gif

Needs the packages of `tools/install-dependencies.sh build run demo pictures`.
"""

import signal
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/desktop"))

from applications import GnomeTextEditor
from glyma import Glyma
from virtual_desktop import ROOT, VirtualDesktop, wait_until

SIZE = "680x600"
FRAMES_PER_SECOND = 15
# One palette for all frames, so that nothing flickers.
FILTER = f"fps={FRAMES_PER_SECOND},split[a][b];[a]palettegen=max_colors=160[p];[b][p]paletteuse=dither=none"


class Notes(GnomeTextEditor):
    name = "notes"

    def command(self):
        self.file = self.file.rename(self.file.with_name("Notes.txt"))
        return super().command()


class Typist:
    """Types as a person does, and looks before choosing."""

    def __init__(self, desktop, glyma):
        self.desktop = desktop
        self.glyma = glyma

    def write(self, text):
        self.desktop.type(text, 55)

    def choose(self, query, down=0):
        self.write(":" + query)
        wait_until(self.glyma.is_open, 5, "the picker")
        time.sleep(0.35)
        for _ in range(down):
            self.desktop.press("Down")
            time.sleep(0.2)
        time.sleep(0.25)
        self.desktop.press("Return")
        wait_until(lambda: not self.glyma.is_open(), 5, "the picker to close")


def record(desktop, file):
    return subprocess.Popen(
        ["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-draw_mouse", "0", "-framerate",
         str(FRAMES_PER_SECOND), "-video_size", SIZE, "-i", desktop.environment["DISPLAY"], "-c:v", "ffv1", str(file)],
        stdin=subprocess.DEVNULL)


def main():
    picture = Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "docs/images/demo.gif")
    with VirtualDesktop(size=SIZE, compositor=True) as desktop:
        glyma = Glyma(desktop)
        glyma.start()
        editor = Notes(desktop)
        window = desktop.windows("--class", "gnome-text-editor")[-1]
        desktop.run(["xdotool", "windowsize", "--sync", window, "640", "420"])
        desktop.run(["xdotool", "windowmove", "--sync", window, "20", "16"])
        recording = desktop.home / "demo.mkv"
        camera = record(desktop, recording)
        typist = Typist(desktop, glyma)
        time.sleep(0.3)
        typist.write("Lunch? ")
        typist.choose("pizza")
        typist.write(" at 1 ")
        typist.choose("arrow", down=2)
        typist.write(" the usual place ")
        typist.choose("thumbs up")
        time.sleep(1)
        camera.send_signal(signal.SIGINT)
        camera.wait(10)
        print(editor.text().rstrip())
        subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-i", str(recording), "-filter_complex", FILTER, str(picture)],
                       check=True)
    print(f"{picture}: {picture.stat().st_size // 1024} KiB")


if __name__ == "__main__":
    main()
