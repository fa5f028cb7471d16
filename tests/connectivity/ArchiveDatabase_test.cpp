#include "molcryst/connectivity/ArchiveDatabase.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/molecule/Molecule3d.h"
#include "molecule/TestMolecules.h"

namespace molcryst {
namespace {

namespace fs = std::filesystem;
using testing::error_text;
using testing::words;

typedef DatabaseEntry<ConnectivityInfo> InfoEntry;
typedef ArchiveDatabase<InfoEntry> InfoDatabase;
typedef DatabaseEntry<CrystalMaker> MakerEntry;
typedef ArchiveDatabase<MakerEntry> MakerDatabase;

// A fresh directory under the system's temporary directory, removed at the end.
class ScratchDirectory {
public:
    ScratchDirectory() {
        static int counter = 0;
        path_ = fs::temp_directory_path() /
                ("molcryst_db_" + std::to_string(::getpid()) + "_" + std::to_string(counter++));
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~ScratchDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    std::string str() const { return path_.string(); }
    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& f : fs::directory_iterator(path_)) names.insert(f.path().filename().string());
        return names;
    }

private:
    fs::path path_;
};

std::vector<unsigned char> file_bytes(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void write_file(const std::string& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
}

// One record of `natoms` atoms of element `e` in a chain, multiplier `m`.
THandle<InfoEntry> info_entry(const std::string& id, Element e = Element::C, int natoms = 1, double m = 1.0) {
    HConnectivity c(new Connectivity());
    for (int i = 0; i < natoms; ++i) c->add(HConnectivityAtom(new ConnectivityAtom(e)));
    for (int i = 1; i < natoms; ++i) c->add(HConnectivityBond(new ConnectivityBond(SINGLE_BOND)), i - 1, i);
    HConnectivityInfo info(new ConnectivityInfo());
    info->add_connectivity(c, m);
    return THandle<InfoEntry>(new InfoEntry(DatabaseEntryIdentifier(id), info));
}

std::vector<std::string> ids_of(const InfoDatabase& db) {
    std::vector<std::string> out;
    for (int i = 0; i < db.size(); ++i) out.push_back(db.identifier(i).text());
    return out;
}

TEST(ArchiveDatabase, FilesByteForByte) {
    ScratchDirectory dir;
    InfoDatabase db(dir.str(), "test", 3);
    EXPECT_EQ(db.size(), 0);  // no index yet
    EXPECT_TRUE(dir.files().empty());
    db.append(info_entry("aa", Element::O, 1, 2.0));
    db.append(info_entry("Abc"));
    EXPECT_EQ(db.absolute_database_name(), dir.str() + "/test.adi");
    EXPECT_EQ(InfoDatabase::index_file_path("p", "n"), "p/n.adi");
    EXPECT_EQ(db.absolute_entry_file_name(DatabaseEntryIdentifier("aa")), dir.str() + "/test_aa.ade");
    EXPECT_EQ(dir.files(), (std::set<std::string>{"test.adi", "test_aa.ade", "test_Abc.ade"}));

    const std::vector<unsigned char> index = file_bytes(dir.str() + "/test.adi");
    EXPECT_EQ(std::string(index.begin(), index.end()), "aa\nAbc\n");

    std::vector<unsigned char> expected = words({6, 2});  // version, identifier length
    expected.push_back('a');
    expected.push_back('a');
    std::vector<unsigned char> tail = words({1});  // one connectivity
    expected.insert(expected.end(), tail.begin(), tail.end());
    expected.push_back(0);  // known multiplier
    tail = testing::doubles({2.0});
    expected.insert(expected.end(), tail.begin(), tail.end());
    tail = words({1});
    expected.insert(expected.end(), tail.begin(), tail.end());
    expected.push_back(static_cast<unsigned char>(Element::O));
    tail = words({0, 0});  // charge, bond count
    expected.insert(expected.end(), tail.begin(), tail.end());
    EXPECT_EQ(file_bytes(dir.str() + "/test_aa.ade"), expected);

    // Read back, by position and by identifier, in another database object.
    InfoDatabase again(dir.str(), "test", 1);
    ASSERT_EQ(again.size(), 2);
    THandle<InfoEntry> e = again.entry(DatabaseEntryIdentifier("aa"));
    EXPECT_EQ(e->identifier().text(), "aa");
    EXPECT_EQ(e->data()->multiplier(0), 2.0);
    EXPECT_EQ(e->data()->connectivity(0)->atom(0)->element(), Element(Element::O));
    EXPECT_EQ(*again.entry(1)->data(), *info_entry("Abc")->data());
    EXPECT_EQ(again.index(DatabaseEntryIdentifier("Abc")), 1);
    EXPECT_EQ(again.index(DatabaseEntryIdentifier("abc")), 2);  // exact match only: size() when absent
    EXPECT_TRUE(again.identifier_exists(DatabaseEntryIdentifier("aa")));
    EXPECT_FALSE(again.identifier_exists(DatabaseEntryIdentifier("AA")));
    again.flush();
    EXPECT_EQ(again.normalise_identifier(DatabaseEntryIdentifier("x y")).text(), "x y");
    EXPECT_EQ(again.identifier_maximum_length(), DatabaseEntryIdentifier::maximum_length_);
}

TEST(ArchiveDatabase, OpenModesAndRefusals) {
    ScratchDirectory dir;
    {
        InfoDatabase db(dir.str(), "m", 3);
        EXPECT_TRUE(db.writable());
        db.append(info_entry("one"));
        EXPECT_EQ(error_text<database_error>([&] { db.append(info_entry("one", Element::N)); }),
                  "ArchiveDatabase::append: database already contains an entry with this identifier: one");
        EXPECT_EQ(db.size(), 1);
        EXPECT_EQ(db.entry(0)->data()->connectivity(0)->atom(0)->element(), Element(Element::C));
        EXPECT_EQ(error_text<database_error>([&] { db.replace(info_entry("two")); }),
                  "ArchiveDatabase::replace: database does not contain an entry with this identifier: two");
        EXPECT_EQ(error_text<database_error>([&] { db.remove(DatabaseEntryIdentifier("two")); }),
                  "ArchiveDatabase::remove: database does not contain an entry with this identifier: two");
        EXPECT_EQ(error_text<std::invalid_argument>([&] { db.append(THandle<InfoEntry>()); }),
                  "ArchiveDatabase::append: entry is a null pointer");
    }
    const std::vector<unsigned char> index_before = file_bytes(dir.str() + "/m.adi");
    InfoDatabase db(dir.str(), "m", 1);
    EXPECT_FALSE(db.writable());
    EXPECT_EQ(error_text<database_error>([&] { db.append(info_entry("new")); }),
              "ArchiveDatabase::append: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.replace(info_entry("one")); }),
              "ArchiveDatabase::replace: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.remove(DatabaseEntryIdentifier("one")); }),
              "ArchiveDatabase::remove: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.append_all({info_entry("new")}); }),
              "ArchiveDatabase::append: database is not opened for writing");
    EXPECT_EQ(file_bytes(dir.str() + "/m.adi"), index_before);
    EXPECT_EQ(dir.files(), (std::set<std::string>{"m.adi", "m_one.ade"}));

    EXPECT_EQ(error_text<database_error>([&] { db.entry(1); }), "ArchiveDatabase::entry( int ) 1 is out of range");
    EXPECT_EQ(error_text<database_error>([&] { db.entry(-1); }), "ArchiveDatabase::entry( int ) -1 is out of range");
    EXPECT_EQ(error_text<database_error>([&] { db.identifier(1); }), "ArchiveDatabase::entry( int ) 1 is out of range");
    EXPECT_EQ(error_text<database_error>([&] { db.entry(DatabaseEntryIdentifier("One")); }),
              "ArchiveDatabase::entry( DatabaseEntryIdentifier One is not in the database");
    EXPECT_EQ(error_text<std::runtime_error>([] { InfoEntry(DatabaseEntryIdentifier("x1"), HConnectivityInfo()); }),
              "Illegal null data in entry x1 (DatabaseEntry::DatabaseEntry)");
}

TEST(ArchiveDatabase, IdentifiersNeverEscapeTheDirectory) {
    ScratchDirectory dir;
    InfoDatabase db(dir.str(), "safe", 3);
    db.append(info_entry("fine"));
    const std::set<std::string> before = dir.files();
    const std::vector<std::string> bad = {"",           "../x",       "a/b",        "a\\b", "..",
                                          "x..y",       std::string("nul\0x", 5), "tab\there", "line\n",
                                          std::string(65, 'a')};
    for (const std::string& id : bad) {
        const std::string text = error_text<database_error>([&] { db.append(info_entry(id)); });
        EXPECT_EQ(text.rfind("ArchiveDatabase::append: illegal identifier \"", 0), 0u) << text;
        EXPECT_EQ(error_text<database_error>([&] { db.append_all({info_entry("ok"), info_entry(id)}); }).rfind(
                      "ArchiveDatabase::append: illegal identifier", 0),
                  0u);
    }
    EXPECT_EQ(error_text<database_error>([&] { db.append(info_entry("../up")); }),
              "ArchiveDatabase::append: illegal identifier \"../up\": it holds a path separator");
    EXPECT_EQ(error_text<database_error>([&] { db.append(info_entry(std::string("a\0b", 3))); }),
              "ArchiveDatabase::append: illegal identifier \"a\\x00b\": it holds a control character");
    EXPECT_EQ(dir.files(), before);
    EXPECT_EQ(db.size(), 1);
    db.append(info_entry(std::string(64, 'a')));  // the longest that is allowed
    db.append(info_entry("with space.and-dots_ok"));
    EXPECT_EQ(db.size(), 3);

    // A line of a hand-edited index cannot reach outside either.
    write_file(dir.str() + "/safe.adi", "fine\n../../etc/passwd\n");
    InfoDatabase edited(dir.str(), "safe", 1);
    ASSERT_EQ(edited.size(), 2);
    EXPECT_NE(error_text<database_error>([&] { edited.entry(1); }).find("illegal identifier"), std::string::npos);
    EXPECT_EQ(edited.entry(0)->identifier().text(), "fine");
}

// A read-only database in memory: what the base class gives every implementation.
class ListDatabase : public Database<InfoEntry> {
public:
    explicit ListDatabase(const std::vector<std::string>& ids) : ids_(ids) {}
    DatabaseEntryIdentifier identifier(int i) const override { return ids_.at(static_cast<std::size_t>(i)); }
    bool identifier_exists(const DatabaseEntryIdentifier& id) const override { return index(id) != size(); }
    int index(const DatabaseEntryIdentifier& id) const override {
        for (int i = 0; i < size(); ++i)
            if (ids_[static_cast<std::size_t>(i)] == id.text()) return i;
        return size();
    }
    int size() const override { return static_cast<int>(ids_.size()); }
    THandle<InfoEntry> entry(int i) const override { entry_error("ListDatabase", i); }
    THandle<InfoEntry> entry(const DatabaseEntryIdentifier& id) const override { entry_error("ListDatabase", id); }
    void flush() override {}

private:
    std::vector<std::string> ids_;
};

TEST(Database, TheBaseRefusesChangesAndFindsTheNearestEntry) {
    ListDatabase db({"aa", "b"});
    EXPECT_FALSE(db.writable());
    EXPECT_EQ(error_text<database_error>([&] { db.append(info_entry("c")); }),
              "Database::append: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.replace(info_entry("b")); }),
              "Database::replace: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.remove(DatabaseEntryIdentifier("b")); }),
              "Database::remove: database is not opened for writing");
    EXPECT_EQ(error_text<database_error>([&] { db.entry(5); }), "ListDatabase::entry( int ) 5 is out of range");
    EXPECT_EQ(error_text<std::runtime_error>([&] { db.entry(DatabaseEntryIdentifier("zz")); }),
              "ListDatabase::entry( DatabaseEntryIdentifier zz is not in the database");
    Database<InfoEntry>::IdentifierMatch match = Database<InfoEntry>::ExactMatch;
    EXPECT_EQ(db.nearest_entry(DatabaseEntryIdentifier("ABC"), match), 1);
    EXPECT_EQ(match, Database<InfoEntry>::NoMatch);
    EXPECT_EQ(db.nearest_entry(DatabaseEntryIdentifier("AA"), match), 0);
    EXPECT_EQ(match, Database<InfoEntry>::CaseMatch);
    EXPECT_EQ(db.normalise_identifier(DatabaseEntryIdentifier("Ab")).text(), "Ab");
}

TEST(ArchiveDatabase, NearestEntry) {
    auto nearest = [](const std::vector<std::string>& ids, const std::string& target) {
        ScratchDirectory dir;
        InfoDatabase db(dir.str(), "n", 3);
        std::vector<THandle<InfoEntry> > entries;
        for (const std::string& id : ids) entries.push_back(info_entry(id));
        db.append_all(entries);
        InfoDatabase::IdentifierMatch match = InfoDatabase::ExactMatch;
        const int i = db.nearest_entry(DatabaseEntryIdentifier(target), match);
        return std::make_pair(i < 0 ? std::string("none") : db.identifier(i).text(), static_cast<int>(match));
    };
    EXPECT_EQ(nearest({"aa", "abc", "ABC"}, "ABC"), std::make_pair(std::string("ABC"), 2));
    EXPECT_EQ(nearest({"aa", "abc"}, "ABC"), std::make_pair(std::string("abc"), 1));
    EXPECT_EQ(nearest({"aa", "Abc", "abc"}, "ABC"), std::make_pair(std::string("Abc"), 1));  // the first of them
    EXPECT_EQ(nearest({"aa", "b"}, "ABC"), std::make_pair(std::string("b"), 0));
    EXPECT_EQ(nearest({"zz", "b", "c"}, "ABC"), std::make_pair(std::string("b"), 0));  // the closest after
    EXPECT_EQ(nearest({"aa", "AB"}, "ABC"), std::make_pair(std::string("AB"), 0));    // nothing after: closest before
    EXPECT_EQ(nearest({}, "ABC"), std::make_pair(std::string("none"), 0));
}

TEST(ArchiveDatabase, RemoveReplaceAndBulkAppend) {
    ScratchDirectory dir;
    InfoDatabase db(dir.str(), "r", 3);
    db.append_all({info_entry("e0"), info_entry("e1"), info_entry("e2"), info_entry("e3")});
    EXPECT_EQ(ids_of(db), (std::vector<std::string>{"e0", "e1", "e2", "e3"}));
    EXPECT_EQ(error_text<database_error>([&] { db.append_all({info_entry("e4"), info_entry("e4")}); }),
              "ArchiveDatabase::append: database already contains an entry with this identifier: e4");
    EXPECT_EQ(db.size(), 4);
    EXPECT_FALSE(fs::exists(dir.str() + "/r_e4.ade"));

    db.remove(DatabaseEntryIdentifier("e1"));
    EXPECT_EQ(ids_of(db), (std::vector<std::string>{"e0", "e2", "e3"}));
    EXPECT_EQ(db.index(DatabaseEntryIdentifier("e2")), 1);
    EXPECT_EQ(db.index(DatabaseEntryIdentifier("e3")), 2);
    EXPECT_FALSE(fs::exists(dir.str() + "/r_e1.ade"));
    const std::vector<unsigned char> index = file_bytes(dir.str() + "/r.adi");
    EXPECT_EQ(std::string(index.begin(), index.end()), "e0\ne2\ne3\n");

    db.replace(info_entry("e2", Element::N, 3));
    EXPECT_EQ(db.entry(1)->data()->connectivity(0)->natoms(), 3);
    EXPECT_EQ(file_bytes(dir.str() + "/r.adi"), index);  // the index is not touched
    EXPECT_EQ(dir.files(), (std::set<std::string>{"r.adi", "r_e0.ade", "r_e2.ade", "r_e3.ade"}));

    // A last index line without its line feed is dropped on reading.
    write_file(dir.str() + "/r.adi", "e0\ne2\ne3");
    EXPECT_EQ(ids_of(InfoDatabase(dir.str(), "r", 1)), (std::vector<std::string>{"e0", "e2"}));
}

TEST(ArchiveDatabase, DamagedEntriesGiveDatabaseErrorsAndSpareTheOthers) {
    ScratchDirectory dir;
    InfoDatabase db(dir.str(), "d", 3);
    db.append_all({info_entry("good", Element::C, 4), info_entry("cut", Element::C, 4), info_entry("gone"),
                   info_entry("other"), info_entry("version")});
    std::vector<unsigned char> bytes = file_bytes(dir.str() + "/d_cut.ade");
    write_file(dir.str() + "/d_cut.ade", std::string(bytes.begin(), bytes.end() - 5));
    fs::remove(dir.str() + "/d_gone.ade");
    fs::copy_file(dir.str() + "/d_good.ade", dir.str() + "/d_other.ade", fs::copy_options::overwrite_existing);
    bytes = file_bytes(dir.str() + "/d_version.ade");
    bytes[0] = 7;
    write_file(dir.str() + "/d_version.ade", std::string(bytes.begin(), bytes.end()));

    for (const char* id : {"cut", "gone", "other", "version"}) {
        const std::string text = error_text<database_error>([&] { db.entry(DatabaseEntryIdentifier(id)); });
        EXPECT_NE(text.find(std::string("d_") + id + ".ade"), std::string::npos) << text;
    }
    EXPECT_NE(error_text<database_error>([&] { db.entry(DatabaseEntryIdentifier("version")); })
                  .find("format version 7 is not 1 to 6"),
              std::string::npos);
    EXPECT_EQ(db.entry(DatabaseEntryIdentifier("good"))->data()->connectivity(0)->natoms(), 4);
    // Replacing a damaged entry mends it.
    db.replace(info_entry("cut"));
    EXPECT_EQ(db.entry(DatabaseEntryIdentifier("cut"))->data()->connectivity(0)->natoms(), 1);
}

TEST(ArchiveDatabase, StoresCrystalMakers) {
    ScratchDirectory dir;
    HMolecule3d acid = testing::acetic_acid();
    HCrystalMaker maker(new CrystalMaker());
    maker->add(HMolecule(new Molecule3d(*acid)), CrystalMaker::Select3d);
    {
        MakerDatabase db(dir.str(), "cm", 3);
        db.append(THandle<MakerEntry>(new MakerEntry(DatabaseEntryIdentifier("ACID01"), maker)));
    }
    MakerDatabase db(dir.str(), "cm", 1);
    THandle<MakerEntry> back = db.entry(0);
    EXPECT_TRUE(*back->data() == *maker);
    EXPECT_EQ(back->data()->molecule(0)->natoms(), acid->natoms());
}

// A child process appends entries without end; the parent kills it at a
// random moment, then every entry the index lists must read back whole.
TEST(ArchiveDatabase, KilledWritersLeaveEveryListedEntryReadable) {
    ScratchDirectory dir;
    std::mt19937 random(12345);
    std::uniform_int_distribution<int> pause_us(0, 4000);
    int checked = 0, kills = 0;
    for (int round = 0; round < 220; ++round) {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            // Only the library runs here, and the child never returns into the test.
            try {
                InfoDatabase db(dir.str(), "k", 3);
                for (int n = db.size(); n < 1000000; ++n) db.append(info_entry("e" + std::to_string(n), Element::C, 3));
            } catch (...) {
                ::_exit(2);
            }
            ::_exit(0);
        }
        ::usleep(static_cast<useconds_t>(pause_us(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped by itself, status " << status;
        ++kills;
        InfoDatabase db(dir.str(), "k", 1);
        // Earlier entries are never rewritten by append: reading the new ones each round suffices.
        for (int i = checked; i < db.size(); ++i) {
            ASSERT_EQ(db.identifier(i).text(), "e" + std::to_string(i));
            ASSERT_EQ(db.entry(i)->data()->connectivity(0)->natoms(), 3) << "entry " << i << " after kill " << kills;
        }
        checked = db.size();
    }
    EXPECT_GE(kills, 200);
    InfoDatabase db(dir.str(), "k", 1);
    for (int i = 0; i < db.size(); ++i) EXPECT_EQ(db.entry(i)->identifier().text(), "e" + std::to_string(i));
    EXPECT_GT(db.size(), 0);
    RecordProperty("entries", db.size());
}

}  // namespace
}  // namespace molcryst
