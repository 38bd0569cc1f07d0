// Any bytes as a workbook, and as each part of one that is good otherwise.
#include <array>
#include <string>
#include <string_view>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/readers/SheetReader.h"
#include "tests/fuzz/FuzzBytes.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/StoredPackage.h"

namespace {

using namespace tarn;

void check(const std::string& bytes, int sheet) {
    const FuzzBytes file(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const auto read = SheetReader::read(file, sheet);
    if (!read) return;
    require(read->rows.size() <= TableSheet::mostRows);
    for (const auto& row : read->rows) {
        require(row.size() <= TableSheet::mostColumns);
        for (const std::string& cell : row) require(Text::isValidUTF8(cell));
    }
}

constexpr std::string_view parts[][2] = {
    {"xl/workbook.xml",
     "<w xmlns:r='r'><sheets><sheet name='A' r:id='a'/><sheet name='B' r:id='b'/></sheets></w>"},
    {"xl/_rels/workbook.xml.rels",
     "<r><Relationship Id='a' Target='a.xml'/><Relationship Id='b' Target='/b.xml'/></r>"},
    {"xl/styles.xml", "<s><cellXfs><xf numFmtId='0'/><xf numFmtId='14'/></cellXfs></s>"},
    {"xl/sharedStrings.xml", "<s><si><t>x</t></si></s>"},
    {"xl/a.xml",
     "<w><row r='1'><c r='A1' t='s'><v>0</v></c><c r='C1' s='1'><v>45</v></c></row></w>"},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    check(bytes, 0);
    check(StoredPackage().add("content.xml", bytes).bytes(), 1);
    for (const auto& changed : parts) {
        StoredPackage package;
        for (const auto& part : parts)
            package.add(part[0], part[0] == changed[0] ? std::string_view(bytes) : part[1]);
        check(package.bytes(), 0);
    }
    return 0;
}
