"""Reads what `topodata exporte` writes with a reader of others, and compares it with the table.

usage: relecture.py TOPODATA CASES [BASE...]
"""

import csv
import io
import os
import subprocess
import sys
import tempfile

import meshio
import numpy as np

FORMS = {"blocs.vtu": [], "blocs.vtk": [], "faces.vtu": ["--faces"], "edges.vtk": ["--aretes"]}


def run(*words):
    return subprocess.run(words, check=True, capture_output=True, text=True, encoding="latin-1").stdout


def read(path):
    # What meshio says on the way goes into nobody's log.
    mesh = meshio.read(path)
    data = {name: np.concatenate(parts) for name, parts in mesh.cell_data.items()}
    cells = np.concatenate([block.data for block in mesh.cells])
    return {block.type for block in mesh.cells}, mesh.points[cells], data


def volumes(corners):
    """Integral of the trilinear map's Jacobian: two Gauss points per axis are exact."""
    place = np.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0],
                      [0, 0, 1], [1, 0, 1], [1, 1, 1], [0, 1, 1]])
    total = 0
    for point in np.array(np.meshgrid(*[[0.5 - 12**-0.5, 0.5 + 12**-0.5]] * 3)).reshape(3, 8).T:
        near = np.where(place == 1, point, 1 - point)
        slope = [np.where(place[:, a] == 1, 1, -1) * np.delete(near, a, 1).prod(1) for a in range(3)]
        total = total + np.linalg.det(np.einsum("ac,bcx->bax", np.array(slope), corners)) / 8
    return total


def check(topodata, cases, mode, base, folder):
    text = run(topodata, "table", cases, mode, "--bases", base, "--format", "csv")
    table = list(csv.DictReader(io.StringIO(text)))
    got = {}
    for form, options in FORMS.items():
        path = os.path.join(folder, form)
        run(topodata, "exporte", cases, mode, base, "-o", path, *options)
        got[form] = read(path)

    types, corners, data = got["blocs.vtu"]
    assert types == {"hexahedron"} and len(corners) == len(table), (types, len(corners))
    for name, values in data.items():
        if name == "vol_coins":
            continue
        assert np.array_equal(values, [float(row[name]) for row in table]), name
    assert {"erikson", "TypeC", "BC_fam_edge_9999"} <= set(data)
    ours, exact = data["vol_coins"], data["vol_exa"]
    theirs = volumes(corners)
    assert (theirs > 0).all() and np.allclose(theirs, ours, rtol=1e-9, atol=0), base
    # The cells of the cases lie between bilinear faces: only the table's six digits differ.
    assert np.allclose(theirs, exact, rtol=2e-5, atol=0), (base, theirs / exact)

    again = got["blocs.vtk"]
    assert again[0] == types and np.array_equal(again[1], corners), "vtk"
    assert all(np.array_equal(again[2][name], data[name]) for name in data), "vtk"

    # Seen from the faces: as many of each BCCODE per block as the table counts.
    types, corners, faces = got["faces.vtu"]
    assert types == {"quad"}
    for row in table:
        mine = (faces["bloc_1"] == int(row["ident"])) | (faces["bloc_2"] == int(row["ident"]))
        for code in (1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 9999):
            seen = sum(np.count_nonzero(faces[name][mine] == code)
                       for name in faces if name.startswith("BCCODE"))
            assert seen == int(row[f"BC_fam_face_{code}"]), (base, row["ident"], code)
    named = sum(values for name, values in faces.items() if name.startswith("famille_"))
    assert np.array_equal(named, faces["nb_codes"]) and np.array_equal(faces["famille"] > 0, named > 0)
    types, corners, edges = got["edges.vtk"]
    assert types == {"line"} and len(set(edges["ident"])) == len(corners) > len(table)


def main():
    topodata, cases = sys.argv[1:3]
    for base in sys.argv[3:] or [f"mesh_case_{n}" for n in range(1, 9)]:
        for mode in ("ext", "nrm", "min"):
            with tempfile.TemporaryDirectory() as folder:
                check(topodata, cases, mode, base, folder)


main()
