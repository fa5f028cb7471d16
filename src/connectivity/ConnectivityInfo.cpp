#include "molcryst/connectivity/ConnectivityInfo.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace molcryst {

namespace {

const double zero_tolerance = 1e-07;

struct FractionRow {
    double fraction;
    double tolerance;
    double scale;
};
const FractionRow fraction_table[] = {
    {0.25, 0.005, 4}, {0.75, 0.005, 4}, {0.33333333, 0.015, 3}, {0.66666667, 0.015, 3}, {0.5, 0.005, 2}};
const int nfraction_rows = 5;

// Bounds the passes of one row, so that no list of multipliers can keep the
// walk going for ever; real fractions become whole in one or two passes.
const int max_passes_per_row = 64;

// The fractional part as the walk sees it: on the single-precision value.
double fractional_part(double multiplier) { return std::fmod(static_cast<double>(static_cast<float>(multiplier)), 1.0); }

bool takes_part(const ConnectivityInfoItem& item) {
    return !item.multiplier_unknown && std::fabs(item.multiplier) >= zero_tolerance;
}

}  // namespace

ConnectivityInfo::ConnectivityInfo(const ConnectivityInfo& other) : items_(new std::vector<HConnectivityInfoItem>()) {
    add(other);
}

ConnectivityInfo& ConnectivityInfo::operator=(const ConnectivityInfo& other) {
    if (this == &other) return *this;
    items_ = THandle<std::vector<HConnectivityInfoItem> >(new std::vector<HConnectivityInfoItem>());
    add(other);
    return *this;
}

void ConnectivityInfo::add(const ConnectivityInfo& other) {
    // Items are copied, so that a multiplier set here never changes `other`;
    // the records themselves are shared.
    std::vector<HConnectivityInfoItem> copies;
    copies.reserve(other.items_->size());
    for (const HConnectivityInfoItem& item : *other.items_) copies.push_back(HConnectivityInfoItem(new ConnectivityInfoItem(*item)));
    items_->insert(items_->end(), copies.begin(), copies.end());
}

const ConnectivityInfoItem& ConnectivityInfo::item(int i, const char* operation) const {
    if (i < 0 || i >= nconnectivities())
        throw std::invalid_argument(std::string("ConnectivityInfo::") + operation + ": Index out of range.");
    return *(*items_)[static_cast<std::size_t>(i)];
}

ConnectivityInfoItem& ConnectivityInfo::item(int i, const char* operation) {
    if (i < 0 || i >= nconnectivities())
        throw std::invalid_argument(std::string("ConnectivityInfo::") + operation + ": Index out of range.");
    return *(*items_)[static_cast<std::size_t>(i)];
}

HConnectivity ConnectivityInfo::connectivity(int i) const { return item(i, "connectivity").connectivity; }

void ConnectivityInfo::add_connectivity(const HConnectivity& connectivity, double multiplier) {
    if (connectivity.unhand() == nullptr)
        throw std::invalid_argument("ConnectivityInfo::add_connectivity: connectivity is zero");
    HConnectivityInfoItem item(new ConnectivityInfoItem());
    item->connectivity = connectivity;
    item->multiplier = multiplier;
    item->multiplier_unknown = false;
    items_->push_back(item);
}

void ConnectivityInfo::add_connectivity(const HConnectivity& connectivity) {
    add_connectivity(connectivity, 1.0);
    items_->back()->multiplier_unknown = true;
}

void ConnectivityInfo::remove_connectivity(int i) {
    item(i, "remove_connectivity");
    items_->erase(items_->begin() + i);
}

void ConnectivityInfo::set_multiplier(int i, double multiplier) {
    ConnectivityInfoItem& it = item(i, "set_multiplier");
    it.multiplier = multiplier;
    it.multiplier_unknown = false;
}

double ConnectivityInfo::multiplier(int i) const { return item(i, "multiplier").multiplier; }

void ConnectivityInfo::set_multiplier_unknown(int i) {
    ConnectivityInfoItem& it = item(i, "set_multiplier_unknown");
    it.multiplier = 1.0;
    it.multiplier_unknown = true;
}

bool ConnectivityInfo::multiplier_unknown(int i) const { return item(i, "multiplier_unknown").multiplier_unknown; }

void ConnectivityInfo::simplify_multipliers() {
    remove_common_fractions();
    remove_common_factors();
}

void ConnectivityInfo::remove_common_factors() {
    if (items_->empty()) return;
    const double primes[] = {2.0, 3.0, 5.0};
    for (double p : primes) {
        for (;;) {
            bool any = false, all_divide = true;
            for (const HConnectivityInfoItem& item : *items_) {
                if (!takes_part(*item)) continue;
                any = true;
                if (!(std::fabs(std::remainder(item->multiplier, p)) < zero_tolerance)) {
                    all_divide = false;
                    break;
                }
            }
            if (!any || !all_divide) break;
            for (HConnectivityInfoItem& item : *items_)
                if (takes_part(*item)) item->multiplier /= p;
        }
    }
}

void ConnectivityInfo::remove_common_fractions() {
    int row = 0, passes = 0;
    while (row < nfraction_rows) {
        const FractionRow& r = fraction_table[row];
        bool hit = false;
        for (const HConnectivityInfoItem& item : *items_)
            if (takes_part(*item) && std::fabs(fractional_part(item->multiplier) - r.fraction) < r.tolerance) hit = true;
        if (!hit || passes >= max_passes_per_row) {
            ++row;
            passes = 0;
            continue;
        }
        for (int i = 0; i < nconnectivities(); ++i) {
            const ConnectivityInfoItem& item = *(*items_)[static_cast<std::size_t>(i)];
            if (!takes_part(item)) continue;
            double m = item.multiplier;
            for (const FractionRow& f : fraction_table) {
                const double frac = fractional_part(m);
                if (std::fabs(frac - f.fraction) < f.tolerance) m = (m - frac) + f.fraction;
            }
            m *= r.scale;
            if (std::fabs(m - std::rint(m)) < 0.01) m = std::rint(m);
            set_multiplier(i, m);
        }
        ++passes;
    }
}

void ConnectivityInfo::split() {
    std::vector<HConnectivityInfoItem> parts;
    for (const HConnectivityInfoItem& item : *items_) {
        std::vector<HConnectivity> pieces = item->connectivity->split();
        for (const HConnectivity& piece : pieces) {
            HConnectivityInfoItem part(new ConnectivityInfoItem());
            part->connectivity = piece;
            part->multiplier = item->multiplier_unknown ? 1.0 : item->multiplier;
            part->multiplier_unknown = item->multiplier_unknown;
            parts.push_back(part);
        }
    }
    items_->swap(parts);
}

bool ConnectivityInfo::operator==(const ConnectivityInfo& other) const {
    if (nconnectivities() != other.nconnectivities()) return false;
    for (std::size_t i = 0; i < items_->size(); ++i) {
        const ConnectivityInfoItem& a = *(*items_)[i];
        const ConnectivityInfoItem& b = *(*other.items_)[i];
        if (a.multiplier_unknown != b.multiplier_unknown) return false;
        if (!a.multiplier_unknown && a.multiplier != b.multiplier) return false;
        if (!(*a.connectivity == *b.connectivity)) return false;
    }
    return true;
}

void ConnectivityInfo::print(std::ostream& out) const {
    out << "connectivities: " << nconnectivities() << "\n";
    for (const HConnectivityInfoItem& item : *items_) {
        // Each item: its multiplier on a line of its own, then the record.
        out << "multiplier: ";
        if (item->multiplier_unknown)
            out << "unknown";
        else
            out << item->multiplier;
        out << "\n";
        item->connectivity->print(out);
    }
}

void ConnectivityInfo::write(Archive& ar) const {
    ar << nconnectivities();
    for (const HConnectivityInfoItem& item : *items_) {
        ar << item->multiplier_unknown << item->multiplier;
        item->connectivity->write(ar);
    }
}

void ConnectivityInfo::read(Archive& ar) {
    std::vector<HConnectivityInfoItem> items;
    Archive::Field field(ar, "ConnectivityInfo::read nconnectivities");
    int n = 0;
    ar >> n;
    ar.check_count(n, 17, "connectivity count");  // a bool, a double and two int counts at least
    items.reserve(static_cast<std::size_t>(n < 1024 ? n : 1024));
    for (int i = 0; i < n; ++i) {
        HConnectivityInfoItem item(new ConnectivityInfoItem());
        {
            Archive::Field f(ar, "ConnectivityInfo::read multiplier");
            ar >> item->multiplier_unknown >> item->multiplier;
        }
        item->connectivity = HConnectivity(new Connectivity());
        item->connectivity->read(ar);
        items.push_back(item);
    }
    items_->swap(items);
}

Archive& operator<<(Archive& ar, const ConnectivityInfo& info) {
    info.write(ar);
    return ar;
}

Archive& operator>>(Archive& ar, ConnectivityInfo& info) {
    info.read(ar);
    return ar;
}

}  // namespace molcryst
