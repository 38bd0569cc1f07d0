#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace tarn {

template <class Value>
std::size_t hashOfField(const Value& value) noexcept {
    return std::hash<Value>{}(value);
}

template <class Element>
std::size_t hashOfField(const std::vector<Element>& elements) noexcept {
    std::size_t hash = elements.size();
    for (const Element& element : elements) hash = hash * 31 + hashOfField(element);
    return hash;
}

/// One hash of several fields, which depends on their order.
template <class... Fields>
std::size_t hashOf(const Fields&... fields) noexcept {
    // The finaliser of SplitMix64 between fields, so that small numbers do not cancel each other.
    std::size_t hash = 0;
    const auto mix = [&hash](std::size_t next) {
        hash += next + 0x9e3779b97f4a7c15u;
        hash = (hash ^ (hash >> 30)) * 0xbf58476d1ce4e5b9u;
        hash = (hash ^ (hash >> 27)) * 0x94d049bb133111ebu;
        hash ^= hash >> 31;
    };
    (mix(hashOfField(fields)), ...);
    return hash;
}

}  // namespace tarn
