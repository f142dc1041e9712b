#pragma once

#include "ui/Editors.h"

#include <functional>

struct DeviceRef;

/** Opens the forms. */
class OperatorEditors : public Editors
{
public:
    /** Reports the version of the mail control; without one the about box leaves its line out. */
    using Version = std::function<QString()>;
    /** Opens the options above a window and returns when they are closed. */
    using OpenOptions = std::function<void(QWidget *window)>;
    explicit OperatorEditors(Version smtpVersion = {}, OpenOptions openOptions = {})
        : m_smtpVersion(std::move(smtpVersion))
        , m_openOptions(std::move(openOptions))
    {
    }

    bool canEdit(NodeLevel level, const QString &key) const override;
    void properties(EditedTree &tree, NodeLevel level, const QString &key) override;
    bool hasDetails(NodeLevel level, const QString &key) const override;
    void details(EditedTree &tree, NodeLevel level, const QString &key) override;
    void addGroup(EditedTree &tree) override;
    void addDevice(EditedTree &tree) override;
    void addPort(EditedTree &tree) override;
    void portList(EditedTree &tree) override;
    void about(EditedTree &tree) override;
    void options(EditedTree &tree) override;

private:
    Version m_smtpVersion;
    OpenOptions m_openOptions;
};
