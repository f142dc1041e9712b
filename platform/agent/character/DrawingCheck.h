#pragma once

#include <QByteArray>
#include <QStringList>

namespace agent {

/** The ids of a drawing's top groups, in drawing order. Only what the renderer draws well and what cannot harm is
    allowed: shapes, groups and gradients, no images, links, scripts, style sheets, entities or texts. Throws
    agent::Error BadData with the line of the fault. */
QStringList checkedPictures(const QByteArray &svg);

} // namespace agent
