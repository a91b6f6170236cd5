#include "ui/ProgramIcon.h"

#include <QPainter>
#include <QPixmap>

namespace kelm::ui {

QIcon programIcon()
{
    const QColor body(0x2f, 0x4f, 0x6f);
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64}) {
        QPixmap pixmap(64, 64);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(Qt::NoPen);
        p.setBrush(body);
        p.drawRoundedRect(8, 20, 48, 36, 4, 4);
        p.setBrush(QColor(0x7c, 0xfc, 0x00));
        p.drawRect(14, 26, 36, 10);
        p.setPen(QPen(body, 2));
        p.setBrush(Qt::white);
        p.drawRect(18, 6, 28, 18);
        p.drawLine(22, 12, 42, 12);
        p.drawLine(22, 18, 38, 18);
        p.setPen(Qt::NoPen);
        for (int y : {40, 48})
            for (int x : {14, 28, 42})
                p.drawRect(x, y, 8, 5);
        p.end();
        icon.addPixmap(pixmap.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    }
    return icon;
}

} // namespace kelm::ui
