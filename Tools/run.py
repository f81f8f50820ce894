"""./kestrel run"""

import os
import subprocess
import sys
import tempfile

import project
import steps
from service import LocalService

PRESET = "release"


def run(arguments):
    if arguments.model and not os.path.isfile(arguments.model):
        raise steps.StepFailed(f"There is no file {arguments.model}")
    folder = os.path.abspath(arguments.project) if arguments.project else None
    if folder and folder.endswith(".uproject"):
        folder = os.path.dirname(folder)
    if folder:
        project.find_uproject(folder)
    steps.build(PRESET, ["HostEditor", "Kestrel", "KestrelTests", "kestrel-service"])
    if not folder:
        folder = project.copy_sample()
        print(f"Sample project (a copy, kept for a day): {folder}")
    uproject = project.find_uproject(folder)

    windowed = wants_window(arguments)
    command = [steps.binary(PRESET, "HostEditor"), uproject, f"-PLUGIN={os.path.join(steps.ROOT, 'Kestrel.uplugin')}",
               # With both, the terminal takes over where the screen does not answer.
               *(["-Window"] if windowed else []), "-Console=Kestrel"]
    # A tool that failed is a warning in the plugin's log category; after the last answer it fails the run.
    command += [*(f"-Prompt={prompt}" for prompt in arguments.prompt), "-FailOn=LogKestrel"]
    # In a scratch copy of the sample there is nothing to lose, and the service is the one on this machine.
    if arguments.approve or (arguments.prompt and not arguments.project):
        command.append("-Approve")

    stage = project.stage_url(folder)
    if stage and arguments.model:
        raise steps.StepFailed(f"The project names a service of its own, https://{stage}, so --model has no effect. "
                               "Remove Stage from its Config/DefaultPlugin.ini first.")
    if stage:
        print(f"The project names a service of its own: https://{stage}")
        return run_editor(command)
    host = project.production_host()
    # A folder of its own for each run, so that two at the same time do not disturb each other.
    with tempfile.TemporaryDirectory(prefix="kestrel-service-") as state, \
            LocalService(PRESET, state, ["--host-name", host, *responder_options(arguments)]) as service:
        print(f"Local service: https://{host}/ on port {service.port}" + (f", model {arguments.model}" if arguments.model else ""))
        return run_editor(command + service.editor_arguments(host))


def responder_options(arguments):
    return ["--responder", "model", "--config", os.path.abspath(arguments.model)] if arguments.model else []


def wants_window(arguments):
    if arguments.headless or arguments.prompt:
        return False
    if os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY"):
        print("The editor opens in a window: Kestrel is in its Window menu and in the toolbar.")
        return True
    print("There is no screen here, so the panel is shown in this terminal.")
    return False


def run_editor(command):
    sys.stdout.flush()
    process = subprocess.Popen(command, preexec_fn=steps.end_with_parent)
    while True:
        try:
            code = process.wait()
            if code < 0:
                print(f"The editor was killed by signal {-code}. Its log lies in Saved/Logs of the project.", file=sys.stderr)
            return code
        except KeyboardInterrupt:
            # The editor has been told by the terminal, too: the first Ctrl-C ends the conversation, the second the editor.
            continue
