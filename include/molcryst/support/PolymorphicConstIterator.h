// Type-erased read-only iterator: molecules and atoms hand out their atoms and
// bonds through it without saying what container lies behind.
//
// Copying a PolymorphicConstIterator clones its implementation, so two
// iterators never share a position. Each copy costs one allocation and each
// step one virtual call; inside the library, containers are walked with their
// own iterators where they are known.
#ifndef MOLCRYST_SUPPORT_POLYMORPHICCONSTITERATOR_H
#define MOLCRYST_SUPPORT_POLYMORPHICCONSTITERATOR_H

#include <iterator>
#include <stdexcept>
#include <type_traits>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// The interface behind a PolymorphicConstIterator<T>.
template <class T>
class PolymorphicConstIteratorBase {
public:
    virtual ~PolymorphicConstIteratorBase() {}
    virtual T get() const = 0;
    virtual void increment() = 0;
    virtual void decrement() = 0;
    virtual void advance(int n) = 0;
    /// Steps from `other` to this iterator: negative when this one stands before.
    virtual int distance(const PolymorphicConstIteratorBase<T>& other) const = 0;
    virtual bool equal(const PolymorphicConstIteratorBase<T>& other) const = 0;
    virtual THandle<PolymorphicConstIteratorBase<T> > clone() const = 0;
};

namespace detail {

template <class I>
using is_random_access = std::is_base_of<std::random_access_iterator_tag,
                                         typename std::iterator_traits<I>::iterator_category>;

// Moves `i` by `n`, by ones where the iterator has no random access.
template <class I>
void advance_by(I& i, int n) {
    if constexpr (is_random_access<I>::value) {
        i += n;
    } else {
        for (; n > 0; --n) ++i;
        for (; n < 0; ++n) --i;
    }
}

// Steps from `from` to `to`. Without random access, and with the end of the
// sequence known, it looks forward from each to the other and never walks
// past the end; without the end, `to` must be reachable forward from `from`.
template <class I>
int distance_between(const I& from, const I& to, const I* end) {
    if constexpr (is_random_access<I>::value) {
        (void)end;
        return static_cast<int>(to - from);
    } else {
        if (end == nullptr) return static_cast<int>(std::distance(from, to));
        int n = 0;
        for (I i = from; i != *end; ++i, ++n)
            if (i == to) return n;
        if (to == *end) return n;
        n = 0;
        for (I i = to; i != *end; ++i, ++n)
            if (i == from) return -n;
        return -n;  // `from` is the end itself
    }
}

// The operations common to both type-erased iterators: every step forwards to
// the implementation, and a copy clones it.
template <class Derived, class Impl>
class PolymorphicIteratorFacade {
public:
    Derived& operator++() {
        impl_->increment();
        return derived();
    }
    Derived operator++(int) {
        Derived old(derived());
        impl_->increment();
        return old;
    }
    Derived& operator--() {
        impl_->decrement();
        return derived();
    }
    Derived operator--(int) {
        Derived old(derived());
        impl_->decrement();
        return old;
    }
    Derived& operator+=(int n) {
        impl_->advance(n);
        return derived();
    }
    Derived& operator-=(int n) {
        impl_->advance(-n);
        return derived();
    }
    Derived operator+(int n) const {
        Derived copy(impl_->clone());
        copy.impl_->advance(n);
        return copy;
    }
    Derived operator-(int n) const {
        Derived copy(impl_->clone());
        copy.impl_->advance(-n);
        return copy;
    }
    bool operator==(const Derived& other) const { return impl_->equal(*other.impl_); }
    bool operator!=(const Derived& other) const { return !impl_->equal(*other.impl_); }
    bool operator<(const Derived& other) const { return impl_->distance(*other.impl_) < 0; }
    bool operator>(const Derived& other) const { return impl_->distance(*other.impl_) > 0; }

    /// The implementation, shared; null for a default-constructed iterator.
    const THandle<Impl>& impl() const { return impl_; }

protected:
    PolymorphicIteratorFacade() = default;
    explicit PolymorphicIteratorFacade(const THandle<Impl>& impl) : impl_(impl) {}
    PolymorphicIteratorFacade(const PolymorphicIteratorFacade& other) : impl_(clone_of(other.impl_)) {}
    PolymorphicIteratorFacade& operator=(const PolymorphicIteratorFacade& other) {
        if (this != &other) impl_ = clone_of(other.impl_);
        return *this;
    }

    THandle<Impl> impl_;

private:
    Derived& derived() { return static_cast<Derived&>(*this); }
    const Derived& derived() const { return static_cast<const Derived&>(*this); }
    // Copying is cloning, and a null iterator cannot be cloned: it goes to null_handle_error.
    static THandle<Impl> clone_of(const THandle<Impl>& h) { return h->clone(); }
};

}  // namespace detail

/// A PolymorphicConstIteratorBase over an iterator `I` whose items convert to `T`.
template <class T, class I>
class PolymorphicConstIteratorImpl : public PolymorphicConstIteratorBase<T> {
public:
    /// Over a random-access sequence; other sequences must give their end.
    explicit PolymorphicConstIteratorImpl(const I& i) : i_(i) {
        static_assert(detail::is_random_access<I>::value,
                      "an iterator without random access needs the end of its sequence");
    }
    /// With the end of the sequence, so that comparing positions of a
    /// non-random-access sequence never walks past it.
    PolymorphicConstIteratorImpl(const I& i, const I& end) : i_(i), end_(end), has_end_(true) {}

    T get() const override { return *i_; }
    void increment() override { ++i_; }
    void decrement() override { --i_; }
    void advance(int n) override { detail::advance_by(i_, n); }
    int distance(const PolymorphicConstIteratorBase<T>& other) const override {
        const PolymorphicConstIteratorImpl* o = dynamic_cast<const PolymorphicConstIteratorImpl*>(&other);
        if (o == nullptr) throw std::runtime_error("PolymorphicConstIteratorImpl::distance types mismatch");
        return detail::distance_between(o->i_, i_, has_end_ ? &end_ : (o->has_end_ ? &o->end_ : nullptr));
    }
    bool equal(const PolymorphicConstIteratorBase<T>& other) const override {
        const PolymorphicConstIteratorImpl* o = dynamic_cast<const PolymorphicConstIteratorImpl*>(&other);
        if (o == nullptr) throw std::runtime_error("PolymorphicConstIteratorImpl::equal types mismatch");
        return i_ == o->i_;
    }
    THandle<PolymorphicConstIteratorBase<T> > clone() const override {
        return THandle<PolymorphicConstIteratorBase<T> >(new PolymorphicConstIteratorImpl(*this));
    }

    const I& base() const { return i_; }

private:
    I i_;
    I end_{};
    bool has_end_ = false;
};

/// Read-only type-erased iterator yielding `T` by value. A default-constructed
/// one is null: any operation on it, copying included, goes to null_handle_error.
template <class T>
class PolymorphicConstIterator
    : public detail::PolymorphicIteratorFacade<PolymorphicConstIterator<T>, PolymorphicConstIteratorBase<T> > {
    typedef detail::PolymorphicIteratorFacade<PolymorphicConstIterator<T>, PolymorphicConstIteratorBase<T> > Facade;

public:
    typedef std::bidirectional_iterator_tag iterator_category;
    typedef T value_type;
    typedef int difference_type;
    typedef const T* pointer;
    typedef T reference;

    PolymorphicConstIterator() = default;
    explicit PolymorphicConstIterator(const THandle<PolymorphicConstIteratorBase<T> >& impl) : Facade(impl) {}

    T operator*() const { return this->impl_->get(); }
};

/// A PolymorphicConstIterator<T> over `i`.
template <class T, class I>
PolymorphicConstIterator<T> make_polymorphic_const_iterator(const I& i) {
    return PolymorphicConstIterator<T>(
        THandle<PolymorphicConstIteratorBase<T> >(new PolymorphicConstIteratorImpl<T, I>(i)));
}

/// A PolymorphicConstIterator<T> over `i` in a sequence that ends at `end`.
template <class T, class I>
PolymorphicConstIterator<T> make_polymorphic_const_iterator(const I& i, const I& end) {
    return PolymorphicConstIterator<T>(
        THandle<PolymorphicConstIteratorBase<T> >(new PolymorphicConstIteratorImpl<T, I>(i, end)));
}

}  // namespace molcryst

#endif
