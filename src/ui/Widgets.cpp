#include "ui/Widgets.h"

#include <QScrollArea>

namespace kelm::ui {

QWidget* scrolling(QWidget* page)
{
    auto* area = new QScrollArea;
    area->setObjectName(page->objectName() + QStringLiteral("_scroll"));
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(page);
    return area;
}

QHBoxLayout* closingButtons(const QString& cancelText, const QString& okText, std::function<void(int)> clicked)
{
    auto* cancel = namedButton(indexed(QStringLiteral("CmdChiude"), 0), cancelText);
    auto* ok = namedButton(indexed(QStringLiteral("CmdChiude"), 1), okText);
    ok->setDefault(true);
    QObject::connect(cancel, &QPushButton::clicked, cancel, [clicked] { clicked(0); });
    QObject::connect(ok, &QPushButton::clicked, ok, [clicked] { clicked(1); });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(ok);
    return row;
}

} // namespace kelm::ui
