#include "tests/platform/agent/window/Stage.h"

#include "platform/agent/character/CharacterFormat.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;
using namespace agent;

namespace {

QByteArray drawing()
{
    QByteArray svg
        = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"120\" viewBox=\"0 0 100 120\">"
          "<g id=\"body\"><rect x=\"20\" y=\"20\" width=\"60\" height=\"90\" fill=\"#2040c0\"/></g>"
          "<g id=\"arm\"><rect x=\"40\" y=\"60\" width=\"8\" height=\"40\" fill=\"#c02020\"/></g>";
    for (int shape = 0; shape < kMouthShapes; ++shape)
        svg += "<g id=\"mouth." + QByteArray::number(shape)
            + "\"><rect x=\"45\" y=\"40\" width=\"10\" height=\"" + QByteArray::number(2 + shape)
            + "\" fill=\"#ffffff\"/></g>";
    return svg + "</svg>";
}

/** Turns the arm; loopFrom below 0: ends. */
QJsonObject turning(int duration, int angle, bool speaks, int loopFrom = -1)
{
    QJsonObject animation { { u"duration"_s, duration }, { u"speaks"_s, speaks },
        { u"tracks"_s,
            QJsonObject { { u"arm"_s,
                QJsonObject { { u"rotate"_s,
                    QJsonArray { QJsonArray { 0, 0 }, QJsonArray { duration, angle } } } } } } } };
    if (loopFrom >= 0)
        animation.insert(u"loopFrom"_s, loopFrom);
    return animation;
}

QJsonObject animations()
{
    QJsonObject all { { u"Show"_s, turning(200, 0, false) }, { u"Hide"_s, turning(300, 180, false) },
        { u"Wave"_s, turning(400, 90, true) }, { u"Point"_s, turning(400, 45, false) },
        { u"RestPose"_s, turning(100, 0, true) }, { u"Search"_s, turning(400, 30, false, 0) },
        { u"GestureUp"_s, turning(200, 170, true) }, { u"Nod"_s, turning(500, 10, true) },
        { u"Blink"_s, turning(200, 5, true) }, { u"Sleep"_s, turning(1000, 20, false, 500) } };
    for (const QString &way : { u"Up"_s, u"Down"_s, u"Left"_s, u"Right"_s })
        all.insert(u"Move"_s + way, turning(200, 60, false, 100));
    return all;
}

QJsonObject states()
{
    QJsonObject all { { u"Showing"_s, QJsonArray { u"Show"_s } }, { u"Hiding"_s, QJsonArray { u"Hide"_s } },
        { u"Speaking"_s, QJsonArray { u"RestPose"_s } }, { u"GesturingUp"_s, QJsonArray { u"GestureUp"_s } },
        { u"IdlingLevel1"_s, QJsonArray { u"Nod"_s } }, { u"IdlingLevel2"_s, QJsonArray { u"Wave"_s } },
        { u"IdlingLevel3"_s, QJsonArray { u"Sleep"_s } }, { u"Listening"_s, QJsonArray { u"Search"_s } } };
    for (const QString &way : { u"Up"_s, u"Down"_s, u"Left"_s, u"Right"_s })
        all.insert(u"Moving"_s + way, QJsonArray { u"Move"_s + way });
    return all;
}

QJsonObject description(const QString &name)
{
    const auto part = [](double x, double y) { return QJsonObject { { u"pivot"_s, QJsonArray { x, y } } }; };
    return { { u"name"_s, name }, { u"description"_s, u"A box with an arm."_s },
        { u"size"_s, QJsonArray { 100, 120 } }, { u"balloonAnchor"_s, QJsonArray { 50, 15 } },
        { u"voice"_s,
            QJsonObject { { u"name"_s, u"en"_s }, { u"variant"_s, u"m3"_s }, { u"pitch"_s, 50 },
                { u"range"_s, 50 }, { u"speed"_s, 160 } } },
        { u"parts"_s,
            QJsonObject {
                { u"body"_s, part(50, 110) }, { u"arm"_s, part(44, 60) }, { u"mouth"_s, part(50, 42) } } },
        { u"states"_s, states() }, { u"animations"_s, animations() } };
}

QString word(VisibilityCause cause)
{
    return QStringList { u"never"_s, u"user hid"_s, u"user showed"_s, u"program hid"_s, u"program showed"_s }
        .at(int(cause));
}

QString word(MoveCause cause)
{
    return QStringList { u"never"_s, u"user"_s, u"program"_s, u"other"_s, u"system"_s }.at(int(cause));
}

QString word(const Request &request)
{
    static const QStringList kStatus { u"complete"_s, u"failed"_s, u"pending"_s, u"interrupted"_s,
        u"in progress"_s };
    const QString status = kStatus.at(int(request.status));
    return request.number == ErrorNumber::None ? status
                                               : status + u' ' + QString::number(quint32(request.number), 16);
}

} // namespace

void StillPulse::advance(qint64 ms)
{
    const QPointer<StillPulse> self(this);
    const qint64 end = m_now + ms;
    while (m_due <= end) {
        m_now = std::max(m_now, m_due);
        m_due = kNever;
        ++m_beats;
        emit beat();
        if (!self) // an event's handler destroyed the control
            return;
    }
    m_now = end;
}

void PlainSpeaker::start(const QString &text)
{
    m_words = text.split(u' ', Qt::SkipEmptyParts);
    m_said = 0;
    speaking = true;
    if (m_words.isEmpty())
        sayWord();
}

void PlainSpeaker::sayWord()
{
    if (m_said == m_words.size()) {
        speaking = false;
        emit mouthChanged(0);
        emit finished();
        return;
    }
    emit mouthChanged(1 + m_said % 6);
    emit wordShown(++m_said);
}

Stage::Stage()
{
    writeCharacter(u"one.acs"_s, u"One"_s);
    makeControl();
}

void Stage::makeControl()
{
    control = std::make_unique<AgentControl>(folder.path(), engines());
    keepLog();
}

Engines Stage::engines()
{
    return { [this](const CharacterFile &) {
                auto made = std::make_unique<PlainSpeaker>();
                speaker = made.get();
                return made;
            },
        [this] {
            auto made = std::make_unique<ScriptedEar>();
            ear = made.get();
            return made;
        },
        [this] {
            auto made = std::make_unique<StillPulse>();
            pulse = made.get();
            return made;
        } };
}

void Stage::writeCharacter(const QString &file, const QString &name) const
{
    QFile out(folder.filePath(file));
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(packed({ description(name), drawing() }));
}

void Stage::keepLog()
{
    Control *from = control.get();
    const auto add = [this](const QString &entry) { log += entry; };
    QObject::connect(from, &Control::requestStarted, from,
        [=, this](const RequestPtr &r) { add(nameOf(r) + u" begins"_s); });
    QObject::connect(from, &Control::requestCompleted, from,
        [=, this](const RequestPtr &r) { add(nameOf(r) + u": "_s + word(*r)); });
    QObject::connect(from, &Control::shown, from,
        [=](const QString &, VisibilityCause cause) { add(u"shown: "_s + word(cause)); });
    QObject::connect(from, &Control::hidden, from,
        [=](const QString &, VisibilityCause cause) { add(u"hidden: "_s + word(cause)); });
    QObject::connect(from, &Control::moved, from, [=](const QString &, int x, int y, MoveCause cause) {
        add(u"moved to %1,%2: %3"_s.arg(x).arg(y).arg(word(cause)));
    });
    QObject::connect(from, &Control::balloonShown, from, [=] { add(u"balloon"_s); });
    QObject::connect(from, &Control::balloonHidden, from, [=] { add(u"no balloon"_s); });
    QObject::connect(from, &Control::idleStarted, from, [=] { add(u"idle"_s); });
    QObject::connect(from, &Control::idleCompleted, from, [=] { add(u"not idle"_s); });
    QObject::connect(from, &Control::listenStarted, from, [=] { add(u"listens"_s); });
    QObject::connect(from, &Control::listenCompleted, from, [=] { add(u"has listened"_s); });
    QObject::connect(from, &Control::bookmark, from, [=](int number) { add(u"bookmark %1"_s.arg(number)); });
    QObject::connect(from, &Control::commandChosen, from, [=](const UserInput &input) {
        add(u"command '%1' from %2, '%3', %4"_s.arg(input.name, input.characterId, input.voice)
                .arg(input.confidence));
    });
    QObject::connect(from, &Control::clicked, from,
        [=](const QString &, int button, int shift) { add(u"click %1 %2"_s.arg(button).arg(shift)); });
    QObject::connect(from, &Control::dragStarted, from, [=] { add(u"drag"_s); });
    QObject::connect(from, &Control::dragCompleted, from,
        [=](const QString &, int, int, int x, int y) { add(u"dropped at %1,%2"_s.arg(x).arg(y)); });
}

RequestPtr Stage::named(const QString &name, const RequestPtr &request)
{
    m_names.append({ name, request });
    return request;
}

QString Stage::nameOf(const RequestPtr &request) const
{
    for (const auto &[name, known] : m_names)
        if (known == request)
            return name;
    return u"request of kind %1"_s.arg(int(request->kind));
}

void Stage::enter()
{
    control->Load(u"one"_s, u"one.acs"_s).Show(true);
    pulse->advance(0);
    log.clear();
}

void Stage::run(int ms)
{
    for (int passed = 0; passed < ms && pulse && (!pulse->isAsleep() || (speaker && speaker->speaking));
         passed += 100) {
        pulse->advance(100);
        if (speaker && speaker->speaking)
            speaker->sayWord();
    }
    if (pulse)
        pulse->advance(0);
}

template <typename Widget>
Widget *Stage::widgetOf()
{
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (auto *found = qobject_cast<Widget *>(widget))
            return found;
    return nullptr;
}

CharacterWindow *Stage::window() { return widgetOf<CharacterWindow>(); }

Balloon *Stage::balloon() { return widgetOf<Balloon>(); }
