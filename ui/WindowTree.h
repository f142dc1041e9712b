#pragma once

#include "ui/Editors.h"
#include "ui/WindowParts.h"

/** The window's tree and list as the editors see them. */
class WindowTree : public EditedTree
{
public:
    explicit WindowTree(const WindowParts &parts)
        : m_parts(parts)
    {
    }

    NodeLevel currentLevel() const override;
    QString currentKey() const override;
    QString currentText() const override;
    void setNodeText(NodeLevel level, const QString &key, const QString &text) override;
    void addNode(NodeLevel level, const QString &parentKey, const QString &key, const QString &text,
        int image) override;
    void removeNode(NodeLevel level, const QString &key) override;
    void selectNode(NodeLevel level, const QString &key) override;
    void refreshViews() override;
    QWidget *window() override;

private:
    WindowParts m_parts;
};
