// SPDX-License-Identifier: MIT
#include "views/SaveDialog.hpp"

#include <gtest/gtest.h>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <utility>

#include "views/TranscriptFile.hpp"

namespace vek::test {
namespace {

/// The dialogs of a desktop, which a test answers.
class Dialogs : public QDBusVirtualObject {
 public:
  Dialogs() {
    bus.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this,
                              QDBusConnection::SubPath);
    bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
  }
  ~Dialogs() override { QDBusConnection::disconnectFromBus(QStringLiteral("dialogs")); }

  void answer(uint response, QVariantMap const& results) {
    auto signal = QDBusMessage::createSignal(
        handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal << response << results;
    bus.send(signal);
  }

  [[nodiscard]] QString introspect(QString const& /*path*/) const override { return {}; }
  bool handleMessage(QDBusMessage const& message, QDBusConnection const& connection) override {
    if (message.member() == u"Close") closed.append(message.path());
    if (message.member() != u"SaveFile") return false;
    options = qdbus_cast<QVariantMap>(message.arguments().at(2));
    handle = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                 .arg(message.service().mid(1).replace(u'.', u'_'),
                      options.value(QStringLiteral("handle_token")).toString());
    return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
  }

  QVariantMap options;
  QString handle;
  QStringList closed;

 private:
  QDBusConnection bus = QDBusConnection::connectToBus(
      qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("dialogs"));
};

struct SaveDialogTests : testing::Test {
  std::optional<SaveDialog> present{std::in_place};
  SaveDialog& dialog = *present;
  QSignalSpy chosen{&dialog, &SaveDialog::chosen};
  QSignalSpy cancelled{&dialog, &SaveDialog::cancelled};
  QSignalSpy unavailable{&dialog, &SaveDialog::unavailable};

  void open() {
    dialog.open(nullptr, QStringLiteral("Save"), QStringLiteral("/a b"), QStringLiteral("c.md"));
  }
};

TEST_F(SaveDialogTests, TellsWhatTheDesktopsDialogWasAnswered) {
  Dialogs desktop;
  auto const isOpen = [&] { return !desktop.handle.isEmpty(); };
  open();
  ASSERT_TRUE(QTest::qWaitFor(isOpen));
  EXPECT_EQ(desktop.options.value(QStringLiteral("current_name")), QStringLiteral("c.md"));
  EXPECT_EQ(desktop.options.value(QStringLiteral("current_folder")).toByteArray(),
            QByteArray("/a b", 5));
  desktop.answer(0, {{QStringLiteral("uris"), QStringList{QStringLiteral("file:///a%20b/d.md")}}});
  ASSERT_TRUE(QTest::qWaitFor([&] { return chosen.count() == 1; }));
  EXPECT_EQ(chosen[0][0], QStringLiteral("/a b/d.md"));

  desktop.handle.clear();
  open();
  ASSERT_TRUE(QTest::qWaitFor(isOpen));
  desktop.answer(1, {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return cancelled.count() == 1; }));
  EXPECT_EQ(chosen.count() + unavailable.count(), 1);
}

TEST_F(SaveDialogTests, ClosesTheDialogThatNobodyWaitsForAnyMore) {
  Dialogs desktop;
  open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !desktop.handle.isEmpty(); }));
  auto const first = desktop.handle;
  open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.handle != first; }));
  EXPECT_EQ(desktop.closed, QStringList(first));
  desktop.answer(1, {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return cancelled.count() == 1; }));

  desktop.handle.clear();
  open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !desktop.handle.isEmpty(); }));
  present.reset();
  ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.closed.size() == 2; }));
  EXPECT_EQ(desktop.closed, QStringList({first, desktop.handle}));
}

TEST_F(SaveDialogTests, SaysWhereTheDesktopHasNone) {
  open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return unavailable.count() == 1; }));
}

TEST(TranscriptFileTests, ReplacesAFileAsAWholeOrNotAtAll) {
  QTemporaryDir folder;
  auto const path = folder.filePath(QStringLiteral("a.txt"));
  TranscriptFile const file;
  EXPECT_EQ(file.write(QStringLiteral("one"), path), QString());
  EXPECT_EQ(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
  EXPECT_EQ(file.write(QStringLiteral("zwei ö"), path), QString());
  QFile written(path);
  ASSERT_TRUE(written.open(QIODevice::ReadOnly));
  EXPECT_EQ(written.readAll(), QStringLiteral("zwei ö").toUtf8());

  EXPECT_NE(file.write(QStringLiteral("three"), folder.path()), QString());
  EXPECT_NE(file.write(QStringLiteral("three"), path + QStringLiteral("/b")), QString());
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("a.txt")));
}

}  // namespace
}  // namespace vek::test
