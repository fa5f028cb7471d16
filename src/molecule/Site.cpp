#include "molcryst/molecule/Site.h"

#include <ostream>
#include <stdexcept>
#include <string>

#include "molcryst/support/VersionedArchive.h"

namespace molcryst {

namespace {

// The current archive layout; every field is present from this version on.
const int current_version = 6;

THandle<Array<Uncertainty, 3> > copy_of(const THandle<Array<Uncertainty, 3> >& h) {
    return h.unhand() == nullptr ? THandle<Array<Uncertainty, 3> >() : THandle<Array<Uncertainty, 3> >(new Array<Uncertainty, 3>(*h));
}

THandle<AtomicDisplacementParameters> copy_of(const THandle<AtomicDisplacementParameters>& h) {
    return h.unhand() == nullptr ? THandle<AtomicDisplacementParameters>()
                                 : THandle<AtomicDisplacementParameters>(new AtomicDisplacementParameters(*h));
}

}  // namespace

Site::Site() : occupancy_(1.0) {}

Site::Site(Archive& ar) : occupancy_(1.0) { read(ar); }

Site::Site(const Point& p) : orthogonal_(p), fractional_(p), occupancy_(1.0) {}

Site::Site(const Point& orthogonal, const Point& fractional, double occupancy)
    : orthogonal_(orthogonal), fractional_(fractional), occupancy_(occupancy) {}

Site::Site(const Point& orthogonal, const Point& fractional, const UncertainValue& occupancy,
           const THandle<Array<Uncertainty, 3> >& uncertainty, const THandle<AtomicDisplacementParameters>& adp)
    : orthogonal_(orthogonal), fractional_(fractional), occupancy_(occupancy), uncertainty_(uncertainty), adp_(adp) {}

Site::Site(const Site& other)
    : orthogonal_(other.orthogonal_),
      fractional_(other.fractional_),
      occupancy_(other.occupancy_),
      uncertainty_(copy_of(other.uncertainty_)),
      adp_(copy_of(other.adp_)) {}

Site::Site(const Site& other, const CrystalSymmetryTransformation& t, const Cell& cell) : Site(other) {
    transform(t, cell);
}

Site& Site::operator=(const Site& other) {
    if (this == &other) return *this;
    // Copies first, so that a failure leaves this site as it was.
    THandle<Array<Uncertainty, 3> > uncertainty = copy_of(other.uncertainty_);
    THandle<AtomicDisplacementParameters> adp = copy_of(other.adp_);
    orthogonal_ = other.orthogonal_;
    fractional_ = other.fractional_;
    occupancy_ = other.occupancy_;
    uncertainty_ = uncertainty;
    adp_ = adp;
    return *this;
}

Site::~Site() = default;

Site Site::frac(const Point& fractional, const Cell& cell, double occupancy) {
    Site s;
    s.set_frac(fractional, cell);
    s.occupancy_ = UncertainValue(occupancy);
    return s;
}

Site Site::orth(const Point& orthogonal, const Cell& cell, double occupancy) {
    Site s;
    s.set_orth(orthogonal, cell);
    s.occupancy_ = UncertainValue(occupancy);
    return s;
}

void Site::set_orth(const Point& orthogonal, const Cell& cell) {
    orthogonal_ = orthogonal;
    fractional_ = cell.fractional(orthogonal);
}

void Site::set_frac(const Point& fractional, const Cell& cell) {
    fractional_ = fractional;
    orthogonal_ = cell.orthogonal(fractional);
}

void Site::set_coordinates(const Point& orthogonal, const Point& fractional) {
    orthogonal_ = orthogonal;
    fractional_ = fractional;
}

void Site::set_coordinates(const Point& orthogonal) { orthogonal_ = orthogonal; }

void Site::transform(const CrystalSymmetryTransformation& t, const Cell& cell) {
    const Matrix<int, 3, 3>& r = t.rotation();
    THandle<Array<Uncertainty, 3> > uncertainty;
    if (uncertainty_.unhand() != nullptr) {
        // Each new coordinate is a signed sum of old ones: x' = sum R(i,j) x_j.
        uncertainty = THandle<Array<Uncertainty, 3> >(new Array<Uncertainty, 3>());
        for (int i = 0; i < 3; ++i) {
            const double c[3] = {static_cast<double>(r(i, 0)), static_cast<double>(r(i, 1)),
                                 static_cast<double>(r(i, 2))};
            (*uncertainty)[i] = Uncertainty::combine(c, uncertainty_->data(), 3);
        }
    }
    THandle<AtomicDisplacementParameters> adp;
    if (adp_.unhand() != nullptr) adp = THandle<AtomicDisplacementParameters>(
        new AtomicDisplacementParameters(adp_->transformed(r, cell)));
    set_frac(t.apply(fractional_), cell);
    uncertainty_ = uncertainty;
    adp_ = adp;
}

void Site::print(std::ostream& os) const {
    os << "orth " << orthogonal_ << " frac " << fractional_ << " occupancy " << occupancy_;
    if (uncertainty_.unhand() != nullptr)
        os << " uncertainty (" << (*uncertainty_)[0] << ", " << (*uncertainty_)[1] << ", " << (*uncertainty_)[2] << ')';
    if (adp_.unhand() != nullptr) {
        os << " adp ";
        adp_->print(os);
    }
}

void Site::write(Archive& ar) const {
    ar << orthogonal_ << fractional_ << occupancy_.value();
    occupancy_.uncertainty().write(ar);
    if (uncertainty_.unhand() != nullptr) {
        ar << 1;
        uncertainty_->write(ar);
    } else {
        ar << 0;
    }
    write_possibly_null_handle(ar, adp_);
}

void Site::read(Archive& ar) {
    int version = current_version;
    if (VersionedArchive::is_versioned(ar)) {
        version = VersionedArchive::version(ar);
        if (version < 1) {
            Archive::Field field(ar, "Site::read");
            ar.read_error("unsupported archive version " + std::to_string(version));
        }
    }
    // Everything is read into locals first: a failed read leaves the site as it was.
    Point orthogonal;
    Point fractional;
    double occupancy = 0.0;
    Uncertainty occupancy_uncertainty;
    THandle<Array<Uncertainty, 3> > uncertainty;
    THandle<AtomicDisplacementParameters> adp;
    {
        Archive::Field field(ar, "Site::read coordinates");
        ar >> orthogonal >> fractional;
    }
    {
        Archive::Field field(ar, "Site::read occupancy");
        ar >> occupancy;
    }
    if (version >= 4) occupancy_uncertainty.read(ar);
    if (version >= 3) {
        Archive::Field field(ar, "Site::read coordinate uncertainty");
        int present = 0;
        ar >> present;
        if (present != 0) {
            uncertainty = THandle<Array<Uncertainty, 3> >(new Array<Uncertainty, 3>());
            uncertainty->read(ar);
        }
    }
    if (version >= 6) {
        Archive::Field field(ar, "Site::read atomic displacement parameters");
        read_possibly_null_handle(ar, adp);
    }
    orthogonal_ = orthogonal;
    fractional_ = fractional;
    occupancy_ = UncertainValue(occupancy, occupancy_uncertainty);
    uncertainty_ = uncertainty;
    adp_ = adp;
}

bool operator==(const Site& a, const Site& b) {
    if (a.orth() != b.orth() || a.frac() != b.frac() || a.occupancy() != b.occupancy()) return false;
    const Array<Uncertainty, 3>* ua = a.uncertainty().unhand();
    const Array<Uncertainty, 3>* ub = b.uncertainty().unhand();
    if ((ua == nullptr) != (ub == nullptr)) return false;
    if (ua != nullptr && !(*ua == *ub)) return false;
    const AtomicDisplacementParameters* pa = a.atomic_displacement_parameters().unhand();
    const AtomicDisplacementParameters* pb = b.atomic_displacement_parameters().unhand();
    if ((pa == nullptr) != (pb == nullptr)) return false;
    return pa == nullptr || *pa == *pb;
}

bool operator!=(const Site& a, const Site& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const Site& s) {
    s.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Site& s) {
    s.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Site& s) {
    s.read(ar);
    return ar;
}

}  // namespace molcryst
