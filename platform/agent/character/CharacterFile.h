#pragma once

// A character as its file describes it; nothing here changes once it is loaded.

#include "platform/agent/Voice.h"
#include "platform/agent/character/Animation.h"

#include <QHash>
#include <QRectF>
#include <QStringList>

#include <memory>

class QSvgRenderer;

namespace agent {

/** A movable piece of the drawing. */
struct Part {
    QString name;
    qsizetype parent = -1; // -1: moves by itself
    QPointF pivot;         // in the drawing's units
    QStringList pictures;  // the part's groups in the drawing: "mouth.0", "mouth.1" ...; may be empty
};

/** Seven shapes of the mouth: 0 closed, 1 to 4 open wide, 5 open round, 6 narrow. */
constexpr int kMouthShapes = 7;
/** The mouth stays as the pose says. */
constexpr int kMouthOfPose = -1;

class CharacterFile
{
public:
    /** Everything that a file holds; the reader fills it, and has checked every reference in it. */
    struct Content {
        QString name;
        QString description;
        Voice voice;
        QRectF frame;
        QPointF balloonAnchor; // in the drawing's coordinates, as everything here
        QList<Part> parts;          // in drawing order, farthest first
        QList<qsizetype> fromRoots; // the same parts, every parent before its children
        Pose rest;
        qsizetype mouth = -1;
        QList<int> mouthPictures;   // which picture shows which of the seven shapes
        QList<Track> mouthTracks;   // what moves with the mouth; a key's time is the shape
        QHash<QString, Animation> animations; // by name in lower case
        QHash<QString, QStringList> states;   // by name in lower case
        std::shared_ptr<QSvgRenderer> drawing;
    };
    explicit CharacterFile(Content content)
        : m_content(std::move(content))
    {
    }

    /** Throws agent::Error: FileNotFound, NotACharacterFile, FileTooOld, FileTooNew, BadData. */
    static std::shared_ptr<const CharacterFile> load(const QString &path);
    /** The same from a file's bytes. */
    static std::shared_ptr<const CharacterFile> read(const QByteArray &bytes);

    /** For people: "Merlin". */
    const QString &name() const { return m_content.name; }
    const QString &description() const { return m_content.description; }
    const Voice &voice() const { return m_content.voice; }
    /** The frame in units; one unit is one device-independent pixel at the usual size. */
    QSizeF size() const { return m_content.frame.size(); }
    /** Where a balloon's tail points to, in units from the frame's top left corner. */
    QPointF balloonAnchor() const { return m_content.balloonAnchor - m_content.frame.topLeft(); }
    /** The part of the drawing that is shown. */
    QRectF frame() const { return m_content.frame; }

    const QList<Part> &parts() const { return m_content.parts; }
    const QList<qsizetype> &fromRoots() const { return m_content.fromRoots; }
    /** The neutral pose, in which every animation starts and to which it returns. */
    const Pose &restPose() const { return m_content.rest; }
    /** Null when there is none of that name; without regard to case. */
    const Animation *animation(const QString &name) const;
    /** As the file spells them, sorted. */
    QStringList animationNames() const;
    /** The animations of a state ("Showing", "IdlingLevel1", ...), one of which is to be played; may be empty. */
    QStringList state(const QString &name) const;
    /** The pose with the mouth, and what moves with it, in one of the seven shapes; kMouthOfPose changes nothing. */
    Pose speaking(const Pose &pose, int mouth) const;

    /** The parts' pictures, each under its id. */
    QSvgRenderer &drawing() const { return *m_content.drawing; }

private:
    Content m_content;
};

} // namespace agent
