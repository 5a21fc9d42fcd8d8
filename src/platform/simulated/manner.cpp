#include "platform/simulated/manner.h"

namespace glyma::simulated {

Manner wellBehaved() {
    return {};
}

Manner silent() {
    Manner manner;
    manner.isFocusReported = false;
    manner.reportsSelection = false;
    manner.reportsSelectedText = false;
    manner.reportsBounds = false;
    manner.setSelection = manner.setSelectedText = manner.setValue = Response::lacks;
    return manner;
}

Manner terminal() {
    auto manner = silent();
    manner.pasteChords = {controlShiftV};
    manner.primaryPasteChords = {shiftInsert};
    manner.typesControlCharacters = true;
    return manner;
}

Manner ignoresReplacement() {
    Manner manner;
    manner.setSelectedText = Response::ignores;
    return manner;
}

Manner ignoresSelection() {
    Manner manner;
    manner.setSelection = Response::ignores;
    return manner;
}

Manner valueOnly() {
    Manner manner;
    manner.setSelectedText = Response::lacks;
    return manner;
}

Manner slow(std::chrono::milliseconds answerTime) {
    Manner manner;
    manner.answerTime = answerTime;
    return manner;
}

Manner lateKeys(std::chrono::milliseconds keyLag) {
    Manner manner;
    manner.keyLag = keyLag;
    return manner;
}

} // namespace glyma::simulated
