#include "notify/options/ScriptForm.h"

#include "core/Dialogs.h"
#include "core/vbMain.h"
#include "notify/EventScript.h"
#include "notify/options/NoteLabel.h"
#include "platform/desktop/FilePickers.h"

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStringDecoder>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kColumns = 78;
constexpr int kLines = 24;
constexpr int kIndent = 2;
constexpr qint64 kLargestFile = 1 << 20;

QString emptyScript() { return u"Sub Main\n  ' What is to be done at the end of every check.\nEnd Sub\n"_s; }

QString decoded(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8));
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

} // namespace

ScriptForm::ScriptForm(const QString &script, QWidget *parent)
    : QDialog(parent)
    , m_text(new QPlainTextEdit(this))
    , m_problem(new NoteLabel(this))
{
    setObjectName(u"frmScript"_s);
    setWindowTitle(tr("Script for CheckFinish"));
    m_text->setObjectName(u"script"_s);
    m_text->setAccessibleName(tr("Script"));
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setTabStopDistance(kIndent * m_text->fontMetrics().horizontalAdvance(u' '));
    m_text->setPlainText(script.isEmpty() ? emptyScript() : script);
    m_problem->setObjectName(u"problem"_s);
    auto *buttons = new QHBoxLayout;
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_text, 1);
    column->addWidget(m_problem);
    column->addLayout(buttons);
    const auto button = [&](const QString &text, const char *name, auto pressed) {
        auto *made = new QPushButton(text, this);
        made->setObjectName(QString::fromLatin1(name));
        made->setAutoDefault(false);
        connect(made, &QPushButton::clicked, this, pressed);
        buttons->addWidget(made);
    };
    button(tr("&Load File..."), "load", &ScriptForm::load);
    buttons->addStretch();
    button(tr("OK"), "cmdArray(0)", &QDialog::accept);
    button(tr("Cancel"), "cmdArray(1)", &QDialog::reject);
    connect(m_text, &QPlainTextEdit::textChanged, this, &ScriptForm::judge);
    judge();
    resize(kColumns * m_text->fontMetrics().averageCharWidth(), kLines * m_text->fontMetrics().lineSpacing());
}

QString ScriptForm::script() const { return m_text->toPlainText(); }

void ScriptForm::judge() { m_problem->setText(ScriptProblem(script())); }

void ScriptForm::load()
{
    const QString path
        = desktop::openFile(this, { tr("Load Script"), QDir::homePath(), QString(), u"VBScript (*.vbs)|*.vbs"_s });
    if (path.isEmpty())
        return;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kLargestFile) {
        const QString reason = file.isOpen() ? tr("It is larger than a script can be.") : file.errorString();
        vbMain().dialogs->messageBox(tr("The file %1 could not be loaded.\n%2").arg(path, reason), AppTitle(),
            Dialogs::Information, Dialogs::Ok);
        return;
    }
    m_text->setPlainText(decoded(file.readAll()));
}
