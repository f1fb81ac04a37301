"""Times the whole run of topomine beside a program that only loads the same XML files.

usage: execution.py BUILD, where BUILD/bench-cases/N holds a collection of N made blocks in all, and
BUILD/bench-cases/reels real ones, each several times over.
Times are user + system seconds, the least of several runs; memory is the peak resident set.
"""

import os
import pathlib
import subprocess
import sys

RUNS = 5
COLLECTIONS = ("1000", "4000", "16000", "reels")
MODE = "nrm"


def least(command):
    """Least user + system time, and peak memory in KiB, of a command."""
    times, peak = [], 0
    with open(os.devnull, "w") as null:
        for _ in range(RUNS):
            child = subprocess.Popen(command, stdout=null, stderr=null)
            _, status, usage = os.wait4(child.pid, 0)
            if status != 0:
                sys.exit(f"{command} ended with {status}")
            times.append(usage.ru_utime + usage.ru_stime)
            peak = max(peak, usage.ru_maxrss)
    return min(times), peak


def blocks_of(data):
    return sum(f.read_bytes().count(b"<Block>") for f in pathlib.Path(data).glob(f"*/*_{MODE}.blck"))


def main():
    build = sys.argv[1]
    print(f"whole run, mode {MODE}, least of {RUNS} runs, user+system")
    print(f"{'':>7} {'blocks':>7} {'bare s':>8} {'run s':>8} {'ratio':>6} {'growth':>7} "
          f"{'bare MiB':>9} {'run MiB':>8} {'KiB/block over bare':>20}")
    before = None
    for name in COLLECTIONS:
        data = f"{build}/bench-cases/{name}/"
        blocks = blocks_of(data)
        bare, bare_peak = least([f"{build}/bench/chargeur_nu", data, MODE])
        run, run_peak = least([f"{build}/topomine", data, MODE, "out"])
        growth = f"{run / before:7.2f}" if before and name.isdigit() else " " * 7
        print(f"{name:>7} {blocks:7} {bare:8.3f} {run:8.3f} {run / bare:6.2f} {growth} "
              f"{bare_peak / 1024:9.1f} {run_peak / 1024:8.1f} {(run_peak - bare_peak) / blocks:20.1f}")
        before = run


if __name__ == "__main__":
    main()
