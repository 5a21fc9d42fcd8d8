#include "platform/linux/atspi/roles.h"

namespace glyma::atspi {

namespace {

std::string_view otherRole(AtspiRole role) {
    switch (role) {
    case ATSPI_ROLE_DOCUMENT_WEB:
    case ATSPI_ROLE_DOCUMENT_FRAME:
    case ATSPI_ROLE_DOCUMENT_TEXT:
    case ATSPI_ROLE_DOCUMENT_EMAIL:
    case ATSPI_ROLE_HTML_CONTAINER:
        return "AXWebArea";
    case ATSPI_ROLE_APPLICATION:
        return "AXApplication";
    case ATSPI_ROLE_FRAME:
    case ATSPI_ROLE_WINDOW:
    case ATSPI_ROLE_DIALOG:
    case ATSPI_ROLE_ALERT:
    case ATSPI_ROLE_FILE_CHOOSER:
        return "AXWindow";
    case ATSPI_ROLE_PUSH_BUTTON:
    case ATSPI_ROLE_TOGGLE_BUTTON:
        return "AXButton";
    case ATSPI_ROLE_CHECK_BOX:
        return "AXCheckBox";
    case ATSPI_ROLE_RADIO_BUTTON:
        return "AXRadioButton";
    case ATSPI_ROLE_COMBO_BOX:
        return "AXComboBox";
    case ATSPI_ROLE_MENU:
        return "AXMenu";
    case ATSPI_ROLE_MENU_BAR:
        return "AXMenuBar";
    case ATSPI_ROLE_MENU_ITEM:
    case ATSPI_ROLE_CHECK_MENU_ITEM:
    case ATSPI_ROLE_RADIO_MENU_ITEM:
        return "AXMenuItem";
    case ATSPI_ROLE_LINK:
        return "AXLink";
    case ATSPI_ROLE_LABEL:
    case ATSPI_ROLE_STATIC:
    case ATSPI_ROLE_CAPTION:
        return "AXStaticText";
    case ATSPI_ROLE_LIST:
    case ATSPI_ROLE_LIST_BOX:
        return "AXList";
    case ATSPI_ROLE_TABLE:
    case ATSPI_ROLE_TREE_TABLE:
        return "AXTable";
    case ATSPI_ROLE_TABLE_CELL:
    case ATSPI_ROLE_TREE_ITEM:
    case ATSPI_ROLE_LIST_ITEM:
        return "AXCell";
    case ATSPI_ROLE_INVALID:
    case ATSPI_ROLE_UNKNOWN:
        return "AXUnknown";
    default:
        return "AXGroup";
    }
}

bool isTextRole(AtspiRole role) {
    return role == ATSPI_ROLE_ENTRY || role == ATSPI_ROLE_TEXT || role == ATSPI_ROLE_EDITBAR ||
           role == ATSPI_ROLE_AUTOCOMPLETE || role == ATSPI_ROLE_SPIN_BUTTON || role == ATSPI_ROLE_TERMINAL ||
           role == ATSPI_ROLE_PARAGRAPH;
}

} // namespace

std::string_view portRole(AtspiRole role, bool isEditable, bool hasManyLines) {
    if (role == ATSPI_ROLE_PASSWORD_TEXT)
        return "AXSecureTextField";
    const auto other = otherRole(role);
    if (other != "AXWebArea" && (isEditable || isTextRole(role)))
        return hasManyLines ? "AXTextArea" : "AXTextField";
    return other;
}

} // namespace glyma::atspi
