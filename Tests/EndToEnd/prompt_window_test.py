"""The prompt box as a person uses it: prompts that come back, that wait, and paths that complete themselves."""

import json
import os
import threading
import unittest

from recording_server import RecordingServer, completed
from screen import ScreenTest


class PromptWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service()

    def open_panel(self):
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")

    def prompt_is(self, text):
        self.wait_for(f"the prompt {text!r}", lambda widgets: any(
            each["name"] == "Enter your prompt here..." and each.get("value", "") == text for each in widgets))

    def test_prompts_are_recalled_and_paths_completed_with_the_keyboard(self):
        self.use_service(self.service.port, self.service.authority)
        self.open_panel()
        self.type("read @walkh")
        self.button("Source/Moor/Walker.h")
        self.screen.picture("panel-30-completion")
        self.press("Return")
        self.prompt_is("read Source/Moor/Walker.h ")
        self.press("Return")
        self.prompt_is("")
        self.button("Approve")
        self.click(self.button("[ End ]"))
        self.text("[ User End ]")
        self.type("half a thought")
        self.press("Up")
        self.prompt_is("read Source/Moor/Walker.h ")
        self.press("Down")
        self.prompt_is("half a thought")
        self.close_editor()
        os.remove(self.report)
        self.open_panel()
        self.press("Up")
        self.prompt_is("read Source/Moor/Walker.h ")
        self.close_editor()

    def test_a_prompt_waits_until_the_answer_is_there_and_comes_back_when_it_fails(self):
        may_answer = threading.Event()

        def answer():
            may_answer.wait(timeout=60)
            return completed({"type": "text", "text": "That was the first."}, auto_continue=True)

        failure = json.dumps({"status": "FAILED", "error": "No model answers."})
        server = RecordingServer(self.service.state_folder, [answer, failure, failure])
        self.addCleanup(server.socket.close)
        self.addCleanup(may_answer.set)
        self.use_service(server.port, self.service.authority)
        self.open_panel()
        self.type("first")
        self.press("Return")
        self.button("Pause")
        self.type("second")
        self.press("Return")
        withdraw = self.button("Withdraw")
        self.prompt_is("")
        self.screen.picture("panel-31-queued")
        self.click(withdraw)
        self.prompt_is("second")
        self.press("Return")
        self.button("Withdraw")
        self.type("third")
        may_answer.set()
        self.gone("Withdraw")
        self.text("[ Cancelled ]")
        self.prompt_is("third")
        self.press("ctrl+a")
        self.press("BackSpace")
        self.type("fourth")
        self.press("Return")
        self.prompt_is("fourth")
        self.screen.picture("panel-32-failed")
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
