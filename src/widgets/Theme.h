#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>

namespace nimbrelle {

/// A colour by what it is for; each has a light and a dark value.
enum class Tone {
    paper, ///< window ground
    surface, ///< card, fields, groups, menu
    sunken, ///< a covered meaning, a locked cell
    border, ///< hairlines; decoration only
    borderStrong, ///< the edge of fields and buttons
    ink, ///< text
    ink2, ///< secondary text and icons
    ink3, ///< placeholders, shortcut hints
    leaf, ///< progress and tints; never text
    accent, ///< links, the word in a sentence
    accentLine, ///< focus ring, switch on
    primaryFill, ///< the one filled button, and
    primaryText, ///< what stands on it
    select, ///< the selected row or text
    good,
    bad,
    warn,
    gold,
    orangeText, ///< on a ground of Tint::orange, or by itself
    purpleText, ///< a memory aid
    amber, ///< the disc of an answer that was nearly right
    onLeaf, ///< what stands on leaf and amber
};

/// A coloured capsule: its ground, and a text of the same hue that can be read on it.
enum class Tint { blue, green, orange, purple };

/// A size of text by what it is for.
enum class TextType { display, title, headword, heading, meaning, reading, text, small, tiny, scaffold };

/// What everything visible is made from. All numbers given to it are points of the design; one point is as
/// many device-independent pixels as the desktop's own text size asks for. Main thread only.
class Theme : public QObject {
    Q_OBJECT

public:
    enum class Scheme { light, dark };

    explicit Theme(double scale = 1, QObject *parent = nullptr);

    /// The scale that makes the program as large as the user's other ones: at least 1, in eighths. To be
    /// asked before anything sets the application's font.
    static double desktopScale();

    Scheme scheme() const { return m_scheme; }
    void setScheme(Scheme scheme);
    /// Whether the desktop asks for nothing to move. Whatever moves asks when it does; no change of it is
    /// told.
    bool isStill() const { return m_isStill; }
    void setStill(bool still);

    double scale() const { return m_scale; }
    /// In whole device-independent pixels.
    int points(double count) const;
    QColor colour(Tone tone) const;
    QColor colour(Tone tone, double opacity) const;
    QColor tintGround(Tint tint) const;
    QColor tintText(Tint tint) const;

    QFont font(TextType type) const;
    QFont font(TextType type, QFont::Weight weight) const;
    /// The size of the letters in points.
    static double size(TextType type);
    /// The distance of two lines in points.
    static double pitch(TextType type);

    QPalette palette() const;
    QString styleSheet() const;
    /// Makes the application look so, now and after each change.
    void applyToApplication();

signals:
    void changed();

private:
    QString resolved(const QString &sheet) const;
    void refresh();

    const double m_scale;
    Scheme m_scheme = Scheme::light;
    bool m_isStill = false;
    bool m_isApplied = false;
};

} // namespace nimbrelle
