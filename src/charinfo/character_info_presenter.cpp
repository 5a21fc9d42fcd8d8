#include "charinfo/character_info_presenter.h"

#include "charinfo/panel_placement.h"

#include <utility>

namespace glyma {

CharacterInfoPresenter::CharacterInfoPresenter(CharacterInfoServices services)
    : services_(std::move(services)) {}

void CharacterInfoPresenter::showCharacterInfo(const std::string& text) {
    show(services_.infos.buildInfos(text, shownCharacters));
}

void CharacterInfoPresenter::showCharacterInfoForSelection() {
    if (services_.window.hasKeyboard())
        return;
    auto infos = services_.infos.buildInfos(selectedText(), shownCharacters);
    if (services_.flags.isCharacterInfoShowing && infos == shown_)
        return services_.window.takeKeyboard();
    show(std::move(infos));
}

void CharacterInfoPresenter::showCharacterInfoForLastSelection() {
    showCharacterInfo(services_.lastSelection.anywhere().value_or(std::string()));
}

std::string CharacterInfoPresenter::selectedText() const {
    if (auto text = services_.text.selectedText())
        return *std::move(text);
    // A field that tells its selection and has none; what was selected in it before may still be kept.
    if (services_.text.focusedElementReportsSelection())
        return {};
    return services_.lastSelection.inFrontApplication().value_or(std::string());
}

void CharacterInfoPresenter::show(std::vector<CharacterInfo> infos) {
    if (infos.empty())
        return services_.bell.ring();
    shown_ = std::move(infos);
    const auto screens = services_.screens.all();
    services_.window.show(shown_,
                          characterInfoFrame(services_.screens.pointerLocation(), shown_.size(), screens));
    if (!clicks_)
        clicks_ = services_.mouse.observe([this](MouseEvent event) {
            if (event == MouseEvent::leftDown || event == MouseEvent::otherDown)
                closeCharacterInfo();
        });
    services_.flags.isCharacterInfoShowing = true;
}

void CharacterInfoPresenter::closeCharacterInfo() {
    services_.flags.isCharacterInfoShowing = false;
    clicks_.reset();
    shown_.clear();
    services_.window.hide();
}

} // namespace glyma
