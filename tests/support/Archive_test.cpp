#include "molcryst/support/Archive.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <tuple>
#include <vector>

#include "common/ArchiveBytes.h"
#include "common/ErrorText.h"
#include "molcryst/support/DatabaseEntryIdentifier.h"
#include "molcryst/support/StringFunctions.h"
#include "molcryst/support/VersionedArchive.h"

using namespace molcryst;
using namespace molcryst::testing;

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

THandle<Record> record(const std::string& label, const std::vector<double>& values,
                       const THandle<Record>& child = THandle<Record>()) {
    return THandle<Record>(new Record{label, values, child});
}

// What reading a T from `bytes` throws.
template <class T>
std::string read_error(const std::vector<unsigned char>& bytes) {
    Archive ar = archive_of(bytes);
    T value;
    return error_text<std::runtime_error>([&] { ar >> value; });
}

}  // namespace

TEST(Archive, PrimitivesAreLittleEndianWithFixedWidths) {
    Archive ar = Archive::temporary();
    ar << true << 'A' << static_cast<short>(-2) << 0x01020304 << 0xA0B0C0D0u << 1.0;
    EXPECT_EQ(bytes_of(ar), (std::vector<unsigned char>{1,    'A',  0xFE, 0xFF, 0x04, 0x03, 0x02, 0x01, 0xD0, 0xC0,
                                                        0xB0, 0xA0, 0,    0,    0,    0,    0,    0,    0xF0, 0x3F}));
    std::tuple<bool, char, short, int, unsigned int, double> back;
    ar >> std::get<0>(back) >> std::get<1>(back) >> std::get<2>(back) >> std::get<3>(back) >> std::get<4>(back) >>
        std::get<5>(back);
    EXPECT_EQ(back, std::make_tuple(true, 'A', static_cast<short>(-2), 0x01020304, 0xA0B0C0D0u, 1.0));

    unsigned short us = 0;
    archive_of({0xFE, 0xFF}) >> us;
    EXPECT_EQ(us, 0xFFFE);
}

TEST(Archive, StringsVectorsAndHandlesRoundTrip) {
    Archive ar = Archive::temporary();
    const std::vector<std::string> words = {"", "a", "long word"};
    ar << std::string("abc") << words << record("C1", {1.5, -2.0}, record("", {}));
    // "abc": unsigned length 3, then the bytes, no terminator; the vector: int count 3 first.
    EXPECT_EQ(cut(bytes_of(ar), 11), (std::vector<unsigned char>{3, 0, 0, 0, 'a', 'b', 'c', 3, 0, 0, 0}));

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
    EXPECT_EQ(bytes_of(ar), words({0}));
    THandle<Record> h(new Record());
    read_possibly_null_handle(ar, h);
    EXPECT_EQ(h.unhand(), nullptr);
}

TEST(Archive, TruncatedOrCorruptedBytesThrowCleanly) {
    // Every cut of a valid archive throws std::runtime_error; flipping any byte
    // gives a read that succeeds or throws std::runtime_error, and never crashes.
    const std::vector<unsigned char> whole = written(*record("label", {1, 2, 3}, record("x", {4})));
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_NE(read_error<THandle<Record> >(cut(whole, i)), "no exception") << "cut at " << i;
        for (unsigned char value : {0x00, 0x80, 0xFF}) {
            std::vector<unsigned char> bad = whole;
            bad[i] = value;
            read_error<THandle<Record> >(bad);
        }
    }
}

TEST(Archive, BadLengthsAndCountsAreRefusedBeforeAllocation) {
    // A string length far beyond the file, a negative one, and an impossible vector count.
    EXPECT_EQ(read_error<std::string>({0xFF, 0xFF, 0xFF, 0x7F, 'a'}),
              "Archive: string length 2147483647 cannot fit in the 1 bytes left in archive");
    EXPECT_EQ(read_error<std::string>(words({-2})), "Archive: negative string length -2 in archive");
    EXPECT_EQ(read_error<std::vector<double> >(words({0x10000000, 0, 0})),
              "Archive: element count 268435456 cannot fit in the 8 bytes left in archive");
    // The field in force names what was being read.
    EXPECT_EQ(read_error<THandle<Record> >({0x05, 0, 0, 0, 'a'}),
              "Record::read: string length 5 cannot fit in the 1 bytes left in archive");
    EXPECT_EQ(read_error<int>({}), "Archive: archive ends early reading int");
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
        std::string text;
        in >> version;
        in.set_version(version);
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
    const DatabaseEntryIdentifier id("ABCDEF01");
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
