"""What the assistant writes, as a person sees it: formatted, with links that say where they lead."""

import os
import stat
import unittest

from change_test import tool
from recording_server import RecordingServer, completed
from screen import ScreenTest

ANSWER = """# Double jump

The walker jumps in `OnJump`. I add **a counter** and *a limit*, see [the manual](https://docs.example/jump) and
Source/Moor/Walker.h:5.

- The counter starts at `0`.
- It grows with each jump:
  1. on the ground
  2. in the air

```cpp
// Jumps while the counter allows it.
if (JumpCount < MaxJumps)
{
    ++JumpCount; /** read_file stays here */
    Super::Jump("up");
}
```

> Landing puts the counter back.

| Setting | Default | Meaning |
|---------|--------:|---------|
| `MaxJumps` | 2 | jumps before the walker has to land |
| `JumpHeight` | 420 | in centimetres |
"""


class AnswerTest(ScreenTest):
    def open_panel_with(self, *blocks):
        service = self.start_service()
        server = RecordingServer(service.state_folder, [completed(*blocks, auto_continue=False)])
        self.addCleanup(server.socket.close)
        self.use_service(server.port, service.authority)
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("begin")
        self.press("Return")

    def take_over_desktop(self):
        """A program in the place of the one that opens addresses; what it was asked to open is in the file."""
        opened = os.path.join(self.scratch, "opened.txt")
        folder = os.path.join(self.scratch, "desktop")
        os.makedirs(folder)
        program = os.path.join(folder, "xdg-open")
        with open(program, "w", encoding="utf-8") as file:
            file.write(f"#!/bin/sh\necho \"$1\" >> '{opened}'\n")
        os.chmod(program, stat.S_IRWXU)
        path = os.environ["PATH"]
        os.environ["PATH"] = folder + os.pathsep + path
        self.addCleanup(os.environ.__setitem__, "PATH", path)
        return opened

    def read_when_there(self, path):
        def find(_):
            return open(path, encoding="utf-8").read() if os.path.exists(path) else None
        return self.wait_for("what was opened", find)

    def test_an_answer_is_formatted_and_its_links_say_where_they_lead(self):
        opened = self.take_over_desktop()
        self.open_panel_with({"type": "text", "text": ANSWER})
        self.text("jumps before the walker has to land")
        self.screen.picture("answer-1-formatted")
        shown = "\n".join(each.get("value", "") for each in self.widgets())
        for hidden in ("**a counter", "```", "[the manual]", "# Double"):
            self.assertNotIn(hidden, shown)
        self.assertIn("/** read_file stays here */", shown)
        left, top, _, bottom = self.text("a counter and a limit, see the manual")["bounds"]
        self.click({"bounds": [left + 440, top, left + 460, bottom]})
        self.text("https://docs.example/jump")
        self.screen.picture("answer-2-link")
        self.click(self.button("Open in the browser"))
        self.assertEqual(self.read_when_there(opened), "https://docs.example/jump\n")
        self.close_editor()

    def test_a_change_shows_what_changes(self):
        lines = [f"\tint Feather{number} = {number};" for number in range(60)]
        self.write("Source/Moor/Wing.h", "\n".join(lines) + "\n")
        change = tool("t1", "update_file", path="Source/Moor/Wing.h", old_string="Feather40 = 40",
                      new_string="Feather40 = 4000")
        self.open_panel_with({"type": "text", "text": "I change one."}, change)
        self.click(self.button("Approve"))
        self.text("+ \tint Feather40 = 4000")
        self.screen.picture("answer-3-change")
        shown = "\n".join(each.get("value", "") for each in self.widgets())
        self.assertIn("Feather43 = 43", shown)
        self.assertNotIn("Feather30 = 30", shown)
        self.click(self.button("\u22ef 37 unchanged lines"))
        self.text("Feather30 = 30")
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
