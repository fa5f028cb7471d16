// BatchPool: worker processes for `molcryst batch`. Each worker is a fork of
// the command that reports the files sent to it one at a time, so that a file
// that crashes the reader, or never ends, costs its own line and no more:
// the pool tells it and starts a new worker in its place.
#ifndef MOLCRYST_APPS_BATCHPOOL_H
#define MOLCRYST_APPS_BATCHPOOL_H

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace molcryst {
namespace app {

/// Worker processes that turn files into batch output lines (report_line).
class BatchPool {
public:
    /// What a worker gave back for one file.
    struct Result {
        std::string file;
        std::string line;  // the output line, without its newline
        bool failed = false;
        std::string error;  // the error of a failed file, as in its line
    };

    /// Starts `nworkers` workers (at least one). `timeout` is the longest a
    /// file may take, in seconds; 0 for no limit.
    BatchPool(int nworkers, double timeout);
    /// Ends the workers and waits for them.
    ~BatchPool();
    BatchPool(const BatchPool&) = delete;
    BatchPool& operator=(const BatchPool&) = delete;

    bool has_idle() const;
    bool has_busy() const;
    /// Gives `file` to an idle worker; there must be one.
    void send(const std::string& file);
    /// Waits up to `milliseconds` for a worker to finish a file; true with
    /// its result if one did. A worker that dies or runs out of time gives an
    /// error line for its file and is replaced.
    bool receive(int milliseconds, Result& result);

private:
    struct Worker {
        pid_t pid = -1;
        int to = -1;       // requests, written here
        int from = -1;     // results, read here
        std::string file;  // the file being reported; empty when idle
        std::chrono::steady_clock::time_point started;
    };

    void start(Worker& worker);
    void stop(Worker& worker, bool kill);
    Result lost(Worker& worker, const std::string& why);

    std::vector<Worker> workers_;
    double timeout_;
};

}  // namespace app
}  // namespace molcryst

#endif
