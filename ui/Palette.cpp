#include "ui/Palette.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

struct Colour {
    QPalette::ColorRole role;
    QRgb rgb;
};

constexpr Colour kDark[] = {
    { QPalette::Window, 0xff2b2b2e },
    { QPalette::WindowText, 0xffe6e6e6 },
    { QPalette::Base, 0xff1f1f22 },
    { QPalette::AlternateBase, 0xff26262a },
    { QPalette::Text, 0xffe6e6e6 },
    { QPalette::Button, 0xff35353a },
    { QPalette::ButtonText, 0xffe6e6e6 },
    { QPalette::BrightText, 0xffffffff },
    { QPalette::ToolTipBase, 0xff3a3a40 },
    { QPalette::ToolTipText, 0xffe6e6e6 },
    { QPalette::Highlight, 0xff2f6fb3 },
    { QPalette::HighlightedText, 0xffffffff },
    { QPalette::Link, 0xff6fb1f0 },
    { QPalette::PlaceholderText, 0xff9a9aa0 },
    { QPalette::Light, 0xff4a4a50 },
    { QPalette::Midlight, 0xff404046 },
    { QPalette::Mid, 0xff1c1c1f },
    { QPalette::Dark, 0xff18181a },
    { QPalette::Shadow, 0xff101012 },
};

constexpr QRgb kDarkDisabled = 0xff8c8c92;

QPalette darkPalette()
{
    QPalette palette;
    for (const Colour &colour : kDark)
        palette.setColor(colour.role, QColor::fromRgba(colour.rgb));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, QColor::fromRgba(kDarkDisabled));
    return palette;
}

} // namespace

void applyPaletteOfEnvironment()
{
    const QString wanted = qEnvironmentVariable("KAVRO_PALETTE");
    if (wanted != u"dark" && wanted != u"light")
        return;
    // The one style that follows any palette everywhere.
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    const QPalette palette = wanted == u"dark" ? darkPalette() : QApplication::style()->standardPalette();
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}
