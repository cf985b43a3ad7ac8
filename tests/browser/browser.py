"""A headless Chromium, driven through the DevTools protocol on two pipes. The standard library of Python alone."""
import base64
import json
import os
import shutil
import subprocess
import tempfile
import time


class Failure(Exception):
    pass


class Browser:
    """One process; `with Browser() as browser: page = browser.open(path)`."""

    def __init__(self, program=None):
        self.program = program or shutil.which("chromium") or shutil.which("chromium-browser")
        if self.program is None:
            raise Failure("no chromium in the path")

    def __enter__(self):
        self.profile = tempfile.TemporaryDirectory(prefix="kelvane-browser")
        to_read, self.commands = os.pipe()
        self.answers, to_write = os.pipe()

        def take_pipes():  # the browser reads from 3 and writes to 4
            a, b = os.dup(to_read), os.dup(to_write)
            os.dup2(a, 3)
            os.dup2(b, 4)

        arguments = [self.program, "--headless=new", "--remote-debugging-pipe", "--no-first-run", "--disable-gpu",
                     "--disable-dev-shm-usage", "--hide-scrollbars", "--force-color-profile=srgb",
                     "--disable-extensions", "--disable-background-networking", "--disable-component-update",
                     "--user-data-dir=" + self.profile.name, "about:blank"]
        if os.geteuid() == 0:
            arguments.insert(1, "--no-sandbox")
        self.process = subprocess.Popen(arguments, preexec_fn=take_pipes, close_fds=False, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_read)
        os.close(to_write)
        self.number = 0
        self.rest = b""
        self.events = []
        return self

    def __exit__(self, *_):
        try:
            self.call("Browser.close")
        except (Failure, OSError):
            pass
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        os.close(self.commands)
        os.close(self.answers)
        for _ in range(20):  # helpers of the browser may still write into its profile
            try:
                self.profile.cleanup()
                return
            except OSError:
                time.sleep(0.1)

    def message(self):
        while b"\0" not in self.rest:
            piece = os.read(self.answers, 1 << 20)
            if not piece:
                raise Failure("the browser has ended")
            self.rest += piece
        one, self.rest = self.rest.split(b"\0", 1)
        return json.loads(one)

    def call(self, method, session=None, **parameters):
        self.number += 1
        request = {"id": self.number, "method": method, "params": parameters}
        if session:
            request["sessionId"] = session
        os.write(self.commands, json.dumps(request).encode() + b"\0")
        while True:
            answer = self.message()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise Failure(method + ": " + answer["error"]["message"])
                return answer["result"]
            self.events.append(answer)

    def wait_for(self, method, session):
        while True:
            for i, event in enumerate(self.events):
                if event.get("method") == method and event.get("sessionId") == session:
                    return self.events.pop(i)
            self.events.append(self.message())

    def open(self, path, width=1280, height=900, dark=False, scripts=True, scale=1):
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        return Page(self, session, target, path, width, height, dark, scripts, scale)


class Page:
    def __init__(self, browser, session, target, path, width, height, dark, scripts, scale):
        self.browser, self.session, self.target = browser, session, target
        for domain in ("Page", "Runtime", "Log"):
            self.call(domain + ".enable")
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale,
                  mobile=width < 600)
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        if not scripts:
            self.call("Emulation.setScriptExecutionDisabled", value=True)
        begin = time.monotonic()
        self.call("Page.navigate", url="file://" + os.path.abspath(path))
        browser.wait_for("Page.loadEventFired", session)
        self.seconds = time.monotonic() - begin

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def run(self, expression):
        """The value of a JavaScript expression; a promise is waited for."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise Failure(expression + ": " + json.dumps(answer["exceptionDetails"].get("exception", {})))
        return answer["result"].get("value")

    def settle(self):
        """Two frames, so that what was asked for is drawn."""
        self.run("new Promise(done => requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done, 30))))")

    def click(self, selector):
        place = self.run(f"""(() => {{ const box = document.querySelector({json.dumps(selector)}).getBoundingClientRect();
            return [box.left + box.width / 2, box.top + box.height / 2]; }})()""")
        self.click_at(*place)

    def click_at(self, x, y):
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)
        self.settle()

    def errors(self):
        """What went wrong in scripts, and what was refused to be loaded."""
        self.run("1")
        told = []
        for event in self.browser.events:
            if event.get("sessionId") != self.session:
                continue
            if event.get("method") == "Runtime.exceptionThrown":
                details = event["params"]["exceptionDetails"]
                told.append(details.get("exception", {}).get("description", details["text"]))
            if event.get("method") == "Log.entryAdded" and event["params"]["entry"]["level"] == "error":
                told.append(event["params"]["entry"]["text"])
        return told

    def screenshot(self, path, whole=False):
        options = {"format": "png"}
        if whole:
            size = self.call("Page.getLayoutMetrics")["cssContentSize"]
            options.update(captureBeyondViewport=True,
                           clip={"x": 0, "y": 0, "width": size["width"], "height": size["height"], "scale": 1})
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.call("Page.captureScreenshot", **options)["data"]))

    def pdf(self):
        answer = self.call("Page.printToPDF", preferCSSPageSize=True, printBackground=True)
        return base64.b64decode(answer["data"])

    def close(self):
        self.browser.call("Target.closeTarget", targetId=self.target)
        self.browser.events = [e for e in self.browser.events if e.get("sessionId") != self.session]
