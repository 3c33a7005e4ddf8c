// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace vek {

/// Where a link of a text leads; an invalid URL when it leads nowhere that a browser or a mail
/// program opens. Texts come from strangers, so programs, files and scripts are not among these.
[[nodiscard]] QUrl allowedLink(QUrl const& base, QString const& destination);

}  // namespace vek
