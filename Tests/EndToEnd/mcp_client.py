"""A client of the editor's Model Context Protocol server, as plain as can be: one HTTP request for each message."""

import http.client
import itertools
import json
import os
import time
from urllib.parse import urlsplit

VERSION = "2025-11-25"
STATELESS = "2026-07-28"
SECONDS = 60
PREFIX = "io.modelcontextprotocol/"


def server_file(project):
    return os.path.join(project, "Saved", "Kestrel", "OtherAssistants.json")


def wait_for_server(project, seconds=SECONDS):
    """Address and token of the server of a project, as soon as it answers."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            with open(server_file(project), encoding="utf-8") as file:
                found = json.load(file)
            Client(found["url"], found["token"]).send("GET").close()
            return found["url"], found["token"]
        except (OSError, ValueError, KeyError):
            time.sleep(0.05)
    raise AssertionError(f"no server for {project}")


class Answer:
    def __init__(self, response):
        self.status = response.status
        self.headers = response.headers
        self.body = response.read()

    def json(self):
        return json.loads(self.body)

    def close(self):
        pass


class Client:
    """Who talks to a server. With a session once `initialize` was called."""

    def __init__(self, url, token, name="probe"):
        self.address = urlsplit(url)
        self.token = token
        self.name = name
        self.session = None
        self.ids = itertools.count(1)

    def send(self, method, body=None, headers=(), path=None):
        """One request, on a connection of its own. A header that is None is left out."""
        connection = http.client.HTTPConnection(self.address.hostname, self.address.port, timeout=SECONDS)
        all_headers = {"Authorization": f"Bearer {self.token}", "Content-Type": "application/json",
                       "Accept": "application/json, text/event-stream"}
        if self.session:
            all_headers["Mcp-Session-Id"] = self.session
        all_headers.update(headers)
        connection.request(method, path or self.address.path, body,
                           {name: value for name, value in all_headers.items() if value is not None})
        try:
            return Answer(connection.getresponse())
        finally:
            connection.close()

    def post(self, message, headers=()):
        return self.send("POST", json.dumps(message).encode(), headers)

    def request(self, method, params=None, headers=()):
        message = {"jsonrpc": "2.0", "id": next(self.ids), "method": method}
        if params is not None:
            message["params"] = params
        return self.post(message, headers)

    def result(self, method, params=None):
        answer = self.request(method, params)
        parsed = answer.json()
        if "result" not in parsed:
            raise AssertionError(f"{method}: {answer.status} {parsed}")
        return parsed["result"]

    def initialize(self, version=VERSION):
        answer = self.request("initialize", {"protocolVersion": version, "capabilities": {},
                                             "clientInfo": {"name": self.name, "version": "1"}})
        self.session = answer.headers["Mcp-Session-Id"]
        self.post({"jsonrpc": "2.0", "method": "notifications/initialized"})
        return answer.json()["result"]

    def call(self, tool, **arguments):
        """The result of a tool."""
        return self.result("tools/call", {"name": tool, "arguments": arguments})

    def text(self, tool, **arguments):
        """The text of a tool's result, which may be a failure."""
        return self.call(tool, **arguments)["content"][0]["text"]

    def stateless(self, method, params=None, headers=(), version=STATELESS, meta=()):
        """A request of the version without sessions."""
        params = dict(params or {})
        params["_meta"] = {PREFIX + "protocolVersion": version, PREFIX + "clientCapabilities": {},
                           PREFIX + "clientInfo": {"name": self.name, "version": "1"}, **dict(meta)}
        all_headers = {"MCP-Protocol-Version": version, "Mcp-Method": method}
        named = params.get("name", params.get("uri"))
        if named and method in ("tools/call", "prompts/get", "resources/read"):
            all_headers["Mcp-Name"] = named
        all_headers.update(headers)
        return self.request(method, params, all_headers)
