#pragma once

#include "core/Task.h"

#include <QString>
#include <QStringList>

/** What start-up needs of windows, so that its order can be tested without one. */
class StartFactory
{
public:
    virtual ~StartFactory() = default;
    virtual bool anotherCopyRuns() = 0;
    virtual void showSplash() = 0;              // modeless, painted at once
    virtual void setSplashStatus(const QString &text) = 0;
    virtual void unloadSplash() = 0;
    virtual void createMainWindow() = 0;        // sets vbMain().window
    virtual Task<void> loadMainWindow() = 0;    // Form_Load, fill handler, view handler
    virtual void setCaption(const QString &caption) = 0;
    virtual void placeMainWindow(float left, float top, float width, float height) = 0; // twips
    virtual void showMainWindow() = 0;
    virtual void startMonitoring() = 0;         // Monitor_Initialize
};

/** The entry point: the whole start-up in its order. arguments is the command line as one text. */
Task<void> Main(StartFactory &factory, QString arguments);
