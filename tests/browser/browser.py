"""A headless Chromium, driven over a pipe by its DevTools protocol."""

import base64
import itertools
import json
import os
import select
import subprocess
import tempfile
import time


class Browser:
    """One page at a time; what the browser complains about is collected in `complaints`."""

    def __init__(self, program="chromium"):
        self._folder = tempfile.TemporaryDirectory()
        to_browser, self._write = os.pipe()
        self._read, from_browser = os.pipe()

        def connect():
            # The protocol's ends are 3 and 4; first out of the way of each other.
            ends = os.dup(to_browser), os.dup(from_browser)
            spare = [os.dup(end) for end in ends]
            os.dup2(spare[0], 3)
            os.dup2(spare[1], 4)

        self._process = subprocess.Popen(
            [program, "--headless=new", "--remote-debugging-pipe", "--no-sandbox", "--disable-gpu",
             "--disable-dev-shm-usage", "--no-first-run", "--disable-extensions",
             "--disable-background-networking", "--hide-scrollbars", "--force-color-profile=srgb",
             "--user-data-dir=" + self._folder.name, "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            close_fds=False, preexec_fn=connect)
        os.close(to_browser)
        os.close(from_browser)
        self._numbers = itertools.count(1)
        self._buffer = b""
        self._events = []
        self._session = None
        self.complaints = []
        self._attach()

    def close(self):
        try:
            self.call("Browser.close", session=False)
        except (EOFError, OSError, TimeoutError):
            pass
        try:
            self._process.wait(10)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()
        for _ in range(50):
            try:
                self._folder.cleanup()
                break
            except OSError:
                time.sleep(0.1)  # its last processes still write there

    def _attach(self):
        targets = self.call("Target.getTargets", session=False)["targetInfos"]
        page = next(target for target in targets if target["type"] == "page")
        self._session = self.call("Target.attachToTarget", session=False, flatten=True,
                                  targetId=page["targetId"])["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network", "DOM"):
            self.call(domain + ".enable")
        # Time of the processor: whatever else the machine does, it is the page's own.
        self.call("Performance.enable", timeDomain="threadTicks")

    def call(self, method, session=True, **parameters):
        number = next(self._numbers)
        message = {"id": number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = self._session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self._write, data):]
        while True:
            answer = self._next()
            if answer.get("id") == number:
                if "error" in answer:
                    raise RuntimeError(method + ": " + answer["error"]["message"])
                return answer["result"]

    def _next(self, seconds=60):
        """The next message; those that are events are looked at on the way."""
        end = time.monotonic() + seconds
        while b"\0" not in self._buffer:
            if not select.select([self._read], [], [], max(0, end - time.monotonic()))[0]:
                raise TimeoutError("the browser says nothing")
            chunk = os.read(self._read, 1 << 20)
            if not chunk:
                raise EOFError("the browser has gone")
            self._buffer += chunk
        text, self._buffer = self._buffer.split(b"\0", 1)
        message = json.loads(text)
        self._notice(message.get("method"), message.get("params"))
        return message

    def _notice(self, method, parameters):
        if method == "Log.entryAdded":
            self.complaints.append(parameters["entry"]["text"])
        elif method == "Runtime.consoleAPICalled":
            self.complaints.append("console: " + json.dumps(parameters["args"]))
        elif method == "Runtime.exceptionThrown":
            self.complaints.append("exception: " + json.dumps(parameters["exceptionDetails"]))
        elif method == "Network.requestWillBeSent":
            address = parameters["request"]["url"]
            if not address.startswith("file:"):
                self.complaints.append("request: " + address)
        elif method == "Page.javascriptDialogOpening":
            self.complaints.append("dialog: " + parameters["message"])
        if method:
            self._events.append(method)

    def look(self, path, width=1280, height=900, scheme="light", media="screen", fragment=""):
        """Opens the file at that width, in light or dark, on screen or paper; with a fragment,
        as a link does that has something behind a "#"."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=width < 600)
        self.call("Emulation.setEmulatedMedia", media=media,
                  features=[{"name": "prefers-color-scheme", "value": scheme}])
        address = "file://" + os.path.abspath(path)
        self._load("about:blank")  # from one fragment to another, nothing is loaded
        self._load(address + "#" + fragment if fragment else address)

    def _load(self, address):
        self._events.clear()
        self.call("Page.navigate", url=address)
        while "Page.loadEventFired" not in self._events:
            self._next()

    def value(self, expression):
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(json.dumps(answer["exceptionDetails"]))
        return answer["result"].get("value")

    def busy(self):
        """Seconds of the processor that the page's process has needed."""
        metrics = self.call("Performance.getMetrics")["metrics"]
        return next(metric["value"] for metric in metrics if metric["name"] == "TaskDuration")

    def text(self):
        """All texts of the page, without asking a script of its."""
        tree = self.call("DOM.getDocument", depth=-1)["root"]
        texts, nodes = [], [tree]
        while nodes:
            node = nodes.pop()
            if node["nodeType"] == 3:
                texts.append(node["nodeValue"])
            if node["nodeName"] not in ("SCRIPT", "STYLE"):
                nodes.extend(reversed(node.get("children", [])))
        return "\n".join(texts)

    def screenshot(self, whole=True):
        """The page as PNG."""
        return base64.b64decode(self.call("Page.captureScreenshot", format="png",
                                          captureBeyondViewport=whole)["data"])

    def pdf(self):
        return base64.b64decode(self.call("Page.printToPDF", printBackground=True,
                                          preferCSSPageSize=True)["data"])
