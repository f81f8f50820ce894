"""The service with a language model, played by a scripted server."""

import os
import shutil
import subprocess
import unittest

import harness
from harness import EndToEndTest
from scripted_model import ScriptedModel

import steps

KEY = "canary-model-key-71"
KEY_VARIABLE = "KESTREL_TEST_MODEL_KEY"


class ModelTest(EndToEndTest):
    """The sample game, a copy for each test."""

    def setUp(self):
        super().setUp()
        shutil.rmtree(self.project)
        shutil.copytree(os.path.join(harness.ROOT, "Samples", "Harrier"), self.project)

    def start_model(self, name):
        model = ScriptedModel(os.path.join(os.path.dirname(os.path.abspath(__file__)), "Models", name))
        model.__enter__()
        self.addCleanup(model.__exit__)
        self.configuration = os.path.join(self.scratch, "model.toml")
        with open(self.configuration, "w", encoding="utf-8") as file:
            file.write(model.configuration() + f'key_variable = "{KEY_VARIABLE}"\n')
        os.environ[KEY_VARIABLE] = KEY
        self.addCleanup(os.environ.pop, KEY_VARIABLE)
        return model

    def test_a_double_jump_is_added_to_the_character_and_undone(self):
        model = self.start_model("double-jump.json")
        service = self.start_service("--responder", "model", "--config", self.configuration)
        self.use_service(service.port, service.authority)
        before = self.files_of_project("Source", "Config")
        prompts = ["Add a double jump to the character", "continue", "continue"]
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts + ["/undo"]), "-Approve")
        self.assertEqual(model.problems, [], run)
        self.assert_in_order(
            run, "I look for the character.", "Finding Reference In All Files ...", "I read its header and its source.",
            "Reading File...", "I add StartJump", "Updating File Content...", "int32 MaxJumps = 2;", "I compile.",
            "Compilation failed, processing error...", "A semicolon is missing", "I compile again.",
            "Compilation successful!", "Reading Blueprint Asset ...", "Modifying Blueprint File ...",
            "Done: the character jumps twice", "Undoing Last Changes...", "Compilation successful!")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.files_of_project("Source", "Config"), before)
        warden = self.files_of_project("Content")["Content/Blueprints/BP_Warden.uasset"]
        self.assertNotIn(b"JumpsSeen", warden)
        self.assertIn(b'Class=/Script/Harrier.HealthComponent Name="Health_GEN_VARIABLE"', warden)
        self.assertNotIn(b"/Engine/Transient", warden)
        self.check_approvals(run)
        self.check_key(model, run)

    def check_approvals(self, run):
        """Reading runs at once, and changes ask."""
        asked = [part.split("Approve?")[0] for part in run.output.split("Waiting for your approval:")[1:]]
        self.assertEqual(len(asked), 5, run)
        self.assertFalse([text for text in asked if "Read " in text or "Search " in text], run)

    def check_key(self, model, run):
        """The model server gets the key, and nothing else does."""
        self.assertEqual({request["headers"]["Authorization"] for request in model.requests}, {f"Bearer {KEY}"})
        written = run.output + run.errors + str([request["body"] for request in model.requests])
        self.assertNotIn(KEY, written)
        # Projects and the service's log, certificates and stored conversations.
        for path, _, names in os.walk(self.scratch):
            for name in names:
                full = os.path.join(path, name)
                with open(full, "rb") as file:
                    self.assertFalse(KEY.encode() in file.read(), full)

    def test_a_configuration_is_checked(self):
        self.start_model("double-jump.json")
        with open(self.configuration, "a", encoding="utf-8") as file:
            file.write('[limits.day]\ncosts = 5\n')
        done = subprocess.run([steps.binary(harness.PRESET, "kestrel-service"), "check-config", self.configuration],
                              capture_output=True, text=True, timeout=harness.LONGEST_RUN_SECONDS, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn("model.toml:7: limits.day.costs is not a member of the configuration", done.stdout)


if __name__ == "__main__":
    unittest.main()
