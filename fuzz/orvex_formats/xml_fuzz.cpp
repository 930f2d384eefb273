#include <string>

#include "fuzz/orvex_formats/format_fuzz.h"
#include "orvex_formats/private/xml_reader.h"

namespace {

orvex::formats::Draft read_elements(const orvex::formats::InputFile& file) {
    using namespace orvex::formats;
    std::string text(static_cast<std::size_t>(file.size()), ' ');
    file.read(0, text.data(), text.size());
    XmlReader xml(text, "text");
    for (auto step = xml.next(); step != XmlReader::Step::done; step = xml.next())
        if (step == XmlReader::Step::begin && xml.name() == "skip")
            xml.skip();
        else if (step == XmlReader::Step::begin && xml.text("v").size() > text.size())
            std::abort();
        else if (step == XmlReader::Step::begin && xml.find("n"))
            static_cast<void>(xml.number<float>("n"));
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return read_rubbish(read_elements, data, size);
}
