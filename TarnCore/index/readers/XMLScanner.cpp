#include "TarnCore/index/readers/XMLScanner.h"

#include <algorithm>
#include <exception>
#include <new>

#include <libxml/parser.h>

namespace tarn {
namespace {

/// What the library is given at a time, so that a handler that is done is soon asked no more.
constexpr std::size_t pieceSize = 32 * 1024;

std::string_view view(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : std::string_view();
}

struct CloseParser {
    void operator()(xmlParserCtxt* parser) const {
        xmlFreeDoc(parser->myDoc);
        xmlFreeParserCtxt(parser);
    }
};

}  // namespace

struct XMLScanner::State {
    Handler& handler;
    std::unique_ptr<xmlParserCtxt, CloseParser> parser{};
    bool isBegun = false;
    bool isRefused = false;
    std::size_t open = 0;  ///< Elements.

    bool isOver() const { return isRefused || handler.isDone(); }

    static State& of(void* context) { return *static_cast<State*>(context); }

    static void begin(void* context, const xmlChar* name, const xmlChar* /*prefix*/,
                      const xmlChar* /*uri*/, int /*namespaceCount*/,
                      const xmlChar** /*namespaces*/, int count, int /*defaulted*/,
                      const xmlChar** values) {
        State& state = of(context);
        ++state.open;
        state.isBegun = true;
        if (!state.isOver()) state.handler.begin(view(name), Attributes(values, count));
    }
    static void end(void* context, const xmlChar* name, const xmlChar* /*prefix*/,
                    const xmlChar* /*uri*/) {
        State& state = of(context);
        --state.open;
        if (!state.isOver()) state.handler.end(view(name));
    }
    static void text(void* context, const xmlChar* text, int length) {
        State& state = of(context);
        if (!state.isOver()) {
            state.handler.text(
                {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
        }
    }
    /// A declaration within the document: nothing that honest documents have.
    void refuse() {
        isRefused = true;
        xmlStopParser(parser.get());
    }
    static void entity(void* context, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*id*/,
                       const xmlChar* /*system*/, xmlChar* /*content*/) {
        of(context).refuse();
    }
    static void attribute(void* context, const xmlChar* /*element*/, const xmlChar* /*name*/,
                          int /*type*/, int /*kind*/, const xmlChar* /*value*/,
                          xmlEnumeration* values) {
        xmlFreeEnumeration(values);
        of(context).refuse();
    }
    static void element(void* context, const xmlChar* /*name*/, int /*type*/,
                        xmlElementContent* /*content*/) {
        of(context).refuse();
    }
    static void notation(void* context, const xmlChar* /*name*/, const xmlChar* /*id*/,
                         const xmlChar* /*system*/) {
        of(context).refuse();
    }
};

std::string_view XMLScanner::Attributes::operator[](std::string_view name) const {
    for (int i = 0; i < count_; ++i) {
        const xmlChar* const* const one = values_ + static_cast<std::ptrdiff_t>(i) * 5;
        if (view(one[0]) == name)
            return {reinterpret_cast<const char*>(one[3]),
                    static_cast<std::size_t>(one[4] - one[3])};
    }
    return {};
}

XMLScanner::XMLScanner(Handler& handler) : state_(new State{handler}) {
    xmlSAXHandler functions{};
    functions.initialized = XML_SAX2_MAGIC;
    functions.startElementNs = State::begin;
    functions.endElementNs = State::end;
    functions.characters = State::text;
    functions.ignorableWhitespace = State::text;
    functions.cdataBlock = State::text;
    functions.entityDecl = State::entity;
    functions.attributeDecl = State::attribute;
    functions.elementDecl = State::element;
    functions.notationDecl = State::notation;
    state_->parser.reset(xmlCreatePushParserCtxt(&functions, state_.get(), nullptr, 0, nullptr));
    if (!state_->parser) throw std::bad_alloc();
    xmlCtxtUseOptions(state_->parser.get(), XML_PARSE_NONET | XML_PARSE_RECOVER |
                                                XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
}

XMLScanner::~XMLScanner() = default;

bool XMLScanner::push(std::string_view bytes) {
    while (!bytes.empty()) {
        if (state_->isOver()) return false;
        const std::string_view piece = bytes.substr(0, pieceSize);
        bytes.remove_prefix(piece.size());
        xmlParseChunk(state_->parser.get(), piece.data(), static_cast<int>(piece.size()), 0);
        if (state_->parser->disableSAX != 0) state_->isRefused = true;
    }
    return !state_->isOver();
}

bool XMLScanner::finish() {
    if (state_->handler.isDone()) return true;
    if (state_->isRefused) return false;
    xmlParseChunk(state_->parser.get(), "", 0, 1);
    return state_->isBegun && !state_->isRefused && state_->open == 0;
}

}  // namespace tarn
