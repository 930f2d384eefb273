#include "orvex_kit/private/output.h"

#include <cstring>

#include <unistd.h>

#include "orvex_kit/private/write_all.h"

namespace orvex::kit {

bool is_standard_output(const std::string& path) {
    return path == "-";
}

Outcome cant_write(const std::string& path, const std::string& why) {
    return Outcome::failure("can't write " +
                            (is_standard_output(path) ? "to standard output" : path) + ": " + why);
}

Outcome no_memory_to_write(const std::string& path) {
    return cant_write(path, "there isn't enough memory");
}

Output::Output(const std::string& path)
    : is_standard(is_standard_output(path))
    , file(path) {}

Outcome Output::begin() {
    return is_standard ? Outcome::success() : file.begin();
}

Outcome Output::put(std::string_view bytes) {
    if (!is_standard)
        return file.put(bytes);
    const int error = write_all(STDOUT_FILENO, bytes);
    return error != 0 ? cant_write("-", std::strerror(error)) : Outcome::success();
}

Outcome Output::put(const unsigned char* bytes, std::size_t size) {
    return put({reinterpret_cast<const char*>(bytes), size});
}

Outcome Output::finish() {
    return is_standard ? Outcome::success() : file.finish();
}

Outcome write_whole(const std::string& path, std::string_view bytes) {
    Output output(path);
    Outcome outcome = output.begin();
    if (outcome)
        outcome = output.put(bytes);
    return outcome ? output.finish() : outcome;
}

} // namespace orvex::kit
