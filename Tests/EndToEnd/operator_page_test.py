"""The operator page of the service, as somebody with a phone sees it."""

import base64
import hashlib
import json
import os
import ssl
import subprocess
import time
import unittest
import urllib.request

import browser
import harness
from harness import EndToEndTest

from scripted_model import ScriptedModel
from service import LocalService

OPERATOR_KEY = "operator-canary-5309"
MARKUP = "<img src=x onerror=\"document.title='broken into'\">"


@unittest.skipIf(browser.missing(), f"no {' and no '.join(browser.missing())} is installed")
class OperatorPageTest(EndToEndTest):
    def start_model_service(self):
        script = os.path.join(self.scratch, "model.json")
        with open(script, "w", encoding="utf-8") as file:
            json.dump([{"hears": "Hello", "says": {"text": f"Hi {MARKUP}", "calls": [
                {"name": "read_file", "input": {"path": "Config/DefaultGame.ini"}}]}}], file)
        model = ScriptedModel(script)
        model.__enter__()
        self.addCleanup(model.__exit__)
        configuration = os.path.join(self.scratch, "model.toml")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(model.configuration())
        service = LocalService(harness.PRESET, os.path.join(self.scratch, "Service"),
                               ["--responder", "model", "--config", configuration])
        service.env["KESTREL_OPERATOR_KEY"] = OPERATOR_KEY
        service.__enter__()
        self.addCleanup(service.stop)
        return service

    def talk(self, service):
        trust = ssl.create_default_context(cafile=service.authority)

        def ask(path, body=None):
            query = urllib.request.Request(f"https://localhost:{service.port}{path}", body,
                                           {"conversation-id": "0123456789", "Content-Type": "application/json"})
            with urllib.request.urlopen(query, timeout=20, context=trust) as reply:
                return json.load(reply)

        identifier = ask("/command", json.dumps({"message": "Hello", "file_structure": {}}).encode())["request_id"]
        while ask(f"/status?request_id={identifier}")["status"] == "PROCESSING":
            time.sleep(0.01)

    @staticmethod
    def key_hash(certificate):
        """Of the public key, in the form in which the browser is told which one to trust."""
        public = subprocess.run(["openssl", "x509", "-in", certificate, "-pubkey", "-noout"], capture_output=True,
                                check=True).stdout
        der = base64.b64decode(b"".join(public.splitlines()[1:-1]))
        return base64.b64encode(hashlib.sha256(der).digest()).decode()

    def test_shows_conversations_on_a_phone_without_a_network(self):
        service = self.start_model_service()
        self.talk(service)
        with browser.Browser(self.key_hash(os.path.join(service.state_folder, "server.pem"))) as page:
            page.open(f"https://localhost:{service.port}/")
            page.type("#key", "wrong")
            page.click("#sign-in button")
            page.wait_for("return document.querySelector('#problem').textContent.includes('missing or wrong')")
            page.type("#key", OPERATOR_KEY)
            page.click("#sign-in button")
            page.wait_for("return document.querySelectorAll('#conversations tbody tr').length == 1")
            self.assertIn("Tokens today", page.run("return document.querySelector('#totals').innerText"))
            page.click("#conversations tbody button")
            page.wait_for("return !document.querySelector('#transcript').hidden")
            transcript = page.run("return document.querySelector('#turns').innerText")
            for expected in ("Hello", MARKUP, "Tool call: read_file", "Config/DefaultGame.ini"):
                self.assertIn(expected, transcript)
            self.assertEqual(page.run("return document.title"), "Kestrel service")
            self.assertLessEqual(*page.run("return [document.documentElement.scrollWidth, innerWidth]"))
            self.assertGreaterEqual(page.run("return document.querySelector('#more, #leave').offsetHeight || 44"), 44)
            loaded = page.run("return performance.getEntriesByType('resource').map(entry => new URL(entry.name).origin)")
            self.assertEqual(set(loaded), {f"https://localhost:{service.port}"})
            errors = [message for message in page.messages() if "401" not in message]
            self.assertEqual(errors, [])
            # A tab that is reloaded stays signed in; one that has signed out does not.
            page.command("/refresh")
            page.wait_for("return document.querySelectorAll('#conversations tbody tr').length == 1")
            page.click("#leave")
            page.wait_for("return !document.querySelector('#sign-in').hidden && document.querySelector('#content').hidden")
        with open(service.log_path, encoding="utf-8") as log:
            text = log.read()
        self.assertIn('"event":"turn_ended"', text)
        for secret in (OPERATOR_KEY, "Hello", MARKUP):
            self.assertNotIn(secret, text)


if __name__ == "__main__":
    unittest.main()
