#!/usr/bin/env python3
"""Measures both programs on small files that could cost much.

croissance.py --build BUILD [--octets 1000000] [--seuls MOT,MOT...] [--ecrire DOSSIER]

Each input damages a tiny collection: at most `octets` bytes in all, arranged so that something in
the programs meets many things with many others. Each runs at half the size and at the full one;
what is linear doubles, what is square grows by four. Prints a Markdown table: processor time (user
and system) and peak memory of each program. Status 1 when one needs more than 2 s or 300 MiB, or
dies of a signal other than the SIGABRT of a structural fault.
"""
import argparse
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import sys
import tempfile

BARRE_S, BARRE_MIO = 2.0, 300
ARRET_S, ARRET_MIO = 12, 2048  # where a run is ended
BASES = [f"mesh_case_{i}" for i in range(1, 9)]


def el(nom, *contenu):
    return f"<{nom}>{''.join(map(str, contenu))}</{nom}>"


def case(quoi, numero, contenu):
    """A slot; one that holds no 1 keeps a count in the place of the number, which is shorter."""
    sous = el("NbSub" + quoi, contenu) if contenu > 1 else \
        el("NbSub" + quoi, 1) + el("Sub" + quoi, contenu)
    return el(quoi, el("Numero", numero), sous)


def bloc(n, cases=((1, 1),), nom="b"):
    volumes = "".join(el(v, el("Cell", 1)) for v in ("Exact", "Mor", "Moyen", "NSMB"))
    faces = "".join(case("Face", *c) for c in cases)
    return el(nom, el("Ident", n), el("Type", 30), el("Erikson", el("Cell", 1)),
              el("Volumes", volumes), el("Faces", faces)) + "\n"


def face(n, cases=((1, 1),), codes="", nom="f"):
    return el(nom, el("Ident", n), el("NumCaract", 1), el("Type", 1),
              codes and el("Boundary_Conditions", codes), "".join(case("Edge", *c) for c in cases)) + "\n"


def edge(n, codes="", bouts=(1, 2)):
    return el("e", el("Ident", n), el("NumCaract", 1), codes and el("Boundary_Conditions", codes),
              el("NbVertex", 2), el("Vertices", el("rmin", bouts[0]), el("rmax", bouts[1]))) + "\n"


def xyz(v=0):
    return el("X", v) + el("Y", v) + el("Z", v)


def vertex(n, suite=""):
    return el("v", el("Ident", n), el("Coord", xyz()), suite) + "\n"


def avion(nom="avion"):
    reels = ("fuse_length", "fuse_width", "height", "wing_span", "corde", "wing_area", "sweep")
    return el("reference_avion", el("name", nom), el("family", "f"), *(el(r, 1) for r in reels),
              el("nb_engine", 1))


def piece(nom, famille, suite="", topologie="C", balise="piece"):
    return el(balise, el("nom", nom), el("family", famille), el("topologie", topologie), suite) + "\n"


def raccord(a, b):
    return el("raccord", el("piece", a), el("piece", b), el("type", "C45")) + "\n"


def scene(pieces="", raccords="", nom="avion"):
    return el("definition_scene", avion(nom), el("liste_pieces", pieces), el("liste_raccords", raccords))


ENTETE = "Damas code;BCCODE;Family;\n"
SAINE = {"climite.cfg": ENTETE + "1;1;f;\n", ".def": scene(piece("p", "f")),
         ".blck": el("Blocks", bloc(1)), ".face": el("Faces", face(1)),
         ".edge": el("Edges", edge(1, el("BC", 1))), ".vrtx": el("Vertices", vertex(1), vertex(2))}
SIX = [(s, 1) for s in range(1, 7)]
LOIN = 99999  # a slot beyond the list: each such edge is appended


def plein(octets, motif):
    """motif(1), motif(2)... as many as fit in so many bytes."""
    parts, taille = [], 0
    for i in range(1, octets):
        part = motif(i)
        taille += len(part)
        if taille > octets:
            break
        parts.append(part)
    return "".join(parts)


def mot(octets, lettre="a"):
    return lettre * max(octets, 1)


def code(i):
    return f"<b>{i}</b>"


def climite(octets):
    moitie = octets // 2
    colonnes = plein(moitie * 4 // 5, lambda i: f"c{i};")
    longue = mot(moitie)
    yield "colonnes, lignes courtes", {"climite.cfg": "Damas code;" + colonnes + "\n0"
                                       + ";" * (colonnes.count(";") + 1) + "\n" + plein(moitie, lambda i: f"{i};\n")}
    noms = plein(moitie, lambda i: f"{mot(1000)}{i};")
    nb = noms.count(";")
    yield "colonnes aux longs noms, lignes pleines", {
        "climite.cfg": "Damas code;" + noms + "\n" + plein(moitie, lambda i: f"{i};" + ";" * nb + "\n")}
    yield "longue Family, lignes courtes", {
        "climite.cfg": ENTETE + f"1;1;{longue};\n" + plein(moitie, lambda i: f"{i + 1};\n")}
    yield "long BCCODE, lignes courtes", {
        "climite.cfg": ENTETE + f"1;{longue};\n" + plein(moitie, lambda i: f"{i + 1};\n")}
    yield "code illisible, lignes vides", {
        "climite.cfg": ENTETE + longue + ";1;f;\n" + "\n" * moitie}
    yield "code illisible, lignes courtes d'une autre colonne", {
        "climite.cfg": f"BCCODE;Damas code;Family;\n1;{longue};f;\n" + "1;\n" * (moitie // 3)}
    yield "codes suivis d'un reste", {"climite.cfg": ENTETE + plein(octets, lambda i: f"{i}x;1;f;\n")}
    yield "lignes vides", {"climite.cfg": ENTETE + "\n" * (octets - 40)}
    yield "lignes ordinaires", {"climite.cfg": ENTETE + plein(octets, lambda i: f"{i};1;f{i};\n")}
    yield "le meme code a chaque ligne", {"climite.cfg": ENTETE + plein(octets, lambda i: "1;1;f;\n")}
    yield "points-virgules", {"climite.cfg": ENTETE + mot(octets - 40, ";") + "\n"}
    yield "entete sans fin", {"climite.cfg": mot(octets)}
    yield "colonnes du meme nom", {"climite.cfg": "Damas code;" + "BCCODE;" * (octets // 8) + "\n1;1;\n"}
    yield "blancs avant les champs", {"climite.cfg": ENTETE + "1;" + mot(moitie, " ") + "1;"
                                      + mot(moitie - 60, "\t") + "f;\n"}


def codes(octets):
    moitie, tiers = octets // 2 - 400, octets // 3 - 400
    yield "face aux nombreuses cases d'une edge aux nombreux codes, six fois", {
        ".blck": el("Blocks", bloc(1, SIX)), ".edge": el("Edges", edge(7, plein(moitie, code))),
        ".face": el("Faces", face(1, [(LOIN, 7)] * (moitie // 60)))}
    yield "edge aux nombreux codes, nombreux blocs", {
        ".blck": el("Blocks", plein(moitie, lambda i: bloc(i, SIX))),
        ".face": el("Faces", face(1, [(s, 1) for s in (1, 2, 3, 4)])),
        ".edge": el("Edges", edge(1, plein(moitie, code)))}
    yield "edge aux nombreuses fois le meme code, nombreux blocs", {
        ".blck": el("Blocks", plein(moitie, lambda i: bloc(i, SIX))),
        ".edge": el("Edges", edge(1, plein(moitie, lambda i: code(1))))}
    yield "face aux nombreux codes, nombreux blocs", {
        ".blck": el("Blocks", plein(moitie, lambda i: bloc(i, SIX))),
        ".face": el("Faces", face(1, codes=plein(moitie, code)))}
    yield "long BCCODE, edge aux nombreux codes", {
        "climite.cfg": ENTETE + f"1;{mot(moitie)};f;\n",
        ".edge": el("Edges", edge(1, plein(moitie, lambda i: code(1))))}
    yield "long BCCODE, nombreux blocs", {
        "climite.cfg": ENTETE + f"1;{mot(moitie)};f;\n",
        ".blck": el("Blocks", plein(moitie, lambda i: bloc(i, SIX)))}
    yield "BCCODE suivis d'un reste, edge aux nombreux codes", {
        "climite.cfg": ENTETE + plein(moitie, lambda i: f"{i};1x;f;\n"),
        ".edge": el("Edges", edge(1, plein(moitie, code)))}
    yield "longue Family, face aux nombreux codes", {
        "climite.cfg": ENTETE + f"1;1;{mot(moitie)};\n", ".blck": el("Blocks", bloc(1, SIX)),
        ".face": el("Faces", face(1, codes=plein(moitie, lambda i: code(1))))}
    yield "longues Family, face aux codes tous autres", {
        "climite.cfg": ENTETE + f"0;1;{mot(500)};\n" + plein(moitie, lambda i: f"{i};\n"),
        ".blck": el("Blocks", bloc(1, SIX)), ".face": el("Faces", face(1, codes=plein(moitie, code)))}
    yield "BCCODE aux nombreux chiffres, face aux nombreux codes", {
        "climite.cfg": ENTETE + f"1;{mot(moitie, '0')}1;f;\n", ".blck": el("Blocks", bloc(1, SIX)),
        ".face": el("Faces", face(1, codes=plein(moitie, lambda i: code(1))))}
    yield "familles toutes autres, face aux codes tous autres", {
        "climite.cfg": ENTETE + plein(moitie, lambda i: f"{i};1;f{i};\n"),
        ".blck": el("Blocks", bloc(1, SIX)), ".face": el("Faces", face(1, codes=plein(moitie, code)))}
    yield "face et edge aux codes tous autres", {
        ".face": el("Faces", face(1, codes=plein(moitie, lambda i: code(i + 100000)))),
        ".edge": el("Edges", edge(1, plein(moitie, code)))}
    yield "edge aux nombreux codes, nombreuses faces", {
        ".face": el("Faces", plein(moitie, lambda i: face(i, codes=code(i)))),
        ".edge": el("Edges", edge(1, plein(moitie, code)))}
    yield "familles en C, codes", {
        ".def": scene(plein(tiers, lambda i: piece("p", f"f{i:05}"))),
        "climite.cfg": ENTETE + plein(tiers, lambda i: f"{i};;g{i:05};\n"),
        ".edge": el("Edges", edge(1, plein(tiers, code)))}
    yield "longues familles en C du meme debut, codes", {
        ".def": scene(plein(tiers, lambda i: piece("p", mot(3000) + f"{i:05}"))),
        "climite.cfg": ENTETE + plein(tiers, lambda i: f"{i};;{mot(3000)}{i + 50000:05};\n"),
        ".edge": el("Edges", edge(1, plein(tiers, code)))}


def liens(octets):
    moitie = octets // 2 - 400
    fort = octets - 1000
    yield "une face de nombreux blocs", {".blck": el("Blocks", plein(fort, lambda i: bloc(i, SIX)))}
    yield "une face de nombreux blocs, une case", {".blck": el("Blocks", plein(fort, bloc))}
    yield "cases qui gardent un compte", {
        ".blck": el("Blocks", plein(fort, lambda i: bloc(i, [(s, 7) for s, _ in SIX])))}
    yield "nombreuses faces de la meme edge", {".face": el("Faces", plein(fort, lambda i: face(i, [(1, 1)] * 4)))}
    yield "nombreuses edges du meme vertex", {".edge": el("Edges", plein(fort, lambda i: edge(i, "", (1, 1))))}
    yield "cases au-dela des quatre, gardees par les faces suivantes", {
        ".face": el("Faces", face(1, [(LOIN, 7)] * (moitie // 60)), plein(moitie, lambda i: face(i + 1, [(1, 7)])))}
    yield "cases au-dela des quatre, d'edges toutes autres", {
        ".face": el("Faces", face(1, [(LOIN, i) for i in range(2, moitie // 64)]),
                    plein(moitie, lambda i: face(i + 1, [(1, 7)])))}
    yield "faces absentes", {
        ".blck": el("Blocks", plein(fort, lambda i: bloc(i, [(s, 6 * i + s) for s in range(1, 7)])))}
    yield "blocs aux faces des quatre memes edges", {
        ".blck": el("Blocks", plein(fort // 2, lambda i: bloc(i, [(s, 6 * i + s) for s in range(1, 7)]))),
        ".face": el("Faces", plein(fort // 2, lambda i: face(i, [(s, s) for s in range(1, 5)]))),
        ".edge": el("Edges", *(edge(i, "", (i, i % 4 + 1)) for i in range(1, 5))),
        ".vrtx": el("Vertices", *map(vertex, range(1, 5)))}
    yield "faces de faces voisines, en chaine", {
        ".blck": el("Blocks", plein(fort // 2, lambda i: bloc(i, [(1, i), (4, i + 1)]))),
        ".face": el("Faces", plein(fort // 2, lambda i: face(i, [(1, i), (3, i + 1)])))}
    yield "edges absentes", {".face": el("Faces", face(1, [(LOIN, i) for i in range(2, fort // 64)]))}
    yield "vertices absents", {".edge": el("Edges", plein(fort, lambda i: edge(i, "", (2 * i, 2 * i + 1))))}
    yield "Ident en double", {".blck": el("Blocks", plein(moitie, lambda i: bloc(1))),
                              ".edge": el("Edges", plein(moitie, lambda i: edge(1)))}
    yield "Ident decroissants", {".vrtx": el("Vertices", plein(fort, lambda i: vertex(100000 - i)))}
    yield "un bloc aux nombreuses cases", {".blck": el("Blocks", bloc(1, [(1, 1)] * (fort // 75)))}
    projection = el("Proj", el("Famille", 1), el("Coord", xyz()), el("Normale", xyz()))
    yield "un vertex aux nombreuses projections", {
        ".vrtx": el("Vertices", vertex(1, plein(fort, lambda i: projection)))}


def scenes(octets):
    moitie, fort = octets // 2 - 400, octets - 1000
    yield "long nom de piece, enfants vides", {
        ".def": scene(piece(mot(moitie), "f", "<special>a</special>" + plein(moitie, lambda i: "<s/>")))}
    yield "longue balise de piece, enfants Cell vides", {
        ".def": scene(piece("p", "f", "<special>a</special>" + plein(moitie, lambda i: "<Cell/>"),
                            balise=mot(moitie // 2)))}
    yield "piece sans special aux nombreux enfants", {
        ".def": scene(piece("p", "f", plein(fort, lambda i: "<s>a</s>")))}
    yield "pieces", {".def": scene(plein(fort, lambda i: piece("p", f"f{i}", topologie="H")))}
    yield "pieces sans rien", {".def": scene(plein(fort, lambda i: "<p/>"))}
    yield "pieces aux longs noms", {
        ".def": scene(plein(fort, lambda i: piece(mot(1000), mot(1000) + str(i))))}
    yield "raccords", {".def": scene(raccords=plein(fort, lambda i: raccord("a", "b")))}
    yield "raccords aux longs noms", {
        ".def": scene(raccords=plein(fort, lambda i: raccord(mot(1000), mot(1000))))}
    yield "long nom de l'avion", {".def": scene(nom=mot(fort))}


def nombres(octets):
    fort = octets - 1000
    moitie = octets // 2 - 400
    for nom, texte in (("chiffres", mot(fort, "9")), ("zeros", "0." + mot(fort, "0") + "1"),
                       ("exposant", "1e" + mot(fort, "9")), ("lettres", mot(fort)),
                       ("blancs", mot(fort, " ") + "1")):
        yield f"un nombre de {nom}", {
            ".blck": el("Blocks", bloc(1).replace("<Cell>1<", f"<Cell>{texte}<", 1))}
    yield "un long reste, devant tous les nombres", {
        ".blck": el("Blocks", bloc(1).replace("<Cell>1<", f"<Cell>{mot(moitie)}<", 1),
                    plein(moitie, lambda i: bloc(i + 1)))}
    yield "un reste, devant tous les nombres", {
        ".vrtx": el("Vertices", plein(fort, lambda i: vertex(i if i > 1 else "1,5")))}
    yield "un reste par nombre", {
        ".face": el("Faces", face(1, codes=plein(fort, lambda i: code("1x"))))}
    yield "nombres de mille chiffres", {
        ".face": el("Faces", face(1, codes=plein(fort, lambda i: code(mot(1000, "0") + "1"))))}


def fautes(octets):
    """Findings by the hundred thousand."""
    fort = octets - 1000
    vide = plein(fort, lambda i: "<x/>")
    for fin, racine in ((".blck", "Blocks"), (".face", "Faces"), (".edge", "Edges"), (".vrtx", "Vertices")):
        yield f"elements vides dans {racine}", {fin: el(racine, vide)}
    yield "codes vides", {".face": el("Faces", face(1, codes=vide))}
    yield "cases vides", {".blck": el("Blocks", bloc(1).replace("</Faces>", vide + "</Faces>"))}
    yield "projections vides", {
        ".vrtx": el("Vertices", vertex(1, plein(fort, lambda i: "<Proj/>")))}
    yield "commentaires a la place de blocs", {".blck": el("Blocks", plein(fort, lambda i: "<!---->"))}
    yield "caracteres de controle", {".edge": el("Edges", edge(1, code(mot(fort, "\x1b"))))}


def xml(octets):
    fort = octets - 1000
    saine = bloc(1)
    contenus = {
        "mille attributs par element": lambda: plein(
            fort, lambda i: "<a" + "".join(f" a{j}=''" for j in range(1000)) + "/>"),
        "attributs de trop": lambda: "<a" + plein(fort, lambda i: f" a{i}=''") + "/>",
        "attributs aux longs noms": lambda: plein(
            fort, lambda i: "<a" + "".join(f" {mot(900)}{j}=''" for j in range(100)) + "/>"),
        "attributs du meme nom": lambda: "<a" + plein(fort, lambda i: " a=''") + "/>",
        "imbrication": lambda: plein(fort, lambda i: "<a>" * 900 + "</a>" * 900),
        "imbrication de trop": lambda: "<a>" * (fort // 7) + "</a>" * (fort // 7),
        "longue balise, enfants": lambda: "<" + mot(fort // 3) + ">" + plein(fort // 3, lambda i: "<a/>")
                                  + "</" + mot(fort // 3) + ">",
        "commentaires": lambda: plein(fort, lambda i: "<!---->"),
        "un commentaire": lambda: "<!--" + mot(fort) + "-->",
        "commentaire sans fin": lambda: "<!--" * (fort // 4),
        "sections CDATA": lambda: plein(fort, lambda i: "<![CDATA[a]]>"),
        "une section CDATA": lambda: "<![CDATA[" + mot(fort, "]") + "]]>",
        "elements inconnus": lambda: plein(fort, lambda i: "<!x>"),
        "declarations": lambda: plein(fort, lambda i: "<?xml ?>"),
        "entites": lambda: el("a", "&amp;" * (fort // 5)),
        "entites numeriques": lambda: el("a", "&#x41;" * (fort // 6)),
        "une longue entite": lambda: el("a", "&#x" + mot(fort, "0") + "41;"),
        "entites sans fin": lambda: el("a", "&#x" * (fort // 3) + ";"),
        "esperluettes": lambda: el("a", mot(fort, "&")),
        "un texte": lambda: el("a", mot(fort)),
        "lignes vides": lambda: el("a", mot(fort, "\n")),
        "blancs": lambda: mot(fort, " "),
        "textes": lambda: plein(fort, lambda i: "a<a/>"),
        "balises de fin de trop": lambda: "</a>" * (fort // 4),
        "chevrons": lambda: mot(fort, "<"),
        "octets nuls": lambda: mot(fort, "\0"),
    }
    for nom, contenu in contenus.items():
        yield f"xml : {nom}", {".blck": el("Blocks", saine.replace("</b>", contenu() + "</b>"))}
    yield "xml : declarations devant le premier element", {
        ".blck": plein(fort, lambda i: "<?xml?>") + SAINE[".blck"]}
    yield "xml : entites en UTF-8", {
        ".blck": "\xef\xbb\xbf<?xml version='1.0' encoding='UTF-8'?>"
                 + el("Blocks", saine.replace("</b>", "&#xe9;" * (fort // 6) + "</b>"))}


def entrees(octets):
    for groupe in (climite, codes, liens, scenes, nombres, fautes, xml):
        for nom, fichiers in groupe(octets - 1000):
            yield nom, {f: t.encode("latin-1") for f, t in fichiers.items()}


def ecrire(dossier, fichiers):
    """The tiny collection with these files in the place of the first base's."""
    for base in BASES:
        (dossier / base).mkdir(parents=True, exist_ok=True)
        for fin, texte in SAINE.items():
            chemin = dossier / fin if fin == "climite.cfg" else \
                dossier / base / (base + ("" if fin == ".def" else "_nrm") + fin)
            chemin.write_bytes(fichiers.get(fin, texte.encode("latin-1"))
                               if base == BASES[0] or fin == "climite.cfg" else texte.encode("latin-1"))


def mesurer(commande):
    """Status, seconds of processor time and MiB at the peak."""
    def limiter():
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_CPU, (ARRET_S, ARRET_S))
        resource.setrlimit(resource.RLIMIT_AS, (ARRET_MIO << 20, ARRET_MIO << 20))
    with subprocess.Popen(commande, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, preexec_fn=limiter) as fils:
        _, etat, usage = os.wait4(fils.pid, 0)
        fils.returncode = os.waitstatus_to_exitcode(etat)
    return fils.returncode, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    p.add_argument("--build", type=pathlib.Path, required=True)
    p.add_argument("--octets", type=int, default=1_000_000)
    p.add_argument("--seuls", default="", help="inputs whose name holds one of these words")
    p.add_argument("--depasse", action="store_true", help="show only what is over the bar")
    p.add_argument("--ecrire", type=pathlib.Path, help="keep the collections in this folder")
    args = p.parse_args()
    topodata = next(x for x in (args.build / "topodata", args.build / "app/topodata/topodata") if x.is_file())
    mots, trop = args.seuls.split(","), 0
    print("| input | bytes | program | s | MiB | status |\n|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as temp:
        dossier = pathlib.Path(temp) / "c"
        for (nom, moitie), (_, tout) in zip(entrees(args.octets // 2), entrees(args.octets)):
            if not any(m in nom for m in mots):
                continue
            for contenu in (moitie, tout):
                taille = sum(map(len, contenu.values()))
                ecrire(dossier, contenu)
                if args.ecrire:
                    shutil.copytree(dossier, args.ecrire / f"{nom.replace(' ', '_')}_{taille}")
                d = f"{dossier}/"
                for programme, commande in (
                        ("topomine", [args.build / "topomine", d, "nrm", "out"]),
                        ("table", [topodata, "table", d, "nrm"]),
                        ("verifie", [topodata, "verifie", d, "nrm"]),
                        ("voir", [topodata, "voir", d, "nrm", BASES[0], "--coins", "1", "--voisins", "1"]),
                        ("cherche", [topodata, "voir", d, "nrm", BASES[0], "--cherche", "BCCODE!=7"]),
                        ("exporte", [topodata, "exporte", d, "nrm", BASES[0], "--faces", "--aretes",
                                     "-o", dossier / "e.vtu"])):
                    statut, secondes, mio = mesurer([str(x) for x in commande])
                    fini = statut >= 0 or (programme == "topomine" and statut == -signal.SIGABRT)
                    depasse = secondes > BARRE_S or mio > BARRE_MIO or not fini
                    trop += depasse
                    if depasse or not args.depasse:
                        mot_statut = statut if fini else f"{signal.Signals(-statut).name} : arrete"
                        gras = "**" if depasse else ""
                        print(f"| {nom} | {taille:,} | {programme} | {gras}{secondes:.2f}{gras} | "
                              f"{gras}{mio:.0f}{gras} | {mot_statut} |", flush=True)
    print(f"\n{trop} runs over {BARRE_S:.0f} s or {BARRE_MIO} MiB")
    return 1 if trop else 0


if __name__ == "__main__":
    sys.exit(main())
