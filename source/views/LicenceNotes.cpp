// SPDX-License-Identifier: MIT
#include "views/LicenceNotes.hpp"

#include <QFile>
#include <QStringList>
#include <QVariantMap>

namespace vek {

namespace {

/// What comes to users; the others are for those who build the program.
QStringList const sections = {QStringLiteral("Linked into the programs"), QStringLiteral("Symbols"),
                              QStringLiteral("Speech engine")};

bool isForUsers(QString const& heading) {
  return std::ranges::any_of(sections,
                             [&](QString const& section) { return heading.startsWith(section); });
}

/// Nothing for a line that is no row of a table, or its head.
QVariantMap note(QString line) {
  auto const cells = line.remove(u'`').split(u'|');
  if (cells.size() < 4 || cells[1].trimmed() == u"what" || cells[1].startsWith(u'-')) return {};
  return {{QStringLiteral("what"), cells[1].trimmed()},
          {QStringLiteral("licence"), cells[cells.size() - 2].trimmed()}};
}

}  // namespace

QVariantList licenceNotes() {
  QFile file(QStringLiteral(":/qt/qml/VEK/THIRD-PARTY.md"));
  static_cast<void>(file.open(QIODevice::ReadOnly));
  return licenceNotes(QString::fromUtf8(file.readAll()));
}

QVariantList licenceNotes(QString const& text) {
  QVariantList notes;
  bool isWanted = false;
  for (auto const& line : text.split(u'\n')) {
    if (line.startsWith(u"## ")) isWanted = isForUsers(line.mid(3));
    if (!isWanted) continue;
    if (auto const found = note(line); !found.isEmpty()) notes.append(found);
  }
  return notes;
}

}  // namespace vek
