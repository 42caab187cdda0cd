#include "batch_command.h"

#include "batch_inputs.h"
#include "batch_rows.h"
#include "command_support.h"
#include "progress_line.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace rainfold::cli {

namespace {

struct BatchOptions {
    std::vector<std::string> inputs;
    bool greenAmpt = false;
    bool csv = false; // the default; the flag only makes it explicit
    int jobs = 0;     // 0: one per core
};

// Designs travel from the reader to the workers and on to the writer in blocks, which keeps the
// threads from handing over every row one by one.
struct Block {
    std::size_t index = 0;
    std::vector<BatchItem> items;
    std::size_t bytes = 0; // of the items as read, for the bound on what is in hand
    std::size_t rows = 0, failed = 0;
    std::string text; // the rows, written
};
constexpr std::size_t kBlockItems = 64;
constexpr std::size_t kBlockBytes = std::size_t(256) << 10;
// What may be in hand at once, read but not yet written: memory stays flat however many designs
// the inputs hold.
constexpr std::size_t kBlocksInHand = 32;
constexpr std::size_t kBytesInHand = std::size_t(16) << 20;

// The hand-over between the reader, the workers and the writer, which writes the blocks in the
// order they were read.
class Pipeline {
public:
    // Waits for room, then hands a block to the workers; false when the run is stopping.
    bool Push(Block block) {
        std::unique_lock<std::mutex> lock(mutex_);
        room_.wait(lock, [&] {
            return stop_ || inHand_ == 0 ||
                   (inHand_ < kBlocksInHand && bytes_ + block.bytes <= kBytesInHand);
        });
        if (stop_)
            return false;
        block.index = pushed_++;
        ++inHand_;
        bytes_ += block.bytes;
        todo_.push_back(std::move(block));
        work_.notify_one();
        return true;
    }
    void ReadingDone() {
        std::lock_guard<std::mutex> lock(mutex_);
        readingDone_ = true;
        work_.notify_all();
        written_.notify_all();
    }
    // A block to compute; false when there is none and will be none.
    bool Take(Block& block) {
        std::unique_lock<std::mutex> lock(mutex_);
        work_.wait(lock, [&] { return stop_ || !todo_.empty() || readingDone_; });
        if (stop_ || todo_.empty())
            return false;
        block = std::move(todo_.front());
        todo_.erase(todo_.begin());
        return true;
    }
    void Finish(Block block) {
        std::lock_guard<std::mutex> lock(mutex_);
        finished_.emplace(block.index, std::move(block));
        written_.notify_all();
    }
    // The next block in reading order; false at the end of the run.
    bool NextFinished(Block& block) {
        std::unique_lock<std::mutex> lock(mutex_);
        written_.wait(lock, [&] {
            return stop_ || (readingDone_ && next_ == pushed_) ||
                   (!finished_.empty() && finished_.begin()->first == next_);
        });
        if (stop_ || finished_.empty() || finished_.begin()->first != next_)
            return false;
        block = std::move(finished_.begin()->second);
        finished_.erase(finished_.begin());
        ++next_;
        --inHand_;
        bytes_ -= block.bytes;
        room_.notify_one();
        return true;
    }
    // Stops every thread at its next hand-over; the first failure given is the one reported.
    void Stop(int code = kExitOk, const std::string& message = "") {
        std::lock_guard<std::mutex> lock(mutex_);
        if (!stop_ && code != kExitOk) {
            failure_ = code;
            failureMessage_ = message;
        }
        stop_ = true;
        room_.notify_all();
        work_.notify_all();
        written_.notify_all();
    }
    int failure(std::string& message) {
        std::lock_guard<std::mutex> lock(mutex_);
        message = failureMessage_;
        return failure_;
    }

private:
    std::mutex mutex_;
    std::condition_variable room_, work_, written_;
    std::vector<Block> todo_;
    std::map<std::size_t, Block> finished_;
    std::size_t pushed_ = 0, next_ = 0, inHand_ = 0, bytes_ = 0;
    bool readingDone_ = false, stop_ = false;
    int failure_ = kExitOk;
    std::string failureMessage_;
};

bool ResourceError(int code) {
    return code == ENOMEM || code == EMFILE || code == ENFILE || code == EAGAIN;
}

// A file row that failed for want of memory or descriptors says nothing about the file: the
// system ran short, and the rest of the run would fail alike.
bool ResourceReason(const std::string& message) {
    for (int code : {ENOMEM, EMFILE, ENFILE}) {
        const std::string reason = std::string(": ") + std::strerror(code);
        for (const std::string& end : {reason, reason + "."})
            if (message.size() >= end.size() &&
                message.compare(message.size() - end.size(), end.size(), end) == 0)
                return true;
    }
    return false;
}

constexpr const char* kOutOfMemory = "out of memory";

void Read(Pipeline& pipeline, const std::vector<std::string>& inputs) {
    try {
        BatchSource source(inputs);
        Block block;
        BatchItem item;
        for (bool more = true; more;) {
            more = source.Next(item);
            if (more) {
                block.bytes += item.Bytes();
                block.items.push_back(std::move(item));
            }
            const bool full = block.items.size() == kBlockItems || block.bytes >= kBlockBytes;
            if (!block.items.empty() && (full || !more)) {
                if (!pipeline.Push(std::move(block)))
                    return;
                block = Block();
            }
        }
        pipeline.ReadingDone();
    } catch (const std::bad_alloc&) {
        pipeline.Stop(kExitResource, kOutOfMemory);
    } catch (const std::system_error& e) {
        pipeline.Stop(ResourceError(e.code().value()) ? kExitResource : kExitFile, e.what());
    } catch (const std::exception& e) {
        pipeline.Stop(kExitFile, e.what());
    }
}

void Work(Pipeline& pipeline, bool greenAmpt, bool json) {
    try {
        for (Block block; pipeline.Take(block);) {
            for (const BatchItem& item : block.items) {
                BatchRow row;
                try {
                    row = EvaluateBatchItem(item, greenAmpt);
                } catch (const std::bad_alloc&) {
                    throw;
                } catch (const std::exception& e) { // one design never takes the others down
                    row.name = item.name;
                    row.status = item.kind == BatchItem::Kind::DesignFile ? "file" : "fault";
                    row.message = e.what();
                }
                if (row.status == "file" && ResourceReason(row.message)) {
                    pipeline.Stop(kExitResource, row.message);
                    return;
                }
                ++block.rows;
                block.failed += row.ok() ? 0 : 1;
                block.text += json ? BatchJsonLine(row) : BatchCsvLine(row);
            }
            block.items = std::vector<BatchItem>();
            pipeline.Finish(std::move(block));
        }
    } catch (const std::bad_alloc&) {
        pipeline.Stop(kExitResource, kOutOfMemory);
    } catch (const std::exception& e) { // not foreseen: the run stops loudly, never in silence
        pipeline.Stop(kExitFault, e.what());
    }
}

int RunBatch(const BatchOptions& options, const CommandOutput& output) {
    if (!output.json)
        if (const int lost = output.Write(BatchCsvHeader()))
            return lost;

    Pipeline pipeline;
    std::vector<std::thread> threads;
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t jobs = options.jobs > 0 ? static_cast<std::size_t>(options.jobs) : cores;
    std::string started;
    try {
        threads.emplace_back(Read, std::ref(pipeline), std::cref(options.inputs));
        for (std::size_t j = 0; j < jobs; ++j)
            threads.emplace_back(Work, std::ref(pipeline), options.greenAmpt, output.json);
    } catch (const std::system_error& e) {
        // The system gives no more threads: those started do the work, if a worker is among them.
        if (threads.size() < 2)
            pipeline.Stop(kExitResource, std::string("cannot start a thread: ") + e.what());
    }

    std::atomic<std::size_t> rows{0}, failed{0};
    int written = kExitOk;
    std::optional<ProgressLine> progress;
    progress.emplace([&rows, &failed] {
        return "rainfold-cli batch: " + std::to_string(rows) + " designs, " +
               std::to_string(failed) + " did not compute";
    });
    try {
        for (Block block; pipeline.NextFinished(block);) {
            if ((written = output.Write(block.text)) != kExitOk) {
                pipeline.Stop(); // after a lost output, no point computing the rest
                break;
            }
            rows += block.rows;
            failed += block.failed;
        }
    } catch (const std::bad_alloc&) {
        pipeline.Stop(kExitResource, kOutOfMemory);
    }
    for (std::thread& thread : threads)
        thread.join();
    progress.reset();
    std::string message;
    if (const int failure = pipeline.failure(message))
        return output.Fail(failure, message,
                           failure == kExitResource ? "rainfold-cli batch: the system ran short: "
                                                    : "rainfold-cli batch: ");
    if (written != kExitOk)
        return written;
    return failed ? kExitSomeFailed : kExitOk;
}

} // namespace

void AddBatchCommand(CLI::App& app, int& exitCode) {
    auto options = std::make_shared<BatchOptions>();
    auto output = std::make_shared<CommandOutput>("batch");
    CLI::App* command = app.add_subcommand(
        "batch", "compute many designs: design files, folders of them and CSV inventories");
    command
        ->add_option("INPUT", options->inputs,
                     "a design file, a folder (every .rfd in it, recursively) or a .csv "
                     "inventory")
        ->required()
        ->type_name("");
    AddGreenAmptOption(*command, options->greenAmpt);
    CLI::Option* csv = command->add_flag("--csv", options->csv, "one CSV row per design (default)");
    CLI::Option* json = command->add_flag("--json", output->json, "one JSON object per line");
    csv->excludes(json);
    command->add_option("--jobs", options->jobs, "designs computed at once (default: one per core)")
        ->check(WholeNumberIn(1, 1024))
        ->type_name("N");
    command->callback([options, output, &exitCode] { exitCode = RunBatch(*options, *output); });
}

} // namespace rainfold::cli
