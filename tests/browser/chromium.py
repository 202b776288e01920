"""A headless Chromium that a test drives over a pipe, in a folder of its own.

The browser resolves no name, so that a page which asks another machine for something is seen to
fail at it; and each such request is recorded even before.
"""

import base64
import json
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

PATIENCE = 60


class Chromium:
    """Use it with "with": the end of the block ends the browser and removes its folder."""

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="larkspan-browser")
        commands, self.commands = os.pipe()
        self.answers, answers = os.pipe()
        # The browser reads its descriptor 3 and writes to its 4, whatever our numbers are.
        self.process = subprocess.Popen(
            ["bash", "-c", f'exec 3<&{commands} 4>&{answers}; exec "$@"', "bash",
             "chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
             "--no-first-run", "--disable-background-networking", "--disable-component-update",
             "--host-resolver-rules=MAP * ~NOTFOUND", "--hide-scrollbars",
             f"--user-data-dir={self.folder}/profile", "--remote-debugging-pipe"],
            pass_fds=(commands, answers), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True, env={**os.environ, "HOME": self.folder})
        os.close(commands)
        os.close(answers)
        self.read = b""
        self.number = 0
        self.events = []
        self.session = None

    def __enter__(self):
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target,
                                 flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")
        return self

    def __exit__(self, *_):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        os.close(self.commands)
        os.close(self.answers)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _message(self, deadline):
        """The next answer or event."""
        while b"\0" not in self.read:
            ready, _, _ = select.select([self.answers], [], [], max(0, deadline - time.monotonic()))
            piece = os.read(self.answers, 1 << 20) if ready else b""
            if not piece:
                raise RuntimeError("the browser does not answer")
            self.read += piece
        message, self.read = self.read.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, **parameters):
        """Calls a method of the browser's protocol and gives its result."""
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + PATIENCE
        while True:
            answer = self._message(deadline)
            if answer.get("id") != self.number:
                self.events.append(answer)
            elif "error" in answer:
                raise RuntimeError(f"{method}: {answer['error']['message']}")
            else:
                return answer["result"]

    def open(self, file, fragment=""):
        """Opens a file afresh and waits until it is loaded."""
        # From one fragment of a page to another nothing is loaded.
        self._load("about:blank")
        self._load("file://" + os.path.abspath(file) + (f"#{fragment}" if fragment else ""))

    def _load(self, address):
        self.events.clear()
        self.call("Page.navigate", url=address)
        deadline = time.monotonic() + PATIENCE
        while not any(event.get("method") == "Page.loadEventFired" for event in self.events):
            self.events.append(self._message(deadline))

    def value(self, expression):
        """The value of an expression of the page, awaited when it is a promise."""
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True,
                           awaitPromise=True, userGesture=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def set_script(self, runs):
        """Whether the scripts of the pages that are opened from now on run."""
        self.call("Emulation.setScriptExecutionDisabled", value=not runs)

    def look(self, width, height, scheme="light", media=""):
        """The window's size, the colour scheme, and the medium, "print" for one."""
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", media=media,
                  features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self, file, whole=True):
        """A picture of the page, all of it or what the window shows."""
        picture = self.call("Page.captureScreenshot", format="png", captureBeyondViewport=whole,
                            **({"clip": self._all_of_it()} if whole else {}))
        with open(file, "wb") as output:
            output.write(base64.b64decode(picture["data"]))

    def _all_of_it(self):
        size = self.call("Page.getLayoutMetrics")["cssContentSize"]
        return {"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1}

    def complaints(self):
        """What the page's console has told since the page was opened: errors of scripts, and all
        that the page's policy refused. Some of it comes from other processes, a little later."""
        self.value("new Promise(done => setTimeout(done, 200))")
        told = []
        for event in self.events:
            parameters = event.get("params", {})
            if event.get("method") == "Log.entryAdded":
                told.append(parameters["entry"]["text"])
            elif event.get("method") == "Runtime.exceptionThrown":
                told.append(parameters["exceptionDetails"]["text"])
            elif event.get("method") == "Runtime.consoleAPICalled":
                told.append(str(parameters["args"]))
        return told

    def await_complaint(self, text):
        """Waits until the console has told of this; False when it never does."""
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            if any(text in told for told in self.complaints()):
                return True
        return False

    def requests(self):
        """The addresses that the page has asked for since it was opened."""
        self.value("0")
        return [event["params"]["request"]["url"] for event in self.events
                if event.get("method") == "Network.requestWillBeSent"]
