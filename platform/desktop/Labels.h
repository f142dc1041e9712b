#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace desktop {

/** A wrapped line of explanation in the palette's muted colour. The text is plain. */
QLabel *mutedLabel(const QString &text, QWidget *parent);
/** A bold line that says what follows. The text is plain. */
QLabel *headingLabel(const QString &text, QWidget *parent);

} // namespace desktop
