"""Where the panel is: at the side, among other tabs, or beside them, as somebody drags it with the mouse."""

import os
import time
import unittest

from screen import REPORT_SECONDS, ScreenTest


class DockingWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def prompt(self, is_there):
        """The prompt box, when its place is right."""
        return self.wait_for("the prompt box in its place", lambda widgets: next(
            (each for each in widgets if each["name"] == "Enter your prompt here..." and is_there(*each["bounds"])),
            None))

    def handle(self, name):
        """The label of a tab, and not the button of the tool bar of the same name."""
        return self.wait_for(f"the tab {name!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == "Button" and each["name"] == name and each["bounds"][1] > 50),
            None))

    def drag(self, widget, x, y, picture=None):
        left, top, right, bottom = widget["bounds"]
        self.screen.do("mousemove", int((left + right) / 2), int((top + bottom) / 2), "mousedown", 1)
        for part in (0.1, 0.5, 1.0):
            time.sleep(REPORT_SECONDS)
            self.screen.do("mousemove", int(left + (x - left) * part), int(top + (y - top) * part))
        time.sleep(2 * REPORT_SECONDS)
        if picture:
            self.screen.picture(picture)
        self.screen.do("mouseup", 1)

    def test_the_panel_opens_at_the_side_and_goes_where_it_is_dragged(self):
        self.open_editor()
        self.choose("Window", "Content Browser")
        self.click(self.button("Kestrel"))
        self.prompt(lambda left, *_: left > 800)
        self.screen.picture("docking-1-side")
        self.drag(self.handle("Kestrel"), 20, 400, picture="docking-2-dragged")
        self.prompt(lambda left, top, right, bottom: left < 50 and right < 700)
        self.screen.picture("docking-3-left")
        self.drag(self.handle("Kestrel"), 900, 700)
        self.prompt(lambda left, top, right, bottom: top > 550 and right > 1200)
        self.screen.picture("docking-4-below")
        self.close_editor()
        os.remove(self.report)
        self.open_editor()
        self.prompt(lambda left, top, right, bottom: top > 550 and right > 1200)
        self.drag(self.handle("Kestrel"), 600, 150)
        self.prompt(lambda left, top, right, bottom: left < 50 and right > 1200)
        self.handle("Content Browser")
        self.screen.picture("docking-5-tabs")
        self.close_editor()

    def test_what_is_dragged_stays_where_it_is_after_escape(self):
        self.open_editor()
        self.choose("Window", "Content Browser")
        self.click(self.button("Kestrel"))
        handle = self.handle("Kestrel")
        self.prompt(lambda left, *_: left > 800)
        left, top, right, bottom = handle["bounds"]
        self.screen.do("mousemove", int(left + 5), int(top + 5), "mousedown", 1)
        for x in (400, 20):
            time.sleep(REPORT_SECONDS)
            self.screen.do("mousemove", x, 400)
        self.press("Escape")
        self.screen.do("mouseup", 1)
        time.sleep(2 * REPORT_SECONDS)
        self.prompt(lambda left, *_: left > 800)
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
