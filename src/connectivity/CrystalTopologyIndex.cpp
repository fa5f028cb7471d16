#include "molcryst/connectivity/CrystalTopologyIndex.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

namespace molcryst {

namespace {

const double unknown_multiplier = -1.0;

bool record_less(const CrystalTopologyIndex::Record& a, const CrystalTopologyIndex::Record& b) {
    if (a.index != b.index) return a.index < b.index;
    // A multiplier that is not a number (read from a damaged archive) sorts
    // last, so that the order stays a strict weak one.
    if (std::isnan(a.multiplier) || std::isnan(b.multiplier)) return !std::isnan(a.multiplier) && std::isnan(b.multiplier);
    return a.multiplier < b.multiplier;
}

// ceil(m - 1e-07) as a whole number; weights beyond the range of int are held
// at its ends rather than converted with undefined results.
long long weight_of(double multiplier) {
    const double w = std::ceil(multiplier - 1e-07);
    if (!(w > static_cast<double>(INT_MIN))) return INT_MIN;
    if (!(w < static_cast<double>(INT_MAX))) return INT_MAX;
    return static_cast<long long>(w);
}

bool records_match(const CrystalTopologyIndex::Record& a, const CrystalTopologyIndex::Record& b, double tolerance,
                   CrystalTopologyIndex::UnknownMultiplierCondition condition) {
    if (a.index != b.index) return false;
    if (condition == 0 && (a.multiplier == unknown_multiplier || b.multiplier == unknown_multiplier)) return true;
    return std::fabs(a.multiplier - b.multiplier) <= tolerance;
}

}  // namespace

CrystalTopologyIndex::CrystalTopologyIndex(const HConnectivityInfo& info, const HTopologyIndex& topology_index) {
    calculate_indices(info, topology_index);
}

void CrystalTopologyIndex::calculate_indices(const HConnectivityInfo& info, const HTopologyIndex& topology_index) {
    if (info.unhand() == nullptr || topology_index.unhand() == nullptr)
        throw std::invalid_argument(
            "CrystalTopologyIndex::calculate_indices(): HConnectivityInfo or HTopologyIndex is zero");
    std::vector<Record> records;
    records.reserve(static_cast<std::size_t>(info->nconnectivities()));
    for (int i = 0; i < info->nconnectivities(); ++i) {
        Record r;
        r.index = topology_index->index(info->connectivity(i));
        r.multiplier = info->multiplier_unknown(i) ? unknown_multiplier : info->multiplier(i);
        records.push_back(r);
    }
    indices_.swap(records);
    sort_indices();
}

void CrystalTopologyIndex::sort_indices() { std::stable_sort(indices_.begin(), indices_.end(), record_less); }

int CrystalTopologyIndex::index_sum(bool use_multipliers) const {
    unsigned int sum = 0;  // wraps around, as the indices themselves do
    for (const Record& r : indices_) {
        unsigned int term = static_cast<unsigned int>(r.index);
        if (use_multipliers) {
            const double m = r.multiplier == unknown_multiplier ? 1.0 : r.multiplier;
            term *= static_cast<unsigned int>(weight_of(m));
        }
        sum += term;
    }
    return static_cast<int>(sum);
}

void CrystalTopologyIndex::remove_connectivity(int index) {
    indices_.erase(std::remove_if(indices_.begin(), indices_.end(), [index](const Record& r) { return r.index == index; }),
                   indices_.end());
}

void CrystalTopologyIndex::remove_connectivity_by_index(unsigned int position) {
    if (position >= indices_.size())
        throw std::out_of_range("CrystalTopologyIndex::remove_connectivity_by_index(): index out of range.");
    indices_.erase(indices_.begin() + position);
}

bool CrystalTopologyIndex::at_least_one_connectivity_equals(int index) const {
    for (const Record& r : indices_)
        if (r.index == index) return true;
    return false;
}

std::vector<int> CrystalTopologyIndex::connectivities_that_equal(int index) const {
    std::vector<int> positions;
    for (std::size_t i = 0; i < indices_.size(); ++i)
        if (indices_[i].index == index) positions.push_back(static_cast<int>(i));
    return positions;
}

void CrystalTopologyIndex::print(std::ostream& out) const {
    out << "nindices: " << indices_.size() << "\n";
    for (const Record& r : indices_) {
        out << "index " << r.index;
        if (r.multiplier == unknown_multiplier)
            out << " multiplier x";
        else
            out << " multiplier " << r.multiplier;
        out << "\n";
    }
}

void CrystalTopologyIndex::write(Archive& ar) const {
    ar << static_cast<unsigned int>(indices_.size());
    for (const Record& r : indices_) ar << r.index << r.multiplier;
}

void CrystalTopologyIndex::read(Archive& ar) {
    Archive::Field field(ar, "CrystalTopologyIndex::read nindices");
    unsigned int n = 0;
    ar >> n;
    ar.check_count(static_cast<long long>(n), 12, "index count");  // an int and a double each
    std::vector<Record> records;
    records.reserve(n);
    for (unsigned int i = 0; i < n; ++i) {
        Record r;
        ar >> r.index >> r.multiplier;
        records.push_back(r);
    }
    indices_.swap(records);
}

bool CrystalTopologyIndex::operator==(const CrystalTopologyIndex& other) const {
    if (indices_.size() != other.indices_.size()) return false;
    for (std::size_t i = 0; i < indices_.size(); ++i)
        if (indices_[i].index != other.indices_[i].index || indices_[i].multiplier != other.indices_[i].multiplier)
            return false;
    return true;
}

bool equals(const CrystalTopologyIndex& a, const CrystalTopologyIndex& b, double tolerance,
            CrystalTopologyIndex::UnknownMultiplierCondition condition) {
    const std::vector<CrystalTopologyIndex::Record>& x = a.indices();
    const std::vector<CrystalTopologyIndex::Record>& y = b.indices();
    if (x.size() != y.size()) return false;
    for (std::size_t i = 0; i < x.size(); ++i)
        if (!records_match(x[i], y[i], tolerance, condition)) return false;
    return true;
}

bool is_equivalent(const CrystalTopologyIndex& a, const CrystalTopologyIndex& b, double tolerance,
                   CrystalTopologyIndex::UnknownMultiplierCondition condition) {
    // Both copies ascending by index, then multiplier: the order sort_indices gives.
    CrystalTopologyIndex x(a), y(b);
    x.sort_indices();
    y.sort_indices();
    return equals(x, y, tolerance, condition);
}

}  // namespace molcryst
