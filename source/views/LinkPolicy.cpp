// SPDX-License-Identifier: MIT
#include "views/LinkPolicy.hpp"

#include <algorithm>
#include <array>

namespace vek {

QUrl allowedLink(QUrl const& base, QString const& destination) {
  constexpr std::array schemes = {u"https", u"http", u"mailto", u"tel"};
  QUrl const given(destination, QUrl::TolerantMode);
  auto const url = base.isValid() ? base.resolved(given) : given;
  bool const isAllowed = std::ranges::any_of(
      schemes, [&](char16_t const* scheme) { return url.scheme() == QStringView(scheme); });
  return isAllowed ? url : QUrl();
}

}  // namespace vek
