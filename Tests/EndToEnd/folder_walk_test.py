"""What a walk through the project meets: links, pipes, folders alike, and where the project itself lies."""

import os
import unittest

from harness import EndToEndTest


class FolderWalkTest(EndToEndTest):
    # Names that exclude a folder of the project.
    folder_name = os.path.join("Shared", "Build", "Moor")

    def setUp(self):
        super().setUp()
        service = self.start_service()
        self.use_service(service.port, service.authority)

    def path(self, *names):
        return os.path.join(self.project, *names)

    def ask(self, prompt):
        run = self.run_editor(f"-Prompt={prompt}", "-Approve")
        self.assertEqual(run.code, 0, run)
        return run

    def test_the_folders_around_the_project_exclude_nothing_in_it(self):
        os.makedirs(self.path("Build"))
        self.write("Build/Nightly.ini", "")
        run = self.ask("list the files")
        self.assertIn("Walker.h", run.output)
        self.assertNotIn("Nightly.ini", run.output)

    def test_folders_that_look_alike_are_no_loop(self):
        os.makedirs(self.path("Content", "Foo", "Foo", "Foo"))
        self.write("Content/Foo/Foo/Foo/Deep.json", "{}")
        for folder in ("Content", "Content/Foo", "Content/Foo/Foo", "Content/Foo/Foo/Foo"):
            os.utime(self.path(folder), (1_000_000_000, 1_000_000_000))
        self.assertIn("Deep.json", self.ask("list the files").output)

    def test_a_search_ends_where_links_lead_back_and_pipes_wait(self):
        os.makedirs(self.path("Plugins", "Reeds"))
        self.write("Plugins/Reeds/Reed.cpp", "int Feathers;\n")
        self.write("Plugins/Reeds/Reeds.uplugin", '{ "FileVersion": 3 }\n')
        for folder in ("Source", "Plugins/Reeds"):
            for name in ("one", "two"):
                os.symlink(".", self.path(folder, name))
        os.symlink("..", self.path("Source", "Moor", "up"))
        os.symlink(self.path("Plugins", "Reeds"), self.path("Source", "Linked"))
        os.mkfifo(self.path("Source", "Pipe.h"))
        run = self.ask("find Feathers")
        for place in ("Source/Moor/Walker.h", "Plugins/Reeds/Reed.cpp", "Source/Linked/Reed.cpp"):
            self.assertEqual(run.output.count(place), 1, run)
        tree = self.ask("list the files").output
        self.assertEqual(tree.count("Walker.h"), 1, tree)
        self.assertEqual(tree.count("Reed.cpp"), 2, tree)


if __name__ == "__main__":
    unittest.main()
