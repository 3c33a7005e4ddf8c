// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantMap>

#include <memory>

namespace vek {

/// Chooses how windows are drawn, with which fonts and in which language. Call it when there is an
/// application, before the first window.
void prepareViews();

/// An engine that finds the module VEK.
[[nodiscard]] std::unique_ptr<QQmlEngine> makeEngine();

/// The window of a file of the module, hidden, with its required properties. The engine outlives
/// it. Throws std::runtime_error when the file cannot be made into a window.
[[nodiscard]] std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine& engine, QString const& name,
                                                       QVariantMap const& properties);

}  // namespace vek
