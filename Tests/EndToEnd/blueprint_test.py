"""Conversations that change Blueprints: created, undone, found, and read again by the next editor."""

import json
import os
import shutil
import unittest

import harness
from harness import EndToEndTest
from recording_server import RecordingServer, completed

VECTOR = {"Category": "struct", "SubCategoryObject": "/Script/CoreUObject.Vector"}

VARIABLES = {
    "Health": {"Type": {"Category": "int"}, "Value": 100, "Replication": "RepNotify", "Category": "Life",
               "Tooltip": "How much is left", "Private": False, "SaveGame": True},
    "Speed": {"Type": {"Category": "real", "SubCategory": "double"}, "Value": 1.5, "Replication": "Replicated"},
    "bLit": {"Type": {"Category": "bool"}, "Value": True, "ExposeOnSpawn": True, "Private": False},
    "Level": {"Type": {"Category": "byte"}, "Value": 3},
    "Score": {"Type": {"Category": "int64"}, "Value": 12345678901},
    "Tag": {"Type": {"Category": "name"}, "Value": "Gate"},
    "Line": {"Type": {"Category": "string"}, "Value": "Who goes there?"},
    "Sign": {"Type": {"Category": "text"}, "Value": "Toll: 3"},
    "Place": {"Type": VECTOR, "Value": {"X": 1, "Y": 2, "Z": -3.5}},
    "Keeper": {"Type": {"Category": "object", "SubCategoryObject": "/Script/Engine.Actor"}},
    "Kind": {"Type": {"Category": "class", "SubCategoryObject": "/Script/Engine.Actor"},
             "Value": "/Script/Engine.Pawn"},
    "Art": {"Type": {"Category": "softobject", "SubCategoryObject": "/Script/Engine.Actor"}},
    "Later": {"Type": {"Category": "softclass", "SubCategoryObject": "/Script/Engine.Actor"}},
    "Places": {"Type": {**VECTOR, "Container": "Array"}, "Value": [{"X": 1}, {"Y": 2}]},
    "Guests": {"Type": {"Category": "name", "Container": "Set"}, "Value": ["Ann", "Bob"]},
    "Toll": {"Type": {"Category": "string", "Container": "Map", "ValueType": {"Category": "int"}},
             "Value": {"Cart": 3, "Walker": 1}},
}


def call(function, *pins):
    return {"Class": "UK2Node_CallFunction", "Properties": {"FunctionName": function, "Pins": list(pins)}}


def link(pin, node, target):
    return {"PinName": pin, "Connections": [{"Node": node, "Pin": target}]}


FUNCTIONS = [{
    "Name": "Charge",
    "InParams": [{"Name": "By", "Type": "IntProperty"},
                 {"Name": "Whom", "Type": "ObjectProperty", "PropertyClass": "/Script/Engine.Actor"}],
    "OutParams": [{"Name": "Left", "Type": "IntProperty"}, {"Name": "Where", "Type": "StructProperty",
                                                             "StructType": "Vector"}],
    "EdGraph": {"Nodes": [
        {"Class": "UK2Node_VariableSet", "Location": {"X": 300, "Y": 0}, "Properties": {
            "VariableName": "Health", "Comment": "Taken from the purse",
            "Pins": [link("execute", "Charge", "then"), link("Health", "Charge", "By"),
                     link("Output_Get", "Return Node", "Left")]}},
        call("PrintString", link("execute", "Set Health", "then"), link("then", "Return Node", "execute"),
             {"PinName": "InString", "Value": "Charged"}),
        {"Class": "UK2Node_VariableGet", "Properties": {
            "VariableName": "Place", "Pins": [link("Place", "Return Node", "Where")]}},
    ]},
}]


def use(tool, **fields):
    return completed({"type": "tool_use", "id": tool, "name": tool, "input": fields}, auto_continue=True)


class BlueprintTest(EndToEndTest):
    maxDiff = None

    def converse(self, *status_replies):
        """Lets the editor run the tools of the replies. Returns what each came to."""
        service = self.start_service()
        last = completed({"type": "text", "text": "."}, auto_continue=True)
        server = RecordingServer(service.state_folder, [*status_replies, last])
        self.addCleanup(server.socket.close)
        self.use_service(server.port, service.authority)
        run = self.run_editor("-Prompt=go", "-Approve")
        self.assertEqual(run.code, 0, run)
        commands = [json.loads(request.body) for request in server.requests if request.line.startswith("POST")]
        return [result["content"] for command in commands for result in command.get("tool_results") or []]

    def test_the_next_editor_reads_the_same_document_from_the_disk(self):
        read = use("read_blueprint", blueprint_name="BP_Gate", data_subset="All")
        updates = json.dumps({"Variables": VARIABLES, "Functions": FUNCTIONS})
        results = self.converse(
            use("create_blueprint", BPPath="/Game/Doors", BPName="BP_Gate", BPParentClassName="Actor"),
            use("modify_blueprint_variables", blueprint_name="BP_Gate", updates=updates),
            use("save_and_compile_all_dirty_blueprints"), read)
        summary = json.loads(results[1])
        self.assertEqual(summary["VariableModifications"], [f"Created new variable: {name}" for name in VARIABLES])
        self.assertEqual(summary["FunctionModifications"], ["Created new function: Charge"])
        self.assertEqual(summary["Success"], "Blueprint modified, compiled, and saved successfully.")
        self.assertEqual(json.loads(results[2])["BlueprintResults"], [], "it was saved by the change")
        document = json.loads(results[3])
        self.assertEqual({name: document["Variables"][name]["Value"] for name in ("Health", "Place", "Toll", "Sign")},
                         {"Health": "100", "Place": "(X=1.000000,Y=2.000000,Z=-3.500000)",
                          "Toll": '(("Cart", 3),("Walker", 1))', "Sign": "Toll: 3"})
        charge = next(function for function in document["Functions"] if function["Name"] == "Charge")
        links = [(pin["Name"], target["Node"], target["Pin"]) for node in charge["EdGraph"]["Nodes"]
                 if node["Title"] == "Set Health" for pin in node["Pins"] for target in pin["Connections"]]
        self.assertEqual(links, [("execute", "Charge", "then"), ("then", "Print String", "execute"),
                                 ("Health", "Charge", "By"), ("Output_Get", "Return Node", "Left")])
        self.assertEqual(self.converse(read), [results[3]])

    def use_offline_service(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def change(self, *prompts):
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts), "-Approve")
        self.assertEqual(run.code, 0, run)
        return run

    def make_gate(self):
        self.use_offline_service()
        os.makedirs(os.path.join(self.project, "Docs"))
        self.change("create blueprint BP_Gate from Actor in /Game/Doors", "add an int variable Toll to BP_Gate with value 3",
                    "save all")
        self.write("Docs/Notes.txt", "one")
        return self.files()

    def files(self):
        """Lines of each file, so that a difference can be read."""
        found = {**self.files_of_project("Content"), **self.files_of_project("Docs")}
        return {name: content.decode().splitlines() for name, content in found.items()}

    def test_plain_wishes_change_a_blueprint_and_what_they_made_is_found(self):
        self.make_gate()
        run = self.change(
            "add a replicated string[] variable Guests to BP_Gate",
            "add function Open with input Wide bool and output Done bool to BP_Gate",
            'add a print node to function Open of BP_Gate saying "It opens"',
            "add variable Broken of type nonsense to BP_Gate", "find open", "read blueprint BP_Gate")
        self.assert_in_order(
            run, "Modifying Blueprint File ...", "Created new variable: Guests", "Created new function: Open",
            "Modified existing function: Open", "Invalid variable type for variable: Broken",
            "Finding Reference In All Files ...", "It is in 1 Blueprint:", "BP_Gate:", "Function Open",
            "Node Title Open", "Toll: int = 3", "Guests: Array of string", "Open(Wide: bool) -> Done: bool")

    def test_undo_takes_back_what_was_changed_in_files_and_blueprints(self):
        before = self.make_gate()
        blueprint = ["add function Open to BP_Gate", "add an int variable Width to BP_Gate",
                     'add a print node to function Open of BP_Gate saying "It opens"',
                     "add a string variable Toll to BP_Gate with value Gold"]
        file = ['replace "one" with "two" in Docs/Notes.txt']
        for changes, is_redone in ((file, True), (blueprint, False), (file + blueprint, False), (["finish"], False)):
            with self.subTest(changes=len(changes), is_redone=is_redone):
                self.change(*changes, "/undo")
                self.assertEqual(self.files(), before)
                self.change(*changes, "/undo", "/redo")
                notes = ["two" if is_redone else "one"]
                self.assertEqual(self.files(), {**before, "Docs/Notes.txt": notes})
                self.write("Docs/Notes.txt", "one")

    def test_undo_takes_back_what_scripts_changed_before_and_after(self):
        before = self.make_gate()
        script = ("run python: import unreal; b = unreal.load_asset('/Game/Doors/BP_Gate'); "
                  "unreal.BlueprintEditorLibrary.add_member_variable(b, '%s', "
                  "unreal.BlueprintEditorLibrary.get_basic_type_by_name('int')); "
                  "unreal.EditorAssetLibrary.save_loaded_asset(b)")
        run = self.change(script % "First", "add an int variable Width to BP_Gate", script % "Last", "/undo")
        self.assertNotIn("Traceback", run.output)
        self.assertEqual(self.files(), before)


class SampleTest(EndToEndTest):
    """Blueprints of a game with code of its own."""

    def test_types_keep_their_names_when_the_code_is_reloaded(self):
        shutil.rmtree(self.project)
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier"), self.project)
        service = self.start_service()
        self.use_service(service.port, service.authority)
        run = self.run_editor("-Prompt=read blueprint BP_Warden",
                              '-Prompt=insert "// a remark" at line 1 of Source/Harrier/World/Watcher.h',
                              "-Prompt=compile", "-Prompt=read blueprint BP_Warden", "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertIn("The game is built.", run.output)
        self.assertGreaterEqual(run.output.count("Mood: EWardenMood"), 2, run)
        self.assertNotIn("HOTRELOADED", run.output)


if __name__ == "__main__":
    unittest.main()
