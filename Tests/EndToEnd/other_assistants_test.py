"""Other assistants at the editor's server: what they are let do, and what is refused to those who are none."""

import http.client
import io
import json
import os
import socket
import stat
import subprocess
import sys
import threading
import time
import unittest
from unittest import mock

import harness
import mcp
from harness import EndToEndTest
from mcp_client import PREFIX, STATELESS, Client, server_file, wait_for_server

CONFIG = "Config/DefaultGame.ini"


class ServerTest(EndToEndTest):
    """An editor without a window that lets other assistants in."""

    def start_editor(self, *arguments):
        command = [word for word in self.editor_command(*arguments, console=False) if word != "-UnattendedClock"]
        self.editor = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                       stderr=subprocess.STDOUT, text=True)
        self.addCleanup(self.stop_editor)

    def stop_editor(self):
        self.editor.terminate()
        try:
            self.assertEqual(self.editor.wait(harness.FAREWELL_SECONDS), 0)
        finally:
            self.editor.kill()
            self.editor.stdout.close()

    def start_server(self, allow="change"):
        self.start_editor(f"-KestrelMcp={allow}")
        self.url, self.token = wait_for_server(self.project)
        return self.connect()

    def connect(self, name="probe"):
        client = Client(self.url, self.token, name)
        client.initialize()
        return client

    def assert_serves(self):
        self.assertIn("Feathers", self.connect("another").text("read_file", path=CONFIG))


class OtherAssistantsTest(ServerTest):
    def test_a_client_reads_changes_and_undoes(self):
        client = self.start_server()
        before = self.files_of_project("Config", "Source")
        self.assertEqual(client.text("read_file", path=CONFIG), "[Moor]\nFeathers=12\n")
        found = client.call("find_reference_in_all_files", reference_string="Feathers")
        self.assertIn("Walker.h", json.dumps(found["structuredContent"]))
        self.assertIn("Successfully", client.text("update_file", path=CONFIG, old_string="12", new_string="13"))
        self.assertIn("success", client.text("create_cpp_file", filepath="Source/Moor", filename="Gate.h", contents="x"))
        self.assertEqual(self.files_of_project("Config")[CONFIG], b"[Moor]\nFeathers=13\n")
        self.assertIn("Undone: 2 files", client.text("undo_changes"))
        self.assertEqual(self.files_of_project("Config", "Source"), before)
        self.assertIn("Redone: 2 files", client.text("redo_changes"))
        self.assertIn("Source/Moor/Gate.h", self.files_of_project("Source"))

    def test_only_what_was_allowed_is_done_without_anybody_to_ask(self):
        client = self.start_server("read")
        self.assertIn("Feathers", client.text("read_file", path=CONFIG))
        for tool, arguments in (("update_file", {"path": CONFIG, "old_string": "12", "new_string": "13"}),
                                ("execute_unreal_engine_api_python_script", {"code": "print(1)"}),
                                ("read_file", {"path": "/etc/hostname"}), ("compile", {})):
            answer = client.call(tool, **arguments)
            self.assertTrue(answer["isError"] and "Not allowed" in answer["content"][0]["text"], answer)
        self.assertEqual(self.files_of_project("Config")[CONFIG], b"[Moor]\nFeathers=12\n")

    def test_records_are_kept_from_clients_behind_links_as_well(self):
        os.makedirs(os.path.join(self.project, "Elsewhere", "Own", "Logs"))
        self.write("Elsewhere/Own/Logs/Prompts.txt", "what was typed")
        self.write("Elsewhere/Own/Notes.txt", "a note")
        os.makedirs(os.path.join(self.project, "Plugins"), exist_ok=True)
        os.symlink(os.path.join(self.project, "Elsewhere", "Own"), os.path.join(self.project, "Plugins", "kestrel-unreal"))
        client = self.start_server("read")
        self.assertEqual(client.text("read_file", path="Elsewhere/Own/Notes.txt"), "a note")
        for path in ("Elsewhere/Own/Logs/Prompts.txt", "Plugins/kestrel-unreal/Logs/Prompts.txt"):
            self.assertIn("Not allowed", client.text("read_file", path=path))

    def test_a_change_stays_within_the_project(self):
        client = self.start_server()
        outside = os.path.join(self.scratch, "outside.txt")
        os.symlink(self.scratch, os.path.join(self.project, "Source", "Link"))
        os.makedirs(os.path.join(self.project, ".git", "hooks"))
        for path in (outside, "../outside.txt", "Source/Link/outside.txt", ".git/hooks/post-commit", ".GIT/config"):
            self.assertIn("Not allowed", client.text("create_file", path=path, file_text="x"), path)
        self.assertIn("Not allowed", client.text("execute_unreal_engine_api_python_script", code="print(1)"))
        self.assertFalse(os.path.exists(outside))

    def test_the_token_is_for_the_user_alone_and_stays_the_same(self):
        planted = server_file(self.project)
        os.makedirs(os.path.dirname(planted))
        with open(planted, "w", encoding="utf-8") as file:
            json.dump({"port": 50123, "token": "a" * 64}, file)
        os.chmod(planted, 0o644)
        self.start_editor("-KestrelMcp=read")
        while os.stat(planted).st_mode & 0o077:
            time.sleep(0.05)
        self.url, self.token = wait_for_server(self.project)
        self.assertEqual(stat.S_IMODE(os.stat(planted).st_mode), 0o600)
        self.assertNotEqual(self.token, "a" * 64, "a token that the project brought")
        self.stop_editor()
        self.start_editor("-KestrelMcp=read")
        self.assertEqual(wait_for_server(self.project), (self.url, self.token))

    def test_it_is_off_unless_it_is_wanted(self):
        run = self.run_editor("-ExecCmds=Quit", console=False)
        self.assertEqual(run.code, 0, run)
        self.assertFalse(os.path.exists(server_file(self.project)))

    def test_it_does_not_start_where_other_machines_would_reach_it(self):
        self.write("Config/DefaultEngine.ini", "[HTTPServer.Listeners]\nDefaultBindAddress=0.0.0.0\n")
        self.start_editor("-KestrelMcp=read")
        line = next(line for line in self.editor.stdout if "Other assistants are not let in" in line)
        self.assertIn("0.0.0.0", line)
        self.assertFalse(os.path.exists(server_file(self.project)))

    def plant_address(self, port):
        """The file of an earlier run, whose port the next one takes again."""
        os.makedirs(os.path.dirname(server_file(self.project)), exist_ok=True)
        with open(server_file(self.project), "w", encoding="utf-8") as file:
            json.dump({"port": port, "token": "a" * 64}, file)
        os.chmod(server_file(self.project), 0o600)

    def test_it_does_not_start_where_its_own_port_would_be_reached_by_other_machines(self):
        self.plant_address(50123)
        self.write("Config/DefaultEngine.ini", "[HTTPServer.Listeners]\n+ListenerOverrides=(Port=50124,BindAddress=\"0.0.0.0\")\n"
                                               "+ListenerOverrides=(Port=50123,BindAddress=\"10.0.0.7\")\n")
        self.start_editor("-KestrelMcp=read")
        line = next(line for line in self.editor.stdout if "Other assistants are not let in" in line)
        self.assertIn("10.0.0.7", line)

    def test_it_notices_another_program_that_answers_in_its_place(self):
        received = []
        with socket.create_server(("127.0.0.1", 0)) as other:
            port = other.getsockname()[1]
            if not 49152 <= port <= 65535:
                other = self.enterContext(socket.create_server(("127.0.0.1", 50125)))
                port = 50125

            def answer():
                connection, _ = other.accept()
                with connection:
                    received.append(connection.recv(65536))
                    connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}")

            thread = threading.Thread(target=answer, daemon=True)
            thread.start()
            self.plant_address(port)
            self.write("Config/DefaultEngine.ini", "[HTTPServer.Listeners]\nDefaultBindAddress=127.0.0.2\n")
            before = os.stat(server_file(self.project)).st_mtime_ns
            self.start_editor("-KestrelMcp=read")
            line = next(line for line in self.editor.stdout if "Other assistants are not let in" in line)
            thread.join(60)
        self.assertIn("another program answers", line)
        self.assertNotIn(b"a" * 64, received[0], "the token is not for it")
        self.assertEqual(os.stat(server_file(self.project)).st_mtime_ns, before, "no client is sent there")


class ProtocolTest(ServerTest):
    """Both generations of the protocol, as they go over the wire."""

    def test_a_session_begins_and_ends(self):
        client = self.start_server("read")
        session = client.session
        self.assertEqual(client.request("ping").json()["result"], {})
        self.assertEqual(client.send("GET").status, 405)
        self.assertEqual(client.post({"jsonrpc": "2.0", "method": "notifications/x"}).status, 202)
        self.assertEqual(client.request("ping", headers={"MCP-Protocol-Version": "1999-01-01"}).status, 400)
        self.assertEqual(client.request("ping", headers={"Mcp-Session-Id": None}).status, 400)
        guessed = session[:-1] + ("0" if session[-1] != "0" else "1")
        for other in ("x", guessed, session.upper()):
            self.assertEqual(client.request("ping", headers={"Mcp-Session-Id": other}).status, 404, other)
        self.assertEqual(client.send("DELETE").status, 204)
        self.assertEqual(client.request("ping").status, 404, "the client is to start over")
        self.assertEqual(client.send("DELETE").status, 404)
        self.assertEqual(client.initialize(STATELESS)["protocolVersion"], "2025-11-25")

    def test_a_request_without_a_session_names_its_version(self):
        self.start_server("read")
        client = Client(self.url, self.token)
        self.assertIn(STATELESS, client.stateless("server/discover").json()["result"]["supportedVersions"])
        answer = client.stateless("tools/call", {"name": "read_file", "arguments": {"path": CONFIG}})
        self.assertEqual((answer.status, answer.json()["result"]["resultType"]), (200, "complete"))
        refused = (
            (client.stateless("ping"), 404, -32601),
            (client.stateless("tools/list", version="2030-01-01"), 400, -32022),
            (client.stateless("tools/list", meta={PREFIX + "clientCapabilities": None}), 400, -32602),
            (client.stateless("tools/list", headers={"Mcp-Method": "tools/call"}), 400, -32020),
            (client.stateless("tools/list", headers={"MCP-Protocol-Version": None}), 400, -32020),
            (client.stateless("tools/call", {"name": "read_file"}, headers={"Mcp-Name": "compile"}), 400, -32020),
            (client.request("server/discover"), 400, -32602),
        )
        for answer, status, code in refused:
            self.assertEqual((answer.status, answer.json()["error"]["code"]), (status, code), answer.body)
        self.assertEqual(client.stateless("tools/call", {"name": "read_file", "arguments": {"path": CONFIG}},
                                          headers={"Mcp-Name": "=?base64?cmVhZF9maWxl?="}).status, 200)


    def test_a_batch_is_answered_as_one(self):
        self.start_server("read")
        client = Client(self.url, self.token)
        client.initialize("2025-03-26")

        def ask(identifier, method, **params):
            return {"jsonrpc": "2.0", "id": identifier, "method": method, "params": params}

        note = {"jsonrpc": "2.0", "method": "notifications/initialized"}
        answer = client.post([ask(1, "ping"), note, ask("1", "tools/call", name="read_file", arguments={"path": CONFIG}),
                              ask(2, "no/such"), 7, [ask(3, "ping")], ask(4, "initialize", protocolVersion="2025-03-26")])
        self.assertEqual(answer.status, 200)
        answers = answer.json()
        by_id = {(type(each.get("id")), each.get("id")): each for each in answers}
        self.assertEqual(by_id[int, 1]["result"], {})
        self.assertIn("Feathers", by_id[str, "1"]["result"]["content"][0]["text"])
        self.assertEqual(by_id[int, 2]["error"]["code"], -32601)
        self.assertEqual(by_id[int, 4]["error"]["code"], -32600, "a session is not opened in a batch")
        self.assertEqual([each["error"]["code"] for each in answers if "id" not in each], [-32600, -32600])
        self.assertEqual(client.post([note, note]).status, 202)
        for body in ([], [ask(number, "ping") for number in range(10_000)]):
            self.assertEqual(client.post(body).status, 400)
        self.assertEqual(client.send("POST", b"[" * 1_000_000).status, 400)
        self.assertEqual(client.send("POST", b"[" + b"[]," * 1_000_000 + b"[]]").status, 400)
        self.assertEqual(client.post([ask(1, "ping")], {"Mcp-Session-Id": None}).status, 400)
        self.assertEqual(client.post([ask(1, "ping")], {"Mcp-Session-Id": "x"}).status, 404)
        self.assertEqual(client.post([ask(1, "ping")], {"MCP-Protocol-Version": "2025-06-18"}).status, 400)
        self.assertEqual(self.connect().post([ask(1, "ping")]).status, 400, "later versions have no batches")
        meta = {PREFIX + "protocolVersion": STATELESS, PREFIX + "clientCapabilities": {}}
        self.assertEqual(client.post([ask(1, "tools/list", _meta=meta)]).json()[0]["error"]["code"], -32600)
        self.assert_serves()


class AttackTest(ServerTest):
    """Who is not let in, and what does no harm."""

    def connection(self):
        address = Client(self.url, self.token).address
        return socket.create_connection((address.hostname, address.port), timeout=60)

    def test_strangers_are_refused(self):
        client = self.start_server("read")
        port = client.address.port
        for headers, status in (
                ({"Origin": "https://evil.example"}, 403), ({"Origin": "null"}, 403),
                ({"Origin": f"http://localhost:{port + 1}"}, 403), ({"Origin": f"https://127.0.0.1:{port}"}, 403),
                ({"Host": "evil.example"}, 403), ({"Host": f"evil.example:{port}"}, 403), ({"Host": "127.0.0.1"}, 403),
                ({"Authorization": None}, 401), ({"Authorization": "Bearer"}, 401),
                ({"Authorization": "Bearer " + "0" * 64}, 401), ({"Authorization": f"Basic {self.token}"}, 401),
                ({"Authorization": f"Bearer {self.token.upper()}"}, 401),
                ({"Content-Type": "text/plain"}, 415)):
            answer = client.request("tools/list", headers=headers)
            self.assertEqual(answer.status, status, headers)
            self.assertNotIn(b"read_file", answer.body)
            self.assertFalse([name for name in answer.headers if name.lower().startswith("access-control")])
        for header in ("Transfer-Encoding", "Content-Encoding"):
            # Without the body, which nobody would read.
            self.assertEqual(client.send("GET", headers={header: "x"}).status, 400)
        self.assertEqual(client.request("tools/list", headers={"Authorization": None}).headers["WWW-Authenticate"], "Bearer")
        for method in ("OPTIONS", "PUT", "PATCH"):
            self.assertEqual(client.send(method).status, 405)
        for path in ("/.well-known/oauth-protected-resource/mcp", "/register", "/", "/mcp/x", "/mcp2", "/" + "a" * 7000):
            self.assertIn(client.send("GET", path=path).status, (400, 404), path)
        self.assertEqual(client.request("ping", headers={"Origin": f"http://localhost:{port}"}).status, 200)
        self.assert_serves()

    def test_another_user_of_the_machine_does_not_learn_the_token(self):
        self.start_server("read")
        if os.geteuid() != 0:
            self.skipTest("only root can be another user")
        nobody = 65534
        os.chmod(self.scratch, 0o755)
        read = subprocess.run(["cat", server_file(self.project)], user=nobody, group=nobody, extra_groups=[],
                              capture_output=True, check=False)
        self.assertNotEqual(read.returncode, 0)
        self.assertEqual(read.stdout, b"")
        stranger = Client(self.url, "")
        self.assertEqual(stranger.request("initialize", {"protocolVersion": "2025-11-25"}).status, 401)

    def test_bodies_of_any_size_and_shape_are_refused(self):
        client = self.start_server("read")
        for body, status in ((b"x" * 100_000_000, 413), (b"[" * 1_000_000, 400), (b'{"a":' * 500_000, 400),
                             (b"\xff\xfe\x00", 400), (b"", 400), (b"null", 400), (b'"text"', 400), (b"\0" * 1000, 400),
                             (b'{"jsonrpc":"2.0","id":{},"method":"ping"}', 400)):
            self.assertEqual(client.send("POST", body).status, status, body[:20])
        for identifier in (0, -1, "", "x" * 100_000, "\u202e", 9007199254740991):
            answer = client.post({"jsonrpc": "2.0", "id": identifier, "method": "no/such"}).json()
            self.assertEqual((answer["id"], answer["error"]["code"]), (identifier, -32601))
        self.assert_serves()

    def test_slow_clients_and_those_that_vanish_hold_nobody_up(self):
        client = self.start_server("read")
        vanished = []
        for part in (b"", b"POST /mcp HTTP/1.1\r\nHost: a", b"POST /mcp HTTP/1.1\r\nContent-Length: 1000\r\n\r\n{"):
            for _ in range(10):
                connection = self.connection()
                connection.sendall(part)
                vanished.append(connection)
        for _ in range(20):
            self.assertIn("Feathers", client.text("read_file", path=CONFIG))
        for connection in vanished:
            connection.close()
        body = json.dumps({"jsonrpc": "2.0", "id": 1, "method": "ping"}).encode()
        head = (f"POST /mcp HTTP/1.1\r\nHost: 127.0.0.1:{client.address.port}\r\nAuthorization: Bearer {self.token}\r\n"
                f"Content-Type: application/json\r\nMcp-Session-Id: {client.session}\r\nContent-Length: {len(body)}\r\n\r\n")
        for _ in range(50):
            connection = self.connection()
            connection.sendall(head.encode() + body)
            connection.close()  # before the answer
        self.assert_serves()

    def test_ten_thousand_requests_in_pieces(self):
        client = self.start_server("read")
        body = json.dumps({"jsonrpc": "2.0", "id": 1, "method": "tools/list"}).encode()
        head = (f"POST /mcp HTTP/1.1\r\nHost: 127.0.0.1:{client.address.port}\r\nAuthorization: Bearer {self.token}\r\n"
                f"Content-Type: application/json\r\nMcp-Session-Id: {client.session}\r\nContent-Length: {len(body)}\r\n\r\n")
        request = head.encode() + body
        pieces = [request[start:start + 97] for start in range(0, len(request), 97)]
        num_threads, num_requests = 50, 200
        answered = []
        closed = []

        def ask_on(connection, wanted):
            for _ in range(wanted):
                for piece in pieces:
                    connection.sendall(piece)
                response = http.client.HTTPResponse(connection)
                response.begin()
                answered.append(response.status if b"read_file" in response.read() else 0)
                response.close()
                yield

        def ask():
            left = num_requests
            while left > 0:
                with self.connection() as connection:
                    try:
                        for _ in ask_on(connection, left):
                            left -= 1
                    except (ConnectionError, http.client.BadStatusLine):
                        closed.append(left)  # on a busy machine it was idle for too long: clients open another

        threads = [threading.Thread(target=ask) for _ in range(num_threads)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join(harness.LONGEST_RUN_SECONDS * 2)
        self.assertEqual(answered, [200] * num_threads * num_requests)
        self.assertLess(len(closed), num_threads)
        self.assert_serves()


class StandardStreamsTest(EndToEndTest):
    """The server that a client starts for itself."""

    def talk(self, *messages, allow="read"):
        command = [sys.executable, os.path.join(harness.ROOT, "Tools", "mcp.py"), harness.PRESET, self.project, allow]
        lines = "".join((message if isinstance(message, str) else json.dumps(message)) + "\n" for message in messages)
        done = subprocess.run(command, input=lines, capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return [json.loads(line) for line in done.stdout.splitlines()]

    def test_nothing_but_messages_comes_out(self):
        answers = self.talk(
            {"jsonrpc": "2.0", "id": 0, "method": "initialize", "params": {
                "protocolVersion": "2025-06-18", "capabilities": {}, "clientInfo": {"name": "stdio", "version": "1"}}},
            {"jsonrpc": "2.0", "method": "notifications/initialized"}, "no JSON",
            {"jsonrpc": "2.0", "id": "two", "method": "tools/call",
             "params": {"name": "read_file", "arguments": {"path": CONFIG}}},
            {"jsonrpc": "2.0", "id": 3, "method": "tools/call", "params": {
                "name": "delete_file", "arguments": {"path": CONFIG}}})
        by_id = {answer.get("id"): answer for answer in answers}
        self.assertEqual(by_id[0]["result"]["protocolVersion"], "2025-06-18")
        self.assertEqual(by_id[None]["error"]["code"], -32700)
        self.assertIn("Feathers", by_id["two"]["result"]["content"][0]["text"])
        self.assertIn("Not allowed", by_id[3]["result"]["content"][0]["text"])
        self.assertEqual(len(answers), 4)
        self.assertFalse(os.path.exists(server_file(self.project)), "the address in the project is the window's")

    def test_a_batch_goes_through_as_one(self):
        answers = self.talk(
            {"jsonrpc": "2.0", "id": 0, "method": "initialize", "params": {
                "protocolVersion": "2025-03-26", "capabilities": {}, "clientInfo": {"name": "old", "version": "1"}}},
            [{"jsonrpc": "2.0", "id": 1, "method": "ping"}, {"jsonrpc": "2.0", "method": "notifications/initialized"}])
        self.assertEqual(answers[1], [{"jsonrpc": "2.0", "id": 1, "result": {}}])
        failed = json.loads(mcp.Bridge.describe_failure([{"id": 1}, {"method": "x"}, 7], "gone"))
        self.assertEqual([each["id"] for each in failed], [1])

    def test_a_call_that_takes_long_reports_progress_to_who_asks(self):
        class SlowEditor:
            def post(self, _body, _headers):
                time.sleep(0.5)
                return {}, b'{"id": 1}'

        output = io.BytesIO()
        with mock.patch.object(mcp, "PROGRESS_SECONDS", 0.1):
            bridge = mcp.Bridge(SlowEditor(), output)
            bridge.run([json.dumps({"jsonrpc": "2.0", "id": number, "method": "tools/call", "params": {
                "name": "compile", "_meta": meta}}) for number, meta in ((1, {"progressToken": "p"}), (2, {}))])
            time.sleep(0.3)
        lines = [json.loads(line) for line in output.getvalue().splitlines()]
        reports = [line["params"] for line in lines if "params" in line]
        self.assertGreater(len(reports), 1)
        self.assertEqual({report["progressToken"] for report in reports}, {"p"})
        self.assertEqual([report["progress"] for report in reports], sorted({report["progress"] for report in reports}))
        self.assertEqual(lines[-1], {"id": 1}, "nothing comes behind the answer")

    def test_a_client_may_be_let_change_the_project(self):
        meta = {PREFIX + "protocolVersion": STATELESS, PREFIX + "clientCapabilities": {}}
        answers = self.talk({"jsonrpc": "2.0", "id": 1, "method": "tools/call", "params": {
            "name": "create_file", "arguments": {"path": "Docs/\u00fc.txt", "file_text": "x"}, "_meta": meta}},
            allow="change")
        self.assertFalse(answers[0]["result"]["isError"], answers)
        self.assertIn("Docs/\u00fc.txt", self.files_of_project("Docs"))


if __name__ == "__main__":
    unittest.main()
