#include "molcryst/molecule/Atom3d.h"

#include "molcryst/molecule/Site.h"
#include "molcryst/support/StringFunctions.h"
#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

namespace {
HSite copy_of(const HSite& site) { return site.unhand() == nullptr ? HSite() : HSite(new Site(*site)); }
}  // namespace

Atom3d::Atom3d() : radius_(element_.covalent_radius()) {}

Atom3d::Atom3d(const Element& element, std::string label, const HSite& site)
    : element_(element), radius_(element.covalent_radius()), label_(std::move(label)), site_(site) {}

Atom3d::Atom3d(Archive& ar) { read(ar); }

Atom3d::Atom3d(const Atom& atom)
    : element_(atom.element()),
      formal_charge_(static_cast<std::int16_t>(atom.formal_charge())),
      radius_(atom.radius()),
      label_(atom.label()),
      symmtag_(atom.symmtag()),
      site_(copy_of(atom.site())) {}

Atom3d::Atom3d(const Atom3d& other)
    : AtomInGraph(other),
      element_(other.element_),
      formal_charge_(other.formal_charge_),
      radius_(other.radius_),
      label_(other.label_),
      symmtag_(other.symmtag_),
      site_(copy_of(other.site_)) {}

Atom3d& Atom3d::operator=(const Atom3d& other) {
    if (this == &other) return *this;
    AtomInGraph::operator=(other);
    HSite site = copy_of(other.site_);
    element_ = other.element_;
    formal_charge_ = other.formal_charge_;
    radius_ = other.radius_;
    label_ = other.label_;
    symmtag_ = other.symmtag_;
    site_ = site;
    return *this;
}

Atom3d::~Atom3d() {}

HAtom Atom3d::clone() const { return HAtom(new Atom3d(*this)); }

void Atom3d::set_label(const std::string& label) { label_ = trim(label, " \t"); }

void Atom3d::set_site(const HSite& site) { site_ = site; }

void Atom3d::write(Archive& ar) const {
    element_.write(ar);
    ar << static_cast<short>(formal_charge_) << radius_ << label_;
    ar << 0 << 0 << 0.0 << 0.0 << 0.0;  // reserved fields
    ar << symmtag_ << has_site();
    if (has_site()) site_->write(ar);
}

void Atom3d::read(Archive& ar) {
    if (VersionedArchive::is_versioned(ar) && VersionedArchive::version(ar) < 2) {
        read_v1_format(ar);
        return;
    }
    // Read into locals first: a failed read leaves the atom as it was.
    Element element;
    short charge = 0;
    double radius = 0.0, reserved_double = 0.0;
    std::string label;
    int reserved = 0, symmtag = -1;
    bool has = false;
    HSite site;
    {
        Archive::Field field(ar, "Atom3d::read element");
        element.read(ar);
    }
    {
        Archive::Field field(ar, "Atom3d::read formal charge, radius and label");
        ar >> charge >> radius >> label;
    }
    {
        Archive::Field field(ar, "Atom3d::read reserved fields");
        ar >> reserved >> reserved >> reserved_double >> reserved_double >> reserved_double;
    }
    {
        Archive::Field field(ar, "Atom3d::read symmtag and site flag");
        ar >> symmtag >> has;
    }
    if (has) {
        Archive::Field field(ar, "Atom3d::read site");
        ar >> site;
    }
    element_ = element;
    formal_charge_ = charge;
    radius_ = radius;
    label_.swap(label);
    symmtag_ = symmtag;
    site_ = site;
}

void Atom3d::read_v1_format(Archive& ar) {
    Archive::Field field(ar, "Atom3d::read_v1_format");
    Element element;
    unsigned short discarded_short = 0;
    short charge = 0;
    double radius = 0.0, discarded_double = 0.0;
    std::string label;
    int discarded_int = 0, symmtag = -1;
    bool discarded_bool = false;
    element.read(ar);
    ar >> discarded_short >> charge >> radius >> label >> discarded_int >> discarded_int;
    ar >> discarded_double >> discarded_double >> discarded_double >> symmtag >> discarded_bool;
    // Through the setters, so that the label is trimmed; the site stays as it was.
    set_element(element);
    set_formal_charge(charge);
    set_radius(radius);
    set_label(label);
    set_symmtag(symmtag);
}

}  // namespace molcryst
