"""No key appears in anything that the service writes or says, whatever its model server does with it."""

import http.server
import json
import os
import ssl
import subprocess
import threading
import time
import unittest
import urllib.error
import urllib.request

import harness
import scripted_model
import steps
from harness import EndToEndTest
from postgres_server import PostgresServer
from service import LocalService

MODEL_KEY = "canary-model-5309"
OPERATOR_KEY = "canary-operator-5309"
DATABASE_PASSWORD = "canary-database-5309"


class TellTale(http.server.BaseHTTPRequestHandler):
    """Repeats the key in every place that a reply has: errors in several forms, text, a tool's input."""

    number = 0

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        key = self.headers["Authorization"]
        assert MODEL_KEY in key
        TellTale.number += 1
        replies = {
            1: (401, json.dumps({"error": {"message": f"wrong key {key}"}})),
            2: (400, f"<html>{key}</html>"),
            3: (200, "data: " + json.dumps({"error": {"message": key}}) + "\n\n"),
            4: (200, "".join(f"data: {event}\n\n" for event in scripted_model.events_of(
                {"text": f"Your key is {key}.", "calls": [{"name": "read_file", "input": {"path": key}}]}, 4))),
            5: (307, ""),
        }
        status, body = replies.get(TellTale.number, (403, key))
        self.send_response(status, key)
        self.send_header("Location", f"http://127.0.0.1:1/{key}")
        self.end_headers()
        self.wfile.write(body.encode())

    def log_message(self, *_):
        pass


class CanaryTest(EndToEndTest):
    def test_no_key_is_written_anywhere(self):
        model = http.server.ThreadingHTTPServer(("127.0.0.1", 0), TellTale)
        threading.Thread(target=model.serve_forever, daemon=True).start()
        self.addCleanup(model.server_close)
        self.addCleanup(model.shutdown)
        postgres = PostgresServer().__enter__()
        self.addCleanup(postgres.stop)
        address = postgres.address("postgres").replace("@", f":{DATABASE_PASSWORD}@")
        for database in ("", '[database]\nurl_variable = "DATABASE_URL"\n'):
            with self.subTest(database=database):
                TellTale.number = 0
                self.search(model.server_address[1], database, address)
        with open(os.path.join(postgres.folder, "log"), encoding="utf-8") as log:
            self.assertNotIn("canary", log.read())
        dump = postgres.run("pg_dump", "-h", postgres.folder, "postgres", stdout=subprocess.PIPE, text=True)
        stored = dump.communicate()[0]
        self.assertIn("Your key is", stored)
        self.look_for_keys("the database", stored)

    def look_for_keys(self, where, text):
        for key in self.keys:
            self.assertNotIn(key, text, where)

    def search(self, model_port, database, address):
        state = os.path.join(self.scratch, "Shared" if database else "Alone")
        configuration = os.path.join(self.scratch, "model.toml")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(f'[server]\nbase_url = "http://127.0.0.1:{model_port}/v1"\nformat = "chat-completions"\n'
                       f'model = "m"\nkey_variable = "MODEL_KEY"\n[retries]\nattempts = 1\n[log]\ncontent = true\n{database}')
        service = LocalService(harness.PRESET, state, ["--responder", "model", "--config", configuration])
        service.env |= {"MODEL_KEY": MODEL_KEY, "DATABASE_URL": address, "KESTREL_OPERATOR_KEY": OPERATOR_KEY}
        added = subprocess.run([steps.binary(harness.PRESET, "kestrel-service"), "keys", "add", "anna", "--state", state,
                                "--config", configuration], env=service.env, capture_output=True, text=True, check=True)
        user_key = added.stdout.split()[-1]
        self.keys = [MODEL_KEY, OPERATOR_KEY, DATABASE_PASSWORD, user_key]
        said = []

        def ask(path, body=None, headers=None):
            trust = ssl.create_default_context(cafile=service.authority)
            query = urllib.request.Request(f"https://localhost:{service.port}{path}", body, headers or {
                "x-api-key": user_key, "conversation-id": "one", "Content-Type": "application/json"})
            try:
                with urllib.request.urlopen(query, timeout=20, context=trust) as reply:
                    said.append(str(reply.headers) + reply.read().decode())
            except urllib.error.HTTPError as error:
                said.append(str(error.headers) + error.read().decode())
            return said[-1].rsplit("\n\n", 1)[-1]

        with service:
            for turn in range(6):
                body = {"message": "Hi"} | ({} if turn else {"file_structure": {}})
                identifier = json.loads(ask("/command", json.dumps(body).encode()))["request_id"]
                while "PROCESSING" in ask(f"/status?request_id={identifier}"):
                    time.sleep(0.01)
            self.assertGreater(TellTale.number, 4)
            self.assertTrue(any("Your key is Bearer [key]" in each for each in said))
            for key in ("wrong", user_key + "x", MODEL_KEY):
                ask("/status?request_id=0", None, {"x-api-key": key})
            for path in ("/", "/metrics", "/operator/overview", "/operator/conversations",
                         "/operator/conversation?id=one", "/health"):
                ask(path, None, {"Authorization": f"Bearer {OPERATOR_KEY}"})
                ask(path, None, {"Authorization": f"Bearer {user_key}"})
        for command in (["keys", "list", "--state", state, "--config", configuration], ["check-config", configuration]):
            done = subprocess.run([service.command[0], *command], env=service.env, capture_output=True, text=True,
                                  check=False)
            said.append(done.stdout + done.stderr)
        self.assertIn("anna", "".join(said))
        self.look_for_keys("what the service says", "".join(said))
        for folder, _, names in os.walk(state):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    self.look_for_keys(name, file.read().decode("latin-1"))


if __name__ == "__main__":
    unittest.main()
