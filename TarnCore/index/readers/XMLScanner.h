#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tarn {

/// Reads XML as it comes, in constant memory, telling of elements and text. No other file is ever
/// opened. What declares entities, elements or attributes, or nests deeper than 256 elements, is
/// refused: no document that we read has use for it. One thread at a time.
class XMLScanner {
public:
    /// Values of the attributes of one element; valid only while it is told of.
    class Attributes {
    public:
        Attributes(const unsigned char** values, int count) : values_(values), count_(count) {}
        /// Empty when there is none; names are without prefix.
        std::string_view operator[](std::string_view name) const;

    private:
        const unsigned char** values_;  // name, prefix, URI, begin and end of the value
        int count_;
    };
    /// Names are without prefix. Text comes in pieces.
    class Handler {
    public:
        virtual ~Handler() = default;
        virtual void begin(std::string_view name, const Attributes& attributes) = 0;
        virtual void end(std::string_view name) = 0;
        virtual void text(std::string_view text) = 0;
        /// Nothing more has to be read.
        virtual bool isDone() const { return false; }
    };

    /// The handler must outlive this object.
    explicit XMLScanner(Handler& handler);
    ~XMLScanner();
    XMLScanner(const XMLScanner&) = delete;
    XMLScanner& operator=(const XMLScanner&) = delete;

    /// False when nothing more is wanted, or when it is no XML.
    bool push(std::string_view bytes);
    /// True when the document was XML to its end, but for small faults; a handler that was done
    /// before the end makes no difference.
    bool finish();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
