#pragma once

#include <QDialog>

namespace kelm::ui {

// Program name, version, and the system facts a support call asks for.
class AboutBox final : public QDialog {
    Q_OBJECT

public:
    explicit AboutBox(QWidget* parent = nullptr);

    // Platform, Qt version and the serial ports the system offers.
    static QString systemInformation();
};

} // namespace kelm::ui
