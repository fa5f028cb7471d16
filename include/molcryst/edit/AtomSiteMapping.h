// AtomSiteMapping: one alternative of a disordered region, as the site and
// label that each of its atoms takes when the alternative is chosen.
#ifndef MOLCRYST_EDIT_ATOMSITEMAPPING_H
#define MOLCRYST_EDIT_ATOMSITEMAPPING_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "molcryst/molecule/Atom.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

/// Atom -> (site, label), in the order of the atom handles.
class AtomSiteMapping {
public:
    typedef std::map<HAtom, std::pair<HSite, std::string> > Map;

    AtomSiteMapping() = default;
    /// Atom i takes site i, under its present label; std::invalid_argument
    /// when the two vectors differ in length.
    AtomSiteMapping(const std::vector<HAtom>& atoms, const std::vector<HSite>& sites);

    /// Maps `atom` to `site`; an empty label stands for the atom's present
    /// one. An atom mapped already is mapped anew; a null atom throws
    /// std::invalid_argument.
    void add_site(const HAtom& atom, const HSite& site, const std::string& label = "");
    /// The site of `atom`, or the null handle when it is not mapped.
    HSite site(const HAtom& atom) const;
    /// The label of `atom`, or "" when it is not mapped.
    std::string label(const HAtom& atom) const;
    void remove_site(const HAtom& atom) { map_.erase(atom); }
    void clear() { map_.clear(); }

    /// Gives every mapped atom its site and label.
    void apply() const;

    int natoms() const { return static_cast<int>(map_.size()); }
    bool empty() const { return map_.empty(); }
    Map::const_iterator begin() const { return map_.begin(); }
    Map::const_iterator end() const { return map_.end(); }
    bool contains(const HAtom& atom) const { return map_.count(atom) != 0; }

private:
    Map map_;
};

typedef THandle<AtomSiteMapping> HAtomSiteMapping;
typedef std::vector<HAtomSiteMapping> vector_HAtomSiteMapping;
typedef THandle<vector_HAtomSiteMapping> Hvector_HAtomSiteMapping;
/// Per assembly, its groups.
typedef std::vector<Hvector_HAtomSiteMapping> vector_Hvector_HAtomSiteMapping;
typedef THandle<vector_Hvector_HAtomSiteMapping> Hvector_Hvector_HAtomSiteMapping;

}  // namespace molcryst

#endif
