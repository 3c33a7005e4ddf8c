// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantList>

namespace vek {

/// What the program stands on, by licence, as its file of third parties has it: a map of "what" and
/// "licence" each.
[[nodiscard]] QVariantList licenceNotes();

/// The same of another text: the first and the last column of the tables in the sections of
/// `text` that tell what users get.
[[nodiscard]] QVariantList licenceNotes(QString const& text);

}  // namespace vek
