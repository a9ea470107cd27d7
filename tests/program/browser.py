"""A headless Chromium, driven through chromedriver's WebDriver protocol with the standard library."""

import base64
import json
import pathlib
import re
import shutil
import subprocess
import urllib.request

ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # the protocol's name for a reference to an element

# Nothing but the page: no sandbox (which root cannot have), no graphics card, no network of its own.
ARGUMENTS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
             "--disable-background-networking", "--disable-component-update", "--disable-sync", "--hide-scrollbars"]

KEYS = {"left": "\ue012", "right": "\ue014", "home": "\ue011", "end": "\ue010"}


class Browser:
    """Started with a new, empty profile; to be used in a `with`."""

    def __init__(self, profile: pathlib.Path, size: tuple[int, int] = (1200, 1010)):
        self.driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                       text=True)
        self.base = f"http://127.0.0.1:{self._port()}"
        arguments = [*ARGUMENTS, f"--user-data-dir={profile}", f"--window-size={size[0]},{size[1]}"]
        try:
            session = self._send("POST", "/session", {"capabilities": {"alwaysMatch": {
                "browserName": "chrome", "goog:loggingPrefs": {"browser": "ALL"},
                "goog:chromeOptions": {"binary": shutil.which("chromium"), "args": arguments}}}})
        except Exception:
            self._stop_driver()
            raise
        self.base += f"/session/{session['sessionId']}"

    def __enter__(self) -> "Browser":
        return self

    def __exit__(self, *_) -> None:
        try:
            self._send("DELETE", "")
        finally:
            self._stop_driver()

    def _port(self) -> int:
        for line in self.driver.stdout:
            if match := re.search(r"started successfully on port (\d+)", line):
                return int(match[1])
        raise RuntimeError("chromedriver does not start")

    def _stop_driver(self) -> None:
        self.driver.terminate()
        self.driver.wait(20)
        self.driver.stdout.close()

    def _send(self, method: str, path: str, body: dict | None = None):
        data = json.dumps(body or {}).encode() if method == "POST" else None
        request = urllib.request.Request(self.base + path, data, {"Content-Type": "application/json"}, method=method)
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=60) as answer:
            return json.load(answer)["value"]

    def open(self, page: pathlib.Path) -> None:
        self._send("POST", "/url", {"url": page.as_uri()})

    def run(self, script: str, *arguments):
        """The value that a script returns."""
        return self._send("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def press(self, *keys: str) -> None:
        """Presses keys one after another: names of KEYS, or letters."""
        body = self._send("POST", "/element", {"using": "css selector", "value": "body"})[ELEMENT]
        text = "".join(KEYS.get(key, key) for key in keys)
        self._send("POST", f"/element/{body}/value", {"text": text})

    def click(self, selector: str) -> None:
        element = self._send("POST", "/element", {"using": "css selector", "value": selector})[ELEMENT]
        self._send("POST", f"/element/{element}/click")

    def complaints(self) -> list[dict]:
        """What the console says since the last call."""
        return self._send("POST", "/se/log", {"type": "browser"})

    def dark(self, on: bool) -> None:
        """The colours that the user prefers."""
        features = [{"name": "prefers-color-scheme", "value": "dark" if on else "light"}]
        self._send("POST", "/goog/cdp/execute", {"cmd": "Emulation.setEmulatedMedia", "params": {"features": features}})

    def picture(self) -> bytes:
        """The window as a PNG."""
        return base64.b64decode(self._send("GET", "/screenshot"))
