#!/usr/bin/env python3
"""Runs the program on damaged collections.

mutation.py --programme PROGRAMME --make-cases PROGRAMME [--nombre 1000] [--graine 1] [--jobs 2]
mutation.py --programme topodata --verifie ...

Each run gets a small collection with one to three faults: bytes, lengths, kinds of file, numbers,
markup. The program may end with status 0 or 2, or by SIGABRT after the message of a structural
fault; nothing else, nothing on standard error that a sanitizer would write, not after more than
10 s of processor time, not with more than 1 GiB. Collections that broke a promise are kept. The same
arguments make the same mutations. Status 0 when every run kept its promises. With --verifie the
program is topodata, which goes on after every fault: its statuses are 0, 1 and 2, it never aborts,
and where it finds no error (0 or 1) the topomine beside it ends with status 0.
"""
import argparse
import collections
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import os
import xml.etree.ElementTree as ET

BASES = [f"mesh_case_{i}" for i in range(1, 9)]
FINS = [".def", "_nrm.blck", "_nrm.face", "_nrm.edge", "_nrm.vrtx"]
# Seconds of processor time, as other work on the machine must not count; a run that waits for
# something is ended after ATTENTE_S.
LIMITE_S, ATTENTE_S, LIMITE_KIO = 10, 120, 1 << 20
NOMBRES = [b"1e999", b"-1e999", b"1e-999", b"99999999999999999999", b"-99999999999999999999", b"0x10",
           b"nan", b"inf", b"-", b"+", b"", b" ", b"12a", b"1,5", b"2147483647", b"2147483648",
           b"-2147483648", b"0", b"-1", b"7", b"1000000", b"\xe9", b"&#0;", b"&#x110000;", b"&amp;",
           b"<!-- x -->", b"<![CDATA[3]]>", b"1" * 400, b"0." + b"0" * 400 + b"1"]
FAUTE = re.compile(rb"^base: bool Base::load_\w+\(\): Assertion `[^']+' failed\.$", re.M)


# --- Mutations of bytes: each takes the file's bytes and chance, and gives other bytes.

def retourner(o, h):
    o = bytearray(o)
    for _ in range(h.choice([1, 1, 3, 30])):
        if o:
            o[h.randrange(len(o))] = h.choice([h.randrange(256), 0, 0xFF, 60, 62, 0xC3, 0xF0])
    return bytes(o)


def tranche(o, h):
    a = h.randrange(len(o) + 1)
    return a, min(len(o), a + h.choice([1, 4, 64, 1000, len(o)]))


def enlever(o, h):
    a, b = tranche(o, h)
    return o[:a] + o[b:]


def doubler(o, h):
    a, b = tranche(o, h)
    return o[:b] + o[a:b] * h.choice([1, 1, 2, 20]) + o[b:]


def tronquer(o, h):
    """At a random place, or just after or before a mark of the syntax."""
    marques = [m.start() for m in re.finditer(rb"[<>;\n/\"?!]", o)] or [0]
    return o[:h.choice([h.randrange(len(o) + 1), h.choice(marques), h.choice(marques) + 1])]


def nuls(o, h):
    a, b = tranche(o, h)
    return h.choice([o[:a] + b"\0" + o[a:], o[:a] + b"\0" * (b - a) + o[b:], o + b"\0" * 5000])


def utf8(o, h):
    texte = o.decode("latin-1").replace("paroi", "paro\u00ef\u20ac\U0001d11e", h.randrange(4))
    o = texte.encode("utf-8").replace(b"ISO-8859-1", h.choice([b"UTF-8", b"utf8", b"UTF-16"]))
    return h.choice([b"", b"\xef\xbb\xbf"]) + h.choice([o, texte.encode("utf-16")])


def nombre(o, h):
    """The text of one to all numbers replaced."""
    places = list(re.finditer(rb"(?<=[>;])[-+.\deE]+(?=[<;])", o))
    if not places:
        return o + h.choice(NOMBRES)
    choisies = places if h.randrange(20) == 0 else h.sample(places, min(len(places), h.choice([1, 1, 4])))
    for m in sorted(choisies, key=lambda m: -m.start()):
        o = o[:m.start()] + h.choice(NOMBRES) + o[m.end():]
    return o


def texte_long(o, h):
    places = [m.end() for m in re.finditer(rb"[>;]", o)] or [0]
    a = h.choice(places)
    return o[:a] + h.choice([b"9", b"a", b" ", b"\xe9", b"-", b"1e", b"&lt;"]) * h.choice([1000, 300000]) + o[a:]


def balise(o, h):
    """A tag renamed, emptied, or lost."""
    places = list(re.finditer(rb"</?(\w+)>", o))
    if not places:
        return o
    m = h.choice(places)
    autre = h.choice(places)[1]
    neuve = h.choice([b"", b"<" + autre + b">", b"</" + autre + b">", b"<" + m[1] + b"/>", b"<!--", b"<" + m[1]])
    return o[:m.start()] + neuve + o[m.end():]


def element(o, h):
    """A whole element dropped, doubled or moved: the document stays well-formed."""
    try:
        racine = ET.fromstring(o)
    except (ET.ParseError, ValueError, LookupError):
        return balise(o, h)
    parents = [p for p in racine.iter() if len(p)]
    p = h.choice(parents) if parents else racine
    if len(p):
        e = p[h.randrange(len(p))]
        action = h.randrange(4)
        if action == 0:
            p.remove(e)
        elif action == 1:
            p.insert(h.randrange(len(p)), e)
        elif action == 2:
            cible = h.choice(parents)
            p.remove(e)
            cible.insert(h.randrange(len(cible) + 1), e)
        else:
            e.tag, e.text = h.choice([q.tag for q in parents]), None
    try:
        return ET.tostring(racine, encoding="ISO-8859-1")
    except RecursionError:  # moved into itself
        return balise(o, h)


def profond(o, h):
    n = h.choice([990, 998, 1000, 1001, 1100, 20000, 100000])
    places = [m.start() for m in re.finditer(rb"<\w", o)] or [0]
    a = h.choice(places)
    return o[:a] + b"<x>" * n + (b"</x>" * n if h.randrange(2) else b"") + o[a:]


def attributs(o, h):
    n = h.choice([1, 999, 1000, 1001, 30000, 60000])
    places = [m.end() for m in re.finditer(rb"<\w+", o)] or [0]
    a = h.choice(places)
    noms = (b"a" if h.randrange(4) == 0 else b"a%d" % i for i in range(n))
    return o[:a] + b"".join(b' %s="v"' % nom for nom in noms) + o[a:]


def freres(o, h):
    """Tens of thousands of small nodes."""
    places = [m.end() for m in re.finditer(rb">", o)] or [0]
    a = h.choice(places)
    return o[:a] + h.choice([b"<x/>", b"<!---->", b"<?x?>", b"<![CDATA[]]>", b"<?xml ?>", b"</x>"]) * 20000 + o[a:]


OCTETS = [retourner, retourner, enlever, doubler, tronquer, tronquer, nuls, utf8, nombre, nombre,
          nombre, texte_long, balise, balise, element, element, element, profond, attributs, freres,
          lambda o, h: o.replace(b"\n", h.choice([b"\r\n", b"\r", b""])),
          lambda o, h: b"", lambda o, h: h.randbytes(h.choice([1, 100, 5000]))]


# --- Mutations of the folder: each takes the file's path, the collection's folder and chance.

def remplacer(chemin, faire):
    chemin.unlink(missing_ok=True)
    faire()


DOSSIER = [
    lambda f, d, h: f.unlink(),
    lambda f, d, h: remplacer(f, f.mkdir),
    lambda f, d, h: remplacer(f, lambda: f.symlink_to("nulle_part")),
    lambda f, d, h: remplacer(f, lambda: f.symlink_to(f.name)),  # a link to itself
    lambda f, d, h: remplacer(f, lambda: f.symlink_to("/dev/zero")),
    lambda f, d, h: remplacer(f, lambda: f.symlink_to("/dev/null")),
    lambda f, d, h: remplacer(f, lambda: f.symlink_to("/proc/self/mem")),  # opens, fails when read
    lambda f, d, h: remplacer(f, lambda: os.mkfifo(f)),
    lambda f, d, h: f.chmod(0),  # does not stop root
    # The file of another kind, or of another base, in its place.
    lambda f, d, h: shutil.copyfile(h.choice(fichiers(d)), f),
    lambda f, d, h: shutil.copyfile(h.choice([b for b in fichiers(d) if b.suffix == f.suffix]), f),
]


def fichiers(dossier):
    return [dossier / "climite.cfg"] + [dossier / b / (b + fin) for b in BASES for fin in FINS]


def muter(dossier, hasard):
    """Damages files of the collection; what was done, in words."""
    faits = []
    for _ in range(hasard.choice([1, 1, 1, 2, 3])):
        # The first bases more often: a fault that ends the run hides the later ones.
        base = BASES[min(hasard.randrange(8), hasard.randrange(8))]
        fichier = dossier / base / (base + hasard.choice(FINS))
        if hasard.randrange(6) == 0:
            fichier = dossier / "climite.cfg"
        if not fichier.is_file() or fichier.is_symlink():
            continue
        if hasard.randrange(8) == 0:
            quoi = hasard.randrange(len(DOSSIER))
            try:
                DOSSIER[quoi](fichier, dossier, hasard)
            except (shutil.SameFileError, OSError):
                pass  # the other file was damaged before
            faits.append(f"{fichier.name}: dossier[{quoi}]")
        else:
            mutation = hasard.choice(OCTETS)
            fichier.write_bytes(mutation(fichier.read_bytes(), hasard))
            faits.append(f"{fichier.name}: {mutation.__name__}")
    return faits


class Reserve:
    """A copy of the sound collection, damaged and mended again."""

    def __init__(self, saine, dossier):
        self.dossier = dossier
        self.saine = {f.relative_to(saine): f.read_bytes() for f in fichiers(saine)}
        for f in self.saine:
            (dossier / f).parent.mkdir(parents=True, exist_ok=True)
            (dossier / f).write_bytes(self.saine[f])

    def remettre(self, touches):
        (self.dossier / "global.cov").unlink(missing_ok=True)
        for f, octets in self.saine.items():
            if f.name not in touches:
                continue
            chemin = self.dossier / f
            if chemin.is_dir() and not chemin.is_symlink():
                chemin.rmdir()
            chemin.unlink(missing_ok=True)
            chemin.write_bytes(octets)


def lancer(args, commande, erreurs):
    """Runs a command: its status, seconds of work, KiB; standard error goes to the file `erreurs`."""
    def limiter():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (LIMITE_S + 5, LIMITE_S + 5))
        if not args.asan:
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    debut = time.monotonic()
    with open(erreurs, "wb") as flux:
        fils = subprocess.Popen(commande, stdin=subprocess.DEVNULL,
                                stdout=subprocess.DEVNULL, stderr=flux, preexec_fn=limiter)
    # Not fils.kill: it would wait for the program itself, and take its figures away.
    garde = threading.Timer(ATTENTE_S, os.kill, (fils.pid, signal.SIGKILL))
    garde.start()
    _, statut, usage = os.wait4(fils.pid, 0)
    garde.cancel()
    fils.returncode = os.waitstatus_to_exitcode(statut)
    attente = time.monotonic() - debut
    calcul = usage.ru_utime + usage.ru_stime
    return fils.returncode, attente if attente > ATTENTE_S else calcul, usage.ru_maxrss


def verdict(statut, secondes, kio, erreur, verifie):
    """The outcome in a word, and what promise it breaks."""
    if b"Sanitizer" in erreur or b"runtime error" in erreur:
        return "sanitizer", "un sanitizer parle"
    if secondes > LIMITE_S:
        return "lent", f"{secondes:.1f} s"
    if kio > LIMITE_KIO:
        return "gros", f"{kio} Kio"
    if statut in ((0, 1, 2) if verifie else (0, 2)):
        return f"statut {statut}", None
    if not verifie and statut == -signal.SIGABRT and FAUTE.search(erreur) and b" absent ou vide\n" in erreur:
        return "faute de structure", None
    return f"fin {statut}", f"fin inattendue {statut}"


def reduire(collection):
    """Two to four blocks per base are enough, and fast; references beyond them stay dangling."""
    for base in BASES:
        for fin in FINS[1:]:
            fichier = collection / base / (base + fin)
            arbre = ET.parse(fichier)
            racine = arbre.getroot()
            for enfant in list(racine)[{"_nrm.blck": 2}.get(fin, 12):]:
                racine.remove(enfant)
            arbre.write(fichier, encoding="ISO-8859-1")


def travailler(args, saine, rang, bilan, verrou):
    with tempfile.TemporaryDirectory() as temp:
        temp = pathlib.Path(temp)
        reserve = Reserve(saine, temp / "cases")
        for n in range(rang, args.nombre, args.jobs):
            hasard = random.Random(args.graine * 1_000_003 + n)
            faits = muter(reserve.dossier, hasard)
            donnees = [f"{reserve.dossier}/", "nrm"]
            programme = pathlib.Path(args.programme)
            run = [str(programme.with_name("topomine") if args.verifie else programme), *donnees, "out"]
            commande = [str(programme), "verifie", *donnees] if args.verifie else run
            statut, secondes, kio = lancer(args, commande, temp / "err")
            erreur = (temp / "err").read_bytes()
            mot, rompu = verdict(statut, secondes, kio, erreur, args.verifie)
            if args.verifie and statut in (0, 1) and lancer(args, run, temp / "run")[0] != 0:
                rompu = "verifie n'y voit pas d'erreur, topomine echoue"
            with verrou:
                bilan["mots"][mot] += 1
                bilan["secondes"] = max(bilan["secondes"], secondes)
                bilan["kio"] = max(bilan["kio"], kio)
                if rompu:
                    bilan["rompues"].append(n)
                    print(f"essai {n}: {rompu} ({', '.join(faits)})", flush=True)
                    garde = args.garde / f"essai_{args.graine}_{n}"
                    shutil.copytree(reserve.dossier, garde, symlinks=True, dirs_exist_ok=True,
                                    ignore=lambda d, noms: [x for x in noms if not
                                                            (pathlib.Path(d, x).is_dir()
                                                             or pathlib.Path(d, x).is_file())])
                    (garde / "stderr.txt").write_bytes(erreur)
            reserve.remettre({fait.split(":")[0] for fait in faits})


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("--programme", required=True)
    p.add_argument("--make-cases", required=True)
    p.add_argument("--nombre", type=int, default=1000)
    p.add_argument("--graine", type=int, default=1)
    p.add_argument("--jobs", type=int, default=2)
    p.add_argument("--garde", type=pathlib.Path, default=pathlib.Path("mutations"),
                   help="folder for the collections that broke a promise")
    p.add_argument("--verifie", action="store_true", help="run `topodata verifie` instead")
    args = p.parse_args()
    args.asan = b"__asan_init" in pathlib.Path(args.programme).read_bytes()
    bilan = {"mots": collections.Counter(), "secondes": 0.0, "kio": 0, "rompues": []}
    debut = time.monotonic()
    with tempfile.TemporaryDirectory() as temp:
        saine = pathlib.Path(temp) / "cases"
        subprocess.run([args.make_cases, str(saine), "--blocs", "8"], check=True)
        if not args.verifie:  # references that dangle would hide everything else from it
            reduire(saine)
        verrou = threading.Lock()
        fils = [threading.Thread(target=travailler, args=(args, saine, r, bilan, verrou))
                for r in range(args.jobs)]
        for f in fils:
            f.start()
        for f in fils:
            f.join()
    total = sum(bilan["mots"].values())
    print(f"{total} essais en {time.monotonic() - debut:.0f} s, le plus long {bilan['secondes']:.2f} s, "
          f"le plus gros {bilan['kio'] / 1024:.0f} Mio")
    for mot, nb in sorted(bilan["mots"].items()):
        print(f"{nb:8} {mot}")
    if bilan["rompues"]:
        print(f"{len(bilan['rompues'])} promesses rompues, gardees dans {args.garde}")
    return 1 if bilan["rompues"] or total != args.nombre else 0


if __name__ == "__main__":
    sys.exit(main())
