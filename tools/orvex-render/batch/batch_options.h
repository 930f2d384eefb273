#pragma once

/// @file
/// The options of a whole batch.

#include <string>

#include "arguments.h"

namespace batch {

/// A part of a batch: entries whose id hashes into it.
struct Shard {
    int part = 1; ///< from 1 to `parts`
    int parts = 1;
};

/// What the command line says about a batch as a whole.
struct BatchOptions {
    std::string manifest;        ///< JSON lines; - is standard input, empty: none
    std::string list;            ///< paths of models, one a line; - and empty likewise
    bool null = false;           ///< paths of the list end with a zero byte
    std::string output_dir;      ///< empty: the current folder
    std::string results = "-";   ///< of the verdicts; - is standard output
    bool resume = false;         ///< passes over what the results tell of
    Shard shard;                 ///< of the entries
    bool keep_going = false;     ///< a line that is no entry doesn't end the batch
    bool serve = false;          ///< entries come on standard input or a socket, without an end
    std::string socket;          ///< the path of that socket; empty: standard input
    int workers = 0;             ///< processes that draw; 0: one a processor
    int recycle = 1000;          ///< models after which a worker makes place for a new one
    int limit_memory = 0;        ///< MB of a worker; 0: none
    float limit_seconds = 60.0f; ///< on a model; 0: none
    int limit_pixels = 0;        ///< of all pictures of a model; 0: none
    int limit_file = 0;          ///< MB of a model's file, and of each that is written; 0: none
};

/// Adds the group of rules, which fill `options`.
void add_batch_rules(Arguments& rules, BatchOptions& options);

/// Whether models are drawn by a batch or a service.
bool is_batch(const BatchOptions& options);

/// What is said though there is no batch; empty if nothing is.
std::string mistake_without_batch(const BatchOptions& options);

/// What doesn't go together; empty if all does.
std::string mistake_of_batch(const BatchOptions& options);

} // namespace batch
