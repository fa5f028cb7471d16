// molcryst: every public header of the library.
#ifndef MOLCRYST_MOLCRYST_H
#define MOLCRYST_MOLCRYST_H

// support
#include "molcryst/support/THandle.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/VersionedArchive.h"
#include "molcryst/support/Observer.h"
#include "molcryst/support/Subject.h"
#include "molcryst/support/TARNLog.h"
#include "molcryst/support/StringFunctions.h"
#include "molcryst/support/CaseInsensitiveStringLess.h"
#include "molcryst/support/DatabaseEntryIdentifier.h"
#include "molcryst/support/PolymorphicConstIterator.h"
#include "molcryst/support/PolymorphicIterator.h"
#include "molcryst/support/IndexedTable.h"
#include "molcryst/support/TransformingIterator.h"
#include "molcryst/support/ResizableArray2D.h"
#include "molcryst/support/AtomPredicates.h"
#include "molcryst/support/BondPredicates.h"

// geometry
#include "molcryst/geometry/Array.h"
#include "molcryst/geometry/Vector.h"
#include "molcryst/geometry/Matrix.h"
#include "molcryst/geometry/Jacobi.h"
#include "molcryst/geometry/Point.h"
#include "molcryst/geometry/Point2d.h"
#include "molcryst/geometry/Angle.h"
#include "molcryst/geometry/Uncertainty.h"
#include "molcryst/geometry/UncertainValue.h"
#include "molcryst/geometry/Solid.h"
#include "molcryst/geometry/Box.h"
#include "molcryst/geometry/Plane.h"
#include "molcryst/geometry/Slab.h"
#include "molcryst/geometry/Quaternion.h"
#include "molcryst/geometry/Ellipsoid.h"
#include "molcryst/geometry/Rectangle2d.h"
#include "molcryst/geometry/Transformation.h"
#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/geometry/CrystalSymmetryOperator.h"
#include "molcryst/geometry/CrystalSymmetryTransformation.h"
#include "molcryst/geometry/Spacegroup.h"
#include "molcryst/geometry/Cell.h"
#include "molcryst/geometry/TransformedSolid.h"
#include "molcryst/geometry/FractionalSolid.h"
#include "molcryst/geometry/OrthogonalSolid.h"
#include "molcryst/geometry/TransformedSolidComposite.h"
#include "molcryst/geometry/SymmetryFunctions.h"

// elements
#include "molcryst/elements/Element.h"
#include "molcryst/elements/ElementSet.h"
#include "molcryst/elements/ElementSetFactory.h"

// graph
#include "molcryst/graph/NodeData.h"
#include "molcryst/graph/EdgeData.h"
#include "molcryst/graph/RingSearchIndex.h"
#include "molcryst/graph/Graph.h"
#include "molcryst/graph/Graph_rings.h"
#include "molcryst/graph/OrderedGraph.h"
#include "molcryst/graph/ChemicalGraph.h"

// molecule
#include "molcryst/molecule/BondType.h"
#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Bond.h"
#include "molcryst/molecule/AtomInGraph.h"
#include "molcryst/molecule/BondInGraph.h"
#include "molcryst/molecule/Atom3d.h"
#include "molcryst/molecule/ProteinAtom.h"
#include "molcryst/molecule/Bond3d.h"
#include "molcryst/molecule/BondData.h"
#include "molcryst/molecule/AtomicDisplacementParameters.h"
#include "molcryst/molecule/Site.h"

#endif
