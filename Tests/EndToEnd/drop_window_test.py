"""Names of assets and classes, into the prompt with the mouse."""

import os
import time
import unittest

from screen import REPORT_SECONDS, ScreenTest


class DropWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def prompt(self, text):
        return self.wait_for(f"the prompt {text!r}", lambda widgets: next(
            (each for each in widgets
             if each["name"] == "Enter your prompt here..." and each.get("value", "") == text), None))

    def row(self, name):
        return self.wait_for(f"the asset {name!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == "Text" and each["name"].startswith(name)), None))

    def test_assets_are_dragged_or_inserted_and_classes_completed(self):
        self.open_editor()
        self.choose("Window", "Content Browser")
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("create blueprint BP_Gate from Actor in /Game/Doors")
        self.press("Return")
        self.click(self.button("Approve"))
        self.text("created at '/Game/Doors'")
        box = self.prompt("")
        left, top, right, bottom = self.row("BP_Gate")["bounds"]
        to = box["bounds"]
        self.screen.do("mousemove", int(left + 10), int((top + bottom) / 2), "mousedown", 1)
        for part in (0.2, 0.6, 1.0):
            time.sleep(REPORT_SECONDS)
            self.screen.do("mousemove", int(left + (to[0] + 40 - left) * part), int(top + (to[1] + 20 - top) * part))
        time.sleep(2 * REPORT_SECONDS)
        self.screen.picture("drop-1-dragged")
        self.screen.do("mouseup", 1)
        self.prompt("/Game/Doors/BP_Gate ")
        self.type("and ")
        self.click(self.button("Insert selected assets"))
        self.prompt("/Game/Doors/BP_Gate and /Game/Doors/BP_Gate ")
        self.press("ctrl+a")
        self.press("BackSpace")
        self.type("explain ")
        self.click(self.button("Name a file, asset or class"))
        self.type("awalk")
        self.button("Source/Moor/Walker.h:3/AWalker")
        self.screen.picture("drop-2-class")
        self.press("Return")
        self.prompt("explain AWalker (Source/Moor/Walker.h:3) ")
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
