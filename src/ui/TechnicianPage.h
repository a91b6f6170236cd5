#pragma once

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace kelm::ui {

// "*Pannello del &Tecnico": the technician's keypad and display, the manual
// command console, closures, the electronic journal, special functions and
// the test receipts.
class TechnicianPage final : public QWidget {
    Q_OBJECT

public:
    explicit TechnicianPage(QWidget* parent = nullptr);

    void setDisplay(const QString& line1, const QString& line2);
    QString singleCommand() const;
    QString commandFile() const;
    void setCommandFile(const QString& path);
    void setAnswer(const QString& text);
    void focusConsole();

Q_SIGNALS:
    void cmdVirtKBD_Click(int code);
    void Command1_Click();
    void cmdSendCommand_Click(int index);
    void cmdTechFile_Click();
    void cmdChiusuraGIornaliera_Click();
    void cmdReportVenditeOP01_Click();
    void cmdDGFE_Click(int index);
    void cmdDemoTicket_Click(int index);

private:
    QLineEdit* txtVirtDSP_0;
    QLineEdit* txtVirtDSP_1;
    QLineEdit* txtSingleCMD;
    QLineEdit* txtFileCMD;
    QPlainTextEdit* txtAnswerCMD;
};

} // namespace kelm::ui
