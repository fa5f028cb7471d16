// THandle: the shared-ownership handle that holds every object of the kernel.
//
// A handle is two pointers, the object and a small count record shared by all
// handles of that object. Counts are plain integers: the kernel is
// single-threaded. There is no weak handle, so a cycle of handles leaks; the
// kernel breaks its cycles by hand where its model makes them.
//
// Handles order by descending address with the null handle last. Every
// std::set and std::map of handles in the kernel walks in that order, and the
// tie-breaks of the graph searches follow from it.
#ifndef MOLCRYST_SUPPORT_THANDLE_H
#define MOLCRYST_SUPPORT_THANDLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <vector>

namespace molcryst {

/// What every handle type shares: the count record and the null-dereference error.
class HandleCommon {
public:
    /// The heap record shared by the handles of one object.
    struct UseCount {
        std::int32_t strong_ = 0;  // number of handles holding the object
        std::int32_t weak_ = 0;    // reserved; zeroed at creation, otherwise untouched

        /// Drops one strong reference. True exactly when the object must now be
        /// destroyed; the record itself is then freed, as nothing refers to it.
        bool down_strong() {
            if (--strong_ != 0) return false;
            if (weak_ == 0) delete this;
            return true;
        }
    };

    /// Called for every dereference of a null handle; never returns.
    /// Throws std::logic_error.
    [[noreturn]] static void null_handle_error();
};

/// Reference-counted handle to a `T`; see the banner of this header.
template <class T>
class THandle {
public:
    typedef T element_type;

    THandle() = default;

    /// Takes ownership of `p`; null gives the null handle with no count record.
    THandle(T* p) : object_(p) {  // NOLINT(google-explicit-constructor): handles convert from pointers
        if (p != nullptr) {
            count_ = new HandleCommon::UseCount();
            ++count_->strong_;
        }
    }

    /// Shares an existing record; used by the casts.
    THandle(T* p, HandleCommon::UseCount* c) : object_(p), count_(c) {
        if (object_ != nullptr) ++count_->strong_;
    }

    THandle(const THandle& other) : object_(other.object_), count_(other.count_) {
        if (object_ != nullptr) ++count_->strong_;
    }

    /// A handle to a derived class converts to a handle to its base, sharing the count.
    template <class U, class = typename std::enable_if<std::is_convertible<U*, T*>::value>::type>
    THandle(const THandle<U>& other) : object_(other.unhand()), count_(other.use_count_record()) {
        if (object_ != nullptr) ++count_->strong_;
    }

    THandle& operator=(const THandle& other) {
        // The test is on the raw object: null to null, and two handles of one
        // object, change nothing.
        if (object_ == other.object_) return *this;
        // Take the new reference before letting the old object go: `other`
        // may live inside it (h = h->next_).
        T* object = other.object_;
        HandleCommon::UseCount* count = other.count_;
        if (object != nullptr) ++count->strong_;
        release();
        object_ = object;
        count_ = count;
        return *this;
    }

    ~THandle() { release(); }

    T& operator*() const {
        if (object_ == nullptr) HandleCommon::null_handle_error();
        return *object_;
    }
    T* operator->() const {
        if (object_ == nullptr) HandleCommon::null_handle_error();
        return object_;
    }

    /// The raw object pointer, null allowed, no check.
    T* unhand() const { return object_; }

    /// The shared count record, null for the null handle.
    HandleCommon::UseCount* use_count_record() const { return count_; }

    /// Number of handles sharing the object; 0 for the null handle.
    int use_count() const { return object_ == nullptr ? 0 : count_->strong_; }

    bool operator==(const THandle& other) const { return object_ == other.object_; }
    bool operator!=(const THandle& other) const { return object_ != other.object_; }
    bool operator==(const T* p) const { return object_ == p; }
    bool operator!=(const T* p) const { return object_ != p; }

    /// Descending address: the greater raw pointer sorts first, null last.
    bool operator<(const THandle& other) const {
        return reinterpret_cast<std::uintptr_t>(object_) >
               reinterpret_cast<std::uintptr_t>(other.object_);
    }
    bool operator>(const THandle& other) const { return other < *this; }
    bool operator<=(const THandle& other) const { return !(other < *this); }
    bool operator>=(const THandle& other) const { return !(*this < other); }

private:
    void release() {
        if (object_ != nullptr) {
            T* doomed = object_;
            HandleCommon::UseCount* count = count_;
            object_ = nullptr;
            count_ = nullptr;
            if (count->down_strong()) delete doomed;
        }
    }

    T* object_ = nullptr;
    HandleCommon::UseCount* count_ = nullptr;
};

template <class T>
bool operator==(const T* p, const THandle<T>& h) {
    return h == p;
}
template <class T>
bool operator!=(const T* p, const THandle<T>& h) {
    return h != p;
}

/// A handle of `To` sharing the operand's count when the object is a `To`;
/// the null handle otherwise (a wrong type is not an error).
template <class To, class From>
THandle<To> handle_dynamic_cast(const THandle<From>& from) {
    if (from.unhand() == nullptr) return THandle<To>();
    To* p = dynamic_cast<To*>(from.unhand());
    if (p == nullptr) return THandle<To>();
    return THandle<To>(p, from.use_count_record());
}

/// As handle_dynamic_cast, without the run-time check.
template <class To, class From>
THandle<To> handle_static_cast(const THandle<From>& from) {
    if (from.unhand() == nullptr) return THandle<To>();
    return THandle<To>(static_cast<To*>(from.unhand()), from.use_count_record());
}

/// A handle to a new copy of the object; null stays null.
template <class T>
THandle<T> handle_deepcopy(const THandle<T>& h) {
    if (h.unhand() == nullptr) return THandle<T>();
    return THandle<T>(new T(*h));
}

/// A new vector of handles to copies of each element, as `P`, in order.
/// `deepcopy<Molecule, Molecule3d>` turns every molecule of a list into a new Molecule3d.
template <class T, class P = T>
THandle<std::vector<THandle<T> > > deepcopy(const THandle<std::vector<THandle<T> > >& source) {
    const std::vector<THandle<T> >& in = *source;  // null goes to null_handle_error
    THandle<std::vector<THandle<T> > > out(new std::vector<THandle<T> >());
    out->reserve(in.size());
    for (const THandle<T>& element : in) out->push_back(THandle<T>(new P(*element)));
    return out;
}

}  // namespace molcryst

namespace std {
/// Hashing by object address, for scratch sets inside the searches.
template <class T>
struct hash<molcryst::THandle<T> > {
    std::size_t operator()(const molcryst::THandle<T>& h) const noexcept {
        return std::hash<const void*>()(static_cast<const void*>(h.unhand()));
    }
};
}  // namespace std

#endif
