#include "TarnCore/files/ZipNames.h"

#include <array>

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include "TarnCore/base/ICU.h"

namespace tarn {
namespace {

struct Row {
    std::string_view language;
    const char* codePage;
};

/// The OEM code pages of DOS and Windows by language.
constexpr Row pages[] = {
    {"ja", "ibm-943_P15A-2003"},
    {"zh_TW", "windows-950-2000"},
    {"zh_Hant", "windows-950-2000"},
    {"zh_HK", "windows-950-2000"},
    {"zh", "gb18030"},
    {"ko", "windows-949-2000"},
    {"ru", "ibm-866"},
    {"uk", "ibm-866"},
    {"be", "ibm-866"},
    {"bg", "ibm-866"},
    {"pl", "ibm-852"},
    {"cs", "ibm-852"},
    {"sk", "ibm-852"},
    {"hu", "ibm-852"},
    {"hr", "ibm-852"},
    {"sl", "ibm-852"},
    {"ro", "ibm-852"},
    {"el", "ibm-737"},
    {"tr", "ibm-857"},
    {"he", "ibm-862"},
    {"ar", "ibm-720"},
    {"de", "ibm-850"},
    {"fr", "ibm-850"},
    {"es", "ibm-850"},
    {"it", "ibm-850"},
    {"nl", "ibm-850"},
    {"pt", "ibm-850"},
    {"da", "ibm-850"},
    {"sv", "ibm-850"},
    {"nb", "ibm-850"},
    {"fi", "ibm-850"},
    {"en_GB", "ibm-850"},
};
constexpr const char* american = "ibm-437";

struct Close {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};

}  // namespace

struct ZipNames::State {
    std::unique_ptr<UConverter, Close> converter;
};

const char* ZipNames::codePage(std::string_view language) {
    for (const Row& row : pages) {
        if (language.starts_with(row.language) &&
            (language.size() == row.language.size() || language[row.language.size()] == '_')) {
            return row.codePage;
        }
    }
    return american;
}

ZipNames::ZipNames(std::string_view language) : state_(std::make_unique<State>()) {
    for (const char* page : {codePage(language), american, "ISO-8859-1"}) {
        UErrorCode status = U_ZERO_ERROR;
        state_->converter.reset(ucnv_open(page, &status));
        if (U_SUCCESS(status)) return;
        state_->converter.reset();
    }
}

ZipNames::~ZipNames() = default;

std::string ZipNames::decode(std::string_view raw) {
    if (!state_->converter) return std::string(raw);
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString text(raw.data(), static_cast<int32_t>(raw.size()),
                                  state_->converter.get(), status);
    return U_SUCCESS(status) ? ICU::utf8(text) : std::string(raw);
}

}  // namespace tarn
