#pragma once

#include <QString>

class QWidget;

/** How a file is chosen: the question, what its name must hold, and what stands in the field when it does not. */
struct FilePicker {
    const char16_t *title; // behind the application title when it begins with a blank
    const char16_t *proposed;
    const char16_t *filter;
    const char16_t *ending; // somewhere in the name, whatever its case
    const char16_t *wrongEnding; // the message when it is missing
    const char16_t *fallback; // in the program folder
    bool existing; // chosen to be read
};

extern const FilePicker kLogFilePicker;
extern const FilePicker kPageFilePicker;
extern const FilePicker kTemplateFilePicker;

/** Asks for the file and says what is wrong with the answer; returns what is to stand in the field. */
QString PickFile(QWidget *parent, const FilePicker &picker, const QString &present);
/** Whether the name holds what it must. */
bool HasEnding(const FilePicker &picker, const QString &name);
