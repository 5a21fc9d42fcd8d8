#pragma once

#include "charinfo/character_info_port.h"
#include "charinfo/character_infos.h"
#include "monitor/shared_flags.h"
#include "platform/mouse_monitor.h"
#include "platform/screens.h"
#include "platform/subscription.h"
#include "text/text_inserter.h"

#include <string>
#include <vector>

namespace glyma {

/// Everything referred to outlives the presenter.
struct CharacterInfoServices {
    CharacterInfos& infos;
    const TextInserter& text;
    LastSelection& lastSelection;
    Screens& screens;
    Bell& bell;
    SharedFlags& flags; ///< isCharacterInfoShowing
    CharacterInfoWindow& window;
    MouseMonitor& mouse;
};

/// Answers "what is this character?" for a text that the user has selected. Main thread.
class CharacterInfoPresenter {
public:
    explicit CharacterInfoPresenter(CharacterInfoServices services);

    /// Opens the window at the pointer, or fills it anew. Rings when there is nothing to show.
    void showCharacterInfo(const std::string& text);
    /// The same for what is selected in the application in front. Asked again for what is shown already, it
    /// gives the window the keyboard, so that it can be used without a mouse.
    void showCharacterInfoForSelection();
    /// The same for what was selected last, in any application.
    void showCharacterInfoForLastSelection();
    void closeCharacterInfo();

private:
    std::string selectedText() const;
    void show(std::vector<CharacterInfo> infos);

    CharacterInfoServices services_;
    std::vector<CharacterInfo> shown_;
    Subscription clicks_;
};

} // namespace glyma
