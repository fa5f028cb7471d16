#include "molcryst/io/CifDisorder.h"

#include <climits>
#include <map>
#include <stdexcept>

#include "molcryst/edit/DisorderSelector.h"

namespace molcryst {

CifDisorder::CifDisorder(const CifBlock& block) : block_(&block) {
    std::map<std::string, std::size_t> index;
    std::vector<std::map<int, Group> > groups;
    for (std::size_t i = 0; i < block.atoms.size(); ++i) {
        const CifAtomSite& site = block.atoms[i];
        if (site.disorder_group == 0) continue;
        auto found = index.emplace(site.disorder_assembly, assemblies_.size());
        if (found.second) {
            assemblies_.push_back(Assembly{site.disorder_assembly, {}, {}});
            groups.push_back(std::map<int, Group>());
        }
        auto group = groups[found.first->second].emplace(site.disorder_group, Group{site.disorder_group, site.occupancy.value(), {}});
        group.first->second.sites.push_back(static_cast<int>(i));
    }
    for (std::size_t a = 0; a < assemblies_.size(); ++a) {
        std::vector<double> occupancies;
        for (const auto& entry : groups[a]) {
            assemblies_[a].groups.push_back(entry.second);
            occupancies.push_back(entry.second.occupancy);
        }
        assemblies_[a].order = DisorderSelector::by_falling_occupancy(occupancies);
    }
}

long long CifDisorder::nstates() const {
    long long n = 1;
    for (const Assembly& a : assemblies_) {
        const long long g = static_cast<long long>(a.groups.size());
        if (n > LLONG_MAX / g) throw std::overflow_error("CifDisorder::nstates the number of states does not fit in a long long");
        n *= g;
    }
    return n;
}

std::vector<int> CifDisorder::state(long long n) const {
    // Mixed radix, assembly 0 the lowest digit; beyond a long long every
    // state number that fits is in range.
    bool bounded = true;
    long long count = 1;
    for (const Assembly& a : assemblies_) {
        const long long g = static_cast<long long>(a.groups.size());
        if (count > LLONG_MAX / g) bounded = false;
        if (bounded) count *= g;
    }
    if (n < 0 || (bounded && n >= count)) throw std::out_of_range("CifDisorder::state: no state " + std::to_string(n));
    std::vector<int> chosen;
    for (const Assembly& a : assemblies_) {
        const long long g = static_cast<long long>(a.groups.size());
        chosen.push_back(a.order[static_cast<std::size_t>(n % g)]);
        n /= g;
    }
    return chosen;
}

CifBlock CifDisorder::in_state(long long n) const {
    const std::vector<int> chosen = state(n);
    std::vector<bool> keep(block_->atoms.size(), true);
    for (std::size_t a = 0; a < assemblies_.size(); ++a)
        for (std::size_t g = 0; g < assemblies_[a].groups.size(); ++g)
            if (static_cast<int>(g) != chosen[a])
                for (int site : assemblies_[a].groups[g].sites) keep[static_cast<std::size_t>(site)] = false;
    CifBlock result = *block_;
    result.atoms.clear();
    for (std::size_t i = 0; i < block_->atoms.size(); ++i)
        if (keep[i]) result.atoms.push_back(block_->atoms[i]);
    return result;
}

}  // namespace molcryst
