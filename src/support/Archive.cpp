#include "molcryst/support/Archive.h"

#include <sys/stat.h>

#include <climits>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace molcryst {

namespace {

const char* open_mode_text(unsigned int mode) {
    switch (mode) {
        case Archive::read_mode: return "rb";
        case Archive::write_mode: return "wb";
        case Archive::create_mode: return "w+b";
        default: return nullptr;
    }
}

// Little-endian encoding of unsigned integers of any width.
template <class U>
void put_le(unsigned char* out, U value) {
    for (std::size_t i = 0; i < sizeof(U); ++i) out[i] = static_cast<unsigned char>(value >> (8 * i));
}

template <class U>
U get_le(const unsigned char* in) {
    U value = 0;
    for (std::size_t i = 0; i < sizeof(U); ++i) value = static_cast<U>(value | (static_cast<U>(in[i]) << (8 * i)));
    return value;
}

template <class U>
void write_le(Archive& ar, U value) {
    unsigned char bytes[sizeof(U)];
    put_le(bytes, value);
    ar.write_bytes(bytes, sizeof(U));
}

template <class U>
U read_le(Archive& ar, const char* type) {
    unsigned char bytes[sizeof(U)];
    ar.read_bytes(bytes, sizeof(U), type);
    return get_le<U>(bytes);
}

}  // namespace

Archive::Archive(std::FILE* file, bool owns) : file_(file), owns_(owns) {
    if (file_ == nullptr) throw std::invalid_argument("Archive::Archive(FILE*) file is a null pointer");
}

Archive::Archive(const std::string& file_name, unsigned int mode) : owns_(true) {
    const char* text = open_mode_text(mode);
    if (text == nullptr)
        throw std::invalid_argument("Archive::Archive(const std::string&, unsigned int) unknown open mode " +
                                    std::to_string(mode));
    file_ = std::fopen(file_name.c_str(), text);
    if (file_ == nullptr)
        throw std::runtime_error("Archive::Archive(const std::string&, unsigned int) cannot open file " +
                                 file_name);
}

Archive Archive::temporary() {
    std::FILE* f = std::tmpfile();
    if (f == nullptr) throw std::runtime_error("Archive::temporary cannot create a temporary file");
    return Archive(f, true);
}

Archive::Archive(Archive&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)),
      owns_(std::exchange(other.owns_, false)),
      field_(other.field_),
      size_(other.size_) {}

Archive::~Archive() {
    if (owns_ && file_ != nullptr) std::fclose(file_);
}

namespace {

// An archive reads and writes many small items, and each stdio call would
// take the stream's lock; an Archive is used by one thread at a time, so
// where the C library offers the unlocked calls they are used.
#if defined(__GLIBC__)
std::size_t read_stream(void* data, std::size_t n, std::FILE* file) { return fread_unlocked(data, 1, n, file); }
std::size_t write_stream(const void* data, std::size_t n, std::FILE* file) {
    return fwrite_unlocked(data, 1, n, file);
}
#else
std::size_t read_stream(void* data, std::size_t n, std::FILE* file) { return std::fread(data, 1, n, file); }
std::size_t write_stream(const void* data, std::size_t n, std::FILE* file) { return std::fwrite(data, 1, n, file); }
#endif

}  // namespace

void Archive::write_bytes(const void* data, std::size_t n) {
    if (n == 0) return;
    size_ = -1;  // the stream may grow
    if (write_stream(data, n, file_) != n) throw std::runtime_error(std::string(field()) + ": cannot write to archive");
}

void Archive::read_bytes(void* data, std::size_t n, const char* what_type) {
    if (n == 0) return;
    if (read_stream(data, n, file_) != n) {
        std::clearerr(file_);
        read_error(std::string("archive ends early reading ") + what_type);
    }
}

void Archive::rewind() {
    std::fflush(file_);
    std::rewind(file_);
}

void Archive::flush() { std::fflush(file_); }

void Archive::measure() const {
    struct stat info;
    int fd = fileno(file_);
    if (fd >= 0 && fstat(fd, &info) == 0 && S_ISREG(info.st_mode)) {
        std::fflush(file_);  // pending output counts towards the length
        fstat(fd, &info);
        size_ = static_cast<long long>(info.st_size);
        return;
    }
    // A stream with no descriptor (memory streams): measure by seeking.
    long here = std::ftell(file_);
    if (here < 0 || std::fseek(file_, 0, SEEK_END) != 0) {
        size_ = -2;
        return;
    }
    long end = std::ftell(file_);
    std::fseek(file_, here, SEEK_SET);
    size_ = end < 0 ? -2 : end;
}

std::size_t Archive::bytes_left() const {
    if (size_ == -1) measure();
    if (size_ == -2) return SIZE_MAX;
    long here = std::ftell(file_);
    if (here < 0) return SIZE_MAX;
    return here >= size_ ? 0 : static_cast<std::size_t>(size_ - here);
}

void Archive::check_count(long long count, std::size_t min_element_size, const char* noun) const {
    if (count < 0) read_error(std::string("negative ") + noun + " " + std::to_string(count) + " in archive");
    std::size_t left = bytes_left();
    if (left == SIZE_MAX) return;
    if (static_cast<unsigned long long>(count) > left / min_element_size) {
        size_ = -1;  // written since measured? measure again before refusing
        left = bytes_left();
        if (static_cast<unsigned long long>(count) > left / min_element_size)
            read_error(std::string(noun) + " " + std::to_string(count) + " cannot fit in the " +
                       std::to_string(left) + " bytes left in archive");
    }
}

void Archive::read_error(const std::string& problem) const {
    throw std::runtime_error(std::string(field()) + ": " + problem);
}

Archive& Archive::operator<<(bool v) { return *this << static_cast<unsigned char>(v ? 1 : 0); }
Archive& Archive::operator<<(char v) { return *this << static_cast<unsigned char>(v); }
Archive& Archive::operator<<(signed char v) { return *this << static_cast<unsigned char>(v); }
Archive& Archive::operator<<(unsigned char v) {
    write_bytes(&v, 1);
    return *this;
}
Archive& Archive::operator<<(short v) { return *this << static_cast<unsigned short>(v); }
Archive& Archive::operator<<(unsigned short v) {
    write_le<std::uint16_t>(*this, v);
    return *this;
}
Archive& Archive::operator<<(int v) { return *this << static_cast<unsigned int>(v); }
Archive& Archive::operator<<(unsigned int v) {
    write_le<std::uint32_t>(*this, v);
    return *this;
}
Archive& Archive::operator<<(double v) {
    static_assert(sizeof(double) == 8, "double must be 64 bits");
    std::uint64_t bits;
    std::memcpy(&bits, &v, 8);
    write_le<std::uint64_t>(*this, bits);
    return *this;
}

Archive& Archive::operator>>(bool& v) {
    unsigned char byte = 0;
    read_bytes(&byte, 1, "bool");
    v = byte != 0;
    return *this;
}
Archive& Archive::operator>>(char& v) {
    unsigned char byte = 0;
    read_bytes(&byte, 1, "char");
    v = static_cast<char>(byte);
    return *this;
}
Archive& Archive::operator>>(signed char& v) {
    unsigned char byte = 0;
    read_bytes(&byte, 1, "signed char");
    v = static_cast<signed char>(byte);
    return *this;
}
Archive& Archive::operator>>(unsigned char& v) {
    read_bytes(&v, 1, "unsigned char");
    return *this;
}
Archive& Archive::operator>>(short& v) {
    v = static_cast<short>(read_le<std::uint16_t>(*this, "short"));
    return *this;
}
Archive& Archive::operator>>(unsigned short& v) {
    v = read_le<std::uint16_t>(*this, "unsigned short");
    return *this;
}
Archive& Archive::operator>>(int& v) {
    v = static_cast<int>(read_le<std::uint32_t>(*this, "int"));
    return *this;
}
Archive& Archive::operator>>(unsigned int& v) {
    v = read_le<std::uint32_t>(*this, "unsigned int");
    return *this;
}
Archive& Archive::operator>>(double& v) {
    std::uint64_t bits = read_le<std::uint64_t>(*this, "double");
    std::memcpy(&v, &bits, 8);
    return *this;
}

Archive& operator<<(Archive& ar, const std::string& s) {
    if (s.size() > static_cast<std::size_t>(INT_MAX))
        throw std::length_error(std::string(ar.field()) + ": string too long for an archive");
    ar << static_cast<unsigned int>(s.size());
    ar.write_bytes(s.data(), s.size());
    return ar;
}

Archive& operator>>(Archive& ar, std::string& s) {
    int length = 0;
    ar >> length;
    ar.check_count(length, 1, "string length");
    std::string text;
    if (ar.bytes_left() != SIZE_MAX) {
        text.resize(static_cast<std::size_t>(length));
        ar.read_bytes(&text[0], text.size(), "string");
    } else {
        // Unknown length of stream: read in bounded pieces.
        char buffer[4096];
        std::size_t remaining = static_cast<std::size_t>(length);
        while (remaining > 0) {
            std::size_t n = remaining < sizeof buffer ? remaining : sizeof buffer;
            ar.read_bytes(buffer, n, "string");
            text.append(buffer, n);
            remaining -= n;
        }
    }
    s.swap(text);
    return ar;
}

}  // namespace molcryst
