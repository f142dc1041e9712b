#include "editors/frmAbout.h"
#include "editors/frmAddDevice.h"
#include "editors/frmAddPort.h"
#include "editors/frmGroupAdd.h"
#include "editors/frmModifyDevice.h"
#include "editors/frmModifyGroup.h"
#include "editors/frmModifyPort.h"
#include "editors/frmPortDetails.h"
#include "editors/frmPortList.h"
#include "tests/editors/EditorWorld.h"

#include <QLabel>

using namespace Qt::StringLiterals;

class AboutTest : public EditorWorld
{
};

TEST_F(AboutTest, VersionsAreShown)
{
    editors = OperatorEditors([] { return u"3.1.4"_s; });
    openWindow();
    drive("mnuHelpAbout", { [](Driver &form) {
        EXPECT_EQ(form.named<QLabel>(u"lblTitle"_s).text(), AppTitle());
        EXPECT_EQ(form.named<QLabel>(u"lblVersion"_s).text(), u"Version "_s + AppVersion());
        EXPECT_EQ(form.at<QLabel>("lblArray", 0).text(), u"Kavro SMTP Control Ver: 3.1.4"_s);
        QTest::mouseClick(&form.named(u"cmdOK"_s), Qt::LeftButton);
    } });
    frmAbout plain(recorded, QString());
    EXPECT_TRUE(Driver(plain).at("lblArray", 0).isHidden());
}

/** What can have the focus tells its name, nothing is cut off, and a click into a box selects its text. */
TEST_F(AboutTest, EveryFormIsAccessible)
{
    fillCatalogue();
    recorded.key = net.groupKey;
    std::unique_ptr<QDialog> forms[] = { std::make_unique<frmAbout>(recorded, u"1"_s),
        std::make_unique<frmAddDevice>(recorded),
        std::make_unique<frmAddPort>(recorded, QList<DeviceRef> { { net.web, u"web.example"_s } }),
        std::make_unique<frmGroupAdd>(recorded), std::make_unique<frmModifyGroup>(recorded, net.groupKey),
        std::make_unique<frmModifyDevice>(recorded, net.deviceKey),
        std::make_unique<frmModifyPort>(recorded, net.portKey),
        std::make_unique<frmPortDetails>(recorded, net.portKey), std::make_unique<frmPortList>(recorded) };
    for (const auto &form : forms) {
        show(*form);
        const std::string name = form->objectName().toStdString();
        EXPECT_FALSE(form->windowTitle().isEmpty()) << name;
        for (QWidget *each : form->findChildren<QWidget *>()) {
            if (each->focusPolicy() != Qt::NoFocus && !each->objectName().startsWith(u"qt_")) {
                EXPECT_FALSE(each->accessibleName().isEmpty())
                    << name << ' ' << each->metaObject()->className();
            }
            if (each->isVisible() && qobject_cast<QAbstractButton *>(each)) {
                EXPECT_GE(each->width(), each->minimumSizeHint().width()) << name;
            }
            if (each->isVisible() && qobject_cast<QLabel *>(each)) {
                EXPECT_GE(each->height(), each->heightForWidth(each->width())) << name;
            }
        }
        for (QLineEdit *box : form->findChildren<QLineEdit *>()) {
            if (!box->isVisible() || box->text().isEmpty())
                continue;
            QTest::mouseClick(box, Qt::LeftButton);
            QCoreApplication::processEvents();
            EXPECT_EQ(box->selectedText(), box->text()) << name;
            break;
        }
        form->hide();
    }
}
