// PolymorphicFactory: makes objects of a class tree by name, from prototypes
// registered once per class.
#ifndef MOLCRYST_DIAGRAM_POLYMORPHICFACTORY_H
#define MOLCRYST_DIAGRAM_POLYMORPHICFACTORY_H

#include <map>
#include <string>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// The default key of a prototype: its `class_name()`.
template <class T>
struct PolymorphicFactoryTypeExtractor {
    std::string operator()(const T& prototype) const { return prototype.class_name(); }
};

/// A map from name to prototype, one per instantiation. `create` clones the
/// prototype filed under a name, or gives a null handle for an unknown name.
template <class T, class Extractor = PolymorphicFactoryTypeExtractor<T> >
class PolymorphicFactory {
public:
    /// Files `prototype` under `name`; a later registration replaces an earlier one.
    void register_class(const char* name, THandle<T> prototype) { prototypes()[name] = prototype; }
    /// Files `prototype` under the name its extractor gives.
    void register_class(THandle<T> prototype) { prototypes()[Extractor()(*prototype)] = prototype; }
    /// A clone of the prototype filed under `name`; null when there is none.
    THandle<T> create(const char* name) const {
        typename std::map<std::string, THandle<T> >::const_iterator found = prototypes().find(name);
        if (found == prototypes().end() || found->second.unhand() == nullptr) return THandle<T>();
        return THandle<T>(found->second->clone());
    }
    bool has_class(const char* name) const { return prototypes().count(name) != 0; }

private:
    // Built on first use, so that registration from other static
    // initialisers finds it ready.
    static std::map<std::string, THandle<T> >& prototypes() {
        static std::map<std::string, THandle<T> > map;
        return map;
    }
};

}  // namespace molcryst

#endif
