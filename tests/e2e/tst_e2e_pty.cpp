// kelmdrev against ecrsim on a pseudo-terminal: two processes, a real tty in
// between, as on a shop's PC with a USB adapter.
#include "EcrSimProcess.h"
#include "Table.h"
#include <QDir>
#include <QRegularExpression>
#include <QTest>

namespace {

QStringList fileLines(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromLatin1(f.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (QString& l : lines)
        l = l.trimmed();
    return lines;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// The answer file of a receipt: its state, and "Esito" of each line in order.
struct Answer {
    QString state;
    QStringList lines;
};
Answer answerOf(const QString& spool, const QString& name)
{
    Answer answer;
    for (const QString& l : fileLines(QDir(spool).filePath(QStringLiteral("esiti/") + name))) {
        if (l.startsWith(QStringLiteral("Stato=")))
            answer.state = l.mid(6);
        else if (l.startsWith(QStringLiteral("Esito=")))
            answer.lines << l.mid(6);
        else if (l.startsWith(QStringLiteral("Errore=")) || l.startsWith(QStringLiteral("Motivo=")))
            answer.lines.last() += u' ' + l.mid(l.indexOf(u'=') + 1);
    }
    return answer;
}

// ecrsim on a fresh pty, with the program's folder beside it.
class Bench : public EcrSimProcess {
public:
    explicit Bench(const QStringList& simOptions = {})
    {
        QDir().mkpath(spool);
        ready = start(simOptions);
        writeFile(dir.filePath(QStringLiteral("KelmDrev.ini")),
                  QStringLiteral("[Parametri]\r\nModello=Kelm Brio\r\nVelocita=115200\r\nDispositivo=%1\r\n"
                                 "ServerDir=%2\r\nServerFile=*.txt\r\nServerStato=On\r\n")
                      .arg(link, spool)
                      .toLatin1());
    }

    struct Run {
        int status;
        QStringList out;
        QString err;
    };
    Run kelmdrev(const QStringList& args) const
    {
        QProcess p;
        p.start(QStringLiteral(KELMDREV_EXE), QStringList{"--home", dir.path()} + args);
        p.waitForFinished(30000);
        return {p.exitCode(), QString::fromLatin1(p.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts),
                QString::fromUtf8(p.readAllStandardError())};
    }

    const QString spool = dir.filePath(QStringLiteral("spool"));
    bool ready = false;
};

} // namespace

class EndToEndTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sendIdentityReceiptRefusalAndBusy()
    {
        Bench bench;
        QVERIFY(bench.ready);
        const auto receipt = bench.kelmdrev({"send", "a/", "3/S/REPARTO1//1/5.26/1/4/", "5/1/0.00/////", "3/S/X//1/1.00/99/4/"});
        QCOMPARE(receipt.status, 1); // the last record was refused
        // result and status of each record, the answers' other fields dropped
        QCOMPARE(receipt.out.join(u'|').remove(QRegularExpression("/[^|]*")), QStringLiteral("0\t00|0\t00|0\t00|8\t08"));
        QVERIFY(receipt.out[0].contains(QStringLiteral("/99KDV000001/")));
        QVERIFY(receipt.err.contains(QStringLiteral("Err. 8 : Comunicazione errata")));

        QCOMPARE(bench.command("busy 1"), QByteArray("ok"));
        const auto busy = bench.kelmdrev({"send", "x/1/1/1/", "x/1/1/1/"});
        QCOMPARE(busy.status, 1);
        QCOMPARE(busy.out.join(u'|').remove(QRegularExpression("/[^|]*")), QStringLiteral("26\t1A|0\t00"));

        QCOMPARE(fileLines(bench.journal), (QStringList{"a/", "3/S/REPARTO1//1/5.26/1/4/", "5/1/0.00/////", "x/1/1/1/"}));
    }
    void headlessDriverTakesReceiptFiles()
    {
        Bench bench({"--fault", "silence 3100"}); // switched on as the first query gives up
        QVERIFY(bench.ready);
        QProcess driver;
        driver.start(QStringLiteral(KELMDREV_EXE), {"--headless", "--home", bench.dir.path()});
        // The identity lands in section Current once the register answered.
        QTRY_VERIFY_WITH_TIMEOUT(fileLines(bench.dir.filePath("KelmDrev.ini")).contains("SN=99KDV000001"), 10000);

        // A second driver on the same folder is refused.
        const auto second = bench.kelmdrev({"--headless"});
        QCOMPARE(second.status, 1);
        QVERIFY(second.err.contains(QStringLiteral("Driver già attivo")));

        writeFile(QDir(bench.spool).filePath("a.txt"), "3/S/UNO//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        writeFile(QDir(bench.spool).filePath("b.txt"), "3/S/DUE//1/2.00/1/4/\n3/S/X//1/1.00/99/4/\n5/1/0.00/////");
        writeFile(QDir(bench.spool).filePath("c.tmp"), "3/S/NO//1/1.00/1/4/\r\n");
        QTRY_COMPARE_WITH_TIMEOUT(fileLines(bench.journal).filter(QStringLiteral("5/1/")).size(), 2, 10000);
        QCOMPARE(fileLines(bench.journal).filter(QStringLiteral("3/S/")).size(), 2);
        QVERIFY(QFile::exists(QDir(bench.spool).filePath("c.tmp")));
        QVERIFY(!QFile::exists(QDir(bench.spool).filePath("a.txt")));
        QTRY_COMPARE_WITH_TIMEOUT(answerOf(bench.spool, "b.txt").state, QStringLiteral("stampato_con_rifiuti"), 5000);
        QCOMPARE(answerOf(bench.spool, "b.txt").lines, (QStringList{"accettata", "rifiutata 8", "accettata"}));
        QTRY_COMPARE_WITH_TIMEOUT(answerOf(bench.spool, "a.txt").state, QStringLiteral("stampato"), 5000);

        // A receipt it cannot claim (where it would be moved, a folder): the
        // wait costs nothing.
        writeFile(QDir(bench.spool).filePath("fermo.txt"), "3/S/FERMO//1/1.00/1/4/\r\n");
        QVERIFY(QDir(bench.spool).mkpath("fermo.txt.drev/dentro"));
        const double before = cpuSeconds(driver.processId());
        QTest::qWait(1000);
        const double used = cpuSeconds(driver.processId()) - before;
        QVERIFY2(used < 0.05, qPrintable(QString::number(used)));

        driver.terminate(); // SIGTERM
        QVERIFY(driver.waitForFinished(10000));
        QCOMPARE(driver.exitStatus(), QProcess::NormalExit);
        QCOMPARE(driver.exitCode(), 0);
        QVERIFY(QString::fromUtf8(driver.readAllStandardError()).contains(QStringLiteral("Driver fermato")));
    }
    void pulledAndPluggedBackMidReceipt()
    {
        QStringList receipt;
        for (int i = 1; i <= 8; ++i)
            receipt << QStringLiteral("3/S/ITEM%1//1/1.00/1/4/").arg(i);
        receipt << QStringLiteral("5/1/0.00/////");
        Bench bench({"--delay", "150"}); // slow enough to pull the plug half-way
        QVERIFY(bench.ready);
        QProcess driver;
        driver.start(QStringLiteral(KELMDREV_EXE), {"--headless", "--home", bench.dir.path()});
        QTRY_VERIFY_WITH_TIMEOUT(fileLines(bench.journal).contains("e/"), 10000);
        writeFile(QDir(bench.spool).filePath("a.txt"), (receipt.join("\r\n") + "\r\n").toLatin1());
        QTRY_VERIFY_WITH_TIMEOUT(fileLines(bench.journal).filter("3/S/").size() >= 3, 10000);
        QCOMPARE(bench.command("unplug"), QByteArray("ok"));
        QCOMPARE(bench.nextLine(), QByteArray("unplugged"));
        QByteArray said;
        QTRY_VERIFY_WITH_TIMEOUT((said += driver.readAllStandardError()).contains("ECR non risponde: nuovo tentativo alle"),
                                 40000);
        QCOMPARE(answerOf(bench.spool, "a.txt").state, QStringLiteral("in_corso"));
        // Plugged back in: the rest goes out without a restart.
        QCOMPARE(bench.command("replug"), QByteArray("ok"));
        QTRY_VERIFY_WITH_TIMEOUT(fileLines(bench.journal).contains(receipt.last()), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(answerOf(bench.spool, "a.txt").state != QStringLiteral("in_corso"), 5000);
        QVERIFY((said += driver.readAllStandardError()).contains("ECR di nuovo in linea") && said.contains("Firmware ECR: 1.00"));
        driver.terminate(); // SIGTERM
        QVERIFY(driver.waitForFinished(15000));
        QCOMPARE(driver.exitCode(), 0);

        // Every line is in the journal once and "accettata", or not in it and
        // said so: the one in flight when the plug went (incerta) and the one
        // whose handshake failed (non_inviata).
        const QStringList sent = fileLines(bench.journal).filter(QRegularExpression("^[35]/"));
        const Answer answer = answerOf(bench.spool, "a.txt");
        QCOMPARE(answer.lines.size(), receipt.size());
        for (int i = 0; i < receipt.size(); ++i) {
            QVERIFY2(sent.count(receipt[i]) <= 1, qPrintable(receipt[i] + " twice: " + sent.join('|')));
            const QString fate = answer.lines[i];
            QVERIFY2(sent.contains(receipt[i]) ? fate == "accettata" || fate == "incerta" : fate != "accettata",
                     qPrintable(receipt[i] + ": " + fate));
        }
        QVERIFY2(answer.lines.contains("non_inviata linea_persa"), qPrintable(answer.lines.join('|')));
        QCOMPARE(answer.state, answer.lines.contains("incerta") ? "incerto" : "stampato_con_rifiuti");
    }
    void windowWithTheRegisterOffAtStart()
    {
        Bench bench({"--fault", "silence 3100"}); // switched on as the first query gives up
        QVERIFY(bench.ready);
        QProcess driver;
        driver.start(QStringLiteral(KELMDREV_EXE), {"--home", bench.dir.path()});
        writeFile(QDir(bench.spool).filePath("a.txt"), "3/S/UNO//1/1.00/1/4/\r\n5/1/0.00/////\r\n");
        QTRY_COMPARE_WITH_TIMEOUT(answerOf(bench.spool, "a.txt").state, QStringLiteral("stampato"), 40000);
        QCOMPARE(fileLines(bench.journal).filter(QRegularExpression("^[35]/")),
                 (QStringList{"3/S/UNO//1/1.00/1/4/", "5/1/0.00/////"}));
        driver.terminate(); // SIGTERM
        QVERIFY(driver.waitForFinished(15000));
    }
    // Started with settings it cannot use: headless exits 1, a command 2,
    // saying why and printing no result.
    void refusesToStart_data()
    {
        columns<QString, QString, QString>("mode", "ini", "message");
        const QString p = QStringLiteral("[Parametri]\r\nVelocita=9600\r\n");
        row("no model", "--headless", p + "Dispositivo=virtual\r\n", "Tipo Modello non impostato");
        row("unknown model", "--headless", p + "Modello=Nessuno\r\nDispositivo=virtual\r\n", "Modello sconosciuto");
        row("spool folder missing", "--headless", p + "Modello=Velt\r\nDispositivo=virtual\r\nServerDir=/nonexistent/spool\r\n",
            "La cartella del server non esiste");
        row("port cannot be opened", "--headless", p + "Modello=Velt\r\nDispositivo=/dev/kelmdrev-none\r\n",
            "Impossibile Aprire Porta /dev/kelmdrev-none");
        row("send, no model", "send", p + "Dispositivo=/dev/null\r\n", "Tipo Modello non impostato");
        row("send, no such port", "send", p + "Modello=Kelm Brio\r\nDispositivo=/dev/kelmdrev-none\r\n",
            "Impossibile Aprire Porta /dev/kelmdrev-none");
    }
    void refusesToStart()
    {
        QFETCH(QString, mode);
        QTemporaryDir dir;
        writeFile(dir.filePath("KelmDrev.ini"), fetch<QString>("ini").toLatin1());
        QProcess p;
        p.start(QStringLiteral(KELMDREV_EXE), QStringList{"--home", dir.path(), mode} + (mode == "send" ? QStringList{"a/"} : QStringList{}));
        QVERIFY(p.waitForFinished(10000));
        QCOMPARE(p.exitCode(), mode == "send" ? 2 : 1);
        const QString err = QString::fromUtf8(p.readAllStandardError());
        QVERIFY2(err.contains(fetch<QString>("message")), qPrintable(err));
        QVERIFY(mode != "send" || p.readAllStandardOutput().isEmpty());
    }
};

QTEST_GUILESS_MAIN(EndToEndTest)
#include "tst_e2e_pty.moc"
