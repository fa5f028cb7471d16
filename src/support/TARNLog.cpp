#include "molcryst/support/TARNLog.h"

#include <iostream>

namespace molcryst {

int TARNLog::level_ = 0;
int TARNLog::minimum_level_ = 0;

namespace {
std::ostream* log_stream = nullptr;
}

std::ostream& TARNLog::stream() { return log_stream != nullptr ? *log_stream : std::clog; }

void TARNLog::set_stream(std::ostream* s) { log_stream = s; }

// Lines carry their text alone, with no prefix, so that they read as the kernel wrote them.
std::ostream& TARNLog::start_debug_line(int) { return stream(); }
void TARNLog::end_debug_line() { stream() << '\n'; }
std::ostream& TARNLog::start_warning_line() { return stream(); }
void TARNLog::end_warning_line() { stream() << '\n'; }
std::ostream& TARNLog::start_error_line() { return stream(); }
void TARNLog::end_error_line() { stream() << '\n'; }

}  // namespace molcryst
