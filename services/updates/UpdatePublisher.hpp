// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "services/support/DataFolder.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// Publishes a version of the program as its maker would: the list of updates, the signature over
/// it and the page that stands for the download. Any thread.
class UpdatePublisher {
 public:
  /// Signs with the key in the folder, which is made when it is missing and has its public half
  /// beside it in update-key.pem. `version` is what the list offers, `url` where the services are.
  /// Throws `std::runtime_error`.
  UpdatePublisher(DataFolder const& folder, std::string version, std::string const& url);

  [[nodiscard]] static bool serves(std::string_view path);
  [[nodiscard]] Response answer(Request const& request) const;

 private:
  std::string version_;
  std::string list_;
  std::string signature_;
};

}  // namespace vek::services
