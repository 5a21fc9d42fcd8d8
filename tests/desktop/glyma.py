"""The program under test, on a virtual desktop, with folders of its own."""

import json
import os
from pathlib import Path

from virtual_desktop import ROOT, connect_accessibility, wait_until

# A catalogue made once serves every test: importing takes longer than copying.
BINARY = Path(os.environ.get("GLYMA_BINARY", ROOT / "build/release/bin/glyma"))


def names_below(element):
    for index in range(element.get_child_count()):
        child = element.get_child_at_index(index)
        if child:
            yield child.get_name()
            yield from names_below(child)


class Glyma:
    def __init__(self, desktop, settings=None):
        self.desktop = desktop
        self.data = desktop.home / "glyma-data"
        self.config = desktop.home / "glyma-config"
        desktop.environment["GLYMA_DATA_DIR"] = str(self.data)
        desktop.environment["GLYMA_CONFIG_DIR"] = str(self.config)
        self.process = None
        self.log = desktop.home / "glyma.log"
        if settings:
            self.write_settings(settings)

    def write_settings(self, settings):
        """Adds to the settings file; the program must not be running."""
        self.config.mkdir(parents=True, exist_ok=True)
        file = self.config / "settings.json"
        current = json.loads(file.read_text()) if file.exists() else {}
        file.write_text(json.dumps({**current, **settings}))

    def settings(self):
        return json.loads((self.config / "settings.json").read_text())

    def command(self, *arguments, **options):
        return self.desktop.run([BINARY, *arguments], **options)

    def search(self, query):
        return json.loads(self.command("search", "--json", "--limit", "50", "--", query))

    def start(self):
        """Imports first when there is no catalogue yet, starts the program and waits until it hears keys."""
        self.command("import")
        with open(self.log, "ab") as log:
            self.process = self.desktop.start([BINARY], stderr=log)
        wait_until(self.is_ready, 15, "the program to be ready")
        return self

    def is_ready(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"glyma ended with {self.process.returncode}: {self.log.read_text()}")
        # Answered by the main loop, which runs only after everything has been started.
        answer = self.desktop.run(["gdbus", "introspect", "--session", "--dest", "net.quillaby.Glyma", "--object-path",
                                   "/net/quillaby/Glyma"], check=False)
        return "Activate" in answer

    def stop(self):
        status = self.desktop.end(self.process)
        self.process = None
        return status

    def is_open(self):
        return bool(self.picker_windows())

    def picker_windows(self):
        return self.desktop.windows("--name", "^Glyma picker$")

    def info_windows(self):
        return self.desktop.windows("--name", "^Character Info$")

    def info_shows(self):
        """What a screen reader finds in the character information: a list of its texts, in their order."""
        connect_accessibility(self.desktop)
        from gi.repository import Atspi
        root = Atspi.get_desktop(0)
        for index in range(root.get_child_count()):
            application = root.get_child_at_index(index)
            if application and application.get_process_id() == self.process.pid:
                application.clear_cache()
                for number in range(application.get_child_count()):
                    window = application.get_child_at_index(number)
                    if window and window.get_name() == "Character Info":
                        return [name for name in names_below(window)]
        return []

    def picker_geometry(self):
        """x, y, width, height of the open picker."""
        lines = self.desktop.run(["xdotool", "getwindowgeometry", "--shell", self.picker_windows()[0]])
        values = dict(line.split("=") for line in lines.split())
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))
