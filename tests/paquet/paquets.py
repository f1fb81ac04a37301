#!/usr/bin/env python3
"""Makes the source archive and, from it, the Debian packages; installs, uses and removes them.

usage: paquets.py [--racine FOLDER]

As root. The clean system is FOLDER, or a new one that debootstrap makes; where there can be none, the
packages go on this system and off again. --racine leaves its folder in place for the next run.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tarfile
import tempfile

RACINE = pathlib.Path(__file__).resolve().parents[2]
PAQUETS = ("topomine", "libtopomine-dev")

# The main job and the manual, in the clean system.
ESSAI = r"""set -eu
cd /tmp && rm -rf essai && mkdir essai && cd essai
make_cases cas --blocs 8
topomine cas/ nrm sortie >traces 2>erreurs
tail -n 1 erreurs
[ "$(wc -l <cas/global.cov)" = 50 ]
topodata verifie cas nrm
[ "$(topodata table cas nrm --format csv | wc -l)" -gt 8 ]
for page in topomine topodata make_cases topomine-formats $(topodata __completer '' | sed 's/^/topodata-/'); do
  [ "$page" = topodata-help ] || LC_ALL=C.UTF-8 man "$page" >page
  grep -q NOM page
done
for commande in topomine topodata make_cases; do
  test -s /usr/share/bash-completion/completions/$commande
done
man -w topodata
topodata --version
readelf -n /usr/bin/topomine 2>/dev/null | grep -o '"version":"[^"]*"' || true
cd / && rm -rf /tmp/essai
"""


def lancer(*commande, **options):
    fini = subprocess.run([str(c) for c in commande], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", **options)
    if fini.returncode != 0:
        sys.exit(f"{' '.join(map(str, commande))}\nended with {fini.returncode}\n{fini.stdout}")
    return fini.stdout


def archive_des_sources(dossier):
    """The archive holds what git knows, and nothing else."""
    lancer("cmake", "-S", RACINE, "-B", dossier / "sources", "-DCMAKE_BUILD_TYPE=Release")
    lancer("cpack", "--config", "CPackSourceConfig.cmake", "-B", dossier, cwd=dossier / "sources")
    archive = next(dossier.glob("topomine-*.tar.xz"))
    with tarfile.open(archive) as contenu:
        presents = {m.name.partition("/")[2] for m in contenu if not m.isdir()}
        contenu.extractall(dossier)
    connus = set(lancer("git", "ls-files", cwd=RACINE).split("\n")) - {""}
    if presents != connus:
        sys.exit(f"the archive and git differ by {sorted(presents ^ connus)[:20]}")
    print(f"{archive.name}: {len(presents)} files")
    return dossier / archive.name.removesuffix(".tar.xz")


def paquets(sources):
    """Built from the archive alone."""
    lancer("cmake", "--preset", "paquet", cwd=sources)
    lancer("cmake", "--build", "--preset", "paquet", "-j", str(os.cpu_count()), cwd=sources)
    lancer("cpack", cwd=sources / "build-paquet")
    faits = sorted((sources / "build-paquet").glob("*.deb"))
    for deb in faits:
        print(deb.name)
        print(lancer("dpkg-deb", "-f", deb, "Depends", "Recommends", "Installed-Size"), end="")
    print(lancer("lintian", "--allow-root", "--fail-on", "error,warning", *faits), end="")
    return faits


def systeme_propre(racine):
    """A folder with a bare Debian in it, or None."""
    if (racine / "usr/bin/dpkg").exists():
        return racine
    if os.geteuid() != 0 or not shutil.which("debootstrap"):
        return None
    fini = subprocess.run(["debootstrap", "--variant=minbase", "--include=man-db,ca-certificates",
                           "bookworm", racine], stdout=subprocess.DEVNULL)
    return racine if fini.returncode == 0 else None


def fichiers(racine):
    """Everything but what package tools remember."""
    memoire = ("var/lib/dpkg", "var/lib/apt", "var/cache", "var/log", "proc", "sys", "dev", "tmp",
               "var/lib/systemd", "var/lib/man-db")
    tout = set()
    for dossier, sous, noms in os.walk(racine):
        relatif = os.path.relpath(dossier, racine)
        sous[:] = [s for s in sous if os.path.normpath(os.path.join(relatif, s)) not in memoire]
        tout.update(os.path.normpath(os.path.join(relatif, n)) for n in [*noms, *sous])
    return tout


def installer_et_oter(debs, racine):
    def dedans(*commande):
        return lancer("chroot", racine, *commande, env={**os.environ, "DEBIAN_FRONTEND": "noninteractive"})

    shutil.copy("/etc/resolv.conf", racine / "etc/resolv.conf")
    for deb in debs:
        shutil.copy(deb, racine / "tmp")
    avant = fichiers(racine)
    dedans("apt-get", "update", "-qq")
    dedans("apt-get", "install", "-y", "--no-install-recommends", *(f"/tmp/{d.name}" for d in debs))
    print(dedans("dpkg", "-L", *PAQUETS), end="")
    print(dedans("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "sh", "-c", ESSAI), end="")
    dedans("apt-get", "purge", "-y", *PAQUETS)
    dedans("apt-get", "autoremove", "-y", "--purge")
    if restes := sorted(fichiers(racine) ^ avant):
        sys.exit(f"removal leaves, or takes: {restes[:20]}")
    for deb in debs:
        (racine / "tmp" / deb.name).unlink()
    print("removed, nothing left")


def installer_ici(debs):
    """Without a clean system: on this one."""
    lancer("dpkg", "-i", *debs)
    poses = [f for f in lancer("dpkg", "-L", *PAQUETS).split("\n") if f and not os.path.isdir(f)]
    print(lancer("sh", "-c", ESSAI), end="")
    lancer("dpkg", "--purge", *PAQUETS)
    if restes := [f for f in poses if os.path.lexists(f)]:
        sys.exit(f"removal leaves {restes}")
    print("installed on this system and removed, nothing left")


def main():
    lecteur = argparse.ArgumentParser()
    lecteur.add_argument("--racine", type=pathlib.Path)
    racine = lecteur.parse_args().racine
    with tempfile.TemporaryDirectory() as nom:
        dossier = pathlib.Path(nom)
        debs = paquets(archive_des_sources(dossier))
        if propre := systeme_propre(racine or dossier / "systeme"):
            installer_et_oter(debs, propre)
        else:
            installer_ici(debs)


if __name__ == "__main__":
    main()
