#pragma once

#include "link/StatusPanels.h"

#include <QMap>
#include <QStringList>

// A status bar that remembers what each panel shows and every change made.
class RecordingStatus final : public kelm::StatusPanels {
public:
    void setPanel(int panel, const QString& text) override
    {
        panels[panel] = text;
        changes.append(QStringLiteral("%1=%2").arg(panel).arg(text));
    }
    QMap<int, QString> panels;
    QStringList changes;
};
