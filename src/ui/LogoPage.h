#pragma once

#include <QImage>
#include <QList>
#include <QWidget>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QScrollBar;
class QTabWidget;

namespace kelm::ui {

class Dialogs;

// The two receipt logos, one page each in SSTabLoghi: a BMP file made black
// and white and fitted to a size the register takes, resized by hand, shown
// zoomed. Downloading the logo on show is the tab's.
class LogoPage final : public QWidget {
    Q_OBJECT

public:
    explicit LogoPage(Dialogs& dialogs, QWidget* parent = nullptr);

    // The picture of every logo page, in page order; a null image for a
    // page with none.
    const QList<QImage>& pictures() const { return pictures_; }
    int pageOnShow() const;

    void operationStarted(int total);
    void setProgress(int done);
    void operationEnded();

    void cmdBMPLoad_Click(int i);
    void cmdBMResize_Click(int i);
    void HScrBMPZoom_Change(int i);

Q_SIGNALS:
    void downloadRequested(int index); // 2

private:
    QWidget* makeLogoPage(int i);
    void setPicture(int i, const QImage& picture);
    void showSize(int i, QSize size);

    Dialogs& dialogs_;
    QList<QImage> pictures_;
    QTabWidget* SSTabLoghi;
    QList<QLabel*> picLogo;
    QList<QScrollBar*> HScrBMPZoom;
    QList<QComboBox*> cmbBMPLarghezza;
    QList<QComboBox*> cmbBMPAltezza;
    QList<QLabel*> lbmBMPWidth;
    QList<QLabel*> lblBMPHeight;
    QPushButton* download_;
    QProgressBar* pbLogo;
};

} // namespace kelm::ui
