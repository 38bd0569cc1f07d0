// Any bytes as an office document, and as each kind of member in a package that is good otherwise,
// since nothing that was changed at random would have its checksum.
#include <array>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/index/readers/OfficeText.h"
#include "tests/fuzz/FuzzBytes.h"
#include "tests/fuzz/TextChecks.h"

namespace {

void append(std::string& out, std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i) out += static_cast<char>(value >> (i * 8) & 0xFF);
}

/// What the local header of a stored member and its entry in the directory have in common.
std::string facts(std::string_view name, std::string_view content) {
    std::string out;
    append(out, 20, 2);   // version
    out.append(8, '\0');  // flags, method, time and date
    append(out, tarn::crc32(0, content), 4);
    append(out, content.size(), 4);
    append(out, content.size(), 4);
    append(out, name.size(), 2);
    append(out, 0, 2);
    return out;
}

std::string package(std::string_view name, std::string_view content) {
    std::string out = "PK\3\4" + facts(name, content);
    out.append(name).append(content);
    const std::size_t directory = out.size();
    out += "PK\1\2";
    append(out, 20, 2);
    out += facts(name, content);
    out.append(14, '\0');  // comment, disk, attributes, offset
    out += name;
    const std::size_t end = out.size();
    out += "PK\5\6";
    append(out, 0, 4);
    append(out, 1, 2);
    append(out, 1, 2);
    append(out, end - directory, 4);
    append(out, directory, 4);
    append(out, 0, 2);
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(OfficeText::read(FuzzBytes(data, size)));
    checkText(OfficeText::readWordML(view(data, size)));
    for (const char* name : {"word/document.xml", "xl/worksheets/sheet1.xml", "content.xml"}) {
        const std::string bytes = package(name, view(data, size));
        const FuzzBytes file(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        checkText(OfficeText::read(file));
    }
    return 0;
}
