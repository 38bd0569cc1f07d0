#include "TarnCore/base/PreparedTokens.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>

#include <sqlite3.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/base/FTS5.h"

namespace tarn {
namespace {

/// What FTS5 calls by the name “unicode61”; freed when the connection is closed.
struct Module {
    PreparedTokens prepared;
    FTS5::Tokenizer original;
};

/// The tokenizer of one table.
struct Instance {
    const Module* module;
    Fts5Tokenizer* original = nullptr;
    bool isOurs = false;  ///< It has the arguments that tokens are prepared for.
};

bool areOurs(std::span<const char*> arguments) {
    return std::ranges::equal(arguments, FTS5::withoutDiacritics,
                              [](std::string_view a, std::string_view b) { return a == b; });
}

int create(void* context, const char** arguments, int count, Fts5Tokenizer** result) {
    const auto* const module = static_cast<const Module*>(context);
    auto instance = std::make_unique<Instance>(Instance{module});
    const int code = module->original.functions->xCreate(module->original.context, arguments, count,
                                                         &instance->original);
    if (code != SQLITE_OK) return code;
    instance->isOurs = areOurs({arguments, static_cast<std::size_t>(count)});
    *result = reinterpret_cast<Fts5Tokenizer*>(instance.release());
    return SQLITE_OK;
}

void destroy(Fts5Tokenizer* tokenizer) {
    const std::unique_ptr<Instance> instance(reinterpret_cast<Instance*>(tokenizer));
    instance->module->original.functions->xDelete(instance->original);
}

using OnToken = int (*)(void* context, int flags, const char* word, int size, int begin, int end);

int tokenize(Fts5Tokenizer* tokenizer, void* context, int flags, const char* text, int size,
             OnToken onToken) {
    const auto& instance = *reinterpret_cast<const Instance*>(tokenizer);
    const std::string_view given(text, static_cast<std::size_t>(size));
    const bool isDocument = (flags & FTS5_TOKENIZE_DOCUMENT) != 0;
    const TextTokens* const tokens =
        instance.isOurs && isDocument ? instance.module->prepared.tokens(given) : nullptr;
    if (!tokens)
        return instance.module->original.functions->xTokenize(instance.original, context, flags,
                                                              text, size, onToken);
    return tokens->forEach(given, [&](std::string_view word, std::size_t begin, std::size_t end) {
        return onToken(context, 0, word.data(), static_cast<int>(word.size()),
                       static_cast<int>(begin), static_cast<int>(end));
    });
}

}  // namespace

PreparedTokens* PreparedTokens::install(Database& database) {
    fts5_api* const api = FTS5::api(database.handle());
    if (!api) return nullptr;
    auto module = std::make_unique<Module>();
    module->original = FTS5::unicode61(*api);
    if (!module->original.functions) return nullptr;
    fts5_tokenizer functions = {create, destroy, tokenize};
    const int code =
        api->xCreateTokenizer(api, "unicode61", module.get(), &functions,
                              [](void* context) { delete static_cast<Module*>(context); });
    if (code != SQLITE_OK) return nullptr;
    return &module.release()->prepared;
}

}  // namespace tarn
