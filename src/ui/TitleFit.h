#pragma once

#include <QObject>

namespace kelm::ui {

// Every dialog and message box of the program opens wide enough for its
// whole title: the window manager's title font and buttons take more room
// than Qt reckons with, and "Kelm Drev" came out as "Ke… ev". Installed on
// the application by the main window.
class TitleFit final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // The width a window needs for `title` in its title bar, buttons included.
    static int widthFor(const QString& title);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace kelm::ui
