// Type-erased mutable iterator, the writable twin of PolymorphicConstIterator.
#ifndef MOLCRYST_SUPPORT_POLYMORPHICITERATOR_H
#define MOLCRYST_SUPPORT_POLYMORPHICITERATOR_H

#include "molcryst/support/PolymorphicConstIterator.h"

namespace molcryst {

/// The interface behind a PolymorphicIterator<T>.
template <class T>
class PolymorphicIteratorBase {
public:
    virtual ~PolymorphicIteratorBase() {}
    virtual T& get() = 0;
    virtual const T& get() const = 0;
    virtual void increment() = 0;
    virtual void decrement() = 0;
    virtual void advance(int n) = 0;
    /// Steps from `other` to this iterator: negative when this one stands before.
    virtual int distance(const PolymorphicIteratorBase<T>& other) const = 0;
    virtual bool equal(const PolymorphicIteratorBase<T>& other) const = 0;
    virtual THandle<PolymorphicIteratorBase<T> > clone() const = 0;
    /// A read-only iterator at the same position.
    virtual THandle<PolymorphicConstIteratorBase<T> > const_clone() const = 0;
};

/// A PolymorphicIteratorBase over an iterator `I` whose items are lvalues of `T`.
template <class T, class I>
class PolymorphicIteratorImpl : public PolymorphicIteratorBase<T> {
public:
    /// Over a random-access sequence; other sequences must give their end.
    explicit PolymorphicIteratorImpl(const I& i) : i_(i) {
        static_assert(detail::is_random_access<I>::value,
                      "an iterator without random access needs the end of its sequence");
    }
    PolymorphicIteratorImpl(const I& i, const I& end) : i_(i), end_(end), has_end_(true) {}

    T& get() override { return *i_; }
    const T& get() const override { return *i_; }
    void increment() override { ++i_; }
    void decrement() override { --i_; }
    void advance(int n) override { detail::advance_by(i_, n); }
    int distance(const PolymorphicIteratorBase<T>& other) const override {
        const PolymorphicIteratorImpl* o = dynamic_cast<const PolymorphicIteratorImpl*>(&other);
        if (o == nullptr) throw std::runtime_error("PolymorphicIteratorImpl::distance types mismatch");
        return detail::distance_between(o->i_, i_, has_end_ ? &end_ : (o->has_end_ ? &o->end_ : nullptr));
    }
    bool equal(const PolymorphicIteratorBase<T>& other) const override {
        const PolymorphicIteratorImpl* o = dynamic_cast<const PolymorphicIteratorImpl*>(&other);
        if (o == nullptr) throw std::runtime_error("PolymorphicIteratorImpl::equal types mismatch");
        return i_ == o->i_;
    }
    THandle<PolymorphicIteratorBase<T> > clone() const override {
        return THandle<PolymorphicIteratorBase<T> >(new PolymorphicIteratorImpl(*this));
    }
    THandle<PolymorphicConstIteratorBase<T> > const_clone() const override {
        return THandle<PolymorphicConstIteratorBase<T> >(
            has_end_ ? new PolymorphicConstIteratorImpl<T, I>(i_, end_) : new PolymorphicConstIteratorImpl<T, I>(i_));
    }

    const I& base() const { return i_; }

private:
    I i_;
    I end_{};
    bool has_end_ = false;
};

/// Mutable type-erased iterator yielding `T&`. A default-constructed one is
/// null: any operation on it, copying included, goes to null_handle_error.
template <class T>
class PolymorphicIterator
    : public detail::PolymorphicIteratorFacade<PolymorphicIterator<T>, PolymorphicIteratorBase<T> > {
    typedef detail::PolymorphicIteratorFacade<PolymorphicIterator<T>, PolymorphicIteratorBase<T> > Facade;

public:
    typedef std::bidirectional_iterator_tag iterator_category;
    typedef T value_type;
    typedef int difference_type;
    typedef T* pointer;
    typedef T& reference;

    PolymorphicIterator() = default;
    explicit PolymorphicIterator(const THandle<PolymorphicIteratorBase<T> >& impl) : Facade(impl) {}

    /// The read-only iterator at the same position.
    operator PolymorphicConstIterator<T>() const {  // NOLINT: mutable converts to const as for containers
        return PolymorphicConstIterator<T>(this->impl_->const_clone());
    }

    T& operator*() const { return this->impl_->get(); }
    T* operator->() const { return &this->impl_->get(); }
};

/// A PolymorphicIterator<T> over `i`.
template <class T, class I>
PolymorphicIterator<T> make_polymorphic_iterator(const I& i) {
    return PolymorphicIterator<T>(THandle<PolymorphicIteratorBase<T> >(new PolymorphicIteratorImpl<T, I>(i)));
}

/// A PolymorphicIterator<T> over `i` in a sequence that ends at `end`.
template <class T, class I>
PolymorphicIterator<T> make_polymorphic_iterator(const I& i, const I& end) {
    return PolymorphicIterator<T>(THandle<PolymorphicIteratorBase<T> >(new PolymorphicIteratorImpl<T, I>(i, end)));
}

}  // namespace molcryst

#endif
