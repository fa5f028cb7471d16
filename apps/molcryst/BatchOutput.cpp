#include "BatchOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

namespace molcryst {
namespace app {

namespace {

std::runtime_error system_error(const std::string& path, const char* what) {
    return std::runtime_error(path + ": " + what + ": " + std::strerror(errno));
}

}  // namespace

BatchOutput::BatchOutput(const std::string& path) : path_(path) {
    fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd_ < 0) throw system_error(path, "cannot be opened for writing");
    try {
        // Only a plain file holds earlier lines; a device or a pipe is written to and never read.
        struct stat status;
        if (::fstat(fd_, &status) != 0) throw system_error(path, "cannot be read");
        if (!S_ISREG(status.st_mode)) return;
        std::ifstream in(path, std::ios::binary);
        if (!in) throw system_error(path, "cannot be read");
        std::ostringstream text;
        text << in.rdbuf();
        const std::string contents = text.str();
        // Only complete lines count; what follows the last newline was being
        // written when the run stopped.
        const std::size_t complete = contents.rfind('\n') == std::string::npos ? 0 : contents.rfind('\n') + 1;
        std::size_t begin = 0;
        int number = 0;
        while (begin < complete) {
            const std::size_t end = contents.find('\n', begin);
            ++number;
            const nlohmann::json line = nlohmann::json::parse(
                contents.begin() + static_cast<long>(begin), contents.begin() + static_cast<long>(end), nullptr, false);
            if (!line.is_object() || !line.contains("file") || !line["file"].is_string())
                throw std::runtime_error(path + ":" + std::to_string(number) + ": not a line of a batch output");
            done_.insert(line["file"].get<std::string>());
            begin = end + 1;
        }
        if (complete < contents.size() && ::ftruncate(fd_, static_cast<off_t>(complete)) != 0)
            throw system_error(path, "cannot be written");
    } catch (...) {
        ::close(fd_);
        throw;
    }
}

BatchOutput::~BatchOutput() { ::close(fd_); }

void BatchOutput::append(const std::string& line) {
    const std::string text = line + "\n";
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t n = ::write(fd_, text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) throw system_error(path_, "cannot be written");
        written += static_cast<std::size_t>(n);
    }
}

}  // namespace app
}  // namespace molcryst
