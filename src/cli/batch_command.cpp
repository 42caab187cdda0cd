#include "batch_command.h"

#include "batch_inputs.h"
#include "batch_rows.h"
#include "command_support.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
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

// Rows finished by the workers, handed to the writer in input order.
class RowQueue {
public:
    explicit RowQueue(size_t count) : lines_(count) {}

    void Put(size_t index, std::string line) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            lines_[index] = std::move(line);
        }
        ready_.notify_one();
    }

    // Waits for row `next` and returns it with every row after it that is already finished.
    std::string TakeFrom(size_t& next) {
        std::unique_lock<std::mutex> lock(mutex_);
        ready_.wait(lock, [&] { return lines_[next].has_value(); });
        std::string text;
        while (next < lines_.size() && lines_[next]) {
            text += *lines_[next];
            lines_[next].reset();
            ++next;
        }
        return text;
    }

private:
    std::mutex mutex_;
    std::condition_variable ready_;
    std::vector<std::optional<std::string>> lines_;
};

int RunBatch(const BatchOptions& options, const CommandOutput& output) {
    const std::vector<BatchItem> items = CollectBatchItems(options.inputs);
    if (!output.json)
        if (const int lost = output.Write(BatchCsvHeader()))
            return lost;

    RowQueue queue(items.size());
    std::atomic<size_t> nextItem{0};
    std::atomic<bool> stop{false};
    std::atomic<size_t> failed{0};
    const auto work = [&] {
        for (size_t i; !stop && (i = nextItem++) < items.size();) {
            BatchRow row;
            try {
                row = EvaluateBatchItem(items[i], options.greenAmpt);
            } catch (const std::exception& e) { // one design never takes the others down
                row.name = items[i].name;
                row.status = items[i].kind == BatchItem::Kind::DesignFile ? "file" : "fault";
                row.message = e.what();
            }
            if (!row.ok())
                ++failed;
            queue.Put(i, output.json ? BatchJsonLine(row) : BatchCsvLine(row));
        }
    };
    const size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const size_t jobs =
        std::min(items.size(), options.jobs > 0 ? static_cast<size_t>(options.jobs) : cores);
    std::vector<std::thread> workers;
    try {
        for (size_t j = 0; j < jobs; ++j)
            workers.emplace_back(work);
    } catch (const std::system_error&) {
        // The system gives no more threads: those started do the work, or this one alone.
        if (workers.empty())
            work();
    }

    int written = kExitOk;
    for (size_t next = 0; next < items.size() && written == kExitOk;)
        written = output.Write(queue.TakeFrom(next));
    stop = true; // after a lost output, no point computing the rest
    for (std::thread& worker : workers)
        worker.join();
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
        ->check(CLI::Range(1, 1024).description(""))
        ->type_name("N");
    command->callback([options, output, &exitCode] { exitCode = RunBatch(*options, *output); });
}

} // namespace rainfold::cli
