"""A conversation that changes a project with code and history: files, builds, scripts, undo and redo."""

import json
import os
import subprocess
import time
import unittest

import harness
from harness import EndToEndTest

LANTERN = """#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "Lantern.generated.h"

UCLASS()
class ULantern : public UObject
{
    GENERATED_BODY()

public:
    UPROPERTY(EditAnywhere, Category = "Light")
    float Brightness = 0.5f;
};
"""

# Many seconds of work for the compiler, which evaluates each line on its own. New each time, as compilers may be
# wrapped by a cache.
FIRST_SEED = time.time_ns() % 1000000
SLOW_SOURCE = """#include "Lantern.h"
#include "Modules/ModuleManager.h"

constexpr int Burn(int Seed)
{
    for (int Index = 0; Index < 200000; ++Index)
    {
        Seed = (Seed * 31 + Index) % 1009;
    }
    return Seed;
}
""" + "".join(f"static_assert(Burn({seed}) >= 0);\n" for seed in range(FIRST_SEED, FIRST_SEED + 60)) + """
IMPLEMENT_PRIMARY_GAME_MODULE(FDefaultGameModuleImpl, Moor, "Moor");
"""

RESCUE_NAME = "0123456789ABCDEF0123456789ABCDEF"
ALREADY_COMPILING = "A compilation is already running. Wait for its result before you start another one."
REFUSED = {"tool_results": [{"type": "tool_result", "tool_use_id": "second", "content": ALREADY_COMPILING,
                             "is_error": True}]}


def tool(identifier, name, **fields):
    return {"type": "tool_use", "id": identifier, "name": name, "input": fields}


def text(words):
    return {"type": "text", "text": words}


def answer(*blocks):
    return {"response": {"auto_continue": True, "response": list(blocks)}}


class CodeProjectTest(EndToEndTest):
    """A project with a module of its own, in a repository."""

    folder_name = "Moor at dusk"

    def setUp(self):
        super().setUp()
        self.write("Moor.uproject", '{ "FileVersion": 3, "EngineAssociation": "5.4", "Modules": [ { "Name": "Moor", '
                                    '"Type": "Runtime", "LoadingPhase": "Default" } ] }\n')
        self.write("Source/Moor/Moor.Build.cs", "using UnrealBuildTool;\npublic class Moor : ModuleRules {\n"
                   "public Moor(ReadOnlyTargetRules Target) : base(Target) {\n"
                   'PublicDependencyModuleNames.AddRange(new string[] { "Core", "CoreUObject" });\n} }\n')
        self.write("Source/Moor/Moor.cpp", '#include "Lantern.h"\n#include "Modules/ModuleManager.h"\n\n'
                   "IMPLEMENT_PRIMARY_GAME_MODULE(FDefaultGameModuleImpl, Moor, \"Moor\");\n")
        self.write("Source/Moor/Lantern.h", LANTERN)
        self.write("Config/Windows.ini", "[Größe]\r\nA=1\r\n")
        self.write(".gitignore", "Binaries/\nIntermediate/\nSaved/\nPlugins/\n")
        self.write("Config/DefaultPlugin.ini", "")
        self.write("Config/DefaultEngine.ini", "")
        self.git("init", "-q")
        self.git("add", ".")
        self.git("config", "user.name", "Moor")
        self.git("config", "user.email", "moor@example.com")
        self.git("commit", "-q", "-m", "Begin")

    def write(self, path, text):
        # Verbatim, with the line endings that a test means.
        with open(os.path.join(self.project, path), "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def git(self, *arguments):
        return subprocess.run(["git", *arguments], cwd=self.project, check=True, capture_output=True,
                              text=True).stdout


class ChangeTest(CodeProjectTest):
    def test_a_whole_conversation_is_made_taken_back_and_made_again(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        changes = [
            'create Docs/Plan.md with "Gather the große feathers\\n"',
            'replace "A=1\\n" with "A=2\\n" in Config/Windows.ini',
            "delete Source/Moor/Walker.h",
            'replace "0.5f" with "0.75g" in Source/Moor/Lantern.h',
            "compile",
            'replace "0.75g" with "0.75f" in Source/Moor/Lantern.h',
            "compile",
            "run python: import unreal; print('Brightness', unreal.Lantern.get_default_object()"
            ".get_editor_property('brightness'))",
            "find brightness",
        ]
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in changes + ["/undo"]), "-Approve")
        self.assert_in_order(
            run, "File created successfully", "with 1 replacements", "Successfully deleted file",
            "with 1 replacements", "Compiling...", "Compilation failed, processing error...",
            "The build failed:", "Lantern.h:14:", "error:", "with 1 replacements", "Compiling...",
            "Compilation successful!", "The game is built.", "Brightness 0.75", "Lantern.h",
            "Undoing Last Changes...", "Compilation successful!")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.git("status", "--short"), "", run)

        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in changes[:3] + ["/undo", "/redo"]), "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(sorted(self.git("status", "--short").splitlines()),
                         [" M Config/Windows.ini", "A  Docs/Plan.md", "D  Source/Moor/Walker.h"], run)
        self.assertEqual(self.files_of_project("Config")["Config/Windows.ini"].decode(), "[Größe]\r\nA=2\n")

    def test_a_commit_after_undo_holds_nothing_of_the_assistants(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in [
            "delete Config/Windows.ini", 'create Config/Windows.ini with "assistant"', "delete Config/DefaultGame.ini",
            'create Docs/New.md with "assistant"', 'replace "0.5f" with "0.6f" in Source/Moor/Lantern.h',
            "/undo"]), "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.git("status", "--porcelain"), "", run)

    def test_undo_leaves_what_the_user_had_not_committed_as_it_was(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        for name in ("Windows", "Added", "Loose"):
            self.write(f"Config/{name}.ini", f"[{name}]\nuser=1\n")
        self.git("add", "Config/Added.ini")
        before = self.git("status", "--porcelain")
        run = self.run_editor(*(f"-Prompt={prompt}" for name in ("Windows", "Added", "Loose") for prompt in [
            f"delete Config/{name}.ini", f'create Config/{name}.ini with "assistant"']), "-Prompt=/undo", "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.git("status", "--porcelain"), before, run)
        self.assertNotIn("assistant", self.git("diff", "--cached"))
        for name in ("Windows", "Added", "Loose"):
            self.assertEqual(self.files_of_project("Config")[f"Config/{name}.ini"].decode(), f"[{name}]\nuser=1\n")

    def test_undo_waits_for_a_repository_that_another_program_works_on(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        lock = os.path.join(self.project, ".git", "index.lock")
        run = harness.type_when(
            self.editor_command(), ("[ Kestrel ]", "delete Config/Windows.ini"), ("Approve? y", "y"),
            ("Successfully deleted", 'create Docs/New.md with "assistant"'), ("Create Docs/New.md", "y"),
            ("File created successfully", lambda: self.write(".git/index.lock", "")),
            ("File created successfully", "/undo"), ("Undone: 0 files", lambda: os.remove(lock)),
            ("Undone: 0 files", "/undo"), ("Undone: 2 files", "/quit"))
        self.assertEqual(run.output.count("This file could not be written:"), 2, run)
        self.assertEqual(self.git("status", "--porcelain"), "", run)

    def test_a_conflict_stays_the_users_to_resolve(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        self.git("checkout", "-q", "-b", "theirs")
        self.write("Config/Windows.ini", "theirs\n")
        self.git("commit", "-q", "-a", "-m", "Theirs")
        self.git("checkout", "-q", "-")
        self.write("Config/Windows.ini", "ours\n")
        self.git("commit", "-q", "-a", "-m", "Ours")
        subprocess.run(["git", "merge", "theirs"], cwd=self.project, check=False, capture_output=True)
        before = self.git("ls-files", "-u")
        self.assertEqual(len(before.splitlines()), 3)
        for prompts in (["delete Config/Windows.ini"], ['create Config/Windows.ini with "assistant"'],
                        ["delete Config/Windows.ini", 'create Config/Windows.ini with "assistant"']):
            run = self.run_editor(*(f"-Prompt={prompt}" for prompt in [*prompts, "/undo"]), "-Approve")
            self.assertEqual(run.code, 0, run)
            self.assertEqual(self.git("ls-files", "-u"), before, run)
            self.assertIn(b"<<<<<<<", self.files_of_project("Config")["Config/Windows.ini"])

    def test_a_file_that_the_user_removed_is_removed_again_and_no_more(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.git("commit", "-q", "-a", "-m", "Use a service")
        os.remove(os.path.join(self.project, "Config", "Windows.ini"))
        run = self.run_editor('-Prompt=create Config/Windows.ini with "assistant"', "-Prompt=/undo", "-Approve")
        self.assertEqual(run.code, 0, run)
        self.assertEqual(self.git("status", "--porcelain"), " D Config/Windows.ini\n", run)

    def test_a_project_that_does_not_compile_opens_and_is_fixed(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        self.write("Source/Moor/Lantern.h", LANTERN.replace("0.5f;", "0.5f"))
        prompts = ["compile", 'replace "0.5f" with "0.5f;" in Source/Moor/Lantern.h', "compile",
                   "run python: import unreal; print('Brightness', unreal.Lantern.get_default_object()"
                   ".get_editor_property('brightness'))"]
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts), "-Approve")
        self.assertIn("The project opens without its C++ modules, because they cannot be built:", run.errors)
        self.assertRegex(run.errors, r"Source/Moor/Lantern\.h:?\(?\d+.*error: ", run)
        self.assert_in_order(
            run, "The project's C++ code is not loaded (Moor).", "Compilation failed, processing error...", "Lantern.h",
            "error:", "with 1 replacements",
            "Compilation successful!", "Brightness 0.5")

    def test_a_project_for_engine_modules_that_are_not_here_tells_so_at_each_compile(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        rules = os.path.join(self.project, "Source", "Moor", "Moor.Build.cs")
        with open(rules, encoding="utf-8") as file:
            self.write("Source/Moor/Moor.Build.cs", file.read().replace('"CoreUObject"', '"CoreUObject", "Niagara"'))
        run = self.run_editor("-Prompt=compile", "-Prompt=go on", "-Approve")
        self.assertIn("engine modules that this editor does not have: Niagara", run.errors)
        self.assert_in_order(run, "Compilation failed", "engine modules that this editor does not have: Niagara")

    def write_script(self, name, *turns):
        with open(os.path.join(self.scratch, name), "w", encoding="utf-8") as script:
            json.dump({"turns": turns}, script)

    def test_a_second_compile_is_refused_while_the_first_goes_on(self):
        service = self.start_service("--responder", "script", "--scripts", self.scratch)
        self.use_service(service.port, service.authority)
        self.write_script(
            "twice.json", answer(tool("first", "compile"), tool("second", "compile")),
            # Longer than any build here; the clock jumps over it when the build is done.
            {"expect": REFUSED, "status": [{"status": "RUNNING"}] * 5, **answer(text("I wait."))},
            answer(text("Thank you.")))
        self.write("Source/Moor/Lantern.h", LANTERN.replace("0.5f", "0.6f"))
        # The result of the first waits for the next request.
        run = self.run_editor("-Prompt=script twice", "-Prompt=and now?")
        self.assert_in_order(run, "Compilation failed, processing error...", "Compilation successful!", "Thank you.")
        self.assertEqual(run.code, 0, run)

    def test_a_compile_is_refused_while_that_of_an_earlier_conversation_goes_on(self):
        service = self.start_service("--responder", "script", "--scripts", self.scratch)
        self.use_service(service.port, service.authority)
        self.write_script(
            "earlier.json", answer(tool("new", "create_file", path="Docs/Plan.md", file_text="Gather"),
                                   tool("first", "compile")), answer(text("I wait.")))
        self.write_script(
            "later.json", answer(tool("second", "compile")), {"expect": REFUSED, **answer(text("Thank you."))})
        run = harness.type_when(
            self.editor_command(),
            # Not before: the editor builds what has changed at its start.
            ("[ Kestrel ]", lambda: self.write("Source/Moor/Moor.cpp", SLOW_SOURCE)),
            ("[ Kestrel ]", "script earlier"), ("I wait.", "/undo"), (ALREADY_COMPILING, "/end"),
            ("[ User End ]", "script later"), ("Thank you.", "/quit"))
        self.assert_in_order(run, "Compiling...", "I wait.", "Undoing Last Changes...", ALREADY_COMPILING,
                             "[ User End ]", "Compiling...", ALREADY_COMPILING, "Sending request...", "Thank you.")
        self.assertNotIn("Compilation successful!", run.output, "the build took too little time to be met")
        self.assertFalse(os.path.exists(os.path.join(self.project, "Docs", "Plan.md")))
        self.assertEqual(run.code, 0, run)

    def test_code_that_does_not_compile_ends_the_start_with_the_errors(self):
        self.write("Source/Moor/Lantern.h", LANTERN.replace("0.5f", "0.5g"))
        run = self.run_editor("-Prompt=hello")
        self.assertEqual(run.code, 1, run)
        self.assertIn("Lantern.h:14:", run.errors)


class OddFilesTest(EndToEndTest):
    """What a disk may hold where a tool expects a file. Nothing is lost but what was asked for."""

    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def path(self, *names):
        return os.path.join(self.project, *names)

    def change(self, *prompts):
        run = self.run_editor(*(f"-Prompt={prompt}" for prompt in prompts), "-Approve")
        self.assertEqual(run.code, 0, run)
        return run

    def test_links_are_followed_only_when_they_lead_somewhere(self):
        os.symlink("nowhere.txt", self.path("dangling.txt"))
        run = self.change('replace "a" with "b" in dangling.txt', "delete dangling.txt", "read dangling.txt")
        self.assert_in_order(run, "File does not exist: ", "File does not exist at path: ", "Error: File not found")
        self.assertTrue(os.path.islink(self.path("dangling.txt")))

    def test_a_folder_is_no_file(self):
        run = self.change('replace "a" with "b" in ./Source', "delete ./Source", 'create ./Source with "x"',
                          'create New/ with "x"')
        self.assert_in_order(run, "File does not exist: ", "File does not exist at path: ", "Failed to create file: ",
                             "The provided path must include a filename")
        self.assertTrue(os.path.isfile(self.path("Source", "Moor", "Walker.h")))

    def test_a_file_outside_of_the_project_is_named_in_full(self):
        outside = os.path.join(self.scratch, "outside.txt")
        with open(outside, "w", encoding="utf-8") as file:
            file.write("one")
        run = self.change('replace "one" with "two" in ../outside.txt', "/undo")
        self.assertIn(outside + " with 1 replacements", run.output)
        with open(outside, encoding="utf-8") as file:
            self.assertEqual(file.read(), "one")

    def test_what_may_not_be_written_stays_as_it_is(self):
        user = self.ordinary_user()
        os.chmod(self.path("Config", "DefaultGame.ini"), 0o444)
        os.makedirs(self.path("Locked"))
        self.write("Locked/a.txt", "one")
        os.chmod(self.path("Locked", "a.txt"), 0o444)
        os.chmod(self.path("Locked"), 0o555)
        self.addCleanup(os.chmod, self.path("Locked"), 0o755)
        before = self.files_of_project("Config", "Locked")
        run = self.run_editor('-Prompt=replace "one" with "two" in Locked/a.txt', '-Prompt=create Locked/b.txt with "x"',
                              "-Prompt=delete Locked/a.txt", "-Approve", **user)
        self.assert_in_order(run, "Failed to delete existing file: ", "Failed to create file: ",
                             "Failed to delete file: ")
        self.assertEqual(self.files_of_project("Config", "Locked"), before)
        self.assertEqual(os.listdir(self.path("Saved", "Kestrel", "Rescue")), [])

    def test_links_and_permissions_stay_and_come_back(self):
        with open(self.path("run.txt"), "w", encoding="utf-8") as file:
            file.write("one")
        os.chmod(self.path("run.txt"), 0o751)
        os.symlink("run.txt", self.path("link.txt"))
        changes = ['replace "one" with "two" in link.txt', "delete link.txt", "delete run.txt",
                   'create link.txt with "new"']
        self.change(*changes[:1])
        self.assertTrue(os.path.islink(self.path("link.txt")))
        self.assertEqual(os.stat(self.path("run.txt")).st_mode & 0o7777, 0o751)
        self.change('replace "two" with "one" in link.txt')
        self.change(*changes, "/undo")
        self.assertEqual(os.readlink(self.path("link.txt")), "run.txt")
        self.assertEqual(os.stat(self.path("run.txt")).st_mode & 0o7777, 0o751)
        with open(self.path("run.txt"), encoding="utf-8") as file:
            self.assertEqual(file.read(), "one")

    def test_what_is_not_the_editors_own_copy_is_left_alone(self):
        rescue = self.path("Saved", "Kestrel", "Rescue")
        outside = os.path.join(self.scratch, "Outside")
        for folder in (rescue, outside, os.path.join(self.scratch, "Logs")):
            os.makedirs(folder)
        for name in ("DefaultGame.ini", "other.txt"):
            with open(os.path.join(outside, name), "w", encoding="utf-8") as file:
                file.write("outside")
        names = ["..", "notes", RESCUE_NAME, "0123456789ABCDEF0123456789ABCDEE"]
        for name, original in zip(names, ["/x/Outside", "/x/a", self.path("Config", "DefaultGame.ini"), "relative.txt"]):
            with open(os.path.join(rescue, name + ".txt"), "w", encoding="utf-8") as note:
                note.write(original)
        os.makedirs(os.path.join(rescue, "notes", "deep"))
        os.symlink(outside, os.path.join(rescue, RESCUE_NAME))
        before = self.files_of_project("Saved/Kestrel/Rescue")
        self.change("finish")
        self.assertEqual(self.files_of_project("Saved/Kestrel/Rescue"), before)
        self.assertEqual(sorted(os.listdir(outside)), ["DefaultGame.ini", "other.txt"])

    def test_undo_survives_the_editor(self):
        self.change('create Docs/Plan.md with "ä"', 'replace "12" with "13" in Config/DefaultGame.ini',
                    "delete Source/Moor/Walker.h")
        history = self.path("Saved", "Kestrel", "History")
        self.assertEqual(os.stat(history).st_mode & 0o777, 0o700)
        for folder, _, files in os.walk(history):
            for name in files:
                self.assertEqual(os.stat(os.path.join(folder, name)).st_mode & 0o777, 0o600)
        # Nothing is under way that could end well or badly: the code is of no use here.
        run = self.run_editor("-Prompt=/undo")
        self.assertIn("Undone: 3 files", run.output)
        self.assertIn(b"Feathers=12", self.files_of_project("Config")["Config/DefaultGame.ini"])
        self.assertTrue(os.path.exists(self.path("Source", "Moor", "Walker.h")))
        self.assertFalse(os.path.exists(self.path("Docs")))
        run = self.run_editor("-Prompt=/redo")
        self.assertIn("Redone: 3 files", run.output)
        self.assertEqual(self.files_of_project("Docs")["Docs/Plan.md"].decode("utf-16"), "ä")
        self.assertFalse(os.path.exists(self.path("Source", "Moor", "Walker.h")))

    def test_undo_after_a_restart_says_what_it_leaves_alone(self):
        outside = os.path.join(self.scratch, "outside.txt")
        with open(outside, "w", encoding="utf-8") as file:
            file.write("old\n")
        self.change(f'replace "old" with "new" in {outside}', 'replace "12" with "13" in Config/DefaultGame.ini')
        run = self.run_editor("-Prompt=/undo")
        self.assertIn(f"what lies outside the project or behind links, or is very large: {outside}", run.output)
        self.assertIn("Undone: 1 file.", run.output)
        with open(outside, encoding="utf-8") as file:
            self.assertEqual(file.read(), "new\n")

    def test_undo_counts_what_it_has_changed(self):
        self.change("delete Source/Moor/Walker.h", 'replace "12" with "13" in Config/DefaultGame.ini')
        with open(self.path("Config", "DefaultGame.ini"), "rb+") as file:
            text = file.read().replace(b"13", b"12")
            file.seek(0)
            file.write(text)
        self.assertIn("Undone: 1 file.", self.run_editor("-Prompt=/undo").output)

    def test_a_copy_left_by_an_editor_that_died_is_offered_at_the_next_start(self):
        rescue = self.path("Saved", "Kestrel", "Rescue")
        original = self.path("Config", "DefaultGame.ini")
        os.makedirs(os.path.join(rescue, RESCUE_NAME))
        with open(os.path.join(rescue, RESCUE_NAME + ".txt"), "w", encoding="utf-8") as note:
            note.write(original)
        copy = os.path.join(rescue, RESCUE_NAME, "DefaultGame.ini")
        with open(copy, "w", encoding="utf-8") as file:
            file.write("[Moor]\nFeathers=11\n")
        run = self.change("finish")
        self.assert_in_order(run, "The editor ended while a file was being written: " + original, copy)
        self.assertIn("Feathers=12", self.files_of_project("Config")["Config/DefaultGame.ini"].decode())
        self.assertTrue(os.path.exists(copy))


if __name__ == "__main__":
    unittest.main()
