// SPDX-License-Identifier: MIT
#include "views/TranscriptFile.hpp"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>

namespace vek {

void TranscriptFile::copy(QString const& text) const {
  QGuiApplication::clipboard()->setText(text);
}

QString TranscriptFile::save(QString const& text, QString const& name,
                             QString const& ending) const {
  constexpr int mostTries = 1000;
  QDir const folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  if (!folder.mkpath(QStringLiteral("."))) return {};
  for (int i = 1; i < mostTries; ++i) {
    auto const number = i == 1 ? QString() : QStringLiteral(" %1").arg(i);
    QFile file(folder.filePath(QStringLiteral("%1%2.%3").arg(name, number, ending)));
    if (file.exists()) continue;
    constexpr auto own = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    auto const bytes = text.toUtf8();
    bool const isWritten = file.open(QIODevice::WriteOnly | QIODevice::NewOnly, own) &&
                           file.write(bytes) == bytes.size() && file.flush();
    return isWritten ? file.fileName() : QString();
  }
  return {};
}

}  // namespace vek
