#include "molcryst/support/Archive.h"

#include <gtest/gtest.h>

#include "common/ArchiveBytes.h"

#include <cstdio>
#include <string>
#include <vector>

#include "molcryst/support/DatabaseEntryIdentifier.h"
#include "molcryst/support/StringFunctions.h"
#include "molcryst/support/VersionedArchive.h"

#include <unistd.h>

using namespace molcryst;
using molcryst::testing::archive_of;
using molcryst::testing::bytes_of;

namespace {

// A small archivable record: a label, a list of numbers and an optional child.
struct Record {
    std::string label;
    std::vector<double> values;
    THandle<Record> child;
    void write(Archive& ar) const {
        ar << label << values;
        write_possibly_null_handle(ar, child);
    }
    void read(Archive& ar) {
        Archive::Field field(ar, "Record::read");
        ar >> label >> values;
        read_possibly_null_handle(ar, child);
    }
};

std::string runtime_error_text(Archive& ar, void (*read)(Archive&)) {
    try {
        read(ar);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "no exception";
}

}  // namespace

TEST(Archive, PrimitivesAreLittleEndianWithFixedWidths) {
    Archive ar = Archive::temporary();
    ar << true << 'A' << static_cast<short>(-2) << 0x01020304 << 0xA0B0C0D0u << 1.0;
    std::vector<unsigned char> expected = {1,    'A',  0xFE, 0xFF, 0x04, 0x03, 0x02, 0x01, 0xD0, 0xC0, 0xB0,
                                           0xA0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F};
    EXPECT_EQ(bytes_of(ar), expected);

    bool b = false;
    char c = 0;
    short s = 0;
    int i = 0;
    unsigned int u = 0;
    double d = 0;
    ar >> b >> c >> s >> i >> u >> d;
    EXPECT_TRUE(b);
    EXPECT_EQ(c, 'A');
    EXPECT_EQ(s, -2);
    EXPECT_EQ(i, 0x01020304);
    EXPECT_EQ(u, 0xA0B0C0D0u);
    EXPECT_EQ(d, 1.0);

    unsigned short us = 0;
    Archive back = archive_of({0xFE, 0xFF});
    back >> us;
    EXPECT_EQ(us, 0xFFFF - 1);
}

TEST(Archive, StringsVectorsAndHandlesRoundTrip) {
    Archive ar = Archive::temporary();
    THandle<Record> r(new Record{"C1", {1.5, -2.0}, THandle<Record>(new Record{"", {}, THandle<Record>()})});
    std::vector<std::string> words = {"", "a", "long word"};
    ar << std::string("abc") << words << r;
    std::vector<unsigned char> raw = bytes_of(ar);
    // "abc": unsigned length 3, then the bytes, no terminator.
    std::vector<unsigned char> head(raw.begin(), raw.begin() + 7);
    EXPECT_EQ(head, (std::vector<unsigned char>{3, 0, 0, 0, 'a', 'b', 'c'}));
    // The vector: int count 3 first.
    EXPECT_EQ(raw[7], 3);

    std::string s;
    std::vector<std::string> w;
    THandle<Record> back;
    ar >> s >> w >> back;
    EXPECT_EQ(s, "abc");
    EXPECT_EQ(w, words);
    EXPECT_EQ(back->label, "C1");
    EXPECT_EQ(back->values, (std::vector<double>{1.5, -2.0}));
    ASSERT_NE(back->child.unhand(), nullptr);
    EXPECT_EQ(back->child->child.unhand(), nullptr);
    EXPECT_EQ(ar.bytes_left(), 0u);
}

TEST(Archive, WritingANullHandleIsAnErrorUnlessPossiblyNull) {
    Archive ar = Archive::temporary();
    EXPECT_THROW(ar << THandle<Record>(), std::logic_error);
    write_possibly_null_handle(ar, THandle<Record>());
    EXPECT_EQ(bytes_of(ar), (std::vector<unsigned char>{0, 0, 0, 0}));
    THandle<Record> h(new Record());
    read_possibly_null_handle(ar, h);
    EXPECT_EQ(h.unhand(), nullptr);
}

TEST(Archive, EveryTruncationThrowsCleanly) {
    Archive ar = Archive::temporary();
    THandle<Record> r(new Record{"label", {1, 2, 3}, THandle<Record>(new Record{"x", {4}, THandle<Record>()})});
    ar << r;
    std::vector<unsigned char> whole = bytes_of(ar);
    for (std::size_t n = 0; n < whole.size(); ++n) {
        Archive cut = archive_of(std::vector<unsigned char>(whole.begin(), whole.begin() + n));
        THandle<Record> back;
        EXPECT_THROW(cut >> back, std::runtime_error) << "cut at " << n;
    }
}

TEST(Archive, BadLengthsAndCountsAreRefusedBeforeAllocation) {
    // A string length far beyond the file, a negative one, and an impossible vector count.
    Archive huge = archive_of({0xFF, 0xFF, 0xFF, 0x7F, 'a'});
    EXPECT_EQ(runtime_error_text(huge, [](Archive& a) { std::string s; a >> s; }),
              "Archive: string length 2147483647 cannot fit in the 1 bytes left in archive");
    Archive negative = archive_of({0xFE, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(runtime_error_text(negative, [](Archive& a) { std::string s; a >> s; }),
              "Archive: negative string length -2 in archive");
    Archive count = archive_of({0x00, 0x00, 0x00, 0x10, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(runtime_error_text(count, [](Archive& a) { std::vector<double> v; a >> v; }),
              "Archive: element count 268435456 cannot fit in the 8 bytes left in archive");
    // The field in force names what was being read.
    Archive record = archive_of({0x05, 0, 0, 0, 'a'});
    EXPECT_EQ(runtime_error_text(record, [](Archive& a) { Record r; r.read(a); }),
              "Record::read: string length 5 cannot fit in the 1 bytes left in archive");
    Archive empty = archive_of({});
    EXPECT_EQ(runtime_error_text(empty, [](Archive& a) { int i; a >> i; }), "Archive: archive ends early reading int");
}

TEST(Archive, CorruptedBytesNeverCrash) {
    // Flip each byte of a valid archive in turn: every read either succeeds or
    // throws std::runtime_error.
    Archive ar = Archive::temporary();
    THandle<Record> r(new Record{"abc", {1, 2}, THandle<Record>(new Record{"d", {3}, THandle<Record>()})});
    ar << r;
    std::vector<unsigned char> whole = bytes_of(ar);
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (unsigned char value : {0x00, 0x80, 0xFF}) {
            std::vector<unsigned char> bad = whole;
            bad[i] = value;
            Archive in = archive_of(bad);
            THandle<Record> back;
            try {
                in >> back;
            } catch (const std::runtime_error&) {
            }
        }
    }
}

TEST(VersionedArchive, FileModesAndVersions) {
    char name[] = "/tmp/molcryst_archive_XXXXXX";
    int fd = mkstemp(name);
    ASSERT_GE(fd, 0);
    close(fd);
    {
        VersionedArchive out(name, Archive::create_mode);
        out.set_version(2);
        out << 2 << std::string("entry");
        EXPECT_TRUE(VersionedArchive::is_versioned(out));
        EXPECT_EQ(VersionedArchive::version(out), 2);
    }
    {
        VersionedArchive in(name, Archive::read_mode);
        int version = 0;
        in >> version;
        in.set_version(version);
        std::string text;
        in >> text;
        EXPECT_EQ(VersionedArchive::version(in), 2);
        EXPECT_EQ(text, "entry");
    }
    std::remove(name);
    Archive plain = Archive::temporary();
    EXPECT_FALSE(VersionedArchive::is_versioned(plain));
    EXPECT_EQ(VersionedArchive::version(plain), -1);
    EXPECT_THROW(VersionedArchive("/nonexistent/dir/file", Archive::read_mode), std::runtime_error);
    EXPECT_THROW(VersionedArchive(name, 7), std::invalid_argument);
}

TEST(DatabaseEntryIdentifier, ArchivesAsAStringAndKeepsItselfOnAFailedRead) {
    DatabaseEntryIdentifier id("ABCDEF01");
    Archive ar = Archive::temporary();
    ar << id;
    EXPECT_EQ(bytes_of(ar), (std::vector<unsigned char>{8, 0, 0, 0, 'A', 'B', 'C', 'D', 'E', 'F', '0', '1'}));
    DatabaseEntryIdentifier back;
    ar >> back;
    EXPECT_EQ(back, id);
    EXPECT_EQ(molcryst::to_string(back), "ABCDEF01");

    Archive cut = archive_of({9, 0, 0, 0, 'a', 'b'});
    DatabaseEntryIdentifier kept("KEEP");
    EXPECT_THROW(cut >> kept, std::runtime_error);
    EXPECT_EQ(kept.text(), "KEEP");
}
