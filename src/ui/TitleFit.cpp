#include "ui/TitleFit.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>

namespace kelm::ui {

namespace {

// Title bars use a larger, often bold font, and an icon and three buttons.
constexpr double kTitleFontScale = 1.3;
constexpr int kTitleBarExtras = 160;

} // namespace

int TitleFit::widthFor(const QString& title)
{
    QFont font = QApplication::font();
    font.setBold(true);
    return int(QFontMetrics(font).horizontalAdvance(title) * kTitleFontScale) + kTitleBarExtras;
}

bool TitleFit::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Show)
        return false;
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (!dialog || dialog->windowTitle().isEmpty())
        return false;
    const int width = widthFor(dialog->windowTitle());
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        // A message box sizes itself from its layout when shown; a spacer as
        // wide as the title is the way to make it wider.
        auto* grid = qobject_cast<QGridLayout*>(box->layout());
        if (grid && !box->property("kelmTitleFit").toBool()) {
            box->setProperty("kelmTitleFit", true);
            grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0, 1,
                          grid->columnCount());
        }
    } else if (dialog->minimumWidth() < width) {
        dialog->setMinimumWidth(width);
    }
    return false;
}

} // namespace kelm::ui
