#include "ui/VirtualEcrPanel.h"

#include "link/CodePage.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

namespace kelm::ui {

VirtualEcrPanel::VirtualEcrPanel(const QString& paperPath, QWidget* parent)
    : QWidget(parent), paperPath_(paperPath), display_(new QLabel), paper_(new QPlainTextEdit),
      watcher_(new QFileSystemWatcher(this))
{
    setObjectName(QStringLiteral("VirtualEcrPanel"));
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    display_->setObjectName(QStringLiteral("lblVirtualDisplay"));
    display_->setFont(fixed);
    display_->setStyleSheet(QStringLiteral("background: #102010; color: #7CFC00; padding: 6px;"));
    paper_->setObjectName(QStringLiteral("txtVirtualPaper"));
    paper_->setReadOnly(true);
    paper_->setFont(fixed);
    paper_->setLineWrapMode(QPlainTextEdit::NoWrap);
    // The roll is 32 characters wide: show all of it.
    paper_->setMinimumWidth(paper_->fontMetrics().horizontalAdvance(QString(36, u'M')));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(display_);
    layout->addWidget(paper_, 1);
    showDisplay(QString(), QString());

    // The roll file appears with the first receipt; watch its folder until then.
    watcher_->addPath(QFileInfo(paperPath_).absolutePath());
    if (QFile::exists(paperPath_))
        watcher_->addPath(paperPath_);
    auto changed = [this] {
        if (!watcher_->files().contains(paperPath_) && QFile::exists(paperPath_))
            watcher_->addPath(paperPath_);
        reloadPaper();
    };
    connect(watcher_, &QFileSystemWatcher::fileChanged, this, changed);
    connect(watcher_, &QFileSystemWatcher::directoryChanged, this, changed);
    reloadPaper();
}

void VirtualEcrPanel::showDisplay(const QString& line1, const QString& line2)
{
    display_->setText(line1.leftJustified(16) + u'\n' + line2.leftJustified(16));
}

void VirtualEcrPanel::reloadPaper()
{
    QFile file(paperPath_);
    if (!file.open(QIODevice::ReadOnly))
        return;
    paper_->setPlainText(ansi::decode(file.readAll()));
    paper_->verticalScrollBar()->setValue(paper_->verticalScrollBar()->maximum());
}

} // namespace kelm::ui
