"""The editor as a person sees it: a window, a mouse and a keyboard."""

import os
import time
import unittest

from change_test import tool
from recording_server import RecordingServer, completed
from screen import REPORT_SECONDS, ScreenTest


class WindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service()
        self.use_service(self.service.port, self.service.authority)

    def answer_with(self, *blocks):
        """A service of the test's own, which answers once and asks for approval."""
        server = RecordingServer(self.service.state_folder, [completed(*blocks, auto_continue=False)])
        self.addCleanup(server.socket.close)
        self.use_service(server.port, self.service.authority)

    def open_panel_and_begin(self):
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("begin")
        self.press("Return")

    def read(self, *names):
        with open(os.path.join(self.project, *names), encoding="utf-8") as file:
            return file.read()

    def test_a_file_is_changed_seen_and_taken_back(self):
        self.open_editor()
        self.choose("Window", "Kestrel", picture="panel-1-menu")
        self.text("I know the files and Blueprints")
        self.screen.picture("panel-2-welcome")
        self.type('replace "Feathers = 12" with "Quills = 7" in Source/Moor/Walker.h')
        self.text("Quills = 7")
        self.screen.picture("panel-3-prompt")
        self.press("Return")
        self.text("I will edit Source/Moor/Walker.h.")
        self.click(self.button("Show the change"))
        self.text("+ \tint Quills = 7;")
        self.screen.picture("panel-4-approval")
        self.click(self.button("Approve"))
        self.text("with 1 replacements")
        self.screen.picture("panel-5-change")
        self.assertIn("Quills = 7", self.read("Source", "Moor", "Walker.h"))
        self.click(self.button("Undo"))
        self.text("Undoing Last Changes...")
        self.button("Redo")
        self.screen.picture("panel-6-undone")
        self.assertIn("Feathers = 12", self.read("Source", "Moor", "Walker.h"))
        self.click(self.button("Close Kestrel"))
        self.gone("Undo")
        self.screen.picture("panel-7-closed")
        self.choose("Window", "Kestrel")
        self.click(self.button("Close Kestrel"))
        self.gone("Undo")
        # Nothing else has the name now but the button of the tool bar.
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.assertEqual(self.read("Source", "Moor", "Walker.h").count("Feathers = 12"), 1)
        self.button("Redo")
        self.screen.picture("panel-8-reopened")
        self.close_editor()

    def test_what_is_worth_a_second_look_stands_out_before_it_is_approved(self):
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("delete Config/DefaultGame.ini")
        self.press("Return")
        self.text("Delete Config/DefaultGame.ini")
        self.screen.picture("panel-9-deletion")
        self.type('run python "import os\\nprint(os.getcwd())"')
        self.press("Return")
        self.click(self.button("Show the script"))
        self.text("print(os.getcwd())")
        self.screen.picture("panel-10-script")
        self.click(self.button("[ End ]"))
        self.text("[ User End ]")
        self.screen.picture("panel-11-ended")
        self.close_editor()

    def test_a_double_click_approves_nothing_that_has_not_been_seen(self):
        self.answer_with(
            tool("a", "update_file", path="Source/Moor/Walker.h", old_string="12", new_string="13"),
            tool("b", "delete_file", path="Config/DefaultGame.ini"))
        self.open_panel_and_begin()
        self.text("Change Source/Moor/Walker.h: 1 replacement")
        approve = self.button("Approve")
        self.write("Source/Moor/Walker.h", "12 12")
        self.click(approve, times=2)
        self.text("Change Source/Moor/Walker.h: 2 replacements")
        self.screen.picture("panel-17-shown-again")
        self.assertEqual(self.read("Source", "Moor", "Walker.h"), "12 12")
        self.read("Config", "DefaultGame.ini")
        self.close_editor()

    def test_tools_are_answered_one_by_one_and_rules_ask_for_less(self):
        self.answer_with(
            tool("a", "update_file", path="Source/Moor/Walker.h", old_string="12", new_string="13"),
            tool("b", "update_file", path="Source/Moor/Walker.h", old_string="13", new_string="14"),
            tool("c", "read_file", path="Config/DefaultGame.ini"))
        self.open_panel_and_begin()
        self.click(self.button("Accept 2"))
        self.text("Accepted: runs when all are answered")
        self.click(self.button("Reject 1"))
        # What it builds on will not happen.
        self.text("Rejected: will not run")
        self.text("Will fail: ")
        self.screen.picture("panel-19-one-by-one")
        self.click(self.button("Reject 2"))
        self.button("Always allow reading in this project")
        self.screen.picture("panel-20-only-reading")
        self.click(self.button("Rules..."))
        self.button("Add to Approval Rules")
        self.screen.picture("panel-21-rules")
        self.click(self.button("Close Project Settings"))
        self.click(self.button("Always allow reading in this project"))
        self.gone("Rules...")
        self.assertIn("= 12", self.read("Source", "Moor", "Walker.h"))
        self.assertRegex(self.read("Saved", "Config", "LinuxEditor", "EditorPerUserSettings.ini"),
                         r"ApprovalRules=.*Decision=Allow,.*read")
        self.close_editor()

    def test_code_far_to_the_right_is_seen_before_it_is_approved(self):
        self.answer_with(tool("a", "execute_unreal_engine_api_python_script",
                              code="import unreal" + " " * 300 + "; import os; os.remove('x')"))
        self.open_panel_and_begin()
        self.click(self.button("Show the script"))
        shown = self.text("import os")["value"]
        self.screen.picture("panel-18-far-right")
        self.assertIn("300 spaces", shown)
        self.assertLess(max(len(line) for line in shown.splitlines()), 200)
        self.close_editor()

    def test_text_of_all_kinds_is_typed_and_shown_at_any_scale(self):
        letters = "caf\u00e9 e\u0301 \u0645\u0631\u062d\u0628\u0627 \u65e5\u672c\u8a9e \U0001f426"
        for scale in (1, 2):
            with self.subTest(scale=scale):
                self.open_editor(f"-DPIScale={scale}")
                self.click(self.button("Kestrel"))
                self.text("I know the files and Blueprints")
                self.type_letters(letters)
                self.press("Return")
                self.text(f"[ User Start ]\n\n{letters}")
                self.text("understand a few requests")
                self.screen.picture(f"panel-12-letters-at-{scale}")
                self.close_editor()
                os.remove(self.report)

    def focused(self, name):
        return self.wait_for(f"the focus on {name!r}", lambda widgets: next(
            (each for each in widgets if each.get("focused") and each["name"] == name), None))

    def test_everything_is_done_without_a_mouse(self):
        self.open_editor()
        self.button("Window")
        self.press("F10")
        self.press("Right")
        self.press("Right")
        self.press("Return")
        self.focused("Content Browser")
        self.press("Down")
        self.focused("Output Log")
        self.press("Down")
        self.press("Return")
        self.focused("Enter your prompt here...")
        self.type('replace "Feathers = 12" with "Quills = 7" in Source/Moor/Walker.h')
        self.press("Return")
        self.button("Approve")
        # Behind the prompt are what waits, below its heading, and its change, then the buttons.
        for name in ("Insert selected assets", "What waits for approval", "Waits for approval", "Show the change"):
            self.press("Tab")
            self.focused(name)
        self.press("space")
        for name in ("Reject", "Unchanged lines"):
            self.press("Tab")
            self.focused(name)
        self.screen.picture("panel-13-keys")
        for name in ("Removed lines", "Added lines", "Unchanged lines", "Rules...", "Approve"):
            self.press("Tab")
            self.focused(name)
        self.press("Return")
        self.text("with 1 replacements")
        self.focused("Enter your prompt here...")
        self.press("shift+Tab")
        self.focused("Answer")
        self.press("ctrl+a")
        self.screen.picture("panel-14-selected")
        # On and on: through the conversation, to its tab, the tool bar, the menus and round to the last button.
        seen = set()
        for _ in range(60):
            self.press("shift+Tab")
            time.sleep(2 * REPORT_SECONDS)
            seen.update(each["name"] for each in self.widgets() if each.get("focused"))
            if "[ End ]" in seen:
                break
        self.assertLessEqual({"Close Kestrel", "Kestrel", "Window", "[ End ]"}, seen)
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
