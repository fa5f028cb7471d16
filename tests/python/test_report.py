"""report(path) against `molcryst report --json`, and the library's faults
as Python exceptions with the library's messages."""

import json

import pytest

import molcryst
from conftest import run


def test_report_is_the_commands_json_for_every_structure(command, cif_files):
    status, out, err = run(command, "report", "--json", *cif_files)
    assert status == 0, err
    document = json.loads(out)
    for path, entry in zip(cif_files, document["files"]):
        assert molcryst.report(path) == {"molcryst": document["molcryst"], "files": [entry]}, path


@pytest.mark.parametrize("options,flags", [
    ({"surroundings": True, "clashes": True}, ["--surroundings", "--clashes"]),
    ({"add_hydrogens": True, "normalise_hydrogens": True, "expand": True},
     ["--add-hydrogens", "--normalise-hydrogens", "--expand"]),
    ({"disorder_state": 1}, ["--disorder-state", "1"]),
])
def test_report_options_are_the_commands(command, cif_files, options, flags):
    for path in cif_files[::6]:
        status, out, err = run(command, "report", "--json", *flags, path)
        assert molcryst.report(path, **options) == json.loads(out), (path, flags)


def test_report_of_a_saved_crystal(command, cif_files, tmp_path):
    saved = tmp_path / "x.mcr"
    assert run(command, "save", cif_files[3], saved, "--expand")[0] == 0
    status, out, _ = run(command, "report", "--json", saved)
    assert status == 0 and molcryst.report(str(saved)) == json.loads(out)


def test_file_faults_are_cif_errors_with_the_commands_message(command, tmp_path):
    not_cif = tmp_path / "notes.cif"
    not_cif.write_text("these are notes, not a CIF\n")
    no_atoms = tmp_path / "empty.cif"
    no_atoms.write_text("data_x\n_cell_length_a 5\n")
    damaged = tmp_path / "damaged.mcr"
    damaged.write_bytes(b"\x02\x00\x00\x00garbage")
    for path in (tmp_path / "missing.cif", not_cif, no_atoms, damaged):
        status, _, err = run(command, "report", "--json", path)
        assert status == 1
        with pytest.raises(molcryst.CifError) as raised:
            molcryst.report(str(path))
        assert str(raised.value) == err.strip(), path
    with pytest.raises(molcryst.CifError) as raised:
        molcryst.read_cif(str(not_cif))
    assert str(raised.value).startswith(str(not_cif) + ":")
    with pytest.raises(molcryst.Error, match="^" + str(tmp_path / "nowhere") + ": no such file or folder$"):
        molcryst.batch_input(str(tmp_path / "nowhere"))


def test_library_exceptions_keep_their_kind_and_message(cif_files):
    assert issubclass(molcryst.CifError, molcryst.Error) and issubclass(molcryst.Error, RuntimeError)
    maker = molcryst.read_cif(cif_files[0])[0]
    molecule = maker.molecule(0)
    with pytest.raises(IndexError, match="^IndexedTable::at Illegal index: 1000$"):
        molecule.atom(1000)
    with pytest.raises(IndexError):
        maker.molecule(maker.nmolecules())
    with pytest.raises(ValueError, match="Cell"):
        molcryst.Cell(1.0, 1.0, 1.0, 10.0, 10.0, 170.0)
    with pytest.raises(OverflowError, match=r"^MoleculeChemicalFormula: count out of range in \"C99999999999\"\.$"):
        molcryst.MoleculeChemicalFormula("C99999999999")
    with pytest.raises(ValueError, match="disorder state"):
        molcryst.report(cif_files[0], disorder_state=-2)
    with pytest.raises(TypeError):
        molcryst.report(cif_files[0], "--json")


def test_every_class_is_documented():
    for name in ("Cell", "Spacegroup", "Atom", "Bond", "Molecule", "CrystalMaker", "Crystal", "NewCrystal",
                 "ContactCriterion", "VdWCriterion", "HBondCriterion", "MolecularContact", "SumFormula",
                          "MoleculeChemicalFormula", "CrystalChemicalFormula", "BatchOutput", "Error", "CifError"):
        assert getattr(molcryst, name).__doc__, name
    for name in ("read_cif", "report", "report_line", "batch_input"):
        assert getattr(molcryst, name).__doc__, name
