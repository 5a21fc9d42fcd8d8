"""Real applications to type into. Each tells its text and caret without asking Glyma's own adapters."""

import http.server
import json
import threading
import time
from pathlib import Path

from virtual_desktop import connect_accessibility, wait_until


class AccessibleEditor:
    """A text editor whose text and caret are read through AT-SPI; counts in code points or UTF-16 units."""

    name = ""
    counts_utf16 = False
    title = ""

    def __init__(self, desktop, text=""):
        self.desktop = desktop
        self.file = desktop.home / f"{self.name}-{time.monotonic_ns()}.txt"
        self.file.write_text(text)
        self.process = desktop.start(self.command(), environment=self.extra_environment())
        self.element = wait_until(self.find_text_element, 30, f"{self.name}'s text")
        self.focus()

    def extra_environment(self):
        return {}

    def command(self):
        raise NotImplementedError

    def focus(self):
        window = wait_until(lambda: self.desktop.windows("--name", self.file.name), 10, f"{self.name}'s window")[-1]
        self.desktop.run(["xdotool", "windowactivate", "--sync", window])
        wait_until(self.is_focused, 10, f"{self.name} to have the focus")

    def is_focused(self):
        from gi.repository import Atspi
        self.element.clear_cache()
        return self.element.get_state_set().contains(Atspi.StateType.FOCUSED)

    def find_text_element(self):
        connect_accessibility(self.desktop)
        from gi.repository import Atspi, GLib
        root = Atspi.get_desktop(0)
        try:
            for index in range(root.get_child_count()):
                application = root.get_child_at_index(index)
                if application and application.get_process_id() == self.process.pid:
                    return self._search(application, 0)
        except GLib.Error:
            pass
        return None

    def _search(self, element, depth):
        from gi.repository import Atspi
        states = element.get_state_set()
        if states.contains(Atspi.StateType.EDITABLE) and states.contains(Atspi.StateType.MULTI_LINE):
            return element
        if depth < 24:
            for index in range(element.get_child_count()):
                child = element.get_child_at_index(index)
                found = self._search(child, depth + 1) if child else None
                if found:
                    return found
        return None

    def text(self):
        return self.element.get_text(0, self.element.get_character_count())

    def select(self, text):
        """Selects the first occurrence of a text as a user does it: with Shift and the arrow key."""
        before, found, _ = self.text().partition(text)
        assert found
        self.place_caret(before)
        self.desktop.press("ctrl+Home") if not before else None
        for _ in range(400):
            if self.selection() == text:
                return
            at = self.selection()
            self.desktop.press("shift+Right")
            wait_until(lambda: self.selection() != at, 2, "the selection to grow")
        raise RuntimeError("the text was not selected")

    def selection(self):
        if self.element.get_n_selections() == 0:
            return ""
        span = self.element.get_selection(0)
        return self.element.get_text(span.start_offset, span.end_offset)

    def caret(self):
        """Code points before the caret."""
        offset = self.element.get_caret_offset()
        if not self.counts_utf16:
            return offset
        return len(self.text().encode("utf-16-le")[:offset * 2].decode("utf-16-le"))

    def place_caret(self, behind):
        """Moves the caret behind the first occurrence of a text, from the start of the document."""
        before, found, _ = self.text().partition(behind)
        assert found
        self.desktop.press("ctrl+Home")
        target = len(before) + len(behind)
        for _ in range(300):
            at = wait_until(lambda: self.caret() + 1, 2, "a caret") - 1
            if at == target:
                return
            self.desktop.press("Right")
            wait_until(lambda: self.caret() != at, 2, "the caret to move")
        raise RuntimeError("the caret did not arrive")


class Mousepad(AccessibleEditor):
    name = "mousepad"

    def command(self):
        self.desktop.run(["gsettings", "set", "org.xfce.mousepad.preferences.file", "session-restore", "never"])
        return ["mousepad", "--disable-server", self.file]


class GnomeTextEditor(AccessibleEditor):
    name = "gnome-text-editor"

    def command(self):
        self.desktop.run(["gsettings", "set", "org.gnome.TextEditor", "restore-session", "false"], check=False)
        self.desktop.run(["gsettings", "set", "org.gnome.TextEditor", "spellcheck", "false"], check=False)
        return ["gnome-text-editor", "--standalone", self.file]


class FeatherPad(AccessibleEditor):
    name = "featherpad"
    counts_utf16 = True

    def command(self):
        return ["featherpad", "--standalone", self.file]


# Names by which browsers find the server on this machine.
TEST_HOSTS = ("excluded.test", "www.excluded.test", "mail.excluded.test", "allowed.test")

PAGE = """<!doctype html><meta charset="utf-8"><title>glyma-page</title>
<style>body{font:16px sans-serif;margin:40px} .field{width:700px;font:16px sans-serif;padding:6px}
div.field{border:1px solid gray;min-height:60px;white-space:pre-wrap}</style>
%s
<script>
const field = document.getElementById('field');
function report() {
  let text, before;
  if (field.isContentEditable) {
    text = field.innerText;
    const selection = getSelection();
    if (selection.rangeCount) {
      const range = selection.getRangeAt(0).cloneRange();
      range.setStart(field, 0);
      const probe = document.createElement('div');
      probe.style.whiteSpace = 'pre-wrap'; probe.appendChild(range.cloneContents());
      document.body.appendChild(probe); before = probe.innerText; probe.remove();
    } else before = '';
  } else { text = field.value; before = text.slice(0, field.selectionStart); }
  return JSON.stringify({text, before, focused: document.activeElement === field && document.hasFocus()});
}
let last = '', number = 0;
setInterval(() => {
  const now = report();
  if (now !== last) { last = now; fetch('/state/' + ++number, {method: 'POST', body: now}); }
}, 10);
fetch('/caret').then(r => r.json()).then(position => {
  field.focus();
  if (field.isContentEditable) {
    const node = field.firstChild || field;
    getSelection().collapse(node, node === field ? 0 : position);
  } else field.setSelectionRange(position, position);
});
</script>"""


class BrowserField:
    """A field of a page in a browser; the page itself reports text and caret to a server on this machine, which goes
    by the names in TEST_HOSTS too."""

    fields = {
        "input": '<input id="field" class="field" value="%s">',
        "textarea": '<textarea id="field" class="field" rows="6">%s</textarea>',
        "nested": "<div>" * 40 + '<textarea id="field" class="field" rows="6">%s</textarea>' + "</div>" * 40,
        "password": '<input id="field" class="field" type="password" value="%s">',
        "contenteditable": '<div id="field" class="field" contenteditable="true">%s</div>',
    }

    def __init__(self, desktop, kind, text="", behind="", host="127.0.0.1"):
        self.desktop = desktop
        self.lock = threading.Lock()
        page = PAGE % (self.fields[kind] % text)
        caret = len(text[:text.index(behind) + len(behind)].encode("utf-16-le")) // 2
        self.server = self._serve(page.encode(), json.dumps(caret).encode())
        self._expect(host)
        profile = desktop.home / f"{self.name}-{time.monotonic_ns()}"
        profile.mkdir()
        self.process = desktop.start(self.command(profile, self.address()))
        window = wait_until(lambda: desktop.windows("--name", "glyma-page"), 60, f"{self.name}'s window")[-1]
        desktop.run(["xdotool", "windowactivate", "--sync", window])
        self.wait_for_focus()
        time.sleep(1)

    def command(self, profile, address):
        raise NotImplementedError

    def address(self):
        return f"http://{self.host}/"

    def visit(self, host):
        """Goes to the same page under another name, through the address bar."""
        self._expect(host)
        self.desktop.press("ctrl+l")
        self.desktop.type(self.address())
        self.desktop.press("Return")
        self.wait_for_focus()
        time.sleep(0.5)

    def wait_for_focus(self):
        wait_until(lambda: self.state["focused"], 15, "the field to have the focus")

    def _expect(self, host):
        with self.lock:
            self.host = f"{host}:{self.server.server_address[1]}"
            self.state = {"text": None, "before": None, "focused": False}
            self.number = 0

    def _serve(self, page, caret):
        owner = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                body = caret if self.path == "/caret" else page
                self.send_response(200)
                self.send_header("Content-Type", "application/json" if self.path == "/caret" else "text/html")
                self.end_headers()
                self.wfile.write(body)

            def do_POST(self):
                state = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
                # Reports may overtake each other, and the page that is being left goes on reporting.
                number = int(self.path.rpartition("/")[2])
                with owner.lock:
                    if self.headers["Host"] == owner.host and number > owner.number:
                        owner.number, owner.state = number, state
                self.send_response(204)
                self.end_headers()

            def log_message(self, *_):
                pass

        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        return server

    def text(self):
        return self.state["text"]

    def caret(self):
        return len(self.state["before"])


class FirefoxField(BrowserField):
    name = "firefox"

    def command(self, profile, address):
        (profile / "user.js").write_text(
            'user_pref("browser.shell.checkDefaultBrowser", false);\n'
            'user_pref("browser.aboutwelcome.enabled", false);\n'
            'user_pref("datareporting.policy.dataSubmissionEnabled", false);\n'
            'user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);\n'
            'user_pref("app.normandy.enabled", false);\n'
            'user_pref("network.captive-portal-service.enabled", false);\n'
            'user_pref("network.connectivity-service.enabled", false);\n'
            'user_pref("browser.safebrowsing.malware.enabled", false);\n'
            'user_pref("services.settings.server", "http://127.0.0.1:9/");\n'
            'user_pref("layout.spellcheckDefault", 0);\n'
            'user_pref("browser.startup.homepage_override.mstone", "ignore");\n'
            'user_pref("browser.tabs.remote.autostart", true);\n'
            'user_pref("browser.urlbar.autoFill", false);\n'
            f'user_pref("network.dns.localDomains", "{",".join(TEST_HOSTS)}");\n')
        return ["firefox-esr", "--width", "900", "--height", "520", "--profile", profile,
                                      "--new-instance", address]


class ChromiumField(BrowserField):
    name = "chromium"
    tells_pages = True

    def command(self, profile, address):
        accessibility = ["--force-renderer-accessibility"] if self.tells_pages else []
        return ["chromium", "--no-sandbox", f"--user-data-dir={profile}", "--no-first-run", "--password-store=basic",
                "--disable-gpu", "--ozone-platform=x11", "--host-resolver-rules=MAP *.test 127.0.0.1",
                *accessibility, address]


class SilentChromiumField(ChromiumField):
    """As it is started everywhere: nobody can read its pages."""
    tells_pages = False


class XTerm:
    """A terminal in which a line reader without tricks (the kernel's own) takes what is typed."""

    name = "xterm"

    def __init__(self, desktop):
        self.desktop = desktop
        self.file = desktop.home / f"xterm-{time.monotonic_ns()}.txt"
        self.process = desktop.start(["xterm", "-u8", "-title", "glyma-terminal", "-fa", "DejaVu Sans Mono", "-e",
                                      "sh", "-c", f"stty iutf8; cat > {self.file}"])
        window = wait_until(lambda: desktop.windows("--name", "glyma-terminal"), 15, "xterm's window")[-1]
        desktop.run(["xdotool", "windowactivate", "--sync", window])
        wait_until(self.file.exists, 10, "the line reader")
        time.sleep(0.3)

    def lines(self):
        return self.file.read_text()
