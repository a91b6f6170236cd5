#include "ui/LineJobs.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointer>

namespace kelm::ui {

void LineJobs::onUiThread(QObject* context, std::function<void()> f)
{
    QMetaObject::invokeMethod(context, std::move(f), Qt::QueuedConnection);
}

void LineJobs::run(QObject* context, Job job, Done done)
{
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    QPointer<QObject> guard(context);
    session_.post([this, job = std::move(job), done = std::move(done), guard](EcrLink& link) {
        job(link, op_);
        QMetaObject::invokeMethod(
            qApp,
            [done, guard] {
                QGuiApplication::restoreOverrideCursor();
                if (guard && done)
                    done();
            },
            Qt::QueuedConnection);
    });
}

} // namespace kelm::ui
