#include "desktop/shell/DeskAppearance.h"

#include "platform/Preferences.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace quillon::desktop {

namespace {

constexpr const char* appearanceKey = "Quillon.appearance";

bool systemAsksForDark() {
    const QString gtkTheme = qEnvironmentVariable("GTK_THEME").toLower();
    return gtkTheme.endsWith(QStringLiteral(":dark")) || gtkTheme.endsWith(QStringLiteral("-dark"));
}

QPalette darkPalette() {
    const QColor window(0x2b, 0x2d, 0x30);
    const QColor base(0x1f, 0x20, 0x22);
    const QColor text(0xe8, 0xe6, 0xe3);
    const QColor disabled(0x7d, 0x7f, 0x82);
    const QColor highlight(0x3d, 0x7a, 0xc6);
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2c));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3c, 0x40));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, disabled);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0x35, 0x37, 0x3b));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, QColor(0xff, 0x6b, 0x6b));
    palette.setColor(QPalette::Light, QColor(0x45, 0x47, 0x4b));
    palette.setColor(QPalette::Midlight, QColor(0x3a, 0x3c, 0x40));
    palette.setColor(QPalette::Mid, QColor(0x25, 0x26, 0x28));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x19, 0x1a));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xa8, 0xf0));
    palette.setColor(QPalette::LinkVisited, QColor(0xa7, 0x8b, 0xe0));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4c, 0x50));
    return palette;
}

} // namespace

bool isDarkPalette() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

void applyAppearance(QApplication& application, const platform::Preferences& preferences) {
    const std::string chosen = preferences.string(appearanceKey);
    const bool dark = chosen == "dark" || (chosen != "light" && (systemAsksForDark() || isDarkPalette()));
    if (!dark)
        return;
    // Fusion draws every control from the palette, so the dark colours reach all of them.
    application.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    application.setPalette(darkPalette());
}

} // namespace quillon::desktop
