"""A conversation that changes a project with code and history: files, builds, scripts, undo and redo."""

import os
import subprocess
import unittest

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


class ChangeTest(EndToEndTest):
    folder_name = "Moor at dusk"

    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)
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
        self.git("init", "-q")
        self.git("add", ".")
        self.git("-c", "user.name=Moor", "-c", "user.email=moor@example.com", "commit", "-q", "-m", "Begin")

    def write(self, path, text):
        # As it stands, with the line ends that a test means.
        with open(os.path.join(self.project, path), "w", encoding="utf-8", newline="") as file:
            file.write(text)

    def git(self, *arguments):
        return subprocess.run(["git", *arguments], cwd=self.project, check=True, capture_output=True,
                              text=True).stdout

    def test_a_whole_conversation_is_made_taken_back_and_made_again(self):
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


if __name__ == "__main__":
    unittest.main()
