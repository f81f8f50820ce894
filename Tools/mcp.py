"""./kestrel mcp: a Model Context Protocol server on standard input and output, for clients that start their servers. Behind
it is an editor without a window; each message is handed to its server, and each answer handed back."""

import base64
import http.client
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
from urllib.parse import urlsplit

sys.dont_write_bytecode = True

import project
import steps

PRESET = "release"
STARTUP_SECONDS = 600  # a project may have to be compiled first
ANSWER_SECONDS = 120
FAREWELL_SECONDS = 5
PROGRESS_SECONDS = 2  # between two reports, to clients that ask for them
VERSION_FIELD = "io.modelcontextprotocol/protocolVersion"
NAMED_FIELDS = {"tools/call": "name", "prompts/get": "name", "resources/read": "uri"}


class Editor:
    """An editor whose server only this program knows."""

    def __init__(self, preset, folder, allow, scratch):
        self.file = os.path.join(scratch, "server.json")
        command = [steps.binary(preset, "HostEditor"), project.find_uproject(folder),
                   f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}", "-Unattended", f"-KestrelMcp={allow}",
                   f"-KestrelMcpFile={self.file}"]
        # What it prints is for people.
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=2, stderr=2,
                                        preexec_fn=steps.end_with_parent)
        self.address, self.token = self.wait()

    def wait(self):
        end = time.monotonic() + STARTUP_SECONDS
        while time.monotonic() < end and self.process.poll() is None:
            try:
                with open(self.file, encoding="utf-8") as file:
                    found = json.load(file)
                address = urlsplit(found["url"])
                http.client.HTTPConnection(address.hostname, address.port, timeout=STARTUP_SECONDS).request("GET", "/")
                return address, found["token"]
            except (OSError, ValueError, KeyError):
                time.sleep(0.05)
        self.process.kill()
        raise steps.StepFailed("The editor did not start its server")

    def post(self, body, headers):
        connection = http.client.HTTPConnection(self.address.hostname, self.address.port, timeout=ANSWER_SECONDS)
        try:
            connection.request("POST", self.address.path, body, {
                "Authorization": f"Bearer {self.token}", "Content-Type": "application/json", **headers})
            response = connection.getresponse()
            return response.headers, response.read()
        finally:
            connection.close()

    def stop(self):
        self.process.terminate()
        try:
            self.process.wait(FAREWELL_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()


class Bridge:
    """Hands messages over. Answers come in any order: a message must not wait behind a call."""

    def __init__(self, editor, output):
        self.editor = editor
        self.output = output
        self.lock = threading.Lock()
        self.session = None
        self.version = None
        self.threads = []

    def run(self, lines):
        for line in lines:
            if line.strip():
                self.take(line)
            self.threads = [thread for thread in self.threads if thread.is_alive()]
        for thread in self.threads:
            thread.join(FAREWELL_SECONDS)

    def take(self, line):
        try:
            message = json.loads(line)
        except ValueError:
            message = None  # the server says what is wrong with it
        # What comes behind needs the session; and notifications are over in no time.
        is_batch = isinstance(message, list)
        if not is_batch and (not isinstance(message, dict) or message.get("method") == "initialize" or "id" not in message):
            self.exchange(line, message)
            return
        thread = threading.Thread(target=self.exchange, args=(line, message), daemon=True)
        thread.start()
        self.threads.append(thread)

    def exchange(self, line, message):
        answered = threading.Event()
        token = self.progress_token(message)
        if token is not None:
            threading.Thread(target=self.report_progress, args=(token, answered), daemon=True).start()
        try:
            headers, body = self.editor.post(line.strip(), self.headers_for(message))
        except OSError as error:
            body = self.describe_failure(message, error)
        else:
            self.session = headers.get("Mcp-Session-Id") or self.session
        with self.lock:
            answered.set()
            self.write(body)

    def write(self, body):
        """One line; the lock is held."""
        if body:
            self.output.write(body.replace(b"\n", b" ") + b"\n")
            self.output.flush()

    def report_progress(self, token, answered):
        """Says that a call still goes on, and for how many seconds; nothing once it is answered."""
        started = time.monotonic()
        while not answered.wait(PROGRESS_SECONDS):
            seconds = round(time.monotonic() - started, 1)
            report = {"jsonrpc": "2.0", "method": "notifications/progress", "params": {
                "progressToken": token, "progress": seconds, "message": f"At work for {seconds:.0f} s"}}
            with self.lock:
                if not answered.is_set():
                    self.write(json.dumps(report).encode())

    @staticmethod
    def progress_token(message):
        """Of a call whose client asks for reports."""
        params = message.get("params") if isinstance(message, dict) and message.get("method") == "tools/call" else None
        meta = params.get("_meta") if isinstance(params, dict) else None
        token = meta.get("progressToken") if isinstance(meta, dict) else None
        return token if isinstance(token, (str, int)) else None

    def headers_for(self, message):
        if isinstance(message, list) and self.session:
            return {"Mcp-Session-Id": self.session}
        if not isinstance(message, dict):
            return {}
        params = message.get("params")
        params = params if isinstance(params, dict) else {}
        meta = params.get("_meta")
        version = meta.get(VERSION_FIELD) if isinstance(meta, dict) else None
        if not isinstance(version, str):
            return {"Mcp-Session-Id": self.session} if self.session else {}
        headers = {"MCP-Protocol-Version": encode(version), "Mcp-Method": encode(message.get("method", ""))}
        named = params.get(NAMED_FIELDS.get(message.get("method"), ""))
        if isinstance(named, str):
            headers["Mcp-Name"] = encode(named)
        return headers

    @staticmethod
    def describe_failure(message, error):
        fault = {"code": -32603, "message": f"The editor does not answer: {error}"}
        batch = message if isinstance(message, list) else [message]
        answers = [{"jsonrpc": "2.0", "id": each["id"], "error": fault}
                   for each in batch if isinstance(each, dict) and "id" in each]
        return json.dumps(answers if isinstance(message, list) else answers[0]).encode() if answers else b""


def encode(text):
    """A header's value; what is not plain ASCII is encoded as the protocol says."""
    text = str(text)
    if text.isascii() and text.isprintable():
        return text
    return "=?base64?" + base64.b64encode(text.encode()).decode() + "?="


def serve(preset, folder, allow):
    # Nothing but messages goes to standard output, whoever prints.
    with os.fdopen(os.dup(1), "wb") as output, tempfile.TemporaryDirectory(prefix="kestrel-mcp-") as scratch:
        os.dup2(2, 1)
        if preset == PRESET:
            steps.build(preset, ["HostEditor", "Kestrel"])
        editor = Editor(preset, folder, allow, scratch)
        try:
            Bridge(editor, output).run(sys.stdin.buffer)
        finally:
            editor.stop()
    return 0


def mcp(arguments):
    folder = os.path.abspath(arguments.project)
    project.find_uproject(folder)
    return serve(PRESET, folder, arguments.allow)


if __name__ == "__main__":
    sys.exit(serve(*sys.argv[1:]))
