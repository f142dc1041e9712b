#pragma once

#include "ui/NodeKeys.h"

/** What the window needs of the rooms that edit monitored objects. A build without them shows no such
 * command. */
class Editors
{
public:
    virtual ~Editors() = default;

    /** Whether a properties dialog exists for a node. */
    virtual bool canEdit(NodeLevel level, const QString &key) const = 0;
    /** Opens the properties dialog of a group, device or check. */
    virtual void properties(NodeLevel level, const QString &key) = 0;
    /** Whether the details and history of a check can be shown. */
    virtual bool hasDetails(NodeLevel level, const QString &key) const = 0;
    virtual void details(NodeLevel level, const QString &key) = 0;
};
