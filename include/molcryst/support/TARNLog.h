// TARNLog: the kernel's diagnostic log.
//
// A debug line of level N is written only when `level_ >= N` and
// `minimum_level_ <= N`. Every debug site tests that first and formats
// nothing otherwise; MOLCRYST_DEBUG_LINE does both steps. Warnings and errors
// are written without a level test. Output goes to std::clog unless a stream
// is set with set_stream.
#ifndef MOLCRYST_SUPPORT_TARNLOG_H
#define MOLCRYST_SUPPORT_TARNLOG_H

#include <ostream>

namespace molcryst {

/// Static logger; see the banner of this header.
class TARNLog {
public:
    static int level_;          // verbosity in force; 0 writes no debug line
    static int minimum_level_;  // lowest debug level accepted

    /// True when a debug line of `level` would be written.
    static bool debug_enabled(int level) { return level_ >= level && minimum_level_ <= level; }

    static std::ostream& start_debug_line(int level);
    static void end_debug_line();
    static std::ostream& start_warning_line();
    static void end_warning_line();
    static std::ostream& start_error_line();
    static void end_error_line();

    /// Redirects the log; null restores std::clog.
    static void set_stream(std::ostream* stream);
    static std::ostream& stream();
};

}  // namespace molcryst

/// Writes one guarded debug line: `text` is a chain of `<<` operands, evaluated
/// only when the line is written.
#define MOLCRYST_DEBUG_LINE(level, text)                                    \
    do {                                                                    \
        if (::molcryst::TARNLog::debug_enabled(level)) {                    \
            ::molcryst::TARNLog::start_debug_line(level) << text;          \
            ::molcryst::TARNLog::end_debug_line();                          \
        }                                                                   \
    } while (false)

#endif
