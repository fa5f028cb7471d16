#include "BatchPool.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "FileReport.h"

namespace molcryst {
namespace app {

namespace {

// Messages between the command and its workers: a request is a file name,
// a result a byte (1 for a failed file) and the output line, each text
// preceded by its length (uint32, host order: both ends are one program).

bool write_all(int fd, const void* data, std::size_t size) {
    const char* p = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t n = ::write(fd, p, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

bool read_all(int fd, void* data, std::size_t size) {
    char* p = static_cast<char*>(data);
    while (size > 0) {
        const ssize_t n = ::read(fd, p, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

bool write_text(int fd, const std::string& text) {
    const std::uint32_t size = static_cast<std::uint32_t>(text.size());
    return write_all(fd, &size, sizeof size) && write_all(fd, text.data(), text.size());
}

bool read_text(int fd, std::string& text) {
    std::uint32_t size = 0;
    if (!read_all(fd, &size, sizeof size)) return false;
    text.resize(size);
    return read_all(fd, &text[0], size);
}

/// The worker: reports each file it is sent until the command closes the pipe.
[[noreturn]] void work(int from, int to) {
    std::string file;
    while (read_text(from, file)) {
        bool failed = false;
        const std::string line = report_line(file, failed);
        const char status = failed ? 1 : 0;
        if (!write_all(to, &status, 1) || !write_text(to, line)) ::_exit(1);
    }
    ::_exit(0);
}

std::string exit_reason(int status) {
    std::ostringstream why;
    if (WIFSIGNALED(status))
        why << "the report stopped on signal " << WTERMSIG(status) << " (" << ::strsignal(WTERMSIG(status)) << ")";
    else
        why << "the report stopped with exit code " << WEXITSTATUS(status);
    return why.str();
}

}  // namespace

BatchPool::BatchPool(int nworkers, double timeout)
    : workers_(static_cast<std::size_t>(nworkers < 1 ? 1 : nworkers)), timeout_(timeout) {
    // A worker that dies closes its pipe; writing to it must fail, not end the command.
    ::signal(SIGPIPE, SIG_IGN);
    try {
        for (Worker& w : workers_) start(w);
    } catch (...) {
        for (Worker& w : workers_) stop(w, true);
        throw;
    }
}

BatchPool::~BatchPool() {
    for (Worker& w : workers_) stop(w, !w.file.empty());
}

void BatchPool::start(Worker& worker) {
    int requests[2], results[2];
    if (::pipe(requests) != 0) throw std::runtime_error(std::string("cannot start a worker: ") + std::strerror(errno));
    if (::pipe(results) != 0) {
        ::close(requests[0]);
        ::close(requests[1]);
        throw std::runtime_error(std::string("cannot start a worker: ") + std::strerror(errno));
    }
    const pid_t pid = ::fork();
    if (pid < 0) {
        for (int fd : {requests[0], requests[1], results[0], results[1]}) ::close(fd);
        throw std::runtime_error(std::string("cannot start a worker: ") + std::strerror(errno));
    }
    if (pid == 0) {
        // The other workers' pipes stay with the command alone, so that each
        // worker sees the end of its own when the command closes it.
        for (const Worker& other : workers_) {
            if (other.to >= 0) ::close(other.to);
            if (other.from >= 0) ::close(other.from);
        }
        ::close(requests[1]);
        ::close(results[0]);
        work(requests[0], results[1]);
    }
    ::close(requests[0]);
    ::close(results[1]);
    worker.pid = pid;
    worker.to = requests[1];
    worker.from = results[0];
    worker.file.clear();
}

void BatchPool::stop(Worker& worker, bool kill) {
    if (worker.pid <= 0) return;
    if (kill) ::kill(worker.pid, SIGKILL);
    if (worker.to >= 0) ::close(worker.to);
    if (worker.from >= 0) ::close(worker.from);
    int status = 0;
    while (::waitpid(worker.pid, &status, 0) < 0 && errno == EINTR) {
    }
    worker = Worker();
}

BatchPool::Result BatchPool::lost(Worker& worker, const std::string& why) {
    Result result;
    result.file = worker.file;
    result.failed = true;
    result.error = worker.file + ": " + why;
    result.line = nlohmann::json{{"file", result.file}, {"error", result.error}}.dump();
    worker.file.clear();
    return result;
}

bool BatchPool::has_idle() const {
    for (const Worker& w : workers_)
        if (w.file.empty()) return true;
    return false;
}

bool BatchPool::has_busy() const {
    for (const Worker& w : workers_)
        if (!w.file.empty()) return true;
    return false;
}

void BatchPool::send(const std::string& file) {
    for (Worker& w : workers_) {
        if (!w.file.empty()) continue;
        w.file = file;
        w.started = std::chrono::steady_clock::now();
        // A worker that cannot take the request has died; receive tells it.
        write_text(w.to, file);
        return;
    }
    throw std::logic_error("BatchPool::send(file) no worker is idle");
}

bool BatchPool::receive(int milliseconds, Result& result) {
    const auto now = std::chrono::steady_clock::now();
    std::vector<pollfd> fds;
    std::vector<Worker*> polled;
    int wait = milliseconds;
    for (Worker& w : workers_) {
        if (w.file.empty()) continue;
        fds.push_back(pollfd{w.from, POLLIN, 0});
        polled.push_back(&w);
        if (timeout_ > 0) {
            const double left = timeout_ - std::chrono::duration<double>(now - w.started).count();
            wait = std::min(wait, std::max(0, static_cast<int>(left * 1000.0) + 1));
        }
    }
    if (fds.empty()) return false;
    const int ready = ::poll(fds.data(), fds.size(), wait);
    if (ready < 0 && errno != EINTR)
        throw std::runtime_error(std::string("cannot wait for workers: ") + std::strerror(errno));
    for (std::size_t i = 0; ready > 0 && i < fds.size(); ++i) {
        if (fds[i].revents == 0) continue;
        Worker& w = *polled[i];
        char status = 0;
        if (read_all(w.from, &status, 1) && read_text(w.from, result.line)) {
            result.file = w.file;
            result.failed = status != 0;
            result.error.clear();
            if (result.failed) {
                const nlohmann::json line = nlohmann::json::parse(result.line, nullptr, false);
                if (line.is_object() && line.contains("error") && line["error"].is_string())
                    result.error = line["error"].get<std::string>();
            }
            w.file.clear();
            return true;
        }
        // The worker died: its exit tells why.
        int code = 0;
        ::kill(w.pid, SIGKILL);
        while (::waitpid(w.pid, &code, 0) < 0 && errno == EINTR) {
        }
        ::close(w.to);
        ::close(w.from);
        w.pid = -1;
        w.to = w.from = -1;
        result = lost(w, exit_reason(code));
        start(w);
        return true;
    }
    if (timeout_ > 0) {
        const auto later = std::chrono::steady_clock::now();
        for (Worker& w : workers_) {
            if (w.file.empty() || std::chrono::duration<double>(later - w.started).count() < timeout_) continue;
            std::ostringstream why;
            why << "no report after " << timeout_ << " s (stopped)";
            const std::string file = w.file;
            stop(w, true);
            w.file = file;
            result = lost(w, why.str());
            start(w);
            return true;
        }
    }
    return false;
}

}  // namespace app
}  // namespace molcryst
