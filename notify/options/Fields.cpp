#include "notify/options/Fields.h"

#include "notify/MailQueue.h"
#include "notify/options/CharacterField.h"
#include "notify/options/FilePicker.h"
#include "notify/options/NumberBox.h"
#include "notify/options/OptionText.h"
#include "notify/options/ServersField.h"
#include "platform/dao/Value.h"
#include "platform/dao/VbError.h"
#include "platform/desktop/Labels.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>

#include <optional>

using namespace Qt::StringLiterals;
using options::Editor;

namespace {

constexpr int kDigits = 15; // of a double that are exact
constexpr int kLongestText = 32767;
constexpr int kNumberWidth = 20; // in average characters

struct Token {
    const char16_t *text;
    const char *meaning;
};
constexpr Token kTokens[] = {
    { u"<DEVICE>", "the name of the device" },
    { u"<PORT>", "the port, or Ping" },
    { u"<DATE>", "date and time of the mail" },
    { u"<REASON>", "why the check has failed" },
};

template <class Result>
std::optional<Result> converted(const QString &text, Result (dao::Value::*read)() const)
{
    try {
        return (dao::Value(text).*read)();
    } catch (const VbError &) {
        return {}; // the answer to the question, not a fault
    }
}

QWidget *bare(QWidget *page)
{
    auto *widget = new QWidget(page);
    widget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return widget;
}

template <class Field>
OptionField *makeField(const options::Row &row, QWidget *page)
{
    return new Field(row, page);
}

struct Maker {
    Editor editor;
    OptionField *(*make)(const options::Row &, QWidget *);
};
constexpr Maker kMakers[] = {
    { Editor::Check, makeField<CheckField> },
    { Editor::Number, makeField<NumberField> },
    { Editor::Line, makeField<LineField> },
    { Editor::File, makeField<FileField> },
    { Editor::Template, makeField<TemplateField> },
    { Editor::Servers, makeField<ServersField> },
    { Editor::Character, makeField<CharacterField> },
};

} // namespace

OptionField *OptionField::make(const options::Row &row, QWidget *page)
{
    for (const Maker &maker : kMakers) {
        if (maker.editor == row.editor)
            return maker.make(row, page);
    }
    Q_UNREACHABLE();
}

// Flags

CheckField::CheckField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_box(new QCheckBox(options::tr(row.label), page))
{
    prepare(m_box);
    connect(m_box, &QCheckBox::toggled, this, &CheckField::touched);
}

QWidget *CheckField::widget() const { return m_box; }

bool CheckField::show(const QString &text)
{
    const std::optional<bool> on = converted(text, &dao::Value::boolean);
    m_box->setChecked(on.value_or(false));
    return on.has_value();
}

QString CheckField::value() const { return m_box->isChecked() ? u"1"_s : u"0"_s; }

// Numbers

NumberField::NumberField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_box(new NumberBox(page))
{
    m_box->setDecimals(row.more.decimals);
    m_box->setRange(row.more.low, row.more.high);
    m_box->setSuffix(options::tr(row.more.unit));
    m_box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_box->setMinimumWidth(kNumberWidth * m_box->fontMetrics().averageCharWidth()); // so that they are all as wide
    prepare(m_box);
    connect(m_box, &NumberBox::touched, this, &NumberField::touched);
}

QWidget *NumberField::widget() const { return m_box; }

bool NumberField::show(const QString &text)
{
    const std::optional<double> number = converted(text, &dao::Value::number);
    m_stored = number.value_or(0);
    m_box->setValue(m_stored);
    return number.has_value();
}

QString NumberField::value() const
{
    m_box->interpretText(); // what is being typed counts
    return QString::number(m_box->value(), 'g', kDigits);
}

QString NumberField::untouched() const
{
    // A number that the box cannot show stays as it is.
    return m_box->value() == m_stored ? value() : shown();
}

QString NumberField::remark() const
{
    if (m_box->value() == m_stored)
        return {};
    return tr("“%1” is stored here, which is not from %2 to %3. It stays until you change it.")
        .arg(shown().trimmed(), m_box->textFromValue(m_box->minimum()), m_box->textFromValue(m_box->maximum()));
}

// Lines

LineField::LineField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_box(new QLineEdit(page))
{
    m_box->setMaxLength(kLongestText);
    prepare(m_box);
    connect(m_box, &QLineEdit::textChanged, this, &LineField::touched);
}

QWidget *LineField::widget() const { return m_box; }

bool LineField::show(const QString &text)
{
    m_box->setText(text);
    m_box->setCursorPosition(0);
    return true;
}

QString LineField::value() const { return m_box->text(); }

// Files

FileField::FileField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_widget(bare(page))
    , m_path(new QLineEdit(m_widget))
{
    m_path->setMaxLength(kLongestText);
    prepare(m_path);
    auto *browse = new QPushButton(tr("Browse..."), m_widget);
    browse->setAutoDefault(false);
    browse->setObjectName(m_path->objectName() + "Browse"_L1);
    browse->setAccessibleName(tr("Choose the file: %1").arg(m_path->accessibleName()));
    auto *line = new QHBoxLayout(m_widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_path, 1);
    line->addWidget(browse);
    connect(m_path, &QLineEdit::textChanged, this, &FileField::touched);
    connect(browse, &QPushButton::clicked, this, &FileField::pick);
}

QWidget *FileField::control() const { return m_path; }

bool FileField::show(const QString &text)
{
    m_path->setText(text);
    return true;
}

QString FileField::value() const { return m_path->text(); }

void FileField::pick() { m_path->setText(PickFile(m_widget, *row().more.picker, m_path->text())); }

// Templates

TemplateField::TemplateField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_widget(bare(page))
    , m_example(desktop::mutedLabel({}, m_widget))
{
    QWidget *box = makeBox();
    prepare(box);
    auto *insertButton = new QPushButton(tr("Insert"), m_widget);
    insertButton->setAutoDefault(false);
    insertButton->setToolTip(tr("Put in a token, which every mail replaces"));
    insertButton->setAccessibleName(tr("Insert a token: %1").arg(box->accessibleName()));
    insertButton->setObjectName(box->objectName() + "Insert"_L1);
    auto *menu = new QMenu(insertButton);
    for (const Token &token : kTokens) {
        const QString text = QString::fromUtf16(token.text);
        connect(menu->addAction(text + u'\t' + options::tr(token.meaning)), &QAction::triggered, this,
            [this, text] { insert(text); });
    }
    insertButton->setMenu(menu);
    m_example->setObjectName(box->objectName() + "Example"_L1);
    auto *grid = new QGridLayout(m_widget);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(box, 0, 0);
    grid->addWidget(insertButton, 0, 1, Qt::AlignTop);
    grid->addWidget(m_example, 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(0, 1);
}

QWidget *TemplateField::makeBox()
{
    if (row().more.lines == 1) {
        m_line = new QLineEdit(m_widget);
        m_line->setMaxLength(kLongestText);
        connect(m_line, &QLineEdit::textChanged, this, &TemplateField::showExample);
        connect(m_line, &QLineEdit::textChanged, this, &TemplateField::touched);
        return m_line;
    }
    m_lines = new QPlainTextEdit(m_widget);
    m_lines->setTabChangesFocus(true);
    const int height = row().more.lines * m_lines->fontMetrics().lineSpacing() + 2 * m_lines->frameWidth()
        + int(2 * m_lines->document()->documentMargin());
    m_lines->setMinimumHeight(height);
    m_lines->setMaximumHeight(2 * height);
    connect(m_lines, &QPlainTextEdit::textChanged, this, &TemplateField::showExample);
    connect(m_lines, &QPlainTextEdit::textChanged, this, &TemplateField::touched);
    return m_lines;
}

QWidget *TemplateField::control() const
{
    if (m_line)
        return m_line;
    return m_lines;
}

bool TemplateField::show(const QString &text)
{
    if (m_lines)
        m_lines->setPlainText(text);
    else
        m_line->setText(text);
    return true;
}

QString TemplateField::value() const { return m_lines ? m_lines->toPlainText() : m_line->text(); }

void TemplateField::insert(const QString &token)
{
    if (m_lines)
        m_lines->insertPlainText(token);
    else
        m_line->insert(token);
    control()->setFocus();
}

void TemplateField::showExample()
{
    const QString text = ExpandTemplate(value(), tr("Web Server"), u"80"_s, options::tr(row().more.reason));
    m_example->setText(tr("Example: %1").arg(text));
}
