#include "ui/EditorRules.h"

#include "programming/RecordFields.h"

#include <QEvent>
#include <QLineEdit>
#include <QTimer>

namespace kelm::ui {

namespace {

template <typename Rule>
void keepApplying(QLineEdit* edit, Rule rule)
{
    QObject::connect(edit, &QLineEdit::textEdited, edit, [edit, rule](const QString& text) {
        const QString fixed = rule(text);
        if (fixed == text)
            return;
        const int cursor = edit->cursorPosition() - int(text.size() - fixed.size());
        edit->setText(fixed);
        edit->setCursorPosition(qMax(0, cursor));
    });
}

} // namespace

void makeSlashSafe(QLineEdit* edit)
{
    keepApplying(edit, &programming::replaceSlashes);
}

void makeDigitsOnly(QLineEdit* edit)
{
    keepApplying(edit, &programming::digitsOnly);
}

namespace {

// Selects the whole text as the box gets the focus (after the click that
// gave it, which would otherwise place the cursor).
class SelectAllOnFocus final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            if (auto* edit = qobject_cast<QLineEdit*>(watched))
                QTimer::singleShot(0, edit, &QLineEdit::selectAll);
        return false;
    }
};

} // namespace

void makeDocumentBox(QLineEdit* edit, technician::DocumentBox box)
{
    keepApplying(edit, [box](const QString& text) {
        QString kept;
        for (QChar c : text)
            if (const auto accepted = technician::acceptedKey(box, c))
                kept += *accepted;
        return kept;
    });
    edit->installEventFilter(new SelectAllOnFocus(edit));
}

} // namespace kelm::ui
