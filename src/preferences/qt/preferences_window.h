#pragma once

#include "picker/qt/appearance.h"
#include "platform/settings_store.h"
#include "preferences/debug_config.h"
#include "preferences/log.h"
#include "preferences/qt/symbols.h"

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QScrollArea;
class QStackedWidget;

namespace glyma::qt {

class PageBar;

/// One tab of the preferences.
struct PreferencesPage {
    std::string id; ///< what is stored and asked for
    QString title;  ///< with a mnemonic; those of the pages are G, E, L, R, P, A and D
    Symbol symbol = Symbol::general;
    int width = 560;                    ///< logical pixels
    std::optional<int> height = {};     ///< none: what the content needs, at most 800
    std::function<QWidget*()> make;     ///< called when the page is first shown; the window owns the result
    std::function<bool()> isThere = {}; ///< asked again when a debug switch changes; none: always
};

/// What the preferences window works with. Everything referred to outlives it.
struct PreferencesWindowServices {
    SettingsStore& settings;
    DebugConfig& debug;
    Log& log;
    /// Asks the desktop for the keyboard when it was not given to the window that was shown; may be empty.
    std::function<void(WId)> activate = {};
};

/// The program's settings: a bar of pages above the page that is shown. It remembers its page, has the size
/// that the page needs and is built when it is first shown. Main thread.
class PreferencesWindow : public QWidget {
    Q_OBJECT

public:
    PreferencesWindow(PreferencesWindowServices services, std::vector<PreferencesPage> pages);

    /// Comes to the front with the page shown last, or the first one.
    void show();
    /// \param id  a page that is not there counts as the first.
    void show(const std::string& id);
    /// The page that is shown, or would be.
    std::string currentPage() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Tab {
        const PreferencesPage* page;
        QScrollArea* area;
    };

    void build();
    void addShortcuts();
    void insertTab(std::size_t position, const PreferencesPage& page);
    void removeTab(std::size_t position);
    void syncPages();
    void barMovedTo(int index);
    void select(const std::string& id);
    void step(int by);
    std::optional<std::size_t> indexOf(const std::string& id) const;
    QSize fittingSize() const;
    void fit();
    void bringToFront();
    void reportState(std::string_view event);
    void applyPalette();

    PreferencesWindowServices services_;
    const std::vector<PreferencesPage> pages_;
    std::unique_ptr<Appearance> appearance_;
    std::vector<Tab> tabs_;
    PageBar* bar_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QVariantAnimation resizing_;
    QTimer activation_;
    QTimer fitting_;
    Subscription debugSubscription_;
    Subscription appearanceSubscription_;
};

} // namespace glyma::qt
