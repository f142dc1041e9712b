#include "notify/options/FilePicker.h"

#include "core/Dialogs.h"
#include "core/vbMain.h"
#include "platform/desktop/FilePickers.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t kHtmlFilter[] = u"HTML (*.html)|*.html";
constexpr char16_t kTextFilter[] = u"Text (*.txt)|*.txt";

QString text(const char16_t *literal) { return QString::fromUtf16(literal); }

void inform(const QString &message)
{
    vbMain().dialogs->messageBox(message, AppTitle(), Dialogs::Information, Dialogs::Ok);
}

desktop::FileQuestion question(const FilePicker &picker, const QString &present)
{
    const QString title = text(picker.title);
    const QString folder = QFileInfo(nativePath(present)).absolutePath();
    return { title.startsWith(u' ') ? AppTitle() + title : title,
        QFileInfo(folder).isDir() ? folder : ProgramFolder(), text(picker.proposed), text(picker.filter) };
}

} // namespace

const FilePicker kLogFilePicker { u" - Log File Location", u"logfile.txt", kTextFilter, u"txt",
    u"The log file must end in a txt extension.", u"\\logfile.txt", false };
const FilePicker kPageFilePicker { u"Kavro - HTML Output Location", u"KavroMonitor.html", kHtmlFilter, u".htm",
    u"The HTML file must end in a htm or html extension.", u"\\KavroMonitor.html", false };
const FilePicker kTemplateFilePicker { u"Kavro - HTML Template Location", u"HTML_Template_IE5.html", kHtmlFilter,
    u".htm", u"The HTML template file must end in a htm or html extension.", u"\\HTML_Template_IE5.html", true };

bool HasEnding(const FilePicker &picker, const QString &name)
{
    return name.toLower().contains(text(picker.ending));
}

QString PickFile(QWidget *parent, const FilePicker &picker, const QString &present)
{
    const desktop::FileQuestion asked = question(picker, present);
    const QString chosen = picker.existing ? desktop::openFile(parent, asked) : desktop::saveFile(parent, asked);
    if (!chosen.isEmpty() && HasEnding(picker, chosen))
        return chosen;
    inform(chosen.isEmpty() ? u"You did not indicate a file name."_s : text(picker.wrongEnding));
    return ProgramFolder() + nativePath(text(picker.fallback));
}
