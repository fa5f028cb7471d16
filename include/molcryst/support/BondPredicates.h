// Function objects that select bonds; templates on the handle type, needing
// `type()`, `atom1()`, `atom2()` and the atoms' `label()` and `element()`.
// A null handle given to any of them goes to HandleCommon::null_handle_error.
#ifndef MOLCRYST_SUPPORT_BONDPREDICATES_H
#define MOLCRYST_SUPPORT_BONDPREDICATES_H

#include <set>
#include <string>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// Always true.
template <class H>
struct BondAlwaysTruePredicate {
    bool operator()(const H&) const { return true; }
};

/// True for a bond of the given type.
template <class H>
class BondTypePredicate {
public:
    template <class Type>
    explicit BondTypePredicate(Type type) : type_(static_cast<int>(type)) {}
    bool operator()(const H& bond) const { return static_cast<int>(bond->type()) == type_; }

private:
    int type_;
};

/// True for a bond whose type is one of those inserted.
template <class H>
class BondMultipleTypePredicate {
public:
    template <class Type>
    void insert(Type type) {
        types_.insert(static_cast<int>(type));
    }
    bool operator()(const H& bond) const { return types_.count(static_cast<int>(bond->type())) != 0; }

private:
    std::set<int> types_;
};

/// True for a bond whose end labels are the two given, in either order.
template <class H>
class BondAtomLabelsPredicate {
public:
    BondAtomLabelsPredicate(const std::string& label1, const std::string& label2) : label1_(label1), label2_(label2) {}
    bool operator()(const H& bond) const {
        std::string a = bond->atom1()->label();
        std::string b = bond->atom2()->label();
        return (a == label1_ && b == label2_) || (a == label2_ && b == label1_);
    }

private:
    std::string label1_;
    std::string label2_;
};

/// True for a bond with at least one end of the given atomic number.
template <class H>
class BondAtomicNumberPredicate {
public:
    explicit BondAtomicNumberPredicate(int atomic_number) : atomic_number_(atomic_number) {}
    bool operator()(const H& bond) const {
        return bond->atom1()->element().atomic_number() == atomic_number_ ||
               bond->atom2()->element().atomic_number() == atomic_number_;
    }

private:
    int atomic_number_;
};

/// True for a bond with at least one end that is not a non-metal; the
/// pseudo-elements count as metals here.
template <class H>
struct BondMetalPredicate {
    bool operator()(const H& bond) const {
        return !bond->atom1()->element().non_metal() || !bond->atom2()->element().non_metal();
    }
};

}  // namespace molcryst

#endif
