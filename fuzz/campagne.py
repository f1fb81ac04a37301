#!/usr/bin/env python3
"""Runs the fuzz targets and tells what they did.

campagne.py --build BUILD --make-cases PROGRAMME [--secondes 15] [--jobs 2] [--cibles a,b] [--graine 0]

Seeds are cut from a collection that make_cases writes; the inputs that the fuzzer found worth
keeping stay in BUILD/corpus and start the next run. A finding stays in BUILD/trouvailles: shrink it
(fuzz_X -minimize_crash=1 -runs=10000 FICHIER), mend the fault, and move it to tests/corpus/X.
Status 0 when no target found anything.
"""
import argparse
import pathlib
import random
import re
import subprocess
import sys
import xml.etree.ElementTree as ET
from concurrent.futures import ThreadPoolExecutor

ICI = pathlib.Path(__file__).resolve().parent
SEPARATEUR = b"\x1e"
# Target to the ending of the files that it reads, and the longest input.
FICHIERS = {"bloc": (".blck", 6000), "face": (".face", 6000), "edge": (".edge", 6000),
            "vertex": (".vrtx", 6000), "scene": (".def", 4000)}
AUTRES = {"climite": 1000, "conversion": 400, "table": 1200, "collection": 12000}
CIBLES = list(FICHIERS) + list(AUTRES)
NOMBRES = ["0", "7", "-12", "3.25", "1e-3", "12a", "1,5", "-", "+4", " 8", "99999999999999999999",
           "1e999", "1e-999", "0x10", "nan", "inf", "", "1.7976931348623157e308", ".5", "5.", "1e"]


def reduire(fichier, garde):
    """The document with only the first `garde` entities: small inputs run fast."""
    racine = ET.parse(fichier).getroot()
    for enfant in list(racine)[garde:]:
        racine.remove(enfant)
    return ET.tostring(racine, encoding="ISO-8859-1")


def graines_xml(collection):
    for cible, (fin, _) in FICHIERS.items():
        for base in (1, 4, 7):
            nom = collection / f"mesh_case_{base}" / f"mesh_case_{base}"
            for mode in ("ext", "min"):
                fichier = pathlib.Path(f"{nom}{fin if cible == 'scene' else '_' + mode + fin}")
                for garde in (1, 3):
                    yield cible, fichier.read_bytes() if cible == "scene" else reduire(fichier, garde)


def graines(collection):
    """Pairs of target and input."""
    yield from graines_xml(collection)
    climite = (collection / "climite.cfg").read_bytes()
    yield "climite", climite[:900]
    yield "climite", b"Damas code;BCCODE;Family;\n12;3;paroi;\n 7a;\t4;b;\r\n8;;\n;;;\n9;5;d"
    hasard = random.Random(1)
    for _ in range(20):
        textes = [(hasard.choice("erc") + hasard.choice(NOMBRES)).encode() for _ in range(6)]
        yield "conversion", SEPARATEUR.join(textes)
        lignes = [";".join(hasard.choice(["n", "n", "string", "{-1,1}"]) for _ in range(4))]
        lignes += [";".join(hasard.choice(NOMBRES[:5] if k % 2 else NOMBRES) for _ in range(4))
                   for k in range(hasard.randrange(5))]
        yield "table", bytes([hasard.randrange(256)]) + "\n".join(lignes).encode()
    for base, mode in ((1, "nrm"), (2, "ext"), (6, "min")):
        nom = str(collection / f"mesh_case_{base}" / f"mesh_case_{base}")
        parts = [climite[:600], pathlib.Path(nom + ".def").read_bytes()]
        parts += [reduire(f"{nom}_{mode}{fin}", 2) for fin in (".blck", ".face", ".edge", ".vrtx")]
        yield "collection", SEPARATEUR.join(parts)


def ecrire_graines(build, make_cases):
    collection = build / "collection"
    if not collection.exists():
        subprocess.run([make_cases, str(collection), "--blocs", "8"], check=True)
    rangs = {}
    for cible, octets in graines(collection):
        dossier = build / "graines" / cible
        dossier.mkdir(parents=True, exist_ok=True)
        rangs[cible] = rangs.get(cible, 0) + 1
        (dossier / f"graine_{rangs[cible]}").write_bytes(octets)


def trouver(build, nom):
    return next(p for p in (build / "fuzz" / nom, build / nom) if p.exists())


def lancer(args, cible):
    dossiers = [args.build / "corpus" / cible, args.build / "graines" / cible]
    rejoues = ICI.parent / "tests" / "corpus" / cible
    if rejoues.is_dir():
        dossiers.append(rejoues)
    dossiers[0].mkdir(parents=True, exist_ok=True)
    trouvailles = args.build / "trouvailles"
    trouvailles.mkdir(exist_ok=True)
    longueur = FICHIERS[cible][1] if cible in FICHIERS else AUTRES[cible]
    dico = "xml.dict" if cible in FICHIERS or cible == "collection" else "texte.dict"
    commande = [str(trouver(args.build, f"fuzz_{cible}")), *map(str, dossiers),
                f"-max_total_time={args.secondes}", f"-max_len={longueur}", f"-dict={ICI / dico}",
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
    p.add_argument("--cibles", default=",".join(CIBLES))
    args = p.parse_args()
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
