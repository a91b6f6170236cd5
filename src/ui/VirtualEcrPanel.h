#pragma once

#include <QWidget>

class QFileSystemWatcher;
class QLabel;
class QPlainTextEdit;

namespace kelm::ui {

// The built-in register on screen: its two display lines and its paper roll
// as it prints, so that someone trying the program sees receipts come out.
class VirtualEcrPanel final : public QWidget {
    Q_OBJECT

public:
    VirtualEcrPanel(const QString& paperPath, QWidget* parent = nullptr);

public Q_SLOTS:
    void showDisplay(const QString& line1, const QString& line2);
    void reloadPaper();

private:
    QString paperPath_;
    QLabel* display_;
    QPlainTextEdit* paper_;
    QFileSystemWatcher* watcher_;
};

} // namespace kelm::ui
