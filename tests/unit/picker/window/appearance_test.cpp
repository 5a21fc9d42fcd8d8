#include "desk.h"
#include "picker/qt/appearance.h"
#include "virtual_display.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <gtest/gtest.h>

#include <functional>

namespace glyma::gallery {

using SettingsByNamespace = QMap<QString, QVariantMap>;

/// What of the desktop portal tells light from dark.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(uint scheme)
        : scheme_(scheme)
        , bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal"))) {
        qDBusRegisterMetaType<SettingsByNamespace>();
        bus_.registerObject(path, this, QDBusConnection::ExportAllSlots);
        bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

    void change(const QString& nameSpace, uint scheme) {
        auto signal = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.portal.Settings"),
                                                 QStringLiteral("SettingChanged"));
        signal << nameSpace << QStringLiteral("color-scheme") << QVariant::fromValue(QDBusVariant(scheme));
        bus_.send(signal);
    }

public Q_SLOTS:
    SettingsByNamespace ReadAll(const QStringList& nameSpaces) {
        return {{nameSpaces.value(0), {{QStringLiteral("color-scheme"), scheme_}}}};
    }

private:
    const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    uint scheme_;
    QDBusConnection bus_;
};

namespace {

bool eventually(const std::function<bool()>& condition) {
    for (int attempt = 0; attempt < 200 && !condition(); ++attempt)
        wait(10);
    return condition();
}

class AppearanceTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { VirtualDisplay::shared(); }
    void SetUp() override { qunsetenv("GLYMA_THEME"); }
    void TearDown() override { qunsetenv("GLYMA_THEME"); }
};

TEST_F(AppearanceTest, FollowsTheDesktopsChoice) {
    FakePortal portal(1);
    const qt::Appearance appearance;
    EXPECT_FALSE(appearance.theme().isDark) << "it waited for the portal";
    EXPECT_TRUE(eventually([&] { return appearance.theme().isDark; }));
    portal.change(QStringLiteral("org.example.other"), 2);
    wait(50);
    EXPECT_TRUE(appearance.theme().isDark);
    portal.change(QStringLiteral("org.freedesktop.appearance"), 2);
    EXPECT_TRUE(eventually([&] { return !appearance.theme().isDark; }));
    portal.change(QStringLiteral("org.freedesktop.appearance"), 1);
    EXPECT_TRUE(eventually([&] { return appearance.theme().isDark; }));
}

TEST_F(AppearanceTest, TheEnvironmentComesFirst) {
    FakePortal portal(1);
    qputenv("GLYMA_THEME", "light");
    const qt::Appearance appearance;
    wait(100);
    EXPECT_FALSE(appearance.theme().isDark);
    qputenv("GLYMA_THEME", "dark");
    EXPECT_TRUE(qt::Appearance().theme().isDark);
}

} // namespace
} // namespace glyma::gallery

#include "appearance_test.moc"
