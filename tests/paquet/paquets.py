#!/usr/bin/env python3
"""Makes the source archive and, from it, the Debian packages; installs, uses and removes them.

usage: paquets.py [--build FOLDER] [--racine FOLDER]

As root. --build takes the packages of a Release build of this tree that is already there, instead of
building the archive; the archive is compared with the tree all the same. The clean system is a new one
that debootstrap makes, beside the build; where that is not permitted, the packages go on this system and
off again. --racine makes it in FOLDER, which stays for the next run.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import time

RACINE = pathlib.Path(__file__).resolve().parents[2]
PAQUETS = ("topomine", "libtopomine-dev")
DEBUT = time.monotonic()

# The main job and the manual, where the packages are installed. Says each command.
ESSAI = r"""set -eux
cd "$(mktemp -d)"
make_cases cas --blocs 8
topomine cas/ nrm sortie >traces 2>erreurs
tail -n 1 erreurs
test "$(wc -l <cas/global.cov)" = 50
topodata verifie cas nrm
test "$(topodata table cas nrm --format csv | wc -l)" -gt 8
for page in topomine topodata make_cases topomine-formats $(topodata __completer '' | sed '/^help$/d; s/^/topodata-/'); do
  LC_ALL=C.UTF-8 man "$page" >page
  grep -q NOM page
done
man -w topodata
for commande in topomine topodata make_cases; do
  test -s /usr/share/bash-completion/completions/$commande
done
topodata --version
rm -r "$PWD"
"""


def etape(quoi):
    print(f"== {quoi} ({time.monotonic() - DEBUT:.0f} s)", flush=True)


def lancer(*commande, essais=1, **options):
    """What the command printed. One that asks the network is tried several times."""
    for essai in range(1, essais + 1):
        fini = subprocess.run([str(c) for c in commande], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace", **options)
        if fini.returncode == 0:
            return fini.stdout
        print(f"{' '.join(map(str, commande))}\nended with {fini.returncode}\n{fini.stdout}", flush=True)
        if essai < essais:
            time.sleep(5 * essai)
    sys.exit(1)


def archive_des_sources(build, dossier):
    """The archive holds what git knows, byte for byte, and nothing else."""
    lancer("cpack", "--config", "CPackSourceConfig.cmake", "-B", dossier, cwd=build)
    archive = next(dossier.glob("topomine-*.tar.xz"))
    with tarfile.open(archive) as contenu:
        contenu.extractall(dossier)
        presents = {m.name.partition("/")[2] for m in contenu if not m.isdir()}
    sources = dossier / archive.name.removesuffix(".tar.xz")
    # The clone may be another user's.
    connus = {nom for nom in lancer("git", "-c", f"safe.directory={RACINE}", "ls-files", "-z",
                                    cwd=RACINE).split("\0") if nom}
    autres = {nom for nom in presents & connus
              if (sources / nom).read_bytes() != (RACINE / nom).read_bytes()}
    if presents != connus or autres:
        sys.exit(f"the archive and git differ by {sorted(presents ^ connus | autres)[:20]}")
    print(f"{archive.name}: {len(presents)} files, {archive.stat().st_size} bytes")
    return sources


def construire(sources):
    lancer("cmake", "--preset", "paquet", cwd=sources)
    lancer("cmake", "--build", "--preset", "paquet", "-j", str(os.cpu_count()), cwd=sources)
    return sources / "build-paquet"


class Prefixe:
    """The build is meant for /usr meanwhile; nothing has to be compiled anew for that."""

    def __init__(self, build):
        memoire = dict(re.findall(r"(?m)^(\w+):\w+=(.*)$", (build / "CMakeCache.txt").read_text()))
        if memoire.get("CMAKE_BUILD_TYPE") != "Release" or memoire.get("TOPOMINE_SANITIZE"):
            sys.exit(f"{build} is no Release build")
        self.build, self.ancien = build, memoire["CMAKE_INSTALL_PREFIX"]

    def poser(self, prefixe):
        lancer("cmake", f"-DCMAKE_INSTALL_PREFIX={prefixe}", self.build)

    def __enter__(self):
        self.poser("/usr")

    def __exit__(self, *_):
        self.poser(self.ancien)


def paquets(build, dossier):
    lancer("cpack", "-B", dossier, cwd=build)
    faits = sorted(dossier.glob("*.deb"))
    for deb in faits:
        print(deb.name)
        print(lancer("dpkg-deb", "-f", deb, "Depends", "Recommends", "Installed-Size"), end="")
    print(lancer("lintian", "--allow-root", "--fail-on", "error,warning", *faits), end="")
    print("lintian: no error, no warning")
    return faits


def refus():
    """Why no clean system can be made here, or an empty text."""
    if not shutil.which("debootstrap"):
        return "debootstrap is not installed"
    with tempfile.TemporaryDirectory() as nom:
        for essai in (["mknod", f"{nom}/null", "c", "1", "3"], ["chroot", "/", "true"],
                      ["unshare", "--mount", "mount", "-t", "proc", "proc", nom]):
            fini = subprocess.run(essai, capture_output=True, text=True)
            if fini.returncode != 0:
                return f"{essai[0]}: {fini.stderr.strip()}"
    return ""


def systeme_propre(racine):
    """A bare Debian like this one, from where this one has its packages; None when that has nothing for it."""
    if (racine / "usr/bin/dpkg").exists():
        return racine
    version = lancer("sh", "-c", ". /etc/os-release; echo $VERSION_CODENAME").strip()
    miroirs = lancer("apt-get", "indextargets", "--format", "$(REPO_URI)", "Identifier: Packages",
                     f"Codename: {version}", "Component: main").split()
    for essai in range(3):
        shutil.rmtree(racine, ignore_errors=True)
        # What it mounts goes away with it, however it ends.
        fini = subprocess.run(["unshare", "--mount", "debootstrap", "--variant=minbase", "--include=man-db",
                               version, racine, *miroirs[:1]],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if fini.returncode == 0:
            # Nobody needs it to survive a power cut.
            (racine / "etc/dpkg/dpkg.cfg.d/rapide").write_text("force-unsafe-io\n")
            return racine
        print(f"debootstrap ended with {fini.returncode}\n{fini.stdout[-2000:]}", flush=True)
        time.sleep(5)
    return None


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


def sans_droits(commande):
    return ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", *commande]


def installer_et_oter(debs, racine):
    def dedans(*commande, essais=1):
        # /proc goes away with the command.
        return lancer("unshare", "--mount", "sh", "-c",
                      'mount -t proc proc "$0/proc" && exec chroot "$0" "$@"', racine, *commande,
                      essais=essais, env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root",
                                          "DEBIAN_FRONTEND": "noninteractive", "LC_ALL": "C.UTF-8"})

    def apt(*mots):
        return dedans("apt-get", "-o", "Acquire::Retries=5", *mots, essais=3)

    for deb in debs:
        shutil.copy(deb, racine / "tmp")
    avant = fichiers(racine)
    apt("update", "-qq")
    poses = apt("install", "-y", "--no-install-recommends", *(f"/tmp/{d.name}" for d in debs))
    print("\n".join(re.findall(r"(?m)^Setting up .*[^.\n]", poses)))
    print(dedans("dpkg", "-L", *PAQUETS), end="")
    print(dedans(*sans_droits(["sh", "-c", ESSAI])), end="")
    apt("purge", "-y", *PAQUETS)
    apt("autoremove", "-y", "--purge")
    for deb in debs:
        (racine / "tmp" / deb.name).unlink()
    if restes := sorted(fichiers(racine) ^ avant):
        sys.exit(f"removal leaves, or takes: {restes[:20]}")
    print("removed, nothing left")


def installer_ici(debs):
    """Without a clean system: on this one, which may not have them already."""
    for paquet in PAQUETS:
        if subprocess.run(["dpkg-query", "-W", paquet], capture_output=True).returncode == 0:
            sys.exit(f"{paquet} is installed on this system: it is left alone")
    a_poser = {ligne.split()[-1].removeprefix(".").rstrip("/") for deb in debs
               for ligne in lancer("dpkg-deb", "-c", deb).split("\n")
               if ligne and " -> " not in ligne}
    neufs = sorted(f for f in a_poser if f and not os.path.lexists(f))
    try:
        # Small systems leave manual pages out.
        print(lancer("dpkg", "--path-include=/usr/share/*", "-i", *debs), end="")
        print(lancer("dpkg", "-L", *PAQUETS), end="")
        print(lancer(*sans_droits(["sh", "-c", ESSAI])), end="")
    finally:
        subprocess.run(["dpkg", "--purge", *PAQUETS], stdout=subprocess.DEVNULL, check=True)
    if restes := [f for f in neufs if os.path.lexists(f)]:
        sys.exit(f"removal leaves {restes}")
    print("installed on this system and removed, nothing left")


def main():
    lecteur = argparse.ArgumentParser()
    lecteur.add_argument("--build", type=pathlib.Path)
    lecteur.add_argument("--racine", type=pathlib.Path)
    arguments = lecteur.parse_args()
    if os.geteuid() != 0:
        sys.exit("paquets.py: installing packages takes root")
    with tempfile.TemporaryDirectory() as nom, concurrent.futures.ThreadPoolExecutor() as a_cote:
        dossier = pathlib.Path(nom)
        pourquoi = refus()
        systeme = None if pourquoi else a_cote.submit(systeme_propre, arguments.racine or dossier / "systeme")

        etape("the archive of the sources")
        build = arguments.build
        if not build:
            build = dossier / "sources"
            lancer("cmake", "-S", RACINE, "-B", build, "-DCMAKE_BUILD_TYPE=Release")
        sources = archive_des_sources(build, dossier)
        if arguments.build:
            etape(f"the packages of {build}")
            with Prefixe(build.resolve()):
                debs = paquets(build, dossier)
        else:
            etape("building from the archive")
            build = construire(sources)
            etape("the packages")
            debs = paquets(build, dossier)
        propre = None
        if systeme:
            etape("waiting for debootstrap")
            propre = systeme.result()
            pourquoi = "debootstrap failed three times"
        if propre:
            etape("installed, used and removed in the clean system")
            installer_et_oter(debs, propre)
        else:
            etape(f"no clean system here ({pourquoi}): installed, used and removed on this one")
            installer_ici(debs)
        etape("done")


if __name__ == "__main__":
    main()
