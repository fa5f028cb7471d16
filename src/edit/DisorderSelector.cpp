#include "molcryst/edit/DisorderSelector.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>

#include "DisorderChecks.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

namespace {

const unsigned long long saturated = std::numeric_limits<unsigned long long>::max();
// steps() lists the whole table; beyond this many entries it refuses rather
// than exhaust memory.
const unsigned long long max_table_entries = 1ULL << 24;

unsigned long long times(unsigned long long a, unsigned long long b) {
    if (a == 0 || b == 0) return 0;
    return a > saturated / b ? saturated : a * b;
}

double first_occupancy(const AtomSiteMapping& group) { return group.begin()->second.first->occupancy().value(); }

}  // namespace

DisorderSelector::DisorderSelector(const HMolecule& molecule, const Hvector_Hvector_HAtomSiteMapping& mapping)
    : MoleculeGeometrySelector(molecule) {
    if (molecule.unhand() == nullptr)
        throw std::invalid_argument("DisorderSelector::DisorderSelector: Invalid molecule.");
    if (mapping.unhand() == nullptr) throw std::invalid_argument("DisorderSelector::DisorderSelector: Invalid mapping.");
    validate_mapping(mapping);
    mapping_ = mapping;
    state_ = HDisorderState(new DisorderState(molecule));
    build();
}

void DisorderSelector::set_mapping(const Hvector_Hvector_HAtomSiteMapping& mapping) {
    if (mapping.unhand() == nullptr) throw std::invalid_argument("DisorderSelector::set_mapping: Invalid mapping.");
    validate_mapping(mapping);
    mapping_ = mapping;
    current_step_element_.clear();
    build();
}

void DisorderSelector::build() {
    order_ = ordered_mapping();
    rank_.assign(order_.size(), std::vector<int>());
    radix_.assign(order_.size(), 1);
    count_ = 1;
    for (std::size_t a = 0; a < order_.size(); ++a) {
        rank_[a].assign(order_[a].size(), 0);
        for (std::size_t k = 0; k < order_[a].size(); ++k) rank_[a][static_cast<std::size_t>(order_[a][k])] = static_cast<int>(k);
        radix_[a] = count_;
        count_ = times(count_, order_[a].size());
    }
    first_step_ = step(0);
}

std::vector<std::vector<double> > DisorderSelector::group_occupancies() const {
    std::vector<std::vector<double> > occupancies;
    for (const Hvector_HAtomSiteMapping& assembly : *mapping_) {
        occupancies.push_back(std::vector<double>());
        for (const HAtomSiteMapping& group : *assembly) occupancies.back().push_back(first_occupancy(*group));
    }
    return occupancies;
}

std::vector<std::vector<int> > DisorderSelector::ordered_mapping() const {
    std::vector<std::vector<int> > order;
    for (const std::vector<double>& occupancies : group_occupancies()) order.push_back(by_falling_occupancy(occupancies));
    return order;
}

std::vector<int> DisorderSelector::by_falling_occupancy(const std::vector<double>& occupancies) {
    std::vector<int> groups(occupancies.size());
    for (std::size_t g = 0; g < groups.size(); ++g) groups[g] = static_cast<int>(g);
    // A NaN, which orders with nothing, goes last.
    auto key = [&](int g) {
        const double v = occupancies[static_cast<std::size_t>(g)];
        return std::isnan(v) ? -std::numeric_limits<double>::infinity() : v;
    };
    std::stable_sort(groups.begin(), groups.end(), [&](int x, int y) { return key(x) > key(y); });
    return groups;
}

std::vector<int> DisorderSelector::step(int i) const {
    if (i < 0 || static_cast<unsigned long long>(i) >= count_)
        throw std::out_of_range("DisorderSelector::set: passed index is off range");
    // Mixed radix: assembly a shows digit (i / r_a) mod g_a, r_a the product
    // of the group counts before it.
    std::vector<int> row(order_.size());
    const unsigned long long n = static_cast<unsigned long long>(i);
    for (std::size_t a = 0; a < order_.size(); ++a) {
        const unsigned long long digit = (n / radix_[a]) % order_[a].size();
        row[a] = order_[a][static_cast<std::size_t>(digit)];
    }
    return row;
}

std::vector<std::vector<int> > DisorderSelector::steps() const {
    const int n = nsteps();
    if (times(static_cast<unsigned long long>(n), std::max<std::size_t>(order_.size(), 1)) > max_table_entries)
        throw std::length_error("DisorderSelector::steps: too many states to list; ask step(i) for one");
    std::vector<std::vector<int> > table;
    table.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) table.push_back(step(i));
    return table;
}

void DisorderSelector::start() { set(0); }

void DisorderSelector::next() {
    if (done()) throw std::runtime_error("DisorderSelector::next no more steps in iteraction.");
    if (current_step_element_.empty()) {
        set(0);
        return;
    }
    const int current = current_step();
    if (current == INT_MAX)
        throw std::overflow_error("DisorderSelector::next the number of the next state does not fit in an int");
    set(current + 1);
}

bool DisorderSelector::done() const {
    if (current_step_element_.empty()) return false;
    return static_cast<unsigned long long>(current_step()) >= count_ - 1;
}

void DisorderSelector::set(int i) {
    std::vector<int> row = step(i);
    std::vector<int> previous;
    previous.swap(current_step_element_);
    const vector_HAtomSiteMapping previous_data = state_->edit_data();
    current_step_element_ = row;
    try {
        state_->set_edit_data(current_edit_data());
        state_->apply();
    } catch (...) {
        // A group that no longer passes (a site changed since) fails before
        // anything moves, and leaves the selector at the state it was in.
        current_step_element_.swap(previous);
        state_->set_edit_data(previous_data);
        throw;
    }
}

int DisorderSelector::nsteps() const {
    if (count_ > static_cast<unsigned long long>(INT_MAX))
        throw std::overflow_error("DisorderSelector::nsteps the number of states does not fit in an int");
    return static_cast<int>(count_);
}

int DisorderSelector::current_step() const {
    if (current_step_element_.empty() || count_ == 0)
        throw std::runtime_error("DisorderSelector::current_step: not identified current step.");
    // The inverse of step(i): the digits read back through the ranks.
    unsigned long long n = 0;
    for (std::size_t a = 0; a < order_.size(); ++a) {
        const unsigned long long digit =
            static_cast<unsigned long long>(rank_[a][static_cast<std::size_t>(current_step_element_[a])]);
        const unsigned long long term = times(digit, radix_[a]);
        if (term == saturated || n > saturated - term || n + term > static_cast<unsigned long long>(INT_MAX))
            throw std::overflow_error("DisorderSelector::current_step the number of the state does not fit in an int");
        n += term;
    }
    return static_cast<int>(n);
}

vector_HAtomSiteMapping DisorderSelector::current_edit_data() const {
    vector_HAtomSiteMapping data;
    for (std::size_t a = 0; a < current_step_element_.size(); ++a)
        data.push_back((*(*mapping_)[a])[static_cast<std::size_t>(current_step_element_[a])]);
    return data;
}

void DisorderSelector::validate_mapping(const Hvector_Hvector_HAtomSiteMapping& mapping) const {
    static const std::string who = "DisorderSelector::validate_mapping";
    if (mapping->empty()) throw std::runtime_error(who + " mapping is empty.");
    std::set<const Atom*> claimed;  // atoms of the assemblies checked so far
    bool shared = false;
    for (const Hvector_HAtomSiteMapping& assembly : *mapping) {
        if (assembly.unhand() == nullptr) throw std::runtime_error(who + " a mapping element is NULL.");
        if (assembly->empty()) throw std::runtime_error(who + " a mapping element is empty.");
        // The first group names the atoms that every group places.
        const HAtomSiteMapping& first = assembly->front();
        if (first.unhand() != nullptr)
            for (const AtomSiteMapping::Map::value_type& entry : *first)
                if (!molecule_->has_atom(entry.first))
                    throw std::runtime_error(who + " an atom in AtomSiteMapping is not in molecule.");
        double sum = 0.0;
        for (const HAtomSiteMapping& group : *assembly) {
            if (group.unhand() == nullptr) throw std::runtime_error(who + " an AtomSiteMapping is NULL.");
            if (group->empty()) throw std::runtime_error(who + " an AtomSiteMapping is empty.");
            disorder_checks::check_sites(*group, who);
            if (group->natoms() != first->natoms())
                throw std::runtime_error(who + " AtomSiteMapping elements for same group have different number of atoms.");
            sum += first_occupancy(*group);
        }
        if (sum > 1.0) throw std::runtime_error(who + " the sum of site occupation factors is greater than 1.0");
        for (const HAtomSiteMapping& group : *assembly)
            for (const AtomSiteMapping::Map::value_type& entry : *group)
                if (!first->contains(entry.first))
                    throw std::runtime_error(who + " AtomSiteMapping elements for same group have different atoms.");
        for (const AtomSiteMapping::Map::value_type& entry : *first)
            if (!claimed.insert(entry.first.unhand()).second) shared = true;
    }
    // Told only once every assembly has passed its own checks.
    if (shared) throw std::runtime_error(who + " found atom shared by two disordered groups.");
}

}  // namespace molcryst
