"""A desktop for tests: X server, window manager, session bus, accessibility bus, and real applications on it."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time


def wait_until(condition, seconds=15, interval=0.05):
    """The first true value of the condition, or its last value."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value or time.monotonic() > end:
            return value
        time.sleep(interval)


class Desktop:
    def __init__(self, with_accessibility=True):
        self.processes = []
        self.home = tempfile.mkdtemp(prefix="glyma-test-")
        runtime = os.path.join(self.home, "runtime")
        os.mkdir(runtime, 0o700)
        self.environment = {
            "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "HOME": self.home, "XDG_RUNTIME_DIR": runtime,
            "GDK_BACKEND": "x11", "QT_QPA_PLATFORM": "xcb", "MOZ_ENABLE_WAYLAND": "0",
        }
        server = self.start("Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-noreset",
                            stdout=subprocess.PIPE)
        self.environment["DISPLAY"] = ":" + server.stdout.readline().decode().strip()
        if with_accessibility:
            bus = self.start("dbus-daemon", "--session", "--nofork", "--print-address=1", stdout=subprocess.PIPE)
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
            self.run("gsettings", "set", "org.xfce.mousepad.preferences.file", "session-restore", "never")
        else:
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + os.path.join(self.home, "nothing")
        self.start("openbox")
        wait_until(lambda: "window" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))

    def start(self, *command, stdout=subprocess.DEVNULL, stdin=None):
        process = subprocess.Popen(command, env=self.environment, stdin=stdin, stdout=stdout,
                                   stderr=subprocess.DEVNULL, start_new_session=True)
        self.processes.append(process)
        return process

    def run(self, *command, text=None):
        return subprocess.run(command, env=self.environment, input=text, capture_output=True, text=True,
                              timeout=30).stdout

    def close(self):
        for process in reversed(self.processes):
            for sent in (signal.SIGCONT, signal.SIGKILL):
                try:
                    os.killpg(process.pid, sent)
                except ProcessLookupError:
                    pass
            process.wait()
            for pipe in (process.stdin, process.stdout):
                if pipe:
                    pipe.close()
        shutil.rmtree(self.home, ignore_errors=True)

    def open(self, *command, window):
        """Starts an application and waits for its window, whose title matches a regular expression."""
        process = self.start(*command)
        found = wait_until(lambda: self.run("xdotool", "search", "--onlyvisible", "--name", window).split(), 40)
        if not found:
            raise AssertionError(f"{command[0]} shows no window")
        self.activate(found[0])
        return process, found[0]

    def activate(self, window):
        self.run("xdotool", "windowactivate", "--sync", window)

    def key(self, *keys):
        self.run("xdotool", "key", "--delay", "20", *keys)
        time.sleep(0.2)

    def type(self, text):
        self.run("xdotool", "type", "--delay", "15", text)
        time.sleep(0.3)

    def paste(self, text):
        subprocess.run(["xclip", "-selection", "clipboard"], env=self.environment, input=text.encode(),
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=10)
        self.key("ctrl+v")
        time.sleep(0.3)


class Probe:
    """The accessibility adapter, asked by JSON lines."""

    def __init__(self, desktop, program):
        self.process = desktop.start(program, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def __call__(self, *command):
        self.process.stdin.write(json.dumps(command).encode() + b"\n")
        self.process.stdin.flush()
        self.last = json.loads(self.process.stdout.readline())
        return self.last.get("value")

    def error(self, *command):
        self(*command)
        return self.last.get("error")
