// Archive: the binary stream through which every persistent class of the
// kernel writes and reads itself.
//
// Wire form of the primitives, whatever the host: little-endian, `bool` and
// `char` one byte, `short` two, `int` and `unsigned int` four, `double` eight
// (IEEE 754). A string is an `unsigned int` byte length and its bytes, with no
// terminator; a vector is an `int` count and its elements.
//
// Reading is defensive: a file that ends early, a negative length or count, or
// a length or count that cannot fit in what is left of the file throws
// std::runtime_error before anything is allocated. The message names what was
// being read: the innermost `Archive::Field` in force, or the primitive type.
#ifndef MOLCRYST_SUPPORT_ARCHIVE_H
#define MOLCRYST_SUPPORT_ARCHIVE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "molcryst/support/THandle.h"

namespace molcryst {

/// Binary stream over a stdio FILE; see the banner of this header.
class Archive {
public:
    /// Open modes, as bits: 1 read, 2 write. 3 creates (or empties) a file
    /// that can be both written and read; 2 creates one for writing only.
    enum OpenMode : unsigned int { read_mode = 1, write_mode = 2, create_mode = 3 };

    /// An archive over an open stream; closes it at the end if `owns` is true.
    explicit Archive(std::FILE* file, bool owns = false);

    /// An archive over the named file, opened in `mode` (see OpenMode).
    /// Throws std::runtime_error if the file cannot be opened.
    Archive(const std::string& file_name, unsigned int mode);

    /// An archive over a new anonymous temporary file, open for writing and reading.
    static Archive temporary();

    Archive(Archive&& other) noexcept;
    Archive(const Archive&) = delete;
    Archive& operator=(const Archive&) = delete;
    virtual ~Archive();

    /// The stream, for inline template code.
    std::FILE* file() const { return file_; }

    Archive& operator<<(bool v);
    Archive& operator<<(char v);
    Archive& operator<<(signed char v);
    Archive& operator<<(unsigned char v);
    Archive& operator<<(short v);
    Archive& operator<<(unsigned short v);
    Archive& operator<<(int v);
    Archive& operator<<(unsigned int v);
    Archive& operator<<(double v);

    Archive& operator>>(bool& v);
    Archive& operator>>(char& v);
    Archive& operator>>(signed char& v);
    Archive& operator>>(unsigned char& v);
    Archive& operator>>(short& v);
    Archive& operator>>(unsigned short& v);
    Archive& operator>>(int& v);
    Archive& operator>>(unsigned int& v);
    Archive& operator>>(double& v);

    void write_bytes(const void* data, std::size_t n);
    /// Reads exactly `n` bytes or throws, naming `what_type`.
    void read_bytes(void* data, std::size_t n, const char* what_type);

    /// Flushes and returns to the start of the stream, to read back what was written.
    void rewind();
    /// Flushes pending output.
    void flush();

    /// Bytes between the read position and the end of the stream, or
    /// SIZE_MAX when the stream cannot tell (a pipe).
    std::size_t bytes_left() const;

    /// Checks a count read from the stream: negative, or more elements of at
    /// least `min_element_size` bytes than the stream still holds, throws.
    void check_count(long long count, std::size_t min_element_size, const char* noun) const;

    /// Throws std::runtime_error for a malformed archive: "<field>: <problem>".
    [[noreturn]] void read_error(const std::string& problem) const;

    /// What is being read, for the messages of read errors. Scopes nest.
    class Field {
    public:
        Field(Archive& archive, const char* what) : archive_(archive), previous_(archive.field_) {
            archive.field_ = what;
        }
        ~Field() { archive_.field_ = previous_; }
        Field(const Field&) = delete;
        Field& operator=(const Field&) = delete;

    private:
        Archive& archive_;
        const char* previous_;
    };

    /// The innermost field description in force, or "Archive".
    const char* field() const { return field_ != nullptr ? field_ : "Archive"; }

private:
    std::FILE* file_ = nullptr;
    bool owns_ = false;
    const char* field_ = nullptr;
    mutable long long size_ = -1;  // cached stream length; -1 unknown, -2 cannot tell
    void measure() const;
};

/// Smallest number of bytes an archived `T` takes; bounds counts read from a file.
template <class T>
struct ArchiveMinSize {
    static constexpr std::size_t value = 1;
};
template <> struct ArchiveMinSize<short> { static constexpr std::size_t value = 2; };
template <> struct ArchiveMinSize<unsigned short> { static constexpr std::size_t value = 2; };
template <> struct ArchiveMinSize<int> { static constexpr std::size_t value = 4; };
template <> struct ArchiveMinSize<unsigned int> { static constexpr std::size_t value = 4; };
template <> struct ArchiveMinSize<double> { static constexpr std::size_t value = 8; };
template <> struct ArchiveMinSize<std::string> { static constexpr std::size_t value = 4; };
template <class T>
struct ArchiveMinSize<std::vector<T> > {
    static constexpr std::size_t value = 4;
};

/// A string: `unsigned int` length, then the bytes.
Archive& operator<<(Archive& ar, const std::string& s);
/// A string: the length read as `int` and checked against what is left.
Archive& operator>>(Archive& ar, std::string& s);

/// The object by `T::write`; a null handle is an error.
template <class T>
Archive& operator<<(Archive& ar, const THandle<T>& h) {
    if (h.unhand() == nullptr) HandleCommon::null_handle_error();
    h->write(ar);
    return ar;
}

/// A new `T` by its default constructor, held by `h`, then `T::read`.
template <class T>
Archive& operator>>(Archive& ar, THandle<T>& h) {
    h = THandle<T>(new T());
    h->read(ar);
    return ar;
}

/// `int` count, then each element in order.
template <class T, class A>
Archive& operator<<(Archive& ar, const std::vector<T, A>& v) {
    ar << static_cast<int>(v.size());
    for (const T& element : v) ar << element;
    return ar;
}

/// `int` count, checked; then each element, read in place.
template <class T, class A>
Archive& operator>>(Archive& ar, std::vector<T, A>& v) {
    int count = 0;
    ar >> count;
    ar.check_count(count, ArchiveMinSize<T>::value, "element count");
    // Grown as elements arrive rather than resized at once: a bad count that
    // still fits the file costs no more memory than the elements really read.
    v.clear();
    v.reserve(static_cast<std::size_t>(count < 1024 ? count : 1024));
    for (int i = 0; i < count; ++i) {
        v.emplace_back();
        ar >> v.back();
    }
    return ar;
}

/// `int` 1 and the object, or `int` 0 alone for the null handle.
template <class T>
void write_possibly_null_handle(Archive& ar, const THandle<T>& h) {
    if (h.unhand() == nullptr) {
        ar << 0;
    } else {
        ar << 1;
        ar << h;
    }
}

/// Reads the flag of write_possibly_null_handle: 0 gives the null handle, any
/// other value reads the object as operator>> does.
template <class T>
void read_possibly_null_handle(Archive& ar, THandle<T>& h) {
    int present = 0;
    ar >> present;
    if (present == 0) {
        h = THandle<T>();
    } else {
        ar >> h;
    }
}

}  // namespace molcryst

#endif
