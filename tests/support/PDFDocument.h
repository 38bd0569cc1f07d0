#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/TextRecognition.h"

namespace tarn {

/// A PDF document, written out by hand. Pages are US Letter.
class PDFDocument {
public:
    /// A page that shows these lines in Helvetica.
    void addText(const std::vector<std::string>& lines) {
        std::string content = "BT /F 14 Tf 72 720 Td 18 TL\n";
        for (const std::string& line : lines) content += "(" + line + ") Tj T*\n";
        addPage("<< /Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >>",
                content + "ET");
    }
    /// A page that is a picture, as a scanner makes it.
    void addPicture(const GrayPicture& picture) {
        const std::string size = std::to_string(picture.width) + " 0 0 " +
                                 std::to_string(picture.height) + " 72 500 cm /P Do";
        const std::string pixels(picture.pixels.begin(), picture.pixels.end());
        const std::string number = addObject(
            "/Type /XObject /Subtype /Image /ColorSpace /DeviceGray /BitsPerComponent 8 /Width " +
                std::to_string(picture.width) + " /Height " + std::to_string(picture.height),
            pixels);
        addPage("<< /XObject << /P " + number + " 0 R >> >>", "q " + size + " Q");
    }
    void addEmpty() { addPage("<< >>", ""); }
    /// A page that does `content` two to the power of `levels` times: a form that draws a form
    /// twice, which draws a form twice, and so on.
    void addRepeated(const std::string& content, int levels) {
        const std::string font =
            "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >>";
        std::string drawn = addObject(
            "/Type /XObject /Subtype /Form /BBox [0 0 612 792] /Resources << " + font + " >>",
            content);
        for (int level = 0; level < levels; ++level)
            drawn = addObject(
                "/Type /XObject /Subtype /Form /BBox [0 0 612 792] /Resources << /XObject << /X " +
                    drawn + " 0 R >> >>",
                "/X Do /X Do");
        addPage("<< /XObject << /X " + drawn + " 0 R >> >>", "/X Do");
    }

    std::string bytes() const {
        std::string all = "%PDF-1.4\n";
        std::vector<std::size_t> places;
        const auto add = [&](const std::string& body) {
            places.push_back(all.size());
            all += std::to_string(places.size()) + " 0 obj\n" + body + "\nendobj\n";
        };
        add("<< /Type /Catalog /Pages 2 0 R >>");
        std::string kids;
        for (const std::string& page : pages_) kids += page + " 0 R ";
        add("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages_.size()) + " >>");
        for (const std::string& object : objects_) add(object);
        const std::size_t table = all.size();
        all += "xref\n0 " + std::to_string(places.size() + 1) + "\n0000000000 65535 f \n";
        for (const std::size_t place : places) {
            const std::string digits = std::to_string(place);
            all += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
        }
        return all + "trailer << /Size " + std::to_string(places.size() + 1) +
               " /Root 1 0 R >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    }

private:
    std::string addObject(const std::string& entries, const std::string& stream) {
        objects_.push_back("<< " + entries + " /Length " + std::to_string(stream.size()) +
                           " >>\nstream\n" + stream + "\nendstream");
        return std::to_string(objects_.size() + 2);
    }
    void addPage(const std::string& resources, const std::string& content) {
        const std::string number = addObject("", content);
        objects_.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Resources " +
                           resources + " /Contents " + number + " 0 R >>");
        pages_.push_back(std::to_string(objects_.size() + 2));
    }

    std::vector<std::string> objects_;  // those from number 3 on
    std::vector<std::string> pages_;
};

}  // namespace tarn
