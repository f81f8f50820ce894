"""The tab or the window closed while something goes on behind it."""

import json
import os
import time
import unittest

from change_test import SLOW_SOURCE, CodeProjectTest, answer, text, tool
from screen import WAIT_SECONDS, ScreenTest

STILL_AT_WORK = {"status": [{"status": "RUNNING"}]}
SANITIZER_WORDS = ("AddressSanitizer", "LeakSanitizer", "runtime error:")


class ClosingTest(ScreenTest, CodeProjectTest):
    def setUp(self):
        super().setUp()
        service = self.start_service("--responder", "script", "--scripts", self.scratch)
        self.use_service(service.port, service.authority)
        self.script("poll", STILL_AT_WORK)
        self.script("compile", answer(tool("t1", "compile")), answer(text("It compiles.")), STILL_AT_WORK)
        self.script("python", answer(tool("t1", "execute_unreal_engine_api_python_script",
                                          script="import time\ntime.sleep(2)\nprint('Awake')")), STILL_AT_WORK)

    def script(self, name, *turns):
        with open(os.path.join(self.scratch, name + ".json"), "w", encoding="utf-8") as file:
            json.dump({"turns": turns}, file)

    def begin(self, name, sign):
        """Opens the editor and the tab, and sends what the script answers; it goes on when the sign is on the panel."""
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        # Only now: the editor has built what there was at its start.
        self.write("Source/Moor/Moor.cpp", SLOW_SOURCE)
        self.type("script " + name)
        self.press("Return")
        self.text(sign)

    def close_tab(self):
        self.click(self.button("Close Kestrel"))
        self.gone("Undo")

    def assert_all_ended(self, output):
        for words in SANITIZER_WORDS:
            self.assertNotIn(words, output)
        end = time.monotonic() + WAIT_SECONDS
        while self.processes() and time.monotonic() < end:
            time.sleep(0.1)
        self.assertEqual(self.processes(), [])

    def processes(self):
        """What works on the project."""
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/cmdline", "rb") as file:
                    line = file.read().replace(b"\0", b" ").decode(errors="replace")
                if self.project in line or os.readlink(f"/proc/{pid}/cwd").startswith(self.project):
                    found.append(line)
            except OSError:
                pass  # it has just ended
        return found

    def test_the_window_is_closed_while_an_answer_is_awaited_and_dots_move(self):
        self.begin("poll", "Processing request...")
        self.assert_all_ended(self.close_editor())

    def test_the_tab_is_closed_and_opened_again_while_an_answer_is_awaited(self):
        self.begin("poll", "Processing request...")
        self.close_tab()
        time.sleep(1)  # some polls and some moves of dots that are not there any more
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.click(self.button("[ End ]"))
        self.text("[ User End ]")
        self.close_tab()
        self.assert_all_ended(self.close_editor())

    def test_the_window_is_closed_while_the_game_is_compiled(self):
        self.begin("compile", "Compiling...")
        self.assertTrue(any("ninja" in line for line in self.processes()), "the build took too little time to be met")
        self.assert_all_ended(self.close_editor())

    def test_the_tab_is_closed_while_the_game_is_compiled(self):
        self.begin("compile", "Compiling...")
        self.close_tab()
        self.assert_all_ended(self.close_editor())

    def test_the_window_is_closed_while_a_script_runs(self):
        self.begin("python", "Processing request...")
        time.sleep(1)
        self.assert_all_ended(self.close_editor())


if __name__ == "__main__":
    unittest.main()
