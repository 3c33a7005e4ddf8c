// SPDX-License-Identifier: MIT
#include "views/UpdateWindowController.hpp"

#include <QGuiApplication>

#include <utility>

#include "platform/Browser.hpp"
#include "platform/StandardUserDriver.hpp"
#include "runtime/ThreadPool.hpp"
#include "views/Views.hpp"
#include "views/WindowOrder.hpp"

namespace vek {

namespace {

Task<> open(std::string url) {
  vek::openInBrowser(url);
  co_return;
}

}  // namespace

UpdateWindowController::UpdateWindowController(QQmlEngine& engine,
                                               std::function<Task<>(std::string url)> open)
    : engine_(engine), panel_(std::move(open)) {
  connect(&panel_, &UpdatePanel::closed, this, [this] {
    if (window_) window_->close();
  });
}

Task<> UpdateWindowController::openInBrowser(std::string url) {
  // The desktop's own program for it may take seconds to fail.
  return on(ThreadPool::shared(), open(std::move(url)));
}

void UpdateWindowController::present() {
  StandardUserDriver::setPresenter(
      {.isActive = [] { return QGuiApplication::focusWindow() != nullptr; },
       .showChecking =
           [this](std::function<void()> cancel) {
             panel_.showChecking(std::move(cancel));
             show(Focus::taken);
           },
       .showUpdate =
           [this](UpdateOffer offer) {
             auto const focus = offer.takesFocus ? Focus::taken : Focus::left;
             panel_.showUpdate(std::move(offer));
             show(focus);
           },
       .showUpToDate =
           [this](std::string const& installedVersion) {
             panel_.showUpToDate(installedVersion);
             show(Focus::taken);
           },
       .showFailure =
           [this](UpdateError const& error) {
             panel_.showFailure(error);
             show(Focus::taken);
           },
       .showInFocus = [this] { show(Focus::taken); }});
}

void UpdateWindowController::show(Focus focus) {
  if (!window_) {
    window_ = makeWindow(engine_, QStringLiteral("UpdateWindow"),
                         {{QStringLiteral("panel"), QVariant::fromValue(&panel_)}});
    connect(window_.get(), &QWindow::activeChanged, this, [this] {
      if (window_->isActive()) panel_.didReceiveAttention();
    });
  }
  // Read by the toolkit when the window comes on screen.
  window_->setProperty("_q_showWithoutActivating", focus == Focus::left);
  if (focus == Focus::left) {
    window_->show();
    return;
  }
  orderFront(*window_);
  activateFrontWindow();
  if (window_->isActive()) panel_.didReceiveAttention();
}

}  // namespace vek
