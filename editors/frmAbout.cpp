#include "editors/frmAbout.h"

#include "core/vbMain.h"
#include "ui/Editors.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr Twips kSize { 5400, 2700 };
constexpr int kPicture = 64;
constexpr int kSpacing = 16;
constexpr double kTitleScale = 1.6;

} // namespace

frmAbout::frmAbout(EditedTree &tree, const QString &smtpVersion)
    : EditorForm(tree.window(), "frmAbout", tr("About %1").arg(AppTitle()), picture(u"kavro2000"_s))
{
    auto *image = new QLabel(this);
    image->setPixmap(picture(u"kavro2000"_s).pixmap(QSize(kPicture, kPicture), devicePixelRatioF()));
    image->setAlignment(Qt::AlignTop);
    QLabel *title = heading(AppTitle());
    title->setObjectName(u"lblTitle"_s);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * kTitleScale);
    title->setFont(font);
    auto *version = new QLabel(u"Version "_s + AppVersion(), this);
    version->setObjectName(u"lblVersion"_s);
    QLabel *smtp = hint(u"Kavro SMTP Control Ver: "_s + smtpVersion);
    smtp->setObjectName(u"lblArray(0)"_s);
    smtp->setVisible(!smtpVersion.isEmpty());
    auto *ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(u"cmdOK"_s);
    ok->setAccessibleName(tr("OK"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);

    auto *texts = new QVBoxLayout;
    texts->addWidget(title);
    texts->addWidget(version);
    texts->addWidget(hint(tr("Watches the availability of a network.")));
    texts->addWidget(smtp);
    texts->addStretch();
    auto *top = new QHBoxLayout;
    top->setSpacing(kSpacing);
    top->addWidget(image, 0);
    top->addLayout(texts, 1);
    auto *bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(ok);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(kSpacing, kSpacing, kSpacing, kSpacing);
    column->addLayout(top, 1);
    column->addLayout(bottom);
    fixAt(kSize);
}
