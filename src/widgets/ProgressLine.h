#pragma once

#include <QWidget>

namespace nimbrelle {

class Theme;

/// A thin bar that tells how far something has come.
class ProgressLine : public QWidget {
    Q_OBJECT

public:
    ProgressLine(const Theme &theme, const QString &name);

    /// `text` tells a screen reader.
    void setProgress(qint64 done, qint64 total, const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Theme &m_theme;
    double m_part = 0;
};

} // namespace nimbrelle
