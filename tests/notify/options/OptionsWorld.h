#pragma once

#include "core/Settings.h"
#include "notify/options/frmOptions.h"
#include "tests/ui/WindowWorld.h"

#include <functional>
#include <memory>

/** The options dialog on a store and a character folder of its own, driven by its controls. */
class OptionsWorld : public testing::Test
{
protected:
    World world;
    std::unique_ptr<frmOptions> form;

    OptionsWorld();
    ~OptionsWorld() override;

    /** Opens the dialog anew. */
    void open(frmOptions::Helpers helpers = {});
    void press(const QString &button);
    void ok() { press(QStringLiteral("cmdArray(0)")); }
    void cancel() { press(QStringLiteral("cmdArray(1)")); }

    template <class Control = QWidget>
    Control &at(const QString &name)
    {
        auto *control = form->findChild<Control *>(name);
        if (!control)
            qFatal("no control %s", qPrintable(name));
        return *control;
    }
    /** Types over whatever stands in a line, a text or a number. */
    void type(const QString &name, const QString &text);
    /** Types letters of any script at the cursor. */
    static void typeInto(QWidget &box, const QString &text);
    /** What is told beside a control. */
    QString note(const QString &key);
    /** Carries out something that opens a modal form, and drives that form. */
    void drive(const std::function<void()> &opens, const std::function<void(QDialog &)> &act);
    /** The stored text of a key, "absent" when there is none. */
    static QString stored(const QString &section, const QString &key);
    void makeCharacters(const QStringList &files);
};
