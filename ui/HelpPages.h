#pragma once

#include <QObject>
#include <QString>

/** The help as single pages, which a browser shows; the help file's viewers take no page from outside. */
namespace helppages {

/** The page about a dialog by the dialog's name, such as "frmAddPort", or about a page of the options by its
   key, such as "SMTP"; the first page for all others. */
QString pageOf(const QString &name);

/** Shows a page in the browser, or says where it lies when there is none. */
void show(const QString &page);

} // namespace helppages

/** F1 in a dialog: shows the page about it. The window's own F1 is a command of its menu. */
class ContextHelp : public QObject
{
public:
    /** Watches the whole application's keys as long as it lives. */
    explicit ContextHelp(QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
