#!/usr/bin/env python3
"""Judges the manual pages of a build, and that they say what the programs say.

usage: manuel.py BUILD
"""

import gzip
import os
import pathlib
import re
import subprocess
import sys

PARTIES = {"1": ("NOM", "SYNOPSIS", "DESCRIPTION", "CODE DE RETOUR", "VOIR AUSSI"),
           "5": ("NOM", "DESCRIPTION", "VOIR AUSSI")}


def dit(*commande, **options):
    fini = subprocess.run(commande, capture_output=True, text=True, errors="replace", **options)
    return fini.stdout, fini.stderr


def main():
    build = pathlib.Path(sys.argv[1])
    environnement = {**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "200", "COLUMNS": "2000"}
    fautes, textes = [], {}
    for page in sorted(build.glob("man/man?/*.gz")):
        roff = gzip.decompress(page.read_bytes())
        jugement = dit("mandoc", "-T", "lint", "-W", "warning", input=roff.decode())[0]
        texte, plaintes = dit("man", "--warnings", "-E", "UTF-8", "-P", "cat", "-l", str(page),
                              env=environnement)
        fautes += [f"{page.name}: {ligne}" for ligne in (jugement + plaintes).split("\n") if ligne]
        titres = re.findall(r"(?m)^[A-Z].*$", texte)
        fautes += [f"{page.name}: no {partie}" for partie in PARTIES[page.name[-4]]
                   if partie not in titres]
        textes[page.name[:-5]] = texte
    aide = dit(build / "topodata", "__completer", "")[0].split()
    for commande in (c for c in aide if c != "help"):
        options = dit(build / "topodata", "__completer", commande, "-")[0].split()
        texte = textes.get(f"topodata-{commande}", "")
        fautes += [f"topodata-{commande}: no {option}" for option in options
                   if not re.search(re.escape(option) + r"\b", texte)]
    if len(textes) < 4 + len(aide) - 1:
        fautes.append(f"only {sorted(textes)}")
    if fautes:
        sys.exit("\n".join(fautes))


if __name__ == "__main__":
    main()
