#include "TarnCore/base/Charset.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/ustring.h>

#include "TarnCore/base/Text.h"

namespace tarn::Charset {
namespace {

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

struct CloseDetector {
    void operator()(UCharsetDetector* detector) const { ucsdet_close(detector); }
};

/// Names under which programs send more than the standard of that name allows.
constexpr std::pair<std::string_view, const char*> supersets[] = {
    {"us-ascii", "windows-1252"},
    {"ascii", "windows-1252"},
    {"ansi_x3.4-1968", "windows-1252"},
    {"iso-8859-1", "windows-1252"},
    {"iso8859-1", "windows-1252"},
    {"iso_8859-1", "windows-1252"},
    {"latin1", "windows-1252"},
    {"iso-8859-9", "windows-1254"},
    {"tis-620", "windows-874-2000"},
    {"iso-8859-11", "windows-874-2000"},
    {"gb2312", "gb18030"},
    {"gb_2312-80", "gb18030"},
    {"gbk", "gb18030"},
    {"x-gbk", "gb18030"},
    {"ks_c_5601-1987", "windows-949-2000"},
    {"euc-kr", "windows-949-2000"},
    {"korean", "windows-949-2000"},
    {"shift_jis", "ibm-943_P15A-2003"},
    {"x-sjis", "ibm-943_P15A-2003"},
    {"sjis", "ibm-943_P15A-2003"},
    {"windows-31j", "ibm-943_P15A-2003"},
    {"cp932", "ibm-943_P15A-2003"},
    {"iso-8859-8-i", "ISO-8859-8"},
    {"unicode-1-1-utf-8", "UTF-8"},
    {"utf8", "UTF-8"},
};

Converter open(const std::string& name) {
    const std::string plain = Text::lowercasedASCII(Text::trimmed(name));
    // ICU takes an empty name for the encoding of the machine.
    if (plain.empty() || plain.find('\0') != plain.npos) return nullptr;
    const auto found = std::ranges::find(supersets, std::string_view(plain),
                                         &std::pair<std::string_view, const char*>::first);
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(
        ucnv_open(found == std::end(supersets) ? plain.c_str() : found->second, &status));
    return U_SUCCESS(status) ? std::move(converter) : nullptr;
}

void appendUTF16(std::string& out, const UChar* units, int32_t count) {
    const std::size_t before = out.size();
    // A unit becomes three bytes at most.
    out.resize(before + static_cast<std::size_t>(count) * 3);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data() + before, static_cast<int32_t>(out.size() - before), &length,
                       units, count, 0xFFFD, nullptr, &status);
    out.resize(before + static_cast<std::size_t>(U_SUCCESS(status) ? length : 0));
}

}  // namespace

bool append(std::string& out, std::string_view bytes, const std::string& name, std::size_t most) {
    const Converter converter = open(name);
    if (!converter) return false;
    std::array<UChar, 4096> units;
    const char* source = bytes.data();
    const char* const end = source + bytes.size();
    int32_t kept = 0;  // the first half of a pair whose other half has not come yet
    for (;;) {
        UChar* target = units.data() + kept;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, units.data() + units.size(), &source, end, nullptr,
                       true, &status);
        const bool hasMore = status == U_BUFFER_OVERFLOW_ERROR;
        auto count = static_cast<int32_t>(target - units.data());
        kept = hasMore && count > 0 && U16_IS_LEAD(units[static_cast<std::size_t>(count) - 1]);
        count -= kept;
        appendUTF16(out, units.data(), count);
        if (!hasMore || out.size() > most) return true;
        if (kept != 0) units[0] = units[static_cast<std::size_t>(count)];
    }
}

std::optional<std::string> toUTF8(std::string_view bytes, const std::string& name) {
    std::string out;
    if (!append(out, bytes, name)) return std::nullopt;
    return out;
}

std::optional<std::string> detect(std::string_view bytes) {
    constexpr std::size_t most = 8192;  // ICU looks at no more
    bytes = bytes.substr(0, most);
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, CloseDetector> detector(ucsdet_open(&status));
    if (U_FAILURE(status)) return std::nullopt;
    ucsdet_setText(detector.get(), bytes.data(), static_cast<int32_t>(bytes.size()), &status);
    const UCharsetMatch* match = ucsdet_detect(detector.get(), &status);
    if (U_FAILURE(status) || !match) return std::nullopt;
    const char* name = ucsdet_getName(match, &status);
    return U_SUCCESS(status) ? std::optional<std::string>(name) : std::nullopt;
}

std::string codePage(int number) {
    switch (number) {
        case 65001:
            return "UTF-8";
        case 1200:
            return "UTF-16LE";
        case 10000:
            return "macintosh";
        case 932:
            return "cp932";
        case 936:
        case 54936:
            return "gb18030";
        case 949:
        case 950:
            return "windows-" + std::to_string(number) + "-2000";
        case 1361:
            return "ibm-1363";
        case 20866:
            return "KOI8-R";
        case 21866:
            return "KOI8-U";
        case 28591:
            return "ISO-8859-1";
        default:
            break;
    }
    if (number == 874) return "windows-874-2000";
    if (number >= 1250 && number <= 1258) return "windows-" + std::to_string(number);
    if (number >= 28592 && number <= 28605) return "ISO-8859-" + std::to_string(number - 28590);
    if (number >= 437 && number < 1200) return "ibm-" + std::to_string(number);
    return {};
}

}  // namespace tarn::Charset
