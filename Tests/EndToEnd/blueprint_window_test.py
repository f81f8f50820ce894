"""Assets and Blueprints as a person looks at them: the list, the graph, the history."""

import os
import shutil
import time
import unittest

import harness
from screen import REPORT_SECONDS, ScreenTest

WARDEN = "BP_Warden"
# Two changes, each of its own, as tools make them.
CHANGES = """
import unreal
library = unreal.BlueprintEditorLibrary
warden = unreal.load_asset("/Game/Blueprints/BP_Warden")
with unreal.ScopedEditorTransaction("Add Lantern"):
    library.add_member_variable(warden, "Lantern", library.get_basic_type_by_name("bool"))
with unreal.ScopedEditorTransaction("Add Lamp Oil"):
    library.add_member_variable(warden, "LampOil", library.get_basic_type_by_name("int"))
"""


class BlueprintWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        shutil.rmtree(self.project)
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier"), self.project)

    def shown(self, name):
        """A text of just this name."""
        return self.wait_for(f"the text {name!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == "Text" and each["name"] == name), None))

    def graph(self, *parts):
        """The graph, once the nodes in view have all these in their texts."""
        return self.wait_for(f"a graph with {parts}", lambda widgets: next(
            (each for each in widgets if each["name"].startswith("Graph ")
             and all(part in each.get("value", "") for part in parts)), None))

    def nodes_in_view(self):
        time.sleep(2 * REPORT_SECONDS)
        return self.graph()["value"].split("\n")

    def double_click(self, widget):
        left, top, right, bottom = widget["bounds"]
        self.screen.do("mousemove", int((left + right) / 2), int((top + bottom) / 2), "click", "--repeat", 2,
                       "--delay", 50, 1)

    def drag(self, widget, right, down, mouse_button):
        left, top, edge, bottom = widget["bounds"]
        x, y = int((left + edge) / 2), int((top + bottom) / 2)
        self.screen.do("mousemove", x, y, "mousedown", mouse_button)
        for step in range(1, 6):
            self.screen.do("mousemove", x + right * step // 5, y + down * step // 5)
        self.screen.do("mouseup", mouse_button)

    def test_a_blueprint_is_found_and_looked_at(self):
        self.open_editor()
        self.choose("Window", "Content Browser")
        self.text("Assets: 5")
        self.screen.picture("graph-1-assets")
        self.click(self.wait_for("the search box", lambda widgets: next(
            (each for each in widgets if each["name"] == "Search Assets"), None)))
        self.type("night")
        self.text("Assets: 1 of 5")
        self.screen.picture("graph-2-search")
        for _ in "night":
            self.press("BackSpace")
        self.double_click(self.shown("BT_Warden"))
        self.text("There is no editor for BT_Warden")
        self.screen.picture("graph-3-no-editor")
        self.double_click(self.shown(WARDEN))
        self.graph("Event BeginPlay")
        self.screen.picture("graph-4-events")
        whole = self.nodes_in_view()

        # The wheel goes nearer to what the pointer is on; the right button drags the graph along.
        left, top, right, bottom = self.graph()["bounds"]
        self.screen.do("mousemove", int(left + (right - left) / 3), int(top + (bottom - top) / 3), "click", "--repeat",
                       6, 4)
        self.screen.picture("graph-5-near")
        self.assertLess(len(self.nodes_in_view()), len(whole))
        self.drag(self.graph(), -400, -100, 3)
        self.screen.picture("graph-6-panned")
        self.press("f")
        self.graph(*whole)

        self.click(self.shown("Measure"))
        self.graph("Return Node")
        self.screen.picture("graph-7-function")
        self.close_editor()

    def without(self, name):
        self.wait_for(f"the end of {name!r}", lambda widgets: widgets and not any(
            each["name"] == name for each in widgets))

    def test_changes_are_taken_back_by_menu_key_and_history(self):
        self.write("changes.py", CHANGES)
        self.open_editor("-ExecCmds=py " + os.path.join(self.project, "changes.py"))
        self.choose("Window", "Content Browser")
        self.double_click(self.shown(WARDEN + "*"))
        self.graph("Event BeginPlay")
        parts = self.wait_for("the parts", lambda widgets: next(
            (each for each in widgets if each["name"] == "My Blueprint"), None))
        self.click(parts)
        self.press("End")
        self.shown("LampOil")
        self.choose("Edit", "Undo Add Lamp Oil", picture="history-1-menu")
        self.without("LampOil")
        self.shown("Lantern")
        self.press("ctrl+z")
        self.without("Lantern")
        self.press("ctrl+y")
        self.shown("Lantern")
        self.click(self.button("Edit"))
        self.button("Undo Add Lantern")
        self.button("Redo Add Lamp Oil")
        self.click(self.button("Undo History"))
        self.double_click(self.shown("Before all changes"))
        self.click(self.button("Edit"))
        self.button("Undo", enabled=False)
        self.press("Escape")
        self.double_click(self.shown("Add Lantern"))
        self.shown("Add Lamp Oil")
        self.screen.picture("history-2-list")
        self.click(self.button(WARDEN + "*"))
        self.press("End")
        self.shown("Lantern")
        self.without("LampOil")
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
