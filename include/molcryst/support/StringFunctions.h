// String helpers used across the kernel: trimming, splitting, conversions.
#ifndef MOLCRYST_SUPPORT_STRINGFUNCTIONS_H
#define MOLCRYST_SUPPORT_STRINGFUNCTIONS_H

#include <istream>
#include <sstream>
#include <string>
#include <vector>

namespace molcryst {

struct StringFunctionParameters {
    /// What split does with the empty text between two adjacent delimiters.
    enum BlankFieldControl {
        skip_blank_fields = 0,  // adjacent delimiters count as one; no empty fields
        keep_blank_fields = 1   // every delimiter ends a field, empty or not
    };
};

/// Removes the characters of `chars` from both ends of `s`.
std::string trim(const std::string& s, std::string chars = " \t");

/// Removes every occurrence of the characters of `chars` from `s`, wherever they stand.
std::string strip(const std::string& s, std::string chars = " \t");

/// Replaces `fields` with the pieces of `s` between any of the `delimiters`.
void split(const std::string& s, std::vector<std::string>& fields, const std::string& delimiters,
           StringFunctionParameters::BlankFieldControl control = StringFunctionParameters::skip_blank_fields);

/// Upper-case copy (ASCII letters).
std::string toupper(const std::string& s);

/// The integer at the start of `s`, after blanks and an optional sign, as
/// std::atoi reads it: "2-" gives 2, "+1" gives 1, text with no digits 0.
/// A number outside the range of int throws std::overflow_error.
int string_to_int(const std::string& s);

/// The whole of `s` (blanks around it allowed) as an integer; `ok` says
/// whether it was one. On failure the result is 0.
int string_to_int(const std::string& s, bool& ok);

/// The whole of `s` (blanks around it allowed) as a number; `ok` says whether
/// it was one. On failure the result is 0.
double string_to_double(const std::string& s, bool& ok);

/// Decimal text of `i`.
std::string int_to_string(int i);

/// The text that `operator<<` writes for `value`.
template <class T>
std::string to_string(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

namespace tarn {
/// Reads one line of a text file, without its line feed or a carriage return before it.
std::istream& getline(std::istream& in, std::string& line);
}  // namespace tarn

}  // namespace molcryst

#endif
