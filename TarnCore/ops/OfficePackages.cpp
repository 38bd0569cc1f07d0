#include "TarnCore/ops/OfficePackages.h"

namespace tarn::OfficePackages {
namespace {

constexpr std::string_view declaration =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)"
    "\n";

// Namespaces and types are named by these beginnings all over the standard.
constexpr std::string_view office = "http://schemas.openxmlformats.org/officeDocument/2006/";
constexpr std::string_view package = "http://schemas.openxmlformats.org/package/2006/";
constexpr std::string_view media = "application/vnd.openxmlformats-officedocument.";

std::string xml(std::string_view body) { return std::string(declaration) + std::string(body); }

struct Override {
    std::string_view part;
    std::string_view type;  ///< Behind `media`.
};

std::string contentTypes(const std::vector<Override>& overrides) {
    std::string out = std::string(R"(<Types xmlns=")") + std::string(package) +
                      R"(content-types"><Default Extension="rels" ContentType=")"
                      R"(application/vnd.openxmlformats-package.relationships+xml"/>)"
                      R"(<Default Extension="xml" ContentType="application/xml"/>)";
    for (const Override& one : overrides) {
        out += R"(<Override PartName=")" + std::string(one.part) + R"(" ContentType=")" +
               std::string(media) + std::string(one.type) + R"("/>)";
    }
    return xml(out + "</Types>");
}

struct Relation {
    std::string_view id;
    std::string_view type;  ///< Behind `office` + "relationships/".
    std::string_view target;
};

std::string relations(const std::vector<Relation>& relations) {
    std::string out =
        std::string(R"(<Relationships xmlns=")") + std::string(package) + R"(relationships">)";
    for (const Relation& one : relations) {
        out += R"(<Relationship Id=")" + std::string(one.id) + R"(" Type=")" + std::string(office) +
               "relationships/" + std::string(one.type) + R"(" Target=")" +
               std::string(one.target) + R"("/>)";
    }
    return xml(out + "</Relationships>");
}

Parts document() {
    return {
        {"[Content_Types].xml",
         contentTypes({{"/word/document.xml", "wordprocessingml.document.main+xml"}})},
        {"_rels/.rels", relations({{"rId1", "officeDocument", "word/document.xml"}})},
        {"word/document.xml",
         xml(R"(<w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main">)"
             R"(<w:body><w:p/><w:sectPr><w:pgSz w:w="11906" w:h="16838"/>)"
             R"(<w:pgMar w:top="1440" w:right="1440" w:bottom="1440" w:left="1440" )"
             R"(w:header="708" w:footer="708" w:gutter="0"/></w:sectPr></w:body></w:document>)")},
    };
}

Parts workbook() {
    return {
        {"[Content_Types].xml",
         contentTypes({{"/xl/workbook.xml", "spreadsheetml.sheet.main+xml"},
                       {"/xl/worksheets/sheet1.xml", "spreadsheetml.worksheet+xml"}})},
        {"_rels/.rels", relations({{"rId1", "officeDocument", "xl/workbook.xml"}})},
        {"xl/workbook.xml",
         xml(R"(<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" )"
             R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
             R"(<sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/></sheets></workbook>)")},
        {"xl/_rels/workbook.xml.rels", relations({{"rId1", "worksheet", "worksheets/sheet1.xml"}})},
        {"xl/worksheets/sheet1.xml",
         xml(R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
             R"(<sheetData/></worksheet>)")},
    };
}

// ---- A presentation ----

constexpr std::string_view presentationNames =
    R"( xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main")"
    R"( xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships")"
    R"( xmlns:p="http://schemas.openxmlformats.org/presentationml/2006/main")";

/// An empty tree of shapes, as every slide, layout and master has one.
constexpr std::string_view emptySlide =
    R"(<p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/>)"
    R"(</p:nvGrpSpPr><p:grpSpPr><a:xfrm><a:off x="0" y="0"/><a:ext cx="0" cy="0"/>)"
    R"(<a:chOff x="0" y="0"/><a:chExt cx="0" cy="0"/></a:xfrm></p:grpSpPr></p:spTree></p:cSld>)";
constexpr std::string_view masterColours = R"(<p:clrMapOvr><a:masterClrMapping/></p:clrMapOvr>)";

std::string slidePart(std::string_view element, std::string_view attributes,
                      std::string_view afterShapes) {
    return xml("<p:" + std::string(element) + std::string(presentationNames) +
               std::string(attributes) + ">" + std::string(emptySlide) + std::string(afterShapes) +
               "</p:" + std::string(element) + ">");
}

/// Three equal entries of a list of styles, which a theme must have.
std::string three(std::string_view element, std::string_view entry) {
    std::string out = "<a:" + std::string(element) + ">";
    for (int i = 0; i < 3; ++i) out += entry;
    return out + "</a:" + std::string(element) + ">";
}

std::string theme() {
    const struct {
        std::string_view name, value;
    } colours[] = {{"dk2", "44546A"},     {"lt2", "E7E6E6"},     {"accent1", "4472C4"},
                   {"accent2", "ED7D31"}, {"accent3", "A5A5A5"}, {"accent4", "FFC000"},
                   {"accent5", "5B9BD5"}, {"accent6", "70AD47"}, {"hlink", "0563C1"},
                   {"folHlink", "954F72"}};
    std::string out = R"(<a:theme xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" )"
                      R"(name="Office Theme"><a:themeElements><a:clrScheme name="Office">)"
                      R"(<a:dk1><a:sysClr val="windowText" lastClr="000000"/></a:dk1>)"
                      R"(<a:lt1><a:sysClr val="window" lastClr="FFFFFF"/></a:lt1>)";
    for (const auto& [name, value] : colours) {
        const std::string tag = "a:" + std::string(name);
        out += "<" + tag + R"(><a:srgbClr val=")" + std::string(value) + R"("/></)" + tag + ">";
    }
    out += R"(</a:clrScheme><a:fontScheme name="Office">)"
           R"(<a:majorFont><a:latin typeface="Calibri Light"/><a:ea typeface=""/>)"
           R"(<a:cs typeface=""/></a:majorFont>)"
           R"(<a:minorFont><a:latin typeface="Calibri"/><a:ea typeface=""/>)"
           R"(<a:cs typeface=""/></a:minorFont></a:fontScheme><a:fmtScheme name="Office">)";
    constexpr std::string_view fill = R"(<a:solidFill><a:schemeClr val="phClr"/></a:solidFill>)";
    out += three("fillStyleLst", fill);
    out += three("lnStyleLst", R"(<a:ln w="6350">)" + std::string(fill) + "</a:ln>");
    out += three("effectStyleLst", "<a:effectStyle><a:effectLst/></a:effectStyle>");
    out += three("bgFillStyleLst", fill);
    return xml(out + "</a:fmtScheme></a:themeElements></a:theme>");
}

Parts presentation() {
    return {
        {"[Content_Types].xml",
         contentTypes({{"/ppt/presentation.xml", "presentationml.presentation.main+xml"},
                       {"/ppt/slideMasters/slideMaster1.xml", "presentationml.slideMaster+xml"},
                       {"/ppt/slideLayouts/slideLayout1.xml", "presentationml.slideLayout+xml"},
                       {"/ppt/slides/slide1.xml", "presentationml.slide+xml"},
                       {"/ppt/theme/theme1.xml", "theme+xml"}})},
        {"_rels/.rels", relations({{"rId1", "officeDocument", "ppt/presentation.xml"}})},
        {"ppt/presentation.xml",
         xml("<p:presentation" + std::string(presentationNames) +
             R"(><p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/>)"
             R"(</p:sldMasterIdLst><p:sldIdLst><p:sldId id="256" r:id="rId2"/></p:sldIdLst>)"
             R"(<p:sldSz cx="12192000" cy="6858000"/><p:notesSz cx="6858000" cy="9144000"/>)"
             R"(</p:presentation>)")},
        {"ppt/_rels/presentation.xml.rels",
         relations({{"rId1", "slideMaster", "slideMasters/slideMaster1.xml"},
                    {"rId2", "slide", "slides/slide1.xml"},
                    {"rId3", "theme", "theme/theme1.xml"}})},
        {"ppt/slideMasters/slideMaster1.xml",
         slidePart("sldMaster", "",
                   R"(<p:clrMap bg1="lt1" tx1="dk1" bg2="lt2" tx2="dk2" accent1="accent1" )"
                   R"(accent2="accent2" accent3="accent3" accent4="accent4" accent5="accent5" )"
                   R"(accent6="accent6" hlink="hlink" folHlink="folHlink"/>)"
                   R"(<p:sldLayoutIdLst><p:sldLayoutId id="2147483649" r:id="rId1"/>)"
                   R"(</p:sldLayoutIdLst>)")},
        {"ppt/slideMasters/_rels/slideMaster1.xml.rels",
         relations({{"rId1", "slideLayout", "../slideLayouts/slideLayout1.xml"},
                    {"rId2", "theme", "../theme/theme1.xml"}})},
        {"ppt/slideLayouts/slideLayout1.xml",
         slidePart("sldLayout", R"( type="blank" preserve="1")", masterColours)},
        {"ppt/slideLayouts/_rels/slideLayout1.xml.rels",
         relations({{"rId1", "slideMaster", "../slideMasters/slideMaster1.xml"}})},
        {"ppt/slides/slide1.xml", slidePart("sld", "", masterColours)},
        {"ppt/slides/_rels/slide1.xml.rels",
         relations({{"rId1", "slideLayout", "../slideLayouts/slideLayout1.xml"}})},
        {"ppt/theme/theme1.xml", theme()},
    };
}

}  // namespace

Parts parts(std::string_view id) {
    if (id == "docx") return document();
    if (id == "xlsx") return workbook();
    if (id == "pptx") return presentation();
    return {};
}

}  // namespace tarn::OfficePackages
