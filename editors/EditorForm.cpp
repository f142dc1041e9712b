#include "editors/EditorForm.h"

#include "platform/desktop/Labels.h"

#include <QEvent>
#include <QFontMetrics>
#include <QFormLayout>
#include <QHash>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

// The pictures lie in a static library; must stand outside namespaces.
static void initImages() { Q_INIT_RESOURCE(images); }

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kBodyLines = 3;
constexpr int kListIcon = 16;

int pixels(int twips) { return twips / kTwipsPerPixel; }

void selectAll(QWidget &box)
{
    if (auto *line = qobject_cast<QLineEdit *>(&box))
        line->selectAll();
    else if (auto *text = qobject_cast<QPlainTextEdit *>(&box))
        text->selectAll();
}

QString wholeCharacters(const QString &text)
{
    QString whole;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool pair = text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (pair)
            whole += text.at(i++);
        if (pair || !text.at(i).isSurrogate())
            whole += text.at(i);
    }
    return whole;
}

/** A full box cuts a character of two code units in half; the half cannot be stored and would come back as
    another text. */
void dropHalves(QLineEdit &box)
{
    const QString whole = wholeCharacters(box.text());
    if (whole == box.text())
        return;
    const int cursor = box.cursorPosition();
    box.setText(whole);
    box.setCursorPosition(cursor);
}

} // namespace

EditorForm::EditorForm(QWidget *parent, const char *name, const QString &caption, const QIcon &picture)
    : QDialog(parent)
{
    setObjectName(QString::fromLatin1(name));
    setWindowTitle(caption);
    setWindowIcon(picture);
    setModal(true);
}

QIcon EditorForm::picture(const QString &name)
{
    static QHash<QString, QIcon> icons;
    if (icons.isEmpty())
        initImages();
    QIcon &icon = icons[name];
    if (icon.isNull())
        icon = QIcon(u":/images/"_s + name + u".svg"_s);
    return icon;
}

bool EditorForm::eventFilter(QObject *watched, QEvent *event)
{
    // After the event, because the press that gives the focus puts the cursor somewhere.
    if (event->type() == QEvent::FocusIn) {
        auto *box = static_cast<QWidget *>(watched);
        QMetaObject::invokeMethod(
            box, [box] { selectAll(*box); }, Qt::QueuedConnection);
    }
    return QDialog::eventFilter(watched, event);
}

void EditorForm::name(QWidget &control, const char *array, int index, const QString &role)
{
    control.setObjectName(u"%1(%2)"_s.arg(QLatin1StringView(array)).arg(index));
    control.setAccessibleName(role);
}

QLineEdit *EditorForm::lineBox(const char *array, int index, const QString &role, int maxLength)
{
    auto *box = named(new QLineEdit(this), array, index, role);
    box->setMaxLength(maxLength);
    connect(box, &QLineEdit::textChanged, box, [box] { dropHalves(*box); });
    box->installEventFilter(this);
    return box;
}

QLineEdit *EditorForm::shownBox(const char *array, int index, const QString &role)
{
    QLineEdit *box = lineBox(array, index, role, kNoLimit);
    box->setReadOnly(true);
    // Looks like what it is: not a place to type.
    QPalette palette = box->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    box->setPalette(palette);
    return box;
}

QPlainTextEdit *EditorForm::textBox(const char *array, int index, const QString &role)
{
    auto *box = named(new QPlainTextEdit(this), array, index, role);
    box->setTabChangesFocus(true);
    box->setMinimumHeight(kBodyLines * box->fontMetrics().lineSpacing() + 2 * box->frameWidth() + 8);
    box->installEventFilter(this);
    return box;
}

void EditorForm::addRow(QFormLayout &rows, const QString &label, QWidget *box)
{
    auto *text = new QLabel(label);
    text->setBuddy(box);
    rows.addRow(text, box);
}

QLabel *EditorForm::hint(const QString &text) { return desktop::mutedLabel(text, this); }

QLabel *EditorForm::heading(const QString &text) { return desktop::headingLabel(text, this); }

QTreeWidget *EditorForm::table(const char *name, const QString &role, const QStringList &columns)
{
    auto *list = new QTreeWidget(this);
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(role);
    list->setHeaderLabels(columns);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAlternatingRowColors(true);
    list->setAllColumnsShowFocus(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setIconSize({ kListIcon, kListIcon });
    list->header()->setHighlightSections(false);
    return list;
}

QAbstractButton *EditorForm::command(int index, const QString &text, const QString &role)
{
    QString plain = text;
    plain.remove(u'&');
    auto *button = named(new QPushButton(text, this), "cmdArray", index, role.isEmpty() ? plain : role);
    button->setAutoDefault(false);
    return button;
}

void EditorForm::addOkCancel(QVBoxLayout &column)
{
    auto *okCommand = static_cast<QPushButton *>(command(Ok, tr("OK")));
    okCommand->setDefault(true);
    QAbstractButton *cancel = command(Cancel, tr("Cancel"));
    connect(okCommand, &QAbstractButton::clicked, this, &EditorForm::onOk);
    connect(cancel, &QAbstractButton::clicked, this, &QDialog::reject);
    m_ok = okCommand;
    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(okCommand);
    row->addWidget(cancel);
    column.addLayout(row);
}

QSize EditorForm::sizeFor(Twips size)
{
    ensurePolished();
    const QSize stated(pixels(size.width), pixels(size.height));
    QSize wanted = stated.expandedTo(minimumSizeHint());
    // Wrapped labels grow with their lines, which the hint of a narrow form does not tell.
    if (layout() && layout()->hasHeightForWidth())
        wanted.setHeight(qMax(wanted.height(), layout()->minimumHeightForWidth(wanted.width())));
    return wanted;
}

void EditorForm::openAt(Twips size) { resize(sizeFor(size)); }

void EditorForm::fixAt(Twips size) { setFixedSize(sizeFor(size)); }
