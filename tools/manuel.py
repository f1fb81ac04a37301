#!/usr/bin/env python3
"""Makes the manual pages: from docs/manuel/ and docs/formats.md, and from what the programs say.

manuel.py --programmes FOLDER --version 1.1.0 --sortie FOLDER

Commands, arguments, options and examples are those of the programs' own help; only what it does not
say is written down in docs/. Pages are gzipped, in man1/ and man5/.
"""

import argparse
import gzip
import os
import pathlib
import re
import subprocess

DOCS = pathlib.Path(__file__).resolve().parents[1] / "docs"

# Letters that sources in ASCII and old terminals do not have.
GLYPHES = {"é": r"\['e]", "è": r"\[`e]", "ê": r"\[^e]", "ë": r"\[:e]", "à": r"\[`a]", "â": r"\[^a]",
           "ç": r"\[,c]", "î": r"\[^i]", "ï": r"\[:i]", "ô": r"\[^o]", "ù": r"\[`u]", "û": r"\[^u]",
           "É": r"\['E]", "È": r"\[`E]", "Ê": r"\[^E]", "À": r"\[`A]", "Ç": r"\[,C]",
           "œ": r"\[oe]", "«": r"\[Fo]", "»": r"\[Fc]", "—": r"\[em]", "–": r"\[en]",
           "\u00a0": r"\~", "’": "'", "×": r"\[mu]"}


def litteral(texte):
    """Text that roff leaves as it is."""
    texte = texte.replace("\\", r"\e").replace("-", r"\-").replace("`", r"\(ga")
    texte = "".join(GLYPHES.get(c, c) for c in texte)
    if not texte.isascii():
        raise SystemExit(f"manuel: no glyph for a letter of {texte!r}")
    return re.sub(r"(?m)^([.'])", r"\\&\1", texte)


def courant(texte):
    """Running text: `words to type` bold, *places to fill* italic, links as their text."""
    texte = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", texte)
    morceaux = re.split(r"(`[^`]*`|\*\*[^*]+\*\*|\*[^*\s][^*]*\*)", texte)
    roff = ""
    for m in morceaux:
        if m.startswith("`"):
            roff += r"\fB" + litteral(m[1:-1]) + r"\fR"
        elif m.startswith("**"):
            roff += r"\fB" + litteral(m[2:-2]) + r"\fR"
        elif m.startswith("*") and len(m) > 2:
            roff += r"\fI" + litteral(m[1:-1]) + r"\fR"
        else:
            roff += litteral(m)
    return re.sub(r"^([.'])", r"\\&\1", roff)


def verbatim(lignes, debut=False):
    return ("" if debut else ".PP\n") + ".RS 4\n.nf\n" + "".join(litteral(ligne) + "\n" for ligne in lignes) + ".fi\n.RE\n"


def en_roff(markdown):
    """Headings, paragraphs, lists, tables (a term and what it means) and blocks of code."""
    roff, lignes, debut = "", markdown.split("\n"), True
    i = 0
    while i < len(lignes):
        ligne = lignes[i]
        i += 1
        if ligne.startswith("```"):
            bloc = []
            while not lignes[i].startswith("```"):
                bloc.append(lignes[i])
                i += 1
            i += 1
            roff += verbatim(bloc, debut)
        elif titre := re.match(r"(##+) (.*)", ligne):
            if len(titre[1]) == 2:
                roff += ".SH " + courant(titre[2].upper()) + "\n"
            else:
                roff += ".SS " + courant(titre[2]) + "\n"
            debut = True
            continue
        elif ligne.startswith("|"):
            cellules = [c.strip() for c in ligne.strip("|").split("|")]
            if i < len(lignes) and re.match(r"\|[-| :]+\|$", lignes[i]):
                i += 1  # the heading row says what the terms are, which the text before does
                continue
            roff += ".TP\n" + courant(cellules[0]) + "\n" + courant(" ; ".join(filter(None, cellules[1:]))) + "\n"
        elif ligne.strip():
            puce = re.match(r"- (.*)", ligne)
            phrase = [puce[1] if puce else ligne]
            while i < len(lignes) and lignes[i].strip() and not re.match(r"(-|#|\||```)", lignes[i]):
                phrase.append(lignes[i].strip())
                i += 1
            roff += (".IP \\(bu 2\n" if puce else "" if debut else ".PP\n") + courant(" ".join(phrase)) + "\n"
        else:
            continue
        debut = False
    return roff


def sections(markdown):
    """Title, first paragraph, and the sections by name."""
    titre, _, reste = markdown.partition("\n")
    resume, _, corps = reste.strip().partition("\n\n")
    parties = re.split(r"(?m)^## (.*)\n", corps)
    return titre.lstrip("# "), " ".join(resume.split()), dict(zip(parties[1::2], parties[2::2]))


class Aide:
    """The help of a program or command, taken apart."""

    def __init__(self, commande):
        texte = subprocess.run(commande, capture_output=True, text=True, check=True,
                               env={**os.environ, "COLUMNS": "2000", "LC_ALL": "C"}).stdout
        self.resume, self.usage, self.suite = "", "", []
        self.entrees = {}  # heading -> [(what to type, what it does)]
        self.exemples = []
        ou = None  # the list that the line at hand belongs to
        for ligne in texte.split("\n"):
            if usage := re.match(r"[Uu]sage ?: *(.*)", ligne):
                self.usage = usage[1]
            elif titre := re.match(r"(Arguments|Options|Commandes|Chaque .*) ?:$", ligne):
                ou = self.entrees.setdefault(titre[1], [])
            elif re.match(r"Exemples? :$", ligne):
                ou = self.exemples
            elif ligne.startswith("  ") and ou is self.exemples:
                ou.append(ligne.strip())
            elif entree := re.match(r"  (\S.*?)(?:  +(\S.*))?$", ligne):
                if ou is None:
                    ou = self.entrees.setdefault("Options", [])
                ou.append((entree[1], entree[2] or ""))
            elif (suite := ligne.strip()) and ligne.startswith(" "):
                ou[-1] = (ou[-1][0], (ou[-1][1] + " " + suite).strip())
            elif ligne and not self.usage and not self.resume:
                self.resume = ligne
            elif ligne:
                self.suite.append(ligne)

    def termes(self, titre):
        return "".join(f".TP\n\\fB{litteral(quoi)}\\fR\n{courant(dit)}.\n" if dit and dit[-1] not in ".:"
                       else f".TP\n\\fB{litteral(quoi)}\\fR\n{courant(dit)}\n"
                       for quoi, dit in self.entrees.get(titre, []))

    def synopsis(self):
        return f".SH SYNOPSIS\n\\fB{litteral(self.usage)}\\fR\n"

    def fin(self):
        return ".SH EXEMPLES\n" + verbatim(self.exemples, True) if self.exemples else ""


def phrase(texte):
    return texte if texte.endswith((".", ":")) else texte + "."


class Manuel:
    def __init__(self, arguments):
        self.programmes = pathlib.Path(arguments.programmes)
        self.version = arguments.version
        # The day of the version is said once, where its changes are.
        journal = (DOCS.parent / "CHANGELOG.md").read_text()
        self.date = re.search(rf"## \[{re.escape(self.version)}\] - (\d+-\d+-\d+)", journal)[1]
        self.sortie = pathlib.Path(arguments.sortie)

    def aide(self, programme, *mots):
        return Aide([self.programmes / programme, *mots])

    def ecrire(self, nom, section, resume, corps, voir):
        entete = f'.TH {nom.upper()} {section} "{self.date}" "topomine {self.version}" "Manuel de topomine"\n'
        texte = entete + f".SH NOM\n{litteral(nom)} \\- {courant(resume.rstrip('.'))}\n" + corps
        autres = sorted((v for v in voir if v != (nom, section)), key=lambda v: (v[1], v[0]))
        texte += ".SH VOIR AUSSI\n" + ",\n".join(f"\\fB{litteral(n)}\\fR({s})" for n, s in autres) + "\n"
        fichier = self.sortie / f"man{section}" / f"{nom}.{section}.gz"
        fichier.parent.mkdir(parents=True, exist_ok=True)
        # Without a date, so that the same sources give the same bytes.
        fichier.write_bytes(gzip.compress(texte.encode("ascii"), mtime=0))

    def page_de_docs(self, source, nom, section, voir, aide=None):
        titre, resume, parties = sections((DOCS / source).read_text())
        corps = ""
        if aide:
            corps += aide.synopsis()
        for titre, texte in parties.items():
            if aide and titre.lower() == "code de retour":
                corps += self.parties_de_l_aide(aide)
            corps += en_roff(f"## {titre}\n{texte}")
        self.ecrire(nom, section, resume, corps, voir)
        return parties

    def parties_de_l_aide(self, aide):
        corps = ""
        for titre in ("Commandes", "Arguments", "Options"):
            if aide.entrees.get(titre):
                corps += f".SH {titre.upper()}\n" + aide.termes(titre)
        return corps

    def page_de_commande(self, commande, retour, voir):
        aide = self.aide("topodata", "help", commande)
        corps = aide.synopsis() + ".SH DESCRIPTION\n" + courant(phrase(aide.resume)) + "\n"
        corps += "".join(f".PP\n{courant(ligne)}\n" for ligne in aide.suite)
        corps += self.parties_de_l_aide(aide) + aide.fin()
        corps += en_roff(f"## Code de retour\n{retour}")
        self.ecrire(f"topodata-{commande}", 1, aide.resume, corps, voir)

    def page_de_make_cases(self, voir):
        """Its help says it all, statuses too."""
        aide = self.aide("make_cases", "--help")
        *dits, codes = [ligne for ligne in [aide.resume, *aide.suite] if ligne]
        corps = aide.synopsis() + ".SH DESCRIPTION\n"
        corps += "\n.PP\n".join(courant(dit) for dit in dits) + "\n"
        for titre in aide.entrees:
            if titre != "Options":
                corps += f".PP\n{courant(titre.strip())} :\n" + aide.termes(titre)
        corps += self.parties_de_l_aide(aide) + aide.fin() + ".SH CODE DE RETOUR\n"
        corps += courant(codes.removeprefix("Codes de retour : ")) + "\n"
        self.ecrire("make_cases", 1, dits[0].partition(" :")[0], corps, voir)

    def tout(self):
        communes = [("topomine", 1), ("topodata", 1), ("make_cases", 1), ("topomine-formats", 5)]
        self.page_de_docs("formats.md", "topomine-formats", 5, communes)
        self.page_de_docs("manuel/topomine.md", "topomine", 1, communes)
        self.page_de_make_cases(communes)
        if not (self.programmes / "topodata").exists():
            return
        aide = self.aide("topodata", "help")
        commandes = [nom for nom, _ in aide.entrees["Commandes"] if nom != "help"]
        pages = [(f"topodata-{c}", 1) for c in commandes]
        parties = self.page_de_docs("manuel/topodata.md", "topodata", 1, communes + pages, aide)
        for commande in commandes:
            self.page_de_commande(commande, parties["Code de retour"], communes)


def main():
    lecteur = argparse.ArgumentParser()
    lecteur.add_argument("--programmes", required=True)
    lecteur.add_argument("--version", required=True)
    lecteur.add_argument("--sortie", required=True)
    Manuel(lecteur.parse_args()).tout()


if __name__ == "__main__":
    main()
