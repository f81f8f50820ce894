"""Clients that others have made, and the protocol's own test suites, at the editor's server."""

import json
import os
import shutil
import subprocess
import sys
import unittest

import harness
from other_assistants_test import CONFIG, ServerTest
from token_proxy import TokenProxy

SOURCES = os.path.join(harness.ROOT, "Tests", "OtherAssistants")
INSTALLED = os.path.join(harness.ROOT, "Intermediate", "OtherAssistants")
INSTALL_SECONDS = 180
RUN_SECONDS = 120


def same_text(first, second):
    try:
        with open(first, encoding="utf-8") as one, open(second, encoding="utf-8") as other:
            return one.read() == other.read()
    except OSError:
        return False


def install():
    """Installs what the lock file names, unless it is there. @return why it could not be, or nothing"""
    lock = os.path.join(SOURCES, "package-lock.json")
    done = os.path.join(INSTALLED, "installed.json")
    if not same_text(lock, done):
        npm = shutil.which("npm")
        if not npm:
            return "npm is not installed"
        shutil.rmtree(INSTALLED, ignore_errors=True)
        os.makedirs(INSTALLED)
        for name in ("package.json", "package-lock.json"):
            shutil.copy(os.path.join(SOURCES, name), INSTALLED)
        try:
            ended = subprocess.run([npm, "ci", "--no-audit", "--no-fund"], cwd=INSTALLED, capture_output=True, text=True,
                                   timeout=INSTALL_SECONDS, check=False)
        except subprocess.TimeoutExpired:
            return "npm did not answer in time"
        if ended.returncode != 0:
            return "npm could not install the clients: " + " ".join(ended.stderr.split())[-300:]
        shutil.copy(lock, done)
    for name in os.listdir(SOURCES):
        if name.endswith(".mjs"):
            shutil.copy(os.path.join(SOURCES, name), INSTALLED)
    return ""


class RealClientsTest(ServerTest):
    @classmethod
    def setUpClass(cls):
        missing = install()
        if missing:
            raise unittest.SkipTest(missing)

    def run_node(self, *arguments, code=0):
        # The Inspector does not run on older ones.
        node = os.path.join(INSTALLED, "node_modules", "node", "bin")
        env = dict(os.environ, PATH=node + os.pathsep + os.environ["PATH"], NO_COLOR="1")
        done = subprocess.run(["node", *arguments], cwd=INSTALLED, env=env, capture_output=True, text=True,
                              stdin=subprocess.DEVNULL, timeout=RUN_SECONDS, check=False)
        self.assertEqual(done.returncode, code, done.stdout[-4000:] + done.stderr[-4000:])
        return done.stdout

    def inspect(self, *arguments, code=0):
        return self.run_node("node_modules/.bin/mcp-inspector", "--cli", self.url, "--transport", "http", "--header",
                             f"Authorization: Bearer {self.token}", "-q", *arguments, code=code)

    def check_session_client(self, *arguments):
        seen = json.loads(self.run_node("session_client.mjs", *arguments))
        self.assertEqual(seen["errors"], [])
        self.assertEqual(seen["server"], "kestrel")
        self.assertEqual(seen["read"], "[Moor]\nFeathers=12\n")
        self.assertIn("Config", seen["tree"])
        self.assertIn("Successfully updated", seen["changed"])
        self.assertIn("Undone: 1 file", seen["undone"])
        self.assertTrue(seen["failed"])
        self.assertEqual(seen["unknown"], -32602)
        self.assertEqual(seen["resource"], seen["read"])
        self.assertEqual(seen["resources"], ["kestrel://project/tree", "kestrel://compile/output"])
        self.assertEqual((seen["templates"], len(seen["prompts"]), seen["prompt"]), (3, 3, 1))
        self.assertEqual(seen["completed"], ["Config/"])
        self.assertEqual(seen["at_once"], [seen["read"]] * 4)

    def test_the_official_client_works_over_http(self):
        self.start_server()
        self.check_session_client("http", self.url, self.token)

    def test_the_official_client_works_over_standard_streams(self):
        self.check_session_client("stdio", sys.executable, os.path.join(harness.ROOT, "Tools", "mcp.py"), harness.PRESET,
                                  self.project, "change")

    def test_the_official_client_without_sessions_works(self):
        self.start_server()
        seen = json.loads(self.run_node("stateless_client.mjs", self.url, self.token))
        self.assertEqual(seen["version"], "2026-07-28")
        self.assertEqual(seen["read"], "[Moor]\nFeathers=12\n")
        self.assertIn("Successfully updated", seen["changed"])
        self.assertIn("Undone: 1 file", seen["undone"])
        self.assertTrue(seen["failed"])
        self.assertEqual((seen["resource"], seen["prompts"]), ("application/json", 3))

    def test_the_inspector_works(self):
        self.start_server()
        listed = json.loads(self.inspect("--method", "tools/list", "--strict"))
        self.assertIn("update_file", [tool["name"] for tool in listed["tools"]])
        for era in ("legacy", "auto", "modern"):
            call = ("--method", "tools/call", "--tool-name", "read_file", "--protocol-era", era)
            self.assertIn("Feathers=12", self.inspect(*call, "--tool-arg", f"path={CONFIG}"))
        failed = 5
        self.inspect("--method", "tools/call", "--tool-name", "read_file", "--tool-arg", "path=No.h", code=failed)
        self.inspect("--method", "tools/call", "--tool-name", "read_file", "--tool-arg", f"path={CONFIG}", "--load",
                     "--load-requests", "100", "--load-concurrency", "5")

    def check_conformance(self, package, baseline, *arguments):
        self.start_server()
        proxy = TokenProxy(self.url, self.token)
        self.addCleanup(proxy.close)
        self.run_node(f"node_modules/{package}/dist/index.js", "server", "--url", proxy.url, "-o",
                      os.path.join(self.scratch, "conformance"), "--expected-failures", os.path.join(SOURCES, baseline),
                      *arguments)

    def test_the_suite_for_sessions_finds_nothing_new(self):
        self.check_conformance("@modelcontextprotocol/conformance", "baseline.yml")

    def test_the_suite_for_requests_without_sessions_finds_nothing_new(self):
        self.check_conformance("conformance-next", "baseline-stateless.yml", "--requirements", "2026-07-28")


if __name__ == "__main__":
    unittest.main()
