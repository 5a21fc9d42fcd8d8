#include "platform/qt/qt_clipboard.h"
#include "qt_fixture.h"

#include <QClipboard>

#include <algorithm>
#include <csignal>
#include <future>

namespace glyma::qt {
namespace {

class QtClipboardTest : public QtTest {
protected:
    void TearDown() override {
        for (auto& owner : owners_) {
            ::kill(static_cast<pid_t>(owner->processId()), SIGCONT);
            owner->kill();
            owner->waitForFinished();
        }
        QGuiApplication::clipboard()->clear();
    }

    /// Another program takes the clipboard.
    QProcess& startOwner(const QStringList& arguments = {}) {
        auto& owner = *owners_.emplace_back(std::make_unique<QProcess>());
        owner.start(GLYMA_CLIPBOARD_OWNER, arguments);
        EXPECT_TRUE(owner.waitForReadyRead(10'000));
        spin(50ms);
        return owner;
    }

    /// What other programs see.
    static ClipboardSnapshot seenByOthers(const std::string& selection = "CLIPBOARD") {
        auto reading = std::async(std::launch::async, [&] { return SelectionReader(selection).read(); });
        spinUntil([&] { return reading.wait_for(0s) == std::future_status::ready; });
        return reading.get();
    }

    static std::string valueOf(const ClipboardSnapshot& contents, const std::string& type) {
        const auto found = std::ranges::find(contents, type, &ClipboardSnapshot::value_type::first);
        return found == contents.end() ? "(none)" : found->second;
    }

    QtClipboard clipboard{QClipboard::Clipboard};

private:
    std::vector<std::unique_ptr<QProcess>> owners_;
};

TEST_F(QtClipboardTest, GivesBackEveryTypeByteForByte) {
    startOwner();
    const auto saved = clipboard.snapshot();
    ASSERT_EQ(valueOf(saved, "image/x-raw").size(), 20'000'000U);
    ASSERT_EQ(valueOf(saved, "application/x-test"), std::string("a\0b\xFF", 4));
    ASSERT_EQ(valueOf(saved, "UTF8_STRING"), "plain 😀 text");

    clipboard.setTransientText("😄");
    EXPECT_EQ(valueOf(seenByOthers(), "UTF8_STRING"), "😄");
    clipboard.restore(saved);
    const auto seen = seenByOthers();
    for (const auto& [type, data] : saved)
        EXPECT_EQ(valueOf(seen, type) == data, true) << type;
    EXPECT_EQ(clipboard.snapshot().size() >= saved.size(), true);
}

TEST_F(QtClipboardTest, MarksTheTransientTextAsSecret) {
    clipboard.setTransientText("😄");
    EXPECT_EQ(valueOf(seenByOthers(), "x-kde-passwordManagerHint"), "secret");
    clipboard.restore({});
    EXPECT_EQ(seenByOthers(), ClipboardSnapshot());
}

TEST_F(QtClipboardTest, DoesNotWaitForAnOwnerThatHangs) {
    auto& owner = startOwner();
    ::kill(static_cast<pid_t>(owner.processId()), SIGSTOP);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(clipboard.snapshot(), ClipboardSnapshot());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 400ms);

    clipboard.setTransientText("😄");
    EXPECT_EQ(valueOf(seenByOthers(), "UTF8_STRING"), "😄");
}

TEST_F(QtClipboardTest, IsNotConfusedByTheLateAnswersOfAnOwnerThatHung) {
    auto& owner = startOwner();
    ::kill(static_cast<pid_t>(owner.processId()), SIGSTOP);
    clipboard.snapshot();
    ::kill(static_cast<pid_t>(owner.processId()), SIGCONT);
    spin(200ms);
    const auto contents = clipboard.snapshot();
    EXPECT_EQ(valueOf(contents, "UTF8_STRING"), "plain 😀 text");
    EXPECT_EQ(valueOf(contents, "image/x-raw").size(), 20'000'000U);
}

TEST_F(QtClipboardTest, LeavesAloneWhatSomebodyElsePutThere) {
    const auto saved = ClipboardSnapshot{{"UTF8_STRING", "old"}};
    clipboard.setTransientText("😄");
    startOwner();
    clipboard.restore(saved);
    EXPECT_EQ(valueOf(seenByOthers(), "UTF8_STRING"), "plain 😀 text");
}

TEST_F(QtClipboardTest, ServesTheLastSelectionApart) {
    startOwner({"primary"});
    clipboard.setTransientText("general");
    QtClipboard primary{QClipboard::Selection};
    const auto saved = primary.snapshot();
    EXPECT_EQ(valueOf(saved, "UTF8_STRING"), "plain 😀 text");
    primary.setTransientText("last");
    EXPECT_EQ(valueOf(seenByOthers("PRIMARY"), "UTF8_STRING"), "last");
    primary.restore(saved);
    EXPECT_EQ(valueOf(seenByOthers("PRIMARY"), "UTF8_STRING"), "plain 😀 text");
    EXPECT_EQ(valueOf(seenByOthers(), "UTF8_STRING"), "general");
}

} // namespace
} // namespace glyma::qt
