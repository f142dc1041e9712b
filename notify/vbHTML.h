#pragma once

#include "core/ResultTable.h"
#include "core/Task.h"

#include <QString>

/** End of a cycle: writes the status page when it is switched on. failedNow and recoveredNow are the lists of the
    announcement, 6 and 5 columns. */
Task<void> CreateHTMLOutput(ResultTable failedNow, ResultTable recoveredNow);
/** Expands the template and replaces the page. Without a template the page is switched off. */
Task<void> WriteHTMLOutput(QString outputPath, ResultTable failedNow, ResultTable recoveredNow);

/** The tag that makes a browser load the page again every "HTMLRefresh" minutes. */
QString HTML_Header(const QString &outputPath);
/** All groups, their devices and the checks of these, one section each. */
Task<QString> HTML_Details(QString groupSection, QString deviceSection, QString portSection);
/** The script lines that announce the changes, or the comment that there are none. */
QString HTML_Agent(const ResultTable &failedNow, const ResultTable &recoveredNow);
/** The template is missing: says so in the page, aloud and in the log, and switches the page off. */
Task<void> HTML_Error(QString outputPath);

/** The View menu's command: opens the page in the browser, or says that there is none. */
void ViewHTML();
