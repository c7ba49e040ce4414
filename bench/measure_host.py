#!/usr/bin/python3
"""Prints what the library weighs and how fast a host starts, as JSON.

    measure_host.py BIN TINY_MODULE

BIN is the folder of the built programs, TINY_MODULE a module that does nothing.
"""

import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

REPEATS = 41


def peak(command, environment):
    """The most memory that an idle host has held, in KiB. What wait4() tells would count the process before exec too."""
    host = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(1)
    status = pathlib.Path(f"/proc/{host.pid}/status").read_text()
    host.terminate()
    host.wait()
    return int(status.partition("VmHWM:")[2].split()[0])


def main():
    folder, tiny = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    with tempfile.TemporaryDirectory() as name:
        home = pathlib.Path(name)
        (home / "ts.ini").touch()
        environment = {"HOME": name, "PATH": os.environ["PATH"]}
        tools = {}
        for count in (0, 10):
            tools[count] = home / f"tools{count}"
            tools[count].mkdir()
            for i in range(count):
                shutil.copy(tiny, tools[count] / f"tiny{i}.qzx")
        startup = {count: [] for count in tools}
        for _ in range(REPEATS):
            for count, where in tools.items():
                begin = time.clock_gettime(time.CLOCK_MONOTONIC) * 1e6
                run = subprocess.run([folder / "kora-bench-host", str(begin), where, home / "ts.ini"], env=environment,
                                     capture_output=True, check=True, text=True)
                startup[count].append(float(run.stdout))
        stripped = home / "libkora.so"
        subprocess.run(["strip", "-o", stripped, folder / "libkora.so"], check=True)
        weights = subprocess.run([folder / "kora-bench-memory", name], env=environment, capture_output=True, check=True,
                                 text=True).stdout.splitlines()
        host = str(folder / "kora-host")
        json.dump({
            "bytes": [dict(zip(("name", "who", "each"), line.rsplit(" ", 2))) for line in weights],
            "hostPeakKiB": peak([host, "--ini", str(home / "ts.ini"), "--tools", str(tools[0]), "--idle", "1000",
                                 "--stay"], environment),
            "libraryBytes": stripped.stat().st_size,
            "startMicroseconds": {count: statistics.median(all) for count, all in startup.items()},
        }, sys.stdout, indent=2)


if __name__ == "__main__":
    main()
