#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/DrawnPicture.h"

namespace tarn {

/// Of a page, in points.
struct PageSize {
    float width = 0;
    float height = 0;
    bool operator==(const PageSize&) const = default;
};

/// The text of a page and where each character of it stands.
struct PageText {
    struct Box {
        float left = 0;
        float top = 0;
        float right = 0;
        float bottom = 0;
        bool operator==(const Box&) const = default;
    };
    std::string text;        ///< UTF-8.
    std::vector<Box> boxes;  ///< One for each character of `text`, in points from the upper left.
    bool operator==(const PageText&) const = default;
};

/// A document of pages that is open. For one thread at a time.
class PagedDocument {
public:
    virtual ~PagedDocument() = default;
    virtual int pageCount() const = 0;
    virtual std::string title() const = 0;
    /// `page` is 0 or more and less than `pageCount`, here and below. Absent when it is damaged.
    virtual std::optional<PageSize> size(int page) const = 0;
    /// The page on white, as large as that many pixels.
    virtual std::optional<DrawnPicture> draw(int page, int width, int height) const = 0;
    virtual std::optional<PageText> text(int page) const = 0;
};

/// Draws the pages of PDF documents. Reads what strangers wrote with a large library: only for the
/// helper program that is locked in.
class PageDrawing {
public:
    virtual ~PageDrawing() = default;
    struct Opened {
        std::unique_ptr<PagedDocument> document;  ///< Null when it is none that can be read.
        bool needsPassword = false;
    };
    /// `bytes` must outlive the document.
    virtual Opened open(std::string_view bytes) const = 0;
};

}  // namespace tarn
