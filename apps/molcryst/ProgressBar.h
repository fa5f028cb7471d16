// ProgressBar: one line on a terminal that tells how far a batch run is:
// the count, the rate and the time left.
#ifndef MOLCRYST_APPS_PROGRESSBAR_H
#define MOLCRYST_APPS_PROGRESSBAR_H

#include <chrono>
#include <iosfwd>
#include <string>

namespace molcryst {
namespace app {

/// A progress line redrawn in place; silent when not shown (output that is
/// not a terminal gets no bar).
class ProgressBar {
public:
    ProgressBar(std::ostream& out, long total, bool shown);

    /// Redraws the line for `done` files, at most ten times a second unless `force`.
    void update(long done, bool force = false);
    /// Clears the line, so that a message can be written; the next update draws it again.
    void clear();
    /// The last line, and a newline.
    void finish(long done);

    /// The line for `done` of `total` files after `seconds`:
    /// "[#####.....]  120/2000  48.1 files/s  0:39 left".
    static std::string line(long done, long total, double seconds);

private:
    std::ostream& out_;
    long total_;
    bool shown_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point last_;
};

}  // namespace app
}  // namespace molcryst

#endif
