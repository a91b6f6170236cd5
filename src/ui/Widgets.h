#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QHBoxLayout>
#include <QPushButton>

#include <functional>

// Small constructors for named controls: the object name is how tests and
// the model adaptation find a control, so every control gets one.
namespace kelm::ui {

inline QString indexed(const QString& name, int index)
{
    return name + u'_' + QString::number(index);
}

template <typename W, typename... Args>
W* named(const QString& name, Args&&... args)
{
    auto* w = new W(std::forward<Args>(args)...);
    w->setObjectName(name);
    return w;
}

inline QPushButton* namedButton(const QString& name, const QString& text)
{
    return named<QPushButton>(name, text);
}

// The closing buttons of a document form, CmdChiude(0) to cancel and
// CmdChiude(1) to accept (the default), right-aligned; `clicked` gets the index.
// `page` inside a frameless scroll area that lets it grow with the window
// and scrolls it when the screen is smaller than the page (1024x768).
QWidget* scrolling(QWidget* page);

QHBoxLayout* closingButtons(const QString& cancelText, const QString& okText, std::function<void(int)> clicked);

} // namespace kelm::ui
