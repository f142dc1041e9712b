#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/** The four texts of a status page template. */
struct HtmlTemplate {
    QString page;
    QString group;
    QString device;
    QString port;
};

/** Takes a template apart at its marker lines. Where a device section begins the page gets the place for all
    details. */
HtmlTemplate SplitTemplate(const QString &text);

/** A file's text: UTF-8, or Latin-1 when it is no valid UTF-8. Throws VbError 75 when it cannot be read. */
QString ReadTemplate(const QString &path);

/** Text as it may stand in a page: nothing in it can open or close a tag, an attribute or a comment. */
QString HtmlText(const QString &text);

/** A section with its placeholders found once and filled in many times. Values are never searched for
    placeholders. */
class HtmlSection
{
public:
    HtmlSection(const QString &text, const QStringList &placeholders);
    /** Appends the section with values in the place of the placeholders, in their order. */
    void expand(const QStringList &values, QString &page) const;

private:
    struct Piece {
        QString text;    // copied as it stands
        int placeholder; // then this one's value; -1 behind the last
    };
    QVector<Piece> m_pieces;
};
