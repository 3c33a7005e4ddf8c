// SPDX-License-Identifier: MIT
#include "platform/PropertyList.hpp"

#include <sstream>
#include <system_error>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include "platform/Files.hpp"

namespace vek {

std::optional<PropertyList> readPropertyList(std::filesystem::path const& file) try {
  auto const text = readFile(file);
  if (!text) return std::nullopt;
  std::istringstream stream(*text);
  boost::property_tree::ptree tree;
  boost::property_tree::read_xml(stream, tree, boost::property_tree::xml_parser::no_comments);

  PropertyList entries;
  std::optional<std::string> key;
  for (auto const& [tag, element] : tree.get_child("plist.dict")) {
    if (key && tag == "string") entries.insert_or_assign(*key, element.data());
    key = tag == "key" ? std::optional(element.data()) : std::nullopt;
  }
  return entries;
} catch (boost::property_tree::ptree_error const&) {
  return std::nullopt;
} catch (std::system_error const&) {
  return std::nullopt;
}

}  // namespace vek
