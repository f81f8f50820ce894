"""How it is going, at a glance: numbers, the answer so far, failures that repeat themselves, and news for somebody who
looks elsewhere."""

import json
import os
import shutil
import threading
import unittest

from change_test import tool
from recording_server import RecordingServer, completed
from screen import ScreenTest

SIZES = ((320, 480), (420, 600), (640, 640), (1200, 680))


def processing(**members):
    return json.dumps({"status": "PROCESSING", **members})


class StatusWindowTest(ScreenTest):
    def open_panel_with(self, replies, *arguments):
        service = self.start_service()
        server = RecordingServer(service.state_folder, replies)
        self.addCleanup(server.socket.close)
        self.use_service(server.port, service.authority)
        self.open_editor(*arguments)
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("begin")
        self.press("Return")

    def line(self, part):
        """A line on the panel that has a part; such lines are no fields of text."""
        return self.wait_for(f"the line {part!r}", lambda widgets: next(
            (each for each in widgets if part in each["name"] + each.get("value", "")), None))

    def test_the_answer_so_far_and_the_counters_of_the_service_are_shown(self):
        may_answer = threading.Event()
        self.addCleanup(may_answer.set)
        partial = "## The gate\n\nI look at `OpenGate`, which is called"

        def answer():
            may_answer.wait(timeout=60)
            return completed({"type": "text", "text": partial + " once."}, auto_continue=True)

        self.open_panel_with([processing(partial=partial, tokens=1234, seconds=3, attempt=2), answer])
        self.line("answer so far")
        self.assertRegex(self.line("1,234 tokens")["name"], "^Working 0:0[0-9] ")
        self.line("next poll")
        self.screen.picture("status-1-partial")
        may_answer.set()
        self.text("which is called once.")
        self.line("Done ")
        self.screen.picture("status-2-done")
        shown = "\n".join(each["name"] + each.get("value", "") for each in self.widgets())
        self.assertNotIn("answer so far", shown)
        self.close_editor()

    def test_three_equal_failures_are_told_and_can_be_paused(self):
        failing = completed(tool("a", "update_file", path="Source/Moor/None.h", old_string="a", new_string="b"),
                            auto_continue=True)
        may_answer = threading.Event()
        self.addCleanup(may_answer.set)

        def answer():
            may_answer.wait(timeout=60)
            return completed(tool("b", "read_file", path="Source/Moor/Walker.h"), auto_continue=True)

        self.open_panel_with([failing, failing, failing, answer])
        self.line("failed 3 times in a row")
        self.screen.picture("status-3-loop")
        self.click(self.button("Pause now"))
        self.gone("Pause now")
        may_answer.set()
        self.line("Paused ")
        self.screen.picture("status-4-paused")
        self.close_editor()

    def test_an_answer_that_comes_while_the_panel_is_closed_is_told(self):
        may_answer = threading.Event()
        self.addCleanup(may_answer.set)

        def answer():
            may_answer.wait(timeout=60)
            return completed({"type": "text", "text": "Here I am."}, auto_continue=True)

        self.open_panel_with([answer])
        self.button("Pause")
        self.click(self.button("Close Kestrel"))
        self.gone("Pause")
        may_answer.set()
        self.line("Kestrel has answered.")
        self.screen.picture("status-5-notification")
        self.click(self.button("Show Kestrel"))
        self.text("Here I am.")
        self.gone("Show Kestrel")
        self.close_editor()

    def test_it_fits_into_every_size(self):
        partial = "I look at `OpenGate`, which is called by the warden of the gate and by nobody else."
        failing = completed(tool("a", "update_file", path="Source/Moor/None.h", old_string="a", new_string="b"),
                            auto_continue=True)
        for width, height in (*SIZES, (840, 720)):
            scale = 2 if width == 840 else 1
            with self.subTest(width=width, scale=scale):
                stuck = [processing(partial=partial, tokens=123456)] * 20
                self.open_panel_with([failing, failing, failing, *stuck], f"-ResX={width}", f"-ResY={height}",
                                     f"-DPIScale={scale}")
                self.line("failed 3 times in a row")
                self.line("answer so far")
                self.screen.picture(f"status-6-{width}-at-{scale}")
                self.close_editor()
                os.remove(self.report)
                shutil.rmtree(os.path.join(self.project, "Saved"))


if __name__ == "__main__":
    unittest.main()
