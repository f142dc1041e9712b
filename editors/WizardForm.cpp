#include "editors/WizardForm.h"

#include "core/Settings.h"
#include "core/Trap.h"

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPicture = 48;
constexpr int kGap = 14;

} // namespace

WizardForm::WizardForm(QWidget *parent, const char *name, const QString &caption, const QIcon &picture)
    : EditorForm(parent, name, caption, picture)
    , m_picture(picture)
    , m_pages(new QStackedWidget(this))
    , m_progress(new QProgressBar(this))
{
    m_back = command(Back, tr("< &Back"), tr("Back"));
    m_next = command(Next, tr("&Next >"), tr("Next"));
    m_progress->setAccessibleName(tr("Progress"));
    m_progress->hide();
}

void WizardForm::addPage(const QString &title, QWidget *content)
{
    auto *page = named(new QWidget(m_pages), "fraStep", m_pages->count(), title);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(heading(title));
    column->addWidget(content, 1);
    m_pages->addWidget(page);
}

QCheckBox *WizardForm::introBox(const char *name, const QString &key)
{
    const QString text = tr("&Skip this introduction in the future");
    auto *box = new QCheckBox(text, this);
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(QString(text).remove(u'&'));
    connect(box, &QCheckBox::clicked, this, [key, name](bool on) {
        Trap((QByteArray(name) + "_Click").constData(),
            [&] { SaveSetting(u"Startup"_s, key, on ? u"1"_s : u"0"_s); });
    });
    return box;
}

void WizardForm::layOut()
{
    auto *image = new QLabel(this);
    image->setPixmap(m_picture.pixmap(QSize(kPicture, kPicture), devicePixelRatioF()));
    image->setAlignment(Qt::AlignTop);
    auto *line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    QAbstractButton *cancel = command(Cancel, tr("Cancel"));
    static_cast<QPushButton *>(m_next)->setDefault(true);
    for (const auto &[button, index] :
        { std::pair(cancel, int(Cancel)), std::pair(m_back, int(Back)), std::pair(m_next, int(Next)) })
        connect(button, &QAbstractButton::clicked, this, [this, index = index] { cmdArray_Click(index); });

    auto *top = new QHBoxLayout;
    top->setSpacing(kGap);
    top->addWidget(image);
    top->addWidget(m_pages, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_progress, 1);
    buttons->addStretch();
    buttons->addWidget(m_back);
    buttons->addWidget(m_next);
    buttons->addSpacing(kGap / 2);
    buttons->addWidget(cancel);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(kGap, kGap, kGap, kGap);
    column->addLayout(top, 1);
    column->addWidget(line);
    column->addLayout(buttons);
    // From the content through the pages to what ends them, whatever was made first.
    setTabOrder(m_pages, m_back);
    setTabOrder(m_back, m_next);
    setTabOrder(m_next, cancel);
}

void WizardForm::cmdArray_Click(int index)
{
    Trap("cmdArray_Click", [&] {
        switch (index) {
        case Cancel:
            m_step = 0;
            return reject();
        case Back:
            --m_step;
            return stepChanged();
        case Next:
            ++m_step;
            return stepChanged();
        default:
            return;
        }
    });
}

void WizardForm::showPage(int page)
{
    if (page < m_pages->count())
        m_pages->setCurrentIndex(page);
}

void WizardForm::setBusy(bool busy, int steps)
{
    m_busy = busy;
    m_pages->setEnabled(!busy);
    for (int index : { int(Cancel), int(Back), int(Next) })
        findChild<QAbstractButton *>(u"cmdArray(%1)"_s.arg(index))->setEnabled(!busy);
    m_progress->setRange(0, steps);
    m_progress->setValue(0);
    m_progress->setVisible(busy && steps > 1);
}

void WizardForm::setProgress(int done) { m_progress->setValue(done); }

/** Escape and the frame's close button: what is half made is made to the end first. */
void WizardForm::reject()
{
    if (!m_busy)
        QDialog::reject();
}
