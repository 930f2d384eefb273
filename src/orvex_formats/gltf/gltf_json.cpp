// The only file that knows the parser. Its own tree is walked by steps only; here each value gets a
// place in one list, behind its elder relatives, so that a list's values stand side by side and
// each value knows its parent.

#include "orvex_formats/gltf/private/gltf_json.h"

#include <cmath>
#include <cstdio>
#include <deque>
#include <limits>
#include <utility>
#include <vector>

#include <simdjson.h>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

enum class Kind : std::uint32_t { object, list, text, number, flag, null };

struct Value {
    const char* key = nullptr; ///< null in lists
    std::uint32_t key_size = 0;
    std::uint32_t parent = 0;
    union {
        double number = 0.0;
        const char* text;
        std::uint32_t first; ///< of an object or a list: where its values begin
    };
    std::uint32_t count = 0; ///< of an object or a list: its values; of a text: its bytes
    Kind kind = Kind::null;
};

constexpr double largest_whole = 9007199254740991.0; // the last one that differs from the next

} // namespace

struct Json::Store {
    simdjson::dom::document document; ///< has the texts
    std::vector<Value> values;
};

namespace {

/// A value as a type that it is known to have.
template<class Type>
Type taken(simdjson::dom::element element) {
    Type value{};
    if (element.get(value) != simdjson::SUCCESS)
        refuse("the JSON changed while it was read");
    return value;
}

/// Fills the list of values.
class Planter {
public:
    explicit Planter(std::vector<Value>& values)
        : values(values) {}

    void run(simdjson::dom::element root) {
        add(root, 0, {});
        for (; !open.empty(); open.pop_front())
            add_values_of(open.front());
    }

private:
    void add(simdjson::dom::element element, std::size_t parent, std::string_view key) {
        Value value;
        value.key = key.data();
        value.key_size = static_cast<std::uint32_t>(key.size());
        value.parent = static_cast<std::uint32_t>(parent);
        set(value, element);
        if (value.kind == Kind::object || value.kind == Kind::list)
            open.push_back({element, values.size()});
        values.push_back(value);
    }

    static void set(Value& value, simdjson::dom::element element) {
        using simdjson::dom::element_type;
        switch (element.type()) {
        case element_type::ARRAY:
            value.kind = Kind::list;
            break;
        case element_type::OBJECT:
            value.kind = Kind::object;
            break;
        case element_type::STRING: {
            value.kind = Kind::text;
            const auto text = taken<std::string_view>(element);
            value.text = text.data();
            value.count = static_cast<std::uint32_t>(text.size());
            break;
        }
        case element_type::BOOL:
            value.kind = Kind::flag;
            value.number = taken<bool>(element) ? 1.0 : 0.0;
            break;
        case element_type::INT64:
        case element_type::UINT64:
        case element_type::DOUBLE:
            value.kind = Kind::number;
            value.number = taken<double>(element);
            break;
        case element_type::NULL_VALUE:
            break;
        }
    }

    /// A list or an object whose values aren't there yet.
    struct Open {
        simdjson::dom::element element;
        std::size_t place;
    };

    void add_values_of(const Open& told) {
        const std::size_t first = values.size();
        if (values[told.place].kind == Kind::object)
            for (const auto field : taken<simdjson::dom::object>(told.element))
                add(field.value, told.place, field.key);
        else
            for (const simdjson::dom::element child : taken<simdjson::dom::array>(told.element))
                add(child, told.place, {});
        values[told.place].first = static_cast<std::uint32_t>(first);
        values[told.place].count = static_cast<std::uint32_t>(values.size() - first);
    }

    std::vector<Value>& values;
    std::deque<Open> open;
};

/// As the parser calls its errors; those of a text's content come first.
[[noreturn]] void refuse_error(simdjson::error_code error) {
    switch (error) {
    case simdjson::MEMALLOC:
        throw std::bad_alloc();
    case simdjson::UTF8_ERROR:
        refuse("the JSON isn't UTF-8");
    case simdjson::DEPTH_ERROR:
        refuse("the JSON is nested too deep");
    case simdjson::NUMBER_ERROR:
        refuse("the JSON has a number that is none, or none that fits");
    case simdjson::STRING_ERROR:
        refuse("the JSON has a text with an escape that is none");
    case simdjson::UNESCAPED_CHARS:
        refuse("the JSON has a control character within a text");
    case simdjson::UNCLOSED_STRING:
        refuse("the JSON ends within a text");
    case simdjson::EMPTY:
        refuse("the JSON is empty");
    default:
        refuse("the JSON breaks the rules of JSON: %s", simdjson::error_message(error));
    }
}

/// Ends the text once all of it is in the document.
simdjson::dom::element parse(std::string& text, std::size_t size,
                             simdjson::dom::document& document) {
    simdjson::dom::parser parser;
    simdjson::dom::element root;
    if (const auto error = parser.parse_into_document(document, text.data(), size, false).get(root))
        refuse_error(error);
    std::string().swap(text);
    return root;
}

} // namespace

JsonTree::JsonTree(std::string&& text)
    : store(std::make_unique<Json::Store>()) {
    static_assert(padding >= simdjson::SIMDJSON_PADDING);
    if (text.size() > longest_text)
        refuse("the JSON has %zu bytes; more than %zu aren't read", text.size(), longest_text);
    const std::size_t size = text.size();
    text.append(padding, ' ');
    Planter(store->values).run(parse(text, size, store->document));
    store->document.tape.reset(); // none of the parser's own tree is asked any more
}

JsonTree::~JsonTree() = default;

Json JsonTree::root() const {
    return {store.get(), 0};
}

// ------------------------------------------------------------------------------------ places

std::string Json::path() const {
    if (!store || place == 0)
        return "the JSON";
    constexpr std::size_t longest_path = 200;
    std::string path;
    for (std::uint32_t at = place; at != 0 && path.size() < longest_path;) {
        const Value& value = store->values[at];
        const Value& parent = store->values[value.parent];
        if (parent.kind == Kind::list)
            path.insert(0, "[" + std::to_string(at - parent.first) + "]");
        else
            path.insert(0, (value.parent == 0 ? "" : ".") +
                               in_words(std::string(value.key, value.key_size)));
        at = value.parent;
    }
    return path;
}

void Json::refuse(const std::string& what) const {
    throw Refusal(path() + ": " + what);
}

void Json::refuse_kind(const char* kind) const {
    refuse(std::string("no ") + kind);
}

// ------------------------------------------------------------------------------------ lists

std::size_t Json::size() const {
    if (!store)
        return 0;
    const Value& value = store->values[place];
    return value.kind == Kind::list || value.kind == Kind::object ? value.count : 0;
}

Json Json::at(std::size_t i) const {
    return {store, store->values[place].first + static_cast<std::uint32_t>(i)};
}

std::string_view Json::key() const {
    const Value& value = store->values[place];
    return value.key ? std::string_view(value.key, value.key_size) : std::string_view();
}

bool Json::is_object() const {
    return store && store->values[place].kind == Kind::object;
}

bool Json::is_text() const {
    return store && store->values[place].kind == Kind::text;
}

Json Json::find(std::string_view name) const {
    if (is_object())
        for (std::size_t i = 0; i < size(); ++i)
            if (at(i).key() == name)
                return at(i);
    return {};
}

Json Json::need(std::string_view name) const {
    const Json found = find(name);
    if (!found)
        refuse("\"" + std::string(name) + "\" is missing");
    return found;
}

Json Json::list(std::string_view name) const {
    const Json found = find(name);
    if (found && store->values[found.place].kind != Kind::list)
        found.refuse_kind("list");
    return found;
}

Json Json::object(std::string_view name) const {
    const Json found = find(name);
    if (found && !found.is_object())
        found.refuse_kind("object");
    return found;
}

void Json::need_size(std::size_t wanted) const {
    if (size() != wanted || store->values[place].kind != Kind::list)
        refuse("not " + std::to_string(wanted) + " values, but " + std::to_string(size()));
}

// ------------------------------------------------------------------------------------ values

double Json::number() const {
    if (store->values[place].kind != Kind::number)
        refuse_kind("number");
    return store->values[place].number;
}

std::uint64_t Json::whole() const {
    const double told = number();
    if (!(told >= 0.0) || told > largest_whole || told != std::floor(told)) {
        char text[64] = "";
        static_cast<void>(std::snprintf(text, sizeof text, "%.17g", told));
        refuse(std::string(text) + " is no whole number from 0 to 9007199254740991");
    }
    return static_cast<std::uint64_t>(told);
}

std::string_view Json::text() const {
    const Value& value = store->values[place];
    if (value.kind != Kind::text)
        refuse_kind("text");
    return {value.text, value.count};
}

bool Json::flag() const {
    if (store->values[place].kind != Kind::flag)
        refuse("neither true nor false");
    return store->values[place].number != 0.0;
}

double Json::number(std::string_view name, double otherwise) const {
    const Json found = find(name);
    return found ? found.number() : otherwise;
}

float Json::real(std::string_view name, float otherwise) const {
    const double told = number(name, static_cast<double>(otherwise));
    if (!(std::abs(told) <= static_cast<double>(std::numeric_limits<float>::max())))
        need(name).refuse("too large");
    return static_cast<float>(told);
}

std::uint64_t Json::whole(std::string_view name, std::uint64_t otherwise) const {
    const Json found = find(name);
    return found ? found.whole() : otherwise;
}

std::string_view Json::text(std::string_view name, std::string_view otherwise) const {
    const Json found = find(name);
    return found ? found.text() : otherwise;
}

bool Json::flag(std::string_view name, bool otherwise) const {
    const Json found = find(name);
    return found ? found.flag() : otherwise;
}

std::size_t Json::index(std::string_view name, std::size_t size, const char* of_what,
                        std::size_t otherwise) const {
    const Json found = find(name);
    return found ? found.as_index(size, of_what) : otherwise;
}

std::size_t Json::as_index(std::size_t size, const char* of_what) const {
    const std::uint64_t told = whole();
    if (told >= size)
        refuse(std::to_string(told) + " is beyond the " + std::to_string(size) + " " + of_what);
    return static_cast<std::size_t>(told);
}

} // namespace orvex::formats
