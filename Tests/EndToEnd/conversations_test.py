"""Conversations outlive the tab and the editor."""

import glob
import os
import signal
import stat
import unittest

from screen import ScreenTest


class ConversationsTest(ScreenTest):
    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def open_panel(self):
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")

    def open_list(self):
        self.click(self.wait_for("the list", lambda widgets: next(
            (each for each in widgets if each["type"] == "ComboBox" and each["name"] == "Conversations"), None)))

    def stored(self):
        return glob.glob(os.path.join(self.project, "Saved", "Kestrel", "Conversations", "*.jsonl"))

    def test_the_last_conversation_survives_an_editor_that_is_killed(self):
        self.open_panel()
        self.type("list the files in Source")
        self.press("Return")
        self.text("I will list")
        self.editor.send_signal(signal.SIGKILL)
        self.editor.communicate()
        os.remove(self.report)
        self.assertEqual([stat.S_IMODE(os.stat(file).st_mode) for file in self.stored()], [0o600])
        self.open_panel()
        self.text("I will list")
        self.text("This was the last conversation.")
        self.screen.picture("conversations-1-restored")
        self.type("find Feathers")
        self.press("Return")
        self.text("I will search")
        self.assertEqual(len(self.stored()), 2)

        self.open_list()
        self.button("Open list the files in Source")
        self.type("nothing like it")
        self.gone("Open list the files in Source")
        self.press("ctrl+a")
        self.type("FILES IN")
        self.click(self.button("More for list the files in Source"))
        self.button("Export as Markdown")
        self.screen.picture("conversations-2-list")
        self.click(self.button("Export as Markdown"))
        self.screen.picture("conversations-3-exported")
        self.click(self.button("Open list the files in Source"))
        self.button("Back to the current conversation")
        self.screen.picture("conversations-4-earlier")
        self.click(self.button("Back to the current conversation"))
        self.gone("Back to the current conversation")
        self.text("I will search")
        exports = glob.glob(os.path.join(self.project, "Saved", "Kestrel", "Exports", "list-the-files-in-Source-*.md"))
        with open(exports[0], encoding="utf-8") as file:
            self.assertIn("## Kestrel\n\nI will list Source.\n", file.read())
        self.open_list()
        self.click(self.button("Delete all"))
        self.screen.picture("conversations-5-delete")
        self.click(self.button("Delete them all"))
        self.gone("Delete all")
        self.assertEqual(self.stored(), [])
        self.screen.picture("conversations-6-deleted")

    def test_a_run_of_prompts_says_nothing_of_the_last_one(self):
        self.run_editor("-Prompt=list the files in Source", "-Approve")
        run = self.run_editor("-Prompt=find Feathers", "-Approve")
        self.assertEqual(run.code, 0, run.output)
        self.assertNotIn("list the files in Source\n\n", run.output)
        self.assertNotIn("This was the last conversation.", run.output)
        self.assertEqual(len(self.stored()), 2)
        run = self.run_editor(typed="")
        self.assertIn("[ User Start ]\nfind Feathers\n", run.output)


if __name__ == "__main__":
    unittest.main()
