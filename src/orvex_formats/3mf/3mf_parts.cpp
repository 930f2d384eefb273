#include "orvex_formats/3mf/private/3mf_parts.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "orvex_formats/private/archive.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/words.h"
#include "orvex_formats/private/xml_reader.h"

namespace orvex::formats {

namespace {

constexpr std::uint32_t most_materials = 65536;
constexpr const char* usual_root = "3D/3dmodel.model";

std::string without_slash(const std::string& path) {
    return path.substr(0, 1) == "/" ? path.substr(1) : path;
}

bool ends_in(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

class PackageReader {
public:
    explicit PackageReader(const InputFile& file)
        : archive(file)
        , text_left(most_inflated(file.size()))
        , picture_left(most_inflated(file.size())) {}

    Package3mf read() {
        add_part(find_root());
        for (std::size_t i = 0; i < paths.size(); ++i) // which grows meanwhile
            read_part(i);
        resolve(package.items);
        for (Object3mf& object : package.objects)
            resolve(object.components);
        return std::move(package);
    }

private:
    // --- Parts

    std::string read_text(const std::string& path) {
        const ZipArchive::Entry* const entry = archive.find(path);
        if (!entry)
            refuse("the package has no part %s", in_words(path).c_str());
        if (entry->size > text_left)
            refuse("%s grows beyond %llu bytes, more than any model", in_words(path).c_str(),
                   static_cast<unsigned long long>(text_left));
        text_left -= entry->size;
        const std::vector<unsigned char> bytes = archive.read(*entry);
        return {bytes.begin(), bytes.end()};
    }

    std::string find_root() {
        const std::string relations = "_rels/.rels";
        if (archive.find(relations)) {
            const std::string text = read_text(relations);
            XmlReader xml(text, relations);
            for (auto step = xml.next(); step != XmlReader::Step::done; step = xml.next())
                if (step == XmlReader::Step::begin && xml.name() == "Relationship" &&
                    ends_in(xml.text("Type"), "/3dmodel"))
                    return without_slash(xml.text("Target"));
        }
        if (!archive.find(usual_root))
            refuse_format("no 3MF file: the archive has no model part");
        return usual_root;
    }

    /// @return its place
    std::size_t add_part(const std::string& path) {
        const auto [place, is_new] = parts.emplace(path, paths.size());
        if (is_new)
            paths.push_back(path);
        return place->second;
    }

    void read_part(std::size_t number) {
        const std::string path = paths[number], text = read_text(path);
        part = number;
        package.groups.emplace_back();
        pictures.clear();
        XmlReader xml(text, path);
        for (auto step = xml.next(); step != XmlReader::Step::done; step = xml.next())
            if (step == XmlReader::Step::begin)
                read_element(xml);
    }

    void read_element(XmlReader& xml) {
        const std::string_view name = xml.name();
        if (name == "model")
            tell_unit(xml.text("unit"));
        else if (name == "object")
            read_object(xml);
        else if (name == "basematerials")
            read_materials(xml);
        else if (name == "colorgroup")
            read_colors(xml);
        else if (name == "item" && part == 0)
            package.items.push_back(use_of(xml));
        else if (name == "texture2d")
            pictures[xml.number<std::uint32_t>("id")] = without_slash(xml.text("path"));
        else if (name == "texture2dgroup")
            read_places(xml);
        else if (name == "compositematerials" || name == "multiproperties")
            leave_out(name, xml);
    }

    void note(const std::string& text) {
        if (std::find(package.notes.begin(), package.notes.end(), text) == package.notes.end())
            package.notes.push_back(text);
    }

    void leave_out(std::string_view name, XmlReader& xml) {
        note("elements that aren't read were left out: " + std::string(name));
        xml.skip();
    }

    void tell_unit(const std::string& unit) {
        if (!unit.empty() && unit != "millimeter" && part == 0)
            note("numbers are as the file has them; its unit is the " + in_words(unit));
    }

    // --- Uses

    Use3mf use_of(const XmlReader& xml) {
        Use3mf use;
        use.id = xml.number<std::uint32_t>("objectid");
        const std::string path = xml.text("path");
        use.part = path.empty() ? paths[part] : without_slash(path);
        add_part(use.part);
        if (const std::string_view* const transform = xml.find("transform")) {
            Words words(*transform);
            for (double& number : use.placement)
                if (!words.take_number(number))
                    xml.refuse_here("a transform without twelve numbers");
        }
        return use;
    }

    void resolve(std::vector<Use3mf>& uses) const {
        for (Use3mf& use : uses) {
            const auto found = objects.find({parts.find(use.part)->second, use.id});
            if (found == objects.end())
                refuse("%s has no object %u", in_words(use.part).c_str(), use.id);
            use.object = found->second;
            use.part.clear();
        }
    }

    // --- Objects

    static std::uint32_t number_or(const XmlReader& xml, const char* attribute,
                                   std::uint32_t instead) {
        return xml.find(attribute) ? xml.number<std::uint32_t>(attribute) : instead;
    }

    void read_object(XmlReader& xml) {
        Object3mf object;
        object.name = xml.text("name");
        object.part = part;
        const auto id = xml.number<std::uint32_t>("id");
        const std::uint32_t entry = number_or(xml, "pindex", 0);
        const Look3mf look{number_or(xml, "pid", 0), {entry, entry, entry}};
        while (xml.next() == XmlReader::Step::begin || xml.name() != "object")
            if (xml.name() == "beamlattice")
                leave_out(xml.name(), xml);
            else
                read_row(xml, look, object);
        for (const Triangle& triangle : object.triangles)
            for (const std::uint32_t corner : triangle)
                if (corner >= object.positions.size())
                    refuse("object %u of %s has vertex %u of %zu", id,
                           in_words(paths[part]).c_str(), corner, object.positions.size());
        if (!objects.emplace(std::pair(part, id), package.objects.size()).second)
            refuse("%s has two objects %u", in_words(paths[part]).c_str(), id);
        package.objects.push_back(std::move(object));
    }

    void read_row(const XmlReader& xml, const Look3mf& look, Object3mf& object) {
        if (!xml.is_at_begin())
            return;
        if (xml.name() == "vertex")
            object.positions.emplace_back(xml.number<float>("x"), xml.number<float>("y"),
                                          xml.number<float>("z"));
        else if (xml.name() == "triangle") {
            object.triangles.push_back({xml.number<std::uint32_t>("v1"),
                                        xml.number<std::uint32_t>("v2"),
                                        xml.number<std::uint32_t>("v3")});
            object.looks.push_back(look_of(xml, look));
        } else if (xml.name() == "component")
            object.components.push_back(use_of(xml));
    }

    /// A triangle has the look of its object, but for what it says itself.
    static Look3mf look_of(const XmlReader& xml, const Look3mf& of_object) {
        if (!xml.find("p1"))
            return of_object;
        const auto first = xml.number<std::uint32_t>("p1");
        return {number_or(xml, "pid", of_object.group),
                {first, number_or(xml, "p2", first), number_or(xml, "p3", first)}};
    }

    // --- Looks

    static vec4 color_of(const XmlReader& xml, const char* attribute) {
        const std::string text = xml.text(attribute);
        std::uint32_t bits = 0;
        const char* const end = text.data() + text.size();
        const bool has_alpha = text.size() == 9;
        if ((text.size() != 7 && !has_alpha) || text[0] != '#' ||
            std::from_chars(text.data() + 1, end, bits, 16).ptr != end)
            xml.refuse_here("a colour that isn't written as #RRGGBB or #RRGGBBAA");
        if (!has_alpha)
            bits = bits << 8 | 255u;
        const auto fraction = [&](unsigned shift) {
            return static_cast<float>(bits >> shift & 255u) / 255.0f;
        };
        return vec4(fraction(24), fraction(16), fraction(8), fraction(0));
    }

    void read_materials(XmlReader& xml) {
        Group3mf group;
        group.first_material = package.materials.size();
        const auto id = xml.number<std::uint32_t>("id");
        while (xml.next() == XmlReader::Step::begin || xml.name() != "basematerials") {
            if (!xml.is_at_begin() || xml.name() != "base")
                continue;
            if (package.materials.size() >= most_materials)
                xml.refuse_here("more materials than any that are read");
            const vec4 color = color_of(xml, "displaycolor");
            SurfaceMaterial material;
            material.name = xml.text("name");
            material.diffuse = vec4(color.x, color.y, color.z, 1.0f);
            material.opacity = color.w;
            package.materials.push_back(std::move(material));
            ++group.num_materials;
        }
        package.groups[part].emplace(id, std::move(group));
    }

    void read_colors(XmlReader& xml) {
        Group3mf group;
        const auto id = xml.number<std::uint32_t>("id");
        while (xml.next() == XmlReader::Step::begin || xml.name() != "colorgroup")
            if (xml.is_at_begin() && xml.name() == "color")
                group.colors.push_back(color_of(xml, "color"));
        package.groups[part].emplace(id, std::move(group));
    }

    // --- Pictures

    /// Places on a picture are a material of their own.
    void read_places(XmlReader& xml) {
        if (package.materials.size() >= most_materials)
            xml.refuse_here("more materials than any that are read");
        Group3mf group;
        group.first_material = package.materials.size();
        group.num_materials = 1;
        const auto id = xml.number<std::uint32_t>("id");
        const auto picture = pictures.find(xml.number<std::uint32_t>("texid"));
        if (picture == pictures.end())
            xml.refuse_here("a picture that the part doesn't have");
        SurfaceMaterial material;
        material.name = picture->second;
        material.diffuse = vec4(1.0f, 1.0f, 1.0f, 1.0f);
        if (has_picture(picture->second))
            material.textures.push_back(picture->second);
        package.materials.push_back(std::move(material));
        while (xml.next() == XmlReader::Step::begin || xml.name() != "texture2dgroup")
            if (xml.is_at_begin() && xml.name() == "tex2coord") {
                vec2 uv;
                group.uvs.push_back(uv.set(xml.number<float>("u"), xml.number<float>("v")));
            }
        package.groups[part].emplace(id, std::move(group));
    }

    /// Reads a picture, once. @return whether the package has it
    bool has_picture(const std::string& path) {
        const auto [known, is_new] = known_pictures.emplace(path, false);
        if (is_new)
            known->second = read_picture(path);
        return known->second;
    }

    bool read_picture(const std::string& path) {
        const ZipArchive::Entry* const entry = archive.find(path);
        if (!entry || entry->size == 0) {
            note("a picture that the package doesn't have was left out: " + in_words(path));
            return false;
        }
        if (entry->size > picture_left)
            refuse("%s grows beyond %llu bytes, more than any picture", in_words(path).c_str(),
                   static_cast<unsigned long long>(picture_left));
        picture_left -= entry->size;
        package.pictures.push_back({path, archive.read(*entry)});
        return true;
    }

    ZipArchive archive;
    std::uint64_t text_left, picture_left;
    Package3mf package;
    std::map<std::string, std::size_t> parts;
    std::vector<std::string> paths;                                       ///< of the parts
    std::map<std::pair<std::size_t, std::uint32_t>, std::size_t> objects; ///< by part and id
    std::size_t part = 0;                                                 ///< that is being read
    std::map<std::uint32_t, std::string> pictures; ///< of that part: paths by their ids
    std::map<std::string, bool> known_pictures;    ///< by path: whether there is one
};

} // namespace

Package3mf read_3mf_package(const InputFile& file) {
    if (!is_zip(file))
        refuse_format("no 3MF file: it is no archive");
    return PackageReader(file).read();
}

} // namespace orvex::formats
