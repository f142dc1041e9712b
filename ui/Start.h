#pragma once

#include "core/Main.h"
#include "ui/InstanceLock.h"

#include <memory>

class Editors;
class TerminalEcho;
class TerminationSignals;
class frmMain;
class frmSplash;

/** Whether the session has no display at all. */
bool isHeadless();
/** Without a display the program runs on a platform that needs none. Call before the application object is
 * made. */
void choosePlatform();

/** Splash screen and main window for the start-up. */
class Start : public StartFactory
{
public:
    /** Both may be absent and outlive this object. */
    explicit Start(Editors *editors = nullptr, TerminalEcho *echo = nullptr);
    ~Start() override;

    bool anotherCopyRuns() override;
    void showSplash() override;
    void setSplashStatus(const QString &text) override;
    void unloadSplash() override;
    void createMainWindow() override;
    Task<void> loadMainWindow() override;
    void setCaption(const QString &caption) override;
    void placeMainWindow(float left, float top, float width, float height) override;
    void showMainWindow() override;
    void startMonitoring() override;

    frmMain *window() const { return m_window.get(); }
    frmSplash *splash() const { return m_splash.get(); }

private:
    Editors *m_editors;
    TerminalEcho *m_echo;
    InstanceLock m_lock;
    std::unique_ptr<frmSplash> m_splash;
    std::unique_ptr<frmMain> m_window;
    std::unique_ptr<TerminationSignals> m_signals;
};
