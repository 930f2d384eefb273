#include "batch/batch_options.h"

#include <optional>
#include <utility>

#include "takers.h"

namespace batch {

namespace {

std::optional<Shard> shard_in(const std::string& word) {
    constexpr int most = 1000000;
    const std::size_t slash = word.find('/');
    if (slash == word.npos)
        return std::nullopt;
    const std::optional<int> parts = whole_number_in(word.substr(slash + 1), 1, most);
    const std::optional<int> part =
        parts ? whole_number_in(word.substr(0, slash), 1, *parts) : std::nullopt;
    return part ? std::optional(Shard{*part, *parts}) : std::nullopt;
}

void add_entry_rules(Arguments& rules, BatchOptions& options) {
    rules.add_value("--batch", 0, "MANIFEST",
                    "draws a model for each line of JSON, as {\"model\": \"a.obj\", \"size\": "
                    "\"256x256\"}; - is standard input",
                    take_text(options.manifest, "a file, or - for standard input,"));
    rules.add_value("--files", 0, "LIST", "likewise for each path of a list, one a line",
                    take_text(options.list, "a file, or - for standard input,"));
    rules.add_flag("--null", 0, "paths of the list end with a zero byte", options.null);
    rules.add_value("--output-dir", 0, "FOLDER", "where all pictures go (this one)",
                    take_text(options.output_dir, "a folder"));
    rules.add_value("--results", 0, "FILE",
                    "where a line of JSON goes for each model, what became of it (-, standard "
                    "output)",
                    take_text(options.results, "a file, or - for standard output,"));
    rules.add_flag("--resume", 0, "goes on with earlier results: what still holds isn't drawn",
                   options.resume);
    rules.add_value("--shard", 0, "I/N", "draws the I-th of N parts of the batch",
                    take(options.shard, "I/N with I from 1 to N", shard_in));
    rules.add_flag("--keep-going", 0, "a line that is no entry doesn't end the batch",
                   options.keep_going);
}

void add_process_rules(Arguments& rules, BatchOptions& options) {
    constexpr int many = 1000000000;
    rules.add_flag("--serve", 0, "takes entries as they come, and answers each with its result",
                   options.serve);
    rules.add_value("--socket", 0, "PATH", "with --serve: makes a socket for that",
                    take_text(options.socket, "a path"));
    rules.add_value("--workers", 0, "N", "processes that draw (one a processor)",
                    take_whole_number(options.workers, 1, 1024));
    rules.add_value("--recycle", 0, "N", "models after which a new process takes over (1000)",
                    take_whole_number(options.recycle, 1, many));
    rules.add_value("--limit-memory", 0, "MB", "memory that a model may take",
                    take_whole_number(options.limit_memory, 1, many));
    rules.add_value("--limit-seconds", 0, "S", "time that a model may take (60)",
                    take_number(options.limit_seconds, 0.0f, 1e9f, "a number of seconds"));
    rules.add_value("--limit-pixels", 0, "N", "pixels that the pictures of a model may have",
                    take_whole_number(options.limit_pixels, 1, many));
    rules.add_value("--limit-file", 0, "MB", "size that a file may have that is read or written",
                    take_whole_number(options.limit_file, 1, many));
}

} // namespace

void add_batch_rules(Arguments& rules, BatchOptions& options) {
    rules.begin_group("Many models");
    add_entry_rules(rules, options);
    add_process_rules(rules, options);
}

bool is_batch(const BatchOptions& options) {
    return !options.manifest.empty() || !options.list.empty() || options.serve;
}

std::string mistake_without_batch(const BatchOptions& options) {
    const BatchOptions none;
    const std::pair<const char*, bool> said[] = {
        {"--null", options.null},
        {"--output-dir", !options.output_dir.empty()},
        {"--results", options.results != none.results},
        {"--resume", options.resume},
        {"--shard", options.shard.parts != none.shard.parts},
        {"--keep-going", options.keep_going},
        {"--socket", !options.socket.empty()},
        {"--workers", options.workers != none.workers},
        {"--recycle", options.recycle != none.recycle},
    };
    for (const auto& [name, is_said] : said)
        if (is_said)
            return std::string(name) + " goes with --batch, --files or --serve";
    return "";
}

std::string mistake_of_batch(const BatchOptions& options) {
    if (!options.manifest.empty() + !options.list.empty() + options.serve > 1)
        return "--batch, --files and --serve exclude each other";
    if (options.null && options.list.empty())
        return "--null goes with --files";
    if (!options.socket.empty() && !options.serve)
        return "--socket goes with --serve";
    if (options.resume && options.results == "-")
        return "--resume needs --results that are a file";
    if (options.resume && options.serve)
        return "--resume goes with --batch or --files";
    return "";
}

} // namespace batch
