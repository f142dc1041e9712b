#include "Sheet.h"
#include "platform/agent/Agent.h"
#include "platform/agent/character/CharacterPacker.h"
#include "platform/agent/character/CharacterRenderer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace Qt::StringLiterals;
using agent::CharacterFile;
using agent::Error;
using agent::ErrorNumber;

namespace {

constexpr char kUsage[] = R"(usage:
  kavro-acs pack DIR OUT.acs                        make a character file from its sources
  kavro-acs check FILE                              read one and say what is in it
  kavro-acs sheet OUT.png FILE...                   every animation, three moments of each
  kavro-acs strip FILE ANIMATION FRAMES OUT.png     one animation from start to end
  kavro-acs frame FILE ANIMATION MS OUT.png [SCALE [MOUTH]]
                                                    one moment; mouth shapes are 0 to 6
)";

void save(const QImage &image, const QString &path)
{
    if (!image.save(path))
        throw Error(ErrorNumber::BadData, u"%1 cannot be written."_s.arg(path));
}

const agent::Animation &animationOf(const CharacterFile &character, const QString &name)
{
    const agent::Animation *animation = character.animation(name);
    if (!animation)
        throw Error(ErrorNumber::UnknownAnimation, u"%1 has no animation %2."_s.arg(character.name(), name));
    return *animation;
}

void pack(const QStringList &args)
{
    const QByteArray bytes = agent::packedFolder(args.at(0));
    QSaveFile file(args.at(1));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw Error(ErrorNumber::BadData, u"%1: %2"_s.arg(args.at(1), file.errorString()));
}

void check(const QStringList &args)
{
    const auto character = CharacterFile::load(args.at(0));
    std::printf("%s: %lld parts, %lld animations: %s\n", qUtf8Printable(character->name()),
                static_cast<long long>(character->parts().size()),
                static_cast<long long>(character->animationNames().size()),
                qUtf8Printable(character->animationNames().join(u' ')));
}

void sheet(const QStringList &args)
{
    QList<std::shared_ptr<const CharacterFile>> characters;
    for (const QString &file : args.mid(1))
        characters += CharacterFile::load(file);
    save(contactSheet(characters), args.at(0));
}

void strip(const QStringList &args)
{
    const auto character = CharacterFile::load(args.at(0));
    save(filmStrip(character, animationOf(*character, args.at(1)), std::clamp(args.at(2).toInt(), 1, 200), 1.25),
         args.at(3));
}

/** On a ground that is half light and half dark, because a character stands on any desktop. */
void frame(const QStringList &args)
{
    const auto character = CharacterFile::load(args.at(0));
    agent::CharacterRenderer renderer(character);
    const qreal scale = args.size() > 4 ? std::clamp(args.at(4).toDouble(), 0.1, 10.0) : 2.5;
    const int mouth = args.size() > 5 ? args.at(5).toInt() : agent::kMouthOfPose;
    const QImage figure
        = renderer.image(animationOf(*character, args.at(1)).at(args.at(2).toInt()), mouth, scale);
    QImage image(figure.width() * 2, figure.height(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawImage(0, 0, figure);
    painter.fillRect(figure.width(), 0, figure.width(), figure.height(), QColor(0x2b, 0x2b, 0x2b));
    painter.drawImage(figure.width(), 0, figure);
    painter.end();
    save(image, args.at(3));
}

struct Verb {
    const char16_t *name;
    qsizetype least, most; // arguments
    void (*run)(const QStringList &);
};

constexpr Verb kVerbs[] = { { u"pack", 2, 2, pack },
                            { u"check", 1, 1, check },
                            { u"sheet", 2, 100, sheet },
                            { u"strip", 4, 4, strip },
                            { u"frame", 4, 6, frame } };

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const bool writesText = argc > 1 && std::strcmp(argv[1], "sheet") == 0; // fonts need the whole of Qt Gui
    const std::unique_ptr<QCoreApplication> app(writesText ? new QGuiApplication(argc, argv)
                                                           : new QCoreApplication(argc, argv));
    const QStringList args = app->arguments().mid(1);
    for (const Verb &verb : kVerbs) {
        if (args.value(0) != QStringView(verb.name) || args.size() - 1 < verb.least || args.size() - 1 > verb.most)
            continue;
        try {
            verb.run(args.mid(1));
            return 0;
        } catch (const Error &error) {
            std::fprintf(stderr, "kavro-acs: %s\n", qUtf8Printable(error.text()));
            return 1;
        }
    }
    std::fputs(kUsage, stderr);
    return 2;
}
