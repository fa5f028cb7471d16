// ConnectivityInfo: a crystal's list of connectivity records with their
// multipliers, the compact account of what a structure holds.
#ifndef MOLCRYST_CONNECTIVITY_CONNECTIVITYINFO_H
#define MOLCRYST_CONNECTIVITY_CONNECTIVITYINFO_H

#include <ostream>
#include <vector>

#include "molcryst/connectivity/Connectivity.h"
#include "molcryst/support/Archive.h"
#include "molcryst/support/THandle.h"

namespace molcryst {

/// One record of the list: a connectivity and how many times it occurs.
struct ConnectivityInfoItem {
    HConnectivity connectivity;
    double multiplier = 1.0;
    bool multiplier_unknown = false;  // then multiplier is 1.0 and means nothing
};
typedef THandle<ConnectivityInfoItem> HConnectivityInfoItem;

class ConnectivityInfo;
typedef THandle<ConnectivityInfo> HConnectivityInfo;

/// Connectivity records with multipliers, known or unknown.
class ConnectivityInfo {
public:
    ConnectivityInfo() : items_(new std::vector<HConnectivityInfoItem>()) {}
    /// Shares the connectivity records of `other` in new items.
    ConnectivityInfo(const ConnectivityInfo& other);
    ConnectivityInfo& operator=(const ConnectivityInfo& other);
    virtual ~ConnectivityInfo() = default;

    /// Appends all items of `other`.
    void add(const ConnectivityInfo& other);
    int nconnectivities() const { return static_cast<int>(items_->size()); }
    /// The record at `i`; std::invalid_argument outside 0 to nconnectivities()-1.
    HConnectivity connectivity(int i) const;
    void add_connectivity(const HConnectivity& connectivity, double multiplier);
    /// Adds with multiplier 1.0, marked unknown.
    void add_connectivity(const HConnectivity& connectivity);
    void remove_connectivity(int i);
    void clear() { items_->clear(); }

    /// Sets a known multiplier.
    void set_multiplier(int i, double multiplier);
    double multiplier(int i) const;
    /// Marks the multiplier unknown and sets it to 1.0.
    void set_multiplier_unknown(int i);
    bool multiplier_unknown(int i) const;

    /// Whole multipliers where they are simple fractions, then without
    /// common factors of 2, 3 and 5.
    void simplify_multipliers();
    void remove_common_factors();
    void remove_common_fractions();

    /// Replaces each item by the connected parts of its record, each with the
    /// parent's multiplier, or unknown for an unknown one.
    void split();

    /// Same count; items equal in order: records by Connectivity::operator==,
    /// unknown marks equal, and known multipliers equal.
    bool operator==(const ConnectivityInfo& other) const;
    bool operator!=(const ConnectivityInfo& other) const { return !(*this == other); }

    /// "connectivities: " and the count, a line end, then the items.
    void print(std::ostream& out) const;
    /// int count; each item as bool unknown, double multiplier, the record.
    void write(Archive& ar) const;
    /// Replaces the list by the one read; on failure the list is as it was.
    void read(Archive& ar);

private:
    const ConnectivityInfoItem& item(int i, const char* operation) const;
    ConnectivityInfoItem& item(int i, const char* operation);

    THandle<std::vector<HConnectivityInfoItem> > items_;  // never null
};

Archive& operator<<(Archive& ar, const ConnectivityInfo& info);
Archive& operator>>(Archive& ar, ConnectivityInfo& info);

}  // namespace molcryst

#endif
