// ElementSet: a small unordered collection of distinct elements, the unit in
// which the periodic-table families of ElementSetFactory are served.
#ifndef MOLCRYST_ELEMENTS_ELEMENTSET_H
#define MOLCRYST_ELEMENTS_ELEMENTSET_H

#include <vector>

#include "molcryst/elements/Element.h"

namespace molcryst {

/// Elements in insertion order without duplicates. Equality and intersection
/// ignore the order.
class ElementSet {
public:
    ElementSet() = default;
    /// Keeps the vector as given, duplicates included.
    explicit ElementSet(const std::vector<Element>& elements) : elements_(elements) {}
    explicit ElementSet(const Element& element) : elements_(1, element) {}

    /// A copy of the elements, in insertion order.
    std::vector<Element> elements() const { return elements_; }
    /// Number of elements held.
    int nelements() const { return static_cast<int>(elements_.size()); }

    bool has_element(const Element& e) const;
    /// Appends `e` unless it is present already.
    void add_element(const Element& e);
    void add_elements(const std::vector<Element>& elements);
    /// Erases `e` if present; silent otherwise.
    void remove_element(const Element& e);
    void remove_elements(const std::vector<Element>& elements);

    /// Union.
    ElementSet& operator+=(const ElementSet& other);
    ElementSet& operator+=(const Element& e);
    /// Difference.
    ElementSet& operator-=(const ElementSet& other);
    ElementSet& operator-=(const Element& e);

    /// Same elements in any order: compares sorted copies.
    bool operator==(const ElementSet& other) const;
    bool operator!=(const ElementSet& other) const { return !(*this == other); }

    /// True if the two sets share at least one element.
    bool intersects(const ElementSet& other) const;

private:
    std::vector<Element> elements_;
};

}  // namespace molcryst

#endif
