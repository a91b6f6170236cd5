#pragma once

#include <QString>

#include <array>

// The words of the logo pages and of their messages, exactly as the user
// has always seen them. "\r\n" joins the lines of a message box.
namespace kelm::logos {

// Captions of the pages of SSTabLoghi, in page order: page 0 holds logo 1,
// printed at the head of the receipt, page 1 logo 2, printed at its end.
inline const std::array<QString, 2> kLogoPageCaptions{QStringLiteral("Intestazione Scontrino (1)"),
                                                      QStringLiteral("Fine Scontrino (2)")};

// Controls of each page.
inline const QString kLoadButton = QStringLiteral("Leggi BMP");
inline const QString kZoomLabel = QStringLiteral("Zoom");
inline const QString kSizeFrame = QStringLiteral("Dimensioni BMP");
inline const QString kResizeButton = QStringLiteral("Ridimensiona");
inline const QString kWidthLabel = QStringLiteral("Largh.:");
inline const QString kHeightLabel = QStringLiteral("Alt.:");

// The zoom bar, in per cent of the picture's own size.
constexpr int kZoomMinimum = 100;
constexpr int kZoomMaximum = 1000;
constexpr int kZoomInitial = 100;

// Title of the informative boxes of the logo pages.
inline const QString kMessageTitle = QStringLiteral("Kelm Drev");

// Shown before the file dialog of every load.
inline const QString kLoadAdvice = QStringLiteral(
    "Il sistema ridimensionerà automaticamente\r\n"
    "le immagini alla risoluzione più vicina a \r\n"
    "[64,128,256] x [64,128,256].\r\n"
    "Si consiglia di caricare immagini già\r\n"
    "dimensionate opportunamente");

inline const QString kBmpFileFilter = QStringLiteral("BMP Files|*.bmp");

// A loaded picture whose sides are not all 64, 128 or 256 (the double blank
// belongs to the text).
inline const QString kNonStandardSize =
    QStringLiteral("Logo non  a dimensioni standard.\r\nRidimensione automatica");

// Resize by hand with a width or height that is not a number.
inline const QString kWrongResizeValue = QStringLiteral("Valore di Larghezza o altezza errato");

// Download: no picture, or one the register does not take.
inline const QString kLogoNotSet = QStringLiteral("Logo non impostato");
// Download: first line of the failure box (title "Attenzione", critical icon).
inline const QString kDownloadFailure = QStringLiteral("Errore in scarico logo");
// Download: every row sent; the register keeps the logo but prints it only
// once it is switched on there.
inline const QString kDownloadDone = QStringLiteral("Logo Scaricato, ricordarsi di attivarlo");

// "Largh.:" / "Alt.:" followed by a size in pixels.
inline QString widthLabelText(int width) { return kWidthLabel + QString::number(width); }
inline QString heightLabelText(int height) { return kHeightLabel + QString::number(height); }

} // namespace kelm::logos
