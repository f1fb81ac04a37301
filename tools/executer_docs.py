#!/usr/bin/env python3
"""Runs the commands of a document and compares what they print with what it shows.

A ```console block holds commands after "$ " (a line that ends in "\\" goes on) and, below each, what
it prints on both streams; a line "..." stands for any lines. A command that shows nothing may print
anything. Every command must succeed. A block under <!-- fichier NAME --> is written to that file.
Commands run in a temporary folder, with the built programs in the PATH and the sample cases as "cas".
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

RACINE = pathlib.Path(__file__).resolve().parent.parent
BLOC = re.compile(r"(?:<!-- fichier (\S+) -->\n+)?^```(\w*)\n(.*?)^```$", re.M | re.S)


def commandes(bloc):
    """Pairs of a command and the lines that it must print."""
    paires, suite = [], False
    for ligne in bloc.splitlines():
        if suite:
            paires[-1][0] += "\n" + ligne
        elif ligne.startswith("$ "):
            paires.append([ligne[2:], []])
        else:
            paires[-1][1].append(ligne)
        suite = (suite or ligne.startswith("$ ")) and ligne.endswith("\\")
    return paires


def conforme(attendu, obtenu):
    if not attendu:
        return not obtenu
    if attendu[0] == "...":
        return any(conforme(attendu[1:], obtenu[i:]) for i in range(len(obtenu) + 1))
    return bool(obtenu) and attendu[0] == obtenu[0] and conforme(attendu[1:], obtenu[1:])


def executer(document, dossier, environnement):
    """Number of commands that did something else than the document says."""
    fautes = 0
    for fichier, langue, bloc in BLOC.findall(document.read_text(encoding="utf-8")):
        if fichier:
            chemin = pathlib.Path(dossier, fichier)
            chemin.write_text(bloc, encoding="utf-8")
            chemin.chmod(0o755)
        if langue != "console":
            continue
        for commande, attendu in commandes(bloc):
            fait = subprocess.run(["bash", "-o", "pipefail", "-c", commande], cwd=dossier,
                                  env=environnement, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  encoding="utf-8", errors="replace", check=False)
            obtenu = [ligne.rstrip() for ligne in fait.stdout.splitlines()]
            if fait.returncode == 0 and (not attendu or conforme(attendu, obtenu)):
                continue
            fautes += 1
            print(f"{document}: $ {commande}\n  status {fait.returncode}; it prints:")
            print("".join(f"    {ligne}\n" for ligne in obtenu), end="")
    return fautes


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("documents", nargs="+", type=pathlib.Path)
    options.add_argument("--build", default="build", help="folder of the built programs")
    o = options.parse_args()
    environnement = dict(os.environ, LC_ALL="C.UTF-8",
                         PATH=os.path.abspath(o.build) + os.pathsep + os.environ["PATH"])
    fautes = 0
    for document in o.documents:
        with tempfile.TemporaryDirectory() as dossier:
            os.symlink(RACINE / "tests" / "cases", os.path.join(dossier, "cas"))
            fautes += executer(document, dossier, environnement)
    sys.exit(1 if fautes else 0)


if __name__ == "__main__":
    main()
