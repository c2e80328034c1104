#include "widgets/Theme.h"

#include "widgets/sheets/ControlsSheet.h"
#include "widgets/sheets/NotebookSheet.h"
#include "widgets/sheets/ReviewSheet.h"
#include "widgets/sheets/SettingsSheet.h"
#include "widgets/sheets/StatusSheet.h"
#include "widgets/sheets/TalkSheet.h"

#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct Pair {
    const char *name;
    QRgb light;
    QRgb dark;
};

// In the order of Tone.
constexpr std::array tones{
    Pair{"paper", 0xF6F1E6, 0x1D1A17},
    Pair{"surface", 0xFDFBF6, 0x27231F},
    Pair{"sunken", 0xEEE7D8, 0x151310},
    Pair{"border", 0xE0D6C4, 0x3B352D},
    Pair{"borderStrong", 0x8B7F6D, 0x857A6B},
    Pair{"ink", 0x2B2621, 0xEFE7DA},
    Pair{"ink2", 0x5F564B, 0xC2B7A7},
    Pair{"ink3", 0x6C6256, 0xA99D89},
    Pair{"leaf", 0xDE8C38, 0xDE8C38},
    Pair{"accent", 0x8F4C0B, 0xEBAA67},
    Pair{"accentLine", 0xB8691A, 0xCF8536},
    Pair{"primaryFill", 0x2B2621, 0xEFE7DA},
    Pair{"primaryText", 0xFAF5EA, 0x211D19},
    Pair{"select", 0xF3DCBD, 0x5A3F22},
    Pair{"good", 0x2F6B3A, 0x8CCB91},
    Pair{"bad", 0xA63F2C, 0xEB9A86},
    Pair{"warn", 0x7A5A06, 0xDDB651},
    Pair{"gold", 0xA06E00, 0xDDB651},
    Pair{"orangeText", 0x83450A, 0xF0BC85},
    Pair{"purpleText", 0x5B3C8A, 0xCDB6F0},
    Pair{"amber", 0xE2B438, 0xE2B438},
    Pair{"onLeaf", 0x2B2621, 0x2B2621},
};

struct TintColours {
    QRgb lightBase, darkBase, lightText, darkText;
};

// In the order of Tint.
constexpr std::array tints{
    TintColours{0x3E72B0, 0x6FA0DC, 0x24507F, 0xA9C8EE},
    TintColours{0x4E8F52, 0x78B97C, 0x2A5F33, 0xA9D8AB},
    TintColours{0xDE8C38, 0xDE8C38, 0x83450A, 0xF0BC85},
    TintColours{0x7F5BAE, 0xA986DA, 0x5B3C8A, 0xCDB6F0},
};

struct TypeSize {
    double size;
    double pitch;
    QFont::Weight weight;
};

// In the order of TextType.
constexpr std::array types{
    TypeSize{30, 40, QFont::DemiBold},
    TypeSize{24, 32, QFont::DemiBold},
    TypeSize{20, 28, QFont::DemiBold},
    TypeSize{18, 27, QFont::DemiBold},
    TypeSize{15, 24, QFont::Medium},
    TypeSize{14, 23, QFont::Normal},
    TypeSize{13, 20, QFont::Normal},
    TypeSize{12, 19, QFont::Normal},
    TypeSize{11, 16, QFont::Normal},
    TypeSize{28, 40, QFont::Medium},
};

QColor withOpacity(QColor colour, double opacity)
{
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

QString css(const QColor &colour)
{
    return u"rgba(%1,%2,%3,%4)"_s.arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alpha());
}

// One for each room that has rules of its own.
constexpr std::array sheets{
    controlsSheet,
    statusSheet,
    reviewSheet,
    talkSheet,
    notebookSheet,
    settingsSheet,
};

} // namespace

Theme::Theme(double scale, QObject *parent) : QObject(parent), m_scale(scale) { }

double Theme::desktopScale()
{
    // Worked out, for to resolve the font would read all that is known of the system's fonts at each start.
    const QFont font = QGuiApplication::font();
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dotsPerPoint = (screen ? screen->logicalDotsPerInchY() : 72) / 72;
    const double pixels = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * dotsPerPoint;
    return std::max(1.0, std::round(pixels / 13 * 8) / 8);
}

void Theme::setScheme(Scheme scheme)
{
    if (m_scheme == scheme)
        return;
    m_scheme = scheme;
    refresh();
}

void Theme::setStill(bool still)
{
    m_isStill = still;
}

int Theme::points(double count) const
{
    return qRound(count * m_scale);
}

QColor Theme::colour(Tone tone) const
{
    const Pair &pair = tones.at(static_cast<std::size_t>(tone));
    return QColor(m_scheme == Scheme::light ? pair.light : pair.dark);
}

QColor Theme::colour(Tone tone, double opacity) const
{
    return withOpacity(colour(tone), opacity);
}

QColor Theme::tintGround(Tint tint) const
{
    const TintColours &colours = tints.at(static_cast<std::size_t>(tint));
    return withOpacity(QColor(m_scheme == Scheme::light ? colours.lightBase : colours.darkBase), 0.18);
}

QColor Theme::tintText(Tint tint) const
{
    const TintColours &colours = tints.at(static_cast<std::size_t>(tint));
    return QColor(m_scheme == Scheme::light ? colours.lightText : colours.darkText);
}

QFont Theme::font(TextType type) const
{
    return font(type, types.at(static_cast<std::size_t>(type)).weight);
}

QFont Theme::font(TextType type, QFont::Weight weight) const
{
    QFont font;
    // The Chinese families by name, or some Han letters come in their Japanese form.
    font.setFamilies({u"Inter"_s, u"Noto Sans"_s, u"DejaVu Sans"_s, u"Noto Sans CJK SC"_s,
        u"Source Han Sans SC"_s, u"WenQuanYi Micro Hei"_s, u"sans-serif"_s});
    font.setPixelSize(points(types.at(static_cast<std::size_t>(type)).size));
    font.setWeight(weight);
    return font;
}

double Theme::size(TextType type)
{
    return types.at(static_cast<std::size_t>(type)).size;
}

double Theme::pitch(TextType type)
{
    return types.at(static_cast<std::size_t>(type)).pitch;
}

QPalette Theme::palette() const
{
    QPalette palette;
    palette.setColor(QPalette::Window, colour(Tone::paper));
    palette.setColor(QPalette::WindowText, colour(Tone::ink));
    palette.setColor(QPalette::Base, colour(Tone::surface));
    palette.setColor(QPalette::AlternateBase, colour(Tone::sunken));
    palette.setColor(QPalette::Text, colour(Tone::ink));
    palette.setColor(QPalette::PlaceholderText, colour(Tone::ink3));
    palette.setColor(QPalette::Button, colour(Tone::surface));
    palette.setColor(QPalette::ButtonText, colour(Tone::ink));
    palette.setColor(QPalette::ToolTipBase, colour(Tone::surface));
    palette.setColor(QPalette::ToolTipText, colour(Tone::ink));
    palette.setColor(QPalette::Highlight, colour(Tone::select));
    palette.setColor(QPalette::HighlightedText, colour(Tone::ink));
    palette.setColor(QPalette::Link, colour(Tone::accent));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colour(Tone::ink, 0.45));
    return palette;
}

QString Theme::resolved(const QString &text) const
{
    static const QRegularExpression token(u"\\$([A-Za-z0-9]+)(?:/(\\d+))?"_s);
    QString result;
    qsizetype end = 0;
    for (auto each = token.globalMatch(text); each.hasNext();) {
        const auto match = each.next();
        result.append(QStringView(text).mid(end, match.capturedStart() - end));
        end = match.capturedEnd();
        bool isLength = false;
        const int length = match.captured(1).toInt(&isLength);
        if (isLength) {
            result += QString::number(points(length)) + u"px"_s;
            continue;
        }
        const QByteArray name = match.captured(1).toLatin1();
        const auto tone = std::ranges::find_if(tones, [&](const Pair &pair) { return name == pair.name; });
        Q_ASSERT(tone != tones.end());
        const double opacity = match.hasCaptured(2) ? match.captured(2).toInt() / 100.0 : 1;
        result += css(colour(static_cast<Tone>(tone - tones.begin()), opacity));
    }
    return result.append(QStringView(text).mid(end));
}

QString Theme::styleSheet() const
{
    QString text;
    for (const QStringView sheet : sheets)
        text += resolved(sheet.toString());
    static constexpr std::array names{"blue", "green", "orange", "purple"};
    for (std::size_t i = 0; i < names.size(); ++i)
        text += u"QLabel[tint=\"%1\"] { background: %2; color: %3; }\n"_s.arg(QLatin1StringView(names[i]),
            css(tintGround(static_cast<Tint>(i))), css(tintText(static_cast<Tint>(i))));
    return text;
}

void Theme::applyToApplication()
{
    m_isApplied = true;
    QApplication::setStyle(u"fusion"_s);
    QApplication::setFont(font(TextType::text));
    refresh();
}

void Theme::refresh()
{
    if (m_isApplied) {
        QApplication::setPalette(palette());
        qApp->setStyleSheet(styleSheet());
    }
    emit changed();
}

} // namespace nimbrelle
