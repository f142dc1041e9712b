#include "platform/agent/window/AgentCharacter.h"

#include "platform/agent/window/CommandMenu.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace agent {

namespace {

constexpr int kStepsABeat = 40; // requests may begin or end in one beat

/** Coordinates have sixteen bits; anything further away counts as far away. */
QPoint shortPoint(int x, int y)
{
    using Short = std::numeric_limits<qint16>;
    return { std::clamp<int>(x, Short::min(), Short::max()), std::clamp<int>(y, Short::min(), Short::max()) };
}

} // namespace

AgentCharacter::AgentCharacter(
    const QString &id, std::shared_ptr<const CharacterFile> file, const Engines &engines, Control &control)
    : m_id(id)
    , m_file(std::move(file))
    , m_control(control)
    , m_pulse(engines.pulse())
    , m_actor(id, m_file, engines, *m_pulse, m_events)
    , m_queue(m_actor, m_events)
    , m_idler(id, m_actor, m_events)
    , m_listening(id, m_actor, *m_pulse, engines)
{
    connect(m_pulse.get(), &Pulse::beat, this, &AgentCharacter::beat);
    watchWindow();
    watchScreens();
}

AgentCharacter::~AgentCharacter() { retire(); }

void AgentCharacter::retire()
{
    if (m_retired)
        return;
    m_retired = true;
    m_queue.drop();
    m_actor.vanish(VisibilityCause::ProgramHid);
    m_pulse->wakeAt(Pulse::kNever);
    disconnect(m_pulse.get(), nullptr, this, nullptr);
    m_actor.window().disconnect(this);
    if (m_menu)
        m_menu->close();
}

RequestPtr AgentCharacter::add(Request::Kind kind, std::unique_ptr<Act> act)
{
    wake();
    return m_queue.add(kind, std::move(act));
}

RequestPtr AgentCharacter::Show(bool fast)
{
    return add(Request::Kind::Show, showAct(fast, VisibilityCause::ProgramShowed));
}

RequestPtr AgentCharacter::Hide(bool fast)
{
    return add(Request::Kind::Hide, hideAct(fast, VisibilityCause::ProgramHid));
}

RequestPtr AgentCharacter::MoveTo(int x, int y, int speed)
{
    return add(Request::Kind::MoveTo, moveAct(shortPoint(x, y), speed));
}

RequestPtr AgentCharacter::Play(const QString &animation)
{
    const Animation *found = m_file->animation(animation);
    if (!found)
        throw Error(ErrorNumber::UnknownAnimation, u"%1 has no animation %2."_s.arg(name(), animation));
    return add(Request::Kind::Play, playAct(*found));
}

RequestPtr AgentCharacter::Speak(const QString &text) { return add(Request::Kind::Speak, speakAct(text)); }

RequestPtr AgentCharacter::Think(const QString &text) { return add(Request::Kind::Think, thinkAct(text)); }

RequestPtr AgentCharacter::GestureAt(int x, int y)
{
    return add(Request::Kind::GestureAt, gestureAct(shortPoint(x, y)));
}

void AgentCharacter::Stop()
{
    m_queue.stopAll();
    wake();
}

void AgentCharacter::Stop(const RequestPtr &request)
{
    m_queue.stop(request);
    wake();
}

void AgentCharacter::setIdleOn(bool on)
{
    m_idler.setOn(on);
    wake();
}

void AgentCharacter::Listen(bool on)
{
    if (m_retired)
        return;
    if (!on) {
        m_listening.release();
    } else if (!m_listening.isActive()) {
        m_queue.interrupt(ErrorNumber::InterruptedByListening);
        m_idler.disturb();
        if (!isVisible())
            m_actor.appear(nullptr, VisibilityCause::UserShowed);
        m_listening.begin(m_commands);
    }
    wake();
}

void AgentCharacter::watchWindow()
{
    CharacterWindow &window = m_actor.window();
    relay(&CharacterWindow::clicked, &Control::clicked);
    relay(&CharacterWindow::doubleClicked, &Control::doubleClicked);
    relay(&CharacterWindow::dragStarted, &Control::dragStarted);
    relay(&CharacterWindow::dragCompleted, &Control::dragCompleted);
    connect(&window, &CharacterWindow::dragCompleted, this, [this] { m_actor.tellMoved(MoveCause::User); });
    connect(&window, &CharacterWindow::menuWanted, this, &AgentCharacter::showMenu);
}

void AgentCharacter::relay(void (CharacterWindow::*from)(int, int, const QPoint &), ButtonSignal to)
{
    connect(&m_actor.window(), from, this, [this, to](int button, int shift, const QPoint &at) {
        touched();
        m_events.post([to, id = m_id, button, shift, at](
                          Control &control) { emit(control.*to)(id, button, shift, at.x(), at.y()); });
    });
}

/** The user has laid hands on it: it wakes, and a balloon that was left standing goes. */
void AgentCharacter::touched()
{
    m_idler.disturb();
    if (!m_actor.talker().isTalking() && !m_listening.isActive())
        m_actor.talker().hideBalloon();
    wake();
}

void AgentCharacter::watchScreens()
{
    const auto keep = [this] {
        m_actor.keepOnScreen();
        wake();
    };
    const auto watch
        = [this, keep](QScreen *screen) { connect(screen, &QScreen::availableGeometryChanged, this, keep); };
    for (QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    // The screen is still in the list while its going is announced.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, keep, Qt::QueuedConnection);
}

void AgentCharacter::showMenu(const QPoint &at)
{
    touched();
    if (m_menu)
        m_menu->close();
    m_menu = new CommandMenu(m_commands, &m_actor.window());
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_menu, &CommandMenu::hideChosen, this, &AgentCharacter::hideByUser);
    connect(m_menu, &CommandMenu::commandChosen, this, &AgentCharacter::chosenByMenu);
    connect(m_menu, &QMenu::aboutToHide, this, [this] { wake(); });
    m_menu->popup(at);
}

void AgentCharacter::hideByUser()
{
    m_queue.intervene(
        Request::Kind::Hide, hideAct(false, VisibilityCause::UserHid), ErrorNumber::HiddenMeanwhile);
    wake();
}

void AgentCharacter::chosenByMenu(const QString &name)
{
    UserInput input;
    input.name = name;
    input.characterId = m_id;
    m_events.post([input](Control &control) { emit control.commandChosen(input); });
    wake();
}

bool AgentCharacter::isFree() const
{
    return isVisible() && m_queue.isEmpty() && !m_listening.isActive() && !(m_menu && m_menu->isVisible());
}

/** One step after the other, and what each has to tell in between, so that a handler finds everything in
 * order. */
void AgentCharacter::beat()
{
    const QPointer<AgentCharacter> self(this);
    bool more = true;
    for (int step = 0; more && step < kStepsABeat; ++step) {
        m_actor.beat();
        m_listening.beat();
        // What idling has begun must be over before a request begins.
        m_idler.beat(isFree());
        if (!m_listening.isActive())
            m_queue.work();
        more = !m_events.isEmpty();
        if (!tellEvents() || !self)
            return;
    }
    m_pulse->wakeAt(more ? m_pulse->now() : due());
}

/** False when a handler has unloaded the character. */
bool AgentCharacter::tellEvents()
{
    const QPointer<AgentCharacter> self(this);
    while (!m_events.isEmpty()) {
        m_events.takeFirst()(m_control);
        if (!self || m_retired)
            return false;
    }
    return true;
}

qint64 AgentCharacter::due() const
{
    const qint64 queue = m_listening.isActive() ? m_listening.due() : m_queue.due();
    return std::min({ m_actor.due(), queue, m_idler.due() });
}

} // namespace agent
