// ResizableArray2D: a rectangular array in row order, used for adjacency matrices.
#ifndef MOLCRYST_SUPPORT_RESIZABLEARRAY2D_H
#define MOLCRYST_SUPPORT_RESIZABLEARRAY2D_H

#include <deque>
#include <stdexcept>
#include <string>

namespace molcryst {

/// `rows_` times `columns_` elements, element (r, c) at r * columns_ + c.
/// Indices are checked: outside the array is std::out_of_range.
template <class T>
class ResizableArray2D {
public:
    ResizableArray2D() = default;
    ResizableArray2D(unsigned int rows, unsigned int columns, const T& value)
        : elements_(static_cast<std::size_t>(rows) * columns, value), rows_(rows), columns_(columns) {}

    T& element(unsigned int row, unsigned int column) { return elements_[offset(row, column)]; }
    const T& element(unsigned int row, unsigned int column) const { return elements_[offset(row, column)]; }

    /// One row, indexable by column.
    template <class Array, class Ref>
    class RowOf {
    public:
        RowOf(Array& array, unsigned int row) : array_(array), row_(row) {}
        Ref operator[](unsigned int column) const { return array_.element(row_, column); }

    private:
        Array& array_;
        unsigned int row_;
    };
    typedef RowOf<ResizableArray2D, T&> Row;
    typedef RowOf<const ResizableArray2D, const T&> ConstRow;

    Row operator[](unsigned int row) { return Row(*this, row); }
    ConstRow operator[](unsigned int row) const { return ConstRow(*this, row); }

    unsigned int rows() const { return rows_; }
    unsigned int columns() const { return columns_; }

    /// Changes the shape, keeping each element that stays inside it at its
    /// (row, column) and filling new places with `value`.
    void resize(unsigned int rows, unsigned int columns, const T& value) {
        std::deque<T> grown(static_cast<std::size_t>(rows) * columns, value);
        for (unsigned int r = 0; r < rows && r < rows_; ++r)
            for (unsigned int c = 0; c < columns && c < columns_; ++c)
                grown[static_cast<std::size_t>(r) * columns + c] = elements_[static_cast<std::size_t>(r) * columns_ + c];
        elements_.swap(grown);
        rows_ = rows;
        columns_ = columns;
    }

    bool operator==(const ResizableArray2D& other) const {
        return rows_ == other.rows_ && columns_ == other.columns_ && elements_ == other.elements_;
    }

private:
    std::size_t offset(unsigned int row, unsigned int column) const {
        if (row >= rows_ || column >= columns_)
            throw std::out_of_range("ResizableArray2D::element Illegal index: (" + std::to_string(row) + ", " +
                                    std::to_string(column) + ")");
        return static_cast<std::size_t>(row) * columns_ + column;
    }

    std::deque<T> elements_;
    unsigned int rows_ = 0;
    unsigned int columns_ = 0;
};

}  // namespace molcryst

#endif
