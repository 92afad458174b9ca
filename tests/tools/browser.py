"""A headless Chromium by its DevTools protocol, over a pair of pipes, so that it needs no library."""

import base64
import json
import os
import shutil
import subprocess

PROGRAM = shutil.which("chromium")


class Browser:
    """One page: open it, look at it by JavaScript, and read what its console told."""

    def __init__(self, profile):
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()
        # The browser takes descriptors 3 and 4, which here may be others' already.
        command = 'exec 3<&"$1" 4>&"$2"; shift 2; exec "$@"'
        self._process = subprocess.Popen(
            ["bash", "-c", command, "bash", str(to_browser), str(from_browser), PROGRAM, "--headless=new", "--no-sandbox",
             "--disable-gpu", "--hide-scrollbars", "--remote-debugging-pipe", f"--user-data-dir={profile}", "about:blank"],
            pass_fds=(to_browser, from_browser), stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self._count, self._rest, self._session, self.told, self._events = 0, b"", None, [], []
        target = next(t for t in self.call("Target.getTargets")["targetInfos"] if t["type"] == "page")
        self._session = self.call("Target.attachToTarget", targetId=target["targetId"], flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def close(self):
        self._session = None
        self.call("Browser.close")
        self._process.wait(20)

    def _next(self):
        while b"\0" not in self._rest:
            block = os.read(self._in, 1 << 20)
            assert block, "the browser has ended"
            self._rest += block
        message, self._rest = self._rest.split(b"\0", 1)
        message = json.loads(message)
        name, values = message.get("method"), message.get("params", {})
        self._events.append(name)
        if name in ("Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded"):
            self.told.append(values)
        if name == "Network.requestWillBeSent" and not values["request"]["url"].startswith(("file:", "data:")):
            self.told.append(values["request"]["url"])
        return message

    def call(self, method, **parameters):
        self._count += 1
        message = {"id": self._count, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._out, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._next()
            if answer.get("id") == self._count:
                assert "error" not in answer, answer
                return answer["result"]

    def run(self, script):
        """The value of an expression; a promise is waited for."""
        answer = self.call("Runtime.evaluate", expression=script, returnByValue=True, awaitPromise=True)
        assert "exceptionDetails" not in answer, answer
        return answer["result"].get("value")

    def open(self, path, width=1600, height=1000, dark=False):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        # A page opened anew, even if only its fragment differs.
        for url in ("about:blank", str(path) if str(path).startswith("file:") else f"file://{path}"):
            self._events.clear()
            self.call("Page.navigate", url=url)
            while "Page.loadEventFired" not in self._events:
                self._next()
        self.settle()

    def settle(self):
        """Until what was asked for is painted."""
        self.run("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done, 30))))")

    def press(self, key):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, code=key, windowsVirtualKeyCode={
                "Tab": 9, "Enter": 13, "ArrowRight": 39, "ArrowLeft": 37}.get(key, 0), text="\r" if key == "Enter" else "")

    def point_at(self, x, y):
        self.call("Input.dispatchMouseEvent", type="mouseMoved", x=x, y=y)

    def pdf(self):
        return base64.b64decode(self.call("Page.printToPDF", preferCSSPageSize=True)["data"])

    def picture(self, path, whole=True):
        shot = self.call("Page.captureScreenshot", format="png", captureBeyondViewport=whole)
        path.write_bytes(base64.b64decode(shot["data"]))
