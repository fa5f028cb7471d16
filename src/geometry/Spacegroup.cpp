#include "molcryst/geometry/Spacegroup.h"

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace molcryst {

namespace {

Spacegroup::System checked_system(int code) {
    if (code < 0 || code > 6)
        throw std::invalid_argument("Spacegroup::Spacegroup(const std::string&, int, int) unknown crystal system");
    return static_cast<Spacegroup::System>(code);
}

// The translation brought into [0, 1); values a rounding error below 1 become 0.
CrystalSymmetryOperator reduced(const CrystalSymmetryOperator& op) {
    Vector<double, 3> t = op.translation();
    for (int i = 0; i < 3; ++i) {
        t[i] -= std::floor(t[i]);
        if (t[i] > 1.0 - 1e-9) t[i] = 0.0;
    }
    return CrystalSymmetryOperator(op.rotation(), t);
}

// Equal rotations, translations equal modulo 1.
bool same_modulo_lattice(const CrystalSymmetryOperator& a, const CrystalSymmetryOperator& b) {
    if (a.rotation() != b.rotation()) return false;
    for (int i = 0; i < 3; ++i) {
        const double d = a.translation()[i] - b.translation()[i];
        if (std::fabs(d - std::round(d)) > 1e-6) return false;
    }
    return true;
}

}  // namespace

Spacegroup::Spacegroup() : name_("P1"), number_(1), system_(Triclinic), operators_(1) {}

Spacegroup::Spacegroup(const std::string& name, int number, System system)
    : name_(name), number_(number), system_(system) {}

Spacegroup::Spacegroup(const std::string& name, int number, int system)
    : name_(name), number_(number), system_(checked_system(system)) {}

Spacegroup::Spacegroup(const std::string& name, int number, System system,
                       const std::vector<CrystalSymmetryOperator>& operators)
    : name_(name), number_(number), system_(system), operators_(operators) {}

Spacegroup::Spacegroup(const std::string& name, int number, System system, const std::vector<std::string>& triplets)
    : name_(name), number_(number), system_(system) {
    operators_.reserve(triplets.size());
    for (const std::string& t : triplets) operators_.push_back(CrystalSymmetryOperator(t));
}

Spacegroup Spacegroup::generate(const std::string& name, int number, System system,
                                const std::vector<CrystalSymmetryOperator>& generators) {
    constexpr std::size_t largest = 192;  // used in the lambda without capture
    std::vector<CrystalSymmetryOperator> group(1);
    auto add = [&group](const CrystalSymmetryOperator& op) {
        const CrystalSymmetryOperator r = reduced(op);
        for (const CrystalSymmetryOperator& present : group)
            if (same_modulo_lattice(present, r)) return;
        if (group.size() >= largest)
            throw std::invalid_argument(
                "Spacegroup::generate(const std::string&, int, System, const std::vector<CrystalSymmetryOperator>&) "
                "the generators form no spacegroup");
        group.push_back(r);
    };
    for (const CrystalSymmetryOperator& g : generators) add(g);
    // Closure: every product of a member with a member, breadth first; the
    // list grows while it is walked.
    for (std::size_t i = 0; i < group.size(); ++i) {
        for (std::size_t j = 0; j < group.size(); ++j) {
            const CrystalSymmetryOperator product = group[i] * group[j];
            add(product);
        }
    }
    return Spacegroup(name, number, system, group);
}

const char* Spacegroup::system_name(System system) {
    static const char* const names[7] = {"triclinic",  "monoclinic", "orthorhombic", "tetragonal",
                                         "trigonal", "hexagonal",  "cubic"};
    const int code = static_cast<int>(system);
    return code >= 0 && code < 7 ? names[code] : "unknown";
}

const CrystalSymmetryOperator& Spacegroup::symmetry_operator(int i) const {
    if (i < 0 || i >= noperators()) throw std::out_of_range("Spacegroup::symmetry_operator(int) index out of range");
    return operators_[static_cast<std::size_t>(i)];
}

bool Spacegroup::is_centrosymmetric() const {
    const Matrix<int, 3, 3> minus = -Matrix<int, 3, 3>::identity();
    for (const CrystalSymmetryOperator& op : operators_)
        if (op.rotation() == minus) return true;
    return false;
}

void Spacegroup::print(std::ostream& os) const {
    os << name_ << " (" << number_ << ", " << system_name(system_) << "):";
    for (std::size_t i = 0; i < operators_.size(); ++i) os << (i == 0 ? " " : "; ") << operators_[i];
}

void Spacegroup::write(Archive& ar) const {
    ar << name_ << number_ << static_cast<int>(system_) << operators_;
}

void Spacegroup::read(Archive& ar) {
    std::string name;
    int number = 0;
    int system = 0;
    std::vector<CrystalSymmetryOperator> operators;
    {
        Archive::Field field(ar, "Spacegroup::read");
        ar >> name >> number >> system;
        if (system < 0 || system > 6) ar.read_error("unknown crystal system " + std::to_string(system));
        ar >> operators;
    }
    name_.swap(name);
    number_ = number;
    system_ = static_cast<System>(system);
    operators_.swap(operators);
}

bool operator==(const Spacegroup& a, const Spacegroup& b) {
    return a.name() == b.name() && a.number() == b.number() && a.system() == b.system() &&
           a.operators() == b.operators();
}

bool operator!=(const Spacegroup& a, const Spacegroup& b) { return !(a == b); }

std::ostream& operator<<(std::ostream& os, const Spacegroup& s) {
    s.print(os);
    return os;
}

Archive& operator<<(Archive& ar, const Spacegroup& s) {
    s.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, Spacegroup& s) {
    s.read(ar);
    return ar;
}

}  // namespace molcryst
