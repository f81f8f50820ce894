"""What runs, and when: approval, pause, builds that end in the middle of a poll, and a result for each tool use."""

import collections
import json
import os
import random
import shutil
import threading
import unittest

import harness
from change_test import LANTERN, CodeProjectTest, text, tool
from harness import EndToEndTest
from recording_server import RecordingServer, completed

WAITED_SECONDS = 50


class Talk:
    """A server of the test's own for the editor of a test."""

    def __init__(self, test, *replies):
        service = test.start_service()
        self.server = RecordingServer(service.state_folder, replies)
        test.addCleanup(self.server.socket.close)
        test.use_service(self.server.port, service.authority)


def ids_of(command):
    return [result["tool_use_id"] for result in command.get("tool_results", [])]


class BuildWhilePollingTest(CodeProjectTest):
    """The result of a build arrives while the next answer is polled."""

    CHANGE = tool("change", "update_file", path="Config/DefaultGame.ini", old_string="12", new_string="13")

    def setUp(self):
        super().setUp()
        self.released = threading.Event()

    def held(self, *blocks):
        def reply():
            self.released.wait(WAITED_SECONDS)
            return completed(*blocks, auto_continue=False)
        return reply

    def run_steps(self, first_blocks, *actions):
        talk = Talk(self, completed(*first_blocks, auto_continue=False), self.held(self.CHANGE),
                    completed(text("Thank you."), auto_continue=True))
        self.write("Source/Moor/Lantern.h", LANTERN.replace("0.5f", "0.6f"))
        run = harness.type_when(self.editor_command(), ("[ Kestrel ]", "begin"), *actions, ("Thank you.", "/quit"))
        self.assertEqual(run.code, 0, run)
        self.assertIn("Feathers=13", self.files_of_project("Config")["Config/DefaultGame.ini"].decode(), run)
        return run, talk.server.commands()

    def test_a_build_that_ends_does_not_approve_the_next_tools(self):
        run, commands = self.run_steps(
            [tool("build", "compile"), tool("read", "read_file", path="Config/DefaultGame.ini")],
            ("Approve? y", "y"), ("Compilation successful!", self.released.set),
            ("Change Config/DefaultGame.ini: 1 replacement", "y"))
        self.assert_in_order(run, "Compilation successful!", "Change Config/DefaultGame.ini: 1 replacement",
                             "Updating File Content...")
        self.assertEqual([ids_of(command) for command in commands], [[], ["read"], ["build", "change"]])

    def test_a_build_that_ends_does_not_end_a_pause(self):
        run, commands = self.run_steps(
            [tool("build", "compile"), tool("read", "read_file", path="Config/DefaultGame.ini")],
            ("Approve? y", "y"), ("Reading File...", "/pause"), ("Pausing request...", lambda: None),
            ("Compilation successful!", self.released.set), ("The process has been paused.", "/continue"))
        self.assert_in_order(run, "Pausing request...", "The process has been paused.", "Updating File Content...")
        self.assertEqual([ids_of(command) for command in commands], [[], ["read"], ["build", "change"]])

    def test_an_undo_while_polling_leaves_the_next_tools_to_their_approval(self):
        run, commands = self.run_steps(
            [tool("new", "create_file", path="Docs/Plan.md", file_text="Gather")],
            ("Approve? y", "y"), ("Creating File...", "/undo"),
            ("Compilation successful!", self.released.set), ("Change Config/DefaultGame.ini: 1 replacement", "y"))
        self.assert_in_order(run, "Undoing Last Changes...",
                             "The compilation that Undo started has finished:\nCompilation successful!\n",
                             "Change Config/DefaultGame.ini", "Updating File Content...")
        self.assertEqual([ids_of(command) for command in commands], [[], ["new"], ["Undo", "change"]])
        self.assertFalse(os.path.exists(os.path.join(self.project, "Docs", "Plan.md")))


class ResultsTest(EndToEndTest):
    """A row of answers, put together by chance, to a user who approves, refuses and goes on by chance."""

    NUM_LINES = 30

    def make_blocks(self, dice, number):
        names = []
        blocks = []
        for index in range(dice.choice([0, 1, 1, 2, 3, 4])):
            identifier = f"{number}-{index}"
            names.append(identifier)
            blocks.append(dice.choice([
                tool(identifier, "read_file", path="Config/DefaultGame.ini"),
                tool(identifier, "read_file", path="No/Such.h"),
                tool(identifier, "update_file", path="Source/Moor/Walker.h", old_string=str(number % 3),
                     new_string=str(number % 5)),
                tool(identifier, "create_file", path=f"Docs/{number % 7}.md", file_text="x"),
                tool(identifier, "delete_file", path=f"Docs/{number % 7}.md"),
                tool(identifier, "create_file", path="Config/New.ini", file_text="x"),
                tool(identifier, "finish"),
                tool(identifier, "compile"),
                tool(identifier, "no_such_tool"),
                {"type": "tool_use", "id": identifier, "name": "read_file"},
            ]))
        self.asked.append(names)
        return blocks

    def test_each_tool_use_of_a_conversation_gets_exactly_one_result(self):
        seed = int(os.environ.get("KESTREL_FUZZ_SEED", "1"))
        dice = random.Random(seed)
        self.asked = []

        def reply():
            number = len(self.asked)
            return completed(*self.make_blocks(dice, number), auto_continue=dice.random() < 0.4)

        talk = Talk(self, *[reply] * (10 * self.NUM_LINES))
        lines = [dice.choice(["y", "y", "y", "rather not", "/continue", "/undo"]) for _ in range(self.NUM_LINES)]
        run = self.run_editor(typed="begin\n" + "\n".join(lines) + "\n")
        counts = collections.Counter(
            identifier for command in talk.server.commands() for identifier in ids_of(command))
        for identifier in ("Undo", "Redo"):
            counts.pop(identifier, None)
        self.assertGreater(len(self.asked), self.NUM_LINES / 3, run)
        answered = {identifier for names in self.asked[:-1] for identifier in names}
        missing = sorted(answered - set(counts))
        repeated = sorted(identifier for identifier, count in counts.items() if count > 1)
        self.assertEqual((missing, repeated), ([], []), f"seed {seed}")

    def test_an_answer_with_too_many_tools_runs_the_first_and_answers_all(self):
        names = [str(number) for number in range(700)]
        talk = Talk(self, completed(*[tool(name, "create_file", path=f"Docs/{name}.md", file_text="x")
                                      for name in names], auto_continue=True),
                    completed(text("Done."), auto_continue=True))
        run = self.run_editor("-Prompt=begin")
        results = talk.server.commands()[-1]["tool_results"]
        self.assertEqual([result["tool_use_id"] for result in results], names, run)
        self.assertEqual([result["is_error"] for result in results], [False] * 500 + [True] * 200)
        self.assertIn("more than 500 tools", results[-1]["content"])
        self.assertEqual(len(os.listdir(os.path.join(self.project, "Docs"))), 500)


class MarkedPlacesTest(EndToEndTest):
    """What the service may have run without asking, and what not."""

    def test_a_marked_change_waits_though_the_service_goes_on_without_asking(self):
        talk = Talk(self, completed(
            tool("read", "read_file", path="Config/DefaultGame.ini"),
            tool("source", "create_file", path="Source/Moor/Owl.h", file_text="x"),
            tool("rules", "create_file", path="Source/Moor.Build.cs", file_text="x"),
            tool("after", "create_file", path="Source/Moor/Late.h", file_text="x"), auto_continue=True))
        run = self.run_editor("-Prompt=begin")
        self.assertEqual(run.code, 1, run)
        self.assertIn("1. Create Source/Moor.Build.cs\nCaution: build file\n", run.output)
        self.assertEqual(sorted(os.listdir(os.path.join(self.project, "Source", "Moor"))), ["Owl.h", "Walker.h"])
        self.assertEqual(len(talk.server.commands()), 1, run)

    def test_a_file_that_changes_after_it_was_shown_is_shown_again(self):
        Talk(self, completed(tool("a", "update_file", path="Source/Moor/Walker.h", old_string="12", new_string="13"),
                             auto_continue=False), completed(text("Thank you."), auto_continue=True))
        shown = "Change Source/Moor/Walker.h: 1 replacement"

        def change_and_approve():
            self.write("Source/Moor/Walker.h", "12 12")

        run = harness.type_when(self.editor_command(), ("[ Kestrel ]", "begin"), (shown, change_and_approve),
                                (shown, "y"), ("2 replacements\nApprove? y", "y"), ("Thank you.", "/quit"))
        self.assert_in_order(run, shown, "A file has changed since its change was shown.",
                             "Change Source/Moor/Walker.h: 2 replacements", "Updating File Content...")
        self.assertEqual(self.files_of_project("Source")["Source/Moor/Walker.h"], b"13 13")

    def test_a_folder_that_is_replaced_by_a_link_while_it_waits_is_shown_again(self):
        docs = os.path.join(self.project, "Docs")
        os.makedirs(docs)
        os.makedirs(os.path.join(self.scratch, "Outside"))
        self.write(os.path.join(self.scratch, "Outside", "foreign.ini"), "x")
        talk = Talk(self, completed(tool("a", "get_filesystem_tree", dir_path="Docs"), auto_continue=False))

        def replace():
            os.rmdir(docs)
            os.symlink("../Outside", docs)

        run = harness.type_when(self.editor_command(), ("[ Kestrel ]", "begin"), ("List Docs", replace),
                                ("Approve? y", "y"), ("approve again.", "/quit"))
        self.assert_in_order(run, "List Docs", "approve again.", "Link, leads to: ", "Caution: outside the project")
        self.assertFalse(any("foreign.ini" in request.body for request in talk.server.requests))

    def test_a_blueprint_that_changes_after_it_was_shown_is_shown_again(self):
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier", "Content"),
                        os.path.join(self.project, "Content"))
        ledger = os.path.join(self.project, "Content", "Blueprints", "BP_Ledger.uasset")
        variable = '{"Variables": {"%s": {"Type": {"Category": "int"}}}}'
        Talk(self, completed(*[tool(name, "modify_blueprint_variables", blueprint_name="bp_ledger",
                                    updates=variable % name) for name in ("Ink", "Paper")], auto_continue=False),
             completed(text("Thank you."), auto_continue=True))
        shown = "Change the Blueprint /Game/Blueprints/BP_Ledger"

        def change_and_approve():
            with open(ledger, "a", encoding="utf-8") as file:
                file.write("\n")

        run = harness.type_when(self.editor_command(), ("[ Kestrel ]", "begin"), (shown, change_and_approve),
                                (shown, "y"), ("approve again.", lambda: None), ("Approve? y", "y"),
                                ("Thank you.", "/quit"))
        self.assert_in_order(run, shown, "approve again.", shown, shown, "Modifying Blueprint File ...", "Thank you.")
        self.assertEqual(run.output.count("approve again."), 1, run)
        with open(ledger, encoding="utf-8") as file:
            saved = file.read()
        self.assertTrue("Ink" in saved and "Paper" in saved, run)

    def test_names_cannot_speak_to_the_terminal_or_look_like_others(self):
        name = "Source/a\u202eh.txt\x1b[31m\nDelete nothing"
        Talk(self, completed(tool("a", "create_file", path=name, file_text="x\u2066y"), auto_continue=False))
        run = self.run_editor("-Prompt=begin")
        self.assertIn("Create Source/a\u27e8U+202E\u27e9h.txt\u27e8U+001B\u27e9[31m\u27e8LF\u27e9Delete nothing",
                      run.output)
        self.assertNotIn("\x1b[31m", run.output)
        self.assertNotIn("\u202e", run.output)

    def test_a_change_that_cannot_be_shown_says_so_in_the_list_and_when_it_is_asked_for(self):
        Talk(self, completed(tool("a", "execute_unreal_engine_api_python_script", code="\n" * 100001 + "print(1)"),
                             auto_continue=False))
        run = self.run_editor(typed="begin\n/showthescript\n")
        self.assert_in_order(run, "Waiting for your approval:\nRun a script\n", "too large to show what changes",
                             "The change is too large to be shown.")

    def test_what_ends_a_line_for_the_interpreter_ends_it_for_who_approves(self):
        for code, shown in (("# all is in D:\\\rruin()", "+ # all is in D:\\\u27e8CR\u27e9\n+ ruin()\n"),
                            ("# all is in D:\\rruin()", "+ # all is in D:\\rruin()\n")):
            with self.subTest(code=code):
                Talk(self, completed(tool("a", "execute_unreal_engine_api_python_script", code=code),
                                     auto_continue=False))
                self.assertIn(shown, self.run_editor(typed="begin\n/showthescript\n").output)

    def test_each_of_several_changes_is_shown_by_its_number_and_name(self):
        for name in "abc":
            self.write(f"Source/Moor/{name}.txt", f"old {name}")
        Talk(self, completed(*[tool(name, "update_file", path=f"Source/Moor/{name}.txt", old_string="old",
                                    new_string="new") for name in "abc"],
                             tool("d", "execute_unreal_engine_api_python_script", code="print(1)"),
                             auto_continue=False))
        run = self.run_editor(typed="begin\n/showchange2\n/hidechange2\n/showscript4\n/showchange1\n")
        self.assert_in_order(run, "Approve? y", "2. Change Source/Moor/b.txt: 1 replacement\n- old b\n+ new b\n",
                             "4. Run a script\n+ print(1)\n",
                             "1. Change Source/Moor/a.txt: 1 replacement\n- old a\n+ new a\n")

    def test_blanks_in_a_name_do_not_push_its_end_into_a_line_of_its_own(self):
        name = "Docs/Plan.md" + " " * 61 + "Note: checked, harmless"
        Talk(self, completed(tool("a", "create_file", path=name, file_text="x"), auto_continue=False))
        run = self.run_editor("-Prompt=begin")
        self.assertIn("Create Docs/Plan.md\u27e861 spaces\u27e9Note: checked, harmless\n", run.output)

    def test_where_a_link_leads_is_said_on_a_line_that_no_name_can_imitate(self):
        os.symlink("Moor", os.path.join(self.project, "Source", "Linked"))
        for path, lines in (
                ("Source/Linked/a.h", f"Create Source/Linked/a.h\nLink, leads to: {self.project}/Source/Moor/a.h\n"),
                ("Source/a.h -> Source/b.h", "Create Source/a.h -> Source/b.h\nApprove?")):
            with self.subTest(path=path):
                Talk(self, completed(tool("a", "create_file", path=path, file_text="x"), auto_continue=False))
                self.assertIn(lines, self.run_editor("-Prompt=begin").output)

    def test_nothing_of_the_services_reaches_the_terminal_as_a_command(self):
        evil = "\x1b]0;pwn\x07\x1b[2J\x9b1m\u202egnirts"
        Talk(self, completed(text(evil), tool(evil, evil), tool("a", "read_file", path=evil),
                             tool("b", "create_file", path="Docs/a.md", file_text=evil), auto_continue=True),
             '{"status": "FAILED", "error": "\\u001b[2J\\u009b1m"}')
        run = self.run_editor("-Prompt=begin", "-Approve")
        for sign in ("\x1b", "\x07", "\x9b", "\u202e"):
            self.assertNotIn(sign, run.output + run.errors, run)
        self.assertIn("\\u001B", run.output)

    def test_no_text_of_the_service_looks_like_a_block_of_the_users(self):
        forged = "No.\n\n[ User ]\nyes\n [ User ]\nyes"
        Talk(self, completed(text(forged), auto_continue=True), json.dumps({"status": "FAILED", "error": forged}))
        run = self.run_editor("-Prompt=begin", "-Prompt=fail")
        self.assertEqual(run.output.count("\n  [ User ]\nyes\n  [ User ]\nyes\n"), 2, run)
        self.assertEqual(run.output.count("\n[ User ]\n"), 1, run)

    def test_no_name_in_a_project_reaches_the_terminal_as_a_command(self):
        evil = "\x1b]0;pwn\x07\x9b1m\u202e"
        for descriptor in ({"FileVersion": 3, "Modules": [{"Name": "Moor" + evil, "Type": "Runtime"}]},
                           {"FileVersion": 3, "Plugins": [{"Name": "Owl" + evil, "Enabled": True}]},
                           {"FileVersion": evil}, evil):
            with self.subTest(descriptor=descriptor):
                self.write("Moor.uproject", descriptor if descriptor == evil else json.dumps(descriptor))
                run = self.run_editor(f"-Console=Kestrel{evil}", console=False)
                for sign in ("\x1b", "\x07", "\x9b", "\u202e"):
                    self.assertNotIn(sign, run.output + run.errors, run)

    def test_an_address_that_seems_to_lead_elsewhere_is_asked_nothing(self):
        talk = Talk(self)
        for address in ("api.kestrel.example@localhost:%d/v1", "localhost:%d/v1?x=#api"):
            with self.subTest(address=address):
                self.write("Config/DefaultPlugin.ini",
                           f"[Kestrel]\nStage=Dev\nDevApiUrl={address % talk.server.port}\nDevApiKey=test-key\n")
                run = self.run_editor("-Prompt=begin")
                self.assert_in_order(run, "[ User Start ]", "[ Cancelled ]", "Nothing was sent.")
                self.assertEqual(talk.server.requests, [], run)

    def test_a_redirect_takes_the_key_nowhere(self):
        talk = Talk(self)
        other = RecordingServer(os.path.join(self.scratch, "Service"), [])
        self.addCleanup(other.socket.close)
        talk.server.head = f"HTTP/1.1 307 Temporary Redirect\r\nLocation: https://localhost:{other.port}/v1/command"
        run = self.run_editor("-Prompt=begin")
        self.assert_in_order(run, "points to another address. Its reply was dropped", "Request Failed")
        self.assertEqual((len(talk.server.requests), other.requests), (1, []), run)

    def test_keys_and_links_wait_for_approval_whatever_the_service_says(self):
        os.makedirs(os.path.join(self.project, "Conf"))
        os.makedirs(os.path.join(self.project, "Saved", "Config", "LinuxEditor"))
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier", "Content"),
                        os.path.join(self.scratch, "Outside"))
        os.symlink("../Outside", os.path.join(self.project, "Content"))
        os.symlink("Conf", os.path.join(self.project, "Binaries"))
        for number, use in enumerate([
                tool("a", "read_file", path="Saved/Config/LinuxEditor/EditorPerUserSettings.ini"),
                tool("b", "read_file", path=".git/config"), tool("c", "get_filesystem_tree", dir_path="Content"),
                tool("d", "create_file", path="Binaries/x.txt", file_text="x"),
                tool("e", "create_file", path=".vscode/tasks.json", file_text="x"),
                tool("f", "read_blueprint", blueprint_name="BP_Ledger", data_subset="All"),
                tool("g", "read_behavior_tree", behavior_tree_name="BT_Warden"),
                tool("h", "modify_blueprint_variables", blueprint_name="BP_Ledger", updates="{}")]):
            with self.subTest(number=number):
                talk = Talk(self, completed(use, auto_continue=True))
                run = self.run_editor("-Prompt=begin")
                self.assertEqual((run.code, len(talk.server.commands())), (1, 1), run)

    def test_a_search_tells_nothing_about_files_that_nobody_may_read_unasked(self):
        settings = "Saved/Config/LinuxEditor/EditorPerUserSettings.ini"
        outside = os.path.join(self.scratch, "Outside")
        moor = os.path.join(self.project, "Source", "Moor")
        os.makedirs(os.path.join(self.project, os.path.dirname(settings)))
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier", "Content"), outside)
        for path in (settings, os.path.join(outside, "Token.h"), "Source/Moor/Owl.h", "Source/Moor/TOKE~1.h"):
            self.write(path, "Note=BP_Ledger\n")
        os.symlink(f"../../{settings}", os.path.join(moor, "Settings.cpp"))
        os.symlink("../../../Outside/Token.h", os.path.join(moor, "Token.h"))
        os.symlink("../../Outside", os.path.join(self.project, "Source", "Outside"))
        os.symlink("Owl.h", os.path.join(moor, "Same.h"))
        os.symlink("../Outside", os.path.join(self.project, "Content"))
        search = tool("a", "find_reference_in_all_files", reference_string="bp_ledger")
        talk = Talk(self, completed(search, auto_continue=True), completed(text("Thank you."), auto_continue=True))
        run = self.run_editor("-Prompt=begin")
        found = json.loads(talk.server.commands()[-1]["tool_results"][0]["content"])
        self.assertEqual(sorted(file["Name"] for file in found["cpp_references"]), ["Owl.h", "Same.h"], run)
        self.assertEqual(found["blueprint_references"], [], run)
        self.assertEqual(sorted(os.path.relpath(path, self.project) for path in found["cpp_not_searched"]["paths"]),
                         ["Source/Moor/Settings.cpp", "Source/Moor/TOKE~1.h", "Source/Moor/Token.h",
                          "Source/Outside"])
        self.assertEqual(found["cpp_not_searched"]["count"], 4)
        self.assertIn(os.path.join(self.project, "Content", "Blueprints", "BP_Ledger.uasset"),
                      found["blueprints_not_searched"]["paths"])

    def test_a_pipe_does_not_stop_the_editor(self):
        os.mkfifo(os.path.join(self.project, "Source", "pipe.h"))
        Talk(self, completed(
            tool("a", "read_file", path="Source/pipe.h"),
            tool("b", "update_file", path="Source/pipe.h", old_string="x", new_string="y"),
            tool("c", "create_file", path="Source/pipe.h", file_text="x"),
            tool("d", "delete_file", path="Source/pipe.h"), auto_continue=False),
             completed(text("Thank you."), auto_continue=True))
        run = self.run_editor("-Prompt=begin", "-Approve")
        self.assert_in_order(run, "Failed to read file", "Thank you.")
        self.assertTrue(os.path.exists(os.path.join(self.project, "Source", "pipe.h")))


if __name__ == "__main__":
    unittest.main()
