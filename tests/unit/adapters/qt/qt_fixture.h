#pragma once

#include <QApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>

namespace glyma::qt {

using namespace std::chrono_literals;

/// A Qt application on an X server of its own.
class QtTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        server = std::make_unique<QProcess>();
        server->setProcessChannelMode(QProcess::SeparateChannels);
        server->start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x800x24", "-noreset"});
        ASSERT_TRUE(server->waitForReadyRead(10'000)) << "Xvfb does not start";
        qputenv("DISPLAY", ":" + server->readLine().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb");
        static int argumentCount = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        application = std::make_unique<QApplication>(argumentCount, arguments);
    }

    static void TearDownTestSuite() {
        application.reset();
        server->kill();
        server->waitForFinished();
        server.reset();
    }

    /// Runs the event loop.
    static void spin(std::chrono::milliseconds duration) {
        QEventLoop loop;
        QTimer::singleShot(duration, Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec();
    }

    static bool spinUntil(const std::function<bool()>& condition) {
        for (int attempt = 0; attempt < 500 && !condition(); ++attempt)
            spin(10ms);
        return condition();
    }

    static inline std::unique_ptr<QProcess> server;
    static inline std::unique_ptr<QApplication> application;
};

} // namespace glyma::qt
