#include "SendCommand.h"

#include "app/Configuration.h"
#include "app/EcrLine.h"
#include "app/ProgramFolder.h"
#include "link/PanelCommand.h"

namespace kelm {

namespace {

// The status bar of a terminal: a title and its detail on one line.
class StreamStatusPanels final : public StatusPanels {
public:
    explicit StreamStatusPanels(QTextStream& err) : err_(err) {}
    void setPanel(int panel, const QString& text) override
    {
        if (panel == 1)
            title_ = text;
        else if (panel == 2 && !text.isEmpty())
            err_ << title_ << (title_.isEmpty() ? "" : " ") << text << Qt::endl;
    }

private:
    QTextStream& err_;
    QString title_;
};

} // namespace

int RunSendCommand(const CommandLine& commandLine, QTextStream& out, QTextStream& err)
{
    const QString folder = ProgramFolder(commandLine.home);
    const IniFile ini(IniPath(folder));
    StreamStatusPanels status(err);
    ConfigPC config;
    if (!LoadConfiguration(ini, folder, config, status)) {
        err << "Configurazione incompleta in " << ini.path() << Qt::endl;
        return 2;
    }
    EcrLine line(config, folder);
    if (!line.open()) {
        err << line.openError() << Qt::endl;
        return 2;
    }
    PanelCommand panelCommand(line.link(), status);
    bool allAccepted = true;
    for (const QString& record : commandLine.records) {
        const qint16 result = panelCommand(record);
        allAccepted = allAccepted && result == 0;
        out << result << '\t' << panelCommand.LastAnswer << Qt::endl;
    }
    return allAccepted ? 0 : 1;
}

} // namespace kelm
