// Performs a character on the screen, for those who draw one:
//   kavro-agent-demo FILE STEP...
// A step is play=ANIMATION, think=TEXT, move=X,Y, point=X,Y, hide, show, stay (until it is ended from
// outside) or a text to speak.

#include "platform/agent/window/AgentControl.h"

#include <QApplication>
#include <QFileInfo>
#include <QPalette>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

constexpr int kFarewellMs = 1600; // until the last balloon is read

QPoint pointOf(const QString &text)
{
    return { text.section(u',', 0, 0).toInt(), text.section(u',', 1, 1).toInt() };
}

struct Verb {
    const char16_t *name;
    void (*perform)(Character &character, const QString &argument);
};
constexpr Verb kVerbs[] = {
    { u"play", [](Character &character, const QString &name) { character.Play(name); } },
    { u"think", [](Character &character, const QString &text) { character.Think(text); } },
    { u"move",
        [](Character &character, const QString &to) { character.MoveTo(pointOf(to).x(), pointOf(to).y()); } },
    { u"point",
        [](Character &character, const QString &at) {
            character.GestureAt(pointOf(at).x(), pointOf(at).y());
        } },
    { u"hide", [](Character &character, const QString &) { character.Hide(); } },
    { u"show", [](Character &character, const QString &) { character.Show(); } },
};

void perform(Character &character, const QString &step)
{
    const QString name = step.section(u'=', 0, 0);
    const auto verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
        [&name](const Verb &each) { return name == QStringView(each.name); });
    if (verb == std::end(kVerbs))
        character.Speak(step);
    else
        verb->perform(character, step.section(u'=', 1));
}

void say(const QString &line) { QTextStream(stderr) << line << Qt::endl; }

/** Ends the program when as many requests as were made are done. */
void quitAfter(AgentControl &control, int requests)
{
    const auto count = [left = requests](const RequestPtr &request) mutable {
        if (request->status == Request::Status::Failed)
            say(request->description);
        if (--left == 0)
            QTimer::singleShot(kFarewellMs, qApp, &QCoreApplication::quit);
    };
    QObject::connect(&control, &Control::requestCompleted, &control, count);
}

int run(const QString &file, QStringList steps)
{
    AgentControl control(QString(), Engines::ofMachine());
    Character &character = control.Load(u"demo"_s, QFileInfo(file).absoluteFilePath());
    character.commands().add({ u"quit"_s, u"&Quit"_s, {} });
    QObject::connect(&control, &Control::commandChosen, qApp, &QCoreApplication::quit);
    const bool stays = steps.removeAll(u"stay"_s) > 0;
    if (!stays)
        quitAfter(control, 1 + int(steps.size()));
    character.Show();
    for (const QString &step : std::as_const(steps))
        perform(character, step);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (qEnvironmentVariable("KAVRO_PALETTE") == "dark"_L1)
        QApplication::setPalette(QPalette(QColor(0x2b, 0x2d, 0x30)));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        say(u"usage: kavro-agent-demo FILE [play=NAME|think=TEXT|move=X,Y|point=X,Y|hide|show|stay|TEXT]..."_s);
        return 2;
    }
    try {
        return run(arguments.at(1), arguments.mid(2));
    } catch (const Error &error) {
        say(error.text());
        return 1;
    }
}
