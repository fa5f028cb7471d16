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

// molecule

#endif
