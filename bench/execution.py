"""Times the whole run of topomine beside a program that only loads the same XML files.

usage: execution.py BUILD, where BUILD/bench-cases/N holds a collection of N made blocks in all, and
BUILD/bench-cases/reels real ones, each several times over.
Times are user + system seconds, the least of several runs; memory is the peak resident set.
"""

import os
import pathlib
import subprocess
import sys

ESSAIS = 5
COLLECTIONS = ("1000", "4000", "16000", "reels")
MODE = "nrm"


def moindre(commande):
    """Least user + system time, and peak memory in KiB, of a command."""
    durees, sommet = [], 0
    with open(os.devnull, "w") as rien:
        for _ in range(ESSAIS):
            enfant = subprocess.Popen(commande, stdout=rien, stderr=rien)
            _, statut, usage = os.wait4(enfant.pid, 0)
            if statut != 0:
                sys.exit(f"{commande} ended with {statut}")
            durees.append(usage.ru_utime + usage.ru_stime)
            sommet = max(sommet, usage.ru_maxrss)
    return min(durees), sommet


def nb_blocs(cas):
    return sum(f.read_bytes().count(b"<Block>") for f in pathlib.Path(cas).glob(f"*/*_{MODE}.blck"))


def main():
    build = sys.argv[1]
    print(f"whole run, mode {MODE}, least of {ESSAIS} runs, user+system")
    print(f"{'':>7} {'blocks':>7} {'bare s':>8} {'run s':>8} {'ratio':>6} {'growth':>7} "
          f"{'bare MiB':>9} {'run MiB':>8} {'KiB/block over bare':>20}")
    avant = None
    for nom in COLLECTIONS:
        cas = f"{build}/bench-cases/{nom}/"
        nb = nb_blocs(cas)
        nu, memoire_nu = moindre([f"{build}/bench/chargeur_nu", cas, MODE])
        entier, memoire = moindre([f"{build}/topomine", cas, MODE, "out"])
        croissance = f"{entier / avant:7.2f}" if avant and nom.isdigit() else " " * 7
        print(f"{nom:>7} {nb:7} {nu:8.3f} {entier:8.3f} {entier / nu:6.2f} {croissance} "
              f"{memoire_nu / 1024:9.1f} {memoire / 1024:8.1f} {(memoire - memoire_nu) / nb:20.1f}")
        avant = entier


if __name__ == "__main__":
    main()
