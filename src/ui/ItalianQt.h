#pragma once

class QCoreApplication;

namespace kelm::ui {

// The program speaks Italian whatever the system's language, and so do
// Qt's own standard buttons and dialogs ("Annulla", "Cerca in:"): Qt's
// Italian catalogue from a "translations" folder beside the program (where
// windeployqt puts it on Windows), else from Qt's own. False when neither
// has it; the buttons then stay in English.
bool installQtItalian(QCoreApplication& app);

} // namespace kelm::ui
