"""./dev run on a folder of the user's, with nothing to install and nothing to build: BUILD."""
import pathlib
import shutil
import subprocess
import sys
import tempfile

RACINE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv[1])
OUTILS = {"cmake": "", "dpkg-query": "shift 2; printf '%s installed\\n' \"$@\""}

with tempfile.TemporaryDirectory() as temp:
    arbre, ici = pathlib.Path(temp, "arbre"), pathlib.Path(temp, "\u00e9t\u00e9")
    for dossier in (arbre / "build", arbre / "bin", ici):
        dossier.mkdir(parents=True)
    shutil.copy(RACINE / "dev", arbre)
    (arbre / "build/CMakeCache.txt").touch()
    (arbre / "build/dev.options").write_text("\n")
    (arbre / "build/topomine").symlink_to(BUILD / "topomine")
    for nom, corps in OUTILS.items():
        outil = arbre / "bin" / nom
        outil.write_text(f"#!/bin/sh\n{corps}\n")
        outil.chmod(0o755)
    subprocess.run([BUILD / "make_cases", ici / "\u00e0_moi", "--blocs", "8"], check=True)
    matrice = ici / "\u00e0_moi/global.cov"

    def lancer():
        r = subprocess.run([arbre / "dev", "run", "\u00e0_moi", "nrm", "out"], cwd=ici,
                           capture_output=True, env={"PATH": f"{arbre}/bin:/usr/bin:/bin"})
        dit = (r.stdout + r.stderr).decode("utf-8")
        assert r.returncode == 0, dit
        return dit.splitlines()[-1]

    assert lancer() == f"Sauvegarde dans {matrice}", "the folder's name comes without a /"
    assert matrice.is_file()
    matrice.unlink()
    matrice.mkdir()
    assert lancer() == f"Sauvegarde \u00e9chou\u00e9e de {matrice}"
