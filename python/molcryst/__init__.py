"""molcryst: crystal structures as the molcryst library models them.

Read a CIF file into the library's objects, or report it as the molcryst
command does::

    import molcryst
    for maker in molcryst.read_cif("x.cif"):          # one CrystalMaker per data block
        molecule = maker.molecule(0)
        molecule.coordinates()                         # (natoms, 3) NumPy array, Angstrom
        molecule.sybyl_types(), molecule.rings()
    crystal = molcryst.NewCrystal(maker)
    crystal.add_contact_criterion(molcryst.HBondCriterion())
    crystal.expand_fully()
    molcryst.report("x.cif")                           # the dict of `molcryst report --json x.cif`

Batch runs over collections: ``molcryst batch`` on one machine, and
``python3 -m molcryst.batch --scheduler ADDRESS`` on a Dask cluster.
"""

from ._molcryst import *  # noqa: F401,F403
from ._molcryst import __version__, Error, CifError  # noqa: F401
