#include "progress_line.h"

#include "file_access.h"

#include <chrono>
#include <iostream>

namespace rainfold::cli {

ProgressLine::ProgressLine(std::function<std::string()> text) : text_(std::move(text)) {
    if (StandardErrorIsTerminal())
        thread_ = std::thread([this] { Run(); });
}

ProgressLine::~ProgressLine() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        done_ = true;
    }
    wake_.notify_one();
    thread_.join();
}

void ProgressLine::Run() {
    std::unique_lock<std::mutex> lock(mutex_);
    if (wake_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; }))
        return;
    do
        std::cerr << '\r' << text_() << std::flush;
    while (!wake_.wait_for(lock, std::chrono::milliseconds(200), [this] { return done_; }));
    std::cerr << '\r' << text_() << std::endl;
}

} // namespace rainfold::cli
