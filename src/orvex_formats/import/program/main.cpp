// orvex-import: reads a file by libraries that nobody has to trust, and hands back plain arrays.
// The loaders of formats start it; it does nothing for people.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include "orvex_formats/import/program/confinement.h"
#include "orvex_formats/import/program/requests.h"
#include "orvex_formats/private/importer_protocol.h"

namespace {

using namespace orvex::formats;

unsigned long long most_megabytes = 0;

/// Says why, without taking memory, and ends.
[[noreturn]] void give_up(const char* sentence) {
    const std::size_t size = std::min<std::size_t>(std::strlen(sentence), 400);
    _exit(write(sentence_descriptor, sentence, size) == static_cast<ssize_t>(size) ? 1 : 2);
}

/// Libraries may keep the end of memory for themselves, and go on.
void give_up_for_memory() {
    static char sentence[64] = "the importer took more than ";
    char digits[24];
    char* next = digits + sizeof digits - 1;
    *next = '\0';
    for (unsigned long long left = most_megabytes; next == digits + sizeof digits - 1 || left > 0;
         left /= 10)
        *--next = static_cast<char>('0' + left % 10);
    std::strcat(std::strcat(sentence, next), " MB");
    give_up(sentence);
}

/// The moment that a model is asked for, in seconds; none: at rest.
std::optional<float> time_in(int count, char** words) {
    if (count <= time_word)
        return std::nullopt;
    return std::strtof(words[time_word], nullptr);
}

void work(int count, char** words) {
    if (count <= request_word)
        throw std::runtime_error("orvex-import is started by loaders of models, not by hand");
    Limits limits;
    limits.most_memory = std::strtoull(words[memory_word], nullptr, 10);
    limits.most_answer = std::strtoull(words[answer_word], nullptr, 10);
    limits.seconds = static_cast<unsigned>(std::strtoul(words[seconds_word], nullptr, 10));
    most_megabytes = limits.most_memory >> 20;
    std::set_new_handler(give_up_for_memory);
    set_limits(limits);

    // Where nothing keeps it to a folder no file is opened but those that are open.
    int folder = std::string(words[folder_word]) == "folder" ? folder_descriptor : -1;
    if (!confine_files(folder))
        folder = -1;
    confine_calls(folder >= 0);

    const std::string request = words[request_word];
    const std::string name = count > name_word ? words[name_word] : "";
    AnswerRoom room(answer_descriptor, limits.most_answer);
    if (request == "model")
        import_model(name, time_in(count, words), folder, limits.most_answer, room);
    else if (request == "draco")
        unpack_meshes(std::strtoull(name.c_str(), nullptr, 10), room);
    else if (request == "confinement")
        throw std::runtime_error(tell_confinement());
    else
        throw std::runtime_error("orvex-import doesn't know the request \"" + request + "\"");
    room.finish();
}

} // namespace

int main(int count, char** words) {
    try {
        work(count, words);
    } catch (const std::exception& error) {
        give_up(error.what()[0] != '\0' ? error.what() : "the importer gave up without a reason");
    } catch (...) {
        give_up("the importer gave up without a reason");
    }
    _exit(0); // nothing is left to be done, and much could go wrong
}
