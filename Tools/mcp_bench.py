"""What the server for other assistants adds to a bare handler of the same HTTP server, and what its calls cost the editor's
frames. Part of ./kestrel bench."""

import json
import os
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from urllib.parse import urlsplit

import steps

LISTING_AIM = 1.5  # times as long as a bare handler
READING_AIM = 2.0  # of one that reads the same file; links are resolved and the place is reviewed before it is opened
FRAME_AIM = 16.7  # milliseconds, one frame in a hundred
NUM_ROUND_TRIPS = 100
NUM_ROUNDS = 6
NUM_CALLS = 1000
STARTUP_SECONDS = 60


class Connection:
    """One that stays open, with as little of a client around it as possible."""

    def __init__(self, address, headers):
        self.socket = socket.create_connection((address.hostname, address.port), timeout=STARTUP_SECONDS)
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.head = "".join(f"{name}: {value}\r\n" for name, value in headers.items())

    def post(self, path, body):
        self.socket.sendall(f"POST {path} HTTP/1.1\r\n{self.head}Content-Length: {len(body)}\r\n\r\n".encode() + body)
        received = b""
        while b"\r\n\r\n" not in received:
            received += self.socket.recv(65536)
        head, _, content = received.partition(b"\r\n\r\n")
        if b" 200 " not in head.split(b"\r\n")[0]:
            raise steps.StepFailed(f"The server answers {head!r}")
        fields = dict(line.lower().split(b": ", 1) for line in head.split(b"\r\n")[1:])
        left = int(fields[b"content-length"]) - len(content)
        while left > 0:
            content += (more := self.socket.recv(65536))
            left -= len(more)
        return fields, content

    def time(self, path, body):
        times = []
        for _ in range(NUM_ROUND_TRIPS):
            started = time.perf_counter()
            self.post(path, body)
            times.append(time.perf_counter() - started)
        return statistics.median(times) * 1000


def message(method, **params):
    return json.dumps({"jsonrpc": "2.0", "id": 1, "method": method, "params": params}).encode()


def wait_for(path, editor):
    end = time.monotonic() + STARTUP_SECONDS
    while not os.path.exists(path):
        if time.monotonic() > end or editor.poll() is not None:
            raise steps.StepFailed(f"The editor did not write {path}")
        time.sleep(0.05)


def measure_editor(folder, report, editor):
    wait_for(report + ".bare", editor)
    with open(os.path.join(folder, "server.json"), encoding="utf-8") as file:
        server = json.load(file)
    address = urlsplit(server["url"])
    headers = {"Host": address.netloc, "Authorization": f"Bearer {server['token']}", "Content-Type": "application/json"}
    fields, _ = Connection(address, headers).post("/mcp", message(
        "initialize", protocolVersion="2025-11-25", capabilities={}, clientInfo={"name": "bench", "version": "1"}))
    headers["Mcp-Session-Id"] = fields[b"mcp-session-id"].decode()
    connection = Connection(address, headers)
    read = message("tools/call", name="read_file", arguments={"path": "Config/DefaultGame.ini"})
    times = {name: [] for name in ("bare", "file", "listing", "reading")}
    for _ in range(NUM_ROUNDS):  # in turns: whatever else the machine does slows all of them
        connection = Connection(address, headers)
        for name, path, body in (("bare", "/bare", b"{}"), ("listing", "/mcp", message("tools/list")),
                                 ("file", "/file", b"{}"), ("reading", "/mcp", read)):
            times[name].append(connection.time(path, body))
    best = {name: min(each) for name, each in times.items()}
    for number in range(NUM_CALLS):
        if number % 500 == 0:
            connection = Connection(address, headers)
        connection.post("/mcp", read)
    return best


def measure(preset):
    line = steps.ProgressLine("Measuring the server for other assistants")
    with tempfile.TemporaryDirectory(prefix="kestrel-bench-") as folder:
        os.makedirs(os.path.join(folder, "Config"))
        for name, text in (("Bench.uproject", '{ "FileVersion": 3, "EngineAssociation": "5.4" }\n'),
                           ("Config/DefaultGame.ini", "[Moor]\nFeathers=12\n")):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        report = os.path.join(folder, "report")
        command = [steps.binary(preset, "HostEditor"), os.path.join(folder, "Bench.uproject"),
                   f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}",
                   "-ExecCmds=Automation RunTests KestrelMcpBench;Quit", "-Unattended", "-KestrelMcp=read",
                   f"-KestrelMcpFile={folder}/server.json", f"-KestrelMcpBench={report}"]
        with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL) as editor:
            try:
                best = measure_editor(folder, report, editor)
                with open(report + ".stop", "w", encoding="utf-8"):
                    pass
                wait_for(report + ".frames", editor)
            finally:
                editor.terminate()
        with open(report + ".frames", encoding="utf-8-sig") as file:
            frame, num_frames = file.read().split()
    line.finish("done")
    listing = best["listing"] / best["bare"]
    reading = best["reading"] / best["file"]
    print(f"OtherAssistantsRoundTrip: tools/list {best['listing']:.3f} ms, a bare handler {best['bare']:.3f} ms, ratio "
          f"{listing:.2f} (aim: below {LISTING_AIM:g}); a small file {best['reading']:.3f} ms, a bare handler that reads it "
          f"{best['file']:.3f} ms, ratio {reading:.2f} (aim: below {READING_AIM:g})")
    print(f"OtherAssistantsFrames: one of {num_frames} frames in a hundred takes {float(frame):.1f} ms during "
          f"{NUM_CALLS:,} calls (aim: below {FRAME_AIM:g})")
    return listing < LISTING_AIM and reading < READING_AIM and float(frame) < FRAME_AIM


if __name__ == "__main__":
    sys.exit(0 if measure(sys.argv[1]) else 1)
