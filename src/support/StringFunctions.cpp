#include "molcryst/support/StringFunctions.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <stdexcept>


namespace molcryst {

namespace {
const char* const blanks = " \t\r\n\f\v";

std::string trimmed_blanks(const std::string& s) { return trim(s, blanks); }
}  // namespace

std::string trim(const std::string& s, std::string chars) {
    std::string::size_type first = s.find_first_not_of(chars);
    if (first == std::string::npos) return std::string();
    std::string::size_type last = s.find_last_not_of(chars);
    return s.substr(first, last - first + 1);
}

std::string strip(const std::string& s, std::string chars) {
    std::string out;
    out.reserve(s.size());
    for (char c : s)
        if (chars.find(c) == std::string::npos) out += c;
    return out;
}

void split(const std::string& s, std::vector<std::string>& fields, const std::string& delimiters,
           StringFunctionParameters::BlankFieldControl control) {
    fields.clear();
    std::string::size_type start = 0;
    while (true) {
        std::string::size_type end = s.find_first_of(delimiters, start);
        std::string field = s.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!field.empty() || control == StringFunctionParameters::keep_blank_fields) fields.push_back(field);
        if (end == std::string::npos) break;
        start = end + 1;
    }
}

std::string toupper(const std::string& s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

int string_to_int(const std::string& s) {
    errno = 0;
    long value = std::strtol(s.c_str(), nullptr, 10);
    if (errno == ERANGE || value > INT_MAX || value < INT_MIN)
        throw std::overflow_error("string_to_int(const std::string&) " + s + " is out of the range of int");
    return static_cast<int>(value);
}

int string_to_int(const std::string& s, bool& ok) {
    std::string text = trimmed_blanks(s);
    ok = false;
    if (text.empty()) return 0;
    errno = 0;
    char* end = nullptr;
    long value = std::strtol(text.c_str(), &end, 10);
    if (end != text.c_str() + text.size() || errno == ERANGE || value > INT_MAX || value < INT_MIN) return 0;
    ok = true;
    return static_cast<int>(value);
}

double string_to_double(const std::string& s, bool& ok) {
    std::string text = trimmed_blanks(s);
    ok = false;
    if (text.empty()) return 0.0;
    errno = 0;
    char* end = nullptr;
    double value = std::strtod(text.c_str(), &end);
    // Underflow to a tiny number is accepted; overflow is not.
    if (end != text.c_str() + text.size() || (errno == ERANGE && std::isinf(value))) return 0.0;
    ok = true;
    return value;
}

std::string int_to_string(int i) { return std::to_string(i); }

namespace tarn {
std::istream& getline(std::istream& in, std::string& line) {
    std::getline(in, line);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return in;
}
}  // namespace tarn

}  // namespace molcryst
