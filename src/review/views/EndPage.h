#pragma once

#include "review/ReviewScreen.h"

#include <QWidget>

class QVBoxLayout;

namespace nimbrelle {

enum class Icon;
class Theme;

/// What there is in place of a question: the end of a round, or that there is none.
class EndPage : public QWidget {
    Q_OBJECT

public:
    EndPage(const Theme &theme, const ReviewScreen::Summary &summary);
    EndPage(const Theme &theme, const ReviewScreen::EmptyRound &empty);

signals:
    void againPressed();
    void morePressed();
    void closePressed();

private:
    explicit EndPage(const Theme &theme);

    void addPicture(Icon icon, const QColor &colour);
    void addTitle(const QString &text);
    void addLine(const QString &name, const QString &text, double gap, bool isMain);
    void addMarkedLine(const QString &name, Icon icon, const std::optional<QString> &text, double gap);

    const Theme &m_theme;
    QVBoxLayout *m_rows;
};

} // namespace nimbrelle
