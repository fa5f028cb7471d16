// Criterion archiver: every archivable class round-trips by name, singly and
// in vectors; what a layout leaves out comes from the fresh object; clash
// criteria, null handles, unknown names and damaged archives fail cleanly.
#include "molcryst/contact/ContactCriterionArchiver.h"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "common/Text.h"
#include "molcryst/contact/ClashCriterion.h"

using namespace molcryst;
using namespace molcryst::testing;

namespace {

Hset_int set_of(std::set<int> numbers) { return Hset_int(new std::set<int>(numbers)); }

std::vector<unsigned char> name_bytes(const std::string& name) {
    return words({static_cast<int>(name.size())}) + std::vector<unsigned char>(name.begin(), name.end());
}

// One of each class, none with its defaults.
std::vector<HContactCriterion> one_of_each() {
    HBondCriterion* h = new HBondCriterion(1.5, -1.0, Angle::from_degrees(135), false, true, INTRAMOLECULAR, 2, 7);
    return {HContactCriterion(new DistanceCriterion(3.5, 1.0, INTRA_AND_INTERMOLECULAR, 1, 9, false, set_of({6}))),
            HContactCriterion(new VdWCriterion(0.5, -2.0, INTRAMOLECULAR, 3, 5, false, set_of({7, 8}), set_of({1}))),
            HContactCriterion(new CombinedCriterion(true, 0.2, -3.0, INTERMOLECULAR, 0, 4, false)),
            HContactCriterion(h)};
}

std::vector<unsigned char> archived(const HContactCriterion& c) {
    Archive ar = Archive::temporary();
    ContactCriterionArchiver::write(c, ar);
    return bytes_of(ar);
}

HContactCriterion read_back(const std::vector<unsigned char>& bytes) {
    Archive ar = archive_of(bytes);
    HContactCriterion c;
    ContactCriterionArchiver::read(c, ar);
    return c;
}

}  // namespace

TEST(ContactCriterionArchiver, EveryClassRoundTripsByName) {
    for (const HContactCriterion& c : one_of_each()) {
        SCOPED_TRACE(c->class_name());
        const std::vector<unsigned char> bytes = archived(c);
        EXPECT_EQ(bytes, name_bytes(c->class_name()) + written(*c));
        const HContactCriterion back = read_back(bytes);
        EXPECT_STREQ(back->class_name(), c->class_name());
        EXPECT_TRUE(*back == *c);
        EXPECT_EQ(printed(*back), printed(*c));
    }
    std::ostringstream os;
    ContactCriterionArchiver::print(os, one_of_each()[0]);
    EXPECT_EQ(os.str(), printed(*one_of_each()[0]));

    // What the layouts leave out: strongest_only comes back false, a combined
    // criterion comes back van der Waals corrected, switches at their defaults.
    const HContactCriterion strongest(new DistanceCriterion(3.5, 1.0, INTERMOLECULAR, 1, 9, true));
    EXPECT_FALSE(read_back(archived(strongest))->strongest_only());
    const HContactCriterion plain(new CombinedCriterion(false, 0.2, -3.0, INTERMOLECULAR, 0, 4, false));
    EXPECT_TRUE(static_cast<const CombinedCriterion&>(*read_back(archived(plain))).vdw_corrected());
    HBondCriterion* h = new HBondCriterion(0.0, -5.0, Angle::from_degrees(120), true, false, INTERMOLECULAR, 4, 999);
    const HContactCriterion switched(h);
    h->set_acceptor(HBondCriterion::ACCEPTOR_WATER_O, HBondCriterion::UNSET);
    EXPECT_EQ(static_cast<const HBondCriterion&>(*read_back(archived(switched))).acceptors(),
              HBondCriterion::default_acceptors());
}

TEST(ContactCriterionArchiver, VectorsAreAllOrNothing) {
    const std::vector<HContactCriterion> all = one_of_each();
    Archive ar = Archive::temporary();
    ContactCriterionArchiver::write(all, ar);
    const std::vector<unsigned char> bytes = bytes_of(ar);
    std::vector<unsigned char> expected = words({4});
    for (const HContactCriterion& c : all) expected = expected + archived(c);
    EXPECT_EQ(bytes, expected);

    std::vector<HContactCriterion> back;
    Archive in = archive_of(bytes);
    ContactCriterionArchiver::read(back, in);
    ASSERT_EQ(back.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) EXPECT_TRUE(*back[i] == *all[i]) << i;

    // Every truncation throws and leaves the vector as it was.
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        std::vector<HContactCriterion> target = {all[1]};
        Archive cut_ar = archive_of(cut(bytes, n));
        EXPECT_THROW(ContactCriterionArchiver::read(target, cut_ar), std::runtime_error) << n;
        ASSERT_EQ(target.size(), 1u);
        EXPECT_EQ(target[0], all[1]);
    }
    std::vector<HContactCriterion> target;
    Archive huge = archive_of(words({1 << 30}));
    EXPECT_EQ(error_text<std::runtime_error>([&] { ContactCriterionArchiver::read(target, huge); }),
              "ContactCriterionArchiver::read criterion count: criterion count 1073741824 cannot fit in the 0 bytes "
              "left in archive");
}

TEST(ContactCriterionArchiver, ClashesNullsAndUnknownNamesFailCleanly) {
    // A clash criterion cannot be archived, and nothing is written, not even
    // the criteria before it in a vector.
    const HContactCriterion clash(new ClashCriterion());
    EXPECT_FALSE(ContactCriterionArchiver::archivable(*clash));
    EXPECT_TRUE(ContactCriterionArchiver::archivable(*one_of_each()[3]));
    Archive ar = Archive::temporary();
    EXPECT_EQ(error_text<std::runtime_error>([&] { ContactCriterionArchiver::write(clash, ar); }),
              "Unrecognised contact definition: ClashCriterion");
    std::vector<HContactCriterion> with_clash = one_of_each();
    with_clash.push_back(clash);
    EXPECT_THROW(ContactCriterionArchiver::write(with_clash, ar), std::runtime_error);
    EXPECT_TRUE(bytes_of(ar).empty());
    EXPECT_THROW(ContactCriterionArchiver::write(HContactCriterion(), ar), std::logic_error);

    // An unknown or damaged name on reading leaves the handle as it was.
    HContactCriterion target = one_of_each()[0];
    const HContactCriterion before = target;
    const std::vector<unsigned char> body = written(*before);
    for (const std::string& name : {std::string("ClashCriterion"), std::string("Criterion"), std::string()}) {
        Archive in = archive_of(name_bytes(name) + body);
        EXPECT_EQ(error_text<std::runtime_error>([&] { ContactCriterionArchiver::read(target, in); }),
                  "Unrecognised contact definition: " + name);
        EXPECT_EQ(target, before);
    }
    Archive long_name = archive_of(words({1000}) + body);
    EXPECT_EQ(error_text<std::runtime_error>([&] { ContactCriterionArchiver::read(target, long_name); }).substr(0, 56),
              "ContactCriterionArchiver::read class name: string length");
    // A known name over another class's body: the body's own checks fail.
    Archive wrong_body = archive_of(name_bytes("HBondCriterion") + body);
    EXPECT_THROW(ContactCriterionArchiver::read(target, wrong_body), std::runtime_error);
    EXPECT_EQ(target, before);
}
