"""The user's key: it stands in the settings file, goes to the service in one header, and is nowhere else."""

import base64
import os
import re
import signal
import threading
import time
import unittest
import zlib

import harness
from change_test import LANTERN, CodeProjectTest, text, tool
from recording_server import RecordingServer, completed
from service import LocalService

KEY = "canary-7c1f5be29d044a6ba3c8-key"
FORMS = [KEY.encode("utf-8"), KEY.encode("utf-16-le"), base64.b64encode(KEY.encode("utf-8")).rstrip(b"=")]
SETTINGS = os.path.join("Saved", "Config", "LinuxEditor", "EditorPerUserSettings.ini")
ZLIB_START = re.compile(rb"\x78[\x01\x5e\x9c\xda]")


def holds_key(data):
    return any(form in data for form in FORMS)


def unpacked(data):
    """What is compressed in a file: records for undo, objects of git."""
    for start in ZLIB_START.finditer(data):
        try:
            yield zlib.decompressobj().decompress(data[start.start():])
        except zlib.error:
            pass


def command_lines():
    """Process id and command line of each process; what ends meanwhile is left out."""
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/cmdline", "rb") as file:
                yield int(pid), file.read()
        except OSError:
            pass


class CommandLineWatch:
    """Looks for the key in the command lines of all processes, as any user of the machine could."""

    def __init__(self):
        self.found = []
        self.ended = threading.Event()
        self.thread = threading.Thread(target=self.watch)

    def watch(self):
        while not self.ended.wait(0.02):
            self.found += [line for _, line in command_lines() if holds_key(line)]

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ended.set()
        self.thread.join()


class RedirectingServer(RecordingServer):
    """Sends whoever polls to another place."""

    def __init__(self, service_state, place):
        super().__init__(service_state, [])
        self.place = place

    def talk(self, connection):
        with connection, connection.makefile("rb") as stream:
            while request := self.read(stream):
                self.requests.append(request)
                if request.line.startswith("POST"):
                    reply = self.answer(request).encode("utf-8")
                    connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(reply) + reply)
                else:
                    connection.sendall(b"HTTP/1.1 302 Found\r\nLocation: %s\r\nContent-Length: 0\r\n\r\n" % self.place)


class KeyTest(CodeProjectTest):
    def setUp(self):
        super().setUp()
        self.service = LocalService(harness.PRESET, os.path.join(self.scratch, "Service"), key=KEY)
        self.service.__enter__()
        self.addCleanup(self.service.stop)
        for folder in ("Home", "Temporary"):
            os.mkdir(os.path.join(self.scratch, folder))
        self.env = {**os.environ, "HOME": os.path.join(self.scratch, "Home"),
                    "TMPDIR": os.path.join(self.scratch, "Temporary")}
        os.makedirs(os.path.dirname(os.path.join(self.project, SETTINGS)))
        self.write(SETTINGS, f"[/Script/Kestrel.KestrelSettings]\nApiKey={KEY}\n")

    def use_server(self, port):
        """Another address than the compiled-in one, and the user's own key."""
        self.write("Config/DefaultPlugin.ini", f"[Kestrel]\nStage=Dev\nDevApiUrl=localhost:{port}/v1\n")
        self.write("Config/DefaultEngine.ini", f"[SSL]\nDebuggingCertificatePath={self.service.authority}\n")

    def talk(self, *prompts):
        with CommandLineWatch() as watch:
            run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts), "-Approve", env=self.env)
        self.assertEqual(watch.found, [])
        self.check_traces(run)
        return run

    def check_traces(self, run):
        """Everything in the scratch folder: the project, the user's home, temporary files, the service's state."""
        self.assertNotIn(KEY, run.output)
        self.assertNotIn(KEY, run.errors)
        found = []
        for path, _, names in os.walk(self.scratch):
            for name in names:
                full = os.path.join(path, name)
                if os.path.isfile(full):
                    with open(full, "rb") as file:
                        data = file.read()
                    if holds_key(data) or any(map(holds_key, unpacked(data))):
                        found.append(os.path.relpath(full, self.project))
        self.assertEqual(found, [SETTINGS])

    def test_a_conversation_leaves_the_key_in_the_settings_alone(self):
        self.use_server(self.service.port)
        os.chmod(os.path.join(self.project, SETTINGS), 0o644)
        run = self.talk(
            'create Docs/Plan.md with "Gather the gro\u00dfe feathers\\n"', 'replace "0.5f" with "0.75g" in '
            "Source/Moor/Lantern.h", "compile", "delete Source/Moor/Walker.h", "read no/such/file.txt", "find Lantern",
            "run python: print('\u00e4\u00f6\u00fc\u2192')", "run python: raise ValueError('no')", "/undo")
        self.assert_in_order(run, "File created", "with 1 replacements", "The build failed:", "Successfully deleted",
                             "Lantern.h", "\u00e4\u00f6\u00fc\u2192", "ValueError: no", "Undoing Last Changes...")
        self.assertEqual(os.stat(os.path.join(self.project, SETTINGS)).st_mode & 0o777, 0o600)
        self.assertEqual(self.files_of_project("Source")["Source/Moor/Lantern.h"].decode(), LANTERN)

    def test_only_one_header_of_requests_to_the_service_has_the_key(self):
        server = RecordingServer(self.service.state_folder, [
            completed(tool("t1", "create_file", path="Docs/Plan.md", file_text="Gather"), auto_continue=True),
            completed(text("Done."), auto_continue=True), "no JSON", '{"status": "FAILED", "error": "no"}'])
        self.addCleanup(server.socket.close)
        self.use_server(server.port)
        self.run_editor("-Prompt=create a plan", "-Prompt=fail", "-Approve", env=self.env)
        self.assertGreaterEqual(len(server.requests), 5)
        self.check_requests(server)

        redirecting = RedirectingServer(self.service.state_folder, b"https://localhost:%d/v1/status" % server.port)
        self.addCleanup(redirecting.socket.close)
        self.use_server(redirecting.port)
        server.requests.clear()
        server.status_replies = ['{"status": "RUNNING"}'] * 50
        run = self.run_editor("-Prompt=hello", "-Approve", env=self.env)
        self.assertIn("points to another address", run.output)
        self.check_requests(redirecting)
        self.assertFalse([request for request in server.requests if KEY in request.body or KEY in request.line or
                          any(KEY in value for _, value in request.headers)])
        self.check_traces(run)

    def test_a_tool_that_reads_or_changes_the_settings_tells_nobody_the_key(self):
        server = RecordingServer(self.service.state_folder, [
            completed(tool("read", "read_file", path=SETTINGS),
                      tool("change", "update_file", path=SETTINGS, old_string="[/Script", new_string="[Other]\n[/Script"),
                      auto_continue=False), completed(text("Done."), auto_continue=True)])
        self.addCleanup(server.socket.close)
        self.use_server(server.port)
        run = self.run_editor("-Prompt=begin", "-Approve", env=self.env)
        self.assert_in_order(run, "Will fail: File can hold your API key", "Done.")
        self.assertIn("ApiKey=[API key]", server.requests[-2].body + server.requests[-1].body)
        self.check_requests(server)
        self.check_traces(run)

    def test_the_keys_of_other_stages_stay_in_the_project(self):
        others = ["sandbox-canary-1", "second \\ canary", "old-canary-key", "production-canary"]
        server = RecordingServer(self.service.state_folder, [
            completed(tool("a", "read_file", path="Config/DefaultPlugin.ini"), auto_continue=True),
            completed(text("Done."), auto_continue=True)])
        self.addCleanup(server.socket.close)
        self.use_server(server.port)
        with open(os.path.join(self.project, "Config", "DefaultPlugin.ini"), "a", encoding="utf-8") as file:
            file.write('SandboxApiKey=%s\nSandbox2ApiKey = "%s"\n;DevApiKey=%s\n[Other]\n+ProdAPIKEY=%s\n' % (*others,))
        run = self.talk("begin")
        self.assertIn("SandboxApiKey=[API key]", server.requests[-2].body + server.requests[-1].body, run)
        for request in server.requests:
            for key in others:
                self.assertNotIn(key.rsplit(" ", 1)[-1], request.body)

    def test_a_key_that_the_service_repeats_is_neither_shown_nor_logged(self):
        server = RecordingServer(self.service.state_folder, [
            completed(text(f"Your key is {KEY}."), tool("a", "read_file", path=f"No/{KEY}"), tool(KEY, KEY),
                      auto_continue=True), '{"status": "FAILED", "error": "bad key %s"}' % KEY])
        self.addCleanup(server.socket.close)
        self.use_server(server.port)
        run = self.talk("begin")
        self.assert_in_order(run, "Your key is [API key].", "bad key [API key]")

    def check_requests(self, server):
        for request in server.requests:
            self.assertEqual([name for name, value in request.headers if KEY in value], ["x-api-key"], request.line)
            self.assertNotIn(KEY, request.line + request.body)

    def test_a_crash_leaves_no_key(self):
        def crash():
            for pid, line in command_lines():
                if b"HostEditor" in line.split(b"\0")[0] and self.project.encode() in line:
                    os.kill(pid, signal.SIGSEGV)
            time.sleep(1)
            return '{"status": "RUNNING"}'

        server = RecordingServer(self.service.state_folder, [crash] + ['{"status": "RUNNING"}'] * 50)
        self.addCleanup(server.socket.close)
        self.use_server(server.port)
        run = self.run_editor("-Prompt=hello", "-Approve", env=self.env)
        self.assertNotEqual(run.code, 0, run)
        self.check_traces(run)


if __name__ == "__main__":
    unittest.main()
