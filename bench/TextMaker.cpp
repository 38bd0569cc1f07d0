#include "bench/TextMaker.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/ops/MemoryFile.h"
#include "TarnCore/ops/ZipWriter.h"

namespace tarn::bench {
namespace {

constexpr std::size_t vocabulary = 60'000;
constexpr std::size_t tableSize = std::size_t{1} << 20;
/// Of the frequencies of words in English text.
constexpr double zipfExponent = 1.05;

constexpr std::string_view consonants[] = {"b", "c", "d", "f", "g", "h",  "l",  "m",  "n",  "p",
                                           "r", "s", "t", "v", "w", "st", "tr", "ch", "pl", "nd"};
constexpr std::string_view vowels[] = {"a", "e", "i", "o", "u", "ea", "ou", "ie"};
constexpr std::string_view accents[] = {"é", "ö", "å", "ü", "ñ", "ç"};

/// Bytes of the text of a document: median and spread of the logarithm.
constexpr double medianLength = 8000;
constexpr double lengthSpread = 1.1;

std::string zip(const std::vector<std::pair<std::string, std::string>>& members) {
    MemoryFile file;
    ZipWriter writer(file);
    Deflater deflater;
    for (const auto& [name, content] : members)
        writer.add(ZipWriter::pack(deflater, name, content, {}));
    writer.finish();
    return std::move(file.bytes);
}

std::string paragraphs(std::string_view text, std::string_view before, std::string_view after) {
    std::string marked;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        marked.append(before).append(text.substr(0, end)).append(after) += '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return marked;
}

std::string docx(std::string_view text) {
    return zip(
        {{"[Content_Types].xml",
          R"(<?xml version="1.0"?><Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Override PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>)"},
         {"_rels/.rels",
          R"(<?xml version="1.0"?><Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="r1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="word/document.xml"/></Relationships>)"},
         {"word/document.xml",
          R"(<?xml version="1.0" encoding="UTF-8"?><w:document xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body>)" +
              paragraphs(text, "<w:p><w:pPr><w:jc w:val=\"left\"/></w:pPr><w:r><w:t>",
                         "</w:t></w:r></w:p>") +
              "</w:body></w:document>"}});
}

std::string odt(std::string_view text) {
    return zip(
        {{"mimetype", "application/vnd.oasis.opendocument.text"},
         {"content.xml",
          R"(<?xml version="1.0" encoding="UTF-8"?><office:document-content xmlns:office="urn:oasis:names:tc:opendocument:xmlns:office:1.0" xmlns:text="urn:oasis:names:tc:opendocument:xmlns:text:1.0" office:version="1.2"><office:body><office:text>)" +
              paragraphs(text, "<text:p text:style-name=\"Standard\">", "</text:p>") +
              "</office:text></office:body></office:document-content>"},
         {"META-INF/manifest.xml",
          R"(<?xml version="1.0"?><manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0"><manifest:file-entry manifest:full-path="/" manifest:media-type="application/vnd.oasis.opendocument.text"/><manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/></manifest:manifest>)"}});
}

std::string html(std::string_view text) {
    return "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>Document</title>"
           "<style>p { margin: 1em }</style></head><body>\n" +
           paragraphs(text, "<p class=\"body\">", "</p>") + "</body></html>\n";
}

std::string rtf(std::string_view text) {
    std::string escaped = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl\\f0\\fswiss Helvetica;}\\f0\\fs24 ";
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte == '\n') {
            escaped += "\\par\n";
        } else if (byte >= 0xC0 && i + 1 < text.size()) {  // Two bytes each, in what we make.
            const unsigned code =
                (byte & 0x1FU) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3FU);
            escaped += "\\u" + std::to_string(code) + "?";
        } else {
            escaped += static_cast<char>(byte);
        }
    }
    return escaped + "}";
}

std::string mail(std::string_view text) {
    return "From: Ann <ann@example.org>\r\nTo: Bo <bo@example.org>\r\nSubject: A document\r\n"
           "Date: Sun, 15 Mar 2026 12:00:00 +0000\r\nMIME-Version: 1.0\r\n"
           "Content-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: 8bit\r\n\r\n" +
           std::string(text);
}

void write(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    if (!file.flush()) throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

TextMaker::TextMaker(std::uint64_t seed) : state_(seed) {
    for (std::size_t i = 0; i < vocabulary; ++i) words_.push_back(word());
    double sum = 0;
    for (std::size_t i = 0; i < vocabulary; ++i)
        sum += std::pow(static_cast<double>(i + 1), -zipfExponent);
    double share = 0;
    for (std::size_t i = 0; i < vocabulary; ++i) {
        share += std::pow(static_cast<double>(i + 1), -zipfExponent) / sum;
        const auto end = static_cast<std::size_t>(share * static_cast<double>(tableSize));
        table_.resize(std::min(end, tableSize), static_cast<std::uint32_t>(i));
    }
    table_.resize(tableSize, 0);
}

/// splitmix64 (Steele, Lea, Flood 2014).
std::uint64_t TextMaker::next() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
}

std::string TextMaker::word() {
    std::string made;
    // Words that come often are short.
    const std::size_t syllables = 1 + below(words_.size() < 300 ? 2 : 4);
    for (std::size_t i = 0; i < syllables; ++i) {
        made += consonants[below(std::size(consonants))];
        made +=
            below(60) == 0 ? accents[below(std::size(accents))] : vowels[below(std::size(vowels))];
    }
    if (below(2) == 0) made += consonants[below(std::size(consonants))];
    return made;
}

std::string_view TextMaker::pick() { return words_[table_[next() >> 44]]; }

std::string TextMaker::text(std::size_t bytes) {
    std::string text;
    text.reserve(bytes + 64);
    while (text.size() < bytes) {
        const std::size_t sentences = 2 + below(6);
        for (std::size_t i = 0; i < sentences; ++i) {
            const std::size_t count = 4 + below(18);
            for (std::size_t j = 0; j < count; ++j) {
                const std::size_t start = text.size();
                text += pick();
                if (j == 0 && text[start] >= 'a' && text[start] <= 'z')
                    text[start] = static_cast<char>(text[start] - 'a' + 'A');
                if (below(12) == 0) text += ',';
                if (j + 1 < count) text += ' ';
            }
            text += ". ";
        }
        text += '\n';
    }
    return text;
}

std::size_t TextMaker::length() {
    // Of two even numbers, one of a normal distribution (Box and Muller 1958).
    const double even = (static_cast<double>(next() >> 11) + 1) * 0x1p-53;
    const double angle = static_cast<double>(next() >> 11) * 0x1p-53 * 6.283185307179586;
    const double normal = std::sqrt(-2 * std::log(even)) * std::cos(angle);
    const double bytes = medianLength * std::exp(lengthSpread * normal);
    return static_cast<std::size_t>(std::clamp(bytes, 200.0, 2e6));
}

void TextMaker::documents(const std::string& folder, std::size_t count) {
    constexpr std::string_view plain[] = {"txt", "md", "csv", "log"};
    constexpr std::string_view rich[] = {"html", "docx", "html", "odt",
                                         "rtf",  "html", "docx", "eml"};
    for (std::size_t i = 0; i < count; ++i) {
        std::string content = text(length());
        if (i % 5 == 0) content += std::string(commonWord) + " ";
        if (i % 1000 == 7) content += std::string(rarePhrase) + ".\n";
        if (i % 100 == 8) content += "A lantern of cobalt.\n";
        const bool isPlain = i % 10 != 9;
        const std::string_view extension =
            isPlain ? plain[i % std::size(plain)] : rich[i / 10 % std::size(rich)];
        if (extension == "docx") content = docx(content);
        if (extension == "odt") content = odt(content);
        if (extension == "html") content = html(content);
        if (extension == "rtf") content = rtf(content);
        if (extension == "eml") content = mail(content);
        const std::string in = folder + (isPlain ? "/plain/" : "/rich/") + std::to_string(i / 100);
        std::filesystem::create_directories(in);
        write(in + "/document " + std::to_string(i) + "." + std::string(extension), content);
    }
}

}  // namespace tarn::bench
