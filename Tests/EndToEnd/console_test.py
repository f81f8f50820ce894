"""The panel on a terminal, against the real service with its offline responder."""

import json
import os
import resource
import socket
import subprocess
import time
import unittest

import harness
from harness import EndToEndTest


class ConsoleTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def test_a_prompt_is_answered_from_end_to_end(self):
        run = self.run_editor("-Prompt=read Source/Moor/Walker.h", "-Approve")
        self.assert_in_order(
            run, "[ User Start ]\nread Source/Moor/Walker.h\n", "Sending request...\n", "Processing request...\n",
            "[ Kestrel ]\nI will read Source/Moor/Walker.h.\n", "[ User ]\nThe process has been resumed.\n",
            "Reading File...\n", "Sending request...\n", "Processing request...\n",
            "Source/Moor/Walker.h, 6 lines:\n", "class AWalker\n", "[ User End ]")
        self.assertEqual(run.code, 0, run)
        self.assertNotIn("\033", run.output, "no colours in a pipe")

    def test_several_prompts_are_one_conversation(self):
        run = self.run_editor("-Prompt=read Config/DefaultGame.ini", "-Prompt=list the files in Source", "-Approve")
        self.assert_in_order(run, "[ User Start ]", "Feathers=12", "[ User ]\nlist the files in Source",
                             "Source has 1 file in 1 folder.", "Walker.h", "[ User End ]")
        self.assertEqual(run.output.count("[ User Start ]"), 1, run)
        self.assertEqual(run.code, 0, run)

    def test_a_blueprint_is_made_saved_and_read_by_the_next_editor(self):
        run = self.run_editor("-Prompt=create blueprint BP_Gate from Actor in /Game/Doors",
                              "-Prompt=read the graphs of blueprint bp_gate", "-Prompt=save all", "-Approve")
        self.assert_in_order(
            run, "Creating Blueprint File ...\n", "Success: Blueprint 'BP_Gate' created at '/Game/Doors'.",
            "Reading Blueprint Asset ...\n", "Event BeginPlay", "Saving and compiling all dirty blueprints ...\n",
            "Blueprint 'BP_Gate' saved successfully.", "Blueprint 'BP_Gate' compiled successfully.")
        self.assertEqual(list(self.files_of_project("Content")), ["Content/Doors/BP_Gate.uasset"])
        again = self.run_editor("-Prompt=read blueprint BP_Gate", "-Prompt=create blueprint BP_Gate in /Game/Doors",
                                "-Prompt=read blueprint BP_Portcullis", "-Approve")
        self.assert_in_order(again, "The Blueprint BP_Gate (/Game/Doors/BP_Gate.BP_Gate):", "Event ActorBeginOverlap",
                             "Check if the path is valid and the name is unique.",
                             "Blueprint 'BP_Portcullis' not found.")

    def test_a_tool_that_nobody_approves_fails_the_run(self):
        run = self.run_editor("-Prompt=read Source/Moor/Walker.h")
        self.assertEqual(run.code, 1, run)
        self.assertIn("approval", run.errors)
        self.assertNotIn("class AWalker", run.output)

    def test_piped_lines_are_prompts_and_approvals(self):
        run = self.run_editor(typed="read Source/Moor/Walker.h lines 3-4\ny\nread Config/DefaultGame.ini\ny\n/end\n")
        self.assert_in_order(run, "[ User Start ]\nread Source/Moor/Walker.h lines 3-4", "Approve? y",
                             "class AWalker\n{\n",
                             "[ User ]\nread Config/DefaultGame.ini", "Approve? y", "Feathers=12", "[ User End ]")
        self.assertEqual(run.code, 0, run)

    def test_another_answer_than_y_goes_to_the_service_instead_of_the_tool(self):
        run = self.run_editor(typed="read Source/Moor/Walker.h\nno, read Config/DefaultGame.ini\ny\n")
        self.assert_in_order(run, "Approve? y", "[ User ]\nno, read Config/DefaultGame.ini", "Feathers=12")
        self.assertNotIn("class AWalker", run.output)

    def test_a_file_named_like_a_button_is_only_a_file(self):
        for name in ("pause", "[ End ]", "approve"):
            with self.subTest(name=name):
                run = self.run_editor(f'-Prompt=create "{name}" with "Feathers"', "-Prompt=read Config/DefaultGame.ini",
                                      "-Approve")
                self.assert_in_order(run, "Creating File...", "Feathers=12", "[ User End ]")
                self.assertEqual(run.code, 0, run)

    def test_commands_that_cannot_be_used_say_why(self):
        run = self.run_editor(typed="/undo\n/approve\n/fly\n/help\n/quit\n")
        self.assert_in_order(
            run, "/undo cannot be used now. There is nothing to undo.\n",
            "/approve cannot be used now. Nothing waits for approval.\n",
            "There is no command /fly. /help lists the commands.\n",
            "  /undo", "There is nothing to undo.", "  /quit")
        self.assertEqual(run.code, 0, run)

    def test_commands_work_as_prompts_without_a_conversation(self):
        for prompts, code in ((["/help"], 0), (["/undo"], 1),
                              (["delete Config/DefaultGame.ini", "/end", "/undo", "/redo"], 0)):
            with self.subTest(prompts=prompts):
                run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts), "-Approve")
                self.assertEqual(run.code, code, run)
        self.assertEqual(sorted(self.files_of_project("Config")),
                         ["Config/DefaultEngine.ini", "Config/DefaultPlugin.ini"])

    def test_the_question_for_approval_reads_the_same_with_and_without_a_prompt_on_the_command_line(self):
        question = "Approve? y runs the tools; any other answer does not.\n"
        for run in (self.run_editor("-Prompt=read Source/Moor/Walker.h", typed="y\n"),
                    self.run_editor(typed="read Source/Moor/Walker.h\ny\n")):
            self.assert_in_order(run, "I will read", question, "class AWalker")
            self.assertEqual(run.code, 0, run)

    def test_a_file_that_is_not_there_is_said_to_be_so(self):
        run = self.run_editor("-Prompt=read Source/Moor/Nowhere.h", "-Approve")
        self.assert_in_order(run, "Reading File...", "Source/Moor/Nowhere.h: Error: File not found", "[ User End ]")
        self.assertEqual(run.code, 0, run)

    def test_the_exit_code_tells_whether_the_tools_of_the_last_answer_failed(self):
        missing, present = "-Prompt=read Source/Moor/Nowhere.h", "-Prompt=read Source/Moor/Walker.h"
        for prompts, code in (([missing], 1), ([missing, present], 0), ([present, missing], 1)):
            with self.subTest(prompts=prompts):
                run = self.run_editor(*prompts, "-Approve", "-FailOn=LogKestrel")
                self.assertIn("[ User End ]", run.output)
                self.assertEqual(run.code, code, run)

    def test_a_prompt_with_quotes_and_unusual_letters_arrives_as_it_is(self):
        run = self.run_editor('-Prompt=read "Source/Größe \u00fcber.h"', "-Approve")
        self.assert_in_order(run, 'read "Source/Größe über.h"', "Source/Größe über.h: Error: File not found")

    def test_a_tab_that_does_not_exist_ends_at_once(self):
        command = [word.replace("-Console=Kestrel", "-Console=Nothing") for word in self.editor_command()]
        done = subprocess.run(command, capture_output=True, text=True, timeout=harness.LONGEST_RUN_SECONDS, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("There is no tab 'Nothing'", done.stderr)


class LongAnswerTest(EndToEndTest):
    def test_thousands_of_blocks_are_printed_within_seconds(self):
        service = self.start_service("--responder", "script", "--scripts", self.scratch)
        self.use_service(service.port, service.authority)
        blocks = [{"type": "text", "text": f"Block {index}."} for index in range(8000)]
        with open(os.path.join(self.scratch, "long.json"), "w", encoding="utf-8") as script:
            json.dump({"turns": [{"response": {"auto_continue": False, "response": blocks}}]}, script)
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        run = self.run_editor("-Prompt=script long")
        self.assertIn("Block 7999.", run.output)
        # Of a processor's time, whatever else it does. A frame that looked at the blocks of each block took 80 and more.
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before, 30)


class NoScreenTest(EndToEndTest):
    """A window that is wanted where no screen answers."""

    def run_without_screen(self, display):
        env = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        if display:
            env["DISPLAY"] = display
        started = time.monotonic()
        run = self.run_editor("-Window", typed="/quit\n", env=env)
        self.assertLess(time.monotonic() - started, 20, run)
        self.assert_in_order(run, "so the editor is shown in this terminal.", "I know the files and Blueprints")
        self.assertEqual(run.code, 0, run)

    def test_a_missing_screen_gives_way_to_the_terminal(self):
        for display in ("", ":4095", "nonsense"):
            with self.subTest(display=display):
                self.run_without_screen(display)

    def test_a_screen_that_does_not_answer_gives_way_to_the_terminal(self):
        first_display_port = 6000
        with socket.create_server(("127.0.0.1", 0)) as silent:
            self.run_without_screen(f"127.0.0.1:{silent.getsockname()[1] - first_display_port}")


class InterruptTest(EndToEndTest):
    """Ctrl-C while the answer is awaited."""

    def run_interrupted(self, *arguments):
        service = self.start_service("--responder", "script", "--scripts", self.project)
        self.write("slow.json", '{ "turns": [ { "status": [ { "status": "RUNNING" } ] } ] }')
        self.use_service(service.port, service.authority)
        # On the wall clock: the unattended one would jump from poll to poll as fast as the service answers.
        command = [word for word in self.editor_command(*arguments) if word != "-UnattendedClock"]
        with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True) as process:
            return process, harness.interrupt_when(process, "Sending request...")

    def test_ctrl_c_ends_the_conversation_and_fails_an_unattended_run(self):
        process, output = self.run_interrupted("-Prompt=script slow")
        self.assertIn("[ User End ]", output)
        self.assertEqual(process.returncode, 1, output)


if __name__ == "__main__":
    unittest.main()
