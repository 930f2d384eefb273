#pragma once

/// @file
/// JSON as a reader of models wants it: whoever finds a mistake knows where it stands.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvex::formats {

/// A value of a JSON text, or none. Valid as long as its tree.
class Json {
public:
    struct Store; ///< opaque

    /// None.
    Json() = default;
    Json(const Store* store, std::uint32_t place)
        : store(store)
        , place(place) {}

    /// Whether there is a value.
    explicit operator bool() const { return store != nullptr; }

    /// Where it stands, as "meshes[2].primitives[0].indices"; "the JSON" for the whole.
    std::string path() const;

    /// @name Lists and objects
    /// @{

    /// How many values a list or an object has; 0 for all others and for none.
    std::size_t size() const;
    /// One of them. @param i  below `size()`
    Json at(std::size_t i) const;
    /// Its name in its object; empty for others.
    std::string_view key() const;

    /// What an object has of a name, the first of several; else none.
    Json find(std::string_view name) const;
    /// As `find`. @throw Refusal  where there is none
    Json need(std::string_view name) const;
    /// As `find`. @throw Refusal  for what is no list
    Json list(std::string_view name) const;
    /// As `find`. @throw Refusal  for what is no object
    Json object(std::string_view name) const;
    /// @}

    bool is_object() const;
    bool is_text() const;

    /// @name Values that are there
    /// @throw Refusal  for a value of another kind
    /// @{
    double number() const;         ///< finite, as all numbers of JSON
    std::uint64_t whole() const;   ///< below 2 to the power of 53
    std::string_view text() const; ///< may have any bytes of UTF-8, and zeros
    bool flag() const;
    /// @}

    /// @name What an object has of a name, or else a default
    /// @throw Refusal  for a value of another kind
    /// @{
    double number(std::string_view name, double otherwise) const;
    float real(std::string_view name, float otherwise) const; ///< beyond all floats: refused
    std::uint64_t whole(std::string_view name, std::uint64_t otherwise) const;
    std::string_view text(std::string_view name, std::string_view otherwise = {}) const;
    bool flag(std::string_view name, bool otherwise) const;

    /// A list of exactly so many numbers.
    template<std::size_t count>
    std::array<double, count> numbers(std::string_view name,
                                      const std::array<double, count>& otherwise) const {
        std::array<double, count> found = otherwise;
        if (const Json told = list(name)) {
            told.need_size(count);
            for (std::size_t i = 0; i < count; ++i)
                found[i] = told.at(i).number();
        }
        return found;
    }

    /// A place in a list.
    /// @param size  of that list
    /// @param otherwise  for an object that has none of the name
    /// @throw Refusal  also for a place beyond
    std::size_t index(std::string_view name, std::size_t size, const char* of_what,
                      std::size_t otherwise = no_index) const;
    /// @}
    static constexpr std::size_t no_index = SIZE_MAX;

    /// The value itself as a place in a list.
    std::size_t as_index(std::size_t size, const char* of_what) const;

    /// Refuses a list of another size.
    void need_size(std::size_t size) const;

    /// Refuses the file for what is wrong with this value.
    [[noreturn]] void refuse(const std::string& what) const;

private:
    [[noreturn]] void refuse_kind(const char* kind) const;

    const Store* store = nullptr;
    std::uint32_t place = 0;
};

/// A whole JSON text. Texts are unpacked, nesting is bounded, and nothing recurs.
class JsonTree {
public:
    /// @param text  UTF-8; is cleared to save memory
    /// @throw Refusal
    explicit JsonTree(std::string&& text);
    ~JsonTree();
    JsonTree(const JsonTree&) = delete;
    JsonTree& operator=(const JsonTree&) = delete;

    Json root() const;

    /// What a text needs behind its end so that it isn't copied: reserve as much.
    static constexpr std::size_t padding = 64;
    /// More than any that is no mistake.
    static constexpr std::size_t longest_text = 1u << 30;

private:
    std::unique_ptr<Json::Store> store;
};

} // namespace orvex::formats
