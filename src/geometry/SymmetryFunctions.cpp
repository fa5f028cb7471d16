#include "molcryst/geometry/SymmetryFunctions.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace molcryst {

namespace {

// Widening of every range bound, far above the rounding of fractional
// coordinates and far below a lattice translation.
const double slack = 1e-9;

[[noreturn]] void refuse(const char* function, const char* problem) {
    throw std::domain_error(std::string(function) + " " + problem);
}

// Integer bounds from ceil(lo) to floor(hi); false when they are empty.
bool integer_range(double lo, double hi, int& first, int& last, const char* function) {
    const double a = std::ceil(lo - slack);
    const double b = std::floor(hi + slack);
    if (!(a <= b)) return false;
    if (!(std::fabs(a) < 1e9) || !(std::fabs(b) < 1e9)) refuse(function, "translations out of range");
    first = static_cast<int>(a);
    last = static_cast<int>(b);
    return true;
}

void check_finite(const Box& box, const char* function) {
    if (!box.empty() && !box.is_finite()) refuse(function, "the box is not finite");
}

void check_count(const TranslationRange& range, const char* function) {
    if (range.count() > largest_translation_count) refuse(function, "the box spans too many cells");
}

const char* const point_function = "find_translation(const Point&, const Box&)";
const char* const points_function = "find_translation(const std::vector<Point>&, const Box&)";
const char* const box_function = "find_translation(const Box&, const Box&)";

// The range of one point, or false when no translation brings it in.
bool point_range(const Point& p, const Box& box, TranslationRange& range, const char* function) {
    for (int i = 0; i < 3; ++i) {
        if (!integer_range(box.minimum()[i] - p[i], box.maximum()[i] - p[i], range.lower[i], range.upper[i],
                           function))
            return false;
    }
    return true;
}

}  // namespace

long long TranslationRange::count() const {
    if (empty()) return 0;
    long long n = 1;
    for (int i = 0; i < 3; ++i) n *= static_cast<long long>(upper[i]) - lower[i] + 1;
    return n;
}

TranslationRange find_translation(const Point& p, const Box& box) {
    check_finite(box, point_function);
    TranslationRange range;
    if (box.empty() || !point_range(p, box, range, point_function)) return TranslationRange();
    check_count(range, point_function);
    return range;
}

TranslationRange find_translation(const std::vector<Point>& points, const Box& box) {
    check_finite(box, points_function);
    TranslationRange all;
    if (box.empty()) return all;
    for (const Point& p : points) {
        TranslationRange one;
        if (!point_range(p, box, one, points_function)) continue;
        if (all.empty()) {
            all = one;
        } else {
            for (int i = 0; i < 3; ++i) {
                all.lower[i] = std::min(all.lower[i], one.lower[i]);
                all.upper[i] = std::max(all.upper[i], one.upper[i]);
            }
        }
    }
    check_count(all, points_function);
    return all;
}

TranslationRange find_translation(const Box& moving, const Box& box) {
    check_finite(box, box_function);
    check_finite(moving, box_function);
    TranslationRange range;
    if (box.empty() || moving.empty()) return range;
    for (int i = 0; i < 3; ++i) {
        if (!integer_range(box.minimum()[i] - moving.maximum()[i], box.maximum()[i] - moving.minimum()[i],
                           range.lower[i], range.upper[i], box_function))
            return TranslationRange();
    }
    check_count(range, box_function);
    return range;
}

std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell,
                                                                         const std::vector<Point>& fractional,
                                                                         const TransformedSolid& solid,
                                                                         SymmetryFunctions::Condition condition) {
    std::vector<CrystalSymmetryTransformation> result;
    if (fractional.empty()) return result;
    const Box box = solid.fractional_box(cell);
    const bool all = condition == SymmetryFunctions::AllIncluded;
    const std::vector<CrystalSymmetryOperator>& operators = cell.spacegroup().operators();
    std::vector<Point> images(fractional.size());
    // First the ranges of every operator, to allocate the result once for
    // the common case in which most candidates pass; the reservation is
    // bounded, since a thin region may reject most of them.
    std::vector<TranslationRange> ranges;
    ranges.reserve(operators.size());
    long long total = 0;
    for (const CrystalSymmetryOperator& op : operators) {
        for (std::size_t k = 0; k < fractional.size(); ++k) images[k] = op.apply(fractional[k]);
        ranges.push_back(find_translation(images, box));
        total += ranges.back().count();
    }
    result.reserve(static_cast<std::size_t>(std::min(total, 1LL << 16)));
    for (std::size_t o = 0; o < operators.size(); ++o) {
        const CrystalSymmetryOperator& op = operators[o];
        const TranslationRange& range = ranges[o];
        if (range.empty()) continue;
        for (std::size_t k = 0; k < fractional.size(); ++k) images[k] = op.apply(fractional[k]);
        for (int x = range.lower[0]; x <= range.upper[0]; ++x) {
            for (int y = range.lower[1]; y <= range.upper[1]; ++y) {
                for (int z = range.lower[2]; z <= range.upper[2]; ++z) {
                    const Vector<double, 3> n(x, y, z);
                    bool inside = false;
                    for (const Point& image : images) {
                        inside = solid.contains(cell, Point(image + n));
                        if (inside != all) break;  // one in for any, one out for all
                    }
                    if (inside) result.push_back(CrystalSymmetryTransformation(op, Vector<int, 3>(x, y, z)));
                }
            }
        }
    }
    return result;
}

std::vector<CrystalSymmetryTransformation> find_symmetry_transformations(const Cell& cell,
                                                                         const TransformedSolid& from,
                                                                         const TransformedSolid& to,
                                                                         SymmetryFunctions::Condition condition) {
    const char* function =
        "find_symmetry_transformations(const Cell&, const TransformedSolid&, const TransformedSolid&, "
        "SymmetryFunctions::Condition)";
    std::vector<CrystalSymmetryTransformation> result;
    const Box source = from.fractional_box(cell);
    const Box target = to.fractional_box(cell);
    if (source.empty() || target.empty()) return result;
    if (!source.is_finite() || !target.is_finite()) refuse(function, "the box is not finite");
    const bool all = condition == SymmetryFunctions::AllIncluded;
    Point corners[8];
    for (int c = 0; c < 8; ++c)
        corners[c] = Point((c & 1) ? source.maximum()[0] : source.minimum()[0],
                           (c & 2) ? source.maximum()[1] : source.minimum()[1],
                           (c & 4) ? source.maximum()[2] : source.minimum()[2]);
    // First the ranges of every operator, so that the result is allocated
    // once: without AllIncluded every translation in them is a result.
    const std::vector<CrystalSymmetryOperator>& operators = cell.spacegroup().operators();
    std::vector<TranslationRange> ranges;
    ranges.reserve(operators.size());
    long long total = 0;
    for (const CrystalSymmetryOperator& op : operators) {
        const Box image = transform_box(Matrix<double, 3, 3>(op.rotation()), op.translation(), source);
        ranges.push_back(find_translation(image, target));
        total += ranges.back().count();
    }
    if (!all) result.reserve(static_cast<std::size_t>(total));
    Point images[8];
    for (std::size_t k = 0; k < operators.size(); ++k) {
        const CrystalSymmetryOperator& op = operators[k];
        const TranslationRange& range = ranges[k];
        if (range.empty()) continue;
        if (all)
            for (int c = 0; c < 8; ++c) images[c] = op.apply(corners[c]);
        for (int x = range.lower[0]; x <= range.upper[0]; ++x) {
            for (int y = range.lower[1]; y <= range.upper[1]; ++y) {
                for (int z = range.lower[2]; z <= range.upper[2]; ++z) {
                    if (all) {
                        const Vector<double, 3> n(x, y, z);
                        bool inside = true;
                        for (int c = 0; c < 8 && inside; ++c) inside = to.contains(cell, Point(images[c] + n));
                        if (!inside) continue;
                    }
                    result.push_back(CrystalSymmetryTransformation(op, Vector<int, 3>(x, y, z)));
                }
            }
        }
    }
    return result;
}

}  // namespace molcryst
