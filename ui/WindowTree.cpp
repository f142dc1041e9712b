#include "ui/WindowTree.h"

#include "ui/DeviceTree.h"

#include <QMainWindow>

NodeLevel WindowTree::currentLevel() const { return m_parts.tree.currentLevel(); }

QString WindowTree::currentKey() const { return m_parts.tree.currentKey(); }

QString WindowTree::currentText() const { return m_parts.tree.currentText(); }

void WindowTree::setNodeText(NodeLevel level, const QString &key, const QString &text)
{
    m_parts.tree.setNodeText(level, key, text);
}

void WindowTree::addNode(
    NodeLevel level, const QString &parentKey, const QString &key, const QString &text, int image)
{
    m_parts.tree.insertNode(level, parentKey, key, text, image);
}

void WindowTree::removeNode(NodeLevel level, const QString &key) { m_parts.tree.removeNode(level, key); }

void WindowTree::selectNode(NodeLevel level, const QString &key)
{
    m_parts.tree.selectNode(level, key);
    // What was just made is where the next key belongs: back to its group, or on to its checks.
    m_parts.tree.setFocus();
}

void WindowTree::refreshViews()
{
    m_parts.tree.Load_TreeView();
    m_parts.tree.clickCurrent();
}

QWidget *WindowTree::window() { return &m_parts.window; }
