#include "TarnCore/ops/Step.h"

#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"

namespace tarn {
namespace {

template <class Value>
Value required(const JSON& json, const char* key) {
    const JSON* found = JSONFields::member(json, key);
    if (found == nullptr) throw Error(std::string("The key “") + key + "” is missing.");
    return found->get<Value>();
}

}  // namespace

void to_json(JSON& json, const Step& step) {
    json = JSON::object();
    if (const auto* move = std::get_if<Step::Move>(&step.change)) {
        json["move"] = {{"from", move->from}, {"to", move->to}};
    } else if (const auto* create = std::get_if<Step::Create>(&step.change)) {
        JSON& fields = json["create"];
        fields = {{"url", create->url}};
        JSONFields::write(fields, "trashedAt", create->trashedAt);
    } else if (const auto* tags = std::get_if<Step::Tags>(&step.change)) {
        json["tags"] = {{"url", tags->url}, {"old", tags->before}, {"new", tags->after}};
    } else {
        const auto& bits = std::get<Step::Permissions>(step.change);
        json["permissions"] = {{"url", bits.url}, {"old", bits.before}, {"new", bits.after}};
    }
}

void from_json(const JSON& json, Step& step) {
    const auto& object = json.get_ref<const JSON::object_t&>();
    if (object.size() != 1) throw Error("Invalid number of keys found, expected one.");
    const auto& [name, fields] = *object.begin();
    if (name == "move") {
        step.change = Step::Move{required<URL>(fields, "from"), required<URL>(fields, "to")};
    } else if (name == "create") {
        Step::Create create{required<URL>(fields, "url"), std::nullopt};
        JSONFields::read(fields, "trashedAt", create.trashedAt);
        step.change = std::move(create);
    } else if (name == "tags") {
        using List = std::vector<std::string>;
        step.change = Step::Tags{required<URL>(fields, "url"), required<List>(fields, "old"),
                                 required<List>(fields, "new")};
    } else if (name == "permissions") {
        step.change =
            Step::Permissions{required<URL>(fields, "url"), required<std::uint32_t>(fields, "old"),
                              required<std::uint32_t>(fields, "new")};
    } else {
        throw Error("“" + name + "” is no step.");
    }
}

}  // namespace tarn

std::size_t std::hash<tarn::Step>::operator()(const tarn::Step& step) const noexcept {
    std::size_t value = step.change.index();
    const auto add = [&](std::size_t more) {
        value ^= more + 0x9e3779b97f4a7c15U + (value << 6U) + (value >> 2U);
    };
    if (const auto* move = std::get_if<tarn::Step::Move>(&step.change)) {
        add(std::hash<tarn::URL>{}(move->from));
        add(std::hash<tarn::URL>{}(move->to));
    } else if (const auto* create = std::get_if<tarn::Step::Create>(&step.change)) {
        add(std::hash<tarn::URL>{}(create->url));
        if (create->trashedAt) add(std::hash<tarn::URL>{}(*create->trashedAt));
    } else if (const auto* tags = std::get_if<tarn::Step::Tags>(&step.change)) {
        add(std::hash<tarn::URL>{}(tags->url));
        for (const auto* list : {&tags->before, &tags->after}) {
            add(list->size());
            for (const std::string& tag : *list) add(std::hash<std::string>{}(tag));
        }
    } else if (const auto* bits = std::get_if<tarn::Step::Permissions>(&step.change)) {
        add(std::hash<tarn::URL>{}(bits->url));
        add(bits->before);
        add(bits->after);
    }
    return value;
}
