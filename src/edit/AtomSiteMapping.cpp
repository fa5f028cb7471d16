#include "molcryst/edit/AtomSiteMapping.h"

#include <stdexcept>

#include "DisorderChecks.h"
#include "molcryst/geometry/UncertainValue.h"
#include "molcryst/molecule/Site.h"
#include "molcryst/support/Range.h"

namespace molcryst {

AtomSiteMapping::AtomSiteMapping(const std::vector<HAtom>& atoms, const std::vector<HSite>& sites) {
    if (atoms.size() != sites.size())
        throw std::invalid_argument(
            "AtomSiteMapping::AtomSiteMapping(atoms, sites) the vectors of atoms and sites differ in length");
    for (std::size_t i = 0; i < atoms.size(); ++i) add_site(atoms[i], sites[i]);
}

void AtomSiteMapping::add_site(const HAtom& atom, const HSite& site, const std::string& label) {
    if (atom.unhand() == nullptr)
        throw std::invalid_argument("AtomSiteMapping::add_site(HAtom, HSite, string) atom is a null pointer");
    map_[atom] = std::make_pair(site, label.empty() ? atom->label() : label);
}

HSite AtomSiteMapping::site(const HAtom& atom) const {
    Map::const_iterator found = map_.find(atom);
    return found == map_.end() ? HSite() : found->second.first;
}

std::string AtomSiteMapping::label(const HAtom& atom) const {
    Map::const_iterator found = map_.find(atom);
    return found == map_.end() ? std::string() : found->second.second;
}

void AtomSiteMapping::apply() const {
    for (const Map::value_type& entry : map_) {
        entry.first->set_site(entry.second.first);
        entry.first->set_label(entry.second.second);
    }
}

namespace disorder_checks {

void check_sites(const AtomSiteMapping& group, const std::string& who) {
    for (const AtomSiteMapping::Map::value_type& entry : group) {
        const HSite& site = entry.second.first;
        if (site.unhand() == nullptr) throw std::runtime_error(who + " a site in AtomSiteMapping is NULL.");
        if (site->occupancy().value() == 0.0)
            throw std::runtime_error(who + " a site occupation factor in AtomSiteMapping is 0.0.");
    }
    // One alternative is occupied as a whole: its atoms agree on the
    // occupancy within three standard uncertainties.
    const std::pair<double, double> first = group.begin()->second.first->occupancy().range(3.0);
    const Range<double> reference(first.first, Range<double>::closed, first.second, Range<double>::closed);
    for (const AtomSiteMapping::Map::value_type& entry : group) {
        const std::pair<double, double> r = entry.second.first->occupancy().range(3.0);
        if (!reference.overlaps(Range<double>(r.first, Range<double>::closed, r.second, Range<double>::closed)))
            throw std::runtime_error(
                who + " site occupation factor is different for different atoms in an AtomSiteMapping.");
    }
}

}  // namespace disorder_checks

}  // namespace molcryst
