#include "molcryst/edit/ConformationSetting.h"

#include <stdexcept>
#include <unordered_set>
#include <utility>

#include "molcryst/geometry/GeometryFunctions.h"
#include "molcryst/geometry/Transformation.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

const char* const no_path = "ConformationSetting::apply() failed - no path between atoms";
const char* const no_atoms = "ConformationSetting::apply() failed - no atoms to rotate";

typedef OrderedGraph<HAtom, HBond> MoleculeTopology;

/// The atoms reached from `start` without crossing the edge to `excluded`,
/// grown one atom at a time, in the order (and with the verdict) of
/// Graph::nodes_one_side. Two of them grown in turn find the smaller side of
/// a bond at a cost in proportion to that side.
class Side {
public:
    enum State { Growing, Complete, Cycle };

    Side(const MoleculeTopology& graph, const HAtom& start, const HAtom& excluded)
        : graph_(graph), excluded_(excluded) {
        atoms_.push_back(start);
        seen_.insert(start);
    }

    /// Takes in the neighbours of the next atom of the list.
    State step() {
        if (state_ != Growing) return state_;
        const HAtom atom = atoms_[cursor_];
        for (auto n = graph_.node_begin_neighbours(atom), end = graph_.node_end_neighbours(atom); n != end; ++n) {
            if ((*n).unhand() == excluded_.unhand()) {
                if (cursor_ == 0) continue;  // the edge itself
                atoms_.clear();
                return state_ = Cycle;
            }
            if (seen_.insert(*n).second) atoms_.push_back(*n);
        }
        if (++cursor_ == atoms_.size()) state_ = Complete;
        return state_;
    }

    State grow() {
        while (step() == Growing) {
        }
        return state_;
    }

    /// Only meaningful when complete.
    const std::vector<HAtom>& atoms() const { return atoms_; }
    bool contains(const HAtom& atom) const { return seen_.count(atom) != 0; }

private:
    const MoleculeTopology& graph_;
    HAtom excluded_;
    std::vector<HAtom> atoms_;
    std::unordered_set<HAtom> seen_;
    std::size_t cursor_ = 0;
    State state_ = Growing;
};

}  // namespace

ConformationSetting::ConformationSetting() : MoleculeGeometryEdit(HMolecule()), cell_(new Cell()) {}

ConformationSetting::ConformationSetting(const HMolecule& molecule, const HCell& cell)
    : MoleculeGeometryEdit(molecule), cell_(cell.unhand() != nullptr ? cell : HCell(new Cell())) {
    set_graph();
}

ConformationSetting::ConformationSetting(const HMolecule& molecule, const Hvector_HTorsionAngleSetting& torsions,
                                         const HCell& cell)
    : MoleculeGeometryEdit(molecule), cell_(cell.unhand() != nullptr ? cell : HCell(new Cell())) {
    // A null list is taken for an empty one; null elements are refused here
    // rather than failing half way through an apply.
    if (torsions.unhand() != nullptr) {
        for (const HTorsionAngleSetting& t : *torsions)
            if (t.unhand() == nullptr)
                throw std::invalid_argument("ConformationSetting::ConformationSetting: invalid zero torsion handle");
        torsions_ = *torsions;
    }
    set_graph();
}

void ConformationSetting::set_graph() {
    graph_ = molecule_.unhand() != nullptr ? molecule_->graph() : HMoleculeGraph();
}

void ConformationSetting::add_torsion(const HTorsionAngleSetting& t) {
    if (t.unhand() == nullptr) throw std::invalid_argument("ConformationSetting::add_torsion: invalid zero torsion handle");
    torsions_.push_back(t);
}

void ConformationSetting::apply() const {
    if (molecule_.unhand() == nullptr || graph_.unhand() == nullptr) throw std::runtime_error(no_path);
    const Molecule& molecule = *molecule_;
    // Each sited atom gets its own site first, so that sites shared with
    // other molecules stay; the old ones are kept to undo a failure.
    std::vector<std::pair<HAtom, HSite> > old;
    old.reserve(static_cast<std::size_t>(molecule.natoms()));
    try {
        // Recorded before each change, so that a refusal part way undoes exactly what was done.
        for (auto it = molecule.begin_atoms(), end = molecule.end_atoms(); it != end; ++it) {
            const HAtom& atom = *it;
            if (!atom->has_site()) continue;
            old.emplace_back(atom, atom->site());
            atom->set_site(HSite(new Site(*atom->site())));
        }
        for (const HTorsionAngleSetting& t : torsions_) set_torsion(*t);
    } catch (...) {
        for (const auto& entry : old) entry.first->set_site(entry.second);
        throw;
    }
}

void ConformationSetting::set_torsion(const TorsionAngleSetting& t) const {
    if (graph_.unhand() == nullptr) throw std::runtime_error(no_path);
    const MoleculeTopology& graph = *graph_;
    const HAtom* named[] = {&t.atom1_, &t.atom2_, &t.atom3_, &t.atom4_};
    for (const HAtom* a : named)
        if (a->unhand() == nullptr || !(*a)->has_site())
            throw std::runtime_error("ConformationSetting::apply() failed - atom without site");

    // Find the side that moves: on a bond, two sides grown in turn, the first
    // to close being the smaller (the atom2 side wins a tie, since it grows
    // first); between atoms further apart, the whole side of each end away from the path.
    const Side* moving = nullptr;
    Side* sides[2] = {nullptr, nullptr};
    std::vector<HAtom> path;
    if (graph.has_node(t.atom2_) && graph.has_node(t.atom3_) && graph.has_edge(t.atom2_, t.atom3_)) {
        path = {t.atom2_, t.atom3_};
    } else if (!graph.shortest_path(t.atom2_, t.atom3_, path)) {
        throw std::runtime_error(no_path);
    }
    Side side2(graph, t.atom2_, path[1]);
    Side side3(graph, t.atom3_, path[path.size() - 2]);
    sides[0] = &side2;
    sides[1] = &side3;
    if (path.size() == 2) {
        while (moving == nullptr) {
            for (Side* s : sides) {
                const Side::State state = s->step();
                if (state == Side::Cycle) throw std::runtime_error(no_atoms);
                if (state == Side::Complete) {
                    moving = s;
                    break;
                }
            }
        }
    } else {
        if (side2.grow() != Side::Complete || side3.grow() != Side::Complete) throw std::runtime_error(no_atoms);
        moving = side3.atoms().size() < side2.atoms().size() ? &side3 : &side2;
    }
    // A side of its axis atom alone (a terminal atom) has nothing to turn.
    if (moving->atoms().size() < 2) throw std::runtime_error(no_atoms);

    // Turning the atom4 end about atom2 -> atom3 by +d changes the torsion by
    // +d; turning the atom1 end by +d changes it by -d. With both or neither
    // on the moving side no turn can set the torsion.
    const bool moves1 = moving->contains(t.atom1_);
    const bool moves4 = moving->contains(t.atom4_);
    if (moves1 == moves4)
        throw std::runtime_error("ConformationSetting::apply() failed - atoms 1 and 4 are not on the two sides");

    const Point p2 = t.atom2_->site()->orth();
    const Point p3 = t.atom3_->site()->orth();
    const Angle current = torsion_angle(t.atom1_->site()->orth(), p2, p3, t.atom4_->site()->orth());
    const Angle delta = t.angle_ - current;
    // Two axis atoms at one point give no axis to turn about.
    if (p2 == p3) throw std::runtime_error("ConformationSetting::apply() failed - atoms 2 and 3 coincide");
    Transformation rotation;
    rotation.set_rot(p3 - p2, moves4 ? delta : -delta);
    const Point origin = moving == &side2 ? p2 : p3;
    const Cell& cell = *cell_;
    for (const HAtom& atom : moving->atoms()) {
        if (!atom->has_site()) continue;
        const Point p = atom->site()->orth();
        atom->site()->set_orth(Point(rotation * Vector<double, 3>(p - origin)) + origin, cell);
    }
}

}  // namespace molcryst
