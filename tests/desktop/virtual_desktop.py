"""A desktop of its own for tests and pictures: a virtual X display, a session bus, accessibility, a window manager.

Everything it starts it ends again, by process id. One desktop a Python process: AT-SPI connects once.
"""

import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent


def wait_until(condition, seconds, what, interval=0.02):
    """Returns the first true value of the condition, or fails after so many seconds."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {seconds} s for {what}")
        time.sleep(interval)


def connect_accessibility(desktop):
    """Has this process read what the desktop's programs tell assistive technology, by gi.repository.Atspi."""
    os.environ.update({name: desktop.environment[name] for name in
                       ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "HOME")})
    import gi
    gi.require_version("Atspi", "2.0")


class VirtualDesktop:
    """`with VirtualDesktop() as desktop:` - `desktop.environment` is what programs on it are started with."""

    def __init__(self, size="1280x800", compositor=False, theme="light"):
        self.size = size
        self.compositor = compositor
        self.theme = theme
        self.processes = []
        self.home = None

    def __enter__(self):
        self.home = Path(tempfile.mkdtemp(prefix="glyma-desktop-"))
        runtime = self.home / "run"
        runtime.mkdir(mode=0o700)
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/games",
            "HOME": str(self.home),
            "XDG_RUNTIME_DIR": str(runtime),
            "LANG": "C.UTF-8",
            "GDK_BACKEND": "x11",
            "QT_QPA_PLATFORM": "xcb",
            "MOZ_ENABLE_WAYLAND": "0",
            "NO_AT_BRIDGE": "0",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "GLYMA_THEME": self.theme,
        }
        for name in ("ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]
        try:
            self._start_display()
            self._start_bus()
            self._start_window_manager()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            self.end(process)
        self.processes.clear()
        if self.home:
            shutil.rmtree(self.home, ignore_errors=True)

    def start(self, command, **options):
        """Starts a program on this desktop; it ends with the desktop at the latest."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        options.setdefault("stdin", subprocess.DEVNULL)
        environment = {**self.environment, **options.pop("environment", {})}
        process = subprocess.Popen([str(part) for part in command], env=environment, start_new_session=True, **options)
        self.processes.append(process)
        return process

    @staticmethod
    def end(process, seconds=3):
        """Ends the program and what it started; returns its exit status."""
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(seconds)
            except subprocess.TimeoutExpired:
                process.kill()
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        return process.wait()

    def run(self, command, check=True, **options):
        """Runs a command on this desktop to its end; returns what it printed."""
        environment = {**self.environment, **options.pop("environment", {})}
        result = subprocess.run([str(part) for part in command], env=environment, check=False, text=True,
                                stdin=options.pop("stdin", subprocess.DEVNULL), stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, timeout=options.pop("timeout", 60), **options)
        if check and result.returncode:
            raise RuntimeError(f"{command} ended with {result.returncode}: {result.stderr}")
        return result.stdout

    # Input and output, as a user has them

    def type(self, text, delay=15):
        self.run(["xdotool", "type", "--delay", delay, "--", text])

    def press(self, *keys, delay=15):
        self.run(["xdotool", "key", "--delay", delay, "--", *keys])

    def set_layout(self, *arguments):
        self.run(["setxkbmap", *arguments])

    def set_clipboard(self, text):
        # xclip stays behind as the owner and would keep a pipe open.
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.environment, input=text.encode(), check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def clipboard(self):
        return self.run(["xclip", "-selection", "clipboard", "-o"], timeout=5)

    def picture(self, file):
        """Saves what the screen shows as a PNG."""
        Path(file).parent.mkdir(parents=True, exist_ok=True)
        self.run(["import", "-window", "root", file])

    def windows(self, *criteria):
        """Ids of the visible windows that xdotool finds by the criteria."""
        return self.run(["xdotool", "search", "--onlyvisible", *criteria], check=False).split()

    # The parts

    def _start_display(self):
        reading, writing = os.pipe()
        process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{self.size}x24", "-noreset", "-nolisten", "tcp"],
            pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        self.processes.append(process)
        os.close(writing)
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.environment["DISPLAY"] = f":{number}"

    def _start_bus(self):
        process = self.start(["dbus-daemon", "--session", "--nofork", "--print-address"], stdout=subprocess.PIPE,
                             text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = process.stdout.readline().strip()
        self.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus", "--method",
                  "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>"])

    def _start_window_manager(self):
        self.start(["openbox"])
        wait_until(lambda: "window id" in self.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], check=False), 10,
                   "the window manager")
        if self.compositor:
            self.start(["picom", "--backend", "xrender", "--config", "/dev/null", "--shadow-exclude", "name *= 'x'"])
            time.sleep(0.5)
