"""The bytes of the requests, seen by a server that is nothing but a socket with TLS."""

import json
import unittest

import harness
from harness import EndToEndTest
from recording_server import RecordingServer, completed

TEXT_BLOCK = {"type": "text", "text": "Good evening."}
TOOL_BLOCK = {"type": "tool_use", "id": "t1", "name": "read_file", "input": {"path": "Config/DefaultGame.ini"}}
TOOL_RESULT = ('{"type":"tool_result","tool_use_id":"t1","content":"[Moor]\\nFeathers=12\\n","is_error":false}')


class WireTest(EndToEndTest):
    maxDiff = None

    def talk(self, status_replies, *prompts):
        service = self.start_service()
        server = RecordingServer(service.state_folder, status_replies)
        self.addCleanup(server.socket.close)
        self.use_service(server.port, service.authority)
        run = self.run_editor(*[f"-Prompt={prompt}" for prompt in prompts], "-Approve")
        self.assertEqual(run.code, 0, run)
        return server.requests

    def test_the_requests_of_a_conversation_are_as_agreed_to_the_letter(self):
        requests = self.talk(
            [completed(TOOL_BLOCK, auto_continue=False), completed(TEXT_BLOCK, auto_continue=True),
             completed(TOOL_BLOCK, auto_continue=True), completed(TEXT_BLOCK, auto_continue=True)],
            'Say "hi" \u00fc', 'Read "it"')
        conversation = dict(requests[0].headers)["conversation-id"]
        self.assertRegex(conversation, "^[0-9A-F]{32}$")
        commands = requests[0::2]
        for index, status in enumerate(requests[1::2]):
            with self.subTest(status=index):
                self.check_status(status, index + 1, conversation)
        for index, command in enumerate(commands):
            with self.subTest(command=index):
                self.check_command_head(command, conversation)
        self.check_first_body(commands[0].body)
        self.assertEqual([command.body for command in commands[1:]], [
            '{"message":"","tool_results":[%s],"was_confirmed":true}' % TOOL_RESULT,
            '{"message":"Read \\"it\\"","was_confirmed":true}',
            '{"tool_results":[%s],"was_confirmed":true}' % TOOL_RESULT])

    def check_command_head(self, command, conversation):
        self.assertEqual(command.line, "POST /v1/command HTTP/1.1")
        headers = dict(command.headers)
        self.assertRegex(headers["engine-version"], r"^5\.\d+$")
        self.assertEqual(command.own_headers(), [
            ("Content-Type", "application/json"), ("x-api-key", harness.API_KEY), ("conversation-id", conversation),
            ("engine", headers["engine"]), ("engine-version", headers["engine-version"])])

    def check_status(self, status, number, conversation):
        self.assertEqual(status.line, f"GET /v1/status?request_id=id-{number} HTTP/1.1")
        self.assertEqual(status.own_headers(), [("x-api-key", harness.API_KEY), ("conversation-id", conversation)])
        self.assertEqual(status.body, "")

    def check_first_body(self, body):
        """Members in their order, condensed; the tree has files before folders."""
        pairs = json.loads(body, object_pairs_hook=list)
        self.assertEqual([name for name, _ in pairs], ["message", "file_structure", "is_confirmation_mode"])
        members = json.loads(body)
        self.assertEqual(members["message"], 'Say "hi" \u00fc')
        self.assertIs(members["is_confirmation_mode"], True)
        self.assertEqual(members["file_structure"], {
            "Moor.uproject": "#",
            "Config": {name: "#" for name in ("DefaultGame.ini", "DefaultPlugin.ini", "DefaultEngine.ini")},
            "Source": {"Moor": {"Walker.h": "#"}}})
        self.assertEqual(body, json.dumps(members, ensure_ascii=False, separators=(",", ":")), "no spaces in between")


if __name__ == "__main__":
    unittest.main()
