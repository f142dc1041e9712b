#include "notify/options/ServersField.h"

#include "notify/options/ServerForm.h"
#include "notify/options/ValueChecks.h"
#include "platform/smtp/SmtpServer.h"

#include <QAction>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kElement = Qt::UserRole;
constexpr int kShownServers = 6;

} // namespace

ServersField::ServersField(const options::Row &row, QWidget *page)
    : OptionField(row, page)
    , m_widget(new QWidget(page))
    , m_list(new QListWidget(m_widget))
{
    prepare(m_list);
    makeList();
    auto *line = new QHBoxLayout(m_widget);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_list, 1);
    line->addLayout(makeButtons());
    updateButtons();
}

void ServersField::makeList()
{
    m_list->setMinimumHeight(kShownServers * m_list->fontMetrics().lineSpacing());
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    const int sign = m_list->style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_list->setIconSize({ sign, sign });
    m_list->setTextElideMode(Qt::ElideMiddle);
    connect(m_list, &QListWidget::currentRowChanged, this, &ServersField::updateButtons);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &ServersField::edit);
    connect(m_list->model(), &QAbstractItemModel::rowsMoved, this, [this] {
        updateButtons();
        touched();
    });
}

QLayout *ServersField::makeButtons()
{
    struct Command {
        const char *name;
        QString text;
        QKeySequence key;
        std::function<void()> run;
        QPushButton **button;
    };
    QPushButton *addButton = nullptr;
    const Command commands[] = {
        { "Add", tr("&Add..."), Qt::Key_Insert, [this] { add(); }, &addButton },
        { "Edit", tr("&Edit..."), Qt::Key_F2, [this] { edit(); }, &m_edit },
        { "Remove", tr("Re&move"), Qt::Key_Delete, [this] { remove(); }, &m_remove },
        { "Up", tr("&Up"), Qt::ALT | Qt::Key_Up, [this] { move(-1); }, &m_up },
        { "Down", tr("&Down"), Qt::ALT | Qt::Key_Down, [this] { move(1); }, &m_down },
    };
    auto *column = new QVBoxLayout;
    for (const Command &command : commands) {
        auto *button = new QPushButton(command.text, m_widget);
        button->setObjectName(m_list->objectName() + QLatin1StringView(command.name));
        button->setAutoDefault(false);
        const QString key = command.key.toString(QKeySequence::NativeText);
        button->setToolTip(tr("Key in the list: %1").arg(key));
        connect(button, &QPushButton::clicked, this, command.run);
        *command.button = button;
        column->addWidget(button);
        auto *action = new QAction(m_list);
        action->setShortcut(command.key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, command.run);
        m_list->addAction(action);
    }
    column->addStretch();
    return column;
}

QWidget *ServersField::control() const { return m_list; }

bool ServersField::show(const QString &text)
{
    m_list->clear();
    for (const QString &element : options::serverElements(text)) {
        m_list->addItem(QString());
        setElement(m_list->count() - 1, element);
    }
    m_list->setCurrentRow(0);
    updateButtons();
    return true;
}

QString ServersField::value() const
{
    QStringList elements;
    for (int i = 0; i < m_list->count(); ++i)
        elements << m_list->item(i)->data(kElement).toString();
    return elements.join("::"_L1);
}

void ServersField::setElement(int index, const QString &element)
{
    QListWidgetItem *item = m_list->item(index);
    const QString problem = options::serverProblem(element);
    item->setData(kElement, element);
    item->setText(withHiddenPassword(element));
    item->setToolTip(problem);
    item->setIcon(problem.isEmpty() ? QIcon() : m_list->style()->standardIcon(QStyle::SP_MessageBoxWarning));
}

void ServersField::updateButtons()
{
    const int index = m_list->currentRow();
    m_edit->setEnabled(index >= 0);
    m_remove->setEnabled(index >= 0);
    m_up->setEnabled(index > 0);
    m_down->setEnabled(index >= 0 && index + 1 < m_list->count());
}

void ServersField::add()
{
    ServerForm form({}, m_widget);
    if (form.exec() != QDialog::Accepted)
        return;
    const int index = m_list->currentRow() + 1;
    m_list->insertItem(index, QString());
    setElement(index, form.element());
    m_list->setCurrentRow(index);
    updateButtons();
    touched();
}

void ServersField::edit()
{
    QListWidgetItem *item = m_list->currentItem();
    if (!item)
        return;
    ServerForm form(item->data(kElement).toString(), m_widget);
    if (form.exec() != QDialog::Accepted)
        return;
    setElement(m_list->currentRow(), form.element());
    touched();
}

void ServersField::remove()
{
    delete m_list->currentItem();
    updateButtons();
    touched();
}

void ServersField::move(int by)
{
    const int from = m_list->currentRow();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= m_list->count())
        return;
    m_list->insertItem(to, m_list->takeItem(from));
    m_list->setCurrentRow(to);
    updateButtons();
    touched();
}
