// molcryst batch: the report of every file of a collection, one JSON line
// each, by worker processes, taken up again where a stopped run left off.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <set>

#include "BatchInput.h"
#include "BatchOutput.h"
#include "BatchPool.h"
#include "Commands.h"
#include "ProgressBar.h"

namespace molcryst {
namespace app {

BatchCommand::BatchCommand(CLI::App& parent) {
    command_ = parent.add_subcommand("batch", "Report every CIF of a folder tree or a list, one JSON line each");
    command_->add_option("input", input_, "A folder (its CIF files and those below), or a file listing files")
        ->required();
    command_->add_option("-o,--output", output_, "The output (JSON lines); files already in it are skipped")
        ->required();
    command_->add_option("-j,--jobs", jobs_, "Worker processes")->check(CLI::Range(1, 256));
    command_->add_option("--timeout", timeout_, "Seconds one file may take before it is given up (0: no limit)")
        ->check(CLI::Range(0.0, 1e6));
}

bool BatchCommand::chosen() const { return command_->parsed(); }

int BatchCommand::run(std::ostream& out, std::ostream& err) const {
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::string> files;
    try {
        files = batch_input(input_);
    } catch (const std::exception& e) {
        err << e.what() << "\n";
        return 1;
    }
    std::unique_ptr<BatchOutput> output;
    try {
        output.reset(new BatchOutput(output_));
    } catch (const std::exception& e) {
        err << e.what() << "\n";
        return 1;
    }
    std::vector<std::string> todo;
    for (const std::string& file : files)
        if (!output->is_done(file)) todo.push_back(file);
    const long skipped = static_cast<long>(files.size() - todo.size());

    long reported = 0, failed = 0;
    int status = 0;
    // Workers are forks: what the command has buffered must not be written twice.
    out.flush();
    err.flush();
    std::fflush(nullptr);
    ProgressBar bar(err, static_cast<long>(todo.size()), ::isatty(STDERR_FILENO) != 0);
    if (!todo.empty()) {
        try {
            BatchPool pool(std::min<int>(jobs_, static_cast<int>(todo.size())), timeout_);
            std::size_t next = 0;
            bar.update(0, true);
            while (next < todo.size() || pool.has_busy()) {
                while (next < todo.size() && pool.has_idle()) pool.send(todo[next++]);
                BatchPool::Result result;
                if (pool.receive(100, result)) {
                    output->append(result.line);
                    if (result.failed) {
                        ++failed;
                        bar.clear();
                        err << result.error << "\n";
                    } else {
                        ++reported;
                    }
                }
                bar.update(reported + failed);
            }
            bar.finish(reported + failed);
        } catch (const std::exception& e) {
            // The output cannot take more, or no worker can be started: the
            // lines written so far stand, and a later run takes up the rest.
            bar.clear();
            err << e.what() << "\n";
            status = 1;
        }
    }
    if (failed > 0) status = 1;
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    char timing[96];
    std::snprintf(timing, sizeof timing, "%.1f s (%.1f files/s)", seconds,
                  seconds > 0 ? (reported + failed) / seconds : 0.0);
    out << files.size() << " files: " << reported << " reported, " << failed << " failed, " << skipped
        << " skipped (already in " << output_ << "), in " << timing << "\n";
    return status;
}

}  // namespace app
}  // namespace molcryst
