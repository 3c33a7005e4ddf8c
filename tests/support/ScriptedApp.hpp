// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>

#include "views/AppStore.hpp"

namespace vek::test {

/// A root store for views whose state a test sets and whose actions it reads.
class ScriptedApp : public QObject {
  Q_OBJECT
  Q_PROPERTY(vek::AppStore* store READ store CONSTANT)
  /// What was sent, oldest first: "recording(recordButtonClicked)".
  Q_PROPERTY(QStringList sent READ sent)

 public:
  ScriptedApp();

  [[nodiscard]] AppStore* store() { return store_.get(); }
  [[nodiscard]] AppStore::Observed::Shared const& root() { return root_; }
  [[nodiscard]] QStringList sent() const;

  /// Puts the state that `facts` describe in place of the present one:
  ///
  ///     loggedIn, loggingIn, permitted, asking, starting, refreshing   true or false
  ///     settings                                           true while the settings are wanted
  ///     recording                                          the text so far
  ///     elapsed                                            seconds since the recording began
  ///     transcripts, unassigned                            how many, and how many without customer
  ///     cells                                              transcripts one by one, each with:
  ///     text,
  ///                                                        loading or failed; customer, "known" or
  ///                                                        not
  ///     nameless                                           true before customers have names
  ///     sessionError, permissionsError, recordingError, transcriptsError
  Q_INVOKABLE void show(QVariantMap const& facts);
  Q_INVOKABLE void forgetSent();

 private:
  struct Script;

  std::shared_ptr<Script> script_;
  AppStore::Observed::Shared root_;
  std::unique_ptr<AppStore> store_;
};

}  // namespace vek::test
