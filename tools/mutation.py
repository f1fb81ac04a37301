#!/usr/bin/env python3
"""Runs the program on damaged collections.

mutation.py --programme PROGRAMME --make-cases PROGRAMME [--nombre 1000] [--graine 1] [--jobs 2]
mutation.py --programme topodata --verifie ...

Each run gets a small collection with one to three faults: bytes, lengths, kinds of file, numbers,
markup. The program may end with status 0 or 2, or by SIGABRT after the message of a structural
fault; nothing else, nothing on standard error that a sanitizer would write, not after more than
10 s of processor time, not with more than 1 GiB. Collections that broke a promise are kept. The same
arguments make the same faults. Status 0 when every run kept its promises. With --verifie the
program is topodata, which goes on after every fault: its statuses are 0, 1 and 2, it never aborts,
where it finds no error (0 or 1) the topomine beside it ends with status 0, and where it says nothing
that it did not say of the sound collection the table is that of the sound collection.
"""
import argparse
import collections
import csv
import io
import os
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
from concurrent.futures import ThreadPoolExecutor

BASES = [f"mesh_case_{i}" for i in range(1, 9)]
FINS = [".def", "_nrm.blck", "_nrm.face", "_nrm.edge", "_nrm.vrtx"]
# Seconds of processor time, as other work on the machine must not count; a run that waits for
# something is ended after ATTENTE_S.
LIMITE_S, ATTENTE_S, LIMITE_KIO = 10, 120, 1 << 20
NOMBRES = [b"1e999", b"99999999999999999999", b"nan", b"-", b"", b" ", b"12a", b"1,5", b"2147483648",
           b"-2147483648", b"0", b"-1", b"7", b"&#0;", b"<!-- x -->", b"<![CDATA[3]]>", b"1" * 400]
FAUTE = re.compile(rb"^base: bool Base::load_\w+\(\): Assertion `[^']+' failed\.$", re.M)


def place(o, h, motif):
    """Where a match of the pattern lies; the whole file without one."""
    trouves = [m.span() for m in re.finditer(motif, o)] or [(0, len(o))]
    return h.choice(trouves)


def tranche(o, h):
    a = h.randrange(len(o) + 1)
    return a, min(len(o), a + h.choice([1, 4, 64, 1000, len(o)]))


# What damages bytes: where, and what comes there instead.
OCTETS = {
    "octet": (tranche, lambda v, h: bytes([h.choice([h.randrange(256), 0, 0xFF, 60, 62])]) + v[1:]),
    "perte": (tranche, lambda v, h: b""),
    "double": (tranche, lambda v, h: v * h.choice([2, 20])),
    "nuls": (tranche, lambda v, h: b"\0" * h.choice([1, len(v)])),
    "coupe": (lambda o, h: (place(o, h, rb"[<>;\n/\"?!]")[h.randrange(2)], len(o)), lambda v, h: b""),
    "nombre": (lambda o, h: place(o, h, rb"(?<=[>;])[-+.\deE]+(?=[<;])"), lambda v, h: h.choice(NOMBRES)),
    "chiffre": (lambda o, h: place(o, h, rb"(?<=[>;\d.])\d"),  # nothing but the meaning changes
                lambda v, h: b"%d" % h.choice([c for c in range(10) if b"%d" % c != v])),
    "texte long": (lambda o, h: (place(o, h, rb"[>;]")[1],) * 2,
                   lambda v, h: h.choice([b"9", b"a", b" ", b"\xe9", b"-", b"&lt;"]) * 300000),
    "balise": (lambda o, h: place(o, h, rb"</?\w+>"),
               lambda v, h: h.choice([b"", b"<x/>", b"<!--", b"</Face>", b"<Face>", v[:-1], v + v])),
    "element": (lambda o, h: place(o, h, rb"<(\w+)>[^<]*</\1>"), lambda v, h: h.choice([b"", v * 2])),
    "entite": (lambda o, h: place(o, h, rb"(?s)<(Block|Face|Edge|Vertex|piece|raccord)>.*?</\1>"),
               lambda v, h: h.choice([b"", v * 2, v + b"<x>" + v + b"</x>", b"<!-- " + v + b" -->"])),
    "profond": (lambda o, h: (place(o, h, rb"<\w")[0],) * 2,
                lambda v, h: b"<x>" * (n := h.choice([990, 1001, 100000])) + b"</x>" * h.choice([0, n])),
    "attributs": (lambda o, h: (place(o, h, rb"<\w+")[1],) * 2,
                  lambda v, h: b"".join(b' a%d="v"' % i for i in range(h.choice([1, 1000, 1001, 60000])))),
    "freres": (lambda o, h: (place(o, h, rb">")[1],) * 2,
               lambda v, h: h.choice([b"<x/>", b"<!---->", b"<![CDATA[]]>", b"<?xml ?>", b"</x>"]) * 20000),
    "lignes": (lambda o, h: (0, len(o)), lambda v, h: v.replace(b"\n", h.choice([b"\r\n", b"\r", b""]))),
    "utf": (lambda o, h: (0, len(o)), lambda v, h: h.choice([b"", b"\xef\xbb\xbf"]) + v.replace(
        b"ISO-8859-1", b"UTF-8").replace(b"paroi", b"paro\xc3\xaf\xe2")),
    "rien": (lambda o, h: (0, len(o)), lambda v, h: h.choice([b"", h.randbytes(5000)])),
}

# What damages the folder: takes the file's path, which is free, and another file of the collection.
DOSSIER = [lambda f, autre: None, lambda f, autre: f.mkdir(), lambda f, autre: os.mkfifo(f),
           lambda f, autre: shutil.copyfile(autre, f)] + \
    [lambda f, autre, vers=v: f.symlink_to(vers or f.name)  # "": a link to itself
     for v in ("nulle_part", "", "/dev/zero", "/dev/null", "/proc/self/mem")]


def muter(saine, dossier, hasard):
    """Damages files of the collection; what was done, in words, by file."""
    faits = {}
    for _ in range(hasard.choice([1, 1, 1, 2, 3])):
        # The first bases more often: a fault that ends the run hides the later ones.
        base = BASES[min(hasard.randrange(8), hasard.randrange(8))]
        nom = hasard.choice([f"{base}/{base}{fin}" for fin in FINS] + ["climite.cfg"])
        if nom in faits:
            continue
        fichier = dossier / nom
        if hasard.randrange(8) == 0:
            quoi = hasard.randrange(len(DOSSIER))
            fichier.unlink()
            DOSSIER[quoi](fichier, saine / hasard.choice(["climite.cfg", "mesh_case_1/mesh_case_1_nrm.face"]))
        else:
            quoi = hasard.choice(list(OCTETS))
            ou, faire = OCTETS[quoi]
            o = fichier.read_bytes()
            a, b = ou(o, hasard)
            fichier.write_bytes(o[:a] + faire(o[a:b], hasard) + o[b:])
        faits[nom] = f"{nom}: {quoi}"
    return faits


def lancer(args, commande, erreurs, sortie=os.devnull):
    """Runs a command: its status, seconds of work, KiB; its output goes to the files."""
    def limiter():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (LIMITE_S + 5, LIMITE_S + 5))
        if not args.asan:
            resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    with open(erreurs, "wb") as flux, open(sortie, "wb") as dit:
        fils = subprocess.Popen(commande, stdin=subprocess.DEVNULL, stdout=dit, stderr=flux,
                                preexec_fn=limiter)
    # Not fils.kill: it would wait for the program itself, and take its figures away.
    garde = threading.Timer(ATTENTE_S, os.kill, (fils.pid, signal.SIGKILL))
    garde.start()
    _, etat, usage = os.wait4(fils.pid, 0)
    garde.cancel()
    fils.returncode = os.waitstatus_to_exitcode(etat)
    return fils.returncode, usage.ru_utime + usage.ru_stime, usage.ru_maxrss


def verdict(statut, secondes, kio, erreur, verifie):
    """The outcome in a word, and what promise it breaks."""
    if b"Sanitizer" in erreur or b"runtime error" in erreur:
        return "sanitizer", "un sanitizer parle"
    if secondes > LIMITE_S or kio > LIMITE_KIO:
        return "cher", f"{secondes:.1f} s, {kio} Kio"
    if statut in ((0, 1, 2) if verifie else (0, 2)):
        return f"statut {statut}", None
    if not verifie and statut == -signal.SIGABRT and FAUTE.search(erreur) and b" absent ou vide\n" in erreur:
        return "faute de structure", None
    return f"fin {statut}", f"fin inattendue {statut}"


def dire(args, dossier, temp, *commande):
    """Status of a topodata command and what it writes, without the folder's name."""
    statut = lancer(args, [args.programme, *commande[:1], f"{dossier}/", "nrm", *commande[1:]],
                    temp / "err", temp / "dit")[0]
    return statut, (temp / "dit").read_bytes().replace(bytes(dossier), b"")


def memes_tables(table, saine):
    """Row by row. The last digit of a file may turn the last one of the table, and moves the noise
    of a variance: what no reader can tell is no other table."""
    lignes, saines = (list(csv.reader(io.StringIO(t[1].decode("latin-1")))) for t in (table, saine))
    if table[0] != saine[0] or [len(x) for x in lignes] != [len(x) for x in saines]:
        return False
    for ligne, sain in zip(lignes, saines):
        for i, (a, b) in enumerate(zip(ligne, sain)):
            if a == b:
                continue
            try:
                a, b = float(a), float(b)
                bruit = float(sain[i - 1]) ** 2 * 1e-7 if lignes[0][i].endswith("_var") else 0
            except ValueError:
                return False
            if not abs(a - b) <= max(1e-5 * abs(b), bruit):
                return False
    return True


def ecart_de_table(args, dossier, temp, dit):
    """What `verifie`, which found no error and said `dit`, has let pass."""
    topomine = pathlib.Path(args.programme).with_name("topomine")
    if lancer(args, [str(topomine), f"{dossier}/", "nrm", "out"], os.devnull)[0] != 0:
        return "verifie n'y voit pas d'erreur, topomine echoue"
    if dit == args.dit and not memes_tables(dire(args, dossier, temp, "table", "--format", "csv"), args.table):
        return "verifie n'en dit rien, la table est autre"
    return None


def essayer(args, saine, n):
    """One run: what was done, its outcome, the promise that it broke, seconds and KiB."""
    with tempfile.TemporaryDirectory() as temp:
        temp = pathlib.Path(temp)
        dossier, err = temp / "cases", temp / "err"
        shutil.copytree(saine, dossier)
        faits = muter(saine, dossier, random.Random(args.graine * 1_000_003 + n)).values()
        donnees = [f"{dossier}/", "nrm"]
        commande = ["verifie", *donnees] if args.verifie else [*donnees, "out"]
        statut, secondes, kio = lancer(args, [args.programme, *commande], err, temp / "dit")
        dit = (temp / "dit").read_bytes().replace(bytes(dossier), b"")
        mot, rompu = verdict(statut, secondes, kio, err.read_bytes(), args.verifie)
        if args.verifie and not rompu and statut in (0, 1):
            rompu = ecart_de_table(args, dossier, temp, dit)
            mot += "" if dit != args.dit else ", rien de dit"
        if rompu:
            garde = args.garde / f"essai_{args.graine}_{n}"
            shutil.copytree(dossier, garde, symlinks=True, dirs_exist_ok=True, ignore=lambda d, noms: [
                x for x in noms if not (pathlib.Path(d, x).is_dir() or pathlib.Path(d, x).is_file())])
            shutil.copy(err, garde / "stderr.txt")
            print(f"essai {n}: {rompu} ({', '.join(faits)})", flush=True)
    return mot, rompu, secondes, kio


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("--programme", required=True)
    p.add_argument("--make-cases", required=True)
    p.add_argument("--cas", type=pathlib.Path, help="a sound collection instead of one that is made")
    p.add_argument("--nombre", type=int, default=1000)
    p.add_argument("--graine", type=int, default=1)
    p.add_argument("--jobs", type=int, default=2)
    p.add_argument("--garde", type=pathlib.Path, default=pathlib.Path("mutations"),
                   help="folder for the collections that broke a promise")
    p.add_argument("--verifie", action="store_true", help="run `topodata verifie` instead")
    args = p.parse_args()
    args.asan = b"__asan_init" in pathlib.Path(args.programme).read_bytes()
    with tempfile.TemporaryDirectory() as temp, ThreadPoolExecutor(args.jobs) as file:
        saine = pathlib.Path(temp) / "cases"
        if args.cas:
            shutil.copytree(args.cas, saine)
        else:
            subprocess.run([args.make_cases, str(saine), "--blocs", "8"], check=True)
        for f in saine.glob("*/*_*_[em][xi]*"):  # the other modes
            f.unlink()
        if args.verifie:
            args.dit = dire(args, saine, pathlib.Path(temp), "verifie")[1]
            args.table = dire(args, saine, pathlib.Path(temp), "table", "--format", "csv")
        fins = list(file.map(lambda n: essayer(args, saine, n), range(args.nombre)))
    rompues = sum(1 for f in fins if f[1])
    print(f"{len(fins)} essais, le plus long {max(f[2] for f in fins):.2f} s, "
          f"le plus gros {max(f[3] for f in fins) / 1024:.0f} Mio")
    for mot, nb in sorted(collections.Counter(f[0] for f in fins).items()):
        print(f"{nb:8} {mot}")
    if rompues:
        print(f"{rompues} promesses rompues, gardees dans {args.garde}")
    return 1 if rompues else 0


if __name__ == "__main__":
    sys.exit(main())
