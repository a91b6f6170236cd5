#include "ui/EditorRules.h"

#include "programming/RecordFields.h"

#include <QLineEdit>

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

} // namespace kelm::ui
