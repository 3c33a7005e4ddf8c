// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include <functional>
#include <string>

#include "platform/UpdatePresenter.hpp"

namespace vek {

/// What the window of updates shows, and what the user does there.
class UpdatePanel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(Page page READ page NOTIFY changed)
  Q_PROPERTY(QString version READ version NOTIFY changed)
  Q_PROPERTY(QString installedVersion READ installedVersion NOTIFY changed)
  Q_PROPERTY(QString notes READ notes NOTIFY changed)
  Q_PROPERTY(QString packageManager READ packageManager NOTIFY changed)
  Q_PROPERTY(QString failure READ failure NOTIFY changed)

 public:
  enum class Page { None, Checking, Update, UpToDate, Failure };
  Q_ENUM(Page)

  /// `open` shows a page in the browser, or throws.
  explicit UpdatePanel(std::function<void(std::string const& url)> open) : open_(std::move(open)) {}

  [[nodiscard]] Page page() const { return page_; }
  [[nodiscard]] QString version() const;
  [[nodiscard]] QString installedVersion() const;
  [[nodiscard]] QString notes() const;
  [[nodiscard]] QString packageManager() const;
  [[nodiscard]] QString failure() const { return failure_; }

  void showChecking(std::function<void()> cancel);
  void showUpdate(UpdateOffer offer);
  void showUpToDate(std::string const& installedVersion);
  void showFailure(std::string const& reason);

  /// The user has turned to the window.
  void didReceiveAttention() const;

  Q_INVOKABLE void skip() { choose(UpdateChoice::skip); }
  Q_INVOKABLE void get();
  /// Ends what is shown without a choice: a check is cancelled, an update left for later.
  Q_INVOKABLE void close();

  Q_SIGNAL void changed();
  /// Nothing is shown any more.
  Q_SIGNAL void closed();

 private:
  void show(Page page);
  void choose(UpdateChoice choice);

  std::function<void(std::string const& url)> open_;
  Page page_ = Page::None;
  std::function<void()> cancel_;
  UpdateOffer offer_;
  QString failure_;
};

}  // namespace vek
