#pragma once

#include "tests/world/SimulatedWaits.h"
#include "tests/world/World.h"
#include "ui/Commands.h"
#include "ui/DeviceTree.h"
#include "ui/Editors.h"
#include "ui/EventList.h"
#include "ui/StatusBar.h"
#include "ui/StatusList.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QStringList>
#include <gtest/gtest.h>

#include <memory>

/** So that failures show texts instead of their bytes. */
inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }

/** Editors that record what they were asked to open. */
class RecordingEditors : public Editors
{
public:
    QStringList opened;
    bool canEdit(NodeLevel level, const QString &) const override { return level >= NodeLevel::Group; }
    void properties(EditedTree &, NodeLevel, const QString &key) override { opened << QStringLiteral("properties ") + key; }
    bool hasDetails(NodeLevel level, const QString &) const override { return level == NodeLevel::Port; }
    void details(EditedTree &, NodeLevel, const QString &key) override { opened << QStringLiteral("details ") + key; }
    void addGroup(EditedTree &) override { opened << QStringLiteral("add group"); }
    void addDevice(EditedTree &tree) override { opened << QStringLiteral("add device ") + tree.currentKey(); }
    void addPort(EditedTree &tree) override { opened << QStringLiteral("add port ") + tree.currentKey(); }
    void portList(EditedTree &) override { opened << QStringLiteral("port list"); }
    void about(EditedTree &) override { opened << QStringLiteral("about"); }
    void options(EditedTree &) override { opened << QStringLiteral("options"); }
};

/** The real window on a real database; only boxes, announcer and time are the test's. */
class WindowWorld : public testing::Test
{
protected:
    World world;
    std::unique_ptr<SimulatedWaits> time = std::make_unique<SimulatedWaits>();
    QStringList progress;
    std::unique_ptr<frmMain> window;

    ~WindowWorld() override;

    /** Makes, loads, places and shows the window as the start-up does. */
    void open(Editors *editors = nullptr, TerminalEcho *echo = nullptr);
    void openAt(double left, double top, double width, double height, Editors *editors = nullptr,
        TerminalEcho *echo = nullptr);

    DeviceTree &tree() { return window->tree(); }
    StatusList &list() { return window->list(); }
    QAction &action(const char *name) { return *window->commands().action(name); }
    void trigger(const char *name) { action(name).trigger(); }
    /** Selects a node as a click would, focus included. */
    void select(NodeLevel level, const QString &key)
    {
        tree().setFocus();
        ASSERT_TRUE(tree().selectNode(level, key)) << key.toStdString();
    }
    /** The tree, a line a node: indentation, key, text, icon, and "open" for an expanded one. */
    QStringList treeLines();
    /** The list, a line a row: key, icon, cells. */
    QStringList listLines();
    /** Lets the tree's icons be refreshed to the end. */
    void refresh();
    /** The different rows of a SELECT. */
    QStringList distinct(const QString &select);
    /** Expects the error box of a procedure and that the program ends. */
    void expectEnd(const QString &procedure, const std::function<void()> &act);
};

/** A group "Servers" with web (alias, ping + 80 + 9) and a group "Empty"; all as after a counter reset. */
struct SmallNetwork {
    explicit SmallNetwork(World &world);
    int servers, empty, web, plain;
    int ping, port80, port9;
    QString groupKey, deviceKey, portKey;
};
