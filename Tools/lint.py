"""./kestrel lint and ./kestrel format"""

import concurrent.futures
import glob
import json
import os
import re
import shlex
import subprocess
import tempfile

import function_length
import include_graph
import steps
import uncalled

PRESET = "lint"
CPP = ("*.cpp", "*.h")
TEXT_FILES = ("*.cpp", "*.h", "*.cs", "*.py", "*.cmake", "CMakeLists.txt", "*.ini", "*.json", "*.uplugin", "*.uproject",
              "kestrel", ".ci/run")
OTHER_PLATFORMS = ("Platform/PlatformWindows.cpp",)  # which no build here compiles
PLUGIN_SOURCES = os.path.join("Source", "Kestrel")
PROBLEMS_SHOWN = 20
TIDY_BATCH = 8


def git_files(*patterns):
    # Also in a checkout of another user, as in a container: git would refuse, and this only lists files.
    command = ["git", "-c", f"safe.directory={steps.ROOT}", "ls-files", "-z", "--", *patterns]
    done = subprocess.run(command, cwd=steps.ROOT, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise steps.StepFailed(f"git cannot list the files of {steps.ROOT}: {done.stderr.strip()}")
    return [path for path in done.stdout.split("\0") if path and os.path.exists(os.path.join(steps.ROOT, path))]


def read(path):
    with open(os.path.join(steps.ROOT, path), encoding="utf-8") as file:
        return file.read()


def run(command, folder=steps.ROOT):
    """The output of a command that failed, nothing of one that worked."""
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, errors="replace", check=False)
    return (done.stdout + done.stderr).strip() if done.returncode else ""


class CompileCommands:
    """How the build compiles each source, so that checks compile like it."""

    def __init__(self):
        with open(os.path.join(steps.build_folder(PRESET), "compile_commands.json"), encoding="utf-8") as file:
            entries = json.load(file)
        # A test may compile a plugin's source a second time; what counts is how the plugin does it.
        entries.sort(key=lambda entry: "Tests/CMakeFiles" not in entry["command"])
        self.entries = {os.path.relpath(entry["file"], steps.ROOT): entry for entry in entries}

    def arguments(self, source):
        """Without the compiler cache, the precompiled header, the source and the object."""
        words = shlex.split(self.entries[source]["command"])
        words = words[next(index for index, word in enumerate(words) if word.endswith("clang++")):]
        kept = []
        skip = 0
        for index, word in enumerate(words):
            if skip:
                skip -= 1
            elif word == "-Xclang" and "pch" in words[index + 1]:
                skip = 3  # -Xclang -include-pch -Xclang FILE
            elif word == "-Xclang" and words[index + 1] == "-include":
                skip = 3
            elif word in ("-o", "-c", "-MT", "-MF"):
                skip = 1
            elif word not in ("-MD", "-Winvalid-pch"):
                kept.append(word)
        return kept

    def check(self, source, text):
        """Compiles a text as the build compiles a source. Returns what the compiler says against it."""
        with tempfile.NamedTemporaryFile("w", suffix=".cpp", encoding="utf-8") as file:
            file.write(text)
            file.flush()
            return run([*self.arguments(source), "-fsyntax-only", file.name], self.entries[source]["directory"])

    def of(self, folder):
        return sorted(source for source in self.entries
                      if source.startswith(folder + os.sep) and not source.startswith(".."))


def in_parallel(check, items):
    with concurrent.futures.ThreadPoolExecutor(steps.JOBS) as pool:
        return [problem for problem in pool.map(check, items) if problem]


def check_format(_):
    return [run(["clang-format", "--dry-run", "-Werror", "--", *git_files(*CPP)])]


def check_white_space(_):
    problems = []
    for path in git_files(*TEXT_FILES):
        text = read(path)
        in_raw_text = False  # whose spaces are its own
        for number, line in enumerate(text.split("\n"), 1):
            if line != line.rstrip():
                problems.append(f"{path}:{number}: white space at the end of the line")
            elif path.endswith((".py", ".cmake", "CMakeLists.txt")) and "\t" in line:
                problems.append(f"{path}:{number}: a tab")
            elif path.endswith((".cpp", ".h", ".cs")) and not in_raw_text and re.match(r"\t* {4,}[^ \\]", line):
                problems.append(f"{path}:{number}: spaces where a tab belongs")
            in_raw_text = ')"' not in line if in_raw_text else re.search(r'\bR"\((?!.*\)")', line) is not None
        if text and not text.endswith("\n"):
            problems.append(f"{path}: no line break at the end")
    return problems


def header_check(commands, header):
    """Compiles a header alone, as a source of its own module would include it first."""
    module = "/".join(header.split("/")[:2])
    sources = commands.of(module)
    if not sources:
        return None
    text = f'#include "{os.path.join(steps.ROOT, header)}"\n'
    problem = commands.check(sources[0], text)
    return f"{header}:\n{problem}" if problem else None


def check_headers(commands):
    headers = git_files("Host/*/Public/*.h", "Host/*/Public/**/*.h", "Host/*/Internal/*.h", "Host/*/Internal/**/*.h",
                        "Source/*.h", "Source/**/*.h")
    return in_parallel(lambda header: header_check(commands, header), sorted(set(headers)))


def check_unity_build(commands):
    sources = commands.of(PLUGIN_SOURCES)
    text = "".join(f'#include "{os.path.join(steps.ROOT, source)}"\n' for source in sources)
    return [commands.check(sources[0], text)]


def check_plugin_includes(commands):
    """The plugin is compiled with its own folders and those of the modules that its Build.cs lists."""
    build_cs = read(os.path.join(PLUGIN_SOURCES, "Kestrel.Build.cs"))
    build_cs = re.sub(r"//[^\n]*", "", build_cs)
    listed = {name for block in re.findall(r"DependencyModuleNames\.Add(?:Range)?\(([^;]*);", build_cs)
              for name in re.findall(r'"(\w+)"', block)}
    allowed = re.compile(r"(Source/Kestrel/(Public|Private)|Intermediate/Build/\w+/Generated/Kestrel"
                         rf"|Host/({'|'.join(sorted(listed))})/Public"
                         rf"|Intermediate/Build/\w+/Host/({'|'.join(sorted(listed))})/Generated/\w+)")
    problems = set()
    for source in commands.of(PLUGIN_SOURCES):
        for word in commands.arguments(source):
            if word.startswith(("-I", "-isystem")):
                folder = os.path.relpath(word[2:], steps.ROOT)
                if not allowed.fullmatch(folder):
                    problems.add(f"{source} sees {folder}, which is of no module listed in Kestrel.Build.cs")
    return sorted(problems)


def check_sources_listed(commands):
    """A file that no target has is a test that never runs, or code that nobody compiles."""
    return [f"{path} is in no CMakeLists.txt" for path in git_files("Host/*.cpp", "Service/*.cpp", "Source/*.cpp")
            if path not in commands.entries and not path.endswith(OTHER_PLATFORMS)]


def check_include_order(_):
    sources = [path for path in git_files(f"{PLUGIN_SOURCES}/*.cpp", f"{PLUGIN_SOURCES}/*.h") if "/Private/" in path]
    return include_graph.check(steps.ROOT, sources)


SYSTEM_HEADERS = re.compile(
    r'#include\s*[<"]((?:(?:arpa|linux|net|netinet|sys)/[^>"]+|(?:aio|dirent|dlfcn|fcntl|grp|io|netdb|poll|process|pthread'
    r'|pwd|sched|signal|spawn|syslog|termios|unistd|windows|winsock2?|ws2tcpip)\.h|csignal))[>"]')


def check_service_is_portable(_):
    """System calls have one source file for each platform."""
    return [f"{path}:{text[:match.start()].count(chr(10)) + 1}: {match.group(1)} belongs into Service/Source/Platform"
            for path in git_files("Service/Source/*.cpp", "Service/Source/*.h")
            if not path.startswith("Service/Source/Platform/")
            for text in [read(path)] for match in SYSTEM_HEADERS.finditer(text)]


def check_uncalled(_):
    functions = uncalled.find(steps.ROOT, git_files("*.h", "*.cpp", "*.py", "*.cs", "*.json", "*.cases"))
    return [f"{function.file}:{function.line}: nothing calls {function.name}" for function in functions]


def check_function_length(_):
    return function_length.check((path, read(path)) for path in git_files(*CPP))


def engine_symbols_table(commands):
    import engine_symbols  # needs a package that only lint installs
    return engine_symbols.TABLE, engine_symbols.table(engine_symbols.read_plugin(commands)[0])


def check_engine_symbols(commands):
    path, table = engine_symbols_table(commands)
    return [] if read(path) == table else [f"{path} is not what the plugin uses: ./kestrel symbols rewrites it"]


def check_what_is_used_is_included(commands):
    import engine_symbols
    import plugin_includes
    folders = ["Source/Kestrel/Public", "Source/Kestrel/Private"]
    folders += sorted({os.path.dirname(path) for path in glob.glob("Host/*/Public/", root_dir=steps.ROOT)})
    _, needs, bases = engine_symbols.read_plugin(commands)
    return plugin_includes.check(read, plugin_includes.find_headers(steps.ROOT, folders), needs, bases)


def write_engine_symbols(_arguments):
    steps.install_packages(steps.PACKAGES + steps.CHECK_PACKAGES)
    steps.build(PRESET)
    path, table = engine_symbols_table(CompileCommands())
    with open(os.path.join(steps.ROOT, path), "w", encoding="utf-8") as file:
        file.write(table)
    return 0


def tidy(commands, source, file, *options):
    """What clang-tidy says of a file that is compiled as the build compiles the source."""
    arguments = [word for word in commands.arguments(source)[1:] if not word.startswith("-fsanitize")]
    return run(["clang-tidy", "--quiet", *options, file, "--", *arguments], commands.entries[source]["directory"])


def check_plugin_with_clang_tidy(commands):
    return in_parallel(lambda source: tidy(commands, source, os.path.join(steps.ROOT, source)), commands.of(PLUGIN_SOURCES))


# Left out of batches, which include sources; and of the host, whose containers are laid out as the engine's: they hold
# pointers, have no exceptions to report, and copy and move parts of themselves.
NOT_OF_BATCHES = ["bugprone-exception-escape", "bugprone-suspicious-include",
                  "performance-inefficient-string-concatenation"]
NOT_OF_HOST = ["bugprone-forwarding-reference-overload", "bugprone-signed-char-misuse", "bugprone-sizeof-expression",
               "bugprone-unhandled-self-assignment", "performance-noexcept-move-constructor"]


def tidy_batch(commands, sources):
    """Sources of one target in one go: the headers are read once for all of them."""
    is_host = sources[0].startswith("Host" + os.sep)
    left_out = NOT_OF_BATCHES + (NOT_OF_HOST if is_host else [])
    with tempfile.NamedTemporaryFile("w", suffix=".cpp", encoding="utf-8", dir=steps.build_folder(PRESET)) as file:
        if is_host and "HeaderTool" not in sources[0]:
            file.write("#include <CoreMinimal.h>\n")  # as the precompiled header has it
        file.write("".join(f'#include "{os.path.join(steps.ROOT, source)}"\n' for source in sources))
        file.flush()
        return tidy(commands, sources[0], file.name, f"--config-file={os.path.join(steps.ROOT, '.clang-tidy')}",
                    "--header-filter=/(Host|Service)/", "--checks=" + ",".join("-" + check for check in left_out))


def check_others_with_clang_tidy(commands):
    targets = {}
    for source in commands.of("Host") + commands.of("Service"):
        if "/Tests/" not in source:
            targets.setdefault(tuple(commands.arguments(source)), []).append(source)
    batches = [sources[at:at + TIDY_BATCH] for sources in targets.values() for at in range(0, len(sources), TIDY_BATCH)]
    return in_parallel(lambda sources: tidy_batch(commands, sources), batches)


CHECKS = [
    ("C++ is formatted", check_format),
    ("No stray white space", check_white_space),
    ("Every source is in the build", check_sources_listed),
    ("Every public header compiles alone", check_headers),
    ("The plugin sees listed modules only", check_plugin_includes),
    ("The plugin's folders include downwards only", check_include_order),
    ("The service includes no system's own headers", check_service_is_portable),
    ("No function of the host is uncalled", check_uncalled),
    ("Every function fits on a screen", check_function_length),
    ("The table of engine symbols is up to date", check_engine_symbols),
    ("The plugin includes what it uses", check_what_is_used_is_included),
    ("The plugin compiles as one file", check_unity_build),
    ("clang-tidy finds nothing in the plugin", check_plugin_with_clang_tidy),
    ("clang-tidy finds nothing in host and service", check_others_with_clang_tidy),
]


def lint(_arguments):
    steps.install_packages(steps.PACKAGES + steps.CHECK_PACKAGES)
    steps.build(PRESET)
    commands = CompileCommands()
    all_good = True
    for title, check in CHECKS:
        problems = [problem for problem in check(commands) if problem]
        print(f"[{'FAIL' if problems else 'OK'}] {title}", flush=True)
        lines = "\n".join(problems).splitlines()
        for line in lines[:PROBLEMS_SHOWN]:
            print(f"       {line}")
        if len(lines) > PROBLEMS_SHOWN:
            print(f"       ... and {len(lines) - PROBLEMS_SHOWN} lines more")
        all_good = all_good and not problems
    return 0 if all_good else 1


def format_sources(_arguments):
    steps.install_packages(steps.PACKAGES + steps.CHECK_PACKAGES)
    problem = run(["clang-format", "-i", "--", *git_files(*CPP)])
    if problem:
        raise steps.StepFailed(f"clang-format failed:\n{problem}")
    return 0
