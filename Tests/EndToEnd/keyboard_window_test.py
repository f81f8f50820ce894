"""The whole panel without a mouse: from its first screen through approval, changes and failures to the lists."""

import json
import time
import unittest

from change_test import tool
from recording_server import RecordingServer, completed
from screen import REPORT_SECONDS, ScreenTest


class KeyboardWindowTest(ScreenTest):
    def focused(self, name, value=""):
        return self.wait_for(f"the focus on {name!r}", lambda widgets: next(
            (each for each in widgets if each.get("focused") and each["name"] == name
             and value in each.get("value", "")), None))

    def focus_by_tab(self, name, key="Tab", most=40):
        """Goes on until something of the name has the focus; what was passed on the way."""
        passed = []
        for _ in range(most):
            self.press(key)
            time.sleep(4 * REPORT_SECONDS)
            passed += [each["name"] for each in self.widgets() if each.get("focused")]
            if passed and passed[-1] == name:
                return passed
        self.fail(f"{name!r} was not reached; these were: {passed}")

    def shown(self, part):
        return self.wait_for(f"{part!r}", lambda widgets: next(
            (each for each in widgets if part in each["name"] + each.get("value", "")), None))

    def use_the_list_of_conversations(self):
        """From the prompt box and back to it."""
        self.focus_by_tab("Conversations", "shift+Tab")
        self.press("Return")
        self.focused("Search conversations")
        self.type("walk")
        self.focus_by_tab("More for read @walk")
        self.press("Return")
        self.focus_by_tab("Rename")
        self.press("Return")
        self.focused("New title")
        self.type("The gate")
        self.press("Return")
        self.button("Open The gate")
        self.focused("Search conversations", "walk")
        self.press("Escape")
        self.gone("Open The gate")
        self.press("Escape")
        self.focused("Enter your prompt here...")
        self.focus_by_tab("Conversations", "shift+Tab")
        self.press("Return")
        self.focused("Search conversations")
        self.focus_by_tab("More for The gate")
        self.press("Return")
        self.focus_by_tab("Delete")
        self.press("Return")
        self.focused("Keep it")
        self.screen.picture("keyboard-4-list")
        self.press("Return")
        self.gone("Keep it")
        self.press("Escape")
        self.gone("Delete all")
        self.press("Escape")
        self.focused("Enter your prompt here...")

    def test_everything_in_the_panel_is_reached_and_done_with_keys(self):
        service = self.start_service()
        change = tool("t1", "update_file", path="Source/Moor/Walker.h", old_string="12", new_string="13")
        server = RecordingServer(service.state_folder, [
            completed({"type": "text", "text": "I change **one**."}, change, auto_continue=False),
            completed({"type": "text", "text": "Done, see `Feathers`."}, auto_continue=True),
            json.dumps({"status": "FAILED", "error": "No more."}), "{}"])
        self.addCleanup(server.socket.close)
        self.use_service(server.port, service.authority)
        self.open_editor()
        self.button("Window")
        for key in ("F10", "Right", "Right", "Return", "Down", "Down", "Return"):
            self.press(key)
        self.focused("Enter your prompt here...")
        # An example of the first screen, and back to the box with it.
        self.focus_by_tab("find AWalker", "shift+Tab")
        self.press("Return")
        self.focused("Enter your prompt here...", "find AWalker")
        self.press("F1")
        self.shown("previous and next of your turns")
        self.screen.picture("keyboard-1-keys")
        self.press("Escape")
        self.wait_for("the end of the list", lambda widgets: not any(
            "previous and next" in each["name"] for each in widgets))
        self.focused("Enter your prompt here...")
        self.press("ctrl+a")
        self.type("read @walk")
        self.button("Source/Moor/Walker.h")
        self.press("Escape")
        self.gone("Source/Moor/Walker.h")
        self.press("Return")
        self.button("Approve")
        # What waits, and its change; Escape leads back from anywhere.
        passed = self.focus_by_tab("Show the change")
        self.assertIn("Insert selected assets", passed)
        self.press("Escape")
        self.focused("Enter your prompt here...")
        self.focus_by_tab("Approve")
        self.press("Return")
        self.shown("Done, see")
        self.focused("Enter your prompt here...")
        self.press("F8")
        time.sleep(2 * REPORT_SECONDS)
        self.screen.picture("keyboard-2-change")
        # A second turn, which fails, and its remedy.
        self.type("and again")
        self.press("Return")
        self.shown("could not finish this request")
        self.focused("Enter your prompt here...", "and again")
        self.press("alt+Up")
        self.focused("Message", "and again")
        for _ in range(3):
            self.press("alt+Up")
        self.focused("Message", "read @walk")
        self.screen.picture("keyboard-3-turn")
        for _ in range(5):
            self.press("alt+Down")
        self.focused("Enter your prompt here...")
        self.focus_by_tab("Test connection", "shift+Tab")
        self.press("space")
        self.shown("answers and takes the key")
        self.press("Escape")
        self.focused("Enter your prompt here...")
        self.focus_by_tab("Undo")
        self.press("Return")
        self.shown("Undoing Last Changes...")
        self.press("Escape")
        self.focused("Enter your prompt here...")
        self.use_the_list_of_conversations()
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
