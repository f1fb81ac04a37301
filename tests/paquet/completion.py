#!/usr/bin/env python3
"""Types lines with TAB into real shells and compares what stands there then.

usage: completion.py BUILD
"""

import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

RACINE = pathlib.Path(__file__).resolve().parents[2]

# What is typed before TAB, and what the line must be after it; where shells protect names each in its
# way, for bash and for zsh. Two TABs list what is possible.
LIGNES = [
    ("topodata parta", "topodata partage "),
    ("topodata help cov", "topodata help covariance "),
    ("topodata --vers", "topodata --version "),
    ("topodata table ca", "topodata table cas/"),
    ("topodata table cas/ n", "topodata table cas/ nrm "),
    ("topodata table cas/ nrm --norm", "topodata table cas/ nrm --normalise "),
    ("topodata table cas/ nrm --format c", "topodata table cas/ nrm --format csv "),
    ("topodata table cas/ nrm --format=w", "topodata table cas/ nrm --format=weka "),
    ("topodata table cas/ nrm --garde erikson,vol_e", "topodata table cas/ nrm --garde erikson,vol_exa "),
    ("topodata table cas/ nrm --bases une,d", "topodata table cas/ nrm --bases une,deux "),
    ("topodata voir cas/ nrm u", "topodata voir cas/ nrm une "),
    ("topodata table cas/ nrm -o cas/cl", "topodata table cas/ nrm -o cas/climite.cfg "),
    ("topodata table cas/ nrm > cas/cl", "topodata table cas/ nrm > cas/climite.cfg "),
    ("topodata verifie cas/ nrm --seulement erreur,avi", "topodata verifie cas/ nrm --seulement erreur,avis "),
    ("topodata table mon", ("topodata table mon\\ é\\:cas/", "topodata table mon\\ é:cas/")),
    ("topodata table mon\\ é:c", "topodata table mon\\ é:cas/"),
    ("topodata table 'mon é:cas/' n", "topodata table 'mon é:cas/' nrm "),
    ("topodata voir mon\\ é:cas/ nrm d", "topodata voir mon\\ é:cas/ nrm d\\'une\\ =\\$x "),
    ("topodata table ~/mon\\ é:cas/ nrm --bases=u", "topodata table ~/mon\\ é:cas/ nrm --bases=une "),
    ("topomine ca", "topomine cas/"),
    ("topomine cas/ m", "topomine cas/ min "),
    ("make_cases --bl", "make_cases --blocs "),
]
LISTES = [
    ("topodata ", {"table", "partage", "verifie", "help"}),
    ("topodata voir cas/ nrm ", {"une", "deux"}),
    ("topodata verifie --explique V00", {"V001", "V009"}),
    ("topodata table cas/ nrm --garde vol_", {"vol_exa", "vol_moy", "vol_mor", "vol_nsm"}),
]


class Coquille:
    """An interactive shell on a terminal of its own."""

    INVITE = "=PRET="

    def __init__(self, commande, dossier, chemin):
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.chdir(dossier)
            os.execvpe(commande[0], commande,
                       {"PATH": chemin, "HOME": str(dossier), "TERM": "dumb", "PS1": self.INVITE,
                        "COLUMNS": "500", "LC_ALL": "C.UTF-8"})
        self.executer("stty cols 500")

    def lire(self, assez, limite=15):
        """What comes until `assez` finds it enough, or too late."""
        texte, debut = "", time.monotonic()
        while not assez(texte) and time.monotonic() - debut < limite:
            if select.select([self.fd], [], [], 0.1)[0]:
                lu = os.read(self.fd, 65536).decode(errors="replace")
                texte += re.sub(r"\x1b\[[0-9;?]*[a-zA-Z]|\x07|\r", "", lu)
        return texte

    def executer(self, ligne):
        # A prompt may be that of the line before: the one that counts comes after the answer.
        os.write(self.fd, ligne.encode() + b"; echo FAIT$((40 + 2))\n")
        self.lire(lambda texte: texte.endswith(self.INVITE) and "FAIT42" in texte, 30)

    def completer(self, debut, assez, tabs=1):
        """What the terminal shows after the line and its TABs; the line is then thrown away."""
        os.write(self.fd, debut.encode() + b"\t" * tabs)
        texte = self.lire(assez)
        os.write(self.fd, b"\x15")
        self.executer(":")
        return texte

    def fermer(self):
        os.write(self.fd, b"exit\n")
        os.close(self.fd)
        os.waitpid(self.pid, 0)


def derniere_ligne(texte):
    return texte.split("\n")[-1].replace(Coquille.INVITE, "").rstrip()


def essayer(nom, coquille):
    fautes = []
    for debut, attendu in LIGNES:
        if isinstance(attendu, tuple):
            attendu = attendu[nom == "zsh"]
        vu = coquille.completer(debut, lambda t, a=attendu: derniere_ligne(t) == a.rstrip())
        if derniere_ligne(vu) != attendu.rstrip():
            fautes.append(f"{nom}: {debut!r} became {derniere_ligne(vu)!r}, not {attendu!r}")
    for debut, attendus in LISTES:
        vu = coquille.completer(debut, lambda t, a=attendus: a <= set(t.split()), tabs=2)
        if not attendus <= set(vu.split()):
            fautes.append(f"{nom}: {debut!r} proposes {vu!r}, not all of {sorted(attendus)}")
    coquille.fermer()
    return fautes


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    scripts = RACINE / "app" / "completion"
    chemin = f"{build}:/usr/bin:/bin"
    fautes = []
    with tempfile.TemporaryDirectory() as nom:
        dossier = pathlib.Path(nom)
        cas = dossier / "cas"
        subprocess.run([build / "make_cases", cas, "--blocs", "8"], check=True)
        for ancien, nouveau in (("mesh_case_1", "une"), ("mesh_case_2", "deux")):
            (cas / ancien).rename(cas / nouveau)
            for fichier in (cas / nouveau).iterdir():
                fichier.rename(fichier.with_name(fichier.name.replace(ancien, nouveau)))
        for n in range(3, 9):
            shutil.rmtree(cas / f"mesh_case_{n}")
        autre = shutil.copytree(cas, dossier / "mon é:cas") / "deux"
        for fichier in autre.iterdir():
            fichier.rename(fichier.with_name(fichier.name.replace("deux", "d'une =$x")))
        autre.rename(autre.with_name("d'une =$x"))

        bash = Coquille(["bash", "--norc", "--noprofile", "-i"], dossier, chemin)
        bash.executer("bind 'set enable-bracketed-paste off'; bind 'set bell-style none'")
        bash.executer(f"source {scripts}/topomine.bash")
        fautes += essayer("bash", bash)
        if shutil.which("zsh"):
            zsh = Coquille(["zsh", "-f", "-i"], dossier, chemin)
            zsh.executer("unsetopt promptsp promptcr; unset zle_bracketed_paste")
            zsh.executer(f"fpath=({scripts} $fpath); autoload -Uz compinit; compinit -D -u")
            fautes += essayer("zsh", zsh)
    if fautes:
        sys.exit("\n".join(fautes))


if __name__ == "__main__":
    main()
