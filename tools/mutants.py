#!/usr/bin/env python3
"""Plants one-line faults in the product's sources, one at a time, and tells which the tests miss.

mutants.py [--nombre 200] [--graine 1] [--fichiers MOTIF,...] [--liste FICHIER] [--jobs N]

The tree is copied to build-mutants/ and built there once, with -O1, under which compiling and
testing take the least time together; each fault then costs the file that it is in and the links. A
fault that does not compile does not count, nor does one that leaves the optimised object as it was.
The test programs run whole, those of the folder of the fault first, and stop at the first failure,
at a crash or at a time limit: the fault is caught. One that is the same to the byte, and starts only
programs that are, would say the same: it is not run.
The same arguments plant the same faults. Survivors are printed as differences and written to
build-mutants/survivants.jsonl, which --liste takes again. Status 0 when 95 % were caught.
"""
import argparse
import collections
import fnmatch
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import threading
import time

DOSSIERS = ("texte", "mesh", "base", "dataset", "verifie", "app", "cgns", "vtk")
BARRE = 0.95
ECHANGES = [x.split("~") for x in (
    " < ~ <= ", " <= ~ < ", " > ~ >= ", " >= ~ > ", " == ~ != ", " != ~ == ", " + ~ - ", " - ~ + ",
    " * ~ / ", " / ~ * ", " % ~ / ", " && ~ || ", " || ~ && ", " & ~ | ", " += ~ -= ", "++~--", "--~++",
    "true~false", "false~true", "!~", "std::min~std::max", "std::max~std::min", "continue;~;",
    "break;~;", "front()~back()")]
APPEL = re.compile(r"^\s*(?!return\b|throw\b|using\b|delete\b)[\w:.>\[\]*-]+\(.*\);$")
AFFECTATION = re.compile(r"^\s*[\w:.>\[\]*()-]+ [-+|&*]?= .*;$")
ARGUMENTS = re.compile(r"\b(\w+)\(([\w.\[\]]+), ([\w.\[\]]+)\)")

# What cannot show: room that is reserved, kept, or used in parts (too little of it is for the sanitizers
# to see); a function that the compiler makes where it is needed; the order of arguments that mean the
# same either way. A tolerance is made large, not ten times as fine.
SANS_SUITE = re.compile(r"\b(?:reserve|mallopt)\(|= default;")
PLACE = re.compile(r"(?:array<(?:char|cgsize_t), (?:1 << )?|\bchar \w+\[)$")
SYMETRIQUES = {"min", "max", "minmax", "hypot", "distance", "scalaire", "plage_entre", "nb_communs"}
TEXTE = re.compile(r"""\"(?:\\.|[^\"\\])*\"|(?<![0-9a-fA-F])'(?:\\.|[^'\\])*'""")


def masquer(ligne):
    """The line with its texts and comment blanked, of the same length."""
    return re.sub(r"//.*", lambda m: " " * len(m[0]), TEXTE.sub(lambda m: "_" * len(m[0]), ligne))


def fin_de_parenthese(code, debut):
    niveau = 0
    for i in range(debut, len(code)):
        niveau += (code[i] == "(") - (code[i] == ")")
        if niveau == 0:
            return i
    return -1


def fautes(ligne, avant):
    """What one fault can make of a line; `avant` is the line of code before it."""
    code = masquer(ligne)
    if not code.strip() or re.match(r"\s*(#|static_assert|using |namespace |template)", code) \
            or SANS_SUITE.search(code):
        return

    def remplacer(a, b, texte):
        return ligne[:a] + texte + ligne[b:]
    for vieux, neuf in ECHANGES:
        for m in re.finditer(re.escape(vieux), code):
            if vieux == "!" and code[m.end():m.end() + 1] == "=":
                continue
            yield remplacer(m.start(), m.end(), neuf)
    for m in re.finditer(r"(?<![\w.])(?<!e-)\d+(?![\w.])", code):
        if PLACE.search(code[:m.start()]):
            continue
        yield remplacer(*m.span(), str(int(m[0]) + 1))
        if int(m[0]) > 0:
            yield remplacer(*m.span(), str(int(m[0]) - 1))
    for m in re.finditer(r"(?<![\w.])\d+\.\d+|\b\d+e-?\d+", code):
        yield remplacer(*m.span(), f"({m[0]} + 1)")
    for m in re.finditer(r"\b(if|while) (?:constexpr )?\(", code):
        fin = fin_de_parenthese(code, m.end() - 1)
        debut = max(m.end(), code.rfind("; ", m.end(), fin) + 2)
        if fin > 0 and " = " not in code[debut:fin]:
            yield remplacer(debut, fin, f"!({ligne[debut:fin]})")
    for m in re.finditer(r" \? ([^?:]+) : ([^?:;,)]+)", code):
        yield remplacer(*m.span(), f" ? {ligne[m.start(2):m.end(2)]} : {ligne[m.start(1):m.end(1)]}")
    if (APPEL.match(code) or AFFECTATION.match(code)) \
            and (not avant or avant[-1] in ";{}):"):
        yield re.match(r"\s*", ligne)[0] + ";"
    if m := re.match(r"(\s*return) [^;{]+;$", code):
        yield m[1] + " {};"
    for m in ARGUMENTS.finditer(code):
        if m[2] != m[3] and m[1] not in SYMETRIQUES:
            yield remplacer(m.start(2), m.end(3), f"{ligne[slice(*m.span(3))]}, {ligne[slice(*m.span(2))]}")
    for m in TEXTE.finditer(ligne):
        if len(m[0]) > 2 and m[0][1] not in "\\" and code[m.start()] == "_":
            yield remplacer(m.start() + 1, m.start() + 2, "q" if m[0][1] == "k" else "k")


def tirer(racine, motifs, graine):
    """Faults, each on a line of its own. The text of a line decides whether and what is planted in it:
    what is mended elsewhere changes no other draw."""
    fichiers = subprocess.check_output(["git", "ls-files", *(f"{d}/*.{e}" for d in DOSSIERS for e in ("cpp", "h"))],
                                       cwd=racine, text=True).split()
    lignes = []
    for f in sorted(x for x in fichiers if any(fnmatch.fnmatch(x, m) for m in motifs)):
        avant, vues = "", collections.Counter()
        for n, ligne in enumerate((racine / f).read_text().split("\n")):
            possibles = list(fautes(ligne, avant))
            avant = masquer(ligne).strip() or avant
            vues[ligne] += 1
            if possibles:
                cle = hashlib.sha256(f"{graine} {f} {vues[ligne]} {ligne}".encode()).digest()
                lignes.append((cle, f, n, ligne, possibles))
    lignes.sort()
    return ({"fichier": f, "ligne": n + 1, "avant": ligne, "apres": p[cle[-1] % len(p)]}
            for cle, f, n, ligne, p in lignes)


def executer(commande, dossier, secondes):
    """True when it ended with status 0 in time."""
    def limiter():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
        resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))
    with subprocess.Popen(commande, cwd=dossier, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, start_new_session=True, preexec_fn=limiter) as fils:
        try:
            return fils.wait(secondes) == 0
        except subprocess.TimeoutExpired:
            os.killpg(fils.pid, signal.SIGKILL)
            return False


def empreinte(fichiers):
    return [hashlib.sha256(pathlib.Path(f).read_bytes()).digest() for f in fichiers]


class Atelier:
    """A copy of the tree with its build."""

    def __init__(self, racine, dossier):
        self.arbre, self.build = dossier / "arbre", dossier / "build"
        for f in subprocess.check_output(["git", "ls-files"], cwd=racine, text=True).split("\n"):
            source, copie = racine / f, self.arbre / f
            if source.is_file() and (not copie.exists() or source.read_bytes() != copie.read_bytes()):
                copie.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, copie)
        options = ["-DTOPOMINE_TESTS=ON", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1",
                   "-DCMAKE_CXX_FLAGS=-w", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]
        if shutil.which("ninja"):
            options += ["-G", "Ninja"]
        if shutil.which("ccache"):
            options += ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"]
        if shutil.which("ld.lld"):
            options += ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"]
        os.environ.update(CCACHE_BASEDIR=str(dossier.parent), CCACHE_NOHASHDIR="1")
        subprocess.run(["cmake", "-S", self.arbre, "-B", self.build, *options], check=True,
                       stdout=subprocess.DEVNULL)
        if not self.construire("all"):
            sys.exit("mutants: the tree does not build")
        self.programmes = self.trouver_programmes()

    def construire(self, cible):
        return subprocess.run(["cmake", "--build", self.build, "-j", "2", "--target", cible],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0

    def trouver_programmes(self):
        """Test program to its commands, folder and seconds; they must pass as they are."""
        essais = json.loads(subprocess.check_output(
            ["ctest", "--test-dir", self.build, "--show-only=json-v1"]))["tests"]
        programmes = {}
        for e in essais:
            chemin = pathlib.Path(e["command"][0])
            if self.build not in chemin.parents:
                continue  # what a fault cannot change, or takes minutes
            gtest = any(a.startswith("--gtest") for a in e["command"])
            commande = [str(chemin), "--gtest_fail_fast"] if gtest else e["command"]
            p = programmes.setdefault(str(chemin), {"commandes": [], "dossier": chemin.parent})
            if commande not in p["commandes"]:
                p["commandes"].append(commande)
        for nom, p in programmes.items():
            debut = time.monotonic()
            if not all(executer(c, p["dossier"], 600) for c in p["commandes"]):
                sys.exit(f"mutants: {nom} fails on the tree as it is")
            p["secondes"] = time.monotonic() - debut
        # A test program has the paths of those that it starts in it.
        lances = [self.build / n for n in ("topomine", "topodata", "make_cases", "tests/cgns/topodata_sans_cgns")]
        for nom, p in programmes.items():
            octets = pathlib.Path(nom).read_bytes()
            p["fichiers"] = [nom, *(str(x) for x in lances if x.exists() and str(x).encode() in octets)]
            p["empreinte"] = empreinte(p["fichiers"])
        return programmes

    def optimise(self, fichier):
        """The object that the source makes when it is optimised; nothing for a header."""
        for c in json.loads((self.build / "compile_commands.json").read_text()):
            if pathlib.Path(c["file"]) == self.arbre / fichier:
                objet = self.build / "optimise.o"
                mots = [("-O2" if m == "-O1" else m) for m in shlex.split(c["command"])]
                mots[mots.index("-o") + 1] = str(objet)
                if subprocess.run(mots, cwd=c["directory"], stderr=subprocess.DEVNULL).returncode == 0:
                    return objet.read_bytes()
        return None

    def juger(self, m):
        """"ne compile pas", "sans effet", "survit", or the program that caught the fault."""
        source = self.arbre / m["fichier"]
        texte = source.read_text()
        lignes = texte.split("\n")
        n = m["ligne"] - 1
        if lignes[n:n + 1] != [m["avant"]]:
            if m["avant"] not in lignes:
                return "introuvable"
            n = lignes.index(m["avant"])
        lignes[n] = m["apres"]
        dossiers = set(pathlib.Path(m["fichier"]).parts[:-1])

        def rang(nom):
            p = self.programmes[nom]
            communs = len(dossiers & set(p["dossier"].relative_to(self.build).parts))
            return -communs, p["secondes"]
        try:
            source.write_text("\n".join(lignes))
            for i, nom in enumerate(sorted(self.programmes, key=rang)):
                p = self.programmes[nom]
                if not self.construire(pathlib.Path(nom).name):
                    return "ne compile pas"
                if empreinte(p["fichiers"]) == p["empreinte"]:
                    continue
                limite = 20 + 5 * p["secondes"]
                if not all(executer(c, p["dossier"], limite) for c in p["commandes"]):
                    return pathlib.Path(nom).name
            objet = self.optimise(m["fichier"])
            source.write_text(texte)
            return "sans effet" if objet and objet == self.optimise(m["fichier"]) else "survit"
        finally:
            source.write_text(texte)


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("--nombre", type=int, default=200)
    p.add_argument("--graine", type=int, default=1)
    p.add_argument("--fichiers", default="*", help="patterns, separated by commas")
    p.add_argument("--liste", type=pathlib.Path, help="these faults, one JSON object per line")
    p.add_argument("--jobs", type=int, default=os.cpu_count())
    p.add_argument("--dossier", type=pathlib.Path, help="build-mutants beside the sources")
    args = p.parse_args()
    racine = pathlib.Path(__file__).resolve().parent.parent
    dossier = (args.dossier or racine / "build-mutants").resolve()
    if args.liste:
        mutants = [json.loads(x) for x in args.liste.read_text().splitlines() if x.strip()]
        args.nombre = len(mutants)
    else:
        mutants = tirer(racine, args.fichiers.split(","), args.graine)
    a_faire, verrou, bilan, survivants = iter(mutants), threading.Lock(), {}, []
    debut = time.monotonic()

    def comptes():
        return sum(nb for mot, nb in bilan.items() if mot not in ("ne compile pas", "sans effet", "introuvable"))

    def travailler(atelier):
        while True:
            with verrou:
                en_cours = comptes() + len(actifs)
                m = next(a_faire, None) if en_cours < args.nombre else None
                if m is None and (not actifs or comptes() >= args.nombre or args.liste):
                    return
                if m is not None:
                    actifs.add(id(m))
            if m is None:  # one under way may not count
                time.sleep(1)
                continue
            mot = atelier.juger(m)
            with verrou:
                actifs.discard(id(m))
                bilan[mot] = bilan.get(mot, 0) + 1
                if mot == "survit":
                    survivants.append(m)
                if sum(bilan.values()) % 10 == 0:
                    print(f"# {comptes() - len(survivants)} of {comptes()} caught so far", flush=True)
                if mot in ("survit", "introuvable"):
                    print(f"{m['fichier']}:{m['ligne']}: {mot}\n-{m['avant']}\n+{m['apres']}", flush=True)

    actifs = set()
    ateliers = [Atelier(racine, dossier / str(i)) for i in range(args.jobs)]
    fils = [threading.Thread(target=travailler, args=(a,)) for a in ateliers]
    for f in fils:
        f.start()
    for f in fils:
        f.join()
    (dossier / "survivants.jsonl").write_text("".join(json.dumps(m) + "\n" for m in survivants))
    total, pris = comptes(), comptes() - len(survivants)
    print(f"\n{pris} of {total} faults caught ({100 * pris / max(total, 1):.1f} %) in {time.monotonic() - debut:.0f} s")
    for mot, nb in sorted(bilan.items(), key=lambda x: -x[1]):
        print(f"{nb:6} {mot}")
    return 0 if pris >= BARRE * total > 0 and "introuvable" not in bilan else 1


if __name__ == "__main__":
    sys.exit(main())
