#pragma once

#include "preferences_desk.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace glyma::qt {

/// The preferences window without a display.
class WindowTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argumentCount = 3;
        static char name[] = "test";
        static char option[] = "-platform";
        static char platform[] = "offscreen";
        static char* arguments[] = {name, option, platform, nullptr};
        if (!qApp) {
            qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
            new QApplication(argumentCount, arguments);
        }
    }

    gallery::PreferencesDesk& open(const std::string& page) {
        desk->window.show(page);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&desk->window));
        return *desk;
    }

    /// The program ends and starts again with what it stored.
    void restart() {
        const auto stored = desk->settings;
        desk = std::make_unique<gallery::PreferencesDesk>(stored);
    }

    /// The visible widget of the type that has this name or, where none has, is read out as this.
    template<typename Widget>
    Widget& named(const QString& name) {
        for (const auto nameOf : {givenName, readName})
            for (auto* widget : QApplication::allWidgets())
                if (auto* found = qobject_cast<Widget*>(widget);
                    found && found->isVisible() && nameOf(*found) == name)
                    return *found;
        throw std::runtime_error("no widget named " + name.toStdString());
    }

    std::unique_ptr<gallery::PreferencesDesk> desk = std::make_unique<gallery::PreferencesDesk>();

private:
    static QString givenName(QWidget& widget) { return widget.accessibleName(); }
    static QString readName(QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
    }
};

} // namespace glyma::qt
