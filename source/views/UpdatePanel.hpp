// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <string>

#include "platform/UpdatePresenter.hpp"
#include "runtime/TaskHandle.hpp"

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
  Q_PROPERTY(QString link READ link NOTIFY changed)
  Q_PROPERTY(bool isOpening READ isOpening NOTIFY changed)
  Q_PROPERTY(bool couldNotOpen READ couldNotOpen NOTIFY changed)

 public:
  enum class Page { None, Checking, Update, UpToDate, Failure };
  Q_ENUM(Page)

  /// `open` shows a page in the browser, or throws. It may take its time.
  explicit UpdatePanel(std::function<Task<>(std::string url)> open) : open_(std::move(open)) {}
  ~UpdatePanel() override { opening_.cancel(); }

  [[nodiscard]] Page page() const { return page_; }
  [[nodiscard]] QString version() const;
  [[nodiscard]] QString installedVersion() const;
  [[nodiscard]] QString notes() const;
  [[nodiscard]] QString packageManager() const;
  [[nodiscard]] QString failure() const { return failure_; }
  [[nodiscard]] QString link() const;
  /// The browser is asked for the page of the update.
  [[nodiscard]] bool isOpening() const { return isOpening_; }
  [[nodiscard]] bool couldNotOpen() const { return couldNotOpen_; }

  void showChecking(std::function<void()> cancel);
  void showUpdate(UpdateOffer offer);
  void showUpToDate(std::string const& installedVersion);
  void showFailure(UpdateError const& error);

  /// The user has turned to the window.
  void didReceiveAttention() const;

  Q_INVOKABLE void skip() { choose(UpdateChoice::skip); }
  /// Ends what is shown once the page of the update is.
  Q_INVOKABLE void get();
  /// Ends what is shown without a choice: a check is cancelled, an update left for later.
  Q_INVOKABLE void close();

  Q_SIGNAL void changed();
  /// Nothing is shown any more.
  Q_SIGNAL void closed();

 private:
  void show(Page page);
  void choose(UpdateChoice choice);
  static QString words(UpdateError::Code code);
  static Task<> finishOpening(QPointer<UpdatePanel> panel, Task<> opening);
  void setOpening(bool isOpening, bool couldNotOpen);

  std::function<Task<>(std::string url)> open_;
  TaskHandle opening_;
  bool isOpening_ = false;
  bool couldNotOpen_ = false;
  Page page_ = Page::None;
  std::function<void()> cancel_;
  UpdateOffer offer_;
  QString failure_;
};

}  // namespace vek
