// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <QVariantMap>

#include <vector>

namespace vek::test {

/// A state of the window of an opened transcript, and the size that shows it.
struct TranscriptShot {
  QString name;
  QVariantMap facts;
  QSize size = {400, 400};
  bool isSaving = false;
};

/// Every state, and an analysis with each kind of block.
[[nodiscard]] std::vector<TranscriptShot> transcriptShots();

}  // namespace vek::test
