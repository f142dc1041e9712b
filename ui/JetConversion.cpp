#include "ui/JetConversion.h"

#include "core/Dialogs.h"
#include "core/Waits.h"
#include "core/vbMain.h"
#include "platform/dao/Dao.h"
#include "platform/desktop/FilePickers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLookAgainMs = 1000;
constexpr int kEndMs = 2000;

const QString kCommand = u"kavro-import"_s;

void box(const QString &text, Dialogs::Icon icon)
{
    vbMain().dialogs->messageBox(text, AppTitle(), icon, Dialogs::Ok);
}

QString commandPath()
{
    const QString beside = QCoreApplication::applicationDirPath() + u'/' + kCommand;
    return QFileInfo(beside).isExecutable() ? beside : QStandardPaths::findExecutable(kCommand);
}

/** A run of the import command. Destroying it ends the command, which clears up after itself. */
class ImportRun
{
public:
    ImportRun(QWidget &window, const QString &from, const QString &to)
        : m_box(QCoreApplication::translate("JetConversion", "Converting %1...").arg(QFileInfo(from).fileName()),
              QCoreApplication::translate("JetConversion", "Cancel"), 0, 100, &window)
    {
        m_box.setWindowTitle(AppTitle());
        m_box.setWindowModality(Qt::WindowModal);
        m_box.setAutoClose(false);
        m_box.setAutoReset(false);
        QObject::connect(&m_box, &QProgressDialog::canceled, &m_process, &QProcess::terminate);
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_box, [this] { read(); });
        QObject::connect(&m_process, &QProcess::stateChanged, &m_box, [this] { m_changed.fire(); });
        m_process.start(commandPath(), { u"--progress"_s, from, to });
    }
    ~ImportRun()
    {
        m_process.disconnect();
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        m_process.waitForFinished(kEndMs);
    }
    ImportRun(const ImportRun &) = delete;
    ImportRun &operator=(const ImportRun &) = delete;

    Task<void> wait()
    {
        while (m_process.state() != QProcess::NotRunning)
            co_await waits::WaitFor(m_changed, kLookAgainMs);
        read();
    }
    bool isCancelled() const { return m_box.wasCanceled(); }
    bool isSuccessful() const
    {
        return m_process.error() != QProcess::FailedToStart && m_process.exitStatus() == QProcess::NormalExit
            && m_process.exitCode() == 0;
    }
    const QStringList &report() const { return m_report; }
    /** Why it failed: the last thing that the command itself has said. */
    QString reason()
    {
        QString reason = m_process.error() == QProcess::FailedToStart
            ? u"The command kavro-import could not be started."_s
            : u"The import ended unexpectedly."_s;
        const QString prefix = kCommand + u": "_s;
        for (const QString &line : QString::fromUtf8(m_process.readAllStandardError()).split(u'\n')) {
            if (line.startsWith(prefix))
                reason = line.mid(prefix.size());
        }
        return reason;
    }

private:
    void read()
    {
        while (m_process.canReadLine()) {
            const QString line = QString::fromUtf8(m_process.readLine()).chopped(1);
            if (line.startsWith(u'@'))
                m_box.setValue(line.mid(1).toInt());
            else
                m_report << line;
        }
    }

    QProgressDialog m_box;
    QProcess m_process;
    waits::Event m_changed;
    QStringList m_report;
};

/** A name beside the old file; where that is taken, one that the operator chooses. Empty: cancelled. */
QString chooseTarget(QWidget &window, const QString &from, const QString &proposed)
{
    QString target = proposed;
    while (QFileInfo::exists(target)) {
        target = desktop::saveFile(&window,
            { u"Kavro 2.0 - Save Database As..."_s, QFileInfo(from).absolutePath(), QFileInfo(proposed).fileName(),
                u"mdb (*.mdb)|*.mdb"_s });
        if (QFileInfo::exists(target))
            box(u"%1 exists already.  Please specify a different file name."_s.arg(QFileInfo(target).fileName()),
                Dialogs::Information);
    }
    return target;
}

/** The counts go into a box, the whole report into a file beside the new database. */
void tellReport(const QStringList &report, const QString &target)
{
    const QString path = target + u".txt"_s;
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
        && file.write(report.join(u'\n').toUtf8() + '\n') > 0;
    QStringList lines = report.filter(u" rows read, "_s);
    const QStringList notes = report.filter(QRegularExpression(u"^  "_s));
    if (!notes.isEmpty())
        lines << QString() << u"%1 remarks; the first: %2."_s.arg(notes.size()).arg(notes.constFirst().trimmed());
    if (written)
        lines << QString() << u"The whole report is in %1."_s.arg(path);
    box(lines.join(u"\r\n"_s), Dialogs::Information);
}

} // namespace

bool needsConversion(const QString &path) { return dao::IsJetFile(path); }

Task<QString> convertJetFile(QWidget &window, QString path)
{
    const QFileInfo old(path);
    const QString proposed = old.absolutePath() + u'/' + old.completeBaseName() + u"_converted.mdb"_s;
    const QString question = u"%1 was made by an older edition of the program and cannot be used as it is.\r\n"
                             "Convert it to %2 and open the copy?  The old file stays as it is."_s
                                 .arg(old.fileName(), QFileInfo(proposed).fileName());
    if (vbMain().dialogs->messageBox(question, AppTitle(), Dialogs::Question, Dialogs::YesNo) != Dialogs::AnswerYes)
        co_return QString();
    const QString target = chooseTarget(window, path, proposed);
    if (target.isEmpty())
        co_return QString();
    ImportRun run(window, path, target);
    co_await run.wait();
    if (run.isSuccessful()) {
        tellReport(run.report(), target);
        co_return target;
    }
    if (!run.isCancelled())
        box(u"%1 could not be converted.\r\n\r\n%2"_s.arg(old.fileName(), run.reason()), Dialogs::Exclamation);
    co_return QString();
}
