#include "molcryst/draw/MetalRings.h"

#include <algorithm>
#include <map>
#include <set>

#include "molcryst/diagram/DiagramAtom.h"
#include "molcryst/diagram/DiagramCircle.h"

namespace molcryst {
namespace draw {

namespace {

bool is_metal(const HDiagramNode& node) {
    const DiagramAtom* atom = dynamic_cast<const DiagramAtom*>(node.unhand());
    return atom != nullptr && atom->element().atomic_number() > 0 && !atom->element().non_metal();
}

bool is_atom(const HDiagramNode& node) { return dynamic_cast<const DiagramAtom*>(node.unhand()) != nullptr; }

}  // namespace

std::vector<MetalRings::Ring> MetalRings::find(const ChemicalDiagram& diagram) {
    std::vector<Ring> rings;
    for (ChemicalDiagram::const_node_iterator m = diagram.begin_nodes(); m != diagram.end_nodes(); ++m) {
        if (!is_metal(*m)) continue;
        // The non-metal atoms the metal binds, and the bonds among them.
        std::set<HDiagramNode> bound;
        for (const HDiagramNode& n : (*m)->neighbours())
            if (is_atom(n) && !is_metal(n)) bound.insert(n);
        std::map<HDiagramNode, std::vector<HDiagramNode> > among;
        for (const HDiagramNode& n : bound)
            for (const HDiagramNode& k : n->neighbours())
                if (bound.count(k) != 0) among[n].push_back(k);
        // Each connected set of them in which every atom has exactly two
        // partners is one ring; walk it from its lowest index.
        std::set<HDiagramNode> seen;
        std::vector<std::pair<int, std::vector<HDiagramNode> > > found;
        for (const HDiagramNode& start : bound) {
            if (seen.count(start) != 0) continue;
            std::vector<HDiagramNode> component(1, start);
            seen.insert(start);
            for (std::size_t k = 0; k < component.size(); ++k)
                for (const HDiagramNode& n : among[component[k]])
                    if (seen.insert(n).second) component.push_back(n);
            if (component.size() != 5 && component.size() != 6) continue;
            bool cycle = true;
            for (const HDiagramNode& n : component) cycle = cycle && among[n].size() == 2;
            if (!cycle) continue;
            HDiagramNode first = component[0];
            for (const HDiagramNode& n : component)
                if (n->index() < first->index()) first = n;
            std::vector<HDiagramNode> ordered(1, first);
            const std::vector<HDiagramNode>& two = among[first];
            HDiagramNode next = two[0]->index() < two[1]->index() ? two[0] : two[1];
            while (next != first) {
                const HDiagramNode previous = ordered.back();
                ordered.push_back(next);
                const std::vector<HDiagramNode>& pair = among[next];
                next = pair[0] == previous ? pair[1] : pair[0];
            }
            found.push_back(std::make_pair(first->index(), ordered));
        }
        std::sort(found.begin(), found.end(),
                  [](const std::pair<int, std::vector<HDiagramNode> >& a,
                     const std::pair<int, std::vector<HDiagramNode> >& b) { return a.first < b.first; });
        for (const std::pair<int, std::vector<HDiagramNode> >& f : found) rings.push_back(Ring{*m, f.second});
    }
    return rings;
}

int MetalRings::fold(ChemicalDiagram& diagram) {
    const std::vector<Ring> rings = find(diagram);
    if (rings.empty()) return 0;
    std::set<HDiagramNode> circles_before;
    for (ChemicalDiagram::const_node_iterator n = diagram.begin_nodes(); n != diagram.end_nodes(); ++n)
        if (dynamic_cast<const DiagramCircle*>(n->unhand()) != nullptr) circles_before.insert(*n);
    const std::set<HDiagramPiGroup> groups_before = diagram.pi_groups();
    for (const Ring& r : rings)
        for (std::size_t i = 0; i < r.atoms.size(); ++i) {
            diagram.edge(r.metal, r.atoms[i])->set_type(PI_BOND);
            const HDiagramEdge e = diagram.edge(r.atoms[i], r.atoms[(i + 1) % r.atoms.size()]);
            if (e->type() != AROMATIC_BOND) e->set_type(AROMATIC_BOND);
        }
    diagram.derive_aromatic_rings();
    // Circles stay only where a metal binds the ring: the other aromatic
    // rings keep the drawing they had.
    std::set<HDiagramNode> wanted;
    int made = 0;
    for (const HDiagramPiGroup& g : diagram.pi_groups()) {
        wanted.insert(HDiagramNode(g->circle_node()));
        if (groups_before.count(g) == 0) ++made;
    }
    std::vector<HDiagramNode> unwanted;
    for (ChemicalDiagram::const_node_iterator n = diagram.begin_nodes(); n != diagram.end_nodes(); ++n)
        if (dynamic_cast<const DiagramCircle*>(n->unhand()) != nullptr && circles_before.count(*n) == 0 &&
            wanted.count(*n) == 0)
            unwanted.push_back(*n);
    for (const HDiagramNode& n : unwanted) diagram.remove(n);
    diagram.contract_pi_groups();
    return made;
}

}  // namespace draw
}  // namespace molcryst
