#pragma once

#include <QWidget>

class QPushButton;

namespace nimbrelle {

class GrowthGenerator;
class ReadText;
class Theme;

/// The group of the settings about the growth archive: one button that installs or removes its generator. Its
/// heading is the page's.
class GrowthGroup : public QWidget {
    Q_OBJECT

public:
    /// Both outlive it.
    GrowthGroup(const Theme &theme, const GrowthGenerator &generator, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void toggle();
    void refresh();
    void tell(const QString &problem);

    const GrowthGenerator &m_generator;
    QPushButton *m_button;
    ReadText *m_note = nullptr;
    ReadText *m_problem = nullptr;
};

} // namespace nimbrelle
