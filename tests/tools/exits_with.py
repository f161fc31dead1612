"""Runs a command that has to exit with a certain status.

    exits_with.py STATUS COMMAND...

Exits with 0 if it does, otherwise with 1 and says what it exits with.
"""

import subprocess
import sys

status = subprocess.run(sys.argv[2:]).returncode
if status != int(sys.argv[1]):
    sys.exit(f"exits_with.py: status {status}, not {sys.argv[1]}: {sys.argv[2]}")
