#!/usr/bin/env python3
"""Installs a build, moves the tree elsewhere, and uses it as a stranger would.

usage: installation.py BUILD

The C++ examples are those of README.md; each is built from an empty folder, by CMake and by
pkg-config, with g++ and (where there is one) clang++, and run on a made collection.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

RACINE = pathlib.Path(__file__).resolve().parents[2]
SEVERE = ["-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Wshadow", "-Werror"]

# All that an installation may hold.
PERMIS = re.compile(
    r"bin/(topomine|topodata|make_cases)"
    r"|include/topomine/(version|(texte|mesh|base|base/lecture|dataset|verifie|app|cgns|vtk)/\w+)\.h"
    r"|lib/(\S+/)?libtopomine\.a|lib/(\S+/)?pkgconfig/topomine\.pc"
    r"|lib/(\S+/)?cmake/topomine/(topomine(Config|ConfigVersion|Targets|Targets-\w+)|FindTinyXML)\.cmake"
    r"|share/(man|doc|bash-completion|zsh)/.*")

PROJET = """cmake_minimum_required(VERSION 3.16)
project(ailleurs LANGUAGES CXX)
foreach(autre 1.2 2.0 0.9)
  find_package(topomine ${autre} CONFIG QUIET)
  if(topomine_FOUND)
    message(FATAL_ERROR "found as version ${autre}")
  endif()
endforeach()
find_package(topomine 1.1 CONFIG REQUIRED)
add_library(milieu SHARED milieu.cpp)
target_link_libraries(milieu PUBLIC topomine::topomine)
add_executable(exemple exemple.cpp)
target_link_libraries(exemple PRIVATE milieu)
"""
MILIEU = """#include "base/base.h"
#include "topomine/version.h"
static_assert(TOPOMINE_VERSION_MAJOR == 1 && TOPOMINE_VERSION_NUMBER >= 10100);
bool charger_tout(Base& base) { return base.load_all(); }
"""


def lancer(*commande, **options):
    fini = subprocess.run([str(c) for c in commande], capture_output=True, text=True,
                          errors="replace", **options)
    if fini.returncode != 0:
        sys.exit(f"{' '.join(map(str, commande))}\nended with {fini.returncode}\n"
                 f"{fini.stdout}{fini.stderr}")
    return fini.stdout


def verifier_fichiers(prefixe):
    fichiers = sorted(str(f.relative_to(prefixe)) for f in prefixe.rglob("*") if not f.is_dir())
    prives = [f for f in fichiers if not PERMIS.fullmatch(f)]
    if prives:
        sys.exit(f"installed, and should not be: {prives}")
    return fichiers


def verifier_entetes(prefixe, compilateur):
    """Each header stands alone, and takes nothing but installed and standard headers."""
    inclus = prefixe / "include" / "topomine"
    for entete in sorted(inclus.rglob("*.h")):
        texte = entete.read_text()
        for nom in re.findall(r'^#include "(.*)"', texte, re.M):
            if not (inclus / nom).exists():
                sys.exit(f"{entete} includes {nom}, which is not installed")
        if etranger := re.findall(r"^#include <(.*[./].*)>", texte, re.M):
            sys.exit(f"{entete} includes {etranger}")
        lancer(compilateur, *SEVERE, "-I", inclus, "-fsyntax-only", "-include", entete, "-x", "c++",
               "/dev/null")


def essayer(exemple, compilateur, prefixe, cas):
    """Builds one example in both ways and runs it beside DATA/."""
    with tempfile.TemporaryDirectory() as nom:
        dossier = pathlib.Path(nom)
        (dossier / "exemple.cpp").write_text(exemple)
        pc = next(prefixe.rglob("topomine.pc")).parent
        drapeaux = lancer("pkg-config", "--cflags", "--libs", "topomine",
                          env={**os.environ, "PKG_CONFIG_PATH": pc}).split()
        lancer(compilateur, *SEVERE, "exemple.cpp", "-o", "par_pkg_config", *drapeaux, cwd=dossier)

        (dossier / "CMakeLists.txt").write_text(PROJET)
        (dossier / "milieu.cpp").write_text(MILIEU)
        lancer("cmake", "-S", ".", "-B", "b", f"-DCMAKE_CXX_COMPILER={compilateur}",
               f"-DCMAKE_PREFIX_PATH={prefixe}", cwd=dossier)
        lancer("cmake", "--build", "b", cwd=dossier)

        (dossier / "DATA").symlink_to(cas)
        produits = []
        for programme in ("par_pkg_config", "b/exemple"):
            avant = set(dossier.iterdir())
            lancer(dossier / programme, cwd=dossier)
            nouveaux = sorted(set(dossier.iterdir()) - avant)
            produits.append([f.read_bytes() for f in nouveaux])
            for f in nouveaux:
                f.unlink()
        if produits[0] != produits[1] or not all(produits[0]):
            sys.exit(f"an example of README.md writes nothing, or not twice the same:\n{exemple}")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    exemples = re.findall(r"```cpp\n(.*?)```", (RACINE / "README.md").read_text(), re.S)
    if not exemples:
        sys.exit("README.md has no C++ example")
    with tempfile.TemporaryDirectory() as nom:
        pose, prefixe = pathlib.Path(nom) / "pose", pathlib.Path(nom) / "ailleurs"
        lancer("cmake", "--install", build, "--prefix", pose)
        pose.rename(prefixe)
        fichiers = verifier_fichiers(prefixe)
        cas = pathlib.Path(nom) / "cas"
        lancer(prefixe / "bin" / "make_cases", cas, "--blocs", "8")
        for compilateur in filter(shutil.which, ("g++", "clang++")):
            verifier_entetes(prefixe, compilateur)
            for exemple in exemples:
                essayer(exemple, compilateur, prefixe, cas)
            print(f"{compilateur}: headers alone, {len(exemples)} example(s) by CMake and pkg-config")
        print(f"{len(fichiers)} files installed")


if __name__ == "__main__":
    main()
