"""The module's classes on real structures, checked against what the
molcryst command says of the same files."""

import math

import numpy as np
import pytest

import molcryst
from conftest import run


def mol2_atoms(path):
    """(label, x, y, z) of each atom of a mol2 file, in order."""
    atoms, inside = [], False
    with open(path) as f:
        for line in f:
            if line.startswith("@<TRIPOS>"):
                inside = line.strip() == "@<TRIPOS>ATOM"
                continue
            if inside and line.strip():
                fields = line.split()
                atoms.append((fields[1], float(fields[2]), float(fields[3]), float(fields[4])))
    return atoms


def test_read_cif_gives_the_cell_and_spacegroup_the_report_gives(cif_files):
    for path in cif_files:
        report = molcryst.report(path)["files"][0]["blocks"]
        makers = molcryst.read_cif(path)
        assert [m.name for m in makers] == [b["name"] for b in report], path
        for maker, block in zip(makers, report):
            cell = maker.cell()
            for name in ("a", "b", "c", "alpha", "beta", "gamma"):
                assert getattr(cell, name)() == pytest.approx(block["cell"][name], abs=1e-9), (path, name)
            assert cell.volume() == pytest.approx(block["cell"]["volume"], abs=1e-3)
            spacegroup = cell.spacegroup()
            assert spacegroup.name() == block["spacegroup"]["name"]
            assert spacegroup.number() == block["spacegroup"]["number"]
            assert spacegroup.system_name() == block["spacegroup"]["crystal_system"]
            assert len(spacegroup.operators()) == spacegroup.noperators() == block["spacegroup"]["operators"]


def test_coordinates_are_the_libraries_own(cif_files, command, tmp_path):
    # The mol2 file of `molcryst convert` holds the asymmetric unit's
    # orthogonal coordinates to 4 decimals, atom by atom in the same order.
    for path in cif_files[:8]:
        out = tmp_path / "x.mol2"
        status, _, err = run(command, "convert", path, out)
        assert status == 0, err
        expected = mol2_atoms(out)
        maker = molcryst.read_cif(path)[0]
        labels = [label for m in maker.molecules() for label in m.labels()]
        xyz = np.vstack([m.coordinates() for m in maker.molecules()])
        assert xyz.dtype == np.float64 and xyz.shape == (maker.natoms(), 3)
        assert labels == [a[0] for a in expected], path
        np.testing.assert_allclose(xyz, np.array([a[1:] for a in expected]), atol=6e-5)


def test_coordinates_agree_with_atoms_sites_and_cell():
    maker = molcryst.read_cif(
        str(__import__("conftest").CIF_FOLDER / "cod-2222274-benzimidazolyl-methoxyphenol.cif"))[0]
    molecule = maker.molecule(0)
    orth, frac = molecule.coordinates(), molecule.fractional_coordinates()
    cell = maker.cell()
    for i, atom in enumerate(molecule.atoms()):
        assert np.array_equal(orth[i], atom.orth()) and np.array_equal(frac[i], atom.frac())
        np.testing.assert_allclose(cell.orthogonal(frac[i]), orth[i], atol=1e-9)
    np.testing.assert_allclose(frac @ cell.orth_from_frac().T, orth, atol=1e-9)
    # Distances and angles from the arrays are the library's.
    b = molecule.bond(0)
    i, j = b.atom1().index(), b.atom2().index()
    assert molecule.distance(i, j) == pytest.approx(np.linalg.norm(orth[i] - orth[j]), abs=1e-12)
    assert molecule.bond_atoms()[0].tolist() == [i, j]
    np.testing.assert_allclose(molecule.centroid(), orth.mean(axis=0), atol=1e-9)


def test_molecule_graph_rings_and_sybyl_types(cif_folder):
    maker = molcryst.read_cif(str(cif_folder / "cod-2222274-benzimidazolyl-methoxyphenol.cif"))[0]
    molecule = maker.molecule(0)
    assert len(molecule) == molecule.natoms() == len(molecule.atoms()) == 33
    assert molecule.nbonds() == len(molecule.bonds())
    # A phenol ring, the imidazole and the benzo ring of the benzimidazole.
    rings = molecule.rings()
    assert rings == sorted(rings) and sorted(len(r) for r in rings) == [5, 6, 6]
    for ring in rings:
        assert ring[0] == min(ring)
        for a, b in zip(ring, ring[1:] + ring[:1]):
            assert molecule.bond_index(a, b) >= 0, "ring atoms %s and %s are not bonded" % (a, b)
            assert molecule.atom(a).cyclic()
    five = next(r for r in rings if len(r) == 5)
    assert sorted(len(set(five) & set(r)) for r in rings if r is not five) == [0, 2]
    types = molecule.sybyl_types()
    assert types == [molecule.atom_sybyl_type(i) for i in range(molecule.natoms())]
    for atom, sybyl in zip(molecule.atoms(), types):
        if atom.element() == "H":
            assert sybyl == "H"
        if atom.element() == "C" and not atom.cyclic() and atom.nbonds() == 4:
            assert sybyl == "C.3", atom.label()
    # With bond orders from the geometry, the benzimidazole and phenol rings are aromatic.
    molecule.perceive_bond_orders()
    aromatic = [molecule.atom_sybyl_type(r[0]) for r in rings if len(r) == 6]
    assert aromatic == ["C.ar", "C.ar"]
    assert "aromatic" in [b.type() for b in molecule.bonds()]
    # Bond ends and neighbours are the same atoms, shared with the library.
    bond = molecule.bond(0)
    assert bond.atom2().label() in [n.label() for n in bond.atom1().neighbours()]
    assert molecule.atom_connections(bond.atom1().index()).count(bond.atom2().index()) == 1
    assert bond.type() in ("single", "double", "aromatic", "unknown", "triple", "delocalised")


def test_formulae_of_a_structure_and_from_text(cif_folder):
    path = str(cif_folder / "cod-2222274-benzimidazolyl-methoxyphenol.cif")
    maker = molcryst.read_cif(path)[0]
    block = molcryst.report(path)["files"][0]["blocks"][0]
    crystal = molcryst.CrystalChemicalFormula(maker)
    assert str(crystal) == block["formulae"]["crystal"] == "C15 H14 N2 O2"
    assert crystal.nresidues() == 1
    (residue, multiplier), = crystal.residues()
    assert multiplier == 1.0 and residue.elements() == {"C": 15, "H": 14, "N": 2, "O": 2}
    assert residue == molcryst.MoleculeChemicalFormula(maker.molecule(0))
    assert str(residue) == block["molecules"][0]["chemical_formula"]
    assert crystal.sum_formula().molecular_weight() == pytest.approx(254.28, abs=0.01)

    acetate = molcryst.MoleculeChemicalFormula("C2 H3 O2 -1")
    assert (str(acetate), acetate.charge(), acetate.natoms(), acetate.polymeric()) == ("C2 H3 O2 -1", -1, 7, False)
    assert molcryst.MoleculeChemicalFormula("(C2 H4)n").polymeric()
    hydrate = molcryst.CrystalChemicalFormula("2(C6 H6),H2 O1")
    assert [m for _, m in hydrate.residues()] == [2.0, 1.0]
    assert str(hydrate.sum_formula()) == "C12 H14 O1"


def test_new_crystal_contacts_and_full_expansion_as_the_command_grows_them(cif_files):
    for path in cif_files[:6]:
        maker = molcryst.read_cif(path)[0]
        crystal = molcryst.NewCrystal(maker)
        assert crystal.crystal_maker() is maker
        crystal.add_contact_criterion(molcryst.HBondCriterion())
        assert crystal.ncontact_criteria() == 1
        assert crystal.contact_criteria()[0].class_name() == "HBondCriterion"
        crystal.expand_fully()
        network = molcryst.report(path, expand=True)["files"][0]["blocks"][0]["hbond_network"]
        assert len(crystal.contacts()) == network["contacts"], path
        for contact in crystal.contacts():
            assert contact.type() == 3
            assert 0 < contact.distance() < 3.5


def test_vdw_contacts_lie_within_the_criterion(cif_folder):
    maker = molcryst.read_cif(str(cif_folder / "cod-2205750-nitrothiophene-carbaldehyde.cif"))[0]
    criterion = molcryst.VdWCriterion(max_tolerance=0.0, min_tolerance=-5.0, type=molcryst.ContactType.INTERMOLECULAR)
    crystal = molcryst.NewCrystal(maker)
    crystal.set_contact_criterion(criterion)
    contacts = crystal.contacts()
    assert contacts and crystal.expandable()
    for contact in contacts:
        assert contact.intermolecular()
        assert contact.distance() <= criterion.max_radius()
    fill = maker.create_nonbonded_fill(criterion)
    assert fill.nmolecules() > maker.nmolecules() and fill.contacts()
    crystal.set_packing(True)
    crystal.set_packing_box([0, 0, 0], [1, 1, 1])
    assert crystal.packing() and crystal.packing_box() == ([0.0, 0.0, 0.0], [1.0, 1.0, 1.0])
    packed = crystal.crystal_snapshot()
    assert packed.natoms() > maker.natoms()


def test_cell_and_spacegroup_values():
    sg = molcryst.Spacegroup("P 1 21/c 1", 14, molcryst.Spacegroup.System.MONOCLINIC,
                             ["x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"])
    assert sg.is_centrosymmetric() and sg.noperators() == 4 and sg.operators()[1] == "-x,y+1/2,-z+1/2"
    cell = molcryst.Cell(5.0, 6.0, 7.0, 90.0, 100.0, 90.0, sg)
    assert cell.volume() == pytest.approx(5 * 6 * 7 * math.sin(math.radians(100)))
    p = cell.orthogonal([0.25, 0.5, 0.75])
    np.testing.assert_allclose(cell.fractional(p), [0.25, 0.5, 0.75], atol=1e-12)
    assert cell.spacegroup().name() == "P 1 21/c 1"
