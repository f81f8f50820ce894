"""A person at the window decides what another assistant may do."""

import os
import threading
import unittest

from change_test import CodeProjectTest
from mcp_client import Client, server_file, wait_for_server
from other_assistants_test import ServerTest
from screen import ScreenTest

CONFIG = "Config/DefaultGame.ini"
VARIABLE = '{"Variables": {"Toll": {"Type": {"Category": "int"}}}}'


class Call:
    """A call that waits for a person, on a thread of its own."""

    def __init__(self, client, tool, **arguments):
        self.result = None

        def run():
            self.result = client.call(tool, **arguments)

        self.thread = threading.Thread(target=run, daemon=True)
        self.thread.start()

    def text(self):
        self.thread.join(60)
        return self.result["content"][0]["text"] if self.result else "no result"


class OtherAssistantsWindowTest(ScreenTest, CodeProjectTest, ServerTest):
    folder_name = "Moor"

    def make_blueprint(self):
        client = self.start_server()
        client.text("create_blueprint", BPPath="/Game/Doors", BPName="BP_Gate", BPParentClassName="Actor")
        client.text("save_and_compile_all_dirty_blueprints")
        self.stop_editor()
        self.assertTrue(os.path.exists(os.path.join(self.project, "Content", "Doors", "BP_Gate.uasset")))

    def open_with_server(self):
        folder = os.path.join(self.project, "Saved", "Config", "LinuxEditor")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "EditorPerUserSettings.ini"), "a", encoding="utf-8") as settings:
            settings.write("[/Script/Kestrel.KestrelSettings]\nbLetOtherAssistantsIn=True\n")
        self.open_editor()
        self.url, self.token = wait_for_server(self.project)
        return self.connect("Lamp of Moor")

    def allow(self, call, part):
        self.click(self.button("Allow this call"))
        self.assertIn(part, call.text())

    def test_a_person_approves_and_rejects_what_a_client_asks_for(self):
        self.make_blueprint()
        client = self.open_with_server()
        before = self.files_of_project("Config", "Source", "Content")
        self.assertIn("Feathers", client.text("read_file", path=CONFIG))
        self.assertIn("BP_Gate", client.text("read_blueprint", blueprint_name="BP_Gate", data_subset="All"))

        change = Call(client, "update_file", path=CONFIG, old_string="12", new_string="13")
        self.button("Allow this call")
        self.text("Lamp of Moor, another assistant, asks:")
        self.text(f"listening at {self.url}. Connected: Lamp of Moor.")
        self.text(f"Change {CONFIG}: 1 replacement")
        self.click(self.button("Show the change"))
        self.button("Hide the change")
        self.screen.picture("other-assistant")
        self.assertEqual(self.files_of_project("Config")[CONFIG], before[CONFIG], "nothing runs before it is approved")
        self.allow(change, "Successfully updated")

        self.allow(Call(client, "modify_blueprint_variables", blueprint_name="BP_Gate", updates=VARIABLE), "Toll")
        delete = Call(client, "delete_file", path="Source/Moor/Lantern.h")
        self.click(self.button("Reject this call"))
        self.assertIn("has rejected this call", delete.text())
        self.assertTrue(delete.result["isError"])
        self.allow(Call(client, "compile"), "Compilation successful")
        self.assertNotEqual(self.files_of_project("Content"), {name: data for name, data in before.items()
                                                                if name.startswith("Content")})

        self.allow(Call(client, "undo_changes"), "Undone: 1 file, 1 step in the editor")
        self.assertEqual(self.files_of_project("Config", "Source", "Content"), before)

        self.allow(Call(client, "update_file", path=CONFIG, old_string="12", new_string="14"), "Successfully updated")
        self.allow(Call(self.connect("Other"), "update_file", path=CONFIG, old_string="14", new_string="15"), "Success")
        self.click(self.wait_for("the conversations", lambda widgets: next(
            (each for each in widgets if each["type"] == "ComboBox" and each["name"] == "Conversations"), None)))
        self.click(self.button("Open Lamp of Moor (another assistant)"))
        self.screen.picture("other-assistant-conversation")
        self.text("1 file has been changed since, and goes back as well")
        self.click(self.button("Undo this conversation's changes"))
        self.text("Undone: 1 file")
        self.text("That version is kept")
        self.assertEqual(self.files_of_project("Config", "Source", "Content"), before)

        self.click(self.button("Stop listening"))
        self.gone("Stop listening")
        self.assertEqual(Client(self.url, self.token).request("ping").status, 404)
        self.close_editor()

    def test_a_call_is_withdrawn_when_its_client_goes(self):
        self.open_with_server()
        gone = self.connect("Passer-by")
        asking = threading.Thread(target=gone.request, daemon=True, args=("tools/call", {
            "name": "update_file", "arguments": {"path": CONFIG, "old_string": "12", "new_string": "13"}}))
        asking.start()
        self.button("Allow this call")
        self.assertEqual(gone.send("DELETE").status, 204)
        self.text(f"Passer-by no longer waits for this, and it was not run: Change {CONFIG}")
        self.gone("Allow this call")
        asking.join(60)
        self.assertEqual(self.files_of_project("Config")[CONFIG], b"[Moor]\nFeathers=12\n")

    def test_a_project_cannot_let_them_in(self):
        self.write("Config/DefaultEditorPerUserSettings.ini",
                   "[/Script/Kestrel.KestrelSettings]\nbLetOtherAssistantsIn=True\n")
        self.open_editor()
        self.click(self.button("Kestrel"))
        self.text("only you can let other assistants in")
        self.assertFalse(os.path.exists(server_file(self.project)))


if __name__ == "__main__":
    unittest.main()
