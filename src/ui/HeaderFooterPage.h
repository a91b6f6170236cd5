#pragma once

#include "programming/HeaderFooter.h"

#include <QWidget>

class QComboBox;
class QLineEdit;

namespace kelm::ui {

// The 12 header and 3 footer lines, each a text with its print size and
// alignment.
class HeaderFooterPage final : public QWidget {
    Q_OBJECT

public:
    explicit HeaderFooterPage(QWidget* parent = nullptr);

    QList<programming::HeaderLine> lines(programming::ReceiptLines kind) const;
    // Lines that come back as none keep their editors as they are.
    void restore(programming::ReceiptLines kind, const QList<programming::RestoredLine>& lines);

Q_SIGNALS:
    void downloadRequested(int index); // cmdSetParametri 0 and 1
    void cmdRecHeader_Click();
    void cmdReadPiede_Click();

private:
    struct LineEditors {
        QLineEdit* text;
        QComboBox* size;
        QComboBox* align;
    };
    QList<LineEditors> header_;
    QList<LineEditors> footer_;
};

} // namespace kelm::ui
