#include "EcrSession.h"

#include <QMetaObject>

namespace kelm {

EcrSession::EcrSession()
{
    thread_.setObjectName(QStringLiteral("ecr-line"));
    moveToThread(&thread_);
    thread_.start();
}

EcrSession::~EcrSession()
{
    thread_.quit();
    thread_.wait();
}

void EcrSession::post(Job job)
{
    QMetaObject::invokeMethod(this, std::move(job), Qt::QueuedConnection);
}

void EcrSession::run(const Job& job)
{
    Q_ASSERT(QThread::currentThread() != &thread_);
    QMetaObject::invokeMethod(this, job, Qt::BlockingQueuedConnection);
}

} // namespace kelm
