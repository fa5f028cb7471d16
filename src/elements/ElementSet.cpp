#include "molcryst/elements/ElementSet.h"

#include <algorithm>

namespace molcryst {

bool ElementSet::has_element(const Element& e) const {
    return std::find(elements_.begin(), elements_.end(), e) != elements_.end();
}

void ElementSet::add_element(const Element& e) {
    if (!has_element(e)) elements_.push_back(e);
}

void ElementSet::add_elements(const std::vector<Element>& elements) {
    for (const Element& e : elements) add_element(e);
}

void ElementSet::remove_element(const Element& e) {
    // Every copy goes: a set built from a vector may hold duplicates, and after
    // removal the element must no longer be a member.
    elements_.erase(std::remove(elements_.begin(), elements_.end(), e), elements_.end());
}

void ElementSet::remove_elements(const std::vector<Element>& elements) {
    for (const Element& e : elements) remove_element(e);
}

ElementSet& ElementSet::operator+=(const ElementSet& other) {
    add_elements(other.elements_);
    return *this;
}

ElementSet& ElementSet::operator+=(const Element& e) {
    add_element(e);
    return *this;
}

ElementSet& ElementSet::operator-=(const ElementSet& other) {
    remove_elements(other.elements_);
    return *this;
}

ElementSet& ElementSet::operator-=(const Element& e) {
    remove_element(e);
    return *this;
}

bool ElementSet::operator==(const ElementSet& other) const {
    if (elements_.size() != other.elements_.size()) return false;
    std::vector<Element> a(elements_);
    std::vector<Element> b(other.elements_);
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return a == b;
}

bool ElementSet::intersects(const ElementSet& other) const {
    std::vector<Element> a(elements_);
    std::vector<Element> b(other.elements_);
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    // The first common element settles it; no need to build the intersection.
    auto i = a.begin();
    auto j = b.begin();
    while (i != a.end() && j != b.end()) {
        if (*i < *j) {
            ++i;
        } else if (*j < *i) {
            ++j;
        } else {
            return true;
        }
    }
    return false;
}

}  // namespace molcryst
