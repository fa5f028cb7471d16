// TransformingIterator: an iterator that yields F(*i) for an underlying iterator i.
#ifndef MOLCRYST_SUPPORT_TRANSFORMINGITERATOR_H
#define MOLCRYST_SUPPORT_TRANSFORMINGITERATOR_H

#include <iterator>

namespace molcryst {

/// Walks as `I` walks and yields `F(*i)`, a `V`, by value. The function object
/// is held by value and default-constructed when none is given.
template <class I, class F, class V>
class TransformingIterator {
public:
    typedef typename std::iterator_traits<I>::iterator_category iterator_category;
    typedef V value_type;
    typedef typename std::iterator_traits<I>::difference_type difference_type;
    typedef const V* pointer;
    typedef V reference;

    TransformingIterator() = default;
    explicit TransformingIterator(const I& i, const F& f = F()) : i_(i), f_(f) {}

    V operator*() const { return f_(*i_); }

    /// Member access on the transformed value, which lives in the proxy.
    struct ArrowProxy {
        V value;
        const V* operator->() const { return &value; }
    };
    ArrowProxy operator->() const { return ArrowProxy{f_(*i_)}; }

    TransformingIterator& operator++() {
        ++i_;
        return *this;
    }
    TransformingIterator operator++(int) {
        TransformingIterator old(*this);
        ++i_;
        return old;
    }
    TransformingIterator& operator--() {
        --i_;
        return *this;
    }
    TransformingIterator operator--(int) {
        TransformingIterator old(*this);
        --i_;
        return old;
    }
    // Random access, where `I` has it.
    TransformingIterator& operator+=(difference_type n) {
        i_ += n;
        return *this;
    }
    TransformingIterator& operator-=(difference_type n) {
        i_ -= n;
        return *this;
    }
    TransformingIterator operator+(difference_type n) const { return TransformingIterator(i_ + n, f_); }
    TransformingIterator operator-(difference_type n) const { return TransformingIterator(i_ - n, f_); }
    difference_type operator-(const TransformingIterator& other) const { return i_ - other.i_; }
    V operator[](difference_type n) const { return f_(i_[n]); }

    bool operator==(const TransformingIterator& other) const { return i_ == other.i_; }
    bool operator!=(const TransformingIterator& other) const { return i_ != other.i_; }
    bool operator<(const TransformingIterator& other) const { return i_ < other.i_; }

    const I& base() const { return i_; }

private:
    I i_{};
    F f_{};
};

}  // namespace molcryst

#endif
