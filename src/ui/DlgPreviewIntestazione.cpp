#include "ui/DlgPreviewIntestazione.h"

#include "programming/PrintLine.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPainter>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

// The paper roll: 32 fixed-pitch columns, lines as tall as their size asks.
class PaperRoll final : public QWidget {
public:
    explicit PaperRoll(QList<programming::HeaderLine> lines)
        : lines_(std::move(lines)), font_(QFontDatabase::systemFont(QFontDatabase::FixedFont))
    {
        font_.setPointSize(11);
        const QFontMetrics m(font_);
        column_ = m.horizontalAdvance(u'M');
        row_ = m.height();
        int height = 2 * margin_;
        for (const auto& line : lines_)
            height += row_ * (doubleHeight(line.size) ? 2 : 1);
        setFixedSize(32 * column_ + 2 * margin_, height);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter p(this);
        p.fillRect(rect(), QColor(0xfd, 0xfc, 0xf5));
        p.setFont(font_);
        p.setPen(Qt::black);
        int y = margin_;
        for (const auto& line : lines_) {
            const qreal sx = programming::printLineWidth(line.size) == 16 ? 2.0 : 1.0;
            const qreal sy = doubleHeight(line.size) ? 2.0 : 1.0;
            const QString text = programming::paddedLine(line.text, line.size, line.align);
            p.save();
            p.translate(margin_, y);
            p.scale(sx, sy);
            p.drawText(QRectF(0, 0, 32 * column_ / sx, row_), Qt::AlignLeft | Qt::AlignVCenter, text);
            p.restore();
            y += int(row_ * sy);
        }
    }

private:
    static bool doubleHeight(int size) { return size == 1 || size == 3; }

    QList<programming::HeaderLine> lines_;
    QFont font_;
    int column_ = 0;
    int row_ = 0;
    int margin_ = 12;
};

} // namespace

DlgPreviewIntestazione::DlgPreviewIntestazione(const QList<programming::HeaderLine>& lines, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("DlgPreviewIntestazione"));
    setWindowTitle(QStringLiteral("Anteprima intestazione"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new PaperRoll(lines), 0, Qt::AlignHCenter);
    layout->addWidget(buttons);
}

} // namespace kelm::ui
