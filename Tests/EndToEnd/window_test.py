"""The editor as a person sees it: a window, a mouse and a keyboard."""

import os
import unittest

from screen import ScreenTest


class WindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def read(self, *names):
        with open(os.path.join(self.project, *names), encoding="utf-8") as file:
            return file.read()

    def test_a_file_is_changed_seen_and_taken_back(self):
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files of this project")
        self.screen.picture("1-panel")
        self.type('replace "Feathers = 12" with "Quills = 7" in Source/Moor/Walker.h')
        self.text("Quills = 7")
        self.press("Return")
        self.text("I will replace a text in Source/Moor/Walker.h.")
        approve = self.button("Approve")
        self.screen.picture("2-approval")
        self.click(approve)
        self.text("+ \tint Quills = 7;")
        self.text("with 1 replacements")
        self.screen.picture("3-change")
        self.assertIn("Quills = 7", self.read("Source", "Moor", "Walker.h"))
        self.click(self.button("Undo"))
        self.text("Undoing Last Changes...")
        self.button("Redo")
        self.screen.picture("4-undone")
        self.assertIn("Feathers = 12", self.read("Source", "Moor", "Walker.h"))
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
