#include "molcryst/support/TARNLog.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace molcryst;

namespace {

int formatted = 0;
// Streams as its text and counts how often it was formatted.
struct Expensive {};
std::ostream& operator<<(std::ostream& out, const Expensive&) {
    ++formatted;
    return out << "expensive";
}

struct LogCapture {
    std::ostringstream text;
    int level, minimum;
    LogCapture() : level(TARNLog::level_), minimum(TARNLog::minimum_level_) { TARNLog::set_stream(&text); }
    ~LogCapture() {
        TARNLog::set_stream(nullptr);
        TARNLog::level_ = level;
        TARNLog::minimum_level_ = minimum;
    }
};

}  // namespace

TEST(TARNLog, DebugLinesAreGuardedByBothSettings) {
    LogCapture capture;
    formatted = 0;
    TARNLog::level_ = 2;
    TARNLog::minimum_level_ = 2;
    MOLCRYST_DEBUG_LINE(3, "too verbose " << Expensive());  // level above level_
    MOLCRYST_DEBUG_LINE(1, "below minimum " << Expensive());  // level below minimum_level_
    EXPECT_EQ(formatted, 0);
    EXPECT_EQ(capture.text.str(), "");

    MOLCRYST_DEBUG_LINE(2, "Entered Thing::Thing() - " << Expensive());
    EXPECT_EQ(formatted, 1);
    EXPECT_EQ(capture.text.str(), "Entered Thing::Thing() - expensive\n");

    TARNLog::level_ = 0;
    TARNLog::minimum_level_ = 0;
    EXPECT_FALSE(TARNLog::debug_enabled(1));
    TARNLog::start_warning_line() << "a warning";
    TARNLog::end_warning_line();
    EXPECT_EQ(capture.text.str(), "Entered Thing::Thing() - expensive\na warning\n");
}

