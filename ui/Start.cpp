#include "ui/Start.h"

#include "core/vbMain.h"
#include "monitor/CheckCycle.h"
#include "ui/ImageList.h"
#include "ui/TerminationSignals.h"
#include "ui/frmMain.h"
#include "ui/frmSplash.h"

#include <QApplication>

bool isHeadless()
{
    return qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void choosePlatform()
{
    if (isHeadless() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

Start::Start(Editors *editors, TerminalEcho *echo)
    : m_editors(editors)
    , m_echo(echo)
{
    QApplication::setWindowIcon(ImageList::application());
}

Start::~Start()
{
    if (m_window && vbMain().window == m_window.get())
        vbMain().window = nullptr;
}

bool Start::anotherCopyRuns() { return !m_lock.acquire(); }

void Start::showSplash()
{
    m_splash = std::make_unique<frmSplash>();
    m_splash->show();
    m_splash->repaint();
}

void Start::setSplashStatus(const QString &text)
{
    if (m_splash)
        m_splash->setStatus(text);
}

void Start::unloadSplash() { m_splash.reset(); }

void Start::createMainWindow()
{
    m_window = std::make_unique<frmMain>(m_editors, m_echo);
    vbMain().window = m_window.get();
    QObject::connect(m_window.get(), &frmMain::closed, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    m_signals = std::make_unique<TerminationSignals>();
    QObject::connect(
        m_signals.get(), &TerminationSignals::received, m_window.get(), &frmMain::closeWithoutQuestion);
}

Task<void> Start::loadMainWindow()
{
    return m_window->load([this](const QString &text) { setSplashStatus(text); });
}

void Start::setCaption(const QString &caption) { m_window->setWindowTitle(caption); }

void Start::placeMainWindow(float left, float top, float width, float height)
{
    m_window->place(left, top, width, height);
}

void Start::showMainWindow() { m_window->show(); }

void Start::startMonitoring() { m_window->cycle().Monitor_Initialize(); }
