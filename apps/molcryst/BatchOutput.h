// BatchOutput: the file a batch run writes, one JSON line per file reported,
// appended and flushed line by line so that a run that is stopped loses no
// result, and read back first so that a run started again skips what is done.
#ifndef MOLCRYST_APPS_BATCHOUTPUT_H
#define MOLCRYST_APPS_BATCHOUTPUT_H

#include <set>
#include <string>

namespace molcryst {
namespace app {

/// A batch output open for appending, with the files it already holds.
class BatchOutput {
public:
    /// Opens `path`, made if missing, and reads the files it holds. A last
    /// line left unfinished by a run that was stopped is cut off, so that
    /// its file is reported again. std::runtime_error "PATH: what" when the
    /// file cannot be read or written, and "PATH:LINE: not a line of a batch
    /// output" for a line that is not a JSON object naming a "file" (the
    /// file is then left as it was).
    explicit BatchOutput(const std::string& path);
    ~BatchOutput();
    BatchOutput(const BatchOutput&) = delete;
    BatchOutput& operator=(const BatchOutput&) = delete;

    const std::string& path() const { return path_; }
    /// The files of the lines read when opened, those of error lines too.
    const std::set<std::string>& done() const { return done_; }
    bool is_done(const std::string& file) const { return done_.count(file) != 0; }

    /// Writes `line` and a newline in one write, straight to the file;
    /// std::runtime_error "PATH: cannot be written: why" when it fails.
    void append(const std::string& line);

private:
    std::string path_;
    std::set<std::string> done_;
    int fd_ = -1;
};

}  // namespace app
}  // namespace molcryst

#endif
