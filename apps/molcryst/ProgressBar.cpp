#include "ProgressBar.h"

#include <cmath>
#include <cstdio>
#include <ostream>

namespace molcryst {
namespace app {

namespace {

constexpr int bar_width = 30;

std::string clock_time(double seconds) {
    const long s = static_cast<long>(std::ceil(seconds));
    char text[32];
    if (s >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", s / 3600, s / 60 % 60, s % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", s / 60, s % 60);
    return text;
}

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, long total, bool shown)
    : out_(out), total_(total), shown_(shown), start_(std::chrono::steady_clock::now()), last_(start_) {}

std::string ProgressBar::line(long done, long total, double seconds) {
    const int filled = total > 0 ? static_cast<int>(bar_width * done / total) : bar_width;
    std::string text = "[" + std::string(static_cast<std::size_t>(filled), '#') +
                       std::string(static_cast<std::size_t>(bar_width - filled), '.') + "]  " + std::to_string(done) +
                       "/" + std::to_string(total);
    char rate[64];
    if (done > 0 && seconds > 0) {
        const double per_second = done / seconds;
        std::snprintf(rate, sizeof rate, "  %.1f files/s  ", per_second);
        text += rate + clock_time(static_cast<double>(total - done) / per_second) + " left";
    } else {
        text += "  - files/s  -:-- left";
    }
    return text;
}

void ProgressBar::update(long done, bool force) {
    if (!shown_) return;
    const auto now = std::chrono::steady_clock::now();
    if (!force && drawn_ && now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    // Carriage return and erase to the end of the line: the bar is redrawn in place.
    out_ << "\r\033[K" << line(done, total_, std::chrono::duration<double>(now - start_).count()) << std::flush;
    drawn_ = true;
}

void ProgressBar::clear() {
    if (!shown_ || !drawn_) return;
    out_ << "\r\033[K" << std::flush;
    drawn_ = false;
}

void ProgressBar::finish(long done) {
    if (!shown_) return;
    update(done, true);
    out_ << "\n" << std::flush;
    drawn_ = false;
}

}  // namespace app
}  // namespace molcryst
