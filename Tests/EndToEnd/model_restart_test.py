"""The service is killed again and again in the middle of a conversation with a model, which ends as if it had not been.

KESTREL_KILLS in the environment asks for more kills than the usual run has time for.
"""

import http.client
import http.server
import json
import os
import random
import ssl
import threading
import time
import unittest
import urllib.request

import harness
from harness import EndToEndTest

import scripted_model
from postgres_server import PostgresServer
from service import LocalService

NUM_KILLS = int(os.environ.get("KESTREL_KILLS", "20"))
NUM_TURNS = NUM_KILLS * 3 // 5
LONGEST_SECONDS = 60 + 3 * NUM_KILLS
LEASE_SECONDS = 0.5


class EchoModel(http.server.BaseHTTPRequestHandler):
    """Reads file after file: what it says depends on the request alone, so that it may be asked twice."""

    def do_POST(self):
        body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        number = sum(message["role"] == "assistant" for message in body["messages"]) + 1
        says = {"text": f"Step {number}."}
        if number < NUM_TURNS:
            says["calls"] = [{"name": "read_file", "input": {"path": f"File{number}.h"}}]
        self.send_response(200)
        self.end_headers()
        for event in scripted_model.events_of(says, number):
            self.wfile.write(f"data: {event}\n\n".encode())
            self.wfile.flush()
            time.sleep(0.02)  # so that a kill can fall between two events

    def log_message(self, *_):
        pass


class RestartTest(EndToEndTest):
    """A client of one service or several that share a database, each of which may be gone at any time."""

    def setUp(self):
        super().setUp()
        self.model = http.server.ThreadingHTTPServer(("127.0.0.1", 0), EchoModel)
        self.model.handle_error = lambda *_: None  # the service is gone in the middle of a reply
        threading.Thread(target=self.model.serve_forever, daemon=True).start()
        self.addCleanup(self.model.server_close)
        self.addCleanup(self.model.shutdown)
        self.chance = random.Random(20261122)

    def make_service(self, name, database=""):
        configuration = os.path.join(self.scratch, "model.toml")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(f'[server]\nbase_url = "http://127.0.0.1:{self.model.server_address[1]}/v1"\n'
                       f'format = "chat-completions"\nmodel = "echo"\n{database}')
        service = LocalService(harness.PRESET, os.path.join(self.scratch, name),
                               ["--responder", "model", "--config", configuration])
        self.addCleanup(service.stop)
        return service

    def restart(self, service):
        service.process.kill()
        service.process.wait()
        service.__enter__()

    def request(self, service, path, body=None):
        trust = ssl.create_default_context(cafile=service.authority)
        data = json.dumps(body).encode() if body is not None else None
        query = urllib.request.Request(f"https://localhost:{service.port}{path}", data,
                                       {"conversation-id": "one", "Content-Type": "application/json"})
        with urllib.request.urlopen(query, timeout=10, context=trust) as reply:
            return json.load(reply)

    def play(self, ask, between_polls):
        """The whole conversation. Nothing of it may be lost or come twice."""
        deadline = time.monotonic() + LONGEST_SECONDS
        body = {"message": "Read all.", "file_structure": {}}
        seen = []
        while len(seen) < NUM_TURNS:
            identifier = ask("/command", body)["request_id"]
            while True:
                between_polls()
                reply = ask(f"/status?request_id={identifier}")
                self.assertIn(reply["status"], ("PROCESSING", "COMPLETED"), reply)
                self.assertLess(time.monotonic(), deadline)
                if reply["status"] == "COMPLETED":
                    break
                time.sleep(0.01)
            blocks = reply["response"]["response"]
            seen.append(blocks[0]["text"])
            calls = blocks[1:]
            self.assertEqual([call["input"]["path"] for call in calls],
                             [f"File{len(seen)}.h"] if len(seen) < NUM_TURNS else [])
            body = {"tool_results": [{"type": "tool_result", "tool_use_id": call["id"], "content": "text",
                                      "is_error": False} for call in calls]}
        self.assertEqual(seen, [f"Step {number}." for number in range(1, NUM_TURNS + 1)])


class ModelRestartTest(RestartTest):
    def test_a_killed_service_loses_no_call_and_repeats_none(self):
        service = self.make_service("Service")
        service.__enter__()
        kills = 0

        def maybe_kill():
            nonlocal kills
            if kills < NUM_KILLS and self.chance.random() < 0.6:
                time.sleep(self.chance.random() * 0.15)
                self.restart(service)
                kills += 1

        self.play(lambda path, body=None: self.request(service, path, body), maybe_kill)
        self.assertGreater(kills, NUM_KILLS // 2)


class TakeoverTest(RestartTest):
    """Two processes behind a load balancer, which sends each request to either, and to the other if one is gone."""

    def test_another_process_takes_over_from_one_that_is_killed(self):
        postgres = PostgresServer().__enter__()
        self.addCleanup(postgres.stop)
        address = postgres.address("postgres")
        database = f'[database]\nurl = "{address}"\nlease_seconds = {LEASE_SECONDS}\n'
        services = [self.make_service(name, database) for name in ("First", "Second")]
        for service in services:
            service.__enter__()
        kills = 0
        over = threading.Event()

        def kill_now_and_then():
            # Whatever is going on: also in the middle of a request.
            nonlocal kills
            while kills < NUM_KILLS and not over.wait(random.random() * 0.4):
                victim = services[kills % 2]
                self.restart(victim)
                kills += 1
            over.wait()  # what this thread has started ends with it

        def ask(path, body=None):
            for service in self.chance.sample(services * 20, 40):
                try:
                    return self.request(service, path, body)
                except (OSError, http.client.HTTPException):
                    time.sleep(0.02)
            return self.fail("no service answers")

        killer = threading.Thread(target=kill_now_and_then)
        killer.start()
        try:
            self.play(ask, lambda: None)
        finally:
            over.set()
            killer.join()
        # On a busy machine a process needs long to come back, and the conversation goes on meanwhile.
        self.assertGreaterEqual(kills, NUM_KILLS // 10)


if __name__ == "__main__":
    unittest.main()
