#!/usr/bin/env python3
"""Runs the fuzz targets and tells what they did.

campagne.py --build BUILD --make-cases PROGRAMME [--secondes 15] [--jobs 2] [--cibles a,b] [--graine 0]

Seeds are cut from a collection that make_cases writes, and tests/corpus; the inputs that the fuzzer
found worth keeping stay in BUILD/corpus and start the next run. A finding stays in BUILD/trouvailles:
shrink it (fuzz_X -minimize_crash=1 -runs=10000 FICHIER), mend the fault, and move it to
tests/corpus/X.
Status 0 when no target found anything.
"""
import argparse
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ET
from concurrent.futures import ThreadPoolExecutor

ICI = pathlib.Path(__file__).resolve().parent
SEPARATEUR, ENTREE = b"\x1e", b"\x1d"  # between the parts of an input, between inputs in a file
# Target to the longest input, and the ending of the files that it reads.
CIBLES = {"bloc": (6000, ".blck"), "face": (6000, ".face"), "edge": (6000, ".edge"),
          "vertex": (6000, ".vrtx"), "scene": (4000, ".def"), "climite": (1000, None),
          "conversion": (400, None), "table": (1200, None), "collection": (12000, None),
          "cgns": (120000, None)}
BINAIRES = {"cgns"}  # an input a file


def reduire(fichier, garde):
    """The document with only the first `garde` entities: small inputs run fast."""
    racine = ET.parse(fichier).getroot()
    if racine.tag != "definition_scene":
        for enfant in list(racine)[garde:]:
            racine.remove(enfant)
    return ET.tostring(racine, encoding="ISO-8859-1")


def graines(collection, cible):
    """Inputs that lead far into the target."""
    fin, climite = CIBLES[cible][1], (collection / "climite.cfg").read_bytes()
    for base, mode in ((1, "nrm"), (2, "ext"), (6, "min")):
        nom = collection / f"mesh_case_{base}" / f"mesh_case_{base}"
        fichiers = [f"{nom}.def"] + [f"{nom}_{mode}{f}" for f in (".blck", ".face", ".edge", ".vrtx")]
        if fin:
            yield from (reduire(f, garde) for f in fichiers if f.endswith(fin) for garde in (1, 3))
        elif cible == "collection":
            yield SEPARATEUR.join([climite[:600], *(reduire(f, 2) for f in fichiers)])
    if cible == "climite":
        yield climite[:900]
    for fichier in sorted((ICI.parent / "tests" / "corpus" / cible).iterdir()):
        octets = fichier.read_bytes()
        yield from [octets] if cible in BINAIRES else octets.split(ENTREE)


def ecrire_graines(build, make_cases):
    collection = build / "collection"
    if not collection.exists():
        subprocess.run([make_cases, str(collection), "--blocs", "8"], check=True)
    for cible in CIBLES:
        dossier = build / "graines" / cible
        dossier.mkdir(parents=True, exist_ok=True)
        for rang, octets in enumerate(graines(collection, cible)):
            (dossier / f"graine_{rang}").write_bytes(octets)


def trouver(build, nom):
    return next((p for p in (build / "fuzz" / nom, build / nom) if p.exists()), None)


def lancer(args, cible):
    dossiers = [args.build / "corpus" / cible, args.build / "graines" / cible]
    dossiers[0].mkdir(parents=True, exist_ok=True)
    trouvailles = args.build / "trouvailles"
    trouvailles.mkdir(exist_ok=True)
    dico = "xml.dict" if CIBLES[cible][1] or cible == "collection" else "texte.dict"
    commande = [str(trouver(args.build, f"fuzz_{cible}")), *map(str, dossiers),
                f"-max_total_time={args.secondes}", f"-max_len={CIBLES[cible][0]}", f"-dict={ICI / dico}",
                f"-artifact_prefix={trouvailles}/{cible}-", "-timeout=30", "-rss_limit_mb=2048",
                "-print_final_stats=1", f"-seed={args.graine}"]
    fin = subprocess.run(commande, capture_output=True, errors="replace", check=False)
    (args.build / f"journal_{cible}.txt").write_text(fin.stderr)
    dernier = lambda motif: (re.findall(motif, fin.stderr) or ["?"])[-1]
    return cible, fin.returncode, dernier(r"number_of_executed_units: (\d+)"), \
        dernier(r"average_exec_per_sec: +(\d+)"), dernier(r"cov: (\d+)"), dernier(r"ft: (\d+)")


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("--build", type=pathlib.Path, required=True)
    p.add_argument("--make-cases", required=True)
    p.add_argument("--secondes", type=int, default=15)
    p.add_argument("--jobs", type=int, default=2)
    p.add_argument("--graine", type=int, default=0, help="0: another one each time")
    p.add_argument("--cibles", help="sinon toutes celles qui sont construites")
    args = p.parse_args()
    if not args.cibles:
        args.cibles = ",".join(c for c in CIBLES if trouver(args.build, f"fuzz_{c}"))
    ecrire_graines(args.build, args.make_cases)
    fautives = 0
    print(f"{'cible':12}{'executions':>12}{'exec/s':>8}{'aretes':>8}{'traits':>8}  resultat")
    with ThreadPoolExecutor(args.jobs) as file:
        for cible, statut, nb, vitesse, aretes, traits in file.map(
                lambda c: lancer(args, c), args.cibles.split(",")):
            fautives += statut != 0
            verdict = f"TROUVAILLE, voir {args.build}/journal_{cible}.txt" if statut else "rien"
            print(f"{cible:12}{nb:>12}{vitesse:>8}{aretes:>8}{traits:>8}  {verdict}", flush=True)
    return 1 if fautives else 0


if __name__ == "__main__":
    sys.exit(main())
