// Contacts by atom index: the equality rules for atom and group ends, the
// sorted copies behind them, print forms and archives.
#include "molcryst/contact/BasicContact.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

typedef std::vector<int> V;

std::string printed(const BasicContact& c) {
    std::ostringstream os;
    c.print(os);
    return os.str();
}

std::string strength_error(const BasicContact& c) {
    try {
        c.strength();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no exception";
}

void expect_same_record(const BasicContact& a, const BasicContact& b) {
    EXPECT_EQ(a.atom_from(), b.atom_from());
    EXPECT_EQ(a.atom_to(), b.atom_to());
    EXPECT_EQ(a.group_from(), b.group_from());
    EXPECT_EQ(a.group_to(), b.group_to());
    EXPECT_EQ(a.sorted_from(), b.sorted_from());
    EXPECT_EQ(a.sorted_to(), b.sorted_to());
    EXPECT_EQ(a.has_strength(), b.has_strength());
    if (a.has_strength() && b.has_strength()) {
        EXPECT_EQ(a.strength(), b.strength());
    }
}

std::vector<unsigned char> le32(int v) {
    unsigned int u = static_cast<unsigned int>(v);
    return {static_cast<unsigned char>(u), static_cast<unsigned char>(u >> 8),
            static_cast<unsigned char>(u >> 16), static_cast<unsigned char>(u >> 24)};
}

void append(std::vector<unsigned char>& out, const std::vector<unsigned char>& more) {
    out.insert(out.end(), more.begin(), more.end());
}

}  // namespace

TEST(BasicContact, ConstructionStrengthAndEnds) {
    BasicContact plain(3, 5);
    EXPECT_EQ(plain.group_from(), V{3});
    EXPECT_EQ(plain.group_to(), V{5});
    EXPECT_FALSE(plain.has_strength());
    EXPECT_EQ(strength_error(plain), "BasicContact - attempt to access unset contact strength");

    EXPECT_EQ(BasicContact(3, 5, -0.25).strength(), -0.25);
    EXPECT_EQ(BasicContact(3, 5, 0.0).strength(), 0.0);  // zero is a strength, not "unset"

    BasicContact groups(-1, V{7, 3, 5}, 2, V{2}, 1.5);
    EXPECT_EQ(groups.group_from(), (V{7, 3, 5}));  // the order given is kept
    EXPECT_EQ(groups.sorted_from(), (V{3, 5, 7}));
    EXPECT_EQ(groups.strength(), 1.5);

    // Replacing an end rebuilds its sorted copy; the anchor is not checked
    // against the group.
    groups.set_from(V{9, 8}, 4);
    EXPECT_EQ(groups.atom_from(), 4);
    EXPECT_EQ(groups.group_from(), (V{9, 8}));
    EXPECT_EQ(groups.sorted_from(), (V{8, 9}));
    groups.set_to(V{6, 1}, -1);
    EXPECT_EQ(groups.atom_to(), -1);
    EXPECT_EQ(groups.sorted_to(), (V{1, 6}));
    EXPECT_EQ(groups.strength(), 1.5);
}

TEST(BasicContact, EqualityOfAtomAndGroupEnds) {
    // Atom to atom: by anchors, in place or crosswise; strength plays no part.
    EXPECT_TRUE(BasicContact(1, 2) == BasicContact(1, 2, 3.0));
    EXPECT_TRUE(BasicContact(1, 2) == BasicContact(2, 1));
    EXPECT_FALSE(BasicContact(1, 2) == BasicContact(1, 3));
    EXPECT_FALSE(BasicContact(1, 2) == BasicContact(2, 2));
    // Groups of atom ends are ignored: only the anchor counts.
    EXPECT_TRUE(BasicContact(1, V{1, 9}, 2, V{2}) == BasicContact(1, V{1}, 2, V{5}));

    // Atom to group: the group end by membership, the atom end by its anchor.
    const BasicContact atom_group(2, V{2, 7}, -1, V{4, 5});
    EXPECT_TRUE(atom_group == BasicContact(2, V{2}, -1, V{5, 4}));
    EXPECT_FALSE(atom_group == BasicContact(2, V{2}, -1, V{4, 6}));
    EXPECT_FALSE(atom_group == BasicContact(2, V{2}, -1, V{4}));
    // Crosswise, both ways round.
    EXPECT_TRUE(atom_group == BasicContact(-1, V{5, 4}, 2, V{2}));
    EXPECT_TRUE(BasicContact(-1, V{5, 4}, 2, V{2}) == atom_group);
    EXPECT_FALSE(atom_group == BasicContact(-1, V{5, 3}, 2, V{2}));
    const BasicContact group_atom(-1, V{4, 5}, 2, V{2});
    EXPECT_TRUE(group_atom == BasicContact(-1, V{5, 4}, 2, V{}));
    EXPECT_TRUE(group_atom == BasicContact(2, V{2}, -1, V{5, 4}));
    EXPECT_FALSE(group_atom == BasicContact(2, V{2}, -1, V{4}));
    // A group of one is not the atom it holds: anchors are compared first.
    EXPECT_FALSE(BasicContact(-1, V{3}, 2, V{2}) == BasicContact(3, 2));

    // Group to group: in place or crosswise, by membership.
    const BasicContact gg(-1, V{1, 2}, -1, V{3, 4});
    EXPECT_TRUE(gg == BasicContact(-1, V{2, 1}, -1, V{4, 3}));
    EXPECT_TRUE(gg == BasicContact(-1, V{4, 3}, -1, V{1, 2}));
    EXPECT_FALSE(gg == BasicContact(-1, V{1, 2}, -1, V{3, 5}));
    // Membership is compared as a list: a repeated index makes a different group.
    EXPECT_FALSE(gg == BasicContact(-1, V{1, 2, 2}, -1, V{3, 4}));
    // Matching one end in place and the other crosswise is no match.
    EXPECT_FALSE(BasicContact(-1, V{1}, -1, V{1, 2}) == BasicContact(-1, V{1}, -1, V{1}));
}

TEST(BasicContact, SwitchingExchangesEndsAndTwiceRestores) {
    const BasicContact original(-1, V{7, 3}, 4, V{4}, 2.5);
    BasicContact c(original);
    c.switch_groups();
    EXPECT_EQ(c.atom_from(), 4);
    EXPECT_EQ(c.group_from(), V{4});
    EXPECT_EQ(c.atom_to(), -1);
    EXPECT_EQ(c.group_to(), (V{7, 3}));
    EXPECT_EQ(c.sorted_to(), (V{3, 7}));
    EXPECT_EQ(c.strength(), 2.5);
    EXPECT_TRUE(c == original);
    EXPECT_TRUE(original == c);
    c.switch_groups();
    expect_same_record(c, original);
}

TEST(BasicContact, PrintForms) {
    EXPECT_EQ(printed(BasicContact(3, 5)), "contact from  atom 3 to  atom 5\n");
    EXPECT_EQ(printed(BasicContact(3, 5, 2.5)), "contact from  atom 3 to  atom 5  Strength: 2.5\n");
    // The same contact by equality, printed in the order given.
    const BasicContact a(-1, V{3, 1}, 7, V{7}), b(-1, V{1, 3}, 7, V{7});
    EXPECT_TRUE(a == b);
    EXPECT_EQ(printed(a), "contact from group [3, 1, ] to  atom 7\n");
    EXPECT_EQ(printed(b), "contact from group [1, 3, ] to  atom 7\n");
    std::ostringstream os;
    os << BasicContact(0, V{0}, -1, V{}, -1.0);
    EXPECT_EQ(os.str(), "contact from  atom 0 to group []  Strength: -1\n");
}

TEST(BasicContact, ArchiveLayoutAndRoundTrip) {
    Archive ar = Archive::temporary();
    BasicContact(-1, V{5, 2}, 9, V{9}, 0.5).write(ar);
    std::vector<unsigned char> expected;
    append(expected, le32(-1));
    append(expected, le32(9));
    append(expected, le32(2));
    append(expected, le32(5));
    append(expected, le32(2));
    append(expected, le32(1));
    append(expected, le32(9));
    expected.push_back(1);
    const std::vector<unsigned char> half = {0, 0, 0, 0, 0, 0, 0xe0, 0x3f};  // 0.5, little-endian
    append(expected, half);
    EXPECT_EQ(bytes_of(ar), expected);

    // Read over a contact with other contents: everything is replaced and
    // the sorted copies are derived again.
    BasicContact back(1, V{1, 8}, 2, V{2}, 7.0);
    back.read(ar);
    expect_same_record(back, BasicContact(-1, V{5, 2}, 9, V{9}, 0.5));

    // Without a strength, 0.0 is written and the strength stays unset.
    Archive unset = Archive::temporary();
    BasicContact(4, 6).write(unset);
    const std::vector<unsigned char> bytes = bytes_of(unset);
    ASSERT_EQ(bytes.size(), 4u + 4 + 8 + 8 + 1 + 8);
    for (std::size_t i = bytes.size() - 9; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], 0) << i;
    back.read(unset);
    EXPECT_FALSE(back.has_strength());
    EXPECT_EQ(strength_error(back), "BasicContact - attempt to access unset contact strength");
    expect_same_record(back, BasicContact(4, 6));
}

TEST(BasicContact, BadArchivesThrowAndLeaveTheContact) {
    Archive ar = Archive::temporary();
    BasicContact(-1, V{5, 2}, 9, V{9}, 0.5).write(ar);
    const std::vector<unsigned char> good = bytes_of(ar);
    const BasicContact before(3, V{3}, -1, V{8, 1}, 4.0);

    // Every truncation of a good record fails cleanly.
    for (std::size_t n = 0; n < good.size(); ++n) {
        BasicContact c(before);
        Archive cut = archive_of(std::vector<unsigned char>(good.begin(), good.begin() + n));
        EXPECT_THROW(c.read(cut), std::runtime_error) << n;
        expect_same_record(c, before);
    }

    // A negative count, and a count larger than the file, name the field.
    for (int count : {-1, 1 << 30}) {
        std::vector<unsigned char> bad;
        append(bad, le32(1));
        append(bad, le32(2));
        append(bad, le32(count));
        append(bad, le32(1));
        Archive in = archive_of(bad);
        BasicContact c(before);
        try {
            c.read(in);
            ADD_FAILURE() << "no exception for count " << count;
        } catch (const std::runtime_error& e) {
            EXPECT_NE(std::string(e.what()).find("BasicContact::read group_from"),
                      std::string::npos)
                << e.what();
        }
        expect_same_record(c, before);
    }
}
