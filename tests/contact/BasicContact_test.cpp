// Contacts by atom index: the equality rules for atom and group ends, the
// sorted copies behind them, print forms and archives.
#include "molcryst/contact/BasicContact.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "ContactRecord.h"
#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/support/Archive.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

typedef std::vector<int> V;

const std::string unset = "BasicContact - attempt to access unset contact strength";

}  // namespace

TEST(BasicContact, StrengthAndEnds) {
    EXPECT_EQ(error_text<std::runtime_error>([] { BasicContact(3, 5).strength(); }), unset);
    EXPECT_EQ(BasicContact(3, 5, 0.0).strength(), 0.0);  // zero is a strength, not "unset"
    EXPECT_EQ(record(BasicContact(3, 5)), "contact from  atom 3 to  atom 5\nsorted 3 | 5");

    // A group keeps the order given beside its sorted copy; replacing an end
    // rebuilds the copy, and the anchor is not checked against the group.
    BasicContact groups(-1, V{7, 3, 5}, 2, V{2}, 1.5);
    EXPECT_EQ(record(groups), "contact from group [7, 3, 5, ] to  atom 2  Strength: 1.5\nsorted 3 5 7 | 2");
    groups.set_from(V{9, 8}, 4);
    groups.set_to(V{6, 1}, -1);
    EXPECT_EQ(groups.group_from(), (V{9, 8}));
    EXPECT_EQ(record(groups), "contact from  atom 4 to group [6, 1, ]  Strength: 1.5\nsorted 8 9 | 1 6");
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
    EXPECT_EQ(record(c), "contact from  atom 4 to group [7, 3, ]  Strength: 2.5\nsorted 4 | 3 7");
    EXPECT_TRUE(c == original);
    EXPECT_TRUE(original == c);
    c.switch_groups();
    EXPECT_EQ(record(c), record(original));
}

TEST(BasicContact, PrintForms) {
    EXPECT_EQ(printed(BasicContact(3, 5, 2.5)), "contact from  atom 3 to  atom 5  Strength: 2.5\n");
    // The same contact by equality, printed in the order given.
    const BasicContact a(-1, V{3, 1}, 7, V{7}), b(-1, V{1, 3}, 7, V{7});
    EXPECT_TRUE(a == b);
    EXPECT_EQ(printed(a), "contact from group [3, 1, ] to  atom 7\n");
    EXPECT_EQ(printed(b), "contact from group [1, 3, ] to  atom 7\n");
    EXPECT_EQ(printed(BasicContact(0, V{0}, -1, V{}, -1.0)), "contact from  atom 0 to group []  Strength: -1\n");
}

TEST(BasicContact, ArchiveLayoutRoundTripAndBadInput) {
    const BasicContact contact(-1, V{5, 2}, 9, V{9}, 0.5);
    const std::vector<unsigned char> good = written(contact);
    std::vector<unsigned char> expected = words({-1, 9, 2, 5, 2, 1, 9});
    expected.push_back(1);
    for (unsigned char c : {0, 0, 0, 0, 0, 0, 0xe0, 0x3f}) expected.push_back(c);  // 0.5, little-endian
    EXPECT_EQ(good, expected);

    // Read over a contact with other contents: everything is replaced and
    // the sorted copies are derived again.
    BasicContact back(1, V{1, 8}, 2, V{2}, 7.0);
    Archive ar = archive_of(good);
    back.read(ar);
    EXPECT_EQ(record(back), record(contact));

    // Without a strength, 0.0 is written and the strength stays unset.
    std::vector<unsigned char> bytes = written(BasicContact(4, 6));
    EXPECT_EQ(bytes, cut(words({4, 6, 1, 4, 1, 6, 0, 0, 0}), 33));
    Archive unset_ar = archive_of(bytes);
    back.read(unset_ar);
    EXPECT_EQ(error_text<std::runtime_error>([&] { back.strength(); }), unset);
    EXPECT_EQ(record(back), record(BasicContact(4, 6)));

    // A cut record, a negative count or a count larger than the file fails
    // and leaves the contact as it was; the counts name the field.
    const BasicContact before(3, V{3}, -1, V{8, 1}, 4.0);
    for (std::size_t n = 0; n < good.size(); ++n) {
        BasicContact c(before);
        Archive part = archive_of(cut(good, n));
        EXPECT_THROW(c.read(part), std::runtime_error) << n;
        EXPECT_EQ(record(c), record(before));
    }
    for (int count : {-1, 1 << 30}) {
        BasicContact c(before);
        Archive in = archive_of(words({1, 2, count, 1}));
        EXPECT_EQ(error_text<std::runtime_error>([&] { c.read(in); }).find("BasicContact::read group_from"), 0u);
        EXPECT_EQ(record(c), record(before));
    }
}
