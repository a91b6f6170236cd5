#include "ui/AboutBox.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSerialPortInfo>
#include <QSysInfo>
#include <QVBoxLayout>

namespace kelm::ui {

AboutBox::AboutBox(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("Informazioni su KelmDrev"));
    auto* text = new QLabel(QStringLiteral("<h3>KelmDrev</h3><p>Versione %1</p>"
                                           "<p>Driver e configurazione per registratori di cassa fiscali.</p>")
                                .arg(QStringLiteral(KELMDREV_VERSION)));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    auto* info = buttons->addButton(QStringLiteral("Info di &sistema..."), QDialogButtonBox::ActionRole);
    info->setObjectName(QStringLiteral("cmdSysInfo"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(info, &QPushButton::clicked, this, [this] {
        QMessageBox::information(this, QStringLiteral("Informazioni di sistema"), systemInformation());
    });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(buttons);
}

QString AboutBox::systemInformation()
{
    QStringList ports;
    for (const QSerialPortInfo& p : QSerialPortInfo::availablePorts())
        ports << p.systemLocation() + (p.description().isEmpty() ? QString() : QStringLiteral(" (") + p.description() + u')');
    return QStringLiteral("Sistema: %1 (%2)\nQt: %3\nPorte seriali: %4")
        .arg(QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(), QString::fromLatin1(qVersion()),
             ports.isEmpty() ? QStringLiteral("nessuna") : ports.join(QStringLiteral(", ")));
}

} // namespace kelm::ui
