"""Makes a large collection of real cases: each base several times over, side by side.

usage: repliquer.py COLLECTION FOLDER TIMES

Copies of a base have their own numbers (blocks, faces, edges, vertices) and share its surfaces, codes
and scene.
"""

import pathlib
import re
import shutil
import sys

# Elements that hold a number of an entity, by kind of file.
NUMEROS = {
    ".blck": ("Ident", "SubFace"),
    ".face": ("Ident", "SubEdge"),
    ".edge": ("Ident", "rmin", "rmax"),
    ".vrtx": ("Ident",),
}
PAS = 100_000


def repliquer(source, cible, fois):
    texte = source.read_bytes()
    sommet = re.search(rb"<(Blocks|Faces|Edges|Vertices)>", texte)
    fin = texte.rindex(b"</" + sommet[1] + b">")
    entete, corps, pied = texte[:sommet.end()], texte[sommet.end():fin], texte[fin:]
    motif = re.compile(rb"(<(?:%s)>\s*)([1-9]\d*)" % b"|".join(n.encode() for n in NUMEROS[source.suffix]))
    with open(cible, "wb") as sortie:
        sortie.write(entete)
        for k in range(fois):
            sortie.write(motif.sub(lambda m: m[1] + str(int(m[2]) + k * PAS).encode(), corps))
        sortie.write(pied)


def main():
    collection, dossier, fois = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), int(sys.argv[3])
    for source in sorted(collection.glob("mesh_case_*/*")):
        cible = dossier / source.relative_to(collection)
        cible.parent.mkdir(parents=True, exist_ok=True)
        if source.suffix not in NUMEROS:
            shutil.copy(source, cible)
        elif source.stem.endswith("_nrm"):
            repliquer(source, cible, fois)
    shutil.copy(collection / "climite.cfg", dossier)


if __name__ == "__main__":
    main()
