// Results, and the sentences behind them.

#include <atomic>
#include <cmath>
#include <cstdio>
#include <utility>

#include "orvex_c/orvex.h"
#include "orvex_c/private/refusal.h"
#include "orvex_c/private/thread.h"

namespace orvex::c {

namespace {

std::atomic<std::uint64_t> num_threads{0};

} // namespace

thread_local constinit Thread this_thread;

std::uint64_t number_of_thread() {
    if (this_thread.number == 0)
        this_thread.number = ++num_threads;
    return this_thread.number;
}

ThreadStore& store_of_thread() {
    thread_local ThreadStore store;
    return store;
}

void forget_error() noexcept {
    this_thread.sentence = "";
}

orvex_result remember_error(orvex_result result, const char* sentence) noexcept {
    try {
        std::string& error = store_of_thread().error;
        error = sentence;
        this_thread.sentence = error.c_str();
    } catch (...) {
        this_thread.sentence = "there isn't enough memory to say what went wrong";
    }
    return result;
}

void refuse(orvex_result result, std::string sentence) {
    throw Refusal{result, std::move(sentence)};
}

void refuse_argument(const char* name, const std::string& value, const char* rule) {
    refuse(ORVEX_ERROR_ARGUMENT, std::string(name) + " is " + value + ": " + rule);
}

std::string number_text(double number) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.9g", number);
    return text;
}

void require_pointer(const void* pointer, const char* name) {
    if (!pointer)
        refuse(ORVEX_ERROR_ARGUMENT, std::string(name) + " is null");
}

namespace {

template<class Number>
void require_finite_floats(const Number* numbers, std::size_t count, const char* name) {
    require_pointer(numbers, name);
    for (std::size_t i = 0; i < count; ++i)
        if (!std::isfinite(static_cast<float>(numbers[i])))
            refuse_argument((std::string(name) + "[" + std::to_string(i) + "]").c_str(),
                            number_text(static_cast<double>(numbers[i])),
                            "numbers are finite, also as floats");
}

} // namespace

void require_finite(const double* numbers, std::size_t count, const char* name) {
    require_finite_floats(numbers, count, name);
}

void require_finite(const float* numbers, std::size_t count, const char* name) {
    require_finite_floats(numbers, count, name);
}

void require_range(double number, double least, double most, const char* name) {
    if (!(number >= least && number <= most))
        refuse_argument(
            name, number_text(number),
            ("it goes from " + number_text(least) + " to " + number_text(most)).c_str());
}

void require_index(std::size_t index, std::size_t count) {
    if (index >= count)
        refuse_argument("index", std::to_string(index),
                        ("there are " + std::to_string(count)).c_str());
}

void require_choice(std::int32_t number, std::int32_t last, const char* name) {
    if (number < 0 || number > last)
        refuse_argument(name, std::to_string(number),
                        ("it goes from 0 to " + std::to_string(last)).c_str());
}

bool flag_of(std::int32_t number, const char* name) {
    require_choice(number, 1, name);
    return number == 1;
}

void require_sides(std::int32_t width, std::int32_t height) {
    if (width < 1)
        refuse_argument("width", std::to_string(width), "it goes from 1");
    if (height < 1)
        refuse_argument("height", std::to_string(height), "it goes from 1");
}

} // namespace orvex::c

const char* orvex_last_error(void) {
    return orvex::c::this_thread.sentence;
}

const char* orvex_result_name(orvex_result result) {
    static constexpr const char* names[] = {
        "ORVEX_OK",         "ORVEX_ERROR_ARGUMENT", "ORVEX_ERROR_HANDLE", "ORVEX_ERROR_THREAD",
        "ORVEX_ERROR_FORK", "ORVEX_ERROR_CALLBACK", "ORVEX_ERROR_ENGINE", "ORVEX_ERROR_DRIVER",
        "ORVEX_ERROR_FILE", "ORVEX_ERROR_LOOK",     "ORVEX_ERROR_MEMORY", "ORVEX_ERROR_INTERNAL"};
    return result >= 0 && result <= ORVEX_ERROR_INTERNAL ? names[result] : "unknown";
}

const char* orvex_version(void) {
    return ORVEX_C_VERSION;
}
