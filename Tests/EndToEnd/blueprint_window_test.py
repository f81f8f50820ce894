"""Assets and Blueprints as a person looks at them: the list, the graph, the history."""

import os
import shutil
import time
import unittest

import harness
from screen import REPORT_SECONDS, ScreenTest

WARDEN = "BP_Warden"


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

    def entry(self, start):
        """An enabled entry of the open menu."""
        return self.wait_for(f"the entry {start!r}", lambda widgets: next(
            (each for each in widgets if each["type"] == "Button" and each["enabled"]
             and each["name"].startswith(start)), None))

    def add_variable(self, name):
        self.type(f"add an int variable {name} to {WARDEN} with value 7")
        self.press("Return")
        approve = self.button("Approve")
        self.text(f"Change the Blueprint /Game/Blueprints/{WARDEN}")
        self.click(self.button("Show the change"))
        self.text(name)
        self.screen.picture("history-0-approval")
        self.click(approve)
        self.text(f"Created new variable: {name}")

    def lines_of_history(self):
        """From the oldest to the newest."""
        return self.wait_for("the history", lambda widgets: [
            each for each in widgets if each["type"] == "Text" and each["name"].startswith("Kestrel Transaction")])

    def show_variables(self):
        """The end of the list of parts, in the Blueprint's tab, whether or not it is saved."""
        self.click(self.wait_for("the tab", lambda widgets: next(
            (each for each in widgets if each["type"] == "Button" and each["name"].rstrip("*") == WARDEN), None)))
        self.click(self.wait_for("the parts", lambda widgets: next(
            (each for each in widgets if each["name"] == "My Blueprint"), None)))
        self.press("End")

    def test_an_assistants_changes_are_taken_back_by_menu_key_and_history(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.add_variable("Lantern")
        self.add_variable("LampOil")
        self.choose("Window", "Content Browser")
        self.double_click(self.shown(WARDEN))
        self.graph("Event BeginPlay")
        self.show_variables()
        self.shown("LampOil")
        self.click(self.button("Edit"))
        undo = self.entry("Undo Kestrel Transaction")
        self.screen.picture("history-1-menu")
        self.click(undo)
        self.without("LampOil")
        self.press("End")
        self.shown("Lantern")
        self.press("ctrl+z")
        self.without("Lantern")
        self.press("ctrl+y")
        self.button(WARDEN + "*")
        self.press("End")
        self.shown("Lantern")
        self.choose("Edit", "Undo History")
        self.double_click(self.shown("Before all changes"))
        self.click(self.button("Edit"))
        self.button("Undo", enabled=False)
        self.press("Escape")
        self.double_click(self.lines_of_history()[0])
        self.screen.picture("history-2-list")
        self.show_variables()
        self.shown("Lantern")
        self.without("LampOil")
        self.close_editor()


if __name__ == "__main__":
    unittest.main()
