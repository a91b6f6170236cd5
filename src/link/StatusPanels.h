#pragma once

#include <QString>

namespace kelm {

// The main window's status bar as the layers below the window see it:
// panel 1 a title ("Attenzione!", "Errore Nei Parametri"), panel 2 the
// detail, panels 3 and 4 the register's identity. The window shows it, the
// headless mode writes it to standard error, tests record it.
class StatusPanels {
public:
    virtual ~StatusPanels() = default;
    virtual void setPanel(int panel, const QString& text) = 0;
};

} // namespace kelm
