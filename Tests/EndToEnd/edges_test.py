"""Projects and services as they are out there."""

import os
import socket
import subprocess
import sys
import unittest

import harness
from harness import EndToEndTest, ROOT


class ProjectEdgesTest(EndToEndTest):
    folder_name = "Mein Spiel \u00fc \u6f22"

    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def test_blanks_and_unusual_letters_in_the_path_of_the_project(self):
        self.write("Source/Moor/Stra\u00dfe Nord.h", "class ANorth;\n")
        run = self.run_editor("-Prompt=read 'Source/Moor/Stra\u00dfe Nord.h'", "-Prompt=list the files", "-Approve")
        self.assert_in_order(run, "class ANorth;", "The project has", "Stra\u00dfe Nord.h", "[ User End ]")
        self.assertEqual(run.code, 0, run)

    def test_a_file_of_50_megabytes_is_read_through_the_service(self):
        line = "0123456789" * 10 + "\n"
        self.write("Source/Moor/Large.h", line * (50 * 1024 * 1024 // len(line)))
        run = self.run_editor("-Prompt=read Source/Moor/Large.h", "-Approve")
        self.assert_in_order(run, f"Large.h, {50 * 1024 * 1024 // len(line)} lines:", "0123456789", "[ User End ]")
        self.assertEqual(run.code, 0, run)

    def test_links_that_lead_back_do_not_hold_the_tree_up(self):
        for name in ("back", "again"):
            os.symlink("..", os.path.join(self.project, "Source", name))
        os.symlink(os.path.join(self.project, "Config"), os.path.join(self.project, "Source", "elsewhere"))
        run = self.run_editor("-Prompt=list the files in Source", "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertRegex(run.output, r"elsewhere/\n(    \S+\n)*    DefaultGame.ini", "a link to another folder is followed")
        self.assertLess(run.output.count("Walker.h"), 10, run)

    def test_a_folder_that_may_not_be_read_is_left_out_of_the_tree(self):
        closed = os.path.join(self.project, "Source", "Closed")
        os.makedirs(closed)
        self.write("Source/Closed/Hidden.h", "class AHidden;\n")
        user = self.ordinary_user()
        os.chmod(closed, 0)
        self.addCleanup(os.chmod, closed, 0o755)
        run = self.run_editor("-Prompt=list the files", "-Prompt=read Source/Closed/Hidden.h", "-Approve", **user)
        self.assert_in_order(run, "The project has", "Walker.h", "Error: File not found", "[ User End ]")
        self.assertNotIn("Closed/\n", run.output)
        self.assertEqual(run.code, 0, run)

    def test_a_project_is_left_as_it_was(self):
        before = self.files_of_project("Config", "Source")
        self.run_editor("-Prompt=read Source/Moor/Walker.h", "-Approve")
        self.assertEqual(self.files_of_project("Config", "Source"), before)


class ServiceEdgesTest(EndToEndTest):
    def free_port(self):
        with socket.create_server(("127.0.0.1", 0)) as probe:
            return probe.getsockname()[1]

    def test_a_service_that_is_not_there_cancels_with_a_clear_text(self):
        self.use_service(self.free_port(), "/nowhere.pem")
        run = self.run_editor("-Prompt=read Source/Moor/Walker.h", "-Approve")
        self.assert_in_order(run, "Sending request...", "could not be reached. Check that the service runs",
                             "[ Cancelled ]\nRequest Failed")
        self.assertEqual(run.code, 1, run)

    def test_a_service_with_a_certificate_of_nobody_known_is_not_trusted(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.write("Config/DefaultEngine.ini", "")
        run = self.run_editor("-Prompt=read Source/Moor/Walker.h", "-Approve")
        self.assert_in_order(run, "[ Cancelled ]\nRequest Failed")
        self.assertEqual(run.code, 1, run)

    def test_a_wrong_key_is_said_to_be_so(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        stage = os.path.join("Config", "DefaultPlugin.ini")
        self.write(stage, self.files_of_project("Config")[stage].decode().replace(harness.API_KEY, "wrong"))
        run = self.run_editor("-Prompt=read Source/Moor/Walker.h", "-Approve")
        self.assert_in_order(run, "[ Cancelled ]\nMake sure you have a valid API key.")
        self.assertEqual(run.code, 1, run)


class SettingsTest(EndToEndTest):
    """The user's own key, which lives in the per-user settings and nowhere else."""

    settings_file = os.path.join("Saved", "Config", "LinuxEditor", "EditorPerUserSettings.ini")

    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)
        # The stage names the address only: the key is the user's.
        stage = os.path.join("Config", "DefaultPlugin.ini")
        text = self.files_of_project("Config")[stage].decode()
        self.write(stage, "".join(line for line in text.splitlines(True) if "Key" not in line))
        self.change("ApiKey", harness.API_KEY)

    def change(self, setting, value):
        """As the settings page does, in a run of the editor of its own."""
        run = self.run_editor(f"-ExecCmds=SetSetting Project Plugins Kestrel {setting} {value};Quit", console=False)
        self.assertEqual(run.code, 0, run)

    def listed(self):
        """What the assistant sees of the project."""
        run = self.run_editor("-Prompt=list the files", "-Approve")
        self.assertEqual(run.code, 0, run)
        return run.output

    def test_settings_survive_restarts_until_they_are_reset(self):
        self.assertIn("Walker.h", self.listed())
        self.change("ExcludedDirectories", '("Moor","Saved")')
        for _ in range(2):
            self.assertNotIn("Walker.h", self.listed())
        self.change("bResetExcludedDirectories", "True")
        self.assertIn("Walker.h", self.listed())
        settings = self.files_of_project("Saved")[self.settings_file].decode("utf-8-sig")
        self.assertIn(f"ApiKey={harness.API_KEY}\n", settings, "the other settings stay")
        self.assertNotIn("bReset", settings)

    def test_the_key_stands_in_no_other_file_and_in_no_output(self):
        run = self.run_editor("-Prompt=read Config/DefaultGame.ini", "-Approve", "-Verbose")
        self.assertEqual(run.code, 0, run)
        self.assertNotIn(harness.API_KEY, run.output + run.errors)
        key = harness.API_KEY.encode()
        holders = [path for path, content in self.files_of_project(".").items() if key in content]
        self.assertEqual(holders, [self.settings_file])


# The run command with the binaries that are being tested, instead of the release that it would build.
RUN_COMMAND = """
import argparse, sys
import run, steps
run.PRESET = sys.argv[1]
steps.build = lambda preset, targets: None
sys.exit(run.run(argparse.Namespace(project=sys.argv[2] or None, headless=True, prompt=sys.argv[3:], approve=True,
                                   model=None)))
"""


class LauncherTest(EndToEndTest):
    """./kestrel itself: the production address, answered by the local service under its own name."""

    def run_project(self, folder, prompt):
        done = subprocess.run([sys.executable, "-B", "-c", RUN_COMMAND, harness.PRESET, folder, prompt],
                              cwd=os.path.join(ROOT, "Tools"), capture_output=True, text=True,
                              timeout=harness.LONGEST_RUN_SECONDS, check=False)
        return harness.EditorRun(done.returncode, done.stdout, done.stderr)

    def test_run_opens_a_copy_of_the_sample(self):
        run = self.run_project("", "read Source/Harrier/Harrier.h")
        self.assert_in_order(run, "Sample project (", "Local service: https://", "[ User Start ]",
                             "Reading File...", "DECLARE_LOG_CATEGORY_EXTERN(LogHarrier", "[ User End ]")
        self.assertEqual(run.code, 0, run)

    def test_run_leaves_the_users_own_project_as_it_was(self):
        before = self.files_of_project("Config", "Source")
        run = self.run_project(self.project, "read Source/Moor/Walker.h")
        self.assert_in_order(run, "Local service: https://", "class AWalker", "[ User End ]")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.files_of_project("Config", "Source"), before)

    def run_launcher(self, *arguments):
        return subprocess.run([os.path.join(ROOT, "kestrel"), *arguments], capture_output=True, text=True,
                              timeout=harness.LONGEST_RUN_SECONDS, check=False)

    def test_help_names_the_commands(self):
        done = self.run_launcher("help")
        self.assertEqual(done.returncode, 0)
        for command in ("run", "test", "bench", "lint", "format"):
            self.assertIn(f"\n    {command} ", done.stdout)

    def test_a_project_that_is_none_is_refused_before_anything_is_built(self):
        done = self.run_launcher("run", "--project", os.path.join(ROOT, "Docs-of-nobody"))
        self.assertEqual(done.returncode, 1)
        self.assertIn("There is no folder", done.stderr)


if __name__ == "__main__":
    unittest.main()
