#include "service/DriverStatus.h"

#include "app/RunTimeLog.h"

namespace kelm::service {

namespace {
const QString kEcrErrorTag = QStringLiteral("ECR-errore :");
} // namespace

void StatusRecorder::failure(const QString& text)
{
    update([&](DriverStatus& s) {
        s.lastError = text;
        s.lastErrorAt = QDateTime::currentDateTime();
    });
}

void StatusRecorder::setPanel(int panel, const QString& text)
{
    if (panel == 2 && !text.isEmpty())
        failure(text);
    next_.setPanel(panel, text);
}

void StatusRecorder::showMessage(const QString& text, const QString& title, Icon icon)
{
    if (icon == Icon::Critical)
        failure(text);
    next_.showMessage(text, title, icon);
}

Operator::Button StatusRecorder::ask(const QString& text, const QString& title, Icon icon,
                                     const QList<Button>& buttons, Button defaultButton)
{
    return next_.ask(text, title, icon, buttons, defaultButton);
}

void StatusRecorder::addRunTimeEntry(const QString& entry)
{
    if (entry.startsWith(kEcrErrorTag))
        failure(entry.mid(kEcrErrorTag.size()));
    else if (entry.startsWith(kEcrTag))
        failure(entry.mid(kEcrTag.size()));
    next_.addRunTimeEntry(entry);
}

void StatusRecorder::queueChanged(const QStringList& lines)
{
    update([&](DriverStatus& s) { s.queueLength = int(lines.size()); });
    next_.queueChanged(lines);
}

DriverStatus StatusRecorder::status() const
{
    const QMutexLocker lock(&mutex_);
    return status_;
}

void StatusRecorder::update(const std::function<void(DriverStatus&)>& change)
{
    const QMutexLocker lock(&mutex_);
    change(status_);
}

} // namespace kelm::service
