#pragma once

#include "programming/HeaderFooter.h"

#include <QDialog>

namespace kelm::ui {

// The header as it will print: each line padded as it is sent, drawn on a
// paper roll at its print size (double width, double height, or both).
class DlgPreviewIntestazione final : public QDialog {
    Q_OBJECT

public:
    DlgPreviewIntestazione(const QList<programming::HeaderLine>& lines, QWidget* parent = nullptr);
};

} // namespace kelm::ui
