// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include "records/Field.hpp"
#include "runtime/Date.hpp"
#include "runtime/SharedText.hpp"
#include "runtime/UUID.hpp"

namespace vek::json {

/// Where in a document a value stands. Lives on the stack while the document is read, and becomes
/// a text only when something is wrong there.
struct Path {
  Path const* parent = nullptr;
  std::string_view key = {};
  std::size_t index = 0;

  [[nodiscard]] Path at(std::string_view keyOfChild) const { return {this, keyOfChild, 0}; }
  [[nodiscard]] Path at(std::size_t indexOfChild) const { return {this, {}, indexOfChild}; }
  /// Such as "$[0].title".
  [[nodiscard]] std::string text() const;
};

/// Throws the DecodingError of a value at `path`.
[[noreturn]] void fail(Path const& path, std::string_view reason);
[[noreturn]] void failType(Path const& path, std::string_view expected,
                           boost::json::value const& found);

/// How one type is written and read: `decode(value, path)` and `encode(value, storage)`.
template <class Value>
struct Coding;

template <class Value>
concept Record = requires { Value::fields(); };

/// An enumeration with a table of pairs of case and text, found by `jsonTexts(Value)`.
template <class Value>
concept TextEnumeration = requires(Value value) { jsonTexts(value); };

/// Types that are read and written one by one, in Coding.cpp.
#define VEK_JSON_CODING(Type)                                                              \
  template <>                                                                              \
  struct Coding<Type> {                                                                    \
    static Type decode(boost::json::value const& value, Path const& path);                 \
    static boost::json::value encode(Type const& value, boost::json::storage_ptr storage); \
  }
VEK_JSON_CODING(std::string);
VEK_JSON_CODING(SharedText);
VEK_JSON_CODING(bool);
VEK_JSON_CODING(std::int64_t);
VEK_JSON_CODING(double);
VEK_JSON_CODING(UUID);
VEK_JSON_CODING(Date);
#undef VEK_JSON_CODING

template <class Element>
struct Coding<std::vector<Element>> {
  static std::vector<Element> decode(boost::json::value const& value, Path const& path) {
    auto const* array = value.if_array();
    if (!array) failType(path, "list", value);
    std::vector<Element> elements;
    elements.reserve(array->size());
    for (std::size_t i = 0; i < array->size(); ++i) {
      elements.push_back(Coding<Element>::decode((*array)[i], path.at(i)));
    }
    return elements;
  }

  static boost::json::value encode(std::vector<Element> const& elements,
                                   boost::json::storage_ptr storage) {
    boost::json::array array(storage);
    array.reserve(elements.size());
    for (auto const& element : elements) array.push_back(Coding<Element>::encode(element, storage));
    return boost::json::value(std::move(array));
  }
};

template <class Element>
struct Coding<std::map<std::string, Element>> {
  static std::map<std::string, Element> decode(boost::json::value const& value, Path const& path) {
    auto const* object = value.if_object();
    if (!object) failType(path, "object", value);
    std::map<std::string, Element> elements;
    for (auto const& [key, element] : *object) {
      elements.insert_or_assign(key, Coding<Element>::decode(element, path.at(key)));
    }
    return elements;
  }

  static boost::json::value encode(std::map<std::string, Element> const& elements,
                                   boost::json::storage_ptr storage) {
    boost::json::object object(storage);
    for (auto const& [key, element] : elements) {
      object.emplace(key, Coding<Element>::encode(element, storage));
    }
    return boost::json::value(std::move(object));
  }
};

template <TextEnumeration Value>
struct Coding<Value> {
  static Value decode(boost::json::value const& value, Path const& path) {
    std::string const text = Coding<std::string>::decode(value, path);
    for (auto const& [enumerator, known] : jsonTexts(Value())) {
      if (known == text) return enumerator;
    }
    fail(path, "unknown value \"" + text.substr(0, 60) + "\"");
  }

  static boost::json::value encode(Value const& value, boost::json::storage_ptr storage) {
    for (auto const& [enumerator, text] : jsonTexts(Value())) {
      if (enumerator == value) return boost::json::value(text, storage);
    }
    return boost::json::value(nullptr, storage);
  }
};

template <Record Value>
struct Coding<Value> {
  static Value decode(boost::json::value const& value, Path const& path) {
    auto const* object = value.if_object();
    if (!object) failType(path, "object", value);
    Value record{};
    std::apply([&](auto const&... field) { (read(record, field, *object, path), ...); },
               Value::fields());
    return record;
  }

  static boost::json::value encode(Value const& record, boost::json::storage_ptr storage) {
    boost::json::object object(storage);
    std::apply([&](auto const&... field) { (write(record, field, object), ...); }, Value::fields());
    return boost::json::value(std::move(object));
  }

 private:
  template <class Member>
  static void read(Value& record, Field<Value, Member> const& field,
                   boost::json::object const& object, Path const& path) {
    auto const* value = object.if_contains(field.key);
    if (!value) fail(path.at(field.key), "missing");
    record.*field.member = Coding<Member>::decode(*value, path.at(field.key));
  }

  template <class Member>
  static void read(Value& record, Field<Value, std::optional<Member>> const& field,
                   boost::json::object const& object, Path const& path) {
    auto const* value = object.if_contains(field.key);
    if (!value || value->is_null()) return;
    record.*field.member = Coding<Member>::decode(*value, path.at(field.key));
  }

  template <class Member>
  static void write(Value const& record, Field<Value, Member> const& field,
                    boost::json::object& object) {
    object.emplace(field.key, Coding<Member>::encode(record.*field.member, object.storage()));
  }

  template <class Member>
  static void write(Value const& record, Field<Value, std::optional<Member>> const& field,
                    boost::json::object& object) {
    auto const& member = record.*field.member;
    if (member) object.emplace(field.key, Coding<Member>::encode(*member, object.storage()));
  }
};

}  // namespace vek::json
