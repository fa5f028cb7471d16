// Atom3d: the concrete, archivable atom that stores its chemistry and site.
#ifndef MOLCRYST_MOLECULE_ATOM3D_H
#define MOLCRYST_MOLECULE_ATOM3D_H

#include <cstdint>
#include <string>

#include "molcryst/molecule/AtomInGraph.h"
#include "molcryst/molecule/Site.h"

namespace molcryst {

/// An atom with element, formal charge, radius, label, symmetry tag and an
/// optional site. Copies (copy construction, assignment, clone, construction
/// from any Atom) get a site of their own; only set_site and the
/// three-argument constructor share one.
class Atom3d : public AtomInGraph {
public:
    /// Unknown element, charge 0, the element's covalent radius, empty label, symmtag -1, no site.
    Atom3d();
    /// Shares `site`; the label is kept exactly as given.
    Atom3d(const Element& element, std::string label, const HSite& site);
    explicit Atom3d(Archive& ar);
    /// Copies the six properties through the interface.
    explicit Atom3d(const Atom& atom);
    Atom3d(const Atom3d& other);
    Atom3d& operator=(const Atom3d& other);
    ~Atom3d() override;

    HAtom clone() const override;
    Element element() const override { return element_; }
    /// Changes the element alone: radius and label stay.
    void set_element(const Element& element) override { element_ = element; }
    int formal_charge() const override { return formal_charge_; }
    /// Stored in 16 bits: larger values are cut.
    void set_formal_charge(int charge) override { formal_charge_ = static_cast<std::int16_t>(charge); }
    double radius() const override { return radius_; }
    void set_radius(double radius) override { radius_ = radius; }
    std::string label() const override { return label_; }
    /// Stores the label without blanks and tabs at its ends.
    void set_label(const std::string& label) override;
    int symmtag() const override { return symmtag_; }
    void set_symmtag(int tag) override { symmtag_ = tag; }
    HSite site() const override { return site_; }
    /// Shares `site` with whoever else holds it.
    void set_site(const HSite& site) override;
    bool has_site() const override { return site_.unhand() != nullptr; }
    bool archivable() override { return true; }
    void write(Archive& ar) const override;
    /// Reads the current layout, or the version 1 layout from a versioned
    /// archive of version below 2.
    void read(Archive& ar) override;

protected:
    void read_v1_format(Archive& ar);

private:
    Element element_;
    std::int16_t formal_charge_ = 0;  // the interface speaks int; stored in 16 bits
    double radius_ = 0.0;             // Angstroms
    std::string label_;
    int symmtag_ = -1;
    HSite site_;  // null without a position
};

typedef THandle<Atom3d> HAtom3d;

}  // namespace molcryst

#endif
