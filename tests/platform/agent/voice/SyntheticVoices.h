#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/** Voices that the recogniser has not been trained with: two of the program's own engine and one of another maker. */
QStringList syntheticVoices();

/** A text as the recogniser takes it, 16 bits at 16 kHz with a moment of faint noise around it. speed 1 is normal.
    Empty when the voice cannot speak. */
QByteArray spokenBy(const QString &voice, const QString &text, double speed);
