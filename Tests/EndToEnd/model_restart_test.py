"""The service is killed again and again in the middle of a conversation with a model, which ends as if it had not been."""

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
from service import LocalService

NUM_TURNS = 12
NUM_KILLS = 20
LONGEST_SECONDS = 60


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


class ModelRestartTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.model = http.server.ThreadingHTTPServer(("127.0.0.1", 0), EchoModel)
        self.model.handle_error = lambda *_: None  # the service is gone in the middle of a reply
        threading.Thread(target=self.model.serve_forever, daemon=True).start()
        self.addCleanup(self.model.server_close)
        self.addCleanup(self.model.shutdown)
        configuration = os.path.join(self.scratch, "model.toml")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(f'[server]\nbase_url = "http://127.0.0.1:{self.model.server_address[1]}/v1"\n'
                       'format = "chat-completions"\nmodel = "echo"\n')
        self.arguments = ["--responder", "model", "--config", configuration]
        self.service = None
        self.start()
        self.addCleanup(lambda: self.service.stop())

    def start(self):
        self.service = LocalService(harness.PRESET, os.path.join(self.scratch, "Service"), self.arguments)
        self.service.__enter__()

    def restart(self):
        self.service.process.kill()
        self.service.process.wait()
        self.start()

    def request(self, path, body=None):
        """The reply as JSON; nothing when the service was killed meanwhile."""
        trust = ssl.create_default_context(cafile=self.service.authority)
        data = json.dumps(body).encode() if body is not None else None
        query = urllib.request.Request(f"https://localhost:{self.service.port}{path}", data,
                                       {"conversation-id": "one", "Content-Type": "application/json"})
        with urllib.request.urlopen(query, timeout=10, context=trust) as reply:
            return json.load(reply)

    def test_a_killed_service_loses_no_call_and_repeats_none(self):
        chance = random.Random(20261122)
        kills = 0
        deadline = time.monotonic() + LONGEST_SECONDS
        body = {"message": "Read all.", "file_structure": {}}
        seen = []
        while len(seen) < NUM_TURNS:
            identifier = self.request("/command", body)["request_id"]
            while True:
                if kills < NUM_KILLS and chance.random() < 0.6:
                    time.sleep(chance.random() * 0.15)
                    self.restart()
                    kills += 1
                reply = self.request(f"/status?request_id={identifier}")
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
        self.assertGreater(kills, NUM_KILLS // 2)


if __name__ == "__main__":
    unittest.main()
