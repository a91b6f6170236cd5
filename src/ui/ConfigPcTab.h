#pragma once

#include "app/Configuration.h"
#include "technician/ModelTable.h"
#include "ui/Dialogs.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace kelm::ui {

// "Configuraz. PC": the PC-side settings, the run-time list and the queue.
class ConfigPcTab final : public QWidget {
    Q_OBJECT

public:
    ConfigPcTab(Dialogs& dialogs, QWidget* parent = nullptr);

    void setModels(const QList<technician::ModelInfo>& models);
    // Fills the controls from the loaded settings.
    void fill(const ConfigPC& config);
    // The controls as the save reads them.
    ConfigForm form() const;

    bool runTimeListOn() const;
    bool logOn() const;

public Q_SLOTS:
    void addRunTimeEntry(const QString& entry);
    void setQueueLines(const QStringList& lines);

Q_SIGNALS:
    // cmdSalvaConfigPC: the owner saves and applies.
    void saveRequested();
    void serverToggled(bool on);
    void runTimeListToggled(bool on);
    void logToggled(bool on);

private:
    void cmdSRVDir_Click();
    void cmdSpiegaLog_Click();
    void lstRunTime_DblClick();
    bool eventFilter(QObject* watched, QEvent* event) override;

    Dialogs& dialogs_;
    static void selectOrAdd(QComboBox* box, const QString& text);

    QString savedPort_;   // "ComN" kept when a device path is chosen instead
    QString savedDevice_; // Dispositivo as loaded
    QComboBox* cmbModello;
    QComboBox* cmbComPort;
    QComboBox* cmbSpeed;
    QCheckBox* chkSRV;
    QComboBox* cmbSRVModalita;
    QLineEdit* txtSRVDir;
    QPushButton* cmdSRVDir;
    QLineEdit* txtSRVFile;
    QCheckBox* chkLog;
    QCheckBox* chkWrapDescription;
    QCheckBox* chkAlIvaAuto;
    QPushButton* cmdSalvaConfigPC;
    QListWidget* lstRunTime;
    QCheckBox* chkRunTimeLog;
    QListWidget* lstScontrino;
    QPushButton* cmdSpiegaLog;
};

} // namespace kelm::ui
