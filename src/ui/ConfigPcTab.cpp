#include "ui/ConfigPcTab.h"

#include "app/RunTimeLog.h"
#include "server/LogNameHelp.h"
#include "ui/Widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QSerialPortInfo>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

bool isComName(const QString& text)
{
    static const QRegularExpression com(QStringLiteral("^Com\\d{1,2}$"), QRegularExpression::CaseInsensitiveOption);
    return com.match(text.trimmed()).hasMatch();
}

} // namespace

ConfigPcTab::ConfigPcTab(Dialogs& dialogs, QWidget* parent)
    : QWidget(parent), dialogs_(dialogs), cmbModello(named<QComboBox>(QStringLiteral("cmbModello"))),
      cmbComPort(named<QComboBox>(QStringLiteral("cmbComPort"))), cmbSpeed(named<QComboBox>(QStringLiteral("cmbSpeed"))),
      chkSRV(named<QCheckBox>(QStringLiteral("chkSRV"), QStringLiteral("Server attivo"))),
      cmbSRVModalita(named<QComboBox>(QStringLiteral("cmbSRVModalita"))), txtSRVDir(named<QLineEdit>(QStringLiteral("txtSRVDir"))),
      cmdSRVDir(named<QPushButton>(QStringLiteral("cmdSRVDir"), QStringLiteral("..."))),
      txtSRVFile(named<QLineEdit>(QStringLiteral("txtSRVFile"))),
      chkLog(named<QCheckBox>(QStringLiteral("chkLog"), QStringLiteral("Log su file"))),
      chkWrapDescription(named<QCheckBox>(QStringLiteral("chkWrapDescription"), QStringLiteral("A capo descrizione"))),
      chkAlIvaAuto(named<QCheckBox>(QStringLiteral("chkAlIvaAuto"), QStringLiteral("Aliquota IVA automatica"))),
      cmdSalvaConfigPC(named<QPushButton>(QStringLiteral("cmdSalvaConfigPC"), QStringLiteral("Salva"))),
      lstRunTime(named<QListWidget>(QStringLiteral("lstRunTime"))),
      chkRunTimeLog(named<QCheckBox>(QStringLiteral("chkRunTimeLog"), QStringLiteral("Mostra trasmissioni"))),
      lstScontrino(named<QListWidget>(QStringLiteral("lstScontrino"))),
      cmdSpiegaLog(named<QPushButton>(QStringLiteral("cmdSpiegaLog"), QStringLiteral("Nome del file di log")))
{
    QStringList ports;
    for (int n = 1; n <= 32; ++n)
        ports << QStringLiteral("Com%1").arg(n);
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        ports << info.systemLocation();
    ports << QStringLiteral("virtual");
    cmbComPort->addItems(ports);
    cmbComPort->setEditable(true); // any device path can be typed
    cmbComPort->setToolTip(QStringLiteral("Com1..Com32, una porta del sistema, un percorso "
                                          "(/dev/ttyUSB0) oppure virtual per l'ECR virtuale"));
    cmbSpeed->addItems({QStringLiteral("9600"), QStringLiteral("115200"), QStringLiteral("230400")});
    cmbSRVModalita->addItems({QStringLiteral("Normal"), QStringLiteral("Minimized"), QStringLiteral("Iconized"),
                              QStringLiteral("VirtualECR")});

    auto* ecr = new QGroupBox(QStringLiteral("Registratore"));
    auto* ecrForm = new QFormLayout(ecr);
    ecrForm->addRow(QStringLiteral("Modello"), cmbModello);
    ecrForm->addRow(QStringLiteral("Porta"), cmbComPort);
    ecrForm->addRow(QStringLiteral("Velocità"), cmbSpeed);

    auto* server = new QGroupBox(QStringLiteral("Server"));
    auto* serverForm = new QFormLayout(server);
    cmdSRVDir->setMaximumWidth(cmdSRVDir->fontMetrics().horizontalAdvance(QStringLiteral("....")) + 16);
    auto* dirRow = new QHBoxLayout;
    dirRow->addWidget(txtSRVDir);
    dirRow->addWidget(cmdSRVDir);
    serverForm->addRow(chkSRV);
    serverForm->addRow(QStringLiteral("Avvio"), cmbSRVModalita);
    serverForm->addRow(QStringLiteral("Cartella"), dirRow);
    serverForm->addRow(QStringLiteral("File di attesa"), txtSRVFile);
    serverForm->addRow(chkLog);
    serverForm->addRow(chkWrapDescription);
    serverForm->addRow(chkAlIvaAuto);

    auto* settings = new QVBoxLayout;
    settings->addWidget(ecr);
    settings->addWidget(server);
    settings->addWidget(cmdSalvaConfigPC);
    settings->addStretch();

    auto* lists = new QVBoxLayout;
    auto* listHead = new QHBoxLayout;
    listHead->addWidget(chkRunTimeLog);
    listHead->addStretch();
    listHead->addWidget(cmdSpiegaLog);
    lists->addLayout(listHead);
    lists->addWidget(lstRunTime, 3);
    lists->addWidget(new QLabel(QStringLiteral("Righe in coda")));
    lists->addWidget(lstScontrino, 1);

    auto* layout = new QHBoxLayout(this);
    layout->addLayout(settings, 2);
    layout->addLayout(lists, 3);

    chkLog->setChecked(true);
    connect(cmdSalvaConfigPC, &QPushButton::clicked, this, &ConfigPcTab::saveRequested);
    cmdSalvaConfigPC->installEventFilter(this);
    connect(cmdSRVDir, &QPushButton::clicked, this, &ConfigPcTab::cmdSRVDir_Click);
    connect(cmdSpiegaLog, &QPushButton::clicked, this, &ConfigPcTab::cmdSpiegaLog_Click);
    connect(lstRunTime, &QListWidget::itemDoubleClicked, this, &ConfigPcTab::lstRunTime_DblClick);
    connect(chkSRV, &QCheckBox::toggled, this, &ConfigPcTab::serverToggled);
    connect(chkRunTimeLog, &QCheckBox::toggled, this, &ConfigPcTab::runTimeListToggled);
    connect(chkLog, &QCheckBox::toggled, this, &ConfigPcTab::logToggled);
}

void ConfigPcTab::setModels(const QList<technician::ModelInfo>& models)
{
    cmbModello->clear();
    for (const technician::ModelInfo& m : models)
        cmbModello->addItem(m.name);
}

void ConfigPcTab::selectOrAdd(QComboBox* box, const QString& text)
{
    if (!text.isEmpty() && box->findText(text) < 0)
        box->addItem(text);
    box->setCurrentIndex(box->findText(text));
}

void ConfigPcTab::fill(const ConfigPC& config)
{
    // A stored model or speed outside the lists shows as it is stored, so
    // that the next save keeps it.
    selectOrAdd(cmbModello, config.model);
    savedPort_ = config.port;
    savedDevice_ = config.device;
    cmbComPort->setCurrentText(config.device.isEmpty() ? config.port : config.device);
    selectOrAdd(cmbSpeed, config.speed > 0 ? QString::number(config.speed) : QString());
    chkSRV->setChecked(config.serverState == QStringLiteral("On"));
    cmbSRVModalita->setCurrentText(config.serverMode);
    txtSRVDir->setText(config.serverDir);
    txtSRVFile->setText(config.serverFile);
    chkLog->setChecked(config.serverLog.toUpper() != QStringLiteral("OFF"));
    chkWrapDescription->setChecked(config.wrapDescription == QStringLiteral("On"));
    chkAlIvaAuto->setChecked(config.alIvaAuto == QStringLiteral("On"));
}

ConfigForm ConfigPcTab::form() const
{
    ConfigForm f;
    f.model = cmbModello->currentText();
    const QString port = cmbComPort->currentText().trimmed();
    if (isComName(port)) {
        f.comPort = port;
        f.clearDevice = !savedDevice_.isEmpty(); // else the stored device would still win
    } else {
        f.comPort = savedPort_; // the ComN setting stays as it was
        f.device = port;
    }
    f.speed = cmbSpeed->currentText();
    f.serverOn = chkSRV->isChecked();
    f.serverMode = cmbSRVModalita->currentText();
    f.serverDir = txtSRVDir->text();
    f.serverFile = txtSRVFile->text();
    f.logOn = chkLog->isChecked();
    f.wrapDescription = chkWrapDescription->isChecked();
    f.alIvaAuto = chkAlIvaAuto->isChecked();
    return f;
}

bool ConfigPcTab::runTimeListOn() const
{
    return chkRunTimeLog->isChecked();
}

bool ConfigPcTab::logOn() const
{
    return chkLog->isChecked();
}

void ConfigPcTab::addRunTimeEntry(const QString& entry)
{
    if (!chkRunTimeLog->isChecked())
        return;
    lstRunTime->insertItem(0, entry);
    while (lstRunTime->count() > kRunTimeListCap)
        delete lstRunTime->takeItem(lstRunTime->count() - 1);
}

void ConfigPcTab::setQueueLines(const QStringList& lines)
{
    lstScontrino->clear();
    lstScontrino->addItems(lines);
}

void ConfigPcTab::cmdSRVDir_Click()
{
    const QString dir =
        dialogs_.chooseDirectory(QStringLiteral("Indicare la cartella di lavoro temporanea del Server"),
                                 txtSRVDir->text());
    if (!dir.isEmpty())
        txtSRVDir->setText(dir);
}

void ConfigPcTab::cmdSpiegaLog_Click()
{
    dialogs_.showMessage(server::logNameHelpText(), QStringLiteral("Kelm Drev"), Dialogs::Icon::Information);
}

void ConfigPcTab::lstRunTime_DblClick()
{
    const QListWidgetItem* item = lstRunTime->currentItem();
    if (!item)
        return;
    const RunTimeEntryDetail detail = runTimeEntryDetail(item->text());
    if (detail.coherent)
        dialogs_.showMessage(detail.text, detail.title, Dialogs::Icon::Information);
    else
        dialogs_.showMessage(detail.text, QStringLiteral("Kelm Drev"), Dialogs::Icon::Critical);
}

bool ConfigPcTab::eventFilter(QObject* watched, QEvent* event)
{
    // After saving, the focus goes back to the first setting.
    if (watched == cmdSalvaConfigPC && event->type() == QEvent::FocusOut)
        cmbModello->setFocus();
    return QWidget::eventFilter(watched, event);
}

} // namespace kelm::ui
