#pragma once

/// @file
/// Numbers as glTF's accessors tell them.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_buffers.h"
#include "orvex_formats/gltf/private/gltf_json.h"

namespace orvex::formats {

/// The types of numbers, by the codes that glTF has for them.
enum class GltfNumber : std::uint16_t {
    int8 = 5120,
    uint8 = 5121,
    int16 = 5122,
    uint16 = 5123,
    uint32 = 5125,
    float32 = 5126
};

/// All accessors of a file. Each is known to lie in its view from the begin on; what they say of
/// their least and largest values is never believed.
class GltfAccessors {
public:
    /// Places of elements, ascending; null for all of them.
    using Selection = const std::vector<std::uint32_t>*;

    /// @throw Refusal
    GltfAccessors(const Json& json, GltfBuffers& buffers, GltfBudget& budget);

    std::size_t size() const { return accessors.size(); }
    /// How many elements one has.
    std::uint64_t count(std::size_t i) const { return accessors[i].count; }
    /// How many numbers an element has: 1, 2, 3, 4, 9 or 16.
    std::size_t width(std::size_t i) const { return accessors[i].rows * accessors[i].columns; }
    GltfNumber number(std::size_t i) const { return accessors[i].number; }
    const Json& json(std::size_t i) const { return accessors[i].json; }

    /// @name What a packed mesh has for an accessor, instead of its view
    /// @param by  where it is told
    /// @throw Refusal  for another count than the accessor's, or another type
    /// @{
    void unpack_numbers(std::size_t i, const std::vector<float>& numbers, std::size_t width,
                        const Json& by);
    void unpack_indices(std::size_t i, const std::vector<std::uint32_t>& indices, const Json& by);
    /// @}

    /// The numbers of the elements one after the other, those of a matrix column by column.
    /// @param selection  places below the count
    /// @throw Refusal
    std::vector<float> floats(std::size_t i, Selection selection = nullptr);
    /// Whole numbers, one an element.
    /// @throw Refusal  also for elements of another type
    std::vector<std::uint32_t> indices(std::size_t i);

private:
    /// What stands elsewhere in the place of some elements.
    struct Sparse {
        Json json;
        std::uint64_t count = 0; ///< 0 for none
        std::size_t places_view = 0, values_view = 0;
        std::uint64_t places_begin = 0, values_begin = 0;
        GltfNumber place_number = GltfNumber::uint8;
        bool is_read = false;
        std::vector<std::uint32_t> places; ///< ascending
    };
    struct Accessor {
        Json json;
        std::size_t view = Json::no_index; ///< `no_index`: all is zero
        std::uint64_t begin = 0;
        std::uint64_t count = 0;
        std::size_t rows = 1, columns = 1;
        GltfNumber number = GltfNumber::float32;
        bool is_normalized = false;
        Sparse sparse;
        std::vector<float> unpacked_numbers;         ///< empty for none
        std::vector<std::uint32_t> unpacked_indices; ///< empty for none
    };

    void add(const Json& json);
    void set_sparse(const Json& json, Accessor& accessor);
    /// Refuses elements that don't lie in their view.
    void check_range(const Json& json, std::size_t view, std::uint64_t begin, std::uint64_t count,
                     std::size_t stride, std::size_t element, std::size_t alignment);
    /// From one element to the next.
    std::size_t stride_of(const Accessor& accessor) const;
    void read_places(Accessor& accessor);

    template<class Value>
    std::vector<Value> read(Accessor& accessor, Selection selection);
    /// @return whether a packed mesh had the numbers
    static bool read_unpacked(const Accessor& accessor, Selection selection,
                              std::vector<float>& values);
    static bool read_unpacked(const Accessor& accessor, Selection selection,
                              std::vector<std::uint32_t>& values);
    template<class Value>
    void replace(Accessor& accessor, Selection selection, std::vector<Value>& values);

    GltfBuffers& buffers;
    GltfBudget& budget;
    std::vector<Accessor> accessors;
};

} // namespace orvex::formats
