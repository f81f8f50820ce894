"""The first screen of a project, and the size of its text."""

import os
import shutil
import unittest

from recording_server import RecordingServer, completed
from screen import ScreenTest
from status_window_test import SIZES


class StartWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service()
        self.use_service(self.service.port, self.service.authority)

    def open_panel(self, *arguments):
        self.open_editor(*arguments)
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")

    def test_an_example_of_this_project_is_one_click_away(self):
        os.mkfifo(os.path.join(self.project, "Source", "Moor", "Pipe.h"))  # to open it would take forever
        self.open_panel()
        self.button("find AWalker")
        self.button("create blueprint BP_First from Actor in /Game")
        self.click(self.button("read Source/Moor/Walker.h"))
        self.wait_for("the prompt", lambda widgets: any(
            each.get("value", "") == "read Source/Moor/Walker.h" for each in widgets))
        self.press("Return")
        self.click(self.button("Approve"))
        self.text("class AWalker")
        self.gone("find AWalker")
        self.close_editor()

    def test_the_first_screen_fits_into_every_size(self):
        for width, height in (*SIZES, (840, 720)):
            scale = 2 if width == 840 else 1
            with self.subTest(width=width, scale=scale):
                self.open_panel(f"-ResX={width}", f"-ResY={height}", f"-DPIScale={scale}")
                self.button("find AWalker")
                self.press("Page_Down")
                self.screen.picture(f"start-1-{width}-at-{scale}")
                self.close_editor()
                os.remove(self.report)
                shutil.rmtree(os.path.join(self.project, "Saved"))

    def test_text_is_as_large_as_the_settings_say(self):
        answer = "## The gate\n\nIt has `Toll`:\n\n```cpp\nint Toll = 3;\n```\n"
        for size in (10, 16):
            with self.subTest(size=size):
                server = RecordingServer(self.service.state_folder,
                                         [completed({"type": "text", "text": answer}, auto_continue=True)])
                self.addCleanup(server.socket.close)
                self.use_service(server.port, self.service.authority)
                run = self.run_editor(f"-ExecCmds=SetSetting Project Plugins Kestrel TextSize {size};Quit",
                                      console=False)
                self.assertEqual(run.code, 0, run)
                self.open_panel("-ResX=420", "-ResY=640")
                self.type("begin")
                self.press("Return")
                self.text("int Toll = 3;")
                self.type("and now")
                self.screen.picture(f"start-2-size-{size}")
                self.close_editor()
                os.remove(self.report)
                shutil.rmtree(os.path.join(self.project, "Saved", "Kestrel"))


if __name__ == "__main__":
    unittest.main()
