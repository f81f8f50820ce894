"""peak_memory.py <file> <command>: runs a command and writes the most memory that it had, in bytes, to a file.

A process of its own, because the system counts the memory of the one that starts a command as the command's.
"""

import resource
import subprocess
import sys


def main(report, *command):
    code = subprocess.run(command, check=False).returncode
    with open(report, "w", encoding="ascii") as file:
        file.write(str(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024))
    return code


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
