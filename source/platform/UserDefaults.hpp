// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace vek {

/// The user's settings: texts by key in one small file that several programs read and write at
/// the same time. The file is read at each use, so a change by another program is seen at once.
/// Any thread may call.
class UserDefaults {
 public:
  /// A write gives up when others keep the file for longer than `patience`: it is often the main
  /// thread that waits.
  explicit UserDefaults(std::filesystem::path file,
                        std::chrono::milliseconds patience = std::chrono::seconds(2))
      : file_(std::move(file)), patience_(patience) {}

  /// Those of the user who runs this process.
  static UserDefaults& standard();

  /// Replaced as a whole at each change.
  [[nodiscard]] std::filesystem::path const& file() const { return file_; }

  /// The stored text, or else the registered one. A file that cannot be read, which the log tells
  /// once, counts as empty.
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const;

  /// Stores a text and leaves other keys as they are. Throws std::system_error.
  void set(std::string_view key, std::string_view value);

  /// The text that `key` has until one is stored. Kept for this process alone.
  void registerDefault(std::string_view key, std::string_view value);

  /// Tells the log, once for each key and text, that a stored text means nothing.
  void reportUndecodable(std::string_view key, std::string_view value) const;

 private:
  void reportOnce(std::string const& problem) const;

  std::filesystem::path file_;
  std::chrono::milliseconds patience_;
  mutable std::mutex mutex_;
  std::map<std::string, std::string, std::less<>> registered_;
  mutable std::set<std::string> reported_;
};

/// One setting: its name, the value of a user who never chose, and how a value becomes a text.
template <class Value>
struct UserDefaultsKey {
  std::string name;
  Value defaultValue;
  std::function<std::string(Value const&)> serialize;
  /// Nothing for a text that no value has.
  std::function<std::optional<Value>(std::string_view)> deserialize;

  [[nodiscard]] Value read(UserDefaults& defaults) const {
    defaults.registerDefault(name, serialize(defaultValue));
    std::string const text = *defaults.string(name);
    if (auto value = deserialize(text)) return std::move(*value);
    defaults.reportUndecodable(name, text);
    return defaultValue;
  }

  void write(UserDefaults& defaults, Value const& value) const {
    defaults.registerDefault(name, serialize(defaultValue));
    defaults.set(name, serialize(value));
  }
};

}  // namespace vek
