#include "preferences/qt/page_bar.h"
#include "window_fixture.h"

#include <QLabel>

#include <functional>
#include <set>

namespace glyma::qt {
namespace {

const std::vector<std::string> pages{"general",     "exclusions", "unicode", "replacements",
                                     "permissions", "advanced",   "debug"};

class AccessibilityTest : public WindowTest {
protected:
    AccessibilityTest() {
        desk->debug.setShowDebugTab(true);
        desk->accessibility.set(
            {.isGranted = false, .finding = "off", .remedy = "Do this.", .canBeObtained = true});
    }

    void forEachVisible(QAccessibleInterface* root, const std::function<void(QAccessibleInterface&)>& visit) {
        if (!root || root->state().invisible)
            return;
        visit(*root);
        for (int index = 0; index < root->childCount(); ++index)
            forEachVisible(root->child(index), visit);
    }
};

TEST_F(AccessibilityTest, EverythingThatTakesTheFocusHasANameAndARole) {
    for (const auto& page : pages) {
        open(page);
        int count = 0;
        forEachVisible(QAccessible::queryAccessibleInterface(&desk->window),
                       [&](QAccessibleInterface& element) {
                           const auto* widget = qobject_cast<QWidget*>(element.object());
                           if (!widget || widget->focusPolicy() == Qt::NoFocus || widget->focusProxy())
                               return;
                           ++count;
                           EXPECT_FALSE(element.text(QAccessible::Name).isEmpty())
                               << page << ": " << widget->metaObject()->className();
                           // On Unix the name of a drop-down list is its choice; its label is a relation.
                           if (element.role() == QAccessible::ComboBox) {
                               EXPECT_EQ(element.relations(QAccessible::Label).size(), 1) << page;
                               EXPECT_NE(element.role(), QAccessible::NoRole)
                                   << page << ": " << widget->metaObject()->className();
                           }
                       });
        EXPECT_GE(count, page == "permissions" ? 2 : 3) << page;
    }
}

TEST_F(AccessibilityTest, TheTabKeyReachesEveryControlOnceInReadingOrder) {
    for (const auto& page : pages) {
        open(page);
        auto& window = desk->window;
        std::set<QWidget*> wanted;
        for (auto* widget : window.findChildren<QWidget*>())
            if (widget->isVisibleTo(&window) && widget->isEnabled() &&
                (widget->focusPolicy() & Qt::TabFocus) && !widget->focusProxy())
                wanted.insert(widget);
        std::vector<QWidget*> visited;
        for (std::size_t step = 0; step < wanted.size(); ++step) {
            QTest::keyClick(&window, Qt::Key_Tab);
            visited.push_back(window.focusWidget());
        }
        EXPECT_EQ(std::set<QWidget*>(visited.begin(), visited.end()), wanted) << page;
    }
}

TEST_F(AccessibilityTest, SwitchesSayWhatTheyAreAndWhatTheyDo) {
    open("advanced");
    auto& toggle = named<QCheckBox>(QStringLiteral("Show ranking info"));
    auto* element = QAccessible::queryAccessibleInterface(&toggle);
    EXPECT_EQ(element->role(), QAccessible::CheckBox);
    EXPECT_TRUE(element->text(QAccessible::Description).contains(QStringLiteral("score breakdown")));
    EXPECT_FALSE(element->state().checked);
    element->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(element->state().checked);
    EXPECT_TRUE(desk->debug.showRankingInfo());
}

TEST_F(AccessibilityTest, TheShownPageIsTheSelectedTabAndHasTheFocusOnlyWithTheBar) {
    open("advanced");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&desk->window));
    auto* bar = QAccessible::queryAccessibleInterface(desk->window.findChild<PageBar*>());
    EXPECT_EQ(bar->role(), QAccessible::PageTabList);
    ASSERT_EQ(bar->childCount(), int(pages.size()));
    auto* advanced = bar->child(5);
    EXPECT_EQ(advanced->text(QAccessible::Name), QStringLiteral("Advanced"));
    EXPECT_EQ(bar->indexOfChild(advanced), 5);
    EXPECT_TRUE(advanced->state().selected);
    EXPECT_TRUE(advanced->state().focused);
    EXPECT_FALSE(bar->child(0)->state().selected);
    QTest::keyClick(&desk->window, Qt::Key_Tab);
    EXPECT_TRUE(advanced->state().selected);
    EXPECT_FALSE(advanced->state().focused);
    bar->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(desk->window.currentPage(), "general");
    EXPECT_FALSE(advanced->state().selected);
    bar->child(6);
    desk->debug.setShowDebugTab(false);
    EXPECT_EQ(bar->childCount(), 6);
    EXPECT_EQ(bar->child(6), nullptr);
}

TEST_F(AccessibilityTest, HeadingsAreHeadings) {
    open("general");
    std::set<QString> headings;
    forEachVisible(QAccessible::queryAccessibleInterface(&desk->window), [&](QAccessibleInterface& element) {
        if (element.role() == QAccessible::Heading)
            headings.insert(element.text(QAccessible::Name));
    });
    EXPECT_EQ(headings, (std::set<QString>{QStringLiteral("Picker"), QStringLiteral("Character Info")}));
}

} // namespace
} // namespace glyma::qt
