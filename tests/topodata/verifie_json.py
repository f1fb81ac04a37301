"""The JSON of `topodata verifie`, read by another reader: TOPODATA MAKE_CASES."""
import json
import pathlib
import subprocess
import sys
import tempfile

with tempfile.TemporaryDirectory() as temp:
    subprocess.run([sys.argv[2], temp], check=True)
    fichier = pathlib.Path(temp, "mesh_case_2", "mesh_case_2.def")
    octets = fichier.read_bytes().replace(b"<family>paroi_aile<", b"<family>paroi_\xe9\"\\&#127;&#155;<")
    fichier.write_bytes(octets.replace(b"<nb_engine>", b"<nb_engine>-1"))

    def lire(base):
        r = subprocess.run([sys.argv[1], "verifie", temp, "nrm", "--bases", base, "--format", "json"],
                           capture_output=True)
        assert not {"\x7f", "\x9b"} & set(r.stdout.decode("utf-8")), "a terminal would obey"
        return json.loads(r.stdout.decode("utf-8"))

    assert lire("mesh_case_1") == []
    avion, piece = lire("mesh_case_2")
    assert piece == {
        "file": str(fichier), "line": 16, "code": "V060", "severity": "erreur", "kind": "piece",
        "number": "aile", "text": "famille 'paroi_\u00e9\"\\\x7f\x9b' qu'aucun code de climite.cfg ne porte",
        "remedy": "corriger la famille, ou l'ajouter a climite.cfg"}, piece
    assert avion["code"] == "V069" and avion["number"] is None, avion
