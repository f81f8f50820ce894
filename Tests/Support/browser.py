"""A headless Chromium, driven by the commands of the WebDriver standard."""

import json
import os
import re
import shutil
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

START_SECONDS = 60


def missing():
    """The programs that a browser needs and that are not there."""
    return [name for name in ("chromium", "chromedriver") if not shutil.which(name)]


class Browser:
    """A context manager. The window is that of a phone, and no name but localhost is resolved."""

    def __init__(self, trusted_key_hash, width=390, height=844):
        self.folder = tempfile.mkdtemp(prefix="kestrel-browser-")
        # Exactly this certificate is trusted besides the usual ones.
        self.arguments = ["--headless=new", f"--window-size={width},{height}", f"--user-data-dir={self.folder}/profile",
                          f"--ignore-certificate-errors-spki-list={trusted_key_hash}", "--disable-gpu",
                          "--disable-dev-shm-usage", "--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE localhost",
                          # Neither root nor most containers can have one, and only our own page is opened.
                          "--no-sandbox"]
        self.process = None
        self.session = ""

    def __enter__(self):
        try:
            return self.start()
        except BaseException:
            self.__exit__()
            raise

    def start(self):
        log = os.path.join(self.folder, "log")
        with open(log, "w", encoding="utf-8") as output:
            self.process = subprocess.Popen(["chromedriver", "--port=0"], stdin=subprocess.DEVNULL, stdout=output,
                                            stderr=subprocess.STDOUT, env=dict(os.environ, HOME=self.folder),
                                            start_new_session=True)
        deadline = time.monotonic() + START_SECONDS
        while not (found := re.search(r"started successfully on port (\d+)", self.read(log))):
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError(f"chromedriver did not start:\n{self.read(log)}")
            time.sleep(0.02)
        port = found.group(1)
        self.session = f"http://127.0.0.1:{port}/session"
        wanted = {"alwaysMatch": {"goog:chromeOptions": {"args": self.arguments},
                                  "goog:loggingPrefs": {"browser": "ALL"}}}
        self.session += "/" + self.command("", {"capabilities": wanted})["sessionId"]
        return self

    @staticmethod
    def read(path):
        with open(path, encoding="utf-8") as file:
            return file.read()

    def __exit__(self, *_):
        if self.process and self.process.poll() is None:
            if "/session/" in self.session:
                try:
                    self.command("", method="DELETE")
                except OSError:
                    pass
            self.process.terminate()
            self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, path, body=None, method="POST"):
        data = json.dumps(body or {}).encode() if method == "POST" else None
        query = urllib.request.Request(self.session + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(query, timeout=60) as reply:
                return json.load(reply)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(error.read().decode()) from error

    def open(self, url):
        self.command("/url", {"url": url})

    def run(self, script, *arguments):
        """The value that a script returns."""
        return self.command("/execute/sync", {"script": script, "args": list(arguments)})

    def wait_for(self, script):
        deadline = time.monotonic() + START_SECONDS
        while not self.run(script):
            if time.monotonic() > deadline:
                raise AssertionError(f"it never came true: {script}\n" + self.run("return document.body.innerText"))
            time.sleep(0.05)

    def element(self, selector):
        return next(iter(self.command("/element", {"using": "css selector", "value": selector}).values()))

    def click(self, selector):
        self.command(f"/element/{self.element(selector)}/click")

    def type(self, selector, text):
        self.command(f"/element/{self.element(selector)}/value", {"text": text})

    def messages(self):
        """What the page has written to the browser's console, errors of its own included."""
        return [entry["message"] for entry in self.command("/se/log", {"type": "browser"})]
