#include "orvex_formats/gltf/private/gltf_accessor.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "orvex_formats/private/byte_stream.h"

namespace orvex::formats {

namespace {

std::size_t size_of(GltfNumber number) {
    switch (number) {
    case GltfNumber::int8:
    case GltfNumber::uint8:
        return 1;
    case GltfNumber::int16:
    case GltfNumber::uint16:
        return 2;
    case GltfNumber::uint32:
    case GltfNumber::float32:
        return 4;
    }
    return 4;
}

GltfNumber number_type(const Json& json) {
    const std::uint64_t code = json.whole();
    if (code < 5120 || code > 5126 || code == 5124)
        json.refuse(std::to_string(code) + " is no type of numbers");
    return static_cast<GltfNumber>(code);
}

struct Shape {
    const char* name;
    std::size_t rows, columns;
};

constexpr Shape shapes[] = {{"SCALAR", 1, 1}, {"VEC2", 2, 1}, {"VEC3", 3, 1}, {"VEC4", 4, 1},
                            {"MAT2", 2, 2},   {"MAT3", 3, 3}, {"MAT4", 4, 4}};

const Shape& shape_of(const Json& json) {
    const std::string_view name = json.text();
    for (const Shape& shape : shapes)
        if (name == shape.name)
            return shape;
    json.refuse("no type of elements");
}

/// The columns of a matrix begin at every fourth byte.
std::size_t column_size(std::size_t rows, std::size_t columns, GltfNumber number) {
    const std::size_t size = rows * size_of(number);
    return columns == 1 ? size : (size + 3) / 4 * 4;
}

} // namespace

GltfAccessors::GltfAccessors(const Json& json, GltfBuffers& buffers, GltfBudget& budget)
    : buffers(buffers)
    , budget(budget) {
    const Json told = json.list("accessors");
    for (std::size_t i = 0; i < told.size(); ++i)
        add(told.at(i));
}

void GltfAccessors::add(const Json& json) {
    Accessor accessor;
    accessor.json = json;
    accessor.number = number_type(json.need("componentType"));
    const Shape& shape = shape_of(json.need("type"));
    accessor.rows = shape.rows;
    accessor.columns = shape.columns;
    accessor.count = json.need("count").whole();
    if (accessor.count == 0 || accessor.count > UINT32_MAX)
        json.need("count").refuse("not from 1 to 4294967295");
    accessor.is_normalized = json.flag("normalized", false);
    if (accessor.is_normalized &&
        (accessor.number == GltfNumber::float32 || accessor.number == GltfNumber::uint32))
        json.need("normalized").refuse("numbers of this type can't be normalized");
    accessor.view = json.index("bufferView", buffers.num_views(), "views");
    accessor.begin = json.whole("byteOffset", 0);
    if (accessor.view != Json::no_index) {
        const std::size_t column = column_size(accessor.rows, accessor.columns, accessor.number);
        check_range(json, accessor.view, accessor.begin, accessor.count, stride_of(accessor),
                    column * accessor.columns, size_of(accessor.number));
    }
    if (const Json sparse = json.object("sparse"))
        set_sparse(sparse, accessor);
    accessors.push_back(std::move(accessor));
}

std::size_t GltfAccessors::stride_of(const Accessor& accessor) const {
    const std::size_t told = buffers.stride_of_view(accessor.view);
    return told != 0
               ? told
               : column_size(accessor.rows, accessor.columns, accessor.number) * accessor.columns;
}

void GltfAccessors::check_range(const Json& json, std::size_t view, std::uint64_t begin,
                                std::uint64_t count, std::size_t stride, std::size_t element,
                                std::size_t alignment) {
    if (stride < element)
        json.refuse("its elements have " + std::to_string(element) +
                    " bytes, and the stride of its view is " + std::to_string(stride));
    if (begin % alignment != 0)
        json.refuse("byteOffset isn't a multiple of " + std::to_string(alignment));
    // The count is below 2^32 and a stride below 2^8, so that the product fits.
    const std::uint64_t needed = (count - 1) * stride + element;
    const std::uint64_t size = buffers.size_of_view(view);
    if (begin > size || needed > size - begin)
        json.refuse(std::to_string(count) + " elements lie past the end of view " +
                    std::to_string(view) + ", which has " + std::to_string(size) + " bytes");
}

void GltfAccessors::set_sparse(const Json& json, Accessor& accessor) {
    Sparse& sparse = accessor.sparse;
    sparse.json = json;
    sparse.count = json.need("count").whole();
    if (sparse.count == 0 || sparse.count > accessor.count)
        json.need("count").refuse("not from 1 to the accessor's " + std::to_string(accessor.count));
    const Json places = json.need("indices"), values = json.need("values");
    sparse.places_view = places.need("bufferView").as_index(buffers.num_views(), "views");
    sparse.places_begin = places.whole("byteOffset", 0);
    sparse.place_number = number_type(places.need("componentType"));
    if (sparse.place_number != GltfNumber::uint8 && sparse.place_number != GltfNumber::uint16 &&
        sparse.place_number != GltfNumber::uint32)
        places.need("componentType").refuse("no type of indices");
    const std::size_t place_size = size_of(sparse.place_number);
    check_range(places, sparse.places_view, sparse.places_begin, sparse.count, place_size,
                place_size, place_size);
    sparse.values_view = values.need("bufferView").as_index(buffers.num_views(), "views");
    sparse.values_begin = values.whole("byteOffset", 0);
    const std::size_t element =
        column_size(accessor.rows, accessor.columns, accessor.number) * accessor.columns;
    check_range(values, sparse.values_view, sparse.values_begin, sparse.count, element, element,
                size_of(accessor.number));
}

// ------------------------------------------------------------------------------------ reading

namespace {

/// Where elements lie, and how.
struct Elements {
    const unsigned char* bytes = nullptr;
    std::size_t stride = 0;
    std::size_t rows = 1, columns = 1, column_size = 0;
    bool is_normalized = false;
};

template<class Number, class Value>
Value converted(Number number, bool is_normalized) {
    if constexpr (std::is_same_v<Value, float> && !std::is_same_v<Number, float>) {
        if (is_normalized)
            return std::max(static_cast<float>(number) /
                                static_cast<float>(std::numeric_limits<Number>::max()),
                            -1.0f);
    }
    return static_cast<Value>(number);
}

template<class Number, class Value>
void copy_elements(const Elements& from, std::size_t count, const std::uint32_t* selection,
                   Value* to) {
    // Most lie side by side and need no more than a copy.
    const std::size_t size = from.rows * from.columns * sizeof(Number);
    if (std::is_same_v<Number, Value> && !selection && from.stride == size &&
        std::endian::native == std::endian::little) {
        std::memcpy(to, from.bytes, count * size);
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* const element =
            from.bytes + (selection ? selection[i] : i) * from.stride;
        for (std::size_t column = 0; column < from.columns; ++column)
            for (std::size_t row = 0; row < from.rows; ++row)
                *to++ = converted<Number, Value>(
                    number_at<Number>(element + column * from.column_size + row * sizeof(Number)),
                    from.is_normalized);
    }
}

/// @param selection  null for all
template<class Value>
void copy_elements(GltfNumber number, const Elements& from, std::size_t count,
                   const std::uint32_t* selection, Value* to) {
    switch (number) {
    case GltfNumber::int8:
        copy_elements<std::int8_t>(from, count, selection, to);
        break;
    case GltfNumber::uint8:
        copy_elements<std::uint8_t>(from, count, selection, to);
        break;
    case GltfNumber::int16:
        copy_elements<std::int16_t>(from, count, selection, to);
        break;
    case GltfNumber::uint16:
        copy_elements<std::uint16_t>(from, count, selection, to);
        break;
    case GltfNumber::uint32:
        copy_elements<std::uint32_t>(from, count, selection, to);
        break;
    case GltfNumber::float32:
        if constexpr (std::is_same_v<Value, float>)
            copy_elements<float>(from, count, selection, to);
        break;
    }
}

} // namespace

void GltfAccessors::read_places(Accessor& accessor) {
    Sparse& sparse = accessor.sparse;
    if (sparse.is_read)
        return;
    const auto count = static_cast<std::size_t>(sparse.count);
    budget.take(sparse.count, sizeof(std::uint32_t), sparse.json);
    sparse.places.resize(count);
    Elements from;
    from.bytes = buffers.bytes_of_view(sparse.places_view).data() + sparse.places_begin;
    from.stride = from.column_size = size_of(sparse.place_number);
    copy_elements(sparse.place_number, from, count, nullptr, sparse.places.data());
    for (std::size_t i = 0; i < count; ++i)
        if (sparse.places[i] >= accessor.count ||
            (i > 0 && sparse.places[i] <= sparse.places[i - 1]))
            sparse.json.refuse("index " + std::to_string(sparse.places[i]) + " in place " +
                               std::to_string(i) +
                               " is beyond the accessor, or not above the one before");
    sparse.is_read = true;
}

template<class Value>
void GltfAccessors::replace(Accessor& accessor, Selection selection, std::vector<Value>& values) {
    read_places(accessor);
    const Sparse& sparse = accessor.sparse;
    Elements from;
    from.rows = accessor.rows;
    from.columns = accessor.columns;
    from.column_size = column_size(accessor.rows, accessor.columns, accessor.number);
    from.stride = from.column_size * from.columns;
    from.is_normalized = accessor.is_normalized;
    from.bytes = buffers.bytes_of_view(sparse.values_view).data() + sparse.values_begin;
    const std::size_t width = accessor.rows * accessor.columns;
    const auto put = [&](std::size_t source, std::size_t place) {
        const auto at = static_cast<std::uint32_t>(source);
        copy_elements(accessor.number, from, 1, &at, values.data() + place * width);
    };
    if (!selection) {
        for (std::size_t i = 0; i < sparse.places.size(); ++i)
            put(i, sparse.places[i]);
        return;
    }
    for (std::size_t i = 0; i < selection->size(); ++i) {
        const auto found =
            std::lower_bound(sparse.places.begin(), sparse.places.end(), (*selection)[i]);
        if (found != sparse.places.end() && *found == (*selection)[i])
            put(static_cast<std::size_t>(found - sparse.places.begin()), i);
    }
}

template<class Value>
std::vector<Value> GltfAccessors::read(Accessor& accessor, Selection selection) {
    const std::size_t count =
        selection ? selection->size() : static_cast<std::size_t>(accessor.count);
    const std::size_t width = accessor.rows * accessor.columns;
    budget.take(count, width * sizeof(Value), accessor.json);
    if (accessor.view != Json::no_index)
        buffers.bytes_of_view(accessor.view); // before room is made for them
    std::vector<Value> values(count * width);
    if (read_unpacked(accessor, selection, values))
        return values;
    if (accessor.view != Json::no_index) {
        Elements from;
        from.rows = accessor.rows;
        from.columns = accessor.columns;
        from.column_size = column_size(accessor.rows, accessor.columns, accessor.number);
        from.stride = stride_of(accessor);
        from.is_normalized = accessor.is_normalized;
        from.bytes = buffers.bytes_of_view(accessor.view).data() + accessor.begin;
        copy_elements(accessor.number, from, count, selection ? selection->data() : nullptr,
                      values.data());
    }
    if (accessor.sparse.count != 0)
        replace(accessor, selection, values);
    return values;
}

// ------------------------------------------------------------------------------------ unpacked

void GltfAccessors::unpack_numbers(std::size_t i, const std::vector<float>& numbers,
                                   std::size_t told_width, const Json& by) {
    Accessor& accessor = accessors[i];
    if (told_width != width(i) || numbers.size() != accessor.count * told_width)
        by.refuse("accessor " + std::to_string(i) + " has " + std::to_string(accessor.count) +
                  " elements of " + std::to_string(width(i)) + ", and the packed mesh " +
                  std::to_string(numbers.size() / told_width) + " of " +
                  std::to_string(told_width));
    accessor.unpacked_numbers = numbers;
}

void GltfAccessors::unpack_indices(std::size_t i, const std::vector<std::uint32_t>& indices,
                                   const Json& by) {
    Accessor& accessor = accessors[i];
    if (indices.size() != accessor.count)
        by.refuse("accessor " + std::to_string(i) + " has " + std::to_string(accessor.count) +
                  " indices, and the packed mesh " + std::to_string(indices.size()));
    accessor.unpacked_indices = indices;
}

namespace {

/// The divisor of normalized numbers, which are stored as whole ones.
float largest_of(GltfNumber number) {
    return number == GltfNumber::int8     ? 127.0f
           : number == GltfNumber::uint8  ? 255.0f
           : number == GltfNumber::int16  ? 32767.0f
           : number == GltfNumber::uint16 ? 65535.0f
                                          : 1.0f;
}

} // namespace

bool GltfAccessors::read_unpacked(const Accessor& accessor, Selection selection,
                                  std::vector<float>& values) {
    const std::vector<float>& numbers = accessor.unpacked_numbers;
    if (numbers.empty())
        return false;
    const std::size_t width = accessor.rows * accessor.columns;
    const float divisor = accessor.is_normalized ? largest_of(accessor.number) : 1.0f;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t place = selection ? (*selection)[i / width] * width + i % width : i;
        values[i] = numbers[place] / divisor;
        if (accessor.is_normalized)
            values[i] = std::max(values[i], -1.0f);
    }
    return true;
}

bool GltfAccessors::read_unpacked(const Accessor& accessor, Selection selection,
                                  std::vector<std::uint32_t>& values) {
    if (accessor.unpacked_indices.empty() || selection)
        return false;
    values = accessor.unpacked_indices;
    return true;
}

// ------------------------------------------------------------------------------------ all of them

std::vector<float> GltfAccessors::floats(std::size_t i, Selection selection) {
    return read<float>(accessors[i], selection);
}

std::vector<std::uint32_t> GltfAccessors::indices(std::size_t i) {
    Accessor& accessor = accessors[i];
    const bool is_whole = accessor.number == GltfNumber::uint8 ||
                          accessor.number == GltfNumber::uint16 ||
                          accessor.number == GltfNumber::uint32;
    if (!is_whole || accessor.is_normalized || width(i) != 1)
        accessor.json.refuse("used as indices, and of a type that is none of theirs");
    return read<std::uint32_t>(accessor, nullptr);
}

} // namespace orvex::formats
