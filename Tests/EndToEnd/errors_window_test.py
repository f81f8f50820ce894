"""What a person can do about a failure, right where it is told."""

import json
import os
import shutil
import unittest

import harness
from recording_server import RecordingServer
from screen import ScreenTest
from status_window_test import SIZES


class ErrorsWindowTest(ScreenTest):
    def setUp(self):
        super().setUp()
        self.service = self.start_service()
        self.use_service(self.service.port, self.service.authority)

    def name_service(self, text):
        self.write("Config/DefaultPlugin.ini", "[Kestrel]\nStage=Dev\n" + text)

    def begin(self, *arguments):
        self.open_editor(*arguments)
        self.click(self.button("Kestrel"))
        self.text("I know the files and Blueprints")
        self.type("begin")
        self.press("Return")
        self.text("[ Cancelled ]")

    def sentence(self, part):
        return self.wait_for(f"the sentence {part!r}", lambda widgets: next(
            (each for each in widgets if part in each["name"]), None))

    def test_a_refused_key_leads_to_the_settings(self):
        self.name_service(f"DevApiUrl=localhost:{self.service.port}/v1\n")
        self.begin()
        self.sentence("The service refused your key")
        self.screen.picture("errors-1-key")
        self.click(self.button("Open settings"))
        self.wait_for("the settings", lambda widgets: any("API Key" in each["name"] for each in widgets))
        self.screen.picture("errors-2-settings")
        self.close_editor()

    def test_the_connection_is_tested_where_it_failed(self):
        failure = json.dumps({"status": "FAILED", "error": "The budget of this key is used up."})
        server = RecordingServer(self.service.state_folder, [failure, "no JSON", failure])
        self.addCleanup(server.socket.close)
        self.use_service(server.port, self.service.authority)
        self.begin()
        self.sentence("could not finish this request")
        self.click(self.button("Test connection"))
        self.sentence("but not as a Kestrel service does")
        self.click(self.button("Test connection"))
        self.sentence("answers and takes the key")
        self.screen.picture("errors-3-tested")
        tested = [request for request in server.requests if "connection-test" in request.line]
        self.assertEqual(len(tested), 2)
        self.assertEqual(tested[0].line, "GET /v1/status?request_id=connection-test HTTP/1.1")
        self.assertIn(("x-api-key", harness.API_KEY), tested[0].own_headers())
        server.socket.close()
        self.close_editor()

    def test_a_service_that_is_not_there_is_told_in_every_size(self):
        self.name_service("DevApiUrl=localhost:9/v1\n")
        for width, height in (*SIZES, (840, 720)):
            scale = 2 if width == 840 else 1
            with self.subTest(width=width, scale=scale):
                self.begin(f"-ResX={width}", f"-ResY={height}", f"-DPIScale={scale}")
                self.sentence("gave no answer")
                self.click(self.button("Test connection"))
                self.sentence("cannot be reached")
                self.screen.picture(f"errors-4-{width}-at-{scale}")
                self.close_editor()
                os.remove(self.report)
                shutil.rmtree(os.path.join(self.project, "Saved"))


if __name__ == "__main__":
    unittest.main()
