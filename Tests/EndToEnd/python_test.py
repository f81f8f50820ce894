"""Scripts in environments that want another encoding."""

import os
import unittest

from harness import EndToEndTest


class PythonTest(EndToEndTest):
    # Python must be able to name the log, too.
    folder_name = "Spiel \u00fc \u6f22"

    def test_output_is_whole_in_any_locale(self):
        service = self.start_service()
        self.use_service(service.port, service.authority)
        env = {**os.environ, "LC_ALL": "C", "PYTHONUTF8": "0", "PYTHONCOERCECLOCALE": "0", "PYTHONIOENCODING": "ascii"}
        run = self.run_editor("-Prompt=run python: print('\u00e4\u00f6\u00fc\u2192')",
                              "-Prompt=run python: print('one\u2192'); raise ValueError('two\u2192')", "-Approve", env=env)
        self.assert_in_order(run, "\u00e4\u00f6\u00fc\u2192\n", "one\u2192\n", "ValueError: two\u2192")
        self.assertEqual(run.code, 0, run)


if __name__ == "__main__":
    unittest.main()
