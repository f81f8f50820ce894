"""The launcher behind ./kestrel: installs what is missing, builds, runs, tests."""

import argparse
import importlib
import os
import sys

sys.pycache_prefix = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "Intermediate", "PythonCache")

import steps

# Of each command the module, which is loaded for that command alone, and the function.
COMMANDS = {
    "run": ("run", "run"),
    "mcp": ("mcp", "mcp"),
    "test": ("testing", "test"),
    "bench": ("bench", "bench"),
    "content": ("content", "content"),
    "coverage": ("coverage", "coverage"),
    "lint": ("lint", "lint"),
    "symbols": ("lint", "write_engine_symbols"),
    "format": ("lint", "format_sources"),
}


def main():
    parser = argparse.ArgumentParser(prog="./kestrel", description="Build, run and test Kestrel.")
    commands = parser.add_subparsers(dest="command", metavar="COMMAND")

    run_parser = commands.add_parser("run", help="open a project in the editor, with a local service")
    run_parser.add_argument("--project", metavar="DIR", help="your own project (default: a copy of the sample)")
    run_parser.add_argument("--headless", action="store_true", help="no window: the panel is shown in this terminal")
    run_parser.add_argument("--prompt", metavar="TEXT", action="append", default=[],
                            help="run this prompt unattended and leave; may be given several times")
    run_parser.add_argument("--approve", action="store_true", help="with --prompt: approve every tool that the assistant asks for "
                                 "(always so with the sample, which is a scratch copy)")

    run_parser.add_argument("--model", metavar="FILE", help="answer with the language model that this configuration describes "
                                 "(Service/Examples has some, Docs/Models.md says how)")

    mcp_parser = commands.add_parser("mcp", help="be a Model Context Protocol server on standard input and output, for other "
                                                 "assistants")
    mcp_parser.add_argument("--project", metavar="DIR", required=True, help="the project to work in")
    mcp_parser.add_argument("--allow", choices=["read", "change"], default="read",
                            help="what clients may do without anyone being asked (default: %(default)s)")

    test_parser = commands.add_parser("test", help="build and run every test")
    test_parser.add_argument("filter", nargs="?", default="", metavar="FILTER",
                             help="only tests whose name contains this")

    bench_parser = commands.add_parser("bench", help="measure the hot paths against a peer on this machine")
    bench_parser.add_argument("name", nargs="*", metavar="NAME", help="only paths whose name contains this")
    bench_parser.add_argument("--json", metavar="FILE", help="write the figures to this file")
    bench_parser.add_argument("--compare", metavar="FILE", help="compare with figures that --json has written")
    bench_parser.add_argument("--growth", action="store_true",
                              help="measure each path at 1 to 100 times a base size, and write Docs/Performance.md")
    commands.add_parser("content", help="rebuild the assets of the sample project")
    commands.add_parser("coverage", help="measure how many functions the tests run")
    commands.add_parser("lint", help="check format, headers, includes and unused code")
    commands.add_parser("symbols", help="write Docs/EngineSymbols.tsv: what the plugin uses of the engine")
    commands.add_parser("format", help="format all C++ sources")
    commands.add_parser("help", help="show this text")

    arguments = parser.parse_args()
    if arguments.command not in COMMANDS:
        parser.print_help()
        return 0 if arguments.command == "help" else 2
    try:
        module, function = COMMANDS[arguments.command]
        return getattr(importlib.import_module(module), function)(arguments)
    except steps.StepFailed as failure:
        print(failure, file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        print("\nInterrupted.", file=sys.stderr)
        return 130


if __name__ == "__main__":
    os.chdir(steps.ROOT)
    sys.exit(main())
