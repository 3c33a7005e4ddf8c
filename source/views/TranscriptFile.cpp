// SPDX-License-Identifier: MIT
#include "views/TranscriptFile.hpp"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStandardPaths>

namespace vek {

QString TranscriptFile::folder() const {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void TranscriptFile::copy(QString const& text) const {
  QGuiApplication::clipboard()->setText(text);
}

QString TranscriptFile::pathOf(QString const& name) const {
  if (name.startsWith(u"~/")) return QDir::homePath() + name.mid(1);
  return QDir::cleanPath(QDir(folder()).filePath(name));
}

bool TranscriptFile::exists(QString const& path) const {
  return QFileInfo::exists(path);
}

QString TranscriptFile::write(QString const& text, QString const& path) const {
  bool const isNew = !exists(path);
  if (path == pathOf(QFileInfo(path).fileName())) QDir().mkpath(folder());
  QSaveFile file(path);
  auto const bytes = text.toUtf8();
  bool const isOpen = file.open(QIODevice::WriteOnly);
  // What was said in a call is nobody else's.
  if (isOpen && isNew) file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
  bool const isWritten = isOpen && file.write(bytes) == bytes.size() && file.commit();
  return isWritten ? QString() : file.errorString();
}

}  // namespace vek
