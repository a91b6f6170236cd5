#include "ui/LogoPage.h"

#include "logos/LogoBitmap.h"
#include "logos/LogoFit.h"
#include "logos/LogoTexts.h"
#include "ui/Dialogs.h"
#include "ui/Widgets.h"

#include <QCursor>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace kelm::ui {

namespace {

QComboBox* sideList(const QString& name)
{
    auto* list = named<QComboBox>(name);
    for (const int side : logos::kLogoSides)
        list->addItem(QString::number(side));
    return list;
}

} // namespace

LogoPage::LogoPage(Dialogs& dialogs, QWidget* parent)
    : QWidget(parent), dialogs_(dialogs), SSTabLoghi(named<QTabWidget>(QStringLiteral("SSTabLoghi"))),
      download_(namedButton(QStringLiteral("cmdSetParametri_2"), QStringLiteral("Scarica logo"))),
      pbLogo(named<QProgressBar>(QStringLiteral("pbLogo")))
{
    setObjectName(QStringLiteral("pageLoghi"));
    for (int i = 0; i < int(logos::kLogoPageCaptions.size()); ++i) {
        pictures_.append(QImage());
        SSTabLoghi->addTab(makeLogoPage(i), logos::kLogoPageCaptions[static_cast<size_t>(i)]);
    }
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(download_);
    bottom->addWidget(pbLogo);
    bottom->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(SSTabLoghi);
    layout->addLayout(bottom);
    operationEnded();
    connect(download_, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(2); });
}

QWidget* LogoPage::makeLogoPage(int i)
{
    auto* view = new QScrollArea;
    picLogo.append(named<QLabel>(indexed(QStringLiteral("picLogo"), i)));
    picLogo.back()->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    view->setWidget(picLogo.back());
    view->setWidgetResizable(true);

    auto* load = namedButton(indexed(QStringLiteral("cmdBMPLoad"), i), logos::kLoadButton);
    auto* zoom = named<QScrollBar>(indexed(QStringLiteral("HScrBMPZoom"), i), Qt::Horizontal);
    zoom->setRange(logos::kZoomMinimum, logos::kZoomMaximum);
    zoom->setValue(logos::kZoomInitial);
    HScrBMPZoom.append(zoom);

    auto* sizes = named<QGroupBox>(indexed(QStringLiteral("frmLoghiDim"), i), logos::kSizeFrame);
    cmbBMPLarghezza.append(sideList(indexed(QStringLiteral("cmbBMPLarghezza"), i)));
    cmbBMPAltezza.append(sideList(indexed(QStringLiteral("cmbBMPAltezza"), i)));
    auto* resize = namedButton(indexed(QStringLiteral("cmdBMResize"), i), logos::kResizeButton);
    lbmBMPWidth.append(named<QLabel>(indexed(QStringLiteral("lbmBMPWidth"), i)));
    lblBMPHeight.append(named<QLabel>(indexed(QStringLiteral("lblBMPHeight"), i)));
    auto* sizeGrid = new QGridLayout(sizes);
    sizeGrid->addWidget(cmbBMPLarghezza.back(), 0, 0);
    sizeGrid->addWidget(cmbBMPAltezza.back(), 0, 1);
    sizeGrid->addWidget(resize, 0, 2);
    sizeGrid->addWidget(lbmBMPWidth.back(), 1, 0);
    sizeGrid->addWidget(lblBMPHeight.back(), 1, 1);
    showSize(i, {});

    auto* controls = new QHBoxLayout;
    controls->addWidget(load);
    controls->addWidget(new QLabel(logos::kZoomLabel));
    controls->addWidget(zoom, 1);
    controls->addWidget(sizes);
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(view, 1);
    layout->addLayout(controls);

    connect(load, &QPushButton::clicked, this, [this, i] { cmdBMPLoad_Click(i); });
    connect(resize, &QPushButton::clicked, this, [this, i] { cmdBMResize_Click(i); });
    connect(zoom, &QScrollBar::valueChanged, this, [this, i] { HScrBMPZoom_Change(i); });
    return page;
}

int LogoPage::pageOnShow() const
{
    return SSTabLoghi->currentIndex();
}

void LogoPage::operationStarted(int total)
{
    pbLogo->setRange(0, total);
    pbLogo->setValue(0);
    pbLogo->show();
    download_->setEnabled(false);
}

void LogoPage::setProgress(int done)
{
    pbLogo->setValue(done);
}

void LogoPage::operationEnded()
{
    pbLogo->hide();
    download_->setEnabled(true);
}

void LogoPage::cmdBMPLoad_Click(int i)
{
    dialogs_.showMessage(logos::kLoadAdvice, logos::kMessageTitle, Dialogs::Icon::Information);
    const QString path = dialogs_.chooseFile(logos::kLoadButton, logos::kBmpFileFilter);
    if (path.isEmpty())
        return;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    const logos::LoadedBitmap loaded = logos::readBmpFile(path);
    const logos::FittedLogo fitted = loaded.error.isEmpty() ? logos::fitLoadedLogo(loaded.image) : logos::FittedLogo{};
    QGuiApplication::restoreOverrideCursor();
    if (!loaded.error.isEmpty()) {
        dialogs_.showMessage(loaded.error, QStringLiteral("Attenzione"), Dialogs::Icon::Critical);
        return;
    }
    showSize(i, fitted.loadedSize);
    if (!fitted.standardSize)
        dialogs_.showMessage(logos::kNonStandardSize, logos::kMessageTitle, Dialogs::Icon::Information);
    cmbBMPLarghezza[i]->setCurrentIndex(logos::sideListPosition(fitted.image.width()));
    cmbBMPAltezza[i]->setCurrentIndex(logos::sideListPosition(fitted.image.height()));
    setPicture(i, fitted.image);
}

void LogoPage::cmdBMResize_Click(int i)
{
    const logos::ResizedLogo resized =
        logos::resizeByHand(pictures_[i], cmbBMPLarghezza[i]->currentText(), cmbBMPAltezza[i]->currentText());
    if (!resized.error.isEmpty()) {
        dialogs_.showMessage(resized.error, logos::kMessageTitle, Dialogs::Icon::NoIcon);
        return;
    }
    if (!resized.image.isNull())
        setPicture(i, resized.image);
}

void LogoPage::HScrBMPZoom_Change(int i)
{
    const QImage& picture = pictures_[i];
    if (picture.isNull()) {
        picLogo[i]->clear();
        return;
    }
    const int zoom = HScrBMPZoom[i]->value();
    // Pixels are repeated, not blended: the view shows the dots the register prints.
    picLogo[i]->setPixmap(QPixmap::fromImage(picture.scaled(picture.size() * zoom / 100, Qt::IgnoreAspectRatio,
                                                            Qt::FastTransformation)));
}

void LogoPage::setPicture(int i, const QImage& picture)
{
    pictures_[i] = picture;
    showSize(i, picture.size());
    HScrBMPZoom_Change(i);
}

void LogoPage::showSize(int i, QSize size)
{
    lbmBMPWidth[i]->setText(logos::widthLabelText(std::max(size.width(), 0)));
    lblBMPHeight[i]->setText(logos::heightLabelText(std::max(size.height(), 0)));
}

} // namespace kelm::ui
