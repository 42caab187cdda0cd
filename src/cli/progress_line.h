#pragma once
// A progress line for a long run, on standard error when a person is watching it.

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace rainfold::cli {

// Shows nothing unless standard error is a terminal and the run has lasted a second; then
// `text()` on one line, rewritten in place five times a second, and left standing on its own
// line when the object goes. `text` is called from another thread: it must read what it shows
// safely (atomics).
class ProgressLine {
public:
    explicit ProgressLine(std::function<std::string()> text);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

private:
    void Run();

    std::function<std::string()> text_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool done_ = false;
    std::thread thread_;
};

} // namespace rainfold::cli
